#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/sqlite/jet_values.h>
#include <kvarta16/platform/sqlite/sqlite_errors.h>

namespace kvarta16::sqlite::jet {
namespace {

using namespace dao;

bool is_null(const Cell& cell) {
    return std::holds_alternative<std::monostate>(cell);
}

// ---- Conversions -------------------------------------------------------------------------------

// A value as the primitives take it.
Variant variant_in(const Cell& cell, ColumnKind kind) {
    if (const auto* text = std::get_if<std::string>(&cell); text && kind == ColumnKind::Plain) {
        return from_utf8(*text);
    }
    return variant_of(cell, kind);
}

String shown(const Cell& cell, ColumnKind kind) {
    if (kind == ColumnKind::Boolean) {
        if (const auto truth = truth_of(cell)) {
            return *truth ? u"-1" : u"0";
        }
    }
    return ToText(variant_in(cell, kind));
}

[[noreturn]] void refuse(const Cell& cell, ColumnKind kind) {
    constexpr std::size_t longest_shown = 40;
    const String text = shown(cell, kind);
    const bool cut = text.size() > longest_shown;
    fail_about(error_no_conversion, u"The column cannot have this value",
               text.substr(0, longest_shown) + (cut ? u"…" : u""));
}

// The number that a value is: a moment its days, a text what it says.
std::optional<Double> number_in(const Cell& cell, ColumnKind kind) {
    if (kind == ColumnKind::Date) {
        if (const auto moment = moment_of(cell)) {
            return date_of(*moment).days;
        }
    }
    if (const auto number = number_of(cell)) {
        return number;
    }
    const Variant value = variant_in(cell, kind);
    std::optional<Double> number;
    step([&] {  // a text of a number beyond Double is none
        if (IsNumericText(value)) {
            number = to_double(value);
        }
    });
    return number;
}

Cell whole(const Cell& cell, ColumnKind kind, std::int64_t least, std::int64_t most) {
    const auto* exact = std::get_if<std::int64_t>(&cell);
    if (exact != nullptr && *exact >= least && *exact <= most) {
        return *exact;
    }
    const auto number = number_in(cell, kind);
    if (exact != nullptr || !number) {
        refuse(cell, kind);
    }
    const Double rounded = std::nearbyint(*number);  // halves to the even one
    // Above 2 to the 53rd the next Double is a whole step away, so the bounds are tested as such.
    if (!(rounded >= static_cast<Double>(least) && rounded <= static_cast<Double>(most)) ||
        rounded >= 0x1p63) {
        refuse(cell, kind);
    }
    return static_cast<std::int64_t>(rounded);
}

Cell real(const Cell& cell, ColumnKind kind, bool single) {
    const auto number = number_in(cell, kind);
    if (!number || !std::isfinite(*number)) {
        refuse(cell, kind);
    }
    if (single && std::fabs(*number) > std::numeric_limits<Single>::max()) {
        refuse(cell, kind);
    }
    return single ? Double{static_cast<Single>(*number)} : *number;
}

Cell money(const Cell& cell, ColumnKind kind) {
    const auto* text = std::get_if<std::string>(&cell);
    std::optional<Currency> amount;
    if (text != nullptr) {
        amount = parse_amount(*text);
    }
    if (!amount) {
        const Variant value = variant_of(cell, text != nullptr ? kind : ColumnKind::Money);
        const auto number = number_in(cell, kind);
        if (!number) {
            refuse(cell, kind);
        }
        try {
            // A text with a dot is none by the locale; its digits are read as a Double then.
            const bool by_value = value.get_if<String>() == nullptr || IsNumericText(value);
            amount = ToCurrency(by_value ? value : Variant(*number));
        } catch (const Failure&) {  // told as the failure of the conversion
            refuse(cell, kind);
        }
    }
    return cell_of(*amount, Affinity::Numeric);
}

Cell moment(const Cell& cell, ColumnKind kind) {
    if (const auto found = moment_of(cell)) {
        return stored_text(*found);
    }
    const Variant value = variant_in(cell, kind);
    if (!IsDateValue(value)) {
        refuse(cell, kind);
    }
    return cell_of(ToDate(value), Affinity::Numeric);
}

Cell truth(const Cell& cell, ColumnKind kind) {
    const auto found = truth_of(cell);
    if (!found) {
        const auto number = number_in(cell, kind);
        if (!number) {
            refuse(cell, kind);
        }
        return std::int64_t{*number != 0 ? -1 : 0};
    }
    return std::int64_t{*found ? -1 : 0};
}

Cell text(const Cell& cell, ColumnKind kind, Long size) {
    String value = shown(cell, kind);
    if (size > 0 && value.size() > static_cast<std::size_t>(size)) {
        fail_about(error_text_too_long, u"The text is longer than its column, in characters",
                   ToText(static_cast<Long>(value.size())) + u" > " + ToText(size));
    }
    return to_utf8(value);
}

// ---- Operators ---------------------------------------------------------------------------------

std::optional<Currency> amount_in(const Cell& cell) {
    const Variant value = variant_of(cell, ColumnKind::Money);
    const Currency* amount = value.get_if<Currency>();
    return amount != nullptr ? std::optional(*amount) : std::nullopt;
}

// a * b, or nothing beyond 64 bits.
std::optional<std::int64_t> product(std::int64_t a, std::int64_t b) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (a == 0 || b == 0) {
        return 0;
    }
    const bool fits = a > -most && b > -most && (a < 0 ? -a : a) <= most / (b < 0 ? -b : b);
    return fits ? std::optional(a * b) : std::nullopt;
}

std::optional<std::int64_t> sum(std::int64_t a, std::int64_t b) {
    const std::int64_t result = (Currency::raw(a) + Currency::raw(b)).count;  // wraps
    const bool overflows = (a < 0) == (b < 0) && (result < 0) != (a < 0);
    return overflows ? std::nullopt : std::optional(result);
}

// The result where it is exact as an amount of money.
std::optional<Cell> exact(std::string_view symbol, const Cell& a, const Cell& b) {
    const auto x = amount_in(a);
    const auto y = amount_in(b);
    if (!x || !y) {
        return std::nullopt;
    }
    std::optional<std::int64_t> count;
    if (symbol == "+") {
        count = sum(x->count, y->count);
    } else if (symbol == "-" && y->count != std::numeric_limits<std::int64_t>::min()) {
        count = sum(x->count, -y->count);
    } else if (symbol == "*" && y->count % 10'000 == 0) {
        count = product(x->count, y->count / 10'000);
    } else if (symbol == "*" && x->count % 10'000 == 0) {
        count = product(x->count / 10'000, y->count);
    }
    if (!count) {
        return std::nullopt;
    }
    return cell_of(Currency::raw(*count), Affinity::Numeric);
}

Double divisor(Double value) {
    if (value == 0) {
        fail(error::division_by_zero);
    }
    return value;
}

Double in_double(std::string_view symbol, Double a, Double b) {
    switch (symbol.front()) {
        case '+':
            return a + b;
        case '-':
            return a - b;
        case '*':
            return a * b;
        case '/':
            return a / divisor(b);
        case '\\':
            return std::trunc(std::nearbyint(a) / divisor(std::nearbyint(b)));
        case 'm':
            return std::fmod(std::nearbyint(a), divisor(std::nearbyint(b)));
        default:
            return std::pow(a, b);
    }
}

Double operand(const Cell& cell) {
    const auto number = number_in(cell, ColumnKind::Plain);
    if (!number) {
        fail_about(error_type_mismatch, u"The operator needs a number, and this is none",
                   shown(cell, ColumnKind::Plain));
    }
    return *number;
}

bool is_text_cell(const Cell& cell) {
    return std::holds_alternative<std::string>(cell);
}

std::string joined(const Cell& a, const Cell& b) {
    const auto part = [](const Cell& cell) {
        return is_null(cell) ? String() : shown(cell, ColumnKind::Plain);
    };
    return to_utf8(part(a) + part(b));
}

// ---- Patterns ----------------------------------------------------------------------------------

// The set in brackets at the start of a pattern: whether it is one, its length, and whether the
// character is in it.
struct Set {
    std::size_t length = 0;  // 0: no set, the bracket stands for itself
    bool fits = false;
};
Set set_at(StringView pattern, char16_t c) {
    const std::size_t close = pattern.find(u']', 1);
    if (close == StringView::npos) {
        return {};
    }
    StringView inside = pattern.substr(1, close - 1);
    const bool excludes = inside.size() > 1 && inside.front() == u'!';
    inside.remove_prefix(excludes ? 1 : 0);
    bool found = false;
    while (!inside.empty()) {
        const bool range = inside.size() > 2 && inside[1] == u'-';
        const char16_t last = inside[range ? 2 : 0];
        found = found || (c >= inside.front() && c <= last);
        inside.remove_prefix(range ? 3 : 1);
    }
    return {close + 1, found != excludes};
}

// The characters of the pattern that one character of the text uses up, 0 if it does not fit.
std::size_t fitting(StringView pattern, char16_t c) {
    if (pattern.empty()) {
        return 0;
    }
    switch (pattern.front()) {
        case u'?':
            return 1;
        case u'#':
            return c >= u'0' && c <= u'9' ? 1 : 0;
        case u'[':
            if (const Set set = set_at(pattern, c); set.length > 0) {
                return set.fits ? set.length : 0;
            }
            [[fallthrough]];
        default:
            return pattern.front() == c ? 1 : 0;
    }
}

}  // namespace

Cell converted(const Cell& value, ColumnKind kind, const FieldType& type) {
    if (is_null(value)) {
        return value;
    }
    switch (type.type) {
        case dbBoolean:
            return truth(value, kind);
        case dbByte:
            return whole(value, kind, 0, 255);
        case dbInteger:
            return whole(value, kind, -32'768, 32'767);
        case dbLong:
            return whole(value, kind, std::numeric_limits<Long>::min(),
                         std::numeric_limits<Long>::max());
        case dbBigInt:
            return whole(value, kind, std::numeric_limits<std::int64_t>::min(),
                         std::numeric_limits<std::int64_t>::max());
        case dbCurrency:
        case dbDecimal:
            return money(value, kind);
        case dbSingle:
        case dbDouble:
            return real(value, kind, type.type == dbSingle);
        case dbDate:
            return moment(value, kind);
        case dbText:
        case dbMemo:
            return text(value, kind, type.size);
        default:
            return value;
    }
}

Cell computed(std::string_view symbol, const Cell& a, const Cell& b) {
    if (symbol == "&") {
        return joined(a, b);
    }
    if (is_null(a) || is_null(b)) {
        return {};
    }
    if (symbol == "+" && is_text_cell(a) && is_text_cell(b)) {
        return joined(a, b);
    }
    if (auto result = exact(symbol, a, b)) {
        return *std::move(result);
    }
    const Double result = in_double(symbol, operand(a), operand(b));
    if (!std::isfinite(result)) {
        fail(error::overflow);
    }
    const bool is_whole = symbol == "\\" || symbol == "mod";
    if (is_whole && std::fabs(result) < 0x1p53) {
        return static_cast<std::int64_t>(result);
    }
    return result;
}

bool is_like(StringView text, StringView pattern) {
    const String lower_text = lower_case(text);
    const String lower_pattern = lower_case(pattern);
    StringView rest = lower_text;
    StringView parts = lower_pattern;
    // Where to go on if what stands behind the last "*" does not fit: one character later.
    std::optional<StringView> star;
    StringView star_text;
    while (!rest.empty()) {
        if (const std::size_t used = fitting(parts, rest.front());
            used > 0 && parts.front() != u'*') {
            parts.remove_prefix(used);
            rest.remove_prefix(1);
        } else if (!parts.empty() && parts.front() == u'*') {
            parts.remove_prefix(1);
            star = parts;
            star_text = rest;
        } else if (star) {
            star_text.remove_prefix(1);
            rest = star_text;
            parts = *star;
        } else {
            return false;
        }
    }
    return parts.find_first_not_of(u'*') == StringView::npos;
}

}  // namespace kvarta16::sqlite::jet
