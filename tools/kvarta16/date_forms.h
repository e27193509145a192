// Dates as they travel in JSON and on a command line, whatever the locale.
#pragma once

#include <optional>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::tool {

// "2024-05-17" or "2024-05-17T12:00:00", a day of the calendar in the years 100 to 9999. Nothing
// for any other text.
[[nodiscard]] std::optional<Date> read_date(std::string_view text);

}  // namespace kvarta16::tool
