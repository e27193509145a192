// Reads the statements that the library and its callers send, in the Jet and the ODBC-escape
// dialect, and writes them for the engine.
//
//   statement  = "select" ["top" count] ("*" | column {"," column}) "from" name
//                ["where" condition] ["order" "by" column ["asc" | "desc"] {"," ...}] [";"]
//   condition  = conjunction {"or" conjunction}
//   conjunction = negation {"and" negation}
//   negation   = "not" negation | predicate
//   predicate  = operand [("=" | "<>" | "<" | ">" | "<=" | ">=") operand
//              | "is" ["not"] "null" | ["not"] "between" operand "and" operand
//              | ["not"] "in" "(" operand {"," operand} ")"]
//   operand    = column | "(" condition ")" | ["-" | "+"] number | text | "true" | "false" | "null"
//              | "#" date "#" | "{d" text "}" | "{ts" text "}" | "{t" text "}"
//              | "now" "(" ")" | "{fn" "now" "(" ")" "}"
//   column, name = [owner "." [owner "."]] word or [name in brackets]
//
// Keywords and names match in any case. A column alone is a condition: whether it is true. Owners
// before a table's name are passed over, before a column they must be the table. What is not in
// the grammar is refused (3075) with the place; an unknown table is 3078, an unknown column 3061.
//
// How a comparison is made follows from what is compared:
//   * with a date, or on a date column: as moments, so that ISO text with or without a time, with a
//     "T", or a number of days match alike; to whole seconds, unless a date that is written in the
//     statement has a fraction. "Up to 23:59:59" so takes in the whole of that second;
//   * with true or false, or on a truth column with a number: as truth values;
//   * a number with a column that may hold numbers in other forms (money, text): as numbers;
//   * everything else as the engine compares it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <kvarta16/platform/sqlite/sqlite_schema.h>

namespace kvarta16::sqlite {

struct Translation {
    // Selects the columns and, behind them, the table's key. Equal for statements that differ in
    // their values alone.
    std::string sql;
    std::vector<Cell> parameters;

    std::shared_ptr<const Table> table;
    struct Result {
        String name;           // as the statement gives it
        const Column* column;  // of the table
    };
    std::vector<Result> columns;
};

// The functions that the translation calls; the connection provides them.
inline constexpr const char* seconds_function = "kvarta16_seconds";
inline constexpr const char* milliseconds_function = "kvarta16_milliseconds";
inline constexpr const char* number_function = "kvarta16_number";
inline constexpr const char* truth_function = "kvarta16_truth";

// Now() is read from the platform's clock.
[[nodiscard]] Translation translate(StringView statement, Schema& schema);

}  // namespace kvarta16::sqlite
