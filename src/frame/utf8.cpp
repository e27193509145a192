#include <kvarta16/frame/utf8.h>

namespace kvarta16 {
namespace {

constexpr char32_t replacement = 0xFFFD;

constexpr bool is_high_surrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool is_low_surrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

char byte_of(char32_t bits) {
    return static_cast<char>(static_cast<unsigned char>(bits));
}

void append_utf8(std::string& bytes, char32_t code) {
    if (code < 0x80) {
        bytes += byte_of(code);
    } else if (code < 0x800) {
        bytes += byte_of(0xC0 | (code >> 6));
        bytes += byte_of(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        bytes += byte_of(0xE0 | (code >> 12));
        bytes += byte_of(0x80 | ((code >> 6) & 0x3F));
        bytes += byte_of(0x80 | (code & 0x3F));
    } else {
        bytes += byte_of(0xF0 | (code >> 18));
        bytes += byte_of(0x80 | ((code >> 12) & 0x3F));
        bytes += byte_of(0x80 | ((code >> 6) & 0x3F));
        bytes += byte_of(0x80 | (code & 0x3F));
    }
}

void append_utf16(std::u16string& text, char32_t code) {
    if (code < 0x10000) {
        text += static_cast<char16_t>(code);
    } else {
        text += static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10));
        text += static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
    }
}

struct Decoded {
    char32_t code;
    std::size_t length;
};

// Overlong forms, surrogates and codes past U+10FFFF are no UTF-8.
Decoded decode(std::string_view bytes) {
    const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) {
        return {replacement, 1};
    }
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((at(i) & 0xC0U) != 0x80U) {
            return {replacement, 1};
        }
        code = (code << 6) | (at(i) & 0x3FU);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest[length] || code > 0x10FFFF || surrogate) {
        return {replacement, 1};
    }
    return {code, length};
}

}  // namespace

std::string to_utf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (is_high_surrogate(unit) && i + 1 < text.size() && is_low_surrogate(text[i + 1])) {
            const char32_t high = static_cast<char32_t>(unit - 0xD800) << 10;
            append_utf8(bytes, 0x10000 + high + static_cast<char32_t>(text[++i] - 0xDC00));
        } else {
            const bool alone = is_high_surrogate(unit) || is_low_surrogate(unit);
            append_utf8(bytes, alone ? replacement : unit);
        }
    }
    return bytes;
}

std::u16string from_utf8(std::string_view bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Decoded decoded = decode(bytes);
        append_utf16(text, decoded.code);
        bytes.remove_prefix(decoded.length);
    }
    return text;
}

}  // namespace kvarta16
