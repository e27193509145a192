// Translates the selects that recordsets are opened by, in the Jet and the ODBC-escape dialect, for
// the engine: columns of one table (sql/parser.h has the grammar, jet_writer.h how comparisons are
// made).
//
// A column alone is a condition: whether it is true. Owners before a table's name are passed over,
// before a column they must be the table. What is not in the grammar is refused (3075) with the
// place; an unknown table is 3078, an unknown column 3061.
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

// Now() is read from the platform's clock.
[[nodiscard]] Translation translate(StringView statement, Schema& schema);

}  // namespace kvarta16::sqlite
