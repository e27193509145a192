// What the tests of the value layer share: a plain notation of values, in which the tables are
// written and the failures of a test are shown, and the readers of the tables.
//
//   Integer 5, Long 5, Byte 5, Single 0.5, Double 0.5, Currency 12.5, Decimal 1.005, Boolean -1
//   Date 45429.5 or Date 2024-05-17 or Date 2024-05-17 12:00:00
//   String "12,5\u00A0z\u0142", Error 5, Object, UnknownObject, Nothing, Empty, Null, Missing
//   !13 where a failure with that number is expected
#pragma once

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "support/sanitized.h"

namespace kvarta16::frame_tests {

// ---- Showing values -------------------------------------------------------------------------

inline void append_utf8(std::string& out, char32_t code) {
    const auto put = [&out](char32_t byte) { out += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

// A text in quotes; what cannot be seen is shown by its code.
inline std::string show(StringView text) {
    std::string out = "\"";
    for (const char16_t unit : text) {
        const bool is_surrogate = unit >= 0xD800 && unit < 0xE000;
        if (unit < 0x20 || (unit >= 0x7F && unit <= 0xA0) || is_surrogate || unit > 0xFFF0) {
            char code[8];
            std::snprintf(code, sizeof code, "\\u%04X", static_cast<unsigned>(unit));
            out += code;
        } else {
            append_utf8(out, unit);
        }
    }
    return out + '"';
}

// ASCII alone.
inline String wide(std::string_view ascii) {
    return String(ascii.begin(), ascii.end());
}

inline std::string show_number(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value == 0 ? 0.0 : value);  // no minus at a zero
    return text;
}

inline std::string show(Currency value) {
    const bool is_negative = value.count < 0;
    const std::uint64_t count = is_negative ? 0 - static_cast<std::uint64_t>(value.count)
                                            : static_cast<std::uint64_t>(value.count);
    char text[40];
    std::snprintf(text, sizeof text, "%s%llu.%04llu", is_negative ? "-" : "",
                  static_cast<unsigned long long>(count / 10000),
                  static_cast<unsigned long long>(count % 10000));
    return text;
}

// The digits of the 96-bit whole number.
inline std::string whole_digits(const Decimal& value) {
    std::uint32_t words[] = {value.high, value.middle, value.low};
    std::string reversed;
    while (words[0] != 0 || words[1] != 0 || words[2] != 0) {
        std::uint64_t remainder = 0;
        for (std::uint32_t& word : words) {
            const std::uint64_t part = (remainder << 32) | word;
            word = static_cast<std::uint32_t>(part / 10);
            remainder = part % 10;
        }
        reversed += static_cast<char>('0' + remainder);
    }
    return reversed.empty() ? "0" : std::string(reversed.rbegin(), reversed.rend());
}

// Without zeros at the end of the decimals, so that 1.50 and 1.5 show alike.
inline std::string show(const Decimal& value) {
    std::string digits = whole_digits(value);
    if (digits.size() <= value.scale) {
        digits.insert(0, value.scale + 1u - digits.size(), '0');
    }
    digits.insert(digits.size() - value.scale, ".");
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') {
        digits.pop_back();
    }
    return (value.negative && digits != "0" ? "-" : "") + digits;
}

// The value in the notation of the tables.
inline std::string notation(const Variant& value) {
    return value.visit([]<class T>(const T& held) -> std::string {
        if constexpr (std::is_same_v<T, EmptyValue>) {
            return "Empty";
        } else if constexpr (std::is_same_v<T, NullValue>) {
            return "Null";
        } else if constexpr (std::is_same_v<T, Integer>) {
            return "Integer " + std::to_string(held);
        } else if constexpr (std::is_same_v<T, Long>) {
            return "Long " + std::to_string(held);
        } else if constexpr (std::is_same_v<T, Byte>) {
            return "Byte " + std::to_string(held);
        } else if constexpr (std::is_same_v<T, Single>) {
            return "Single " + show_number("%.9g", static_cast<double>(held));
        } else if constexpr (std::is_same_v<T, Double>) {
            return "Double " + show_number("%.17g", held);
        } else if constexpr (std::is_same_v<T, Currency>) {
            return "Currency " + show(held);
        } else if constexpr (std::is_same_v<T, Date>) {
            return "Date " + show_number("%.17g", held.days);
        } else if constexpr (std::is_same_v<T, String>) {
            return "String " + show(held);
        } else if constexpr (std::is_same_v<T, ObjectPointer>) {
            return held == nullptr ? "Nothing" : "Object";
        } else if constexpr (std::is_same_v<T, ErrorCode>) {
            return held.code == static_cast<Long>(0x80020004U)
                       ? "Missing"
                       : "Error " + std::to_string(held.code);
        } else if constexpr (std::is_same_v<T, Boolean>) {
            return "Boolean " + std::to_string(held.raw);
        } else if constexpr (std::is_same_v<T, UnknownObject>) {
            return "UnknownObject";
        } else {
            static_assert(std::is_same_v<T, Decimal>);
            return "Decimal " + show(held);
        }
    });
}

// ---- Calls that may fail ----------------------------------------------------------------------

// The number of the failure of a call, 0 if it does not fail.
template <class Call>
int failure_of(Call&& call) {
    try {
        static_cast<void>(call());
        return 0;
    } catch (const Failure& failure) {
        return failure.number();
    }
}

// The result of a call in the notation, or "!" and the number of its failure.
template <class Call>
std::string outcome(Call&& call) {
    try {
        return notation(Variant(call()));
    } catch (const Failure& failure) {
        return "!" + std::to_string(failure.number());
    }
}

// ---- Reading values ---------------------------------------------------------------------------

class AnObject final : public Object {};

inline std::uint64_t parse_magnitude(std::string_view digits) {
    std::uint64_t value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') {
            throw std::invalid_argument("no digits: " + std::string(digits));
        }
        value = value * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    return value;
}

