#include "language.h"

#include <cstdlib>
#include <string_view>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>

#include "usage_error.h"

namespace kvarta16::tool {

bool is_polish(const std::optional<std::string>& language) {
    if (language) {
        return *language == "pl";
    }
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return std::string_view(value).starts_with("pl");
        }
    }
    return false;
}

Date day_argument(const std::string& word) {
    const Variant day = from_utf8(word);
    if (!IsDateValue(day)) {
        throw UsageError("\"" + word + "\" is no date; write it as 2024-05-17");
    }
    return ToDate(day);
}

}  // namespace kvarta16::tool
