// The one place where what a driver reports becomes the numbers that callers of this family of
// engines know, with an English text of what is wrong.
#pragma once

#include <string>
#include <vector>

#include <sql.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/sql/errors.h>

namespace kvarta16::odbc {

using sql::error_in_transaction;
using sql::error_no_table;
using sql::error_no_transaction;
using sql::error_not_updatable;
using sql::error_row_deleted;
using sql::error_syntax;
using sql::error_unknown_name;
using sql::error_wrong_arguments;
using sql::fail_about;

// The numbers that the adapter itself raises, beside those above and those of the seam.
inline constexpr Long error_call_failed = 3146;  // what the driver reports and nothing fits
inline constexpr Long error_connection = 3151;   // no connection to the server, or lost

// Where a failure comes from, for its text.
struct Origin {
    String place;                 // the server, without its secrets
    std::vector<String> secrets;  // what is never shown, in the driver's messages neither
    std::string product;          // of the database, once it is known
};

// What a driver reports of its last call on a handle.
struct Report {
    std::string state;  // five characters
    SQLINTEGER native = 0;
    String message;
};
[[nodiscard]] Report report_of(SQLSMALLINT handle_type, SQLHANDLE handle);

// Whether the server has ended the transaction, the connection or both.
[[nodiscard]] bool ends_transaction(const Report& report) noexcept;

// Raises the failure: "<what is wrong>: <table>, <place> (<state>: <the driver's message>)".
// `no_connection`: there is none, or it has been lost, whatever else the driver says of it; what
// says more than that counts first.
[[noreturn]] void fail_with(const Report& report, const Origin& origin, StringView table,
                            bool no_connection);

}  // namespace kvarta16::odbc
