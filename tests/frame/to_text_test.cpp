// ToText: a table of every subtype, then random numbers against digits printed by the C library.

#include <cstring>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "frame_support.h"
#include "reference.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

TEST(ToText, GivesWhatTheTableTells) {
    for (const Row& row : rows_of("to_text.tsv", 3)) {
        const std::string& cell = row.cells[1];
        const std::string expected =
            cell[0] == '!' ? cell : notation(parse_value("String " + cell));
        const Forms forms(parse_value(row.cells[0]));
        for (const Form& form : forms.all()) {
            EXPECT_EQ(outcome([&] { return ToText(*form.value); }), expected)
                << row.place << " " << row.cells[0] << ", " << form.name;
        }
    }
}

TEST(ToText, WritesWholeNumbersInDigits) {
    for (int i = -32768; i <= 32767; ++i) {
        ASSERT_EQ(ToText(Variant(static_cast<Integer>(i))), wide(std::to_string(i)));
    }
    for (int i = 0; i <= 255; ++i) {
        ASSERT_EQ(ToText(Variant(static_cast<Byte>(i))), wide(std::to_string(i)));
    }
    Random random(21);
    for (int i = 0; i < random_cases; ++i) {
        const Long value = wrap32(random.count());
        ASSERT_EQ(ToText(value), wide(std::to_string(value)));
    }
}

// ---- Money, decimals --------------------------------------------------------------------------

constexpr int never_e = 1000;

void expect_money(std::int64_t count) {
    std::string digits = std::to_string(count);
    std::erase(digits, '-');
    ASSERT_EQ(ToText(Currency::raw(count)), plain_text({count < 0, digits, -4}, never_e));
}

TEST(ToText, WritesMoneyExactly) {
    for (std::int64_t count = -200'000; count <= 200'000; ++count) {
        expect_money(count);
    }
    Random random(22);
    for (int i = 0; i < random_cases; ++i) {
        expect_money(random.count());
        expect_money(static_cast<std::int64_t>(random.bits()));
        expect_money(random.count() / 100 * 100);
        if (HasFatalFailure()) {
            return;
        }
    }
}

// Numbers below 0.0001 too: E notation is for binary numbers.
TEST(ToText, WritesDecimalsExactly) {
    Random random(23);
    for (int i = 0; i < random_cases; ++i) {
        Decimal value;
        value.high = static_cast<std::uint32_t>(random.bits()) >> random.between(0, 31);
        value.middle = static_cast<std::uint32_t>(random.bits());
        value.low = static_cast<std::uint32_t>(random.bits());
        if (random.chance(50)) {
            value.high = 0;
            value.middle >>= random.between(0, 31);
        }
        value.scale = static_cast<std::uint8_t>(random.between(0, 28));
        value.negative = random.chance(50);
        std::string expected = show(value);
        std::replace(expected.begin(), expected.end(), '.', ',');
        ASSERT_EQ(ToText(value), wide(expected));
    }
}

// ---- Binary numbers ---------------------------------------------------------------------------

void expect_double(double value) {
    if (value == 0) {
        return;
    }
    const Reduced digits = reduced(value, 15);
    if (!digits.is_tie) {
        ASSERT_EQ(ToText(value), plain_text(digits.number, 15)) << show_number("%.17g", value);
    }
}

void expect_single(Single value) {
    if (value == 0) {
        return;
    }
    const Reduced digits = reduced(static_cast<double>(value), 7);
    if (!digits.is_tie) {
        ASSERT_EQ(ToText(value), plain_text(digits.number, 7))
            << show_number("%.17g", static_cast<double>(value));
    }
}

TEST(ToText, WritesFifteenDigitsOfADouble) {
    Random random(24);
    for (int i = 0; i < random_cases; ++i) {
        expect_double(random.any_double());
        expect_double(static_cast<double>(random.count()) / 10000.0);
        expect_double(std::ldexp(static_cast<double>(random.count()),
                                 static_cast<int>(random.between(-80, 40))));
        if (HasFatalFailure()) {
            return;
        }
    }
}

TEST(ToText, WritesFifteenDigitsBesideEveryPowerOfTen) {
    for (int power = -307; power <= 308; ++power) {
        const double ten = std::strtod(("1e" + std::to_string(power)).c_str(), nullptr);
        for (const double factor : {1.0, 0.5, 0.9999999999999, 0.99999999999999, 9.0}) {
            double value = power < 308 ? ten * factor : ten;
            for (int i = 0; i < 40; ++i) {
                expect_double(value);
                expect_double(-value);
                value = std::nextafter(value, i < 20 ? HUGE_VAL : 0);
            }
        }
    }
}

TEST(ToText, WritesTheShortestOfTheFifteenDigits) {
    for (int hundredths = -200'000; hundredths <= 200'000; ++hundredths) {
        std::string digits = std::to_string(std::abs(hundredths));
        ASSERT_EQ(ToText(hundredths / 100.0), plain_text({hundredths < 0, digits, -2}, 15));
    }
}

TEST(ToText, WritesSevenDigitsOfASingle) {
    Random random(25);
    for (int i = 0; i < random_cases; ++i) {
        const auto bits = static_cast<std::uint32_t>(random.bits());
        Single value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) {
            expect_single(value);
        }
        expect_single(
            static_cast<Single>(static_cast<double>(random.between(-999'999, 999'999)) / 100.0));
        if (HasFatalFailure()) {
            return;
        }
    }
    for (Single value = 9'999'000; value < 10'001'000; value += 1) {
        expect_single(value);
        expect_single(-value / 1e11F);
    }
}

// A text of 15 digits reads back as a number that has the same text.
TEST(ToText, ReadsBack) {
    Random random(26);
    for (int i = 0; i < random_cases; ++i) {
        const double value = random.any_double();
        if (std::fabs(value) < 1e308) {
            const String text = ToText(value);
            ASSERT_EQ(ToText(to_double(text)), text);
        }
        const Long whole = wrap32(random.count());
        ASSERT_EQ(ToLong(ToText(whole)), whole);
    }
}

// ---- Dates ------------------------------------------------------------------------------------

TEST(ToText, WritesEverySecondOfADay) {
    for (const std::int32_t day : {45429, 0, 1, -1, -657434, 2958465}) {
        for (int second = 0; second < 86400; ++second) {
            const double time = second / 86400.0;
            const Date moment{day < 0 ? day - time : day + time};
            char text[40];
            std::snprintf(text, sizeof text, " %02d:%02d:%02d", second / 3600, second / 60 % 60,
                          second % 60);
            const String expected =
                ToText(Date{static_cast<double>(day)}) + (second == 0 ? String() : wide(text));
            ASSERT_EQ(ToText(moment), expected);
        }
    }
}

}  // namespace
}  // namespace kvarta16
