// Wherein the servers differ, as far as the adapter's statements are concerned. Everything else is
// the common language of ODBC: quoting by the driver's own character, {ts '...'} for moments,
// parameters for values.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include <kvarta16/frame/export.h>

namespace kvarta16::odbc {

// A hidden column that tells a row of a table without a primary key from its like.
struct RowMark {
    std::string_view selected;
    std::string_view matched;
};

// What a statement that stores a row can give back of it.
enum class Returned : unsigned char { Nothing, OfInsert, OfInsertAndUpdate };

// How a table is declared that is made for the library's values.
struct ColumnTypes {
    std::string_view number;  // of 16 bits
    std::string_view date;    // with the time of day
    std::string_view money;   // four decimals
    std::string_view truth;
};

struct Dialect {
    // What the name of the database product begins with, as its driver tells it.
    std::string_view product;

    // Between which names stand; nothing: as the driver says.
    std::string_view quote = {};
    bool has_limit = false;                 // "limit n" ends a select; otherwise the reading stops
    bool has_truth_type = false;            // true and false are no numbers
    bool dates_are_text = false;            // in its files; and true is stored as -1
    bool tables_end_a_transaction = false;  // making one commits what was begun before

    // A column as a moment, with "@" for it. Where dates are text for each column that is compared
    // with a moment, elsewhere for text columns. Nothing: as it is.
    std::string_view moment = {};

    std::string_view default_row = " default values";  // behind "insert into", for no values
    Returned returned = Returned::Nothing;
    std::string_view inserted_row = {};  // the condition that finds the row inserted last
    std::span<const RowMark> row_marks = {};
    std::string_view one_row = {};  // ends an update that is to change one of several equal rows

    std::span<const std::string_view> on_connect = {};  // statements that set up a connection
    // Names the columns of a table (a parameter) that hold truth values under a number's type.
    std::string_view truth_columns = {};
    std::string_view current_schema = {};

    ColumnTypes types = {"SMALLINT", "TIMESTAMP", "DECIMAL(19,4)", "SMALLINT"};
};

// The dialect of a product; one of the common language for a product that is not known.
[[nodiscard]] KVARTA16_EXPORT const Dialect& dialect_of(std::string_view product) noexcept;

// A name between the driver's quoting characters.
[[nodiscard]] KVARTA16_EXPORT std::string quoted_name(std::string_view utf8_name,
                                                      std::string_view quote);

}  // namespace kvarta16::odbc