// The sign, the whole part and the decimals of "-12.5".
struct DecimalParts {
    bool is_negative = false;
    std::string whole;
    std::string decimals;
};

inline DecimalParts decimal_parts(std::string_view text) {
    DecimalParts parts;
    parts.is_negative = text.starts_with('-');
    text.remove_prefix(parts.is_negative ? 1 : 0);
    const std::size_t point = text.find('.');
    parts.whole = text.substr(0, point);
    parts.decimals = point == std::string_view::npos ? "" : text.substr(point + 1);
    return parts;
}

inline Currency parse_currency(std::string_view text) {
    const DecimalParts parts = decimal_parts(text);
    if (parts.decimals.size() > 4) {
        throw std::invalid_argument("more than four decimals: " + std::string(text));
    }
    const std::uint64_t magnitude =
        parse_magnitude(parts.whole + parts.decimals + std::string(4 - parts.decimals.size(), '0'));
    return Currency::raw(static_cast<std::int64_t>(parts.is_negative ? 0 - magnitude : magnitude));
}

inline Decimal parse_decimal(std::string_view text) {
    const DecimalParts parts = decimal_parts(text);
    Decimal value;
    value.negative = parts.is_negative;
    value.scale = static_cast<std::uint8_t>(parts.decimals.size());
    for (const char digit : parts.whole + parts.decimals) {
        std::uint64_t carry = parse_magnitude({&digit, 1});
        for (std::uint32_t* word : {&value.low, &value.middle, &value.high}) {
            carry += std::uint64_t{*word} * 10;
            *word = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0 || value.scale > 28) {
            throw std::invalid_argument("no decimal: " + std::string(text));
        }
    }
    return value;
}

// The day number by another calendar than the library's.
inline std::int32_t chrono_day_number(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    const sys_days wanted{std::chrono::year{year} / std::chrono::month{month} /
                          std::chrono::day{day}};
    return static_cast<std::int32_t>((wanted - origin).count());
}

// Years with a minus do not occur. A day before 1899-12-30 with a time counts its fraction away
// from zero: the day number is below zero and the time is taken off.
inline Date parse_date(const std::string& text) {
    int year = 0;
    unsigned month = 0;
    unsigned day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    const int read = std::sscanf(text.c_str(), "%4d-%2u-%2u %d:%d:%d", &year, &month, &day, &hour,
                                 &minute, &second);
    if (read < 3) {
        return {std::strtod(text.c_str(), nullptr)};
    }
    const double days = chrono_day_number(year, month, day);
    const double time = (hour * 3600 + minute * 60 + second) / 86400.0;
    return {days < 0 ? days - time : days + time};
}

