// The types of columns in a file: how a type is declared there, and what a declared type of any
// program is to callers of the DAO seam.
//
//   statement             in the file           Field.Type, Size
//   TEXT(50), CHAR(50)    VARCHAR(50)           dbText, 50
//   TEXT                  VARCHAR(255)          dbText, 255
//   MEMO                  MEMO                  dbMemo, 0
//   CURRENCY              CURRENCY              dbCurrency, 8
//
// A TEXT without a length that another program has declared has no limit and is a dbMemo; so is a
// TEXT or VARCHAR of more than 255 characters. A type that is not known counts as what the engine
// makes of its values.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/platform/sql/field_types.h>

namespace kvarta16::sqlite {

using sql::dbBigInt;
using sql::dbDecimal;
using sql::dbGUID;
using sql::FieldType;
using sql::has_length;
using sql::is_text;
using sql::longest_text;
using sql::size_of;

[[nodiscard]] FieldType type_of_declaration(std::string_view declared);

// The type as it is declared in the file.
[[nodiscard]] std::string declaration_of(const FieldType& type);

}  // namespace kvarta16::sqlite
