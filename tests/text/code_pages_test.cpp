// The Konwert members of aChar: the codes of the letters against other sources of them, every code
// unit through every member, and the short ways against the loops that they stand for.

#include <array>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <iconv.h>

#include <kvarta16/text/aChar.h>
#include <kvarta16/text/code_pages.h>

#include "frame/frame_support.h"

namespace kvarta16 {
namespace {

using frame_tests::Forms;
using frame_tests::notation;
using frame_tests::one_of_each_subtype;
using frame_tests::parse_value;
using frame_tests::Random;
using frame_tests::show;

constexpr StringView letters = u"ąćęłńóśźżĄĆĘŁŃÓŚŹŻ";
constexpr StringView plain_letters = u"acelnoszzACELNOSZZ";

// The codes that the letters have in each set, in the order of the letters.
using Codes = std::array<int, 18>;
constexpr Codes mazovia = {134, 141, 145, 146, 164, 162, 158, 166, 167,
                           143, 149, 144, 156, 165, 163, 152, 160, 161};
constexpr Codes platnik = {161, 198, 202, 163, 209, 211, 166, 172, 175,
                           161, 198, 202, 163, 209, 211, 166, 172, 175};
constexpr Codes cp852 = {165, 134, 169, 136, 228, 162, 152, 171, 190,
                         164, 143, 168, 157, 227, 224, 151, 141, 189};
constexpr Codes konwert_lan = {164, 134, 169, 136, 228, 162, 152, 171, 190,
                               164, 141, 168, 157, 227, 224, 151, 141, 189};

// ---- Other sources of the codes -----------------------------------------------------------------

class Converter {
  public:
    Converter(const char* to, const char* from) : handle_(iconv_open(to, from)) {
        if (handle_ == reinterpret_cast<iconv_t>(-1)) {
            throw std::runtime_error("no such conversion");
        }
    }
    ~Converter() { iconv_close(handle_); }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    // "" for what the other set does not have.
    std::string operator()(std::string bytes) const {
        std::string result(16, '\0');
        char* in = bytes.data();
        char* out = result.data();
        std::size_t in_left = bytes.size();
        std::size_t out_left = result.size();
        if (iconv(handle_, &in, &in_left, &out, &out_left) == static_cast<std::size_t>(-1)) {
            iconv(handle_, nullptr, nullptr, nullptr, nullptr);
            return {};
        }
        result.resize(result.size() - out_left);
        return result;
    }

