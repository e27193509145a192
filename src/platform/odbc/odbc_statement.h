// One statement on a connection: its parameters, its run, and the values of its rows.
#pragma once

#include <cstdint>
#include <list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <kvarta16/platform/odbc/odbc_dialect.h>
#include <kvarta16/platform/odbc/odbc_errors.h>
#include <kvarta16/platform/odbc/odbc_handles.h>
#include <kvarta16/platform/odbc/select_writer.h>

namespace kvarta16::odbc {

// What the driver reports of a call that failed; the session makes a Failure of it.
struct ReportedFailure {
    Report report;
};

// Everything throws ReportedFailure where the driver reports one.
class Statement {
  public:
    Statement(SQLHDBC connection, const Dialect& dialect);

    // Runs a statement (UTF-8) with the values of its "?" in their order. False: it has changed no
    // row, and there is nothing to ask it for.
    bool execute(std::string_view sql, std::span<const Argument> arguments);

    // The catalogue of the server.
    void list_tables(StringView catalogue);
    void list_primary_key(StringView catalogue, StringView owner, StringView table);

    // To the next row; false behind the last one.
    [[nodiscard]] bool fetch();
    // A value of the row, by the column's ordinal number from 1; in ascending order. Without a
    // column it is read as text.
    [[nodiscard]] Cell value(SQLUSMALLINT number, const Column* column);
    [[nodiscard]] String text(SQLUSMALLINT number);  // "" for a NULL

    [[nodiscard]] SQLSMALLINT column_count();
    [[nodiscard]] SQLLEN row_count();

    struct Description {
        String name;
        SQLSMALLINT type = 0;
        std::string type_name;  // in lower case, its first word
    };
    [[nodiscard]] Description describe(SQLUSMALLINT number);

  private:
    // The memory of a parameter while the statement runs.
    struct Parameter {
        std::vector<SQLWCHAR> wide;
        std::string narrow;
        std::int64_t whole = 0;
        double real = 0;
        unsigned char bit = 0;
        SQL_TIMESTAMP_STRUCT moment = {};
        SQLLEN indicator = 0;
    };
    struct Binding;

    void bind(SQLUSMALLINT number, const Argument& argument);
    void bind(SQLUSMALLINT number, Parameter& parameter, const Binding& binding);
    [[nodiscard]] Cell wide_value(SQLUSMALLINT number);
    [[nodiscard]] Cell narrow_value(SQLUSMALLINT number, const Column& column);
    template <class Value>
    [[nodiscard]] Cell plain_value(SQLUSMALLINT number, SQLSMALLINT type);
    void require(SQLRETURN code) const;

    StatementHandle handle_;
    const Dialect& dialect_;
    std::list<Parameter> parameters_;  // the driver keeps their addresses
};

}  // namespace kvarta16::odbc
