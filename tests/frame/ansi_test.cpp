// The ANSI code page.
#include <array>
#include <set>

#include <gtest/gtest.h>
#include <iconv.h>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/value.h>

namespace kvarta16 {
namespace {

// The character by the C library's table; 0 for a byte that has none there.
char16_t by_the_c_library(Byte byte) {
    const iconv_t converter = iconv_open("UTF-16LE", "CP1250");
    if (converter == iconv_t(-1)) {  // NOLINT: the C library's own mark of a failure
        throw std::runtime_error("the C library knows no CP1250");
    }
    std::array<char, 1> in{static_cast<char>(byte)};
    std::array<unsigned char, 2> out{};
    char* from = in.data();
    char* to = reinterpret_cast<char*>(out.data());
    std::size_t in_left = in.size();
    std::size_t out_left = out.size();
    const std::size_t result = iconv(converter, &from, &in_left, &to, &out_left);
    iconv_close(converter);
    return result == 0 ? static_cast<char16_t>(out[0] | out[1] << 8) : u'\0';
}

TEST(Ansi, EveryByteAsByTheCLibrary) {
    std::set<int> without;
    for (int i = 1; i < 256; ++i) {
        const auto byte = static_cast<Byte>(i);
        const char16_t expected = by_the_c_library(byte);
        if (expected == u'\0') {
            without.insert(i);
        } else {
            EXPECT_EQ(ansi_unit(byte), expected) << i;
        }
        EXPECT_EQ(ansi_byte(ansi_unit(byte)), byte) << i;
    }
    EXPECT_EQ(without, (std::set<int>{0x81, 0x83, 0x88, 0x90, 0x98}));
    EXPECT_EQ(ansi_unit(0x81), u'\x81');
    EXPECT_EQ(ansi_unit(0), u'\0');
}

TEST(Ansi, OtherCharactersBecomeQuestionMarks) {
    std::set<char16_t> known;
    for (int i = 0; i < 256; ++i) {
        known.insert(ansi_unit(static_cast<Byte>(i)));
    }
    ASSERT_EQ(known.size(), 256U);
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        if (!known.contains(character)) {
            ASSERT_EQ(ansi_byte(character), '?') << unit;
        }
    }
}

TEST(Ansi, Texts) {
    EXPECT_EQ(to_ansi(u"Zażółć gęślą jaźń ₪\r\n"),
              "Za\xBF\xF3\xB3\xE6 g\xEA\x9Cl\xB9 ja\x9F\xF1 ?\r\n");
    EXPECT_EQ(from_ansi("\xA3\xF3\x64\x9F"), u"Łódź");
    EXPECT_EQ(to_ansi(String(3, u'\0')), std::string(3, '\0'));
    EXPECT_EQ(to_ansi(u"\xD83D\xDE00"), "??");  // each half counts
    EXPECT_EQ(to_ansi(u""), "");
    EXPECT_EQ(from_ansi(""), u"");
}

}  // namespace
}  // namespace kvarta16
