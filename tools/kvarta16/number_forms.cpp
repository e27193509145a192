#include "number_forms.h"

#include <algorithm>
#include <limits>

namespace kvarta16::tool {
namespace {

// A text taken apart: the digits of both sides of the dot, and how many stand behind it.
struct FixedNumber {
    bool negative = false;
    std::string digits;
    std::size_t decimals = 0;
};

std::optional<FixedNumber> read_fixed(std::string_view text, std::size_t most_decimals) {
    FixedNumber number;
    number.negative = text.starts_with('-');
    text.remove_prefix(number.negative ? 1 : 0);
    const std::size_t dot = std::min(text.find('.'), text.size());
    const std::string_view decimals = text.substr(std::min(dot + 1, text.size()));
    const bool empty_side = dot == 0 || (dot < text.size() && decimals.empty());
    if (empty_side || decimals.size() > most_decimals) {
        return std::nullopt;
    }
    number.digits = std::string(text.substr(0, dot)).append(decimals);
    number.decimals = decimals.size();
    if (number.digits.find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    return number;
}

// The text of digits with a dot before the last `decimals` of them.
std::string with_dot(bool negative, std::string digits, std::size_t decimals) {
    if (digits.size() <= decimals) {
        digits.insert(0, decimals + 1 - digits.size(), '0');
    }
    if (decimals > 0) {
        digits.insert(digits.size() - decimals, 1, '.');
    }
    return negative ? '-' + digits : digits;
}

// Appends a decimal digit to the 96-bit number; false if it has no place.
bool append_digit(Decimal& number, char digit) {
    std::uint64_t carry = static_cast<std::uint64_t>(digit - '0');
    for (std::uint32_t* part : {&number.low, &number.middle, &number.high}) {
        carry += std::uint64_t{*part} * 10;
        *part = static_cast<std::uint32_t>(carry & 0xFFFFFFFF);
        carry >>= 32;
    }
    return carry == 0;
}

// Takes the last decimal digit off the 96-bit number.
char take_digit(Decimal& number) {
    std::uint64_t rest = 0;
    for (std::uint32_t* part : {&number.high, &number.middle, &number.low}) {
        rest = (rest << 32) | *part;
        *part = static_cast<std::uint32_t>(rest / 10);
        rest %= 10;
    }
    return static_cast<char>('0' + rest);
}

}  // namespace

bool is_json_number(std::string_view text) noexcept {
    const auto digits = [&text] {
        const std::size_t count = std::min(text.find_first_not_of("0123456789"), text.size());
        text.remove_prefix(count);
        return count;
    };
    if (text.starts_with('-')) {
        text.remove_prefix(1);
    }
    const bool zero = text.starts_with('0');
    const std::size_t whole = digits();
    if (whole == 0 || (zero && whole > 1)) {
        return false;
    }
    if (text.starts_with('.')) {
        text.remove_prefix(1);
        if (digits() == 0) {
            return false;
        }
    }
    if (text.starts_with('e') || text.starts_with('E')) {
        text.remove_prefix(1);
        if (text.starts_with('+') || text.starts_with('-')) {
            text.remove_prefix(1);
        }
        if (digits() == 0) {
            return false;
        }
    }
    return text.empty();
}

std::optional<Currency> read_currency(std::string_view text) {
    constexpr std::size_t currency_decimals = 4;
    std::optional<FixedNumber> number = read_fixed(text, currency_decimals);
    if (!number) {
        return std::nullopt;
    }
    number->digits.append(currency_decimals - number->decimals, '0');
    // Counted downward from 0: the lowest amount has no positive one of its size.
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    std::int64_t count = 0;
    for (const char c : number->digits) {
        const std::int64_t digit = c - '0';
        if (count < (lowest + digit) / 10) {
            return std::nullopt;
        }
        count = count * 10 - digit;
    }
    if (!number->negative && count == lowest) {
        return std::nullopt;
    }
    return Currency::raw(number->negative ? count : -count);
}

std::optional<Decimal> read_decimal(std::string_view text) {
    constexpr std::size_t largest_scale = 28;
    const std::optional<FixedNumber> number = read_fixed(text, largest_scale);
    if (!number) {
        return std::nullopt;
    }
    Decimal result;
    result.negative = number->negative;
    result.scale = static_cast<std::uint8_t>(number->decimals);
    const bool fits = std::all_of(number->digits.begin(), number->digits.end(),
                                  [&](char digit) { return append_digit(result, digit); });
    return fits ? std::optional(result) : std::nullopt;
}

std::string currency_text(Currency value) {
    std::string digits = std::to_string(value.count);
    const bool negative = digits.starts_with('-');
    digits.erase(0, negative ? 1 : 0);
    return with_dot(negative, std::move(digits), 4);
}

std::string decimal_text(const Decimal& value) {
    Decimal rest = value;
    std::string digits;
    while (rest.high != 0 || rest.middle != 0 || rest.low != 0) {
        digits += take_digit(rest);
    }
    std::reverse(digits.begin(), digits.end());
    return with_dot(value.negative, digits.empty() ? "0" : digits, value.scale);
}

}  // namespace kvarta16::tool
