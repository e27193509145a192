// The embedded database engine behind the DAO seam: what it calls a database is a SQLite file.
//
//   const auto db = platform().db_engine->OpenDatabase(u"C:\\dane\\firma.db");
//   db->Execute(u"alter table [TOWARY] add [UWAGI] text(255)");
//   for (const auto& table : db->TableDefs()) { ... }
//
// A program that links kvarta16::sqlite has it as the engine of its default platform without doing
// anything. Names are Windows paths, mapped by the platform's Files.
//
// Execute understands the Jet dialect (sql/parser.h). What it and the objects store about tables
// and columns stands in the file in the engine's own terms (table_changes.h), so that other
// programs read and keep it; tables that other programs have made are read by their declared types
// (field_types.h). A text column takes the empty text until AllowZeroLength says otherwise.
//
// A database is a connection of the ADO seam as well (sqlite_connection.h): its objects are given
// wherever one is wanted. Statements and properties within a transaction of that side belong to it.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/dao.h>

namespace kvarta16::sqlite {

// The engine of every thread: it keeps nothing between its calls.
//
// CreateDatabase fails: 3204 the file exists, 3044 no such folder or no path, 3051 a folder's name
// or no permission. OpenDatabase fails: 3024 no such file, 3044 no path, 3051 a folder or no
// permission, 3343 no database (a file without content included), 3428 a damaged or shortened one,
// 3260 locked by another program for longer than five seconds. A file that may only be read is
// opened; writing then fails with 3027.
[[nodiscard]] KVARTA16_EXPORT dao::DBEngine& db_engine() noexcept;

// The locale that CreateDatabase was given, kept in the file; "" in a file of another program.
[[nodiscard]] KVARTA16_EXPORT String locale_of(dao::Database& database);

}  // namespace kvarta16::sqlite
