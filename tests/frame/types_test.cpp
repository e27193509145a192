// The value types by themselves: wrapping, money as a count, truth values, literals, and the
// civil calendar against <chrono>.

#include <chrono>
#include <limits>

#include <gtest/gtest.h>

#include <kvarta16/frame/civil.h>
#include <kvarta16/frame/types.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;
using namespace literals;

// ---- Wrapping ---------------------------------------------------------------------------------

struct Wrap {
    std::int64_t value;
    Integer in16;
    Long in32;
};

// clang-format off
constexpr Wrap wraps[] = {
    {0,                    0,      0},
    {32767,                32767,  32767},
    {32768,                -32768, 32768},
    {-32768,               -32768, -32768},
    {-32769,               32767,  -32769},
    {65535,                -1,     65535},
    {65536,                0,      65536},
    {65537,                1,      65537},
    {2147483647,           -1,     2147483647},
    {2147483648,           0,      -2147483648},
    {-2147483649,          -1,     2147483647},
    {4294967295,           -1,     -1},
    {4294967296,           0,      0},
    {4294967297,           1,      1},
    {std::numeric_limits<std::int64_t>::max(), -1, -1},
    {std::numeric_limits<std::int64_t>::min(), 0,  0},
};
// clang-format on

TEST(Wrap, KeepsTheLowBits) {
    for (const Wrap& wrap : wraps) {
        EXPECT_EQ(wrap16(wrap.value), wrap.in16) << wrap.value;
        EXPECT_EQ(wrap32(wrap.value), wrap.in32) << wrap.value;
    }
}

TEST(Wrap, IsTheNumberModuloThePowerOfTwo) {
    for (std::int64_t value = -200'000; value <= 200'000; ++value) {
        const std::int64_t shifted = (value + 32768) % 65536;
        const std::int64_t expected = (shifted < 0 ? shifted + 65536 : shifted) - 32768;
        ASSERT_EQ(wrap16(value), expected);
        ASSERT_EQ(wrap32(value), value);
    }
    static_assert(std::is_same_v<decltype(wrap16(0)), Integer>);
    static_assert(std::is_same_v<decltype(wrap32(0)), Long>);
}

// ---- Currency ---------------------------------------------------------------------------------

constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();

TEST(CurrencyType, IsACountOfTenThousandths) {
    EXPECT_EQ(Currency().count, 0);
    EXPECT_EQ(Currency::raw(50).count, 50);
    EXPECT_EQ(show(Currency::raw(50)), "0.0050");
    EXPECT_LT(Currency::raw(-1), Currency::raw(0));
    EXPECT_EQ(Currency::raw(7), Currency::raw(7));
    EXPECT_GT(Currency::raw(highest), Currency::raw(lowest));
}

TEST(CurrencyType, AddsAndSubtractsCountsThatWrap) {
    EXPECT_EQ(Currency::raw(3) + Currency::raw(4), Currency::raw(7));
    EXPECT_EQ(Currency::raw(3) - Currency::raw(4), Currency::raw(-1));
    EXPECT_EQ(-Currency::raw(3), Currency::raw(-3));
    EXPECT_EQ(Currency::raw(highest) + Currency::raw(1), Currency::raw(lowest));
    EXPECT_EQ(Currency::raw(lowest) - Currency::raw(1), Currency::raw(highest));
    EXPECT_EQ(Currency::raw(lowest) + Currency::raw(lowest), Currency::raw(0));
    EXPECT_EQ(-Currency::raw(lowest), Currency::raw(lowest));
}

TEST(CurrencyType, IsWrittenAsALiteral) {
    static_assert(493.32_cur == Currency::raw(4933200));
    static_assert(0.0001_cur == Currency::raw(1));
    static_assert(0_cur == Currency::raw(0));
    static_assert(19_cur == Currency::raw(190000));
    static_assert(2.45_cur == Currency::raw(24500));
    static_assert(0.4488_cur == Currency::raw(4488));
    static_assert(2.500_cur == Currency::raw(25000));
    static_assert(922337203685477.5807_cur == Currency::raw(highest));
}

