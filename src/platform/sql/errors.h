// The numbers that both database adapters and the parser raise, as callers of this family of
// engines know them, beside those of the seams.
#pragma once

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::sql {

inline constexpr Long error_wrong_arguments = 3001;      // options that have no meaning together
inline constexpr Long error_no_transaction = 3034;       // commit or roll back without a begin
inline constexpr Long error_unknown_name = 3061;         // no such column
inline constexpr Long error_syntax = 3075;               // a statement that is not understood
inline constexpr Long error_no_table = 3078;             // no such table or view
inline constexpr Long error_unknown_function = 3085;     // no such function
inline constexpr Long error_unknown_statement = 3129;    // a statement of an unknown kind
inline constexpr Long error_insert_syntax = 3134;        // a fault in an insert
inline constexpr Long error_update_syntax = 3144;        // a fault in an update
inline constexpr Long error_row_deleted = 3167;          // the current row is gone or changed
inline constexpr Long error_in_transaction = 3246;       // a transaction within a transaction
inline constexpr Long error_not_updatable = 3251;        // a view, or a recordset opened to read
inline constexpr Long error_create_table_syntax = 3290;  // a fault in a create table
inline constexpr Long error_create_index_syntax = 3291;  // a fault in a create index
inline constexpr Long error_field_syntax = 3292;         // a fault in the definition of a column
inline constexpr Long error_alter_syntax = 3293;         // a fault in an alter table
inline constexpr Long error_drop_syntax = 3295;          // a fault in a drop
inline constexpr Long error_too_complex = 3360;          // a statement beyond the limits

// A failure of an adapter itself: "<text>: <name>".
[[noreturn]] void fail_about(Long number, StringView text, StringView name);

}  // namespace kvarta16::sql
