#include <algorithm>
#include <iterator>

#include <kvarta16/platform/sql/field_types.h>
#include <kvarta16/platform/sql/names.h>

namespace kvarta16::sql {
namespace {

using namespace dao;

// The words of the dialect.
struct Word {
    StringView word;
    Integer type;
    bool counter = false;
};
constexpr Word words[] = {
    {u"BIT", dbBoolean},
    {u"YESNO", dbBoolean},
    {u"LOGICAL", dbBoolean},
    {u"LOGICAL1", dbBoolean},
    {u"BOOLEAN", dbBoolean},
    {u"BYTE", dbByte},
    {u"TINYINT", dbByte},
    {u"INTEGER1", dbByte},
    {u"SHORT", dbInteger},
    {u"SMALLINT", dbInteger},
    {u"INTEGER2", dbInteger},
    {u"LONG", dbLong},
    {u"INTEGER", dbLong},
    {u"INT", dbLong},
    {u"INTEGER4", dbLong},
    {u"COUNTER", dbLong, true},
    {u"AUTOINCREMENT", dbLong, true},
    {u"IDENTITY", dbLong, true},
    {u"CURRENCY", dbCurrency},
    {u"MONEY", dbCurrency},
    {u"SINGLE", dbSingle},
    {u"REAL", dbSingle},
    {u"FLOAT4", dbSingle},
    {u"IEEESINGLE", dbSingle},
    {u"DOUBLE", dbDouble},
    {u"FLOAT", dbDouble},
    {u"FLOAT8", dbDouble},
    {u"IEEEDOUBLE", dbDouble},
    {u"NUMBER", dbDouble},
    {u"NUMERIC", dbDouble},
    {u"DATETIME", dbDate},
    {u"DATE", dbDate},
    {u"TIME", dbDate},
    {u"TIMESTAMP", dbDate},
    {u"TEXT", dbText},
    {u"CHAR", dbText},
    {u"VARCHAR", dbText},
    {u"STRING", dbText},
    {u"ALPHANUMERIC", dbText},
    {u"MEMO", dbMemo},
    {u"LONGTEXT", dbMemo},
    {u"LONGCHAR", dbMemo},
    {u"NOTE", dbMemo},
    {u"BINARY", dbBinary},
    {u"VARBINARY", dbBinary},
    {u"LONGBINARY", dbLongBinary},
    {u"OLEOBJECT", dbLongBinary},
    {u"IMAGE", dbLongBinary},
    {u"GENERAL", dbLongBinary},
    {u"GUID", dbGUID},
    {u"UNIQUEIDENTIFIER", dbGUID},
};

// The bytes of the values of a type, of one with a length the most that it can have.
struct Size {
    Integer type;
    Long size;
};
constexpr Size sizes[] = {
    {dbBoolean, 1},         {dbByte, 1},       {dbInteger, 2},  {dbLong, 4},
    {dbCurrency, 8},        {dbSingle, 4},     {dbDouble, 8},   {dbDate, 8},
    {dbGUID, 16},           {dbBigInt, 8},     {dbDecimal, 16}, {dbBinary, longest_text},
    {dbText, longest_text}, {dbLongBinary, 0}, {dbMemo, 0},
};

}  // namespace

Long size_of(Integer type) noexcept {
    return std::ranges::find(sizes, type, &Size::type)->size;
}

std::optional<FieldType> type_of_word(StringView word, std::optional<Long> length) {
    const auto* found = std::ranges::find_if(
        words, [word](const Word& entry) { return same_name(entry.word, word); });
    if (found == std::end(words)) {
        return std::nullopt;
    }
    if (!length) {
        return FieldType{found->type, size_of(found->type), found->counter};
    }
    if (!has_length(found->type) || *length < 1 || *length > longest_text) {
        return std::nullopt;
    }
    return FieldType{found->type, *length, false};
}

}  // namespace kvarta16::sql
