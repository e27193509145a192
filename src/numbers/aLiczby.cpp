#include <cmath>

#include <kvarta16/numbers/aLiczby.h>
#include <kvarta16/numbers/money_rounding.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

// The members of the core that others are built on.
using Core = Currency (aLiczby::*)(const Variant&) const;

// A core that fails leaves the amount at 0, and zero's text is given.
template <Core core>
String amount_text(const aLiczby& numbers, const Variant& ds, StringView mask,
                   StringView zero_text = {}) {
    Currency amount;
    step([&] { amount = (numbers.*core)(ds); });
    String result;
    step([&] {
        const bool is_plain = amount != Currency{} || zero_text.empty();
        result = is_plain ? FormatMask(amount, mask) : String(zero_text);
    });
    return result;
}

// Each bound stands by itself, and is rounded like the amount only when it takes its place.
template <Core core>
Currency clamped(const aLiczby& numbers, const Variant& ds, Currency min, Currency max) {
    Currency amount;
    step([&] { amount = (numbers.*core)(ds); });
    if (min != Currency{} || max != Currency{}) {
        if (amount < min) {
            step([&] { amount = (numbers.*core)(min); });
        }
        if (amount > max) {
            step([&] { amount = (numbers.*core)(max); });
        }
    }
    return amount;
}

// Each operand is rounded before it is added, from the first to the last. The sum wraps.
template <Core core, class... Operands>
Currency sum(const aLiczby& numbers, const Operands&... operands) {
    Currency total;
    ((total = total + (numbers.*core)(operands)), ...);
    return total;
}

// The text of an amount with blanks in the place of the comma and of the decimals that it lacks.
String aligned(Currency amount, Long decimals) {
    String text = ToText(amount);
    const Long comma = position_of(text, u",");
    const Long lacking = comma == 0 ? decimals + 1 : decimals - (length(text) - comma);
    // In Double a large amount keeps more decimals than it is rounded to, and then none is lacking.
    return lacking > 0 ? text + blanks(lacking) : text;
}

// Limb by limb from the top, as by hand; a digit behind the point is gone with each division.
Decimal whole_part(Decimal number) {
    for (; number.scale > 0; --number.scale) {
        std::uint64_t remainder = 0;
        for (std::uint32_t* limb : {&number.high, &number.middle, &number.low}) {
            const std::uint64_t dividend = (remainder << 32) | *limb;
            *limb = static_cast<std::uint32_t>(dividend / 10);
            remainder = dividend % 10;
        }
    }
    if ((number.high | number.middle | number.low) == 0) {
        number.negative = false;
    }
    return number;
}

void show_withdrawn(StringView text) {
    platform().message_boxes->MsgBox(text, msg_box::ok_only, std::nullopt);
}

}  // namespace

// ---- Money ----------------------------------------------------------------------------------

Currency aLiczby::VarR0Si(const Variant& ds) const {
    return money_rounding::to_whole(ds);
}

Currency aLiczby::VarR1Si(const Variant& ds) const {
    return money_rounding::to_tenths(ds);
}

Currency aLiczby::VarR2Si(const Variant& ds) const {
    return money_rounding::to_hundredths(ds);
}

Currency aLiczby::VarR3Si(const Variant& ds) const {
    return money_rounding::to_thousandths(ds);
}

Currency aLiczby::VarR4Si(const Variant& ds) const {
    return money_rounding::to_fourths(ds);
}

Currency aLiczby::VarR0GSi(const Variant& ds) const {
    return money_rounding::upward(ds, 0, Currency::raw(10000));
}

Currency aLiczby::VarR1GSi(const Variant& ds) const {
    return money_rounding::upward(ds, 1, Currency::raw(1000));
}

Currency aLiczby::VarR2Si1(const Variant& ds) const {
    return money_rounding::biased_double(ds);
}

Currency aLiczby::VarR2SiPL(const Variant& ds) const {
    return money_rounding::biased_currency(ds);
}

Currency aLiczby::NoSign(StringView a) const {
    Currency result;
    step([&] {
        const Currency amount = VarR2Si(a);
        if (amount.count == std::numeric_limits<std::int64_t>::min()) {
            fail(error::overflow);  // Currency reaches one count further down than up
        }
        result = amount < Currency{} ? -amount : amount;
    });
    return result;
}

Currency aLiczby::SumStrValR2Si(const Variant& ds1, const Variant& ds2) const {
    return sum<&aLiczby::VarR2Si>(*this, ds1, ds2);
}

Currency aLiczby::SumStrValR3Si(StringView ds1, StringView ds2) const {
    return sum<&aLiczby::VarR3Si>(*this, ds1, ds2);
}

// ---- Money as text --------------------------------------------------------------------------

String aLiczby::VarR0Str(const Variant& ds) const {
    return amount_text<&aLiczby::VarR0Si>(*this, ds, u"0");
}

String aLiczby::VarR1Str(const Variant& ds, StringView Zerostr) const {
    return amount_text<&aLiczby::VarR1Si>(*this, ds, u"0.0", Zerostr);
}

String aLiczby::VarR1GStr(const Variant& ds, StringView Zerostr) const {
    return amount_text<&aLiczby::VarR1GSi>(*this, ds, u"0.0", Zerostr);
}

