#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>
#include <type_traits>

#include <kvarta16/frame/digits.h>
#include <kvarta16/frame/numeric_text.h>
#include <kvarta16/frame/value.h>

namespace kvarta16 {
namespace {

constexpr std::int64_t counts_per_unit = 10000;

template <class T>
concept WholeNumber = std::same_as<T, Byte> || std::same_as<T, Integer> || std::same_as<T, Long>;
template <class T>
concept BinaryNumber = std::same_as<T, Single> || std::same_as<T, Double>;
// What no number can be made of, but for Null, which fails with a number of its own.
template <class T>
concept NoNumber =
    std::same_as<T, ObjectPointer> || std::same_as<T, UnknownObject> || std::same_as<T, ErrorCode>;

NumericText numeric_text(StringView text) {
    const std::optional<NumericText> number = read_numeric_text(text, locale());
    if (!number) {
        fail(error::type_mismatch);
    }
    return *number;
}

// A Double to the nearest whole number, a tie to the even one, within 64 bits.
std::int64_t nearest_whole(Double value) {
    const Double rounded = std::nearbyint(value);
    constexpr Double beyond = 9223372036854775808.0;
    if (!(rounded >= -beyond && rounded < beyond)) {  // also what is no number at all
        fail(error::overflow);
    }
    return static_cast<std::int64_t>(rounded);
}

// Ten-thousandths to the nearest whole number, a tie to the even one.
std::int64_t nearest_whole(Currency value) {
    const std::int64_t whole = value.count / counts_per_unit;
    const std::uint64_t part = magnitude_of(value.count % counts_per_unit);
    const bool up = part > 5000 || (part == 5000 && whole % 2 != 0);
    return up ? whole + (value.count < 0 ? -1 : 1) : whole;
}

template <class Target>
Target within(std::int64_t whole) {
    if (whole < std::numeric_limits<Target>::min() || whole > std::numeric_limits<Target>::max()) {
        fail(error::overflow);
    }
    return static_cast<Target>(whole);
}

Double double_of(Currency value) {
    constexpr std::uint64_t exact_integers = std::uint64_t{1} << 53;
    if (magnitude_of(value.count) <= exact_integers) {
        return static_cast<Double>(value.count) / static_cast<Double>(counts_per_unit);
    }
    // The count is no Double, so that dividing it would round twice.
    NumericText number;
    number.negative = value.count < 0;
    number.mantissa = magnitude_of(value.count);
    number.exponent = -4;
    return nearest_double(number);
}

Double double_of(const Decimal& value) {
    const NumericText number = number_of(value);
    if (number.tail_digit == 0 && !number.tail_rest) {
        return nearest_double(number);
    }
    // More digits than a machine word has room for: all of them tell the nearest Double.
    const DecimalDigits digits = digits_of(value);
    char text[DecimalDigits::capacity + 8];
    char* end = std::copy_n(digits.buffer, digits.count, text);
    *end++ = 'e';
    end = std::to_chars(end, std::end(text), -value.scale).ptr;
    Double magnitude = 0;
    std::from_chars(text, end, magnitude);
    return value.negative ? -magnitude : magnitude;
}

// The coercion of every subtype to a whole number of the target's range.
template <class Target>
Target to_whole(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> Target {
        if constexpr (std::same_as<T, EmptyValue>) {
            return 0;
        } else if constexpr (std::same_as<T, NullValue>) {
            fail(error::invalid_null);
        } else if constexpr (NoNumber<T>) {
            fail(error::type_mismatch);
        } else if constexpr (WholeNumber<T>) {
            return within<Target>(held);
        } else if constexpr (std::same_as<T, Boolean>) {
            return within<Target>(held ? -1 : 0);
        } else if constexpr (BinaryNumber<T>) {
            return within<Target>(nearest_whole(static_cast<Double>(held)));
        } else if constexpr (std::same_as<T, Date>) {
            return within<Target>(nearest_whole(held.days));
        } else if constexpr (std::same_as<T, Currency>) {
            return within<Target>(nearest_whole(held));
        } else if constexpr (std::same_as<T, Decimal>) {
            return within<Target>(scaled(number_of(held), 0));
        } else {
            return within<Target>(scaled(numeric_text(held), 0));
        }
    });
}

// Equal but for the case of the letters.
bool same_word(StringView a, StringView b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(),
                      [](char16_t x, char16_t y) { return upper_case(x) == upper_case(y); });
}

