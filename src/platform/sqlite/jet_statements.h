// Runs the statements of the dialects that give no rows.
#pragma once

#include <optional>

#include <kvarta16/platform/sqlite/sqlite_database.h>

namespace kvarta16::sqlite {

// What a statement has dropped: a column, or a table if `column` is empty.
struct Dropped {
    String table;
    String column;
};

// Runs one statement (sql/parser.h has the grammar), all of it or, if it fails, nothing. Durable
// when it returns, unless the caller's transaction is open. Answers what it has dropped. A column
// that an insert leaves out gets its default; Now() in a statement or default is the platform's
// clock.
//
// Fails: 3065 a select, 3078 no such table, 3061 no such column, 3127 no such column to insert
// into, 3346 more or fewer values than columns, 3421 and 3163 a value that its column cannot have,
// as the parser, as the changes of tables (table_changes.h), and as the engine (3315 an empty text,
// 3314 a missing value, 3022 a duplicate, 3027 a read-only file, 3260 a locked one).
std::optional<Dropped> execute_statement(Database& database, StringView statement);

}  // namespace kvarta16::sqlite
