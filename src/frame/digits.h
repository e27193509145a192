// The decimal digits of a binary or decimal number, for writing it as text. Private to the value
// layer.
#pragma once

#include <iterator>
#include <optional>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16 {

// Digits without leading zeros, the first of them `point` places before the decimal point (0 and
// below: that many zeros stand between). No digits at all are zero.
struct DecimalDigits {
    static constexpr std::size_t capacity = 32;

    bool negative = false;
    std::int32_t point = 0;
    std::uint8_t count = 0;
    char buffer[capacity];

    [[nodiscard]] std::string_view view() const { return {buffer, count}; }
};

// A Double to 15 and a Single to 7 significant digits, correctly rounded, without trailing zeros.
// Fails: 6 if it is not finite.
[[nodiscard]] DecimalDigits digits_of(Double value);
[[nodiscard]] DecimalDigits digits_of(Single value);

// All digits of a Decimal, trailing zeros included.
[[nodiscard]] DecimalDigits digits_of(const Decimal& value);

// The Decimal of a number of at most 29 digits that has a place in 96 bits; `scale` decimals.
[[nodiscard]] Decimal decimal_of(std::string_view digits, std::uint8_t scale, bool negative);

// The amount whose digits are those of digits_of(value), if the number is one of at most four
// decimals and fifteen digits in all, as nearly all numbers in fields are; nothing for others.
[[nodiscard]] std::optional<Currency> short_decimal(Double value) noexcept;

// The bare digits of a whole number, written backward to `end`; where they begin.
template <class Char>
[[nodiscard]] inline Char* write_backward(Char* end, std::uint64_t number) {
    do {
        *--end = static_cast<Char>('0' + number % 10);
        number /= 10;
    } while (number != 0);
    return end;
}

// A whole number with zeros in front of it up to `width` digits.
inline void append_number(String& text, std::uint64_t number, std::size_t width) {
    char16_t buffer[24];
    char16_t* const end = std::end(buffer);
    char16_t* first = write_backward(end, number);
    const auto count = static_cast<std::size_t>(end - first);
    text.append(width > count ? width - count : 0, u'0').append(first, count);
}

// The distance of a signed number from 0, also of the lowest one.
[[nodiscard]] constexpr std::uint64_t magnitude_of(std::int64_t number) noexcept {
    const auto bits = static_cast<std::uint64_t>(number);
    return number < 0 ? ~bits + 1 : bits;
}

}  // namespace kvarta16
