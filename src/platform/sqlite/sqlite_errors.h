// The one place where the engine's result codes become the numbers that callers of this family of
// engines know, with an English text of what is wrong.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/types.h>
#include <kvarta16/platform/sql/errors.h>

namespace kvarta16::sqlite {

using sql::error_alter_syntax;
using sql::error_create_table_syntax;
using sql::error_in_transaction;
using sql::error_no_table;
using sql::error_no_transaction;
using sql::error_not_updatable;
using sql::error_row_deleted;
using sql::error_syntax;
using sql::error_too_complex;
using sql::error_unknown_name;
using sql::error_wrong_arguments;
using sql::fail_about;

// The numbers that the adapter itself raises, beside those above and those of the seam.
inline constexpr Long error_table_exists = 3010;       // a table or view of that name
inline constexpr Long error_file_not_found = 3024;     // no such file
inline constexpr Long error_disk_full = 3026;          // no space left
inline constexpr Long error_invalid_path = 3044;       // no such folder, or no path at all
inline constexpr Long error_cannot_open = 3051;        // a folder, or no permission
inline constexpr Long error_is_select = 3065;          // a select where rows have no place
inline constexpr Long error_invalid_name = 3125;       // a name that no table or column can have
inline constexpr Long error_no_insert_field = 3127;    // insert into a column that is none
inline constexpr Long error_text_too_long = 3163;      // a text longer than its column
inline constexpr Long error_no_format = 3343;          // no database
inline constexpr Long error_column_twice = 3191;       // a column that stands twice in a table
inline constexpr Long error_file_exists = 3204;        // a file of that name
inline constexpr Long error_invalid_operation = 3219;  // a property that the type has not
inline constexpr Long error_in_index = 3280;           // a column that an index needs
inline constexpr Long error_index_in_use = 3281;       // an index that the table cannot be without
inline constexpr Long error_primary_exists = 3283;     // a second primary key
inline constexpr Long error_index_exists = 3284;       // an index of that name
inline constexpr Long error_no_value = 3314;           // no value in a column that needs one
inline constexpr Long error_empty_text = 3315;         // an empty text in a column that takes none
inline constexpr Long error_value_count = 3346;        // values and columns differ in number
inline constexpr Long error_no_index = 3372;           // no such index on the table
inline constexpr Long error_no_drop_table = 3376;      // drop of a table that is none
inline constexpr Long error_column_exists = 3380;      // a column of that name
inline constexpr Long error_no_alter_column = 3381;    // drop or change of a column that is none
inline constexpr Long error_no_key_column = 3409;      // an index over a column that is none
inline constexpr Long error_database_closed = 3420;    // the object's database is closed
inline constexpr Long error_no_conversion = 3421;      // a value that its column cannot have
inline constexpr Long error_two_counters = 3801;       // a second counter in a table
inline constexpr Long error_type_mismatch = 3464;      // an operator that the values do not have

// Raises the failure of a result code of the engine, extended or not: "<what is wrong>: <place>
// (<the engine's message>)". The place is the file, or the table and the file.
[[noreturn]] void fail_with(int result_code, std::string_view engine_message,
                            std::string_view place);

// The same for a file that could not be opened, where the file system says more than the engine.
// `may_create`: a file that is missing was to be made.
[[noreturn]] void fail_to_open(int result_code, std::string_view engine_message, bool may_create,
                               std::string_view path);

// The message by which a function of the adapter that the engine calls hands its failure through
// the engine; fail_with raises that failure.
[[nodiscard]] std::string failure_message(const Failure& failure);

}  // namespace kvarta16::sqlite
