#include "databases.h"

#include <optional>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/sqlite/sqlite_connection.h>

#include "usage_error.h"

namespace kvarta16::tool {
namespace {

constexpr std::string_view sqlite_scheme = "sqlite:";
constexpr std::string_view odbc_scheme = "odbc:";

// What stands behind a scheme; nothing for names of others, and where nothing stands there.
std::optional<std::string_view> behind(std::string_view scheme, std::string_view name) noexcept {
    if (!name.starts_with(scheme) || name.size() == scheme.size()) {
        return std::nullopt;
    }
    return name.substr(scheme.size());
}

// A Windows path lies on the drive as the files of the platform have it; any other is the system's.
std::string system_path(std::string_view path) {
    const bool is_windows =
        path.size() > 2 && path[1] == ':' && (path[2] == '\\' || path[2] == '/');
    return is_windows ? platform().files->native_path(from_utf8(path)) : std::string(path);
}

class SqliteDatabase final : public Database {
  public:
    SqliteDatabase(std::string_view path, Use use)
        : db_(sqlite::connect(system_path(path),
                              {.create = use == Use::Filling, .read_only = use == Use::Reading})) {}

    std::shared_ptr<ado::Connection> connection() override { return db_; }
    bool table_exists(StringView name) override { return db_->table_exists(name); }
    void execute(std::string_view sql) override { db_->execute(sql); }
    ColumnWords column_words() override { return {"SMALLINT", "DATETIME", "CURRENCY", "BOOLEAN"}; }
    bool takes_tables_back() override { return true; }

  private:
    std::shared_ptr<sqlite::SqliteConnection> db_;
};

}  // namespace

bool names_database(std::string_view name) noexcept {
    return behind(sqlite_scheme, name) || behind(odbc_scheme, name);
}

std::string shown_database(std::string_view name) {
    if (const auto connection_name = behind(odbc_scheme, name)) {
        return std::string(odbc_scheme) + shown_odbc(*connection_name);
    }
    if (behind(sqlite_scheme, name)) {
        return std::string(name);
    }
    // Perhaps a connection string that is not said to be one.
    return std::string(name.substr(0, name.find_first_of("=;")));
}

std::shared_ptr<Database> open_database(std::string_view name, Use use) {
    if (const auto path = behind(sqlite_scheme, name)) {
        return std::make_shared<SqliteDatabase>(*path, use);
    }
    if (const auto connection_name = behind(odbc_scheme, name)) {
        return open_odbc(*connection_name);
    }
    throw UsageError("\"" + shown_database(name) + "\" names no database: give " +
                     std::string(database_form));
}

}  // namespace kvarta16::tool
