// How values of the library stand in a SQLite file, and what is read back from it.
//
//     Integer, Long, Byte        INTEGER
//     Boolean                    INTEGER, -1 or 0
//     Single, Double             REAL
//     Currency, Decimal          exactly: INTEGER if whole, REAL where the Double gives the same
//                                amount back, else the decimal text; as a BLOB of that text where
//                                the column would turn a text into a Double
//     Date                       TEXT, "yyyy-MM-dd HH:mm:ss", with ".fff" where there is a fraction
//     String                     TEXT
//     Null, Empty                NULL
//
// What is read is decided by the column's declared type: dates, money and truth values come back
// as such from whatever a program has written there, everything else as it is stored.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include <kvarta16/frame/variant.h>
#include <kvarta16/platform/sql/amounts.h>
#include <kvarta16/platform/sqlite/sqlite_moments.h>

namespace kvarta16::sqlite {

struct Blob {
    std::string bytes;
    friend bool operator==(const Blob&, const Blob&) = default;
};

// One stored value, by its storage class; the first is NULL.
using Cell = std::variant<std::monostate, std::int64_t, double, std::string, Blob>;

// What a column does to values of other storage classes when they are stored: the engine's own
// rule on the declared type.
enum class Affinity : std::uint8_t { Integer, Text, Blob, Real, Numeric };

// What the declared type says about the values of a column.
enum class ColumnKind : std::uint8_t { Plain, Date, Money, Boolean };

// In a strict table ANY leaves a value as it is.
[[nodiscard]] Affinity affinity_of(std::string_view declared_type, bool strict);
[[nodiscard]] ColumnKind kind_of(std::string_view declared_type);

// The value as it is stored in a column. Fails: 6 a Double that is no number and a Date outside
// its range, 13 objects, error codes and missing arguments.
[[nodiscard]] Cell cell_of(const Variant& value, Affinity affinity);

// What a stored value is read as. In a Date column a text that is a moment and a number in the
// range of dates give a Date, in a Money column a number that is exactly an amount of money a
// Currency, in a Boolean column a number or a truth word a Boolean; in any column a BLOB of a
// number is a Currency. All else by storage class: a Long, beyond 32 bits a Double; a Double; a
// String, also for other BLOBs; Null.
[[nodiscard]] Variant variant_of(const Cell& cell, ColumnKind kind);

// ---- What a stored value means, whatever its storage class; nothing where it means none --------

[[nodiscard]] std::optional<Moment> moment_of(const Cell& cell) noexcept;
[[nodiscard]] std::optional<Double> number_of(const Cell& cell);  // text with a dot or a comma
[[nodiscard]] std::optional<bool> truth_of(const Cell& cell);

using sql::amount_text;
using sql::parse_amount;

}  // namespace kvarta16::sqlite