// ---- Boolean ----------------------------------------------------------------------------------

TEST(BooleanType, HoldsMinusOneForTrue) {
    EXPECT_EQ(Boolean(true).raw, -1);
    EXPECT_EQ(Boolean(false).raw, 0);
    EXPECT_EQ(Boolean().raw, 0);
}

TEST(BooleanType, CarriesAnyBitsAndIsTrueForAnyButZero) {
    for (int raw = -32768; raw <= 32767; ++raw) {
        const Boolean value = Boolean::from_raw(static_cast<Integer>(raw));
        ASSERT_EQ(value.raw, raw);
        ASSERT_EQ(static_cast<bool>(value), raw != 0);
    }
}

TEST(BooleanType, IsMadeOfABoolAlone) {
    static_assert(std::is_constructible_v<Boolean, bool>);
    static_assert(!std::is_constructible_v<Boolean, int>);
    static_assert(!std::is_constructible_v<Boolean, const char*>);
    static_assert(!std::is_constructible_v<Boolean, double>);
}

// ---- The calendar -----------------------------------------------------------------------------

TEST(Civil, AgreesWithChronoOnEveryDay) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    const sys_days first{year{100} / January / 1};
    const sys_days last{year{9999} / December / 31};
    EXPECT_EQ((first - origin).count(), first_day_number);
    EXPECT_EQ((last - origin).count(), last_day_number);
    for (std::int32_t number = first_day_number; number <= last_day_number; ++number) {
        const sys_days day = origin + days{number};
        const year_month_day expected{day};
        const Civil civil = civil_of(number);
        ASSERT_EQ(civil.year, static_cast<int>(expected.year())) << number;
        ASSERT_EQ(civil.month, static_cast<int>(static_cast<unsigned>(expected.month()))) << number;
        ASSERT_EQ(civil.day, static_cast<int>(static_cast<unsigned>(expected.day()))) << number;
        ASSERT_EQ(day_number(civil.year, civil.month, civil.day), number);
        ASSERT_EQ(weekday_from_monday(number) + 1, static_cast<int>(weekday{day}.iso_encoding()))
            << number;
    }
}

TEST(Civil, KnowsTheLengthOfEveryMonth) {
    using namespace std::chrono;
    for (int y = 0; y <= 9999; ++y) {
        ASSERT_EQ(is_leap_year(y), year{y}.is_leap()) << y;
        for (int m = 1; m <= 12; ++m) {
            const year_month_day_last last{year{y} / month{static_cast<unsigned>(m)} /
                                           std::chrono::last};
            ASSERT_EQ(days_in_month(y, m), static_cast<int>(static_cast<unsigned>(last.day())))
                << y << "-" << m;
        }
    }
}

TEST(Civil, TakesADayOutsideTheMonth) {
    EXPECT_EQ(day_number(2024, 3, 0), day_number(2024, 2, 29));
    EXPECT_EQ(day_number(2024, 1, 32), day_number(2024, 2, 1));
    EXPECT_EQ(day_number(2024, 1, -30), day_number(2023, 12, 1));
    EXPECT_EQ(day_number(32767, 1, 1) - day_number(32766, 1, 1), 365);
    EXPECT_EQ(day_number(0, 1, 1) - day_number(0, 12, 31), -365);
}

TEST(Civil, IsWrittenAsALiteral) {
    static_assert("1899-12-30"_date.days == 0);
    static_assert("2024-05-17"_date.days == 45429);
    static_assert("2024-02-29"_date.days == 45351);
    static_assert("0100-01-01"_date.days == first_day_number);
    static_assert("9999-12-31"_date.days == last_day_number);
}

}  // namespace
}  // namespace kvarta16
