// The notation of keys.

#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/key_names.h>
#include <kvarta16/platform/posix/key_notation.h>

namespace kvarta16::posix {
namespace {

// The keys as a text: "S-C-A-key*count", joined by blanks.
std::string told(StringView text) {
    std::string all;
    for (const KeyPress& press : parse_keys(text)) {
        all += (all.empty() ? "" : " ") + std::string(press.shift ? "S-" : "") +
               (press.control ? "C-" : "") + (press.alt ? "A-" : "") + press.key;
        if (press.count != 1) {
            all += '*' + std::to_string(press.count);
        }
    }
    return all;
}

struct KeyCase {
    StringView text;
    std::string keys;
};

TEST(KeyNotation, Keys) {
    const KeyCase cases[] = {
        {u"", ""},
        {u"aZ09", "a Z 0 9"},
        {u"ąŻó", "aogonek S-Zabovedot oacute"},
        {u"ÄЖ{Ł 2}^Ó", "S-U00C4 S-U0416 S-Lstroke*2 S-C-Oacute"},
        {u" .,-", "U0020 U002E U002C U002D"},
        {u"ä€", "U00E4 U20AC"},
        {u"\U0001F600", "U1F600"},
        {u"[]", "U005B U005D"},
        {u"{[}{]}", "U005B U005D"},
        {u"~", "Return"},
        {u"{ENTER}{enter}{Enter}", "Return Return Return"},
        {u"\r\n\r\n\n\r", "Return Return Return Return"},
        {u"\t\b\x1B", "Tab BackSpace Escape"},
        {u"{+}{^}{%}{~}{(}{)}{{}{}}", "U002B U005E U0025 U007E U0028 U0029 U007B U007D"},
        {u"{LEFT 42}", "Left*42"},
        {u"{LEFT  5}", "Left*5"},
        {u"{h 10}", "h*10"},
        {u"{} 3}{{ 2}", "U007D*3 U007B*2"},
        {u"{ }{  4}", "U0020 U0020*4"},
        {u"{ą 2}{\U0001F600 2}", "aogonek*2 U1F600*2"},
        {u"{h 0}x", "x"},
        {u"{h 32767}{h 007}", "h*32767 h*7"},
        {u"+a^c%x", "S-a C-c A-x"},
        {u"%{F4}+{TAB}^{END}", "A-F4 S-Tab C-End"},
        {u"^%{DEL}", "C-A-Delete"},
        {u"++a+^%+b", "S-a S-C-A-b"},
        {u"+~", "S-Return"},
        {u"+{LEFT 3}", "S-Left*3"},
        {u"+(ab)c", "S-a S-b c"},
        {u"+(a^(b%(c)d)e)f", "S-a S-C-b S-C-A-c S-C-d S-e f"},
        {u"(ab)", "a b"},
        {u"+()a()", "a"},
        {u"^((a)b)", "C-a C-b"},
        {u"+(~{UP 2})", "S-Return S-Up*2"},
        {u"Firma{TAB}12{ENTER}", "F i r m a Tab 1 2 Return"},
    };
    for (const KeyCase& test : cases) {
        EXPECT_EQ(told(test.text), test.keys) << to_utf8(test.text);
    }
}

struct NameCase {
    StringView name;
    std::string_view key;
};

// The names, written a second time as people know them.
TEST(KeyNotation, Names) {
    const NameCase cases[] = {
        {u"BACKSPACE", "BackSpace"},
        {u"BS", "BackSpace"},
        {u"BKSP", "BackSpace"},
        {u"BREAK", "Break"},
        {u"CAPSLOCK", "Caps_Lock"},
        {u"DELETE", "Delete"},
        {u"DEL", "Delete"},
        {u"DOWN", "Down"},
        {u"END", "End"},
        {u"ENTER", "Return"},
        {u"ESC", "Escape"},
        {u"HELP", "Help"},
        {u"HOME", "Home"},
        {u"INSERT", "Insert"},
        {u"INS", "Insert"},
        {u"LEFT", "Left"},
        {u"NUMLOCK", "Num_Lock"},
        {u"PGDN", "Next"},
        {u"PGUP", "Prior"},
        {u"PRTSC", "Print"},
        {u"RIGHT", "Right"},
        {u"SCROLLLOCK", "Scroll_Lock"},
        {u"TAB", "Tab"},
        {u"UP", "Up"},
    };
    for (const NameCase& test : cases) {
        EXPECT_EQ(told(u'{' + String(test.name) + u'}'), test.key) << to_utf8(test.name);
        EXPECT_EQ(told(u'{' + lower_case(test.name) + u" 2}"), std::string(test.key) + "*2");
    }
    for (int i = 1; i <= 16; ++i) {
        const std::string key = "F" + std::to_string(i);
        EXPECT_EQ(told(from_utf8("{" + key + "}")), key);
    }
    EXPECT_EQ(std::size(named_keys), std::size(cases) + 16);
}

TEST(KeyNotation, IllFormed) {
    const StringView cases[] = {
        u"{",
        u"{}",
        u"}",
        u"a}",
        u"{ENTER",
        u"{NONE}",
        u"{F17}",
        u"{F0}",
        u"{ab}",
        u"{}a}",
        u"{h x}",
        u"{h -1}",
        u"{h 1 2}",
        u"{h }",
        u"{h 1.5}",
        u"{h 32768}",
        u"{h 99999999999999999999}",
        u"{LEFT5}",
        u"{ENTER }",
        u"(",
        u")",
        u"(a",
        u"a)",
        u"((a)",
        u"(a))",
        u"+",
        u"a^",
        u"+)",
        u"(+)",
        u"a+^%",
        u"\x01",
        u"\x7F",
        u"{\x02}",
        u"\x85",
        u"{+",
        u"{\r\n}",
    };
    for (const StringView text : cases) {
        try {
            static_cast<void>(parse_keys(text));
            ADD_FAILURE() << to_utf8(text);
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.number(), 5) << to_utf8(text);
        }
    }
    const String halves[] = {String(1, 0xD83D), String(1, 0xDE00), String{0xD83D, u'a'},
                             String{u'{', 0xD83D, u'}'}, String(1, u'\0')};
    for (const String& text : halves) {
        EXPECT_THROW(static_cast<void>(parse_keys(text)), Failure);
    }
}

// Groups that stand in one another as deep as a text can write them need no stack.
TEST(KeyNotation, DeepGroups) {
    constexpr std::size_t depth = 1'000'000;
    EXPECT_EQ(told(String(depth, u'(') + u"+a" + String(depth, u')')), "S-a");
}

}  // namespace
}  // namespace kvarta16::posix
