// How values of the library travel to a server and back.
//
//     column            stored from                               read as
//     whole number      numbers, Boolean as -1 or 0               Integer, Long, beyond that Double
//     approximate       numbers                                   Single, Double
//     exact, money      numbers, text that is a number            Currency, beyond that Decimal,
//                                                                 beyond that Double
//     date, time        dates, numbers of days, text that is one  Date, to the millisecond
//     truth value       numbers, truth words                      Boolean
//     text, others      everything, numbers with a dot            String
//
// Null and Empty are NULL.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include <kvarta16/frame/variant.h>
#include <kvarta16/platform/odbc/odbc_schema.h>
#include <kvarta16/platform/sql/moments.h>

namespace kvarta16::odbc {

// A decimal number, exactly.
struct Exact {
    std::string digits;
    friend bool operator==(const Exact&, const Exact&) = default;
};

// One value on its way; the first is NULL.
using Cell = std::variant<std::monostate, std::int64_t, double, Exact, bool, sql::Moment, String>;

// A value as it is stored in a column. Fails: 6 a Double that is no number and a Date outside its
// range, 13 a value that the column's kind has no room for.
[[nodiscard]] Cell cell_of(const Variant& value, const Column& column);

// What a stored value is read as. Fails: 6 beyond the range of Double.
[[nodiscard]] Variant variant_of(const Cell& cell, const Column& column);

// A value as the driver writes it, in UTF-8, for a column that is read as text. A date that does
// not exist stays the text that stands for it.
[[nodiscard]] Cell parsed_cell(std::string&& text, const Column& column);

}  // namespace kvarta16::odbc