String aLiczby::VarR2Str(const Variant& ds, StringView Zerostr) const {
    return amount_text<&aLiczby::VarR2Si>(*this, ds, u"0.00", Zerostr);
}

String aLiczby::VarR3Str(const Variant& ds, StringView Zerostr) const {
    return amount_text<&aLiczby::VarR3Si>(*this, ds, u"0.000", Zerostr);
}

String aLiczby::VarR4Str(const Variant& ds) const {
    return amount_text<&aLiczby::VarR4Si>(*this, ds, u"0.0000");
}

String aLiczby::VarMMR2Str(const Variant& ds, Currency min, Currency max) const {
    return VarR2Str(clamped<&aLiczby::VarR2Si>(*this, ds, min, max));
}

String aLiczby::VarMMR1Str(const Variant& ds, Currency min, Currency max) const {
    return VarR1Str(clamped<&aLiczby::VarR1Si>(*this, ds, min, max));
}

String aLiczby::VarR2StrA(const Variant& ds) const {
    return aligned(VarR2Si(ds), 2);
}

String aLiczby::VarR3StrA(const Variant& ds) const {
    return aligned(VarR3Si(ds), 3);
}

String aLiczby::SumStrValR2Str(StringView ds1, StringView ds2) const {
    return FormatMask(sum<&aLiczby::VarR2Si>(*this, ds1, ds2), u"0.00");
}

String aLiczby::SumStrValR3Str(StringView ds1, StringView ds2, StringView ds3) const {
    return FormatMask(sum<&aLiczby::VarR3Si>(*this, ds1, ds2, ds3), u"0.000");
}

String aLiczby::Num2Dot(StringView a) const {
    Currency amount;
    step([&] { amount = VarR2Si(a); });
    return amount == Currency{} ? String(u".") : VarR2Str(a);
}

// ---- Other coercions ------------------------------------------------------------------------

String aLiczby::NullXUStr(const Variant& ds, Integer x) const {
    String text;
    step([&] { text = IsNullValue(ds) ? String() : ToText(ds); });
    if (length(text) > x) {
        step([&] { text = left_part(text, x); });
    }
    String result;
    step([&] { result = blanks(x - length(text)) + upper_case(text); });
    return result;
}

Long aLiczby::VarLong(const Variant& ds) const {
    Long result = 0;
    // One step: with a value that has no text, every later one would fail as well.
    step([&] {
        const Variant text = trim(ToText(ds));
        result = ToLong(IsNumericText(text) ? text : ValPrefix(*text.get_if<String>()));
    });
    return result;
}

Variant aLiczby::VarValVar(const Variant& ds) const {
    Variant result;
    step([&] {
        if (IsNullValue(ds)) {
            result = Integer{0};
        } else if (IsNumericText(ds)) {
            result = ds.value();
        } else {
            result = ValPrefix(ToText(ds));
        }
    });
    return result;
}

Variant aLiczby::StrValVar(StringView ds) const {
    return IsNumericText(ds) ? Variant(ValPrefix(ds)) : Variant(Integer{0});
}

Variant aLiczby::VarVar(const Variant& ds) const {
    return IsNumericText(ds) ? ds.value() : Variant(Integer{0});
}

String aLiczby::VarObcinajStr(const Variant& ds) const {
    return ds.visit([]<class T>(const T& held) -> String {
        if constexpr (std::same_as<T, Integer> || std::same_as<T, Long> || std::same_as<T, Byte>) {
            return ToText(held);
        } else if constexpr (std::same_as<T, Single> || std::same_as<T, Double> ||
                             std::same_as<T, Date>) {
            return ToText(std::trunc(to_double(held)));
        } else if constexpr (std::same_as<T, Currency>) {
            return ToText(Currency::raw(held.count / 10000 * 10000));
        } else if constexpr (std::same_as<T, Decimal>) {
            return ToText(whole_part(held));
        } else if constexpr (std::same_as<T, String>) {
            return ToText(std::trunc(ValPrefix(held)));
        } else if constexpr (std::same_as<T, Boolean>) {
            return held ? u"-1" : u"0";
        } else {
            static_assert(std::same_as<T, EmptyValue> || std::same_as<T, NullValue> ||
                          std::same_as<T, ErrorCode> || std::same_as<T, ObjectPointer> ||
                          std::same_as<T, UnknownObject>);
            return u"0";
        }
    });
}

// ---- Withdrawn ------------------------------------------------------------------------------

String aLiczby::Var2Val18Str(const Variant&) const {
    show_withdrawn(u"Var2Val18Str Nie używana");
    return {};
}

String aLiczby::VarValR0Str(const Variant&) const {
    show_withdrawn(u"VarValR0Str nie używana");
    return {};
}

String aLiczby::VarR0TnijStr(const Variant&) const {
    show_withdrawn(u"VarR0TnijStr nie używana");
    return {};
}

String aLiczby::VarValRMStr(const Variant&, StringView) const {
    show_withdrawn(u"VarValRMStr nIE UŻYWANA");
    return {};
}

Currency aLiczby::Zaokr(const Variant&, Integer) const {
    show_withdrawn(u"Zaokr nie używana");
    return {};
}

}  // namespace kvarta16
