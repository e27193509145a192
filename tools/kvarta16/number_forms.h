// Numbers as they travel in JSON and on a command line, whatever the locale: with a dot. Money and
// decimals are read and written exactly.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::tool {

// Whether a text has the form of a JSON number: no sign but "-", no leading zero, digits on both
// sides of a dot, an exponent or none.
[[nodiscard]] bool is_json_number(std::string_view text) noexcept;

// "-12.5": a sign, digits, and a dot with one to four decimals. Nothing for any other text and
// beyond the range of Currency.
[[nodiscard]] std::optional<Currency> read_currency(std::string_view text);

// The same form with up to 28 decimals, all of which are kept as the scale ("1.50" has two).
// Nothing for any other text and beyond 96 bits.
[[nodiscard]] std::optional<Decimal> read_decimal(std::string_view text);

// Always four decimals: "1.1300".
[[nodiscard]] std::string currency_text(Currency value);

// As many decimals as the scale says.
[[nodiscard]] std::string decimal_text(const Decimal& value);

}  // namespace kvarta16::tool
