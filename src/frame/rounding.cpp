#include <cmath>

#include <kvarta16/frame/digits.h>
#include <kvarta16/frame/value.h>

namespace kvarta16 {
namespace {

Double power_of_ten(Integer exponent) {
    constexpr Double exact_powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                       1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    return static_cast<std::size_t>(exponent) < std::size(exact_powers)
               ? exact_powers[exponent]
               : std::pow(10.0, static_cast<Double>(exponent));
}

void refuse_negative(Integer decimals) {
    if (decimals < 0) {
        fail(error::invalid_call);
    }
}

}  // namespace

Double round_half_even(Double value, Integer decimals) {
    refuse_negative(decimals);
    const Double power = power_of_ten(decimals);
    const Double product = value * power;
    if (!std::isfinite(product)) {
        return value;  // so many decimals that there is nothing to round
    }
    constexpr Double all_whole = 4503599627370496.0;  // 2^52: no Double from here on has a fraction
    if (std::abs(product) >= all_whole) {
        return product / power;
    }
    auto whole = static_cast<std::int64_t>(product);
    const Double fraction = std::abs(product - static_cast<Double>(whole));
    if (fraction > 0.5 || (fraction == 0.5 && whole % 2 != 0)) {
        whole += product < 0 ? -1 : 1;
    }
    return static_cast<Double>(whole) / power;
}

Currency round_half_even(Currency value, Integer decimals) {
    refuse_negative(decimals);
    constexpr std::int64_t units[] = {10000, 1000, 100, 10};
    if (decimals >= 4) {
        return value;
    }
    const std::int64_t unit = units[decimals];
    const std::uint64_t magnitude = magnitude_of(value.count);
    const auto wide_unit = static_cast<std::uint64_t>(unit);
    const std::uint64_t quotient = magnitude / wide_unit;
    const std::uint64_t twice_rest = magnitude % wide_unit * 2;
    const bool up = twice_rest > wide_unit || (twice_rest == wide_unit && quotient % 2 != 0);
    const std::uint64_t rounded = (quotient + (up ? 1 : 0)) * wide_unit;
    constexpr std::uint64_t beyond = std::uint64_t{1} << 63;
    if (rounded > beyond || (rounded == beyond && value.count > 0)) {
        fail(error::overflow);
    }
    return Currency::raw(static_cast<std::int64_t>(value.count < 0 ? ~rounded + 1 : rounded));
}

Decimal round_half_even(Decimal value, Integer decimals) {
    refuse_negative(decimals);
    if (decimals >= value.scale) {
        return value;
    }
    const DecimalDigits digits = digits_of(value);
    const int dropped = value.scale - decimals;
    const int kept = digits.count > dropped ? digits.count - dropped : 0;
    const std::string_view kept_digits = digits.view().substr(0, static_cast<std::size_t>(kept));
    const std::string_view cut = digits.view().substr(static_cast<std::size_t>(kept));
    const auto scale = static_cast<std::uint8_t>(decimals);
    const bool odd = kept > 0 && (kept_digits.back() - '0') % 2 != 0;
    const bool reaches_half = static_cast<int>(cut.size()) == dropped && cut.front() >= '5';
    const bool above_half = reaches_half && (cut.front() > '5' || cut.find_first_not_of('0', 1) !=
                                                                      std::string_view::npos);
    Decimal rounded = decimal_of(kept_digits, scale, value.negative);
    if (above_half || (reaches_half && odd)) {
        // No overflow: at least one digit has been cut off.
        rounded.low += 1;
        rounded.middle += rounded.low == 0 ? 1 : 0;
        rounded.high += rounded.low == 0 && rounded.middle == 0 ? 1 : 0;
    }
    // Cut to nothing it is zero, and zero has no sign.
    rounded.negative = rounded.negative && (rounded.low | rounded.middle | rounded.high) != 0;
    return rounded;
}

Variant RoundHalfEven(const Variant& value, Integer decimals) {
    refuse_negative(decimals);
    return value.visit([decimals]<class T>(const T& held) -> Variant {
        if constexpr (std::same_as<T, Double> || std::same_as<T, Currency> ||
                      std::same_as<T, Decimal>) {
            return round_half_even(held, decimals);
        } else if constexpr (std::same_as<T, Single>) {
            return static_cast<Single>(round_half_even(static_cast<Double>(held), decimals));
        } else if constexpr (std::same_as<T, Date>) {
            return Date{round_half_even(held.days, decimals)};
        } else if constexpr (std::same_as<T, String>) {
            return ToText(round_half_even(to_double(Variant(held)), decimals));
        } else if constexpr (std::same_as<T, ObjectPointer> || std::same_as<T, UnknownObject> ||
                             std::same_as<T, ErrorCode>) {
            fail(error::type_mismatch);
        } else {
            return held;  // whole as it is, or no number at all
        }
    });
}

}  // namespace kvarta16
