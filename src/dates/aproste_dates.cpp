// The dates of aproste: read from text, written as text, built from numbers.
#include <cmath>
#include <optional>

#include <kvarta16/dates/aDaty.h>
#include <kvarta16/dates/aproste.h>
#include <kvarta16/frame/whole_day.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

constexpr StringView flex_mask = u"yyyy-MM-dd";
constexpr Integer number_for_no_date = 1;
constexpr std::int32_t year_of_no_month = 1990;

String render(const Variant& value, StringView mask) {
    return FormatMask(value, mask, WeekStart::Sunday);
}

// The way through text, on which the mask decides what survives.
Date through_text(Date moment, StringView mask) {
    return ToDate(render(moment, mask));
}

}  // namespace

Date aproste::DateSerialSpr(Long Rok, Long Miesiąc, Long Dzień, Boolean IFFailSetNow) const {
    const Integer year = wrap16(Rok);
    const Integer month = wrap16(Miesiąc);
    std::optional<Date> built;
    step([&] { built = MakeDate(year, month, wrap16(Dzień)); });
    if (built) {
        return *built;
    }
    const aDaty calendar;
    return calendar.EOMonth(IFFailSetNow ? platform().clock->Now() : MakeDate(year, month, 1));
}

Date aproste::ObetnijGodz(Date da) const {
    return {std::trunc(da.days) + 0.0};  // no zero with a sign
}

Date aproste::Str2Date(StringView s) const {
    return FormatSD(s, flex_mask, false);
}

Date aproste::Date2Str(Date d) const {
    return through_text(d, flex_mask);
}

Date aproste::FlexStr2DateNOW(StringView s) const {
    return FormatSD(s, flex_mask, true);
}

Date aproste::FlexStr2Date(StringView s) const {
    return FormatSD(s, flex_mask, false);
}

String aproste::Flex2DateStr(StringView s, String& MaskaDocelowa) const {
    return FormatSDS(s, flex_mask, MaskaDocelowa);
}

Date aproste::FormatSD(StringView da, StringView MaskaDaŻrółowa, Boolean SetNow) const {
    const Variant text = da;
    if (IsDateValue(text)) {
        return through_text(ToDate(text), MaskaDaŻrółowa);
    }
    return SetNow ? through_text(platform().clock->Now(), MaskaDaŻrółowa) : Date{};
}

String aproste::FormatSDS(StringView da, StringView MaskaDaŻrółowa, String& MaskaDocelowa) const {
    if (MaskaDocelowa.empty()) {
        MaskaDocelowa = MaskaDaŻrółowa;
    }
    if (IsDateValue(da)) {
        return render(FormatSD(da, MaskaDaŻrółowa, false), MaskaDocelowa);
    }
    return render(number_for_no_date, MaskaDocelowa);
}

String aproste::FormatDS(Date da, StringView MaskaDocelowa) const {
    return da == Date{number_for_no_date} ? render(number_for_no_date, MaskaDocelowa)
                                          : render(da, MaskaDocelowa);
}

String aproste::NazwaMiesiąca(Date MiesiącKPIR) const {
    if (civil_day(MiesiącKPIR).year == year_of_no_month) {
        return u"Miesiąc nie wybrany";
    }
    return render(MiesiącKPIR, u"mmmm yyyy");
}

}  // namespace kvarta16
