// What the adapter knows of the tables of a file: the names as they are spelled there, and what
// the declared types make of the values.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16::sqlite {

struct Column {
    String name;
    std::string sql;  // quoted for the engine
    ColumnKind kind = ColumnKind::Plain;
    Affinity affinity = Affinity::Blob;
};

struct Table {
    String name;
    std::string sql;  // quoted, with its schema
    std::vector<Column> columns;
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

// Names compare without case, Polish letters included, which the engine itself does not do.
[[nodiscard]] bool same_name(StringView a, StringView b) noexcept;

// The element of `list` whose member `name` is spelled like this, else the one that differs in
// case alone, else the end.
template <class List>
[[nodiscard]] auto find_name(const List& list, StringView name) {
    for (auto at = list.begin(); at != list.end(); ++at) {
        if (at->name == name) {
            return at;
        }
    }
    for (auto at = list.begin(); at != list.end(); ++at) {
        if (same_name(at->name, name)) {
            return at;
        }
    }
    return list.end();
}

// A name in double quotes, as the engine takes any name.
[[nodiscard]] std::string quoted_name(std::string_view utf8_name);

}  // namespace kvarta16::sqlite
