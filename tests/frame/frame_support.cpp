#include "frame_support.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <stdexcept>
#include <type_traits>

namespace kvarta16::frame_tests {

// ---- Showing values -------------------------------------------------------------------------

void append_utf8(std::string& out, char32_t code) {
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

std::string show(StringView text) {
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

String wide(std::string_view ascii) {
    return String(ascii.begin(), ascii.end());
}

std::string show_number(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value == 0 ? 0.0 : value);  // no minus at a zero
    return text;
}

std::string show(Currency value) {
    const bool is_negative = value.count < 0;
    const std::uint64_t count = is_negative ? 0 - static_cast<std::uint64_t>(value.count)
                                            : static_cast<std::uint64_t>(value.count);
    char text[40];
    std::snprintf(text, sizeof text, "%s%llu.%04llu", is_negative ? "-" : "",
                  static_cast<unsigned long long>(count / 10000),
                  static_cast<unsigned long long>(count % 10000));
    return text;
}

std::string whole_digits(const Decimal& value) {
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

std::string show(const Decimal& value) {
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

std::string notation(const Variant& value) {
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

// ---- Reading values ---------------------------------------------------------------------------

std::uint64_t parse_magnitude(std::string_view digits) {
    std::uint64_t value = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9') {
            throw std::invalid_argument("no digits: " + std::string(digits));
        }
        value = value * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    return value;
}

DecimalParts decimal_parts(std::string_view text) {
    DecimalParts parts;
    parts.is_negative = text.starts_with('-');
    text.remove_prefix(parts.is_negative ? 1 : 0);
    const std::size_t point = text.find('.');
    parts.whole = text.substr(0, point);
    parts.decimals = point == std::string_view::npos ? "" : text.substr(point + 1);
    return parts;
}

Currency parse_currency(std::string_view text) {
    const DecimalParts parts = decimal_parts(text);
    if (parts.decimals.size() > 4) {
        throw std::invalid_argument("more than four decimals: " + std::string(text));
    }
    const std::uint64_t magnitude =
        parse_magnitude(parts.whole + parts.decimals + std::string(4 - parts.decimals.size(), '0'));
    return Currency::raw(static_cast<std::int64_t>(parts.is_negative ? 0 - magnitude : magnitude));
}

Decimal parse_decimal(std::string_view text) {
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

std::int32_t chrono_day_number(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    const sys_days wanted{std::chrono::year{year} / std::chrono::month{month} /
                          std::chrono::day{day}};
    return static_cast<std::int32_t>((wanted - origin).count());
}

Date parse_date(const std::string& text) {
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

String parse_string(std::string_view quoted) {
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

Variant parse_value(const std::string& cell) {
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

std::vector<Row> rows_of(const std::string& file, std::size_t columns) {
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

Forms::Forms(const Variant& value)
    : value_(value.value()),
      to_variable_(make_reference(value_)),
      to_variant_(Variant::reference(value_)),
      to_reference_(Variant::reference(to_variable_)) {}

std::array<Form, 4> Forms::all() const {
    return {{{"value", &value_},
             {"reference to a variable", &to_variable_},
             {"reference to a Variant", &to_variant_},
             {"reference to a reference", &to_reference_}}};
}

Variant Forms::make_reference(const Variant& value) {
    return value.visit([this]<class T>(const T& held) {
        const auto variable = std::make_shared<T>(held);
        variable_ = variable;
        return Variant::reference(*variable);
    });
}

std::vector<Variant> one_of_each_subtype() {
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

Random::Random(std::uint64_t seed) : engine_(seed) {}

std::uint64_t Random::bits() {
    return engine_();
}

std::int64_t Random::between(std::int64_t low, std::int64_t high) {
    const std::uint64_t width =
        static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low) + 1;
    const std::uint64_t offset = width == 0 ? bits() : bits() % width;
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + offset);
}

bool Random::chance(int percent) {
    return between(1, 100) <= percent;
}

std::int64_t Random::count() {
    return static_cast<std::int64_t>(bits()) >> static_cast<int>(between(0, 63));
}

double Random::any_double() {
    double value = 0;
    do {
        const std::uint64_t pattern = bits();
        static_assert(sizeof pattern == sizeof value);
        std::memcpy(&value, &pattern, sizeof value);
    } while (!std::isfinite(value));
    return value;
}

std::string Random::digits(std::int64_t count) {
    std::string text;
    for (std::int64_t i = 0; i < count; ++i) {
        text += static_cast<char>('0' + between(0, 9));
    }
    return text;
}

}  // namespace kvarta16::frame_tests
