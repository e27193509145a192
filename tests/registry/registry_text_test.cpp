// The registry as text: what is read, what is refused and where, and that all that is written
// reads back.
#include <gtest/gtest.h>

#include "frame/frame_support.h"
#include "registry_support.h"

namespace kvarta16::registry_tests {
namespace {

using frame_tests::Random;
using namespace posix::registry;

std::size_t below(Random& random, std::size_t bound) {
    return static_cast<std::size_t>(random.bits() % bound);
}

Key tree_of(const std::string& lines) {
    return read_tree(header + lines);
}

// The only value of the only key.
Value value_of(const std::string& line) {
    const Key tree = tree_of("[HKEY_CURRENT_USER]\n" + line + "\n");
    return tree.keys.at(0).values.at(0);
}

std::string bytes(std::initializer_list<int> values) {
    std::string text;
    for (const int value : values) {
        text += static_cast<char>(static_cast<unsigned char>(value));
    }
    return text;
}

// ---- Reading --------------------------------------------------------------------------------

TEST(RegistryText, ReadsEveryKindOfValue) {
    const struct {
        const char* line;
        Value value;
    } cases[] = {
        {R"("a"="b")", {u"a", REG_SZ, data_of(u"b")}},
        {R"(@="b")", {u"", REG_SZ, data_of(u"b")}},
        {R"(""="b")", {u"", REG_SZ, data_of(u"b")}},
        {R"("a"="")", {u"a", REG_SZ, ""}},
        {R"("\"\\"="\\\\serwer\\\"x\"")", {u"\"\\", REG_SZ, data_of(u"\\\\serwer\\\"x\"")}},
        {R"(  "a"  =  "b"  )", {u"a", REG_SZ, data_of(u"b")}},
        {R"("a"="b" ; comment)", {u"a", REG_SZ, data_of(u"b")}},
        {R"("a"="; no comment")", {u"a", REG_SZ, data_of(u"; no comment")}},
        {R"("a=b"="c=d")", {u"a=b", REG_SZ, data_of(u"c=d")}},
        {R"("zażółć"="gęślą 😀")", {u"zażółć", REG_SZ, data_of(u"gęślą 😀")}},
        {"\"a\"=\"two\nlines\"", {u"a", REG_SZ, data_of(u"two\nlines")}},
        {"\"a\"=\"two\r\nlines\"", {u"a", REG_SZ, data_of(u"two\r\nlines")}},
        {R"("a"=dword:0000000a)", {u"a", REG_DWORD, bytes({10, 0, 0, 0})}},
        {R"("a"=dword:FFfffffE)", {u"a", REG_DWORD, bytes({0xFE, 0xFF, 0xFF, 0xFF})}},
        {R"("a"=DWORD:1)", {u"a", REG_DWORD, bytes({1, 0, 0, 0})}},
        {R"("a"=hex:)", {u"a", REG_BINARY, ""}},
        {R"("a"=hex:01,ff,A)", {u"a", REG_BINARY, bytes({1, 255, 10})}},
        {R"("a"=hex: 01 , ff ; x)", {u"a", REG_BINARY, bytes({1, 255})}},
        {"\"a\"=hex:01,\\\n  02,\\\r\n  03", {u"a", REG_BINARY, bytes({1, 2, 3})}},
        {"\"a\"=hex:\\\n  01,02", {u"a", REG_BINARY, bytes({1, 2})}},
        {R"("a"=hex(0):)", {u"a", 0, ""}},
        {R"("a"=hex(1):41,00,00,00)", {u"a", REG_SZ, bytes({0x41, 0, 0, 0})}},
        {R"("a"=hex(2):25,00,00,00)", {u"a", REG_EXPAND_SZ, bytes({0x25, 0, 0, 0})}},
        {R"("a"=hex(4):01)", {u"a", REG_DWORD, bytes({1})}},
        {R"("a"=hex(b):01,02,03,04,05,06,07,08)", {u"a", 11, bytes({1, 2, 3, 4, 5, 6, 7, 8})}},
        {R"("a"=hex(ffffffff):00)", {u"a", -1, bytes({0})}},
    };
    for (const auto& [line, value] : cases) {
        EXPECT_EQ(value_of(line), value) << line;
    }
}

