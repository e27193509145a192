// What the adapter knows of the tables of a server: the names as they are spelled there, and what
// the types of the columns make of the values.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16::odbc {

// What the values of a column are, and how they travel.
enum class ColumnKind : std::uint8_t { Whole, Real, Exact, Date, Truth, Text };

struct Column {
    String name = {};
    std::string sql = {};       // quoted
    std::string selected = {};  // what a select lists to read it
    std::string place = "?";    // what stands for its value in a statement that stores it
    ColumnKind kind = ColumnKind::Text;
    bool is_short = false;       // Whole: of 16 bits or less, read as Integer
    bool is_single = false;      // Real: read as Single
    bool is_bit = false;         // Truth: the driver passes it as one, and not as a text
    bool is_truth_type = false;  // Truth: the server does not take a number for it
    bool identifies_row = true;  // an equal value means the same to the server
};

// A part of what identifies a row: a column of the primary key, or a hidden mark of the server.
struct KeyPart {
    std::string selected;
    std::string matched;             // the condition, with a "?" for the value
    const Column* column = nullptr;  // nothing for a mark, which travels as text
};

struct Table {
    String name;
    std::string sql;  // quoted, with its owner
    bool is_view = false;
    std::vector<Column> columns;
    std::vector<KeyPart> key;  // nothing: a row is identified by all of its columns
};

// Where the writer of statements looks up tables.
class Schema {
  public:
    virtual ~Schema() = default;
    // The table or view of that name, in any case; of several the one whose owner is named, else
    // the one that the server means by the bare name. An empty pointer if there is none.
    // `names` are the owners, if any, and the name.
    [[nodiscard]] virtual std::shared_ptr<const Table> find_table(
        const std::vector<String>& names) = 0;
};

}  // namespace kvarta16::odbc
