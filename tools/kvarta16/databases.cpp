#include "databases.h"

#include <string>

#include "usage_error.h"

namespace kvarta16::tool {

std::optional<std::string_view> database_path(std::string_view name) noexcept {
    constexpr std::string_view scheme = "sqlite:";
    if (!name.starts_with(scheme) || name.size() == scheme.size()) {
        return std::nullopt;
    }
    return name.substr(scheme.size());
}

std::shared_ptr<sqlite::SqliteConnection> open_database(std::string_view name,
                                                        sqlite::OpenOptions options) {
    const std::optional<std::string_view> path = database_path(name);
    if (!path) {
        throw UsageError("\"" + std::string(name) + "\" names no database: give " +
                         std::string(database_form));
    }
    return sqlite::connect(*path, options);
}

}  // namespace kvarta16::tool