// A text in quotes, with the escapes \t, \n, \r, \", \\ and \uXXXX; the rest is UTF-8.
inline String parse_string(std::string_view quoted) {
    if (quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"') {
        throw std::invalid_argument("no quoted text: " + std::string(quoted));
    }
    quoted = quoted.substr(1, quoted.size() - 2);
    String text;
    for (std::size_t i = 0; i < quoted.size(); ++i) {
        const auto byte = static_cast<unsigned char>(quoted[i]);
        if (byte == '\\') {
            static const std::map<char, char16_t> escapes = {
                {'t', u'\t'}, {'n', u'\n'}, {'r', u'\r'}, {'"', u'"'}, {'\\', u'\\'}};
            ++i;
            if (quoted.at(i) == 'u') {
                const std::string digits(quoted.substr(i + 1, 4));
                text += static_cast<char16_t>(std::stoul(digits, nullptr, 16));
                i += 4;
            } else {
                text += escapes.at(quoted[i]);
            }
        } else if (byte < 0x80) {
            text += static_cast<char16_t>(byte);
        } else if (byte < 0xE0) {
            const auto next = static_cast<unsigned char>(quoted.at(++i));
            text += static_cast<char16_t>((byte & 0x1Fu) << 6 | (next & 0x3Fu));
        } else {
            throw std::invalid_argument("a letter above U+07FF: write it as \\uXXXX");
        }
    }
    return text;
}

inline Variant parse_value(const std::string& cell) {
    const std::size_t blank = cell.find(' ');
    const std::string kind = cell.substr(0, blank);
    const std::string rest = blank == std::string::npos ? "" : cell.substr(blank + 1);
    const auto number = [&rest] { return std::stoll(rest); };
    using Reader = std::function<Variant()>;
    const std::map<std::string, Reader> readers = {
        {"Empty", [] { return Variant(); }},
        {"Null", [] { return Variant::null(); }},
        {"Missing", [] { return Variant::missing(); }},
        {"Nothing", [] { return Variant(ObjectPointer()); }},
        {"Object", [] { return Variant(std::make_shared<AnObject>()); }},
        {"UnknownObject", [] { return Variant(UnknownObject{std::make_shared<AnObject>()}); }},
        {"Integer", [&] { return Variant(static_cast<Integer>(number())); }},
        {"Long", [&] { return Variant(static_cast<Long>(number())); }},
        {"Byte", [&] { return Variant(static_cast<Byte>(number())); }},
        {"Error", [&] { return Variant::error(static_cast<Long>(number())); }},
        {"Boolean", [&] { return Variant(Boolean::from_raw(static_cast<Integer>(number()))); }},
        {"Single", [&] { return Variant(std::strtof(rest.c_str(), nullptr)); }},
        {"Double", [&] { return Variant(std::strtod(rest.c_str(), nullptr)); }},
        {"Currency", [&] { return Variant(parse_currency(rest)); }},
        {"Decimal", [&] { return Variant(parse_decimal(rest)); }},
        {"Date", [&] { return Variant(parse_date(rest)); }},
        {"String", [&] { return Variant(parse_string(rest)); }},
    };
    const auto reader = readers.find(kind);
    if (reader == readers.end()) {
        throw std::invalid_argument("no value: " + cell);
    }
    return reader->second();
}

// ---- Tables -----------------------------------------------------------------------------------

struct Row {
    std::string place;  // "to_text.tsv:12"
    std::vector<std::string> cells;
};

// The rows of a table of this folder. A row has `columns` cells, the last of which is a comment
// and may be missing; one tab or more stand between cells. Lines that begin with "#" are
// comments.
inline std::vector<Row> rows_of(const std::string& file, std::size_t columns) {
    std::ifstream in(std::string(KVARTA16_TEST_DATA) + "/frame/" + file);
    if (!in) {
        throw std::runtime_error("no table " + file);
    }
    std::vector<Row> rows;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line.front() == '#') {
            continue;
        }
        Row row{file + ":" + std::to_string(number), {}};
        std::size_t begin = 0;
        while (begin != std::string::npos) {
            const std::size_t end = line.find('\t', begin);
            row.cells.push_back(line.substr(begin, end - begin));
            begin = line.find_first_not_of('\t', end);
        }
        if (row.cells.size() + 1 != columns && row.cells.size() != columns) {
            throw std::runtime_error(row.place + ": wrong number of cells");
        }
        rows.push_back(row);
    }
    if (rows.empty()) {
        throw std::runtime_error(file + " is empty");
    }
    return rows;
}

