#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/odbc/odbc_values.h>
#include <kvarta16/platform/sql/amounts.h>

namespace kvarta16::odbc {
namespace {

using sql::amount_text;
using sql::Moment;

// ---- Storing -----------------------------------------------------------------------------------

Moment moment_of(const Variant& value) {
    const auto moment = sql::moment_of_days(ToDate(value).days);
    if (!moment) {
        fail(error::overflow);
    }
    return *moment;
}

double checked(double value) {
    if (std::isnan(value)) {
        fail(error::overflow);
    }
    return value;
}

struct AsNumber {
    Cell operator()(Integer value) const { return std::int64_t{value}; }
    Cell operator()(Long value) const { return std::int64_t{value}; }
    Cell operator()(Byte value) const { return std::int64_t{value}; }
    Cell operator()(Boolean value) const { return std::int64_t{value ? -1 : 0}; }
    Cell operator()(Single value) const { return checked(value); }
    Cell operator()(Double value) const { return checked(value); }
    Cell operator()(Currency value) const { return Exact{amount_text(value)}; }
    Cell operator()(const Decimal& value) const { return Exact{amount_text(value)}; }
    Cell operator()(Date value) const { return checked(value.days); }
    Cell operator()(const String& value) const {
        if (const auto amount = sql::parse_amount(to_utf8(value))) {
            return Exact{amount_text(*amount)};
        }
        return to_double(value);
    }
    template <class Other>
    Cell operator()(const Other&) const {
        fail(error::type_mismatch);
    }
};

// A number to its last digit, with a dot whatever the locale.
std::string digits_of(const Cell& number) {
    if (const auto* exact = std::get_if<Exact>(&number)) {
        return exact->digits;
    }
    std::array<char, 40> digits{};
    char* const begin = digits.data();
    char* const end = begin + digits.size();
    const auto* whole = std::get_if<std::int64_t>(&number);
    const auto written = whole != nullptr ? std::to_chars(begin, end, *whole)
                                          : std::to_chars(begin, end, std::get<double>(number));
    return {begin, written.ptr};
}

struct AsText {
    Cell operator()(const String& value) const { return value; }
    Cell operator()(Date value) const { return from_utf8(sql::stored_text(moment_of(value))); }
    template <class Other>
    Cell operator()(const Other& value) const {
        return from_utf8(digits_of(AsNumber()(value)));
    }
};

// ---- Reading -----------------------------------------------------------------------------------

constexpr std::size_t most_decimal_digits = 28;  // that fit into 96 bits whichever they are

// Nothing for a number of other forms, or of too many digits.
std::optional<Decimal> parse_decimal(std::string_view text) {
    Decimal value;
    value.negative = text.starts_with('-');
    text.remove_prefix(value.negative ? 1 : 0);
    std::size_t digits = 0;
    bool behind_dot = false;
    for (const char c : text) {
        if (c == '.' && !behind_dot) {
            behind_dot = true;
            continue;
        }
        if (c < '0' || c > '9' || ++digits > most_decimal_digits) {
            return std::nullopt;
        }
        std::uint64_t carry = static_cast<std::uint64_t>(c - '0');
        for (std::uint32_t* part : {&value.low, &value.middle, &value.high}) {
            carry += std::uint64_t{*part} * 10;
            *part = static_cast<std::uint32_t>(carry);
            carry >>= 32U;
        }
        value.scale = static_cast<std::uint8_t>(value.scale + (behind_dot ? 1 : 0));
    }
    return digits > 0 ? std::optional(value) : std::nullopt;
}

std::optional<double> parse_double(std::string_view text) {
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    return code == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

Variant exact_value(const std::string& digits) {
    if (const auto amount = sql::parse_amount(digits)) {
        return *amount;
    }
    if (const auto decimal = parse_decimal(digits)) {
        return *decimal;
    }
    const auto value = parse_double(digits);
    if (!value) {
        fail(error::overflow);
    }
    return *value;
}

struct Reading {
    const Column& column;

    Variant operator()(std::monostate) const { return Variant::null(); }
    Variant operator()(std::int64_t value) const {
        if (column.is_short && std::in_range<Integer>(value)) {
            return static_cast<Integer>(value);
        }
        if (std::in_range<Long>(value)) {
            return static_cast<Long>(value);
        }
        return static_cast<Double>(value);
    }
    Variant operator()(double value) const {
        return column.is_single ? Variant(static_cast<Single>(value)) : Variant(value);
    }
    Variant operator()(const Exact& value) const { return exact_value(value.digits); }
    Variant operator()(bool value) const { return Boolean(value); }
    Variant operator()(Moment value) const { return sql::date_of(value); }
    Variant operator()(const String& value) const { return value; }
};

bool is_number(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789.+-eE") == std::string_view::npos &&
           parse_double(text).has_value();
}

// What stands in a truth column: a number, or a word of the server's own.
std::optional<bool> parse_truth(std::string_view text) {
    if (const auto number = parse_double(text)) {
        return *number != 0;
    }
    if (text == "t" || text == "true" || text == "TRUE") {
        return true;
    }
    if (text == "f" || text == "false" || text == "FALSE") {
        return false;
    }
    return std::nullopt;
}

// Where dates are text, a number stands for days.
std::optional<Moment> parse_date(std::string_view text) {
    if (const auto moment = sql::parse_moment(text)) {
        return moment;
    }
    const auto days = parse_double(text);
    return days ? sql::moment_of_days(*days) : std::nullopt;
}

}  // namespace

Cell cell_of(const Variant& value, const Column& column) {
    if (value.is(Subtype::Null) || value.is(Subtype::Empty)) {
        return {};
    }
    switch (column.kind) {
        case ColumnKind::Date:
            return moment_of(value);
        case ColumnKind::Truth:
            return static_cast<bool>(to_boolean(value));
        case ColumnKind::Text:
            return value.visit(AsText{});
        default:
            return value.visit(AsNumber{});
    }
}

Variant variant_of(const Cell& cell, const Column& column) {
    return std::visit(Reading{column}, cell);
}

Cell parsed_cell(std::string&& text, const Column& column) {
    if (column.kind == ColumnKind::Date) {
        if (const auto moment = parse_date(text)) {
            return *moment;
        }
    } else if (column.kind == ColumnKind::Truth) {
        if (const auto truth = parse_truth(text)) {
            return *truth;
        }
    } else if (column.kind == ColumnKind::Exact && is_number(text)) {
        return Exact{std::move(text)};
    }
    return from_utf8(text);
}

}  // namespace kvarta16::odbc
