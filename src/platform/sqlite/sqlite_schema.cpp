#include <algorithm>

#include <kvarta16/frame/text.h>
#include <kvarta16/platform/sqlite/sqlite_schema.h>

namespace kvarta16::sqlite {

bool same_name(StringView a, StringView b) noexcept {
    return std::ranges::equal(
        a, b, [](char16_t x, char16_t y) { return x == y || lower_case(x) == lower_case(y); });
}

std::string quoted_name(std::string_view utf8_name) {
    std::string quoted = "\"";
    for (const char c : utf8_name) {
        quoted.append(c == '"' ? 2 : 1, c);
    }
    return quoted + '"';
}

}  // namespace kvarta16::sqlite
