// The embedded database: the ADO seam on SQLite files. The object of a connection is a database of
// the DAO seam as well (sqlite_engine.h), and can be given wherever one is wanted.
//
//   const auto db = sqlite::connect("firma.db", {.create = true});
//   if (!db->table_exists(u"S_ODSETKI")) {
//       db->execute("create table S_ODSETKI (Rodzaj INTEGER, od_dnia DATETIME, procent CURRENCY)");
//   }
//   Akt().Ustaw_oDSETKI_uSTAWOWE(db, false, true);
//
// Recordsets take `select` statements of the two dialects that the library and its callers send,
// Jet and ODBC escapes (sql_translator.h has the grammar), and nothing else; what is written goes
// through AddNew, PutValue and UpdateBatch. execute() is the host's own way in, for tables and
// queries in the engine's own SQL.
//
// Every failure has a number that callers of this family of engines know and an English text that
// names the file, table or column (sqlite_errors.cpp has the list). A failed operation stores
// nothing.
#pragma once

#include <memory>
#include <string_view>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/ado.h>

namespace kvarta16::sqlite {

struct OpenOptions {
    bool create = false;         // make the file if there is none; without it that is a failure
    bool read_only = false;      // writing fails (3027); the file and its folder stay untouched
    int busy_timeout_ms = 5000;  // how long to wait for a file that another program has locked
};

// A connection to one file, on the thread that made it. Each row that is stored is synced to the
// disk. A file that is still empty is filled through a write-ahead log and has a rollback journal
// again when the connection ends; any other file keeps the mode that it has.
class KVARTA16_EXPORT SqliteConnection : public ado::Connection {
  public:
    // Runs statements, separated by ";", in SQLite's own SQL (UTF-8). Rows that they give are
    // dropped. Outside a transaction each statement is durable by itself; BEGIN, COMMIT and
    // ROLLBACK count as BeginTrans, CommitTrans and RollbackTrans. The first statement that fails
    // ends the call; those before it stay.
    virtual void execute(std::string_view sql) = 0;

    // Whether the file has a table or view of this name, in any case, Polish letters included.
    [[nodiscard]] virtual bool table_exists(StringView name) = 0;

    // How many rows a table or view has. Fails: 3078 there is none of this name.
    [[nodiscard]] virtual std::int64_t row_count(StringView table) = 0;
};

// Opens a database file by its path in UTF-8; the path is always a file's, also if it begins with
// "file:" or is ":memory:". The file is read at once, so that one that is no database fails here.
// Fails, among others: 3024 no such file, 3044 no such folder or no path at all, 3051 a folder or
// no permission, 3343 no database, 3428 damaged, 3260 locked for longer than the time-out.
[[nodiscard]] KVARTA16_EXPORT std::shared_ptr<SqliteConnection> connect(std::string_view utf8_path,
                                                                        OpenOptions options = {});

}  // namespace kvarta16::sqlite
