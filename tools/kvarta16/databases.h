// The names by which the tool opens databases: "sqlite:FILE" and "odbc:DSN-or-connection-string".
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <kvarta16/platform/ado.h>

namespace kvarta16::tool {

// How a database is named, for messages.
inline constexpr std::string_view database_form = "sqlite:FILE or odbc:DSN-or-connection-string";

// The words by which a database declares the columns of the tool's tables.
struct ColumnWords {
    std::string_view number;
    std::string_view date;
    std::string_view money;
    std::string_view truth;
};

// An open database: the library's seam, and what the tool does itself.
class Database {
  public:
    Database() = default;
    virtual ~Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    Database(Database&&) = delete;
    Database& operator=(Database&&) = delete;

    [[nodiscard]] virtual std::shared_ptr<ado::Connection> connection() = 0;
    [[nodiscard]] virtual bool table_exists(StringView name) = 0;
    // One statement in the database's own SQL.
    virtual void execute(std::string_view sql) = 0;
    [[nodiscard]] virtual ColumnWords column_words() = 0;
    // Whether a table that is made in a transaction goes away when it is rolled back.
    [[nodiscard]] virtual bool takes_tables_back() = 0;
};

// What a database is opened for. A file is made for Filling alone where there is none.
enum class Use : unsigned char { Filling, Calling, Reading };

[[nodiscard]] bool names_database(std::string_view name) noexcept;

// The name without passwords and the like, for messages.
[[nodiscard]] std::string shown_database(std::string_view name);

// Opens the database of a name that the command line gave. Throws UsageError for a name of another
// form, Failure as the database's adapter.
[[nodiscard]] std::shared_ptr<Database> open_database(std::string_view name, Use use);

// The part of the names behind "odbc:"; in a build without that adapter opening is a UsageError.
[[nodiscard]] bool opens_odbc() noexcept;
[[nodiscard]] std::shared_ptr<Database> open_odbc(std::string_view connection_name);
[[nodiscard]] std::string shown_odbc(std::string_view connection_name);

}  // namespace kvarta16::tool