Boolean truth_of(StringView text) {
    const Locale& settings = locale();
    if (same_word(text, settings.true_word) || same_word(text, u"True")) {
        return true;
    }
    if (same_word(text, settings.false_word) || same_word(text, u"False")) {
        return false;
    }
    return nearest_double(numeric_text(text)) != 0;
}

}  // namespace

Double ValPrefix(StringView text) {
    return read_prefix(text);
}

Currency ToCurrency(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> Currency {
        if constexpr (std::same_as<T, EmptyValue>) {
            return {};
        } else if constexpr (std::same_as<T, NullValue>) {
            fail(error::invalid_null);
        } else if constexpr (NoNumber<T>) {
            fail(error::type_mismatch);
        } else if constexpr (WholeNumber<T>) {
            return Currency::raw(held * counts_per_unit);
        } else if constexpr (std::same_as<T, Boolean>) {
            return Currency::raw(held ? -counts_per_unit : 0);
        } else if constexpr (BinaryNumber<T>) {
            return Currency::raw(nearest_whole(static_cast<Double>(held) * counts_per_unit));
        } else if constexpr (std::same_as<T, Date>) {
            return Currency::raw(nearest_whole(held.days * counts_per_unit));
        } else if constexpr (std::same_as<T, Currency>) {
            return held;
        } else if constexpr (std::same_as<T, Decimal>) {
            return Currency::raw(scaled(number_of(held), 4));
        } else {
            const auto plain = read_plain_amount(held, locale().decimal_separator);
            return plain ? *plain : Currency::raw(scaled(numeric_text(held), 4));
        }
    });
}

Integer ToInteger16(const Variant& value) {
    return to_whole<Integer>(value);
}

Long ToLong(const Variant& value) {
    return to_whole<Long>(value);
}

Byte to_byte(const Variant& value) {
    return to_whole<Byte>(value);
}

Double to_double(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> Double {
        if constexpr (std::same_as<T, EmptyValue>) {
            return 0;
        } else if constexpr (std::same_as<T, NullValue>) {
            fail(error::invalid_null);
        } else if constexpr (NoNumber<T>) {
            fail(error::type_mismatch);
        } else if constexpr (WholeNumber<T> || BinaryNumber<T>) {
            return held;
        } else if constexpr (std::same_as<T, Boolean>) {
            return held ? -1 : 0;
        } else if constexpr (std::same_as<T, Date>) {
            return held.days;
        } else if constexpr (std::same_as<T, Currency> || std::same_as<T, Decimal>) {
            return double_of(held);
        } else {
            const Double number = nearest_double(numeric_text(held));
            if (!std::isfinite(number)) {
                fail(error::overflow);
            }
            return number;
        }
    });
}

Single to_single(const Variant& value) {
    if (const auto* single = value.get_if<Single>()) {
        return *single;
    }
    const auto narrowed = static_cast<Single>(to_double(value));
    if (!std::isfinite(narrowed)) {
        fail(error::overflow);
    }
    return narrowed;
}

Boolean to_boolean(const Variant& value) {
    if (const auto* truth = value.get_if<Boolean>()) {
        return *truth;
    }
    if (const auto* text = value.get_if<String>()) {
        return truth_of(*text);
    }
    return to_double(value) != 0;
}

Boolean IsNumericText(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> Boolean {
        if constexpr (std::same_as<T, String>) {
            return read_numeric_text(held, locale()).has_value();
        } else {
            return !(std::same_as<T, NullValue> || std::same_as<T, Date> || NoNumber<T>);
        }
    });
}

Boolean IsNullValue(const Variant& value) {
    return value.is(Subtype::Null);
}

}  // namespace kvarta16
