#include "fuzz_support.h"

#include <cstdio>
#include <cstdlib>
#include <type_traits>

#include <kvarta16/frame/utf8.h>

namespace kvarta16::fuzz {
namespace {

// The code point that begins the bytes and how many of them it takes; no length where none does.
struct CodePoint {
    std::uint32_t number = 0;
    std::size_t length = 0;
};

CodePoint code_point(std::string_view bytes) {
    struct Form {
        std::uint32_t mask, mark, least;
        std::size_t length;
    };
    constexpr Form forms[] = {{0x80, 0x00, 0, 1},
                              {0xE0, 0xC0, 0x80, 2},
                              {0xF0, 0xE0, 0x800, 3},
                              {0xF8, 0xF0, 0x10000, 4}};
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    for (const Form& form : forms) {
        if ((at(0) & form.mask) != form.mark || bytes.size() < form.length) {
            continue;
        }
        std::uint32_t number = at(0) & (~form.mask & 0xFF);
        bool continues = true;
        for (std::size_t i = 1; i < form.length; ++i) {
            continues = continues && (at(i) & 0xC0) == 0x80;
            number = (number << 6) | (at(i) & 0x3FU);
        }
        if (continues && number >= form.least && number <= 0x10FFFF) {
            return {number, form.length};
        }
    }
    return {};
}

template <class Unit>
std::string quoted(std::basic_string_view<Unit> text, bool keeps_letters) {
    std::string shown = "\"";
    String letters;
    const auto flush = [&] {
        shown += to_utf8(letters);
        letters.clear();
    };
    for (const Unit unit : text) {
        const auto number =
            static_cast<std::uint32_t>(static_cast<std::make_unsigned_t<Unit>>(unit));
        const bool is_ascii = number >= 0x20 && number < 0x7F && number != '"' && number != '\\';
        const bool is_letter = keeps_letters && number >= 0xA1 && number < 0x2000;
        if (is_ascii || is_letter) {
            letters += static_cast<char16_t>(number);
            continue;
        }
        flush();
        char escape[16];
        std::snprintf(escape, sizeof escape, sizeof(Unit) == 1 ? "\\x%02x" : "\\u%04x", number);
        shown += escape;
    }
    flush();
    return shown + '"';
}

std::string formatted(const char* form, Double value) {
    char text[400];
    std::snprintf(text, sizeof text, form, value, value);
    return text;
}

}  // namespace

String text_of(std::string_view bytes) {
    String text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const CodePoint point = code_point(bytes);
        if (point.length == 0) {
            text += static_cast<char16_t>(static_cast<unsigned char>(bytes.front()));
        } else if (point.number > 0xFFFF) {
            text += static_cast<char16_t>(0xD800 + ((point.number - 0x10000) >> 10));
            text += static_cast<char16_t>(0xDC00 + (point.number & 0x3FF));
        } else {
            text += static_cast<char16_t>(point.number);
        }
        bytes.remove_prefix(std::max<std::size_t>(point.length, 1));
    }
    return text;
}

Variant any_value(Input& input) {
    switch (input.number<char>()) {
        case 'd':
            return input.number<Double>();
        case 'f':
            return input.number<Single>();
        case 'c':
            return Currency::raw(input.number<std::int64_t>());
        case 'D':
            return Date{input.number<Double>()};
        case 'l':
            return input.number<Long>();
        case 'i':
            return input.number<Integer>();
        case 'y':
            return input.number<Byte>();
        case 'b':
            return Boolean::from_raw(input.number<Integer>());
        case 'm': {
            Decimal decimal;
            decimal.scale = static_cast<std::uint8_t>(input.number<std::uint8_t>() % 29);
            decimal.negative = input.number<std::uint8_t>() % 2 == 1;
            decimal.low = input.number<std::uint32_t>();
            decimal.middle = input.number<std::uint32_t>();
            decimal.high = input.number<std::uint32_t>();
            return decimal;
        }
        case 'n':
            return Variant::null();
        case 'e':
            return {};
        default:
            return input.rest_as_text();
    }
}

std::string show_value(const Variant& value) {
    return show(outcome_of([&] { return ToText(value); })) + " of subtype " +
           show(static_cast<int>(value.subtype()));
}

std::string show(std::string_view bytes) {
    return quoted(bytes, false);
}

std::string show(StringView text) {
    return quoted(text, true);
}

std::string show(Double value) {
    return formatted("%.17g (%a)", value);
}

std::string show(Currency value) {
    return "Currency raw " + std::to_string(value.count);
}

std::string show(Date value) {
    return "Date " + show(value.days);
}

void broken(std::string_view what, const std::string& of, const std::string& told) {
    std::fprintf(stderr, "\nAn oracle broke: %.*s\n  of %s\n  %s\n", static_cast<int>(what.size()),
                 what.data(), of.c_str(), told.c_str());
    std::fflush(stderr);
    std::abort();
}

}  // namespace kvarta16::fuzz
