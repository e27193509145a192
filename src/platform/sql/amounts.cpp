#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>

#include <kvarta16/platform/sql/amounts.h>

namespace kvarta16::sql {
namespace {

constexpr std::int64_t counts_a_unit = 10'000;

bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

std::string_view without_blanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// Divides the 96-bit number by ten and answers the remainder.
char take_digit(Decimal& value) {
    std::uint64_t rest = 0;
    for (std::uint32_t* part : {&value.high, &value.middle, &value.low}) {
        rest = (rest << 32) | *part;
        *part = static_cast<std::uint32_t>(rest / 10);
        rest %= 10;
    }
    return static_cast<char>('0' + rest);
}

}  // namespace

std::optional<Currency> parse_amount(std::string_view text) noexcept {
    text = without_blanks(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    // Summed up below zero, where the range is larger by one.
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    std::int64_t count = 0;
    int decimals = -1;
    bool any = false;
    const auto append = [&count](char c) {
        const std::int64_t digit = c - '0';
        if (count < (least + digit) / 10) {
            return false;
        }
        count = count * 10 - digit;
        return true;
    };
    for (const char c : text) {
        if ((c == '.' || c == ',') && decimals < 0) {
            decimals = 0;
        } else if (!is_digit(c) || (decimals == 4 && c != '0')) {
            return std::nullopt;
        } else if (any = true; decimals < 4) {
            if (!append(c)) {
                return std::nullopt;
            }
            decimals += decimals >= 0 ? 1 : 0;
        }
    }
    for (decimals = std::max(decimals, 0); decimals < 4; ++decimals) {
        if (!append('0')) {
            return std::nullopt;
        }
    }
    if (!any || (!negative && count == least)) {
        return std::nullopt;
    }
    return Currency::raw(negative ? count : -count);
}

std::string amount_text(Currency amount) {
    char digits[20];
    // The magnitude of the least amount does not fit into the signed type.
    const auto raw = static_cast<std::uint64_t>(amount.count);
    const std::uint64_t magnitude = amount.count < 0 ? 0 - raw : raw;
    const auto [end, code] =
        std::to_chars(std::begin(digits), std::end(digits), magnitude / counts_a_unit);
    std::string text = amount.count < 0 ? "-" : "";
    text.append(std::begin(digits), end);
    auto decimals = static_cast<unsigned>(magnitude % counts_a_unit);
    if (decimals != 0) {
        char four[] = {'.', '0', '0', '0', '0'};
        for (std::size_t i = 4; i > 0; --i, decimals /= 10) {
            four[i] = static_cast<char>('0' + decimals % 10);
        }
        text.append(four, 5);
        text.erase(text.find_last_not_of('0') + 1);
    }
    return text;
}

std::string amount_text(Decimal value) {
    std::string backwards;
    while ((value.high | value.middle | value.low) != 0 || backwards.size() <= value.scale) {
        backwards += take_digit(value);
    }
    std::string text(backwards.rbegin(), backwards.rend());
    if (value.scale > 0) {
        text.insert(text.size() - value.scale, ".");
        text.erase(text.find_last_not_of('0') + 1);
        text.erase(text.find_last_not_of('.') + 1);
    }
    return value.negative ? "-" + text : text;
}

}  // namespace kvarta16::sql