TEST(RegistryText, ReadsKeysInAnyCaseAndMergesThem) {
    const Key tree = tree_of(
        "; comment\n"
        "\n"
        "[hkcu\\Ścieżka]\n"
        "\"Raz\"=\"1\"\n"
        "[HKEY_CURRENT_USER\\śCIEŻKA\\a]b]\n"
        "  [HKEY_current_user\\ściEŻka]  \n"
        "\"RAZ\"=\"2\"\n"
        "\"dwa\"=\"3\"\n"
        "\"DWA\"=-\n");
    const Key wanted{
        u"",
        {},
        {Key{u"HKEY_CURRENT_USER",
             {},
             {Key{u"Ścieżka", {Value{u"Raz", REG_SZ, data_of(u"2")}}, {Key{u"a]b", {}, {}}}}}}}};
    EXPECT_EQ(tree, wanted);
}

TEST(RegistryText, DeletesKeysAndValues) {
    EXPECT_EQ(write_tree(tree_of("[HKCU\\a\\b]\n\"x\"=\"1\"\n[HKCU\\a\\c]\n[-HKCU\\A\\B]\n"
                                 "[-HKCU\\nie\\ma]\n[HKCU\\a\\c]\n\"nic\"=-\n@=-\n")),
              header +
                  "\n[HKEY_CURRENT_USER]\n\n[HKEY_CURRENT_USER\\a]\n"
                  "\n[HKEY_CURRENT_USER\\a\\c]\n");
    EXPECT_EQ(tree_of("[HKCU\\a]\n[-HKCU]\n"), Key());
}

TEST(RegistryText, ReadsTheThreeEncodings) {
    const std::string text = header + "[HKEY_CURRENT_USER]\r\n\"zażółć\"=\"😀\"\r\n";
    const Key wanted = read_tree(text);
    std::string low_first = "\xFF\xFE" + data_of(from_utf8(text));
    std::string high_first = low_first;
    for (std::size_t i = 0; i < high_first.size(); i += 2) {
        std::swap(high_first[i], high_first[i + 1]);
    }
    EXPECT_EQ(read_tree("\xEF\xBB\xBF" + text), wanted);
    EXPECT_EQ(read_tree(low_first), wanted);
    EXPECT_EQ(read_tree(high_first), wanted);
    EXPECT_EQ(wanted.keys.at(0).values.at(0), (Value{u"zażółć", REG_SZ, data_of(u"😀")}));
}

TEST(RegistryText, TellsTheLineOfWhatItRefuses) {
    const std::string key = "[HKEY_CURRENT_USER]\n";
    const struct {
        std::string lines;  // behind the header
        std::size_t line;
    } cases[] = {
        {"cokolwiek\n", 2},
        {"\"a\"=\"b\"\n", 2},
        {"[HKEY_CURRENT_USER\n", 2},
        {"[]\n", 2},
        {"[-]\n", 2},
        {"[HKEY_MINE\\a]\n", 2},
        {"[HKEY_CURRENT_USER\\\\a]\n", 2},
        {"[HKEY_CURRENT_USER\\a\\]\n", 2},
        {"[\\HKEY_CURRENT_USER]\n", 2},
        {"[HKEY_CURRENT_USER] ; x\n", 2},
        {"[HKEY_CURRENT_USER\\" + std::string(256, 'a') + "]\n", 2},
        {"[HKEY_CURRENT_USER" +
             [] {
                 std::string deep;
                 for (int i = 0; i < 512; ++i) {
                     deep += "\\a";
                 }
                 return deep;
             }() +
             "]\n",
         2},
        {"[-HKEY_CURRENT_USER\\a]\n\"a\"=\"b\"\n", 3},
        {key + "\"a\"\n", 3},
        {key + "\"a\"=\n", 3},
        {key + "\"a=\"b\"\n", 3},
        {key + "\"a\nb\"=\"c\"\n", 3},
        {key + "\"a\"=\"b\n\n\n", 3},
        {key + "\"a\"=\"b\n\"c\"=\"d\"\n", 4},
        {key + "\"a\"=\"b\"x\n", 3},
        {key + "\"a\"=\"C:\\dane\"\n", 3},
        {key + "\"a\"=\"\\", 3},
        {key + "\"" + std::string(16384, 'a') + "\"=\"\"\n", 3},
        {key + "\"a\"=b\n", 3},
        {key + "\"a\"=dword:\n", 3},
        {key + "\"a\"=dword:123456789\n", 3},
        {key + "\"a\"=dword:xyz\n", 3},
        {key + "\"a\"=hex:01,\n", 3},
        {key + "\"a\"=hex:,01\n", 3},
        {key + "\"a\"=hex:01 02\n", 3},
        {key + "\"a\"=hex:001\n", 3},
        {key + "\"a\"=hex:0g\n", 3},
        {key + "\"a\"=hex:01,\\\n\n", 4},
        {key + "\"a\"=hex:01,\\", 3},
        {key + "\"a\"=hex:01,\\ 02\n", 3},
        {key + "\"a\"=hex(:01\n", 3},
        {key + "\"a\"=hex():01\n", 3},
        {key + "\"a\"=hex(1)01\n", 3},
        {key + "\"a\"=hex(123456789):01\n", 3},
        {key + "\"a\"=-x\n", 3},
        {key + "@\n", 3},
        {key + "\r", 3},
        {key + std::string(1, '\0') + "\n", 3},
        {key + "; \xC5\n", 3},
        {key + "\n; \xED\xA0\x80\n", 4},
    };
    for (const auto& [lines, line] : cases) {
        try {
            static_cast<void>(read_text(header + lines));
            ADD_FAILURE() << "taken: " << lines.substr(0, 80);
        } catch (const TextError& error) {
            EXPECT_EQ(error.line(), line) << lines.substr(0, 80) << ": " << error.what();
        }
    }
}

