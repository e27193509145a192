// ToDate, IsDateValue and MakeDate: a table, and every day of the calendar against <chrono>.

#include <chrono>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

TEST(ToDate, GivesWhatTheTableTells) {
    for (const Row& row : rows_of("dates.tsv", 4)) {
        const std::string& cell = row.cells[1];
        const std::string expected = cell[0] == '!' ? cell : notation(parse_value("Date " + cell));
        const Forms forms(parse_value(row.cells[0]));
        for (const Form& form : forms.all()) {
            SCOPED_TRACE(row.place + " " + row.cells[0] + ", " + form.name);
            EXPECT_EQ(static_cast<bool>(IsDateValue(*form.value)), row.cells[2] == "yes");
            if (cell != ".") {
                EXPECT_EQ(outcome([&] { return ToDate(*form.value); }), expected);
            } else if (form.value->is(Subtype::String)) {
                EXPECT_NE(failure_of([&] { return ToDate(*form.value); }), 0);
            }
        }
    }
}

// A text is a date exactly if it can be read as one.
TEST(ToDate, AgreesWithIsDateValueOnAllShortTexts) {
    int dates = 0;
    for_all_texts({u"1", u"31", u"2024", u"99", u"-", u".", u" ", u":", u"maja"},
                  is_sanitized ? 5 : 6, [&dates](const String& text) {
                      const int failure = failure_of([&] { return ToDate(text); });
                      const bool is_date = static_cast<bool>(IsDateValue(text));
                      ASSERT_TRUE(failure == 0 || failure == 6 || failure == 13) << show(text);
                      ASSERT_EQ(is_date, failure == 0) << show(text);
                      dates += is_date ? 1 : 0;
                  });
    EXPECT_GT(dates, is_sanitized ? 10 : 50);
}

// ---- Every day --------------------------------------------------------------------------------

TEST(MakeDate, AgreesWithChronoOnEveryDay) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    for (sys_days day{year{100} / January / 1}; day <= sys_days{year{9999} / December / 31};
         day += days{sanitized_stride(11)}) {
        const year_month_day civil{day};
        const auto y = static_cast<int>(civil.year());
        const auto m = static_cast<unsigned>(civil.month());
        const auto d = static_cast<unsigned>(civil.day());
        const double expected = static_cast<double>((day - origin).count());
        const Date made =
            MakeDate(static_cast<Integer>(y), static_cast<Integer>(m), static_cast<Integer>(d));
        ASSERT_EQ(made.days, expected) << y << "-" << m << "-" << d;
        char text[20];
        std::snprintf(text, sizeof text, "%04d-%02u-%02u", y, m, d);
        const Variant written = wide(text);
        ASSERT_EQ(ToDate(written).days, expected) << text;
        ASSERT_EQ(ToText(made), *written.get_if<String>());
    }
}

TEST(ToDate, ReadsEveryDayInTheOtherOrders) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    constexpr const char* months[] = {"stycznia", "lutego",  "marca",     "kwietnia",
                                      "maja",     "czerwca", "lipca",     "sierpnia",
                                      "",         "",        "listopada", "grudnia"};
    for (sys_days day{year{1900} / January / 1}; day <= sys_days{year{2100} / December / 31};
         day += days{1}) {
        const year_month_day civil{day};
        const auto y = static_cast<int>(civil.year());
        const auto m = static_cast<unsigned>(civil.month());
        const auto d = static_cast<unsigned>(civil.day());
        const double expected = static_cast<double>((day - origin).count());
        char text[40];
        for (const char separator : {'-', '/', '.'}) {
            std::snprintf(text, sizeof text, "%02u%c%02u%c%d", d, separator, m, separator, y);
            ASSERT_EQ(ToDate(wide(text)).days, expected) << text;
            std::snprintf(text, sizeof text, "%d%c%u%c%u", y, separator, m, separator, d);
            ASSERT_EQ(ToDate(wide(text)).days, expected) << text;
            if (d > 12) {
                std::snprintf(text, sizeof text, "%u%c%u%c%d", m, separator, d, separator, y);
                ASSERT_EQ(ToDate(wide(text)).days, expected) << text;
            }
        }
        if (m != 9 && m != 10) {  // these names are not ASCII: the table has them
            std::snprintf(text, sizeof text, "%u %s %d", d, months[m - 1], y);
            ASSERT_EQ(ToDate(wide(text)).days, expected) << text;
        }
    }
}

TEST(ToDate, ReadsEverySecondOfADay) {
    for (const auto& [day, number] : {std::pair("2024-05-17", 45429), std::pair("1899-12-30", 0),
                                      std::pair("1899-12-29", -1)}) {
        for (int second = 0; second < 86400; ++second) {
            char text[40];
            std::snprintf(text, sizeof text, "%s %02d:%02d:%02d", day, second / 3600,
                          second / 60 % 60, second % 60);
            const String written = wide(text);
            const Date read = ToDate(written);
            const double time = second / 86400.0;
            const double expected = number < 0 ? number - time : number + time;
            ASSERT_NEAR(read.days, expected, 1e-9) << text;
            ASSERT_EQ(ToText(read), second == 0 ? wide(day) : written);
        }
    }
}

