// Exact amounts as decimal text, the form in which databases take and give them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::sql {

// A decimal number, with a dot or a comma, that is an amount of money exactly.
[[nodiscard]] std::optional<Currency> parse_amount(std::string_view text) noexcept;

// "-12.5": no trailing zeros, and no dot behind a whole amount.
[[nodiscard]] std::string amount_text(Currency amount);
[[nodiscard]] std::string amount_text(Decimal value);

}  // namespace kvarta16::sql
