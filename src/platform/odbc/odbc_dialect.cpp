#include <kvarta16/platform/odbc/odbc_dialect.h>

namespace kvarta16::odbc {
namespace {

// The place of a row in its table and the transaction that wrote it there: together they tell one
// version of one row.
constexpr RowMark postgresql_marks[] = {{"tableoid", "tableoid=cast(? as oid)"},
                                        {"ctid", "ctid=cast(? as tid)"},
                                        {"xmin", "xmin=cast(? as xid)"}};

constexpr RowMark sqlite_marks[] = {{"_rowid_", "_rowid_=?"}};

// A server that is not strict cuts what does not fit and says so in a warning alone.
constexpr std::string_view be_strict[] = {
    "set session sql_mode=concat(@@session.sql_mode,',STRICT_ALL_TABLES')"};

// BOOLEAN is another word for it there, and the driver tells it from other numbers of one byte in
// no way.
constexpr std::string_view tinyint_columns =
    "select column_name from information_schema.columns where table_schema=database() and "
    "table_name=? and column_type like 'tinyint(1)%'";

constexpr ColumnTypes mariadb_types = {"SMALLINT", "DATETIME", "DECIMAL(19,4)", "BOOLEAN"};

constexpr Dialect dialects[] = {
    {.product = "PostgreSQL",
     .has_limit = true,
     .has_truth_type = true,
     .moment = "cast(@ as timestamp)",
     .returned = Returned::OfInsertAndUpdate,
     .row_marks = postgresql_marks,
     .current_schema = "select current_schema()",
     .types = {"SMALLINT", "TIMESTAMP", "NUMERIC(19,4)", "BOOLEAN"}},
    {.product = "MariaDB",
     .has_limit = true,
     .tables_end_a_transaction = true,
     .default_row = " values()",
     .returned = Returned::OfInsert,
     .one_row = " limit 1",
     .on_connect = be_strict,
     .truth_columns = tinyint_columns,
     .types = mariadb_types},
    {.product = "MySQL",
     .has_limit = true,
     .tables_end_a_transaction = true,
     .default_row = " values()",
     .one_row = " limit 1",
     .on_connect = be_strict,
     .truth_columns = tinyint_columns,
     .types = mariadb_types},
    {.product = "SQLite",
     .quote = "`",  // a name in " that is no column is a text there
     .has_limit = true,
     .dates_are_text = true,
     // A number is days, which the engine counts from another beginning.
     .moment = "strftime('%Y-%m-%d %H:%M:%f',"
               "case typeof(@) when 'text' then @ else @+2415018.5 end)",
     .inserted_row = "_rowid_=last_insert_rowid()",
     .row_marks = sqlite_marks,
     .types = {"SMALLINT", "DATETIME", "CURRENCY", "BOOLEAN"}},
};

constexpr Dialect common = {};

}  // namespace

const Dialect& dialect_of(std::string_view product) noexcept {
    for (const Dialect& dialect : dialects) {
        if (product.starts_with(dialect.product)) {
            return dialect;
        }
    }
    return common;
}

std::string quoted_name(std::string_view utf8_name, std::string_view quote) {
    std::string quoted(quote);
    for (const char c : utf8_name) {
        quoted += c;
        if (quote.size() == 1 && c == quote.front()) {
            quoted += c;
        }
    }
    return quoted.append(quote);
}

}  // namespace kvarta16::odbc
