#include "json_output.h"

#include <array>
#include <charconv>
#include <cmath>

#include <kvarta16/frame/utf8.h>

namespace kvarta16::tool {
namespace {

constexpr bool is_high(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool is_low(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

// The escape of a unit that cannot stand in a JSON text as it is; a low half is one here only if
// no high half stands before it. Empty for all others.
std::string escape_of(char16_t unit) {
    switch (unit) {
        case u'"':
            return "\\\"";
        case u'\\':
            return "\\\\";
        case u'\n':
            return "\\n";
        case u'\r':
            return "\\r";
        case u'\t':
            return "\\t";
        default:
            break;
    }
    if (unit >= 0x20 && !is_high(unit) && !is_low(unit)) {
        return {};
    }
    constexpr char digits[] = "0123456789abcdef";
    std::string escape = "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        escape += digits[(unit >> shift) & 0xF];
    }
    return escape;
}

template <class Number>
std::string shortest(Number value) {
    if (std::isnan(value)) {
        return "null";
    }
    if (std::isinf(value)) {
        return value < 0 ? "-1e999" : "1e999";
    }
    std::array<char, 40> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    std::string text(buffer.data(), written.ptr);
    if (text.find_first_of(".e") == std::string::npos) {
        text += ".0";
    }
    return text;
}

}  // namespace

JsonWriter& JsonWriter::key(std::string_view name) {
    plain(name);
    json_ += ':';
    needs_comma_ = false;
    return *this;
}

JsonWriter& JsonWriter::number(Double value) {
    return raw(shortest(value));
}

JsonWriter& JsonWriter::number(Single value) {
    return raw(shortest(value));
}

JsonWriter& JsonWriter::text(StringView value) {
    separate();
    json_ += '"';
    std::size_t plain_from = 0;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (is_high(value[i]) && i + 1 < value.size() && is_low(value[i + 1])) {
            ++i;
            continue;
        }
        const std::string escape = escape_of(value[i]);
        if (!escape.empty()) {
            json_ += to_utf8(value.substr(plain_from, i - plain_from)) + escape;
            plain_from = i + 1;
        }
    }
    json_ += to_utf8(value.substr(plain_from));
    json_ += '"';
    return *this;
}

JsonWriter& JsonWriter::plain(std::string_view value) {
    separate();
    json_ += '"';
    json_ += value;
    json_ += '"';
    return *this;
}

JsonWriter& JsonWriter::raw(std::string_view json) {
    separate();
    json_ += json;
    return *this;
}

JsonWriter& JsonWriter::open(char bracket) {
    separate();
    json_ += bracket;
    needs_comma_ = false;
    return *this;
}

JsonWriter& JsonWriter::close(char bracket) {
    json_ += bracket;
    needs_comma_ = true;
    return *this;
}

void JsonWriter::separate() {
    if (needs_comma_) {
        json_ += ',';
    }
    needs_comma_ = true;
}

}  // namespace kvarta16::tool
