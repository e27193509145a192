// A second reader and writer of numbers, for the oracles alone: every number is a row of decimal
// digits in a string, nothing is rounded before it must be, and nothing is shared with the library.
// The settings are the Polish ones: comma, no-break space, "zł".
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::fuzz {

// digits * 10^exponent; the digits are without leading zeros, "" is zero.
struct ExactNumber {
    bool negative = false;
    std::string digits;
    std::int64_t exponent = 0;

    [[nodiscard]] bool is_zero() const { return digits.empty(); }
};

// The number of a text, all of it by the grammar of numeric texts; nothing for any other text.
[[nodiscard]] std::optional<ExactNumber> second_numeric_text(StringView text);

// The number at the front of a text that ValPrefix reads.
[[nodiscard]] ExactNumber second_prefix(StringView text);

// A Double at 15 significant digits, a Single at 7, correctly rounded.
[[nodiscard]] ExactNumber second_digits(Double value);
[[nodiscard]] ExactNumber second_digits(Single value);
[[nodiscard]] ExactNumber exact(std::int64_t count, std::int64_t exponent = 0);
[[nodiscard]] ExactNumber exact(const Decimal& value);

[[nodiscard]] Double second_double(const ExactNumber& number);

// What becomes of a tie.
enum class Tie : std::uint8_t { to_even, away };

// The whole number nearest to number * 10^power, as digits without a sign; "" is zero.
[[nodiscard]] std::string second_rounded(const ExactNumber& number, std::int64_t power, Tie tie);

// The same to even within `least` and `most`; nothing beyond them.
[[nodiscard]] std::optional<std::int64_t> second_whole(const ExactNumber& number,
                                                       std::int64_t power, std::int64_t least,
                                                       std::int64_t most);

// The text of a number: its digits at the places where they stand, without trailing zeros, the
// comma where there are decimals; with an exponent from 10^`places` up and below 0.0001, or never.
inline constexpr std::int64_t no_exponent = std::numeric_limits<std::int64_t>::max();
[[nodiscard]] String second_text(const ExactNumber& number, std::int64_t places);

[[nodiscard]] String utf16(std::string_view ascii);

}  // namespace kvarta16::fuzz
