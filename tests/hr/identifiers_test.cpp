// Check digits: known numbers, every kind of bad text, and a second way of computing that follows
// the steps in Double.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/hr/Class1.h>

#include "frame/frame_support.h"
#include "support/fake_platform.h"

namespace kvarta16::hr_tests {
namespace {

using frame_tests::is_sanitized;
using frame_tests::Random;
using frame_tests::wide;
using testing_support::FakePlatform;

bool is_pesel(StringView text) {
    return static_cast<bool>(Class1().Spr_PESEL(text));
}
bool is_nip(StringView text) {
    return static_cast<bool>(Class1().Spr_NIP(text));
}

// The remainder by way of a Double quotient.
Integer remainder_of(Integer sum, Integer modulus) {
    const Double quotient = static_cast<Double>(sum) / modulus;
    return ToInteger16((quotient - std::trunc(quotient)) * modulus);
}

Integer digit(StringView text, std::size_t place) {
    return ToInteger16(String(text.substr(place, 1)));
}

Integer sum_of(StringView text, StringView weights) {
    Integer sum = 0;
    for (std::size_t i = 0; i < 10; ++i) {
        sum = wrap16(sum + digit(text, i) * digit(weights, i));
    }
    return sum;
}

bool pesel_by_steps(StringView text) {
    const Integer check = wrap16(10 - remainder_of(sum_of(text, u"1379137913"), 10));
    return (check == 10 ? 0 : check) == digit(text, 10);
}
bool nip_by_steps(StringView text) {
    const Integer check = remainder_of(sum_of(text, u"6572345670"), 11);
    return (check == 10 ? 0 : check) == digit(text, 9);
}

TEST(Identifiers, GoodAndWrongOnes) {
    struct Case {
        const char* text;
        bool pesel;
        bool nip;
    };
    constexpr Case cases[] = {
        {"00000000000", true, true},
        {"11111111116", true, true},
        {"11111111111", false, true},
        {"44051401359", true, false},
        {"44051401358", false, false},
        {"44051401359 and more", true, false},
        {"440514013591234", true, false},
        {"12345678903", true, true},  // a remainder of 10 counts as 0
        {"52600012460", true, true},
        {"52600012461", false, true},
        {"5260001246x", false, true},
    };
    for (const Case& test : cases) {
        FakePlatform fake;
        EXPECT_EQ(is_nip(wide(test.text)), test.nip) << test.text;
        EXPECT_TRUE(fake.boxes.shown.empty()) << test.text;
        if (std::string_view(test.text).find('x') == std::string_view::npos) {
            EXPECT_EQ(is_pesel(wide(test.text)), test.pesel) << test.text;
            EXPECT_TRUE(fake.boxes.shown.empty()) << test.text;
        }
    }
    EXPECT_TRUE(is_nip(u"0000000000"));
    EXPECT_TRUE(is_nip(u"1234567890"));
    EXPECT_TRUE(is_nip(u"1234567890, as it stands on the invoice"));
    EXPECT_FALSE(is_nip(u"1234567891"));
}

TEST(Identifiers, BadTextsAreShownAndFalse) {
    struct Case {
        const char* text;
        bool shows_pesel;
        bool shows_nip;
    };
    constexpr Case cases[] = {
        {"", true, true},
        {"1", true, true},
        {"123456789", true, true},
        {"1234567890", true, false},
        {"12a45678901", true, true},
        {"1111111111a", true, false},
        {"1111111111 ", true, false},
        {"123-456-78-90", true, true},
        {" 1234567890", true, true},
        {"1234567890-", true, false},
        {"+1234567890", true, true},
        {"1,345678901", true, true},
    };
    for (const Case& test : cases) {
        const String text = wide(test.text);
        {
            FakePlatform fake;
            const bool answer = is_pesel(text);
            ASSERT_EQ(fake.boxes.shown.size(), test.shows_pesel ? 1U : 0U) << test.text;
            if (test.shows_pesel) {
                EXPECT_FALSE(answer);
                EXPECT_EQ(to_utf8(fake.boxes.shown[0].text), "13");
                EXPECT_EQ(fake.boxes.shown[0].style, msg_box::ok_only);
                EXPECT_EQ(to_utf8(fake.boxes.shown[0].title.value_or(u"")),
                          "Type mismatch/Proc:Spr_PESEL,ModT:Module,ModN:Różne");
            }
        }
        FakePlatform fake;
        const bool answer = is_nip(text);
        ASSERT_EQ(fake.boxes.shown.size(), test.shows_nip ? 1U : 0U) << test.text;
        if (test.shows_nip) {
            EXPECT_FALSE(answer);
            EXPECT_EQ(to_utf8(fake.boxes.shown[0].text), "13");
            EXPECT_EQ(fake.boxes.shown[0].style, msg_box::ok_only);
            EXPECT_EQ(to_utf8(fake.boxes.shown[0].title.value_or(u"")),
                      "Type mismatch/Proc:Spr_NIP,ModT:Module,ModN:Różne");
        }
    }
}

// Every character, at two places every one there is: the ten digits count, all else is shown.
TEST(Identifiers, EveryCharacterAtEveryPlace) {
    FakePlatform fake;
    for (std::size_t place = 0; place < 11; ++place) {
        String text = u"00000000000";
        const std::uint32_t all = is_sanitized ? 0x1000 : 0x10000;
        const std::uint32_t units = place == 2 || place == 10 ? all : 0x180;
        for (std::uint32_t unit = 0; unit < units; ++unit) {
            text[place] = static_cast<char16_t>(unit);
            const bool is_digit = unit >= u'0' && unit <= u'9';
            fake.boxes.shown.clear();
            const bool pesel = is_pesel(text);
            ASSERT_EQ(fake.boxes.shown.empty(), is_digit) << place << " " << unit;
            ASSERT_EQ(pesel, is_digit && pesel_by_steps(text));
            fake.boxes.shown.clear();
            const bool nip = is_nip(text);
            ASSERT_EQ(fake.boxes.shown.empty(), is_digit || place == 10) << place << " " << unit;
            ASSERT_EQ(nip, place == 10 || (is_digit && nip_by_steps(text)));
        }
    }
}

TEST(Identifiers, RandomOnesAsByTheSteps) {
    const FakePlatform fake;
    Random random(5);
    int good = 0;
    constexpr int many = is_sanitized ? 30'000 : 300'000;
    for (int i = 0; i < many; ++i) {
        String text;
        for (int j = 0; j < 11; ++j) {
            text += static_cast<char16_t>(u'0' + random.between(0, 9));
        }
        ASSERT_EQ(is_pesel(text), pesel_by_steps(text)) << to_utf8(text);
        ASSERT_EQ(is_nip(text), nip_by_steps(text)) << to_utf8(text);
        good += is_pesel(text) ? 1 : 0;
    }
    EXPECT_NEAR(good, many / 10, is_sanitized ? 300 : 1'000);
    EXPECT_TRUE(fake.boxes.shown.empty());
}

}  // namespace
}  // namespace kvarta16::hr_tests