TEST(RegistryText, RefusesOtherFiles) {
    for (const std::string& text :
         {std::string(), std::string("\n"), std::string("REGEDIT4\n"), header.substr(0, 30),
          "\n" + header, std::string("\xFF\xFE") + "W", "\xFF\xFE" + data_of(u"Windows"),
          std::string("\xFF\xFE") + header,
          "\xFF\xFE" + data_of(from_utf8(header) + u"; \xD800\n")}) {
        EXPECT_THROW(static_cast<void>(read_text(text)), TextError) << text;
    }
    EXPECT_EQ(read_tree(header), Key());
    EXPECT_EQ(read_tree(header.substr(0, header.size() - 1) + "  "), Key());
}

// ---- Writing --------------------------------------------------------------------------------

TEST(RegistryText, WritesTheFormOfThePlatform) {
    Key tree;
    Key& key = made_key(tree, Path{u"HKEY_CURRENT_USER", u"Software", u"ZEVO"});
    for (const Value& value : {
             Value{u"Układ", REG_BINARY, bytes({1, 2, 3})},
             Value{u"kopie", REG_DWORD, bytes({2, 0, 0, 0x80})},
             Value{u"Drukarka", REG_SZ, data_of(u"\\\\serwer\\\"Żółta\"\t")},
             Value{u"", REG_SZ, data_of(u"domyślna")},
             Value{u"pusta", REG_SZ, ""},
             Value{u"zero", REG_SZ, data_of({u"a\0", 2})},
             Value{u"wiersze", REG_SZ, data_of(u"a\r\nb")},
             Value{u"połowa", REG_SZ, data_of({u"\xD800", 1})},
             Value{u"nieparzysta", REG_SZ, "a"},
             Value{u"krótka", REG_DWORD, "a"},
             Value{u"x", -1, ""},
             Value{u"długa", 2, std::string(40, 'a')},
         }) {
        set_value(key, value);
    }
    EXPECT_EQ(write_tree(tree), header + R"(
[HKEY_CURRENT_USER]

[HKEY_CURRENT_USER\Software]

[HKEY_CURRENT_USER\Software\ZEVO]
@="domyślna"
"Drukarka"="\\\\serwer\\\"Żółta\"	"
"długa"=hex(2):61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,\
  61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61,61
"kopie"=dword:80000002
"krótka"=hex(4):61
"nieparzysta"=hex(1):61
"połowa"=hex(1):00,d8
"pusta"=""
"Układ"=hex:01,02,03
"wiersze"=hex(1):61,00,0d,00,0a,00,62,00
"x"=hex(ffffffff):
"zero"=hex(1):61,00,00,00
)");
}

