// The language in which the tool tells things to a person, and days as a person writes them.
#pragma once

#include <optional>
#include <string>

#include <kvarta16/frame/types.h>

namespace kvarta16::tool {

struct Words {
    StringView polish;
    StringView english;
};

// The language asked for, "pl" or "en", or that of the messages of the environment.
[[nodiscard]] bool is_polish(const std::optional<std::string>& language);

// A day of the command line, as 2024-05-17. Throws UsageError.
[[nodiscard]] Date day_argument(const std::string& word);

}  // namespace kvarta16::tool
