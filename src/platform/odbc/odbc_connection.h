// Database servers, and files of other engines, through their ODBC drivers: the ADO seam on
// unixODBC.
//
//   const auto db = odbc::connect("DRIVER={PostgreSQL Unicode};SERVER=...;DATABASE=...;UID=...");
//   if (!db->table_exists(u"S_ODSETKI")) {
//       db->execute("create table S_ODSETKI (Rodzaj SMALLINT, od_dnia TIMESTAMP, ...)");
//   }
//   Akt().Ustaw_oDSETKI_uSTAWOWE(db, false, true);
//
// Recordsets take `select` statements of the two dialects that the library and its callers send,
// Jet and ODBC escapes (sql/parser.h has the grammar), and write them as the server takes them
// (select_writer.h), which the adapter knows by the product that the driver names
// (odbc_dialect.h). What is written goes through AddNew, PutValue and UpdateBatch, by parameters.
//
// Names match without case, and stand in the server's statements as the server spells them. Every
// failure has a number that callers of this family of engines know and an English text with the
// state and the message of the driver (odbc_errors.cpp has the list); a password is shown in none.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/ado.h>
#include <kvarta16/platform/odbc/odbc_dialect.h>

namespace kvarta16::odbc {

struct ConnectOptions {
    int timeout_s = 15;  // how long to wait for the server to answer
};

// A connection to one server, on the thread that made it. What it stores is as durable as the
// server makes a committed transaction.
class KVARTA16_EXPORT OdbcConnection : public ado::Connection {
  public:
    // Runs one statement in the server's own SQL (UTF-8). Rows that it gives are dropped.
    virtual void execute(std::string_view sql) = 0;

    // Whether the server has a table or view of this name, in any case.
    [[nodiscard]] virtual bool table_exists(StringView name) = 0;

    // How the server declares columns, and what else is its own.
    [[nodiscard]] virtual const Dialect& dialect() = 0;
};

// Connects by a data source's name or by a connection string, in UTF-8. Fails, among others: 3151
// no such data source or driver, no server, no answer; 3029 the name or password is not accepted;
// 3001 an empty name.
[[nodiscard]] KVARTA16_EXPORT std::shared_ptr<OdbcConnection> connect(std::string_view utf8_name,
                                                                      ConnectOptions options = {});

// A connection's name without what is nobody else's business, for messages: the data source, or
// the attributes of a connection string that say where it leads.
[[nodiscard]] KVARTA16_EXPORT std::string shown_name(std::string_view utf8_name);

}  // namespace kvarta16::odbc