TEST(ToDate, TakesEveryNumberAsADayCount) {
    for (std::int32_t number = first_day_number; number <= last_day_number; number += 97) {
        ASSERT_EQ(ToDate(Variant(number)).days, number);
        ASSERT_EQ(ToDate(Variant(number + 0.0)).days, number);
        ASSERT_EQ(ToDate(Variant(Currency::raw(number * 10000LL))).days, number);
    }
    for (int i = -32768; i <= 32767; ++i) {
        ASSERT_EQ(ToDate(Variant(static_cast<Integer>(i))).days, i);
    }
}

// ---- MakeDate ---------------------------------------------------------------------------------

struct Made {
    int year;
    int month;
    int day;
    const char* expected;
};

// clang-format off
constexpr Made made_dates[] = {
    {2024,   5,  17, "2024-05-17"},
    {2010,  14,   1, "2011-02-01"},  // a month beyond 12 rolls into the next year
    {2024,   0,  15, "2023-12-15"},  // month 0 is December of the year before
    {2024,  -1,  15, "2023-11-15"},
    {2024, -12,  15, "2022-12-15"},
    {2024,  13,   1, "2025-01-01"},
    {2024,  24,   1, "2025-12-01"},
    {2024,   3,   0, "2024-02-29"},  // day 0 is the last one of the month before
    {2023,   3,   0, "2023-02-28"},
    {2024,   1,  32, "2024-02-01"},
    {2024,   2,  30, "2024-03-01"},
    {2023,   2,  31, "2023-03-03"},
    {2024,   1,   0, "2023-12-31"},
    {2024,   1,  -1, "2023-12-30"},
    {2024,  12,  32, "2025-01-01"},
    {2024,   1, 366, "2024-12-31"},
    {2024,   1, 367, "2025-01-01"},
    {2023,  14,  30, "2024-03-01"},  // the month first: February 2024, then the day
    {2024,  -9,  31, "2023-03-31"},
    {   0,   1,   1, "2000-01-01"},  // years of two digits
    {  24,   5,  17, "2024-05-17"},
    {  29,  12,  31, "2029-12-31"},
    {  30,   1,   1, "1930-01-01"},
    {  99,  12,  31, "1999-12-31"},
    {  29,  13,   1, "2030-01-01"},  // read before the month rolls over
    {   0,   0,   1, "1999-12-01"},
    {  99,  13,   1, "2000-01-01"},
    { 100,   1,   1, "0100-01-01"},
    {9999,  12,  31, "9999-12-31"},
    { 100,   0,   1, "!5"},          // not read as two digits once more
    { 100,   1,   0, "!6"},          // the days leave the calendar
    {9999,  13,   1, "!5"},
    {9999,  12,  32, "!6"},
    {9999,  13,   0, "!5"},          // the days are not looked at then
    { 100,   0,  32, "!5"},
    {10000,  0,  31, "9999-12-31"},  // nor is the year before the months
    {10000,  1,   1, "!5"},
    {9999,   1, 32767, "!6"},
    {32767, 12,  31, "!5"},
    {  -1,   1,   1, "!5"},
    {-32768, 1,   1, "!5"},
    {9999, 32767, 32767, "!5"},
    { 100, -32768, -32768, "!5"},
    {-32768, -32768, -32768, "!5"},
};
// clang-format on

TEST(MakeDate, RollsMonthsAndThenDays) {
    for (const Made& made : made_dates) {
        const std::string expected(made.expected);
        EXPECT_EQ(outcome([&] {
                      return MakeDate(static_cast<Integer>(made.year),
                                      static_cast<Integer>(made.month),
                                      static_cast<Integer>(made.day));
                  }),
                  expected[0] == '!' ? expected : notation(parse_value("Date " + expected)))
            << made.year << ", " << made.month << ", " << made.day;
    }
}

TEST(MakeDate, AgreesWithChronoOnAnyArguments) {
    using namespace std::chrono;
    const sys_days origin{1899y / December / 30};
    const sys_days first{year{100} / January / 1};
    const sys_days last{year{9999} / December / 31};
    Random random(41);
    int failures = 0;
    for (int i = 0; i < random_cases; ++i) {
        const auto y = static_cast<Integer>(random.chance(80) ? random.between(0, 10'100)
                                                              : random.between(-32768, 32767));
        const auto m = static_cast<Integer>(random.chance(80) ? random.between(-30, 30)
                                                              : random.between(-32768, 32767));
        const auto d = static_cast<Integer>(random.chance(80) ? random.between(-400, 400)
                                                              : random.between(-32768, 32767));
        const int full_year = y < 0 || y > 99 ? y : y < 30 ? y + 2000 : y + 1900;
        const int month_count = full_year * 12 + m - 1;
        const std::string made = outcome([&] { return MakeDate(y, m, d); });
        if (month_count < 100 * 12 || month_count >= 10'000 * 12) {
            ASSERT_EQ(made, "!5") << y << ", " << m << ", " << d;
            ++failures;
            continue;
        }
        const year_month month = year{0} / January + months{month_count};
        const sys_days day = sys_days{month / 1} + days{d - 1};
        if (day < first || day > last) {
            ASSERT_EQ(made, "!6") << y << ", " << m << ", " << d;
            ++failures;
        } else {
            ASSERT_EQ(made, notation(Date{static_cast<double>((day - origin).count())}))
                << y << ", " << m << ", " << d;
        }
    }
    EXPECT_GT(failures, 1000);
}

}  // namespace
}  // namespace kvarta16
