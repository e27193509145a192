#include <kvarta16/numbers/money_rounding.h>

namespace kvarta16::money_rounding {
namespace {

// What the sisters of the core differ in. A digit more than `decimals` is the digit by which a
// text is rounded.
struct Place {
    Integer decimals;
    StringView mask;
    StringView finer_mask;
    Currency unit;  // of the last place
};

constexpr Place whole{0, u"0", u"0.0", Currency::raw(10000)};
constexpr Place tenths{1, u"0.0", u"0.00", Currency::raw(1000)};
constexpr Place hundredths{2, u"0.00", u"0.000", Currency::raw(100)};
constexpr Place thousandths{3, u"0.000", u"0.0000", Currency::raw(10)};
constexpr Place fourths{4, u"0.0000", u"0.00000", Currency::raw(1)};

template <class Number>
constexpr int sign_of(Number x) {
    return x > Number{} ? 1 : x < Number{} ? -1 : 0;
}

Currency mask_route(const Variant& number, const Place& place) {
    return ToCurrency(FormatMask(number, place.mask));
}

Currency count_tie_route(Currency amount, const Place& place) {
    const int sign = sign_of(amount);
    const Currency even = round_half_even(amount, place.decimals);
    const bool is_tie = (amount - even).count == sign * place.unit.count / 2;
    return is_tie ? even + Currency::raw(sign * place.unit.count) : even;
}

Currency double_tie_route(Double x) {
    const int sign = sign_of(x);
    const Double even = round_half_even(x, 0);
    return ToCurrency(x - even == sign * 0.5 ? sign + even : even);
}

// The tie is looked for among binary numbers, each product being rounded for itself.
Currency two_decimal_route(Double x) {
    const int sign = sign_of(x);
    const Double even = round_half_even(x, 2);
    const Double scaled = x * 1000;
    const Double scaled_even = even * 1000;
    return ToCurrency(scaled - scaled_even == sign * 5.0 ? sign * 0.01 + even : even);
}

// A text as all of the core reads it. Only a comma is left, so that ValPrefix stops where the
// decimals begin.
String with_commas(StringView text) {
    return replace_all(text, u".", u",");
}

Currency two_decimal_route(StringView text) {
    const Variant copy = with_commas(text);
    return two_decimal_route(IsNumericText(copy) ? to_double(copy)
                                                 : ValPrefix(*copy.get_if<String>()));
}

// Rounds twice, by the mask and by the digit cut off, and adds the unit whatever the sign.
Currency text_route(StringView text, const Place& place) {
    const Variant copy = with_commas(text);
    const String finer = IsNumericText(copy)
                             ? FormatMask(copy, place.finer_mask)
                             : FormatMask(ValPrefix(*copy.get_if<String>()), place.finer_mask);
    const Long comma = position_of(finer, u",");
    if (comma == 0) {
        return ToCurrency(FormatMask(copy, place.mask));
    }
    const Long kept = comma + place.decimals;
    const Currency cut = ToCurrency(left_part(finer, kept));
    const bool is_half_or_more = substring(finer, kept + 1, 1) >= u"5";
    return is_half_or_more ? cut + place.unit : cut;
}

// The routes of the subtypes that have decimals. The sisters replace the ones that they take
// otherwise.
struct Routes {
    const Place& place;

    Currency binary(const Variant& number) const { return mask_route(number, place); }
    Currency money(Currency amount) const { return count_tie_route(amount, place); }
    Currency decimal(Decimal number) const {
        return ToCurrency(round_half_even(number, place.decimals));
    }
    Currency text(StringView text) const { return text_route(text, place); }
};

struct WholeRoutes : Routes {
    static Currency binary(const Variant& number) { return double_tie_route(to_double(number)); }
};

struct HundredthRoutes : Routes {
    static Currency money(Currency amount) { return two_decimal_route(to_double(amount)); }
    static Currency decimal(Decimal number) { return two_decimal_route(to_double(number)); }
    static Currency text(StringView text) { return two_decimal_route(text); }
};

struct FourthRoutes : Routes {
    static Currency money(Currency amount) { return amount; }
};

template <class T, class... Types>
concept OneOf = (std::same_as<T, Types> || ...);

template <class RoutesOfPlace>
Currency rounded(const Variant& value, const RoutesOfPlace& routes) {
    return value.visit([&routes]<class T>(const T& held) -> Currency {
        if constexpr (OneOf<T, Integer, Long, Byte>) {
            return ToCurrency(held);
        } else if constexpr (OneOf<T, Boolean>) {
            return Currency::raw(held ? -10000 : 0);
        } else if constexpr (OneOf<T, Single, Double>) {
            return routes.binary(held);
        } else if constexpr (OneOf<T, Date>) {
            return routes.binary(held.days);
        } else if constexpr (OneOf<T, Currency>) {
            return routes.money(held);
        } else if constexpr (OneOf<T, Decimal>) {
            return routes.decimal(held);
        } else if constexpr (OneOf<T, String>) {
            return routes.text(held);
        } else {
            static_assert(OneOf<T, EmptyValue, NullValue, ErrorCode, ObjectPointer, UnknownObject>);
            return Currency{};
        }
    });
}

// How upward rounding and the biased rounding read a value: in the type of Read's result.
template <auto Read>
auto amount_of(const Variant& value) -> decltype(Read(value)) {
    if (IsNullValue(value)) {
        return {};
    }
    return IsNumericText(value) ? Read(value) : Read(ValPrefix(ToText(value)));
}

}  // namespace

Currency to_whole(const Variant& value) {
    return rounded(value, WholeRoutes{{whole}});
}

Currency to_tenths(const Variant& value) {
    return rounded(value, Routes{tenths});
}

Currency to_hundredths(const Variant& value) {
    return rounded(value, HundredthRoutes{{hundredths}});
}

Currency to_thousandths(const Variant& value) {
    return rounded(value, Routes{thousandths});
}

Currency to_fourths(const Variant& value) {
    return rounded(value, FourthRoutes{{fourths}});
}

Currency upward(const Variant& value, Integer decimals, Currency unit) {
    Currency amount;
    step([&] { amount = amount_of<ToCurrency>(value); });
    Currency result;
    step([&] { result = round_half_even(amount, decimals); });
    if (amount > result) {
        result = result + unit;
    }
    return result;
}

Currency biased_double(const Variant& value) {
    Double x = 0;
    step([&] { x = amount_of<to_double>(value); });
    x = x > 0 ? x + 0.0001 : x - 0.0001;
    Currency result;
    step([&] { result = ToCurrency(round_half_even(x, 2)); });
    return result;
}

Currency biased_currency(const Variant& value) {
    const Currency amount = amount_of<ToCurrency>(value);
    const Currency push = Currency::raw(amount > Currency{} ? 1 : -1);
    return round_half_even(amount + push, 2);
}

}  // namespace kvarta16::money_rounding
