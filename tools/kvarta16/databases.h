// The names by which the tool opens databases: "sqlite:FILE".
#pragma once

#include <optional>
#include <string_view>

#include <kvarta16/platform/sqlite/sqlite_connection.h>

namespace kvarta16::tool {

// How a database is named, for messages.
inline constexpr std::string_view database_form = "sqlite:FILE";

// The path in a database's name; nothing if it names none.
[[nodiscard]] std::optional<std::string_view> database_path(std::string_view name) noexcept;

// Opens the database of a name that the command line gave. Throws UsageError for a name of another
// form, Failure as sqlite::connect.
[[nodiscard]] std::shared_ptr<sqlite::SqliteConnection> open_database(std::string_view name,
                                                                      sqlite::OpenOptions options);

}  // namespace kvarta16::tool
