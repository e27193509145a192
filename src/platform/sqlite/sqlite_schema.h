// What the adapter knows of the tables of a file: the names as they are spelled there, and what
// the declared types make of the values.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <kvarta16/platform/sql/names.h>
#include <kvarta16/platform/sqlite/field_types.h>
#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16::sqlite {

struct Column {
    String name;
    std::string sql;  // quoted for the engine
    ColumnKind kind = ColumnKind::Plain;
    Affinity affinity = Affinity::Blob;
    FieldType type = {};
    std::string default_sql = {};  // as the engine has it, "" for none
};

struct Table {
    String name;
    std::string sql;  // quoted, with its schema
    std::vector<Column> columns;
    bool is_view = false;
    // The quoted columns that identify a row: the row's hidden number or the primary key. Empty
    // for a view, and for the rare table that hides all names of the number.
    std::vector<std::string> key;
};

// Where the translator looks up the names of a statement.
class Schema {
  public:
    virtual ~Schema() = default;
    // The table or view of that name, in any case; an empty pointer if there is none.
    [[nodiscard]] virtual std::shared_ptr<const Table> find_table(StringView name) = 0;
};

using sql::find_name;
using sql::same_name;

// A name in double quotes, as the engine takes any name.
[[nodiscard]] std::string quoted_name(std::string_view utf8_name);

}  // namespace kvarta16::sqlite
