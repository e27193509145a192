// Writes a select statement of the library's dialects as the server takes it.
//
// How a comparison is made follows from what is compared:
//   * with a date, or a date column with a text that is one: as moments; to whole seconds, unless
//     a date that is written in the statement has a fraction, so that "up to 23:59:59" takes in
//     the whole of that second. The column stands alone, so that the server can use an index. A
//     column of numbers is compared as one of days;
//   * with true or false, or a truth column with a number: as truth values;
//   * everything else as the server compares it.
// Owners before a table's name choose among tables of one name and are passed over where there is
// but one; before a column they must be the table.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <kvarta16/platform/odbc/odbc_dialect.h>
#include <kvarta16/platform/odbc/odbc_values.h>
#include <kvarta16/platform/sql/tree.h>

namespace kvarta16::odbc {

// A value for a "?" of a statement, and the column that it is for; nothing for a text.
struct Argument {
    Cell value;
    const Column* column = nullptr;
};

struct Query {
    // Selects the columns and, behind them, what identifies the row.
    std::string sql;
    std::vector<Argument> arguments;
    std::optional<std::int64_t> most_rows;

    std::shared_ptr<const Table> table;
    struct Result {
        String name;           // as the statement gives it
        const Column* column;  // of the table
    };
    std::vector<Result> columns;
};

// `select` is one of columns alone, as sql::parse_select gives it. Fails: 3061 an unknown column,
// 3075 a condition that has no meaning or that servers do not understand alike (arithmetic, like),
// 3078 an unknown table.
[[nodiscard]] Query write_query(const sql::Select& select, Schema& schema, const Dialect& dialect);

// What a select must list to read the columns of a query and its row's identity.
[[nodiscard]] std::string selected_list(const Query& query);

}  // namespace kvarta16::odbc