// ---- There and back -------------------------------------------------------------------------

String random_name(Random& random, std::size_t longest) {
    constexpr StringView letters = u"abcĄęŚxYZ019 .-_@#;=[]\"\\'ß€Ж…";
    String name;
    const std::size_t length = below(random, longest + 1);
    for (std::size_t i = 0; i < length; ++i) {
        name += letters[below(random, letters.size())];
    }
    return name;
}

String key_name(Random& random) {
    String name = u"k" + random_name(random, 8);
    std::erase(name, u'\\');
    return name;
}

Value random_value(Random& random) {
    constexpr Long types[] = {REG_SZ,     REG_SZ,    REG_SZ,       0,  REG_EXPAND_SZ,
                              REG_BINARY, REG_DWORD, REG_MULTI_SZ, 11, -1};
    Value value{random_name(random, 6), types[below(random, std::size(types))], ""};
    const std::size_t length = below(random, 60);
    for (std::size_t i = 0; i < length; ++i) {
        // Some of all bytes, many of plain text.
        value.data += static_cast<char>(below(random, below(random, 4) == 0 ? 256 : 96));
    }
    if (value.type == REG_SZ && below(random, 2) == 0) {
        value.data = data_of(random_name(random, 30));
    }
    return value;
}

void fill(Key& key, Random& random, int depth) {
    for (std::size_t count = below(random, 6); count > 0; --count) {
        set_value(key, random_value(random));
    }
    for (std::size_t count = depth > 0 ? below(random, 4) : 0; count > 0; --count) {
        fill(made_key(key, Path{key_name(random)}), random, depth - 1);
    }
}

TEST(RegistryText, WhatIsWrittenReadsBack) {
    Random random(20240517);
    for (int round = 0; round < 250; ++round) {
        Key tree;
        for (const char16_t* root : {u"HKEY_CURRENT_USER", u"HKEY_LOCAL_MACHINE", u"HKEY_USERS"}) {
            fill(made_key(tree, Path{root}), random, 4);
        }
        const std::string text = write_tree(tree);
        ASSERT_EQ(read_tree(text), tree) << text;
        ASSERT_EQ(write_tree(read_tree(text)), text);
        ASSERT_EQ(read_tree(as_utf16(text)), tree);
    }
}

// A text with some bytes changed is read or refused; what is read writes back to itself.
TEST(RegistryText, DamagedTextsAreReadOrRefused) {
    Random random(45429);
    Key tree;
    fill(made_key(tree, Path{u"HKEY_CURRENT_USER"}), random, 3);
    const std::string good = write_tree(tree);
    ASSERT_GT(good.size(), 500U);
    int taken = 0;
    int refused = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string text = good;
        for (std::size_t count = 1 + below(random, 4); count > 0; --count) {
            const std::size_t place = below(random, text.size());
            constexpr std::string_view marks = "\"\\[]=,:;-@\n\r\t (){}hd1";
            switch (below(random, 4)) {
                case 0:
                    text[place] = marks[below(random, marks.size())];
                    break;
                case 1:
                    text.erase(place, 1 + below(random, 20));
                    break;
                case 2:
                    text.insert(place, 1, marks[below(random, marks.size())]);
                    break;
                default:
                    text[place] = static_cast<char>(below(random, 256));
            }
        }
        try {
            const Key read = read_tree(text);
            ASSERT_EQ(read_tree(write_tree(read)), read) << text;
            ++taken;
        } catch (const TextError& error) {
            ASSERT_GE(error.line(), 1U);
            ++refused;
        }
    }
    EXPECT_GT(taken, 100);
    EXPECT_GT(refused, 1000);
}

// Every cut-off text is read or refused, never more than that.
TEST(RegistryText, CutTexts) {
    const std::string text =
        header + "[HKCU\\a]\r\n\"x\"=\"a\\\\b\\\"\"\r\n\"y\"=hex(2):01,\\\r\n 02\n";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        try {
            const Key read = read_tree(text.substr(0, length));
            EXPECT_EQ(read_tree(write_tree(read)), read);
        } catch (const TextError& error) {
            EXPECT_GE(error.line(), 1U);
        }
    }
}

}  // namespace
}  // namespace kvarta16::registry_tests
