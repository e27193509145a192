// The hours of aproste: a number of hours and its texts.
#include <charconv>
#include <cmath>
#include <string_view>

#include <kvarta16/dates/aproste.h>

namespace kvarta16 {
namespace {

constexpr StringView no_time = u"0:00";

// Minutes or hundredths below 10 have a zero before them, negative ones too.
String hours_text(Double hours, Long parts) {
    return ToText(hours) + (parts < 10 ? u":0" : u":") + ToText(parts);
}

void fill_in_no_time(String& text) {
    const StringView written = trim(text);
    if (written.empty() || written == u"0") {
        text = no_time;
    }
}

// A "-" at the very front makes the minutes count downwards as well.
Double hours_of(StringView text, Long hours, Long minutes) {
    const Double part = minutes / 60.0;
    return text.starts_with(u'-') ? hours - part : hours + part;
}

// Nines that have a 5 behind them as the sixteenth digit are carried, however that 5 came about:
// 1.4999999999999947, at sixteen digits 1.499999999999995, is one and a half. So are the minutes
// of 1.025 hours.
Double with_nines_carried(Double value) {
    constexpr int decimals = 15;  // behind the first digit
    char text[32];
    const auto result =
        std::to_chars(text, text + sizeof text, value, std::chars_format::scientific, decimals);
    const std::string_view written(text, static_cast<std::size_t>(result.ptr - text));
    const std::size_t at = written.find("95e");
    if (at == std::string_view::npos) {
        return value;
    }
    text[at + 1] = '6';
    std::from_chars(text, result.ptr, value);
    return value;
}

}  // namespace

String aproste::HLiczToGodz(Double& LICZ) const {
    const bool is_negative = LICZ < 0;
    if (is_negative) {
        LICZ = -LICZ;
    }
    const Double hours = std::trunc(LICZ);
    const Long minutes = AnyToLong((LICZ - hours) * 60);
    const String text = minutes == 60 ? hours_text(hours + 1, 0) : hours_text(hours, minutes);
    return is_negative ? u"-" + text : text;
}

String aproste::HLiczToStr(Double LICZ) const {
    const Double hours = std::trunc(LICZ);
    return hours_text(hours, AnyToLong((LICZ - hours) * 100));
}

Double aproste::HGodzToLicz(String& LICZ) const {
    fill_in_no_time(LICZ);
    String hours;
    String minutes = u"0";
    if (const Long colon = position_of(LICZ, u":")) {
        hours = left_part(LICZ, colon - 1);
        minutes = substring(LICZ, colon + 1);
    } else if (const Long comma = position_of(LICZ, u",")) {
        hours = left_part(LICZ, comma - 1);
    } else {
        hours = ToText(AnyToLong(LICZ));
    }
    return hours_of(LICZ, AnyToLong(hours), AnyToLong(minutes));
}

Single aproste::HGodzToLiczRCP(String& LICZ) const {
    fill_in_no_time(LICZ);
    // Without a colon the length of the hours comes out as -1, which is the failure callers know.
    const Long colon = position_of(LICZ, u":");
    const Long hours = AnyToLong(left_part(LICZ, colon - 1));
    const Long minutes = AnyToLong(substring(LICZ, colon + 1));
    return static_cast<Single>(hours_of(LICZ, hours, minutes));
}

Long aproste::AnyToLong(const Variant& value) const {
    Long result = 0;
    // One step: with Null, or a value that has no text, every later one would give 0 as well.
    step([&] {
        const auto* const number = value.get_if<Double>();
        const String text(trim(ToText(number != nullptr ? with_nines_carried(*number) : value)));
        if (!text.empty()) {
            result = ToLong(IsNumericText(text) ? Variant(text) : Variant(ValPrefix(text)));
        }
    });
    return result;
}

}  // namespace kvarta16