// ---- By-reference forms -----------------------------------------------------------------------

struct Form {
    const char* name;
    const Variant* value;
};

// A value as it can be handed over: itself, a reference to a variable of its type, a reference to
// a Variant, and a reference to a Variant that is a reference.
class Forms {
  public:
    explicit Forms(const Variant& value)
        : value_(value.value()),
          to_variable_(make_reference(value_)),
          to_variant_(Variant::reference(value_)),
          to_reference_(Variant::reference(to_variable_)) {}
    Forms(const Forms&) = delete;
    Forms& operator=(const Forms&) = delete;
    [[nodiscard]] std::array<Form, 4> all() const {
        return {{{"value", &value_},
                 {"reference to a variable", &to_variable_},
                 {"reference to a Variant", &to_variant_},
                 {"reference to a reference", &to_reference_}}};
    }

  private:
    Variant make_reference(const Variant& value) {
        return value.visit([this]<class T>(const T& held) {
            const auto variable = std::make_shared<T>(held);
            variable_ = variable;
            return Variant::reference(*variable);
        });
    }

    std::shared_ptr<void> variable_;
    Variant value_;
    Variant to_variable_;
    Variant to_variant_;
    Variant to_reference_;
};

// One value of each subtype, in the order of the codes.
inline std::vector<Variant> one_of_each_subtype() {
    std::vector<Variant> values;
    for (const char* cell :
         {"Empty", "Null", "Integer 5", "Long 5", "Single 5", "Double 5", "Currency 5",
          "Date 2024-05-17", "String \"5\"", "Object", "Nothing", "Error 5", "Missing",
          "Boolean -1", "UnknownObject", "Decimal 5", "Byte 5"}) {
        values.push_back(parse_value(cell));
    }
    return values;
}

// ---- Random values ----------------------------------------------------------------------------

// A case takes some twenty times as long under a sanitizer, which looks at other things than
// figures.
using testing_support::is_sanitized;
inline constexpr int random_cases = is_sanitized ? 20'000 : 200'000;

class Random {
  public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    std::uint64_t bits() { return engine_(); }
    // Both bounds belong to the range.
    std::int64_t between(std::int64_t low, std::int64_t high) {
        const std::uint64_t width =
            static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low) + 1;
        const std::uint64_t offset = width == 0 ? bits() : bits() % width;
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + offset);
    }
    bool chance(int percent) { return between(1, 100) <= percent; }
    // A count with a random number of bits, so that small ones are as frequent as large ones.
    std::int64_t count() {
        return static_cast<std::int64_t>(bits()) >> static_cast<int>(between(0, 63));
    }
    // Any finite Double, of any magnitude.
    double any_double() {
        double value = 0;
        do {
            const std::uint64_t pattern = bits();
            static_assert(sizeof pattern == sizeof value);
            std::memcpy(&value, &pattern, sizeof value);
        } while (!std::isfinite(value));
        return value;
    }
    std::string digits(std::int64_t count) {
        std::string text;
        for (std::int64_t i = 0; i < count; ++i) {
            text += static_cast<char>('0' + between(0, 9));
        }
        return text;
    }

  private:
    std::mt19937_64 engine_;
};

// ---- All short texts --------------------------------------------------------------------------

// Calls `visit` with every text of at most `longest` pieces of the alphabet, "" included, up to
// the first fatal failure.
template <class Visit>
void for_all_texts(const std::vector<String>& alphabet, int longest, const Visit& visit) {
    const std::function<void(String&, int)> extend = [&](String& text, int left) {
        if (testing::Test::HasFatalFailure()) {
            return;
        }
        visit(std::as_const(text));
        if (left == 0) {
            return;
        }
        for (const String& piece : alphabet) {
            text += piece;
            extend(text, left - 1);
            text.resize(text.size() - piece.size());
        }
    };
    String text;
    extend(text, longest);
}

}  // namespace kvarta16::frame_tests
