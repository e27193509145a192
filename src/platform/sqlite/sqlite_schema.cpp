#include <kvarta16/platform/sqlite/sqlite_schema.h>

namespace kvarta16::sqlite {

std::string quoted_name(std::string_view utf8_name) {
    std::string quoted = "\"";
    for (const char c : utf8_name) {
        quoted.append(c == '"' ? 2 : 1, c);
    }
    return quoted + '"';
}

}  // namespace kvarta16::sqlite
