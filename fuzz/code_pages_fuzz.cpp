// The Polish letters in other character sets, against the walks over letters and positions that the
// members stand for; and the library's own ways from characters to bytes and back. An input is the
// caller's set, a line feed and the text; a first byte from 252 up repeats the text until it
// leaves the 16 bits of the members' counters.
#include <cstdint>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/text/aChar.h>

#include "fuzz_support.h"
#include "second_numbers.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::show;

constexpr StringView letters = u"ąćęłńóśźżĄĆĘŁŃÓŚŹŻ";
constexpr StringView plain = u"acelnoszzACELNOSZZ";
// The characters that stand for the bytes of each set on a machine of the suite.
constexpr StringView mazovia =
    u"\u2020\u0164\u2018\u2019\u00A4\u02D8\u017E\u00A6\u00A7"
    u"\u0179\u2022\u0090\u015B\u0104\u0141\u0098\u00A0\u02C7";
constexpr StringView platnik =
    u"\u02C7\u0106\u0118\u0141\u0143\u00D3\u00A6\u00AC\u017B"
    u"\u02C7\u0106\u0118\u0141\u0143\u00D3\u00A6\u00AC\u017B";
constexpr StringView cp852 =
    u"\u0104\u2020\u00A9\u0088\u00E4\u02D8\u0098\u00AB\u013E"
    u"\u00A4\u0179\u00A8\u0165\u0103\u0155\u2014\u0164\u02DD";
static_assert(letters.size() == 18 && plain.size() == 18 && mazovia.size() == 18 &&
              platnik.size() == 18 && cp852.size() == 18);

// How far a counter of 16 bits goes: the length as it reads it.
std::size_t reach(StringView text) {
    const auto counted = static_cast<std::int16_t>(static_cast<std::uint16_t>(text.size()));
    return counted < 0 ? 0 : static_cast<std::size_t>(counted);
}

// In each position the character looked up from the first letter on, and put over once.
String mapped(StringView text, StringView from, StringView to) {
    String result(text);
    for (std::size_t i = 0; i < reach(text); ++i) {
        const std::size_t k = from.find(result[i]);
        if (k < to.size()) {
            result[i] = to[k];
        }
    }
    return result;
}

// In each position the whole list walked, what has been put counting for the rest of it.
String walked(StringView text, StringView from, StringView to) {
    String result(text);
    for (std::size_t i = 0; i < reach(text); ++i) {
        for (std::size_t j = 0; j < from.size(); ++j) {
            if (result[i] == from[j]) {
                result[i] = to[j];
            }
        }
    }
    return result;
}

// One letter after the other, each over the whole text.
String in_rounds(StringView text, StringView from, StringView to) {
    String result(text);
    for (std::size_t k = 0; k < from.size(); ++k) {
        std::ranges::replace(result, from[k], to[k]);
    }
    return result;
}

void check_letters(StringView text, StringView set) {
    const aChar chars;
    const std::string shown = show(text.substr(0, 100)) + " of " + show(text.size());
    expect_same("KonwertNaMaz of", shown, chars.KonwertNaMaz(text), mapped(text, letters, mazovia));
    expect_same("KonwertPlatnik of", shown, chars.KonwertPlatnik(text),
                mapped(text, letters, platnik));
    expect_same("KonwertNaWin of", shown, chars.KonwertNaWin(text), walked(text, cp852, letters));
    expect_same("konwertNaBPL of", shown, chars.konwertNaBPL(text), walked(text, letters, plain));
    expect_same("Konwert_lan of", shown, chars.Konwert_lan(text),
                fuzz::second_numeric_text(text) ? String(text) : in_rounds(text, letters, cp852));
    expect_same("KonwertLitery by " + show(set) + " of", shown, chars.KonwertLitery(text, set),
                mapped(text, letters, set));
    expect_same("KonwertLitery by Null of", shown, chars.KonwertLitery(text, Variant::null()),
                String(text));
}

// ---- Bytes ----------------------------------------------------------------------------------

// UTF-8 of a text, half of a pair being the replacement character.
std::string utf8(StringView text) {
    std::string bytes;
    const auto add = [&](std::uint32_t bits) { bytes += static_cast<char>(bits & 0xFF); };
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t point = text[i];
        const std::uint32_t next = i + 1 < text.size() ? text[i + 1] : 0;
        if (point / 0x400 == 0x36 && next / 0x400 == 0x37) {
            point = 0x10000 + (point % 0x400) * 0x400 + next % 0x400;
            ++i;
        } else if (point / 0x800 == 0x1B) {
            point = 0xFFFD;
        }
        if (point < 0x80) {
            add(point);
        } else if (point < 0x800) {
            add(0xC0 + point / 0x40);
            add(0x80 + point % 0x40);
        } else if (point < 0x10000) {
            add(0xE0 + point / 0x1000);
            add(0x80 + point / 0x40 % 0x40);
            add(0x80 + point % 0x40);
        } else {
            add(0xF0 + point / 0x40000);
            add(0x80 + point / 0x1000 % 0x40);
            add(0x80 + point / 0x40 % 0x40);
            add(0x80 + point % 0x40);
        }
    }
    return bytes;
}

void check_bytes(std::string_view bytes, StringView text) {
    const std::string shown = show(bytes);
    const String ansi = from_ansi(bytes);
    expect_same("The length in Windows-1250 of", shown, ansi.size(), bytes.size());
    expect_same("The bytes of the characters of", shown, to_ansi(ansi), std::string(bytes));
    const std::string told = to_ansi(text);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t back = from_ansi(told.substr(i, 1))[0];
        expect(back == text[i] ||
                   (told[i] == '?' && from_ansi(to_ansi(StringView(&text[i], 1))) == u"?"),
               "A byte of Windows-1250 is its character in", show(text));
    }
    const std::string encoded = to_utf8(text);
    expect_same("to_utf8 of", show(text), encoded, utf8(text));
    const String decoded = from_utf8(encoded);
    expect_same("The bytes of the characters of UTF-8 of", show(text), to_utf8(decoded), encoded);
    const bool is_whole = encoded.find("\xEF\xBF\xBD") == std::string::npos;
    expect(!is_whole || decoded == text, "UTF-8 carries", show(text));
    // Whatever the bytes are, what comes of them is UTF-8.
    expect_same("UTF-8 of the characters of", shown, utf8(from_utf8(bytes)),
                to_utf8(from_utf8(bytes)));
    const bool is_utf8 = utf8(fuzz::text_of(bytes)) == bytes;
    expect(!is_utf8 || to_utf8(from_utf8(bytes)) == bytes, "UTF-8 comes back of", shown);
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    constexpr std::uint8_t least_factor = 252;
    constexpr std::size_t most_units = 70'000;
    fuzz::Input input(data, size);
    const bool is_long = size > 0 && data[0] >= least_factor;
    const String set = input.line_as_text();
    const std::string_view bytes = input.rest();
    String text = fuzz::text_of(bytes);
    check_bytes(bytes, text);
    while (is_long && !text.empty() && text.size() * 2 <= most_units) {
        text += String(text);
    }
    check_letters(text, set);
    return 0;
}
