// What the dialect does with values: the conversions on their way into a column, the operators and
// "like". A translated statement calls them as functions of the engine, or they are done while it
// is translated.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/platform/sqlite/field_types.h>
#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16::sqlite::jet {

// The value as a column of the type holds it; `kind` says what the value is beyond its storage
// class. Null stays Null. Text is read as a number or date by the locale's rules or with a dot or
// ISO; numbers are rounded to whole ones, halves to the even one, and to four decimals as money.
// Fails: 3421 where there is no such value or it is out of range, 3163 a text beyond the size.
[[nodiscard]] Cell converted(const Cell& value, ColumnKind kind, const FieldType& type);

// `a symbol b`, where `symbol` is one of + - * / \ ^ & mod. "&" joins texts, Null counting as the
// empty one; "+" joins two texts; everything else is done with numbers and is Null where an
// operand is. What is an amount of money stays exact in sums, differences and products with whole
// numbers. Fails: 11 a division by zero, 3464 no numbers, 6 a result out of range.
[[nodiscard]] Cell computed(std::string_view symbol, const Cell& a, const Cell& b);

// Whether a text fits a pattern, both in any case: "*" stands for any characters, "?" for one, "#"
// for a digit, [abc], [a-c] and [!a-c] for one of the characters or none of them.
[[nodiscard]] bool is_like(StringView text, StringView pattern);

}  // namespace kvarta16::sqlite::jet
