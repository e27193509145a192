// The orders of the ciphers' alphabets and texts enciphered under them, as they are for good:
// somebody's stored texts can be read under no other.

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include <kvarta16/ciphers/alphabets.h>
#include <kvarta16/ciphers/d1enc.h>
#include <kvarta16/ciphers/dsEncrypt.h>

#include "frame/frame_support.h"

namespace kvarta16 {
namespace {

using frame_tests::show;

constexpr char16_t order_of_dsEncrypt[] = {
    // clang-format off
    0x005B, 0x0074, 0x002C, 0x002F, 0x0026, 0x0068, 0x0118, 0x0037,
    0x0045, 0x0057, 0x0050, 0x0033, 0x017B, 0x007A, 0x005D, 0x002B,
    0x0105, 0x0142, 0x005F, 0x0063, 0x0048, 0x0051, 0x004A, 0x0066,
    0x0036, 0x0044, 0x0073, 0x0119, 0x0061, 0x0049, 0x0040, 0x0076,
    0x0064, 0x0060, 0x0024, 0x0069, 0x006D, 0x006B, 0x0079, 0x006E,
    0x00D3, 0x004C, 0x003A, 0x002D, 0x0053, 0x015B, 0x0038, 0x0046,
    0x0078, 0x0106, 0x0025, 0x007E, 0x0055, 0x0047, 0x0052, 0x007D,
    0x0065, 0x0041, 0x003F, 0x004F, 0x0062, 0x0039, 0x0143, 0x0179,
    0x015A, 0x0054, 0x0144, 0x0031, 0x0077, 0x0027, 0x005A, 0x0058,
    0x006A, 0x0067, 0x002A, 0x003C, 0x0029, 0x0056, 0x0034, 0x0071,
    0x007B, 0x007C, 0x00F3, 0x003E, 0x0070, 0x0035, 0x0072, 0x0059,
    0x002E, 0x0042, 0x0141, 0x004E, 0x003D, 0x0020, 0x004B, 0x004D,
    0x0043, 0x0107, 0x0028, 0x017A, 0x006F, 0x0032, 0x006C, 0x0075,
    0x017C, 0x0021, 0x0030, 0x005C, 0x003B, 0x0023, 0x005E, 0x0104,
    // clang-format on
};

constexpr char16_t order_of_d1enc[] = {
    // clang-format off
    0x0143, 0x003C, 0x002A, 0x0035, 0x0033, 0x0057, 0x0054, 0x0144,
    0x006C, 0x0118, 0x003A, 0x0064, 0x0179, 0x005F, 0x0029, 0x0060,
    0x0055, 0x0119, 0x0021, 0x0105, 0x0038, 0x0059, 0x0034, 0x0075,
    0x005B, 0x0072, 0x0024, 0x0106, 0x015A, 0x0036, 0x004C, 0x0053,
    0x0045, 0x0020, 0x0061, 0x003E, 0x002F, 0x002B, 0x015B, 0x007B,
    0x004B, 0x006F, 0x007E, 0x0043, 0x017B, 0x0041, 0x007D, 0x00D3,
    0x0056, 0x0048, 0x0058, 0x005E, 0x0032, 0x003D, 0x017A, 0x0077,
    0x0046, 0x0068, 0x0071, 0x006B, 0x007A, 0x0023, 0x0040, 0x0141,
    0x004E, 0x0050, 0x0030, 0x017C, 0x002C, 0x003B, 0x0104, 0x0142,
    0x0069, 0x0065, 0x0028, 0x0044, 0x0031, 0x0078, 0x0074, 0x0042,
    0x004F, 0x0067, 0x0079, 0x0062, 0x006A, 0x0070, 0x0049, 0x0066,
    0x006E, 0x0037, 0x006D, 0x002D, 0x0026, 0x005C, 0x0052, 0x0107,
    0x0076, 0x0047, 0x005A, 0x007C, 0x004D, 0x003F, 0x0073, 0x004A,
    0x005D, 0x0063, 0x0027, 0x0025, 0x00F3, 0x0051, 0x0039, 0x002E,
    // clang-format on
};

TEST(Alphabets, StandAsTheyAreForGood) {
    EXPECT_TRUE(std::ranges::equal(ciphers::order_of_dsEncrypt, order_of_dsEncrypt));
    EXPECT_TRUE(std::ranges::equal(ciphers::order_of_d1enc, order_of_d1enc));
}

TEST(Alphabets, HoldTheSameCharactersInTwoOrders) {
    const String capitals = u"ABCDEFGHIJKLMNOPQRSTUVWXYZĄĆĘŁŃÓŚŹŻ";
    std::set<char16_t> expected;
    for (const char16_t letter : capitals) {
        expected.insert({letter, lower_case(letter)});
    }
    for (char16_t unit = u' '; unit <= u'~'; ++unit) {  // the digits, the blank, the marks
        expected.insert(unit);
    }
    expected.erase(u'"');
    ASSERT_EQ(expected.size(), 112U);
    const StringView of_ds = ciphers::order_of_dsEncrypt;
    const StringView of_d1 = ciphers::order_of_d1enc;
    EXPECT_EQ(of_ds.size(), 112U);
    EXPECT_EQ(of_d1.size(), 112U);
    EXPECT_EQ(std::set<char16_t>(of_ds.begin(), of_ds.end()), expected);
    EXPECT_EQ(std::set<char16_t>(of_d1.begin(), of_d1.end()), expected);
    EXPECT_NE(of_ds, of_d1);
}

struct Golden {
    StringView text;
    StringView key;
    StringView enciphered;
};

template <class Cipher>
void expect_golden(std::initializer_list<Golden> cases) {
    for (const Golden& golden : cases) {
        Cipher cipher;
        cipher.KeyString(golden.key);
        EXPECT_EQ(show(cipher.Encrypt(golden.text)), show(golden.enciphered));
        EXPECT_EQ(show(cipher.Encrypt(golden.enciphered)), show(golden.text));
    }
}

TEST(Alphabets, StoredTextsStayReadable) {
    expect_golden<dsEncrypt>({
        {u"Zażółć gęślą jaźń", u"klucz", u"ó*\"UĄ}W@\\>%rPŃoGm"},
        {u"ABCabc 123, \"x\"\r\n", u"k", u"MŹeW=_O5~siOyżyÓn"},
        {u"Hasło: {[(0;1%2)]}", u"Tajny Klucz 7!", u"ś[8JG~tJumJo}}q1?ź"},
        {u"aaaaaaaaaa", u"Ąa0 \"", u">[4Tr>[4Tr"},
    });
    expect_golden<d1enc>({
        {u"Zażółć gęślą jaźń", u"klucz", u"DnĄ.Jt7FfYXJ]8r3Ń"},
        {u"ABCabc 123, \"x\"\r\n", u"k", u"_R`[m,rGTźcrkvk#z"},
        {u"Hasło: {[(0;1%2)]}", u"Tajny Klucz 7!", u"ł\"vUK4Tb\nLótŹr,ąRo"},
        {u"aaaaaaaaaa", u"Ąa0 \"", u">\"S\nB>\"S\nB"},
    });
}

}  // namespace
}  // namespace kvarta16
