// The numeric text: one reader for every coercion of a text to a number. Private to the value
// layer.
#pragma once

#include <optional>

#include <kvarta16/frame/locale.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// A number as text gives it: digits up to nineteen in a machine word, so that money is made of it
// without a detour, and what is behind them remembered exactly enough for rounding.
struct NumericText {
    bool negative = false;
    bool beyond_word = false;    // a hexadecimal or octal number of more than 64 bits
    std::uint8_t base = 10;      // 16 and 8 have whole numbers only
    std::uint64_t mantissa = 0;  // the first nineteen significant digits
    std::int32_t exponent = 0;   // the number is (mantissa + tail) times ten to this power
    // The digits behind the nineteenth, as a part of one: the first of them, and whether any
    // other than 0 follows it.
    std::uint8_t tail_digit = 0;
    bool tail_rest = false;
    std::int32_t last_exponent = 0;  // the power of the last digit of `digits`
    StringView digits;               // all digits as they stand, with their separators
};

// Takes apart a text that is numeric under the settings, all of it; nothing if it is not.
[[nodiscard]] std::optional<NumericText> read_numeric_text(StringView text, const Locale& settings);

// The amount of a text as nearly all amounts are written: an optional "-", digits, and at most four
// decimals, nothing else and not too long. Nothing for any other text, which is then for
// read_numeric_text; where both read a text they read the same.
[[nodiscard]] std::optional<Currency> read_plain_amount(StringView text,
                                                        char16_t decimal_separator) noexcept;

// The number times ten to `power`, to the nearest whole, a tie to the even one. Fails: 6 beyond
// 64 bits.
[[nodiscard]] std::int64_t scaled(const NumericText& number, std::int32_t power);

// The nearest Double. Infinite beyond its range.
[[nodiscard]] Double nearest_double(const NumericText& number);

// The number at the start of a text, by the rules of ValPrefix.
[[nodiscard]] Double read_prefix(StringView text);

// A 96-bit decimal as such a number: exact.
[[nodiscard]] NumericText number_of(const Decimal& value);

}  // namespace kvarta16
