#include <algorithm>
#include <charconv>
#include <cmath>

#include <kvarta16/frame/digits.h>
#include <kvarta16/frame/failure.h>

namespace kvarta16 {
namespace {

// Reads what std::to_chars writes in scientific form: d.ddde+XX or de+XX, without a sign.
void read_scientific(std::string_view text, DecimalDigits& digits) {
    const std::size_t letter = text.find('e');
    digits.count = 0;
    for (const char c : text.substr(0, letter)) {
        if (c != '.') {
            digits.buffer[digits.count++] = c;
        }
    }
    const bool below_one = text[letter + 1] == '-';
    std::int32_t exponent = 0;
    std::from_chars(text.data() + letter + 2, text.data() + text.size(), exponent);
    digits.point = (below_one ? -exponent : exponent) + 1;
}

void drop_trailing_zeros(DecimalDigits& digits) {
    while (digits.count > 0 && digits.buffer[digits.count - 1] == '0') {
        --digits.count;
    }
}

// One more in the last place; a carry out of the first makes 1 of 99...9.
void increment(DecimalDigits& digits) {
    std::size_t i = digits.count;
    while (i > 0 && digits.buffer[i - 1] == '9') {
        digits.buffer[--i] = '0';
    }
    if (i > 0) {
        ++digits.buffer[i - 1];
    } else {
        digits.buffer[0] = '1';
        ++digits.point;
    }
}

std::string_view written(const char* text, std::to_chars_result result) {
    return {text, static_cast<std::size_t>(result.ptr - text)};
}

// Digits of a magnitude above 0, correctly rounded at `places`.
void read_exact(Double magnitude, int places, DecimalDigits& digits) {
    char text[48];
    const auto result = std::to_chars(text, text + sizeof text, magnitude,
                                      std::chars_format::scientific, places - 1);
    read_scientific(written(text, result), digits);
}

// The same for a Double that is not subnormal, at its fifteen digits, by the faster way of the
// shortest digits that read back. Fifteen or fewer of them are the digits wanted, for no other
// number of fifteen digits is as near. More tell them when they are cut, but for one case: if they
// end in just a 5, the number may lie on either side of that half.
void read_fifteen(Double magnitude, DecimalDigits& digits) {
    constexpr int places = 15;
    char text[48];
    const auto result =
        std::to_chars(text, text + sizeof text, magnitude, std::chars_format::scientific);
    read_scientific(written(text, result), digits);
    if (digits.count <= places) {
        return;
    }
    const bool up = digits.buffer[places] >= '5';
    if (digits.count == places + 1 && digits.buffer[places] == '5') {
        read_exact(magnitude, places, digits);
        return;
    }
    digits.count = places;
    if (up) {
        increment(digits);
    }
}

DecimalDigits to_significant(Double value, int places) {
    DecimalDigits digits;
    if (!std::isfinite(value)) {
        fail(error::overflow);
    }
    digits.negative = value < 0;
    if (value == 0) {
        return digits;
    }
    if (places == 15 && std::isnormal(value)) {
        read_fifteen(std::abs(value), digits);
    } else {
        read_exact(std::abs(value), places, digits);
    }
    drop_trailing_zeros(digits);
    return digits;
}

}  // namespace

DecimalDigits digits_of(Double value) {
    return to_significant(value, 15);
}

DecimalDigits digits_of(Single value) {
    return to_significant(static_cast<Double>(value), 7);
}

std::optional<Currency> short_decimal(Double value) noexcept {
    constexpr Double fifteen_digits = 1e15;
    const Double product = value * 10000;
    if (!(product > -fifteen_digits && product < fifteen_digits)) {
        return std::nullopt;
    }
    const auto count = static_cast<std::int64_t>(product + (product < 0 ? -0.5 : 0.5));
    // Both are exact, so that the quotient is the Double nearest to the amount. Different amounts
    // of fifteen digits have different nearest Doubles: if it is `value`, no other amount is.
    if (static_cast<Double>(count) / 10000 != value) {
        return std::nullopt;
    }
    return Currency::raw(count);
}

DecimalDigits digits_of(const Decimal& value) {
    constexpr std::uint32_t group = 1'000'000'000;
    std::uint32_t words[] = {value.high, value.middle, value.low};
    char text[4 * 9];
    char* at = text + sizeof text;
    while (at != text) {
        std::uint64_t remainder = 0;
        for (std::uint32_t& word : words) {
            const std::uint64_t dividend = (remainder << 32) | word;
            word = static_cast<std::uint32_t>(dividend / group);
            remainder = dividend % group;
        }
        for (int i = 0; i < 9; ++i) {
            *--at = static_cast<char>('0' + remainder % 10);
            remainder /= 10;
        }
    }
    const char* end = text + sizeof text;
    const char* first =
        std::find_if(static_cast<const char*>(text), end, [](char digit) { return digit != '0'; });
    DecimalDigits digits;
    digits.count = static_cast<std::uint8_t>(std::copy(first, end, digits.buffer) - digits.buffer);
    digits.negative = value.negative && digits.count > 0;
    digits.point = digits.count - value.scale;
    return digits;
}

Decimal decimal_of(std::string_view digits, std::uint8_t scale, bool negative) {
    std::uint32_t words[] = {0, 0, 0};
    for (const char digit : digits) {
        auto carry = static_cast<std::uint64_t>(digit - '0');
        for (auto word = std::rbegin(words); word != std::rend(words); ++word) {
            carry += std::uint64_t{*word} * 10;
            *word = static_cast<std::uint32_t>(carry & 0xFFFFFFFF);
            carry >>= 32;
        }
        if (carry != 0) {
            fail(error::overflow);
        }
    }
    return {words[0], words[1], words[2], scale, negative};
}

}  // namespace kvarta16
