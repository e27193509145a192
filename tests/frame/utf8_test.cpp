// UTF-8 both ways, against a plain reading of the encoding, over all code points and all short
// sequences of telling bytes.

#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

String in_utf16(char32_t code) {
    if (code < 0x10000) {
        return String(1, static_cast<char16_t>(code));
    }
    return {static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)),
            static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF))};
}

TEST(Utf8, CarriesEveryCodePoint) {
    for (char32_t code = 0; code <= 0x10FFFF; ++code) {
        if (code >= 0xD800 && code < 0xE000) {
            continue;
        }
        std::string bytes;
        append_utf8(bytes, code);
        const String text = in_utf16(code);
        ASSERT_EQ(to_utf8(text), bytes) << static_cast<std::uint32_t>(code);
        ASSERT_EQ(from_utf8(bytes), text) << static_cast<std::uint32_t>(code);
    }
}

TEST(Utf8, CarriesTexts) {
    EXPECT_EQ(to_utf8(u""), "");
    EXPECT_EQ(from_utf8(""), u"");
    EXPECT_EQ(to_utf8(u"za\u017C\u00F3\u0142\u0107 \u20AC \U0001F600"),
              "za\xC5\xBC\xC3\xB3\xC5\x82\xC4\x87 \xE2\x82\xAC \xF0\x9F\x98\x80");
    const String with_zero = {u'a', u'\0', u'b'};
    EXPECT_EQ(to_utf8(with_zero), std::string({'a', '\0', 'b'}));
    EXPECT_EQ(from_utf8(std::string({'a', '\0', 'b'})), with_zero);
    EXPECT_EQ(from_utf8("\xEF\xBB\xBF"), u"\uFEFF");
}

// ---- Halves of pairs --------------------------------------------------------------------------

std::string plain_to_utf8(const String& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        const bool is_first_half = unit >= 0xD800 && unit < 0xDC00;
        const bool is_second_half = unit >= 0xDC00 && unit < 0xE000;
        const char32_t next = i + 1 < text.size() ? text[i + 1] : 0;
        if (is_first_half && next >= 0xDC00 && next < 0xE000) {
            append_utf8(bytes, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else {
            append_utf8(bytes, is_first_half || is_second_half ? 0xFFFD : unit);
        }
    }
    return bytes;
}

TEST(Utf8, WritesAHalfOfNoPairAsTheReplacementCharacter) {
    const std::vector<String> units = {u"a",
                                       u"\u0142",
                                       String(1, char16_t{0xD800}),
                                       String(1, char16_t{0xDBFF}),
                                       String(1, char16_t{0xDC00}),
                                       String(1, char16_t{0xDFFF}),
                                       String(1, char16_t{0xE000})};
    for_all_texts(units, 5, [](const String& text) {
        ASSERT_EQ(to_utf8(text), plain_to_utf8(text)) << show(text);
    });
    for (char32_t unit = 0xD800; unit < 0xE000; ++unit) {
        ASSERT_EQ(to_utf8(String(1, static_cast<char16_t>(unit))), "\xEF\xBF\xBD");
    }
}

// ---- Bytes that are no UTF-8 ------------------------------------------------------------------

// Reads one code point if the bytes begin with a whole and proper sequence.
std::size_t proper_sequence(std::string_view bytes, char32_t& code) {
    for (std::size_t size = 1; size <= 4 && size <= bytes.size(); ++size) {
        std::uint32_t bits[4] = {};
        for (std::size_t i = 0; i < size; ++i) {
            bits[i] = static_cast<unsigned char>(bytes[i]);
        }
        char32_t candidate = size == 1   ? bits[0]
                             : size == 2 ? (bits[0] & 0x1F) << 6 | (bits[1] & 0x3F)
                             : size == 3
                                 ? (bits[0] & 0x0F) << 12 | (bits[1] & 0x3F) << 6 | (bits[2] & 0x3F)
                                 : (bits[0] & 0x07) << 18 | (bits[1] & 0x3F) << 12 |
                                       (bits[2] & 0x3F) << 6 | (bits[3] & 0x3F);
        if (candidate > 0x10FFFF || (candidate >= 0xD800 && candidate < 0xE000)) {
            continue;
        }
        // Only the one proper way of writing it gives the same bytes back.
        std::string again;
        append_utf8(again, candidate);
        if (again == bytes.substr(0, size)) {
            code = candidate;
            return size;
        }
    }
    return 0;
}

String plain_from_utf8(std::string_view bytes) {
    String text;
    while (!bytes.empty()) {
        char32_t code = 0;
        const std::size_t size = proper_sequence(bytes, code);
        text += size == 0 ? String(u"\uFFFD") : in_utf16(code);
        bytes.remove_prefix(size == 0 ? 1 : size);
    }
    return text;
}

void expect_read(const std::string& bytes) {
    ASSERT_EQ(from_utf8(bytes), plain_from_utf8(bytes)) << testing::PrintToString(bytes);
}

TEST(Utf8, ReadsOneReplacementForEachByteThatFitsNowhere) {
    for (int first = 0; first <= 255; ++first) {
        expect_read({static_cast<char>(first)});
        for (int second = 0; second <= 255; ++second) {
            expect_read({static_cast<char>(first), static_cast<char>(second)});
        }
    }
    // The bytes at the bounds of what may stand where.
    const std::vector<int> telling = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF,
                                      0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE,
                                      0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xFF};
    for (const int a : telling) {
        for (const int b : telling) {
            for (const int c : telling) {
                for (const int d : telling) {
                    const std::string bytes = {static_cast<char>(a), static_cast<char>(b),
                                               static_cast<char>(c), static_cast<char>(d)};
                    expect_read(bytes);
                    expect_read(bytes + "a");
                    if (HasFatalFailure()) {
                        return;
                    }
                }
                expect_read({static_cast<char>(a), static_cast<char>(b), static_cast<char>(c)});
            }
        }
    }
}

TEST(Utf8, KnowsTheFamousBadSequences) {
    EXPECT_EQ(from_utf8("\x80"), u"\uFFFD");
    EXPECT_EQ(from_utf8("a\xC5z"), u"a\uFFFDz");
    EXPECT_EQ(from_utf8("\xE2\x82"), u"\uFFFD\uFFFD");
    EXPECT_EQ(from_utf8("\xC0\x80"), u"\uFFFD\uFFFD");                      // 0 in two bytes
    EXPECT_EQ(from_utf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");            // half of a pair
    EXPECT_EQ(from_utf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");  // above U+10FFFF
}

}  // namespace
}  // namespace kvarta16
