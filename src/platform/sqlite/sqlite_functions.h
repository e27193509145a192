// The SQL functions that translated statements call (jet_writer.h). Some give the values of a
// column in one form, whatever form they are stored in, and NULL for those that have no such form;
// the others convert and compute, and fail as jet_values.h tells.
#pragma once

#include <sqlite3.h>

#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16::sqlite {

// Makes the functions known to a connection. Answers the engine's result code.
[[nodiscard]] int register_functions(sqlite3* db) noexcept;

// A value of the engine's, copied. Throws std::bad_alloc where the engine has no memory.
[[nodiscard]] Cell cell_of(sqlite3_value* value);

}  // namespace kvarta16::sqlite
