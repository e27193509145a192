#include "json_input.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include <kvarta16/frame/utf8.h>

#include "number_forms.h"
#include "refusal.h"

namespace kvarta16::tool {
namespace {

// A noncharacter opens every rewritten place; one that stands in a text itself is doubled. Half
// a surrogate pair is the mark and a unit of the private area, an infinite number a text of the
// mark and its sign.
constexpr char16_t mark = u'\uFDD0';
constexpr std::string_view mark_escape = "\\uFDD0";
constexpr std::string_view mark_bytes = "\xEF\xB7\x90";
constexpr char16_t first_surrogate = 0xD800;
constexpr char16_t first_stand_in = 0xE000;
constexpr std::string_view infinite = "\xEF\xB7\x90+";
constexpr std::string_view minus_infinite = "\xEF\xB7\x90-";

constexpr bool is_surrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}
constexpr bool is_high(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool is_low(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

// The unit that an escape "\uXXXX" at the start of `rest` stands for.
std::optional<char16_t> escaped_unit(std::string_view rest) {
    if (rest.size() < 6 || !rest.starts_with("\\u")) {
        return std::nullopt;
    }
    unsigned unit = 0;
    for (const char c : rest.substr(2, 4)) {
        const bool letter = (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
        if (!is_digit(c) && !letter) {
            return std::nullopt;
        }
        unit = unit * 16 + static_cast<unsigned>(is_digit(c) ? c - '0' : (c | 0x20) - 'a' + 10);
    }
    return static_cast<char16_t>(unit);
}

void append_escape(std::string& text, char16_t unit) {
    constexpr char digits[] = "0123456789ABCDEF";
    text += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        text += digits[(unit >> shift) & 0xF];
    }
}

// Walks a JSON text and rewrites what the parser would refuse or confuse; everything else, wrong
// forms included, goes to the parser as it is.
class Rewriter {
  public:
    explicit Rewriter(std::string_view source) : source_(source) {}

    std::string run() {
        result_.reserve(source_.size());
        while (position_ < source_.size()) {
            const char c = source_[position_];
            if (c == '"') {
                string();
            } else if (c == '-' || is_digit(c)) {
                number();
            } else {
                depth_ += static_cast<int>(c == '[' || c == '{');
                depth_ -= static_cast<int>(c == ']' || c == '}');
                if (depth_ > deepest_json) {
                    throw Refusal(RefusalCode::NoJson, "JSON nested too deeply");
                }
                take(1);
            }
        }
        return std::move(result_);
    }

  private:
    [[nodiscard]] std::string_view rest() const { return source_.substr(position_); }

    void take(std::size_t count) {
        const std::string_view taken = rest().substr(0, count);
        result_ += taken;
        position_ += taken.size();
    }
    void replace(std::size_t count, std::string_view replacement) {
        result_ += replacement;
        position_ += count;
    }

    void string() {
        take(1);
        while (position_ < source_.size() && source_[position_] != '"') {
            if (source_[position_] == '\\') {
                escape();
            } else if (rest().starts_with(mark_bytes)) {
                replace(mark_bytes.size(), std::string(mark_escape).append(mark_escape));
            } else {
                take(1);
            }
        }
        take(1);
    }

    void escape() {
        constexpr std::size_t length = 6;
        const std::optional<char16_t> unit = escaped_unit(rest());
        if (!unit) {
            take(2);
        } else if (*unit == mark) {
            replace(length, std::string(mark_escape).append(mark_escape));
        } else if (!is_surrogate(*unit)) {
            take(length);
        } else if (is_high(*unit) && is_low(escaped_unit(rest().substr(length)).value_or(0))) {
            take(2 * length);
        } else {
            std::string replacement(mark_escape);
            append_escape(replacement,
                          static_cast<char16_t>(first_stand_in + (*unit - first_surrogate)));
            replace(length, replacement);
        }
    }

    void number() {
        const std::string_view token =
            rest().substr(0, rest().find_first_not_of("+-.0123456789eE"));
        const bool infinite_number =
            is_json_number(token) && std::isinf(std::strtod(std::string(token).c_str(), nullptr));
        if (!infinite_number || is_key(token.size())) {
            take(token.size());
        } else {
            const std::string_view text = token[0] == '-' ? minus_infinite : infinite;
            replace(token.size(), '"' + std::string(text) + '"');
        }
    }

    // Whether what is `length` long and stands here is the key of an object: a text may be one.
    [[nodiscard]] bool is_key(std::size_t length) const {
        const std::string_view behind = rest().substr(length);
        const std::size_t next = behind.find_first_not_of(" \t\r\n");
        return next != std::string_view::npos && behind[next] == ':';
    }

    std::string_view source_;
    std::size_t position_ = 0;
    int depth_ = 0;
    std::string result_;
};

}  // namespace

Json parse_json(std::string_view text) {
    // To the parser a NUL is the end of the text, whatever stands behind it.
    if (text.find('\0') != std::string_view::npos) {
        throw Refusal(RefusalCode::NoJson, "Parse error");
    }
    const std::string rewritten = Rewriter(text).run();
    // Without exceptions the parser's own message, which quotes the input at length, is not made.
    Json value = Json::parse(rewritten, nullptr, false);
    if (value.is_discarded()) {
        throw Refusal(RefusalCode::NoJson, "Parse error");
    }
    return value;
}

bool is_text(const Json& value) {
    if (!value.is_string()) {
        return false;
    }
    const auto& text = value.get_ref<const std::string&>();
    return text != infinite && text != minus_infinite;
}

String text_of(const Json& value) {
    const String rewritten = from_utf8(value.get_ref<const std::string&>());
    String text;
    text.reserve(rewritten.size());
    for (std::size_t i = 0; i < rewritten.size(); ++i) {
        const bool marked = rewritten[i] == mark && i + 1 < rewritten.size();
        if (!marked) {
            text += rewritten[i];
        } else if (rewritten[++i] == mark) {
            text += mark;
        } else {
            text += static_cast<char16_t>(first_surrogate + (rewritten[i] - first_stand_in));
        }
    }
    return text;
}

std::optional<Double> number_of(const Json& value) {
    if (value.is_number()) {
        return value.get<Double>();
    }
    if (value.is_string() && !is_text(value)) {
        const bool minus = value.get_ref<const std::string&>() == minus_infinite;
        const Double limit = std::numeric_limits<Double>::infinity();
        return minus ? -limit : limit;
    }
    return std::nullopt;
}

std::optional<std::int64_t> whole_number_of(const Json& value) {
    const bool fits = !value.is_number_unsigned() ||
                      value.get<std::uint64_t>() <=
                          static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return value.is_number_integer() && fits ? std::optional(value.get<std::int64_t>())
                                             : std::nullopt;
}

}  // namespace kvarta16::tool
