// Dates as they stand in SQLite files: the database adapters share them.
#pragma once

#include <kvarta16/platform/sql/moments.h>

namespace kvarta16::sqlite {

using sql::date_of;
using sql::is_text_to_seconds;
using sql::length_to_seconds;
using sql::Moment;
using sql::moment_of_days;
using sql::moment_text;
using sql::MomentForm;
using sql::MomentText;
using sql::parse_moment;
using sql::stored_text;

}  // namespace kvarta16::sqlite