  private:
    iconv_t handle_;
};

std::string utf16_bytes(char16_t unit) {
    return {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
}

// The character that a byte is in Windows-1250, or the control character of its number.
char16_t windows_1250(int code) {
    static const Converter decode("UTF-16LE", "CP1250");
    const std::string bytes = decode(std::string(1, static_cast<char>(code)));
    if (bytes.empty()) {
        return static_cast<char16_t>(code);
    }
    return static_cast<char16_t>(static_cast<unsigned char>(bytes.at(0)) |
                                 static_cast<unsigned char>(bytes.at(1)) << 8);
}

String characters(const Codes& codes) {
    String text;
    for (const int code : codes) {
        text += windows_1250(code);
    }
    return text;
}

TEST(CodePages, WindowsOneTwoFiveZero) {
    std::vector<int> free;
    for (int code = 0; code < 256; ++code) {
        EXPECT_EQ(code_pages::character_of(static_cast<Byte>(code)), windows_1250(code)) << code;
        if (code >= 128 && windows_1250(code) == code && code < 160) {
            free.push_back(code);
        }
    }
    EXPECT_EQ(free, (std::vector<int>{0x81, 0x83, 0x88, 0x90, 0x98}));
}

TEST(CodePages, TheCodesAreThoseOfTheSets) {
    const Converter to_852("CP852", "UTF-16LE");
    const Converter to_8859("ISO-8859-2", "UTF-16LE");
    for (std::size_t k = 0; k < letters.size(); ++k) {
        SCOPED_TRACE(show(letters.substr(k, 1)));
        const std::string in_852(1, static_cast<char>(cp852[k]));
        const std::string in_8859(1, static_cast<char>(platnik[k]));
        EXPECT_EQ(to_852(utf16_bytes(letters[k])), in_852);
        EXPECT_EQ(to_8859(utf16_bytes(upper_case(letters[k]))), in_8859);
        EXPECT_EQ(plain_letters[k] < 128, true);
    }
    EXPECT_EQ(characters(cp852),
              u"\u0104\u2020\u00A9\u0088\u00E4\u02D8\u0098\u00AB\u013E"
              u"\u00A4\u0179\u00A8\u0165\u0103\u0155\u2014\u0164\u02DD");
}

TEST(CodePages, EachLetterHasItsCode) {
    const aChar text;
    const String to_mazovia = characters(mazovia);
    const String to_platnik = characters(platnik);
    const String from_852 = characters(cp852);
    const String to_lan = characters(konwert_lan);
    EXPECT_EQ(text.KonwertNaMaz(letters), to_mazovia);
    EXPECT_EQ(text.KonwertPlatnik(letters), to_platnik);
    EXPECT_EQ(text.konwertNaBPL(letters), plain_letters);
    EXPECT_EQ(text.Konwert_lan(letters), to_lan);
    EXPECT_EQ(text.KonwertNaWin(from_852), letters);
    for (std::size_t k = 0; k < letters.size(); ++k) {
        SCOPED_TRACE(show(letters.substr(k, 1)));
        EXPECT_EQ(text.KonwertNaMaz(letters.substr(k, 1)), to_mazovia.substr(k, 1));
        EXPECT_EQ(text.KonwertPlatnik(letters.substr(k, 1)), to_platnik.substr(k, 1));
        EXPECT_EQ(text.konwertNaBPL(letters.substr(k, 1)), plain_letters.substr(k, 1));
        EXPECT_EQ(text.Konwert_lan(letters.substr(k, 1)), to_lan.substr(k, 1));
        EXPECT_EQ(text.KonwertNaWin(from_852.substr(k, 1)), letters.substr(k, 1));
        EXPECT_EQ(text.KonwertLitery(letters.substr(k, 1), plain_letters),
                  plain_letters.substr(k, 1));
    }
}

// ---- The long ways ------------------------------------------------------------------------------

// The positions that a 16-bit loop from 1 to the 16-bit length goes through.
std::size_t positions(const String& text) {
    const auto length = static_cast<std::int16_t>(static_cast<std::uint16_t>(text.size()));
    return length < 1 ? 0 : static_cast<std::size_t>(length);
}

// One comparison a position, and one overwriting.
String one_pass(StringView slowo, StringView to) {
    String copy(slowo);
    for (std::size_t i = 1; i <= positions(copy); ++i) {
        const Long k = position_of(letters, substring(copy, static_cast<Long>(i), 1));
        if (k > 0) {
            overwrite(copy, static_cast<Long>(i), 1, substring(to, k, 1));
        }
    }
    return copy;
}

// In each position all eighteen, one after the other.
String all_in_each_position(StringView slowo, StringView from, StringView to) {
    String copy(slowo);
    for (std::size_t i = 1; i <= positions(copy); ++i) {
        for (Long j = 1; j <= 18; ++j) {
            if (substring(copy, static_cast<Long>(i), 1) == substring(from, j, 1)) {
                overwrite(copy, static_cast<Long>(i), 1, substring(to, j, 1));
            }
        }
    }
    return copy;
}

// The whole text for each of the eighteen.
String round_by_round(StringView slowo) {
    if (IsNumericText(slowo)) {
        return String(slowo);
    }
    const String list = characters(cp852);
    String text(slowo);
    for (Long k = 1; k <= 18; ++k) {
        text = replace_all(text, substring(letters, k, 1), substring(list, k, 1));
    }
    return text;
}

void expect_the_long_ways(const String& slowo) {
    static const String in_mazovia = characters(mazovia);
    static const String in_platnik = characters(platnik);
    static const String in_852 = characters(cp852);
    const aChar text;
    ASSERT_EQ(text.KonwertNaMaz(slowo), one_pass(slowo, in_mazovia)) << show(slowo);
    ASSERT_EQ(text.KonwertPlatnik(slowo), one_pass(slowo, in_platnik)) << show(slowo);
    ASSERT_EQ(text.KonwertNaWin(slowo), all_in_each_position(slowo, in_852, letters))
        << show(slowo);
    ASSERT_EQ(text.konwertNaBPL(slowo), all_in_each_position(slowo, letters, plain_letters))
        << show(slowo);
    ASSERT_EQ(text.Konwert_lan(slowo), round_by_round(slowo)) << show(slowo);
    for (const StringView set :
         {StringView(u""), StringView(u"X"), StringView(u"ćĄął"), StringView(u"abcdefghijklmnopqr"),
          StringView(u"abcdefghijklmnopqrstu"), letters}) {
        ASSERT_EQ(text.KonwertLitery(slowo, set), one_pass(slowo, set)) << show(slowo);
    }
}

TEST(CodePages, EveryCodeUnitAsTheLongWay) {
    for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
        expect_the_long_ways(String(1, static_cast<char16_t>(code)));
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

// Only the eighteen letters are touched, and by KonwertNaWin only the eighteen of the list.
TEST(CodePages, EveryOtherCodeUnitStays) {
    const aChar text;
    const String list = characters(cp852);
    for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
        const String slowo(1, static_cast<char16_t>(code));
        const bool is_letter = letters.find(slowo) != StringView::npos;
        ASSERT_EQ(text.KonwertNaMaz(slowo) != slowo, is_letter) << code;
        ASSERT_EQ(text.konwertNaBPL(slowo) != slowo, is_letter) << code;
        ASSERT_EQ(text.Konwert_lan(slowo) != slowo, is_letter) << code;
        ASSERT_EQ(text.KonwertLitery(slowo, u"abcdefghijklmnopqr") != slowo, is_letter) << code;
        ASSERT_EQ(text.KonwertNaWin(slowo) != slowo, list.find(slowo) != String::npos) << code;
        if (!is_letter) {
            ASSERT_EQ(text.KonwertPlatnik(slowo), slowo) << code;
        }
    }
}

// Every letter and every character of the list next to every other.
TEST(CodePages, EveryPairAsTheLongWay) {
    const String all = String(letters) + characters(cp852) + characters(mazovia) + u"a1 ,";
    for (const char16_t first : all) {
        for (const char16_t second : all) {
            ASSERT_NO_FATAL_FAILURE(expect_the_long_ways({first, second}));
        }
    }
}

TEST(CodePages, RandomTextsAsTheLongWay) {
    const String all = String(letters) + characters(cp852) + characters(platnik) + u"ab 1,-zł()";
    Random random(2);
    for (int i = 0; i < 3000; ++i) {
        String slowo;
        for (std::int64_t left = random.between(0, 30); left > 0; --left) {
            slowo += all[random.bits() % all.size()];
        }
        ASSERT_NO_FATAL_FAILURE(expect_the_long_ways(slowo));
    }
}

// ---- The edges ----------------------------------------------------------------------------------

TEST(CodePages, WrittenOutUnderWindows1250) {
    const String maz = aChar().KonwertNaMaz(u"Łódź");
    ASSERT_EQ(maz.size(), 4U);
    EXPECT_EQ(maz, characters(Codes{156, 162, 100, 166}).substr(0, 4));
    EXPECT_EQ(aChar().KonwertPlatnik(u"ą"), String(1, windows_1250(161)));
    EXPECT_EQ(aChar().KonwertPlatnik(u"Ą"), String(1, windows_1250(161)));
}

TEST(CodePages, ByExample) {
    const aChar text;
    EXPECT_EQ(text.konwertNaBPL(u"Zażółć gęślą jaźń"), u"Zazolc gesla jazn");
    EXPECT_EQ(text.KonwertNaWin(text.Konwert_lan(u"ą")), u"Ą");
    EXPECT_EQ(text.KonwertNaWin(text.Konwert_lan(u"Ć")), u"Ź");
    EXPECT_EQ(text.KonwertNaWin(text.Konwert_lan(u"ę")), u"ę");
    EXPECT_EQ(text.KonwertNaWin(u"Ą"), u"ą");
    EXPECT_EQ(text.KonwertNaWin(u"Ź"), u"Ć");
}

TEST(CodePages, WhatIsNoPolishLetterPasses) {
    const aChar text;
    for (const StringView slowo :
         {StringView(u""), StringView(u"éüöŁ").substr(0, 3), StringView(u"ČčŠšŽž"),
          StringView(u"a\0b", 3), StringView(u"\r\n\t"), StringView(u"a\u0328")}) {
        SCOPED_TRACE(show(slowo));
        EXPECT_EQ(text.KonwertLitery(slowo, u"abcdefghijklmnopqr"), slowo);
        EXPECT_EQ(text.KonwertNaMaz(slowo), slowo);
        EXPECT_EQ(text.KonwertPlatnik(slowo), slowo);
        EXPECT_EQ(text.KonwertNaWin(slowo), slowo);
        EXPECT_EQ(text.konwertNaBPL(slowo), slowo);
        EXPECT_EQ(text.Konwert_lan(slowo), slowo);
    }
}

TEST(CodePages, ANumberKeepsItsLetter) {
    struct Case {
        StringView slowo;
        StringView result;
    };
    constexpr Case cases[] = {
        {u"123", u"123"},
        {u"5 zł", u"5 zł"},
        {u"zł 5", u"zł 5"},
        {u"(5 zł)", u"(5 zł)"},
        {u"", u""},
        {u"5,50 zł", u"5,50 z\u0088"},
        {u"zł", u"z\u0088"},
        {u"5 zł.", u"5 z\u0088."},
        {u"5 ZŁ", u"5 Z\u0165"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(aChar().Konwert_lan(test.slowo), test.result) << show(test.slowo);
    }
    Locale other;
    other.currency_symbol = u"EUR";
    const ScopedLocale scope(other);
    EXPECT_EQ(aChar().Konwert_lan(u"5 zł"), u"5 z\u0088");
}

TEST(CodePages, TheCallersSet) {
    struct Case {
        StringView slowo;
        Variant set;
        StringView result;
    };
    const Case cases[] = {
        {u"ąb", u"X", u"Xb"},
        {u"ąb", u"", u"ąb"},
        {u"ćb", u"X", u"ćb"},
        {u"ąć", u"ćX", u"ćX"},  // what is put is not looked at again
        {u"Ż", u"12345678901234567!rest", u"!"},
        {u"Ż", u"12345678901234567", u"Ż"},
        {u"ąć", StringView(u"\0X", 2), StringView(u"\0X", 2)},
        {u"ąćę", Integer{12}, u"12ę"},  // a set may be anything that has a text
        {u"ąćę", Double{-0.5}, u"-0,"},
        {u"ąćę", Variant(true), u"Pra"},
        {u"ąćę", Variant::null(), u"ąćę"},
        {u"ąćę", Variant(), u"ąćę"},
        {u"ąćę", Variant::missing(), u"ąćę"},
        {u"ąćę", Variant::error(5), u"ąćę"},
        {u"ąćę", parse_value("Object"), u"ąćę"},
        {u"ąćę", parse_value("Nothing"), u"ąćę"},
        {u"", Variant::null(), u""},
    };
    for (const Case& test : cases) {
        const Forms forms(test.set);
        for (const auto& form : forms.all()) {
            SCOPED_TRACE(show(test.slowo) + " " + notation(test.set) + " " + form.name);
            EXPECT_EQ(aChar().KonwertLitery(test.slowo, *form.value), test.result);
            EXPECT_EQ(*form.value, test.set);
        }
    }
}

TEST(CodePages, ASetOfEverySubtype) {
    for (const Variant& set : one_of_each_subtype()) {
        String targets;
        step([&] { targets = ToText(set); });
        EXPECT_EQ(aChar().KonwertLitery(letters, set), one_pass(letters, targets)) << notation(set);
    }
}

TEST(CodePages, SixteenBitLoopsReachAsFarAsTheLengthCutTo16Bits) {
    struct Case {
        std::size_t length;
        std::size_t reached;
    };
    constexpr Case cases[] = {
        {0, 0},     {1, 1},      {32767, 32767}, {32768, 0}, {32769, 0},  {65535, 0},  {65536, 0},
        {65537, 1}, {65546, 10}, {98303, 32767}, {98304, 0}, {131072, 0}, {131075, 3},
    };
    const aChar text;
    const String a_in_852(1, windows_1250(165));
    for (const Case& test : cases) {
        SCOPED_TRACE(test.length);
        const String slowo(test.length, u'ę');
        const std::size_t rest = test.length - test.reached;
        const auto expected = [&](char16_t put) {
            return String(test.reached, put) + String(rest, u'ę');
        };
        EXPECT_TRUE(text.KonwertLitery(slowo, u"abc") == expected(u'c'));
        EXPECT_TRUE(text.KonwertNaMaz(slowo) == expected(windows_1250(145)));
        EXPECT_TRUE(text.KonwertPlatnik(slowo) == expected(windows_1250(202)));
        EXPECT_TRUE(text.konwertNaBPL(slowo) == expected(u'e'));
        EXPECT_TRUE(text.KonwertNaWin(String(test.length, u'©')) ==
                    String(test.reached, u'ę') + String(rest, u'©'));
        // This one replaces over the whole text, and counts no positions.
        EXPECT_TRUE(text.Konwert_lan(slowo) == String(test.length, windows_1250(169)));
    }
}

// ---- Late-bound calls ---------------------------------------------------------------------------

TEST(CodePages, LateBoundCalls) {
    struct Call {
        StringView member;
        Arguments arguments;
        StringView result;
    };
    const std::vector<Call> calls = {
        {u"KonwertNaMaz", {u"Łódź"}, u"ś˘d¦"},
        {u"KonwertNaMaz", {u"aé"}, u"aé"},
        {u"KonwertPlatnik", {u"ą"}, u"ˇ"},
        {u"KonwertPlatnik", {u"Ą"}, u"ˇ"},
        {u"konwertNaBPL", {u"Zażółć gęślą jaźń"}, u"Zazolc gesla jazn"},
        {u"konwertNaBPL", {u"aé"}, u"aé"},
        {u"KonwertLitery", {u"ąb", u"X"}, u"Xb"},
        {u"KonwertLitery", {u"ąb", u""}, u"ąb"},
        {u"KonwertLitery", {u"ąb", Variant::null()}, u"ąb"},
        {u"Konwert_lan", {u"ą"}, u"¤"},
        {u"Konwert_lan", {u"Ć"}, u"Ť"},
        {u"KonwertNaWin", {u"¤"}, u"Ą"},
        {u"KonwertNaWin", {u"Ť"}, u"Ź"},
    };
    for (const Call& call : calls) {
        SCOPED_TRACE(show(call.member));
        const MemberInfo* found = nullptr;
        for (const MemberInfo& member : ClassTable<aChar>::members) {
            found = member.name == call.member ? &member : found;
        }
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->result, TypeName::String);
        EXPECT_EQ(found->parameters()[0].name, u"Slowo");
        EXPECT_EQ(found->parameters()[0].type, TypeName::String);
        EXPECT_EQ(found->parameters()[0].passing, Passing::ByValue);

        Arguments arguments = call.arguments;
        EXPECT_EQ(invoke(*found, &instance<aChar>(), arguments), Variant(call.result));
        EXPECT_EQ(arguments, call.arguments);

        Arguments variables = call.arguments;
        Arguments references;
        for (Variant& variable : variables) {
            references.push_back(Variant::reference(variable));
        }
        EXPECT_EQ(invoke(*found, &instance<aChar>(), references), Variant(call.result));
        EXPECT_EQ(variables, call.arguments);
    }
}

}  // namespace
}  // namespace kvarta16
