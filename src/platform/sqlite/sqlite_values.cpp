#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/sqlite/sqlite_values.h>

namespace kvarta16::sqlite {
namespace {

constexpr std::int64_t counts_a_unit = 10'000;

// ---- Declared types ----------------------------------------------------------------------------

std::string ascii_upper(std::string_view text) {
    std::string upper(text);
    std::ranges::transform(upper, upper.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return upper;
}

struct TypeWord {
    std::string_view word;
    ColumnKind kind;
};

// The first word of a declared type: "DECIMAL(19,4)" is found under DECIMAL.
constexpr TypeWord type_words[] = {
    {"DATE", ColumnKind::Date},        {"DATETIME", ColumnKind::Date},
    {"DATETIME2", ColumnKind::Date},   {"SMALLDATETIME", ColumnKind::Date},
    {"TIMESTAMP", ColumnKind::Date},   {"TIME", ColumnKind::Date},
    {"CURRENCY", ColumnKind::Money},   {"MONEY", ColumnKind::Money},
    {"SMALLMONEY", ColumnKind::Money}, {"DECIMAL", ColumnKind::Money},
    {"DEC", ColumnKind::Money},        {"NUMERIC", ColumnKind::Money},
    {"BOOLEAN", ColumnKind::Boolean},  {"BOOL", ColumnKind::Boolean},
    {"BIT", ColumnKind::Boolean},      {"YESNO", ColumnKind::Boolean},
    {"LOGICAL", ColumnKind::Boolean},
};

// ---- Money -------------------------------------------------------------------------------------

std::string_view without_blanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The Double of an amount if it stands for this amount alone, also for a reader who multiplies.
std::optional<double> exact_double(Currency amount) {
    constexpr std::int64_t exact_whole = std::int64_t{1} << std::numeric_limits<double>::digits;
    if (amount.count > exact_whole || amount.count < -exact_whole) {
        return std::nullopt;
    }
    const auto count = static_cast<double>(amount.count);
    const double value = count / counts_a_unit;
    if (std::nearbyint(value * counts_a_unit) != count) {
        return std::nullopt;
    }
    return value;
}

std::optional<Currency> amount_of(std::int64_t whole) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max() / counts_a_unit;
    if (whole > largest || whole < -largest) {
        return std::nullopt;
    }
    return Currency::raw(whole * counts_a_unit);
}

// The amount that a stored Double stands for: the one whose own Double it is.
std::optional<Currency> amount_of(double value) {
    constexpr double beyond_money = 1e15;
    constexpr double beyond_exact_fractions = 1e12;
    if (std::fabs(value) < beyond_money && std::trunc(value) == value) {
        return amount_of(static_cast<std::int64_t>(value));
    }
    if (!(std::fabs(value) < beyond_exact_fractions)) {
        return std::nullopt;
    }
    const auto count = static_cast<std::int64_t>(std::nearbyint(value * counts_a_unit));
    if (exact_double(Currency::raw(count)) != value) {
        return std::nullopt;
    }
    return Currency::raw(count);
}

// A text in a column that leaves it alone, else its bytes.
Cell exact_text(std::string text, Affinity affinity) {
    if (affinity == Affinity::Text || affinity == Affinity::Blob) {
        return text;
    }
    return Blob{std::move(text)};
}

Cell money_cell(Currency amount, Affinity affinity) {
    if (affinity == Affinity::Text) {
        return amount_text(amount);  // the column itself would write a Double at 15 digits
    }
    if (amount.count % counts_a_unit == 0) {
        return amount.count / counts_a_unit;
    }
    if (const auto value = exact_double(amount)) {
        return *value;
    }
    return exact_text(amount_text(amount), affinity);
}

// ---- Decimal -----------------------------------------------------------------------------------

Cell decimal_cell(Decimal value, Affinity affinity) {
    std::string text = amount_text(value);
    if (const auto amount = parse_amount(text)) {
        return money_cell(*amount, affinity);
    }
    return exact_text(std::move(text), affinity);
}

// ---- Storing -----------------------------------------------------------------------------------

struct Storing {
    Affinity affinity;

