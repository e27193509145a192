// Changes of tables, columns and indexes, as the statements of the Jet dialect and the DAO objects
// ask for them. Each is done within Database::change(), all of it or nothing.
//
// Everything about a column stands in the table's own text, so that it holds for every program that
// writes the file, and goes with the table and the column wherever they go: the type and size as
// the declared type (field_types.h), the default as the engine's DEFAULT, a size and the refusal of
// the empty text as CHECKs (table_text.h). A default whose expression cannot be told from the
// engine's own has the text that was given in a comment before it.
//
// Indexes have names of their own on each table in the dialect, and one name in the whole file in
// the engine: index "i" of table "T" is "T.i" in the file, or another prefix before the last dot.
#pragma once

#include <kvarta16/platform/sql/tree.h>
#include <kvarta16/platform/sqlite/sqlite_database.h>

namespace kvarta16::sqlite {

// The table of a statement; views and the adapter's own tables are none. Fails: 3078.
[[nodiscard]] std::shared_ptr<const Table> table_of(Database& database, const sql::Name& name);

// The default of a column as its expression in the dialect, "" for none.
[[nodiscard]] String default_text(const Column& column);

// Whether the columns of a table may hold the empty text.
[[nodiscard]] bool allows_zero_length(Database& database, const Table& table, const Column& column);

// ---- Within Database::change() -----------------------------------------------------------------

// Fails: 3010 the table exists, 3125 a name that cannot be, 3191 a column twice, 3283 two primary
// keys, 3801 two counters, 3409 a key over a column that is none, 3421 a default that the column
// cannot have.
void apply(Database& database, const sql::CreateTable& statement);
// Fails: 3376 no such table.
void apply(Database& database, const sql::DropTable& statement);
// Fails: 3284 the table has an index of that name, 3409 no such column, 3022 rows that are equal.
void apply(Database& database, const sql::CreateIndex& statement);
// Fails: 3372 no such index, 3281 the primary key that the table was made with.
void apply(Database& database, const sql::DropIndex& statement);
// The column comes last; Null in the rows that are there. Fails: 3380 the column exists, 3293 a
// counter.
void apply(Database& database, const sql::AddColumn& statement);
// Fails: 3381 no such column, 3280 an index needs it.
void apply(Database& database, const sql::DropColumn& statement);
// Gives a column another type and size; its values are converted. Fails: 3381, 3421 and 3163 a
// value that cannot be.
void apply(Database& database, const sql::AlterColumn& statement);

// Fails: 3010 another table has the name, 3125.
void rename_table(Database& database, const Table& table, StringView name);

// The rows that are there stay as they are. Fails: 3421 a default that the column cannot have, and
// as the parser for a text that is no value.
void set_default(Database& database, const Table& table, const Column& column, StringView text);
void set_allow_zero_length(Database& database, const Table& table, const Column& column,
                           bool allow);

}  // namespace kvarta16::sqlite
