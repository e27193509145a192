// The one place where the engine's result codes become the numbers that callers of this family of
// engines know, with an English text of what is wrong.
#pragma once

#include <string_view>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::sqlite {

// The numbers that the adapter itself raises, beside those of the seam.
inline constexpr Long error_wrong_arguments = 3001;  // options that have no meaning together
inline constexpr Long error_file_not_found = 3024;   // no such file
inline constexpr Long error_no_transaction = 3034;   // commit or roll back without a begin
inline constexpr Long error_invalid_path = 3044;     // no such folder, or no path at all
inline constexpr Long error_cannot_open = 3051;      // a folder, or no permission
inline constexpr Long error_unknown_name = 3061;     // no such column
inline constexpr Long error_syntax = 3075;           // a statement that is not understood
inline constexpr Long error_no_table = 3078;         // no such table or view
inline constexpr Long error_row_deleted = 3167;      // the current row is gone
inline constexpr Long error_in_transaction = 3246;   // a transaction within a transaction
inline constexpr Long error_not_updatable = 3251;    // a view, or a recordset opened to read

// Raises the failure of a result code of the engine, extended or not: "<what is wrong>: <place>
// (<the engine's message>)". The place is the file, or the table and the file.
[[noreturn]] void fail_with(int result_code, std::string_view engine_message,
                            std::string_view place);

// The same for a file that could not be opened, where the file system says more than the engine.
// `may_create`: a file that is missing was to be made.
[[noreturn]] void fail_to_open(int result_code, std::string_view engine_message, bool may_create,
                               std::string_view path);

// A failure of the adapter itself: "<text>: <name>".
[[noreturn]] void fail_about(Long number, StringView text, StringView name);

}  // namespace kvarta16::sqlite