    Cell operator()(EmptyValue) const { return {}; }
    Cell operator()(NullValue) const { return {}; }
    Cell operator()(Integer value) const { return std::int64_t{value}; }
    Cell operator()(Long value) const { return std::int64_t{value}; }
    Cell operator()(Byte value) const { return std::int64_t{value}; }
    Cell operator()(Boolean value) const { return std::int64_t{value ? -1 : 0}; }
    Cell operator()(Single value) const { return (*this)(Double{value}); }
    Cell operator()(Double value) const {
        if (std::isnan(value)) {
            fail(error::overflow);  // the engine would store a NULL
        }
        return value;
    }
    Cell operator()(Currency value) const { return money_cell(value, affinity); }
    Cell operator()(const Decimal& value) const { return decimal_cell(value, affinity); }
    Cell operator()(Date value) const {
        const auto moment = moment_of_days(value.days);
        if (!moment) {
            fail(error::overflow);
        }
        return stored_text(*moment);
    }
    Cell operator()(const String& value) const { return to_utf8(value); }
    Cell operator()(const ObjectPointer&) const { fail(error::type_mismatch); }
    Cell operator()(const UnknownObject&) const { fail(error::type_mismatch); }
    Cell operator()(ErrorCode) const { fail(error::type_mismatch); }
};

// ---- Reading -----------------------------------------------------------------------------------

// The text of a TEXT or a BLOB.
const std::string* text_in(const Cell& cell) {
    if (const auto* blob = std::get_if<Blob>(&cell)) {
        return &blob->bytes;
    }
    return std::get_if<std::string>(&cell);
}

std::optional<Currency> amount_of(const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        return amount_of(*whole);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return amount_of(*real);
    }
    const std::string* text = text_in(cell);
    return text != nullptr ? parse_amount(*text) : std::nullopt;
}

Variant plain_value(const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        const bool is_long = *whole >= std::numeric_limits<Long>::min() &&
                             *whole <= std::numeric_limits<Long>::max();
        return is_long ? Variant(static_cast<Long>(*whole)) : Variant(static_cast<Double>(*whole));
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return *real;
    }
    if (const std::string* text = text_in(cell)) {
        return from_utf8(*text);
    }
    return Variant::null();
}

struct TruthWord {
    StringView word;
    bool truth;
};
constexpr TruthWord truth_words[] = {
    {u"true", true},   {u"false", false}, {u"yes", true}, {u"no", false},
    {u"prawda", true}, {u"fałsz", false}, {u"tak", true}, {u"nie", false},
};

}  // namespace

Affinity affinity_of(std::string_view declared_type, bool strict) {
    const std::string type = ascii_upper(declared_type);
    const auto has = [&type](std::string_view part) {
        return type.find(part) != std::string::npos;
    };
    if (has("INT")) {
        return Affinity::Integer;
    }
    if (has("CHAR") || has("CLOB") || has("TEXT")) {
        return Affinity::Text;
    }
    if (has("BLOB") || type.empty() || (strict && type == "ANY")) {
        return Affinity::Blob;
    }
    if (has("REAL") || has("FLOA") || has("DOUB")) {
        return Affinity::Real;
    }
    return Affinity::Numeric;
}

ColumnKind kind_of(std::string_view declared_type) {
    const std::string type = ascii_upper(declared_type);
    const std::string_view word = std::string_view(type).substr(0, type.find_first_of(" (\t\n"));
    const auto* found = std::ranges::find(type_words, word, &TypeWord::word);
    return found != std::end(type_words) ? found->kind : ColumnKind::Plain;
}

Cell cell_of(const Variant& value, Affinity affinity) {
    return value.visit(Storing{affinity});
}

Variant variant_of(const Cell& cell, ColumnKind kind) {
    if (kind == ColumnKind::Date) {
        if (const auto moment = moment_of(cell)) {
            return date_of(*moment);
        }
    }
    if (kind == ColumnKind::Boolean) {
        if (const auto truth = truth_of(cell)) {
            return Boolean(*truth);
        }
    }
    if (kind == ColumnKind::Money || std::holds_alternative<Blob>(cell)) {
        if (const auto amount = amount_of(cell)) {
            return *amount;
        }
    }
    return plain_value(cell);
}

std::optional<Moment> moment_of(const Cell& cell) noexcept {
    if (const auto* text = std::get_if<std::string>(&cell)) {
        return parse_moment(*text);
    }
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        return moment_of_days(static_cast<Double>(*whole));
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return moment_of_days(*real);
    }
    return std::nullopt;
}

std::optional<Double> number_of(const Cell& cell) {
    if (const auto* whole = std::get_if<std::int64_t>(&cell)) {
        return static_cast<Double>(*whole);
    }
    if (const auto* real = std::get_if<double>(&cell)) {
        return *real;
    }
    const std::string* stored = text_in(cell);
    if (stored == nullptr) {
        return std::nullopt;
    }
    std::string text(without_blanks(*stored));
    std::ranges::replace(text, ',', '.');
    if (text.find_first_not_of("0123456789.+-eE") != std::string::npos) {
        return std::nullopt;  // "inf" and "nan", which from_chars would take
    }
    const char* begin = text.data() + (text.starts_with('+') ? 1 : 0);
    const char* end = text.data() + text.size();
    Double value = 0;
    const auto [stop, code] = std::from_chars(begin, end, value);
    if (code != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<bool> truth_of(const Cell& cell) {
    if (const auto number = number_of(cell)) {
        return *number != 0;
    }
    const auto* text = std::get_if<std::string>(&cell);
    if (text == nullptr) {
        return std::nullopt;
    }
    const String word = lower_case(from_utf8(without_blanks(*text)));
    const auto* found = std::ranges::find(truth_words, StringView(word), &TruthWord::word);
    return found != std::end(truth_words) ? std::optional(found->truth) : std::nullopt;
}

}  // namespace kvarta16::sqlite
