#include <algorithm>
#include <charconv>

#include <kvarta16/platform/sqlite/field_types.h>
#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16::sqlite {
namespace {

using namespace dao;

// The first word of a declared type, whatever program declared it.
struct Declared {
    std::string_view word;
    Integer type;
};
constexpr Declared declared_words[] = {
    {"BIT", dbBoolean},
    {"BOOL", dbBoolean},
    {"BOOLEAN", dbBoolean},
    {"YESNO", dbBoolean},
    {"LOGICAL", dbBoolean},
    {"BYTE", dbByte},
    {"TINYINT", dbByte},
    {"SHORT", dbInteger},
    {"SMALLINT", dbInteger},
    {"INT2", dbInteger},
    {"INTEGER", dbLong},
    {"INT", dbLong},
    {"INT4", dbLong},
    {"MEDIUMINT", dbLong},
    {"LONG", dbLong},
    {"COUNTER", dbLong},
    {"BIGINT", dbBigInt},
    {"INT8", dbBigInt},
    {"CURRENCY", dbCurrency},
    {"MONEY", dbCurrency},
    {"SMALLMONEY", dbCurrency},
    {"SINGLE", dbSingle},
    {"FLOAT4", dbSingle},
    {"REAL", dbDouble},
    {"DOUBLE", dbDouble},
    {"FLOAT", dbDouble},
    {"FLOAT8", dbDouble},
    {"NUMBER", dbDouble},
    {"NUMERIC", dbDouble},
    {"DECIMAL", dbDecimal},
    {"DEC", dbDecimal},
    {"DATE", dbDate},
    {"DATETIME", dbDate},
    {"DATETIME2", dbDate},
    {"SMALLDATETIME", dbDate},
    {"TIMESTAMP", dbDate},
    {"TIME", dbDate},
    {"CHAR", dbText},
    {"VARCHAR", dbText},
    {"VARCHAR2", dbText},
    {"NCHAR", dbText},
    {"NVARCHAR", dbText},
    {"CHARACTER", dbText},
    {"TEXT", dbMemo},
    {"NTEXT", dbMemo},
    {"MEMO", dbMemo},
    {"LONGTEXT", dbMemo},
    {"LONGCHAR", dbMemo},
    {"CLOB", dbMemo},
    {"BINARY", dbBinary},
    {"VARBINARY", dbBinary},
    {"BLOB", dbLongBinary},
    {"LONGBINARY", dbLongBinary},
    {"OLEOBJECT", dbLongBinary},
    {"IMAGE", dbLongBinary},
    {"GUID", dbGUID},
    {"UNIQUEIDENTIFIER", dbGUID},
};

// How a type is declared. Types with a length have it behind the word.
struct Declaration {
    Integer type;
    std::string_view word;
};
constexpr Declaration declarations[] = {
    {dbBoolean, "BIT"},       {dbByte, "TINYINT"},  {dbInteger, "SMALLINT"}, {dbLong, "INTEGER"},
    {dbCurrency, "CURRENCY"}, {dbSingle, "FLOAT4"}, {dbDouble, "DOUBLE"},    {dbDate, "DATETIME"},
    {dbBinary, "VARBINARY"},  {dbText, "VARCHAR"},  {dbLongBinary, "BLOB"},  {dbMemo, "MEMO"},
    {dbGUID, "GUID"},         {dbBigInt, "BIGINT"}, {dbDecimal, "DECIMAL"},
};

std::string upper(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return result;
}

// The number in the first parentheses.
std::optional<Long> length_in(std::string_view declared) {
    const std::size_t open = declared.find('(');
    if (open == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t digits = declared.find_first_not_of(' ', open + 1);
    Long length = 0;
    const char* end = declared.data() + declared.size();
    if (digits == std::string_view::npos ||
        std::from_chars(declared.data() + digits, end, length).ec != std::errc()) {
        return std::nullopt;
    }
    return length;
}

// The engine's own rule for types that are not listed.
Integer type_of_affinity(std::string_view declared) {
    switch (affinity_of(declared, false)) {
        case Affinity::Integer:
            return dbLong;
        case Affinity::Text:
            return dbMemo;
        case Affinity::Blob:
            return dbLongBinary;
        default:
            return dbDouble;
    }
}

}  // namespace

FieldType type_of_declaration(std::string_view declared) {
    const std::string type = upper(declared);
    const std::string_view word = std::string_view(type).substr(0, type.find_first_of(" (\t\n\r"));
    const auto* found = std::ranges::find(declared_words, word, &Declared::word);
    const Integer code =
        found != std::end(declared_words) ? found->type : type_of_affinity(declared);
    const std::optional<Long> told = length_in(type);
    if (word == "TEXT" && told && *told >= 1 && *told <= longest_text) {
        return {dbText, *told};
    }
    if (!has_length(code)) {
        return {code, size_of(code)};
    }
    const Long length = told.value_or(longest_text);
    if (length < 1 || length > longest_text) {
        return {code == dbText ? dbMemo : dbLongBinary, 0};
    }
    return {code, length};
}

std::string declaration_of(const FieldType& type) {
    std::string text(std::ranges::find(declarations, type.type, &Declaration::type)->word);
    if (has_length(type.type)) {
        text.append("(").append(std::to_string(type.size)).append(")");
    }
    return text;
}

}  // namespace kvarta16::sqlite
