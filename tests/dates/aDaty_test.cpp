// Bounds of weeks, months and years, and distances in days.
#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

constexpr StringView names_from_sunday[] = {u"niedziela", u"poniedziałek", u"wtorek", u"środa",
                                            u"czwartek",  u"piątek",       u"sobota"};

// ---- Numbered weeks -------------------------------------------------------------------------

struct WeekCase {
    Integer year;
    Integer week;
    const char* first;
    const char* last;
};

TEST(Weeks, FirstAndLastDay) {
    const WeekCase cases[] = {
        {2023, 1, "2023-01-01", "2023-01-01"},  // a Sunday: the week is that one day
        {2023, 2, "2023-01-02", "2023-01-08"},
        {2023, 53, "2023-12-25", "2023-12-31"},
        {2023, 54, "2023-12-31", "2023-12-31"},
        {2023, 0, "2023-01-01", "2022-12-31"},
        {2023, -1, "2023-01-01", "2022-12-31"},
        {2023, -32768, "2023-01-01", "2022-12-31"},
        {2023, 32766, "2023-12-31", "2023-12-31"},
        {2023, 32767, "2023-12-31", "2022-12-31"},  // the week behind it wraps to -32768
        {2024, 1, "2024-01-01", "2024-01-07"},
        {2024, 2, "2024-01-08", "2024-01-14"},
        {2024, 53, "2024-12-30", "2024-12-31"},
        {2012, 53, "2012-12-24", "2012-12-30"},
        {2012, 54, "2012-12-31", "2012-12-31"},
        {2012, 55, "2012-12-31", "2012-12-31"},
        // A year of two digits is found, and is not the year of its days.
        {24, 1, "2024-01-01", "2024-01-01"},
        {24, 30, "2024-01-01", "2024-01-01"},
        {24, 0, "2024-01-01", "2023-12-31"},
        {30, 5, "1930-01-01", "1930-01-01"},
        // Both ends of the calendar.
        {100, 1, "0100-01-01", "0100-01-03"},
        {9999, 52, "9999-12-20", "9999-12-26"},
        {9999, 53, "9999-12-27", "9999-12-31"},
        {9999, 54, "9999-12-31", "9999-12-31"},
        // A year that there is not leaves day 0, whose week is the 53rd.
        {-1, 1, "1899-12-30", "1899-12-29"},
        {-1, 52, "1899-12-30", "1899-12-29"},
        {-1, 53, "1899-12-30", "1899-12-30"},
        {-1, 54, "1899-12-30", "1899-12-30"},
        {-1, 32767, "1899-12-30", "1899-12-29"},
        {10000, 1, "1899-12-30", "1899-12-29"},
        {10000, 53, "1899-12-30", "1899-12-30"},
        {32767, 2, "1899-12-30", "1899-12-29"},
    };
    for (const WeekCase& row : cases) {
        SCOPED_TRACE(std::to_string(row.year) + ", " + std::to_string(row.week));
        EXPECT_EQ(calendar().BOWeek(row.year, row.week), day(row.first));
        EXPECT_EQ(calendar().EOWeek(row.year, row.week), day(row.last));
    }
    // The day before the calendar begins is a number like any other.
    EXPECT_EQ(calendar().EOWeek(100, 0).days, first_day_number - 1);
}

// The week walks as they are told: by single days, with the number that the mask renders, each
// step dropped where it fails and a failing test taken as true.
template <class Condition>
bool holds(const Condition& condition) {
    bool result = true;
    step([&] { result = condition(); });
    return result;
}

bool is_above_week(std::int32_t week, Date running) {
    return holds([&] { return week > ToLong(FormatMask(running, u"ww")); });
}

bool has_left(Integer year, Date running) {
    return holds([&] { return ToLong(FormatMask(running, u"yyyy")) != year; });
}

Date walked_first_day(Integer year, Integer week) {
    Date running;
    step([&] { running = MakeDate(year, 1, 1); });
    while (is_above_week(week, running)) {
        running.days += 1;
        if (has_left(year, running)) {
            running.days -= 1;
            break;
        }
    }
    return running;
}

Date walked_last_day(Integer year, Integer week) {
    Date running;
    step([&] { running = MakeDate(year, 1, 1); });
    while (is_above_week(wrap16(week + 1), running)) {
        running.days += 1;
        if (has_left(year, running)) {
            break;
        }
    }
    return {running.days - 1};
}

void expect_as_walked(Integer year, Integer week) {
    ASSERT_EQ(calendar().BOWeek(year, week), walked_first_day(year, week)) << year << " " << week;
    ASSERT_EQ(calendar().EOWeek(year, week), walked_last_day(year, week)) << year << " " << week;
}

TEST(Weeks, AsWalkedDayByDay) {
    for (int year = first_year; year <= last_year; year += sanitized_stride(5)) {
        for (int week = -1; week <= 56; ++week) {
            expect_as_walked(wrap16(year), wrap16(week));
        }
    }
    for (const int year : {-32768, -1, 0, 1, 24, 29, 30, 99, 100, 101, 1582, 1752, 9998, 9999,
                           10000, 10001, 32767}) {
        for (const int week : {-32768, -32767, -1, 0, 1, 2, 51, 52, 53, 54, 55, 32766, 32767}) {
            expect_as_walked(wrap16(year), wrap16(week));
        }
    }
}

TEST(Weeks, AsWalkedFromAnywhere) {
    Random random(41);
    for (int i = 0; i < 3000; ++i) {
        const auto year =
            random.chance(80) ? random.between(0, 10050) : random.between(-32768, 32767);
        const auto week =
            random.chance(80) ? random.between(-3, 60) : random.between(-32768, 32767);
        expect_as_walked(wrap16(year), wrap16(week));
    }
}

TEST(Weeks, EveryDayLiesInItsWeek) {
    int seen = 0;
    for_every_day(first_year, last_year, [&](const ChronoDay& at) {
        ++seen;
        const Integer year = wrap16(at.year);
        const Integer week = wrap16(at.week_from_monday());
        const double from_monday = (at.weekday + 6) % 7;
        const double new_year = at.number - at.day_of_year;
        const double new_years_eve = chrono_day_number(at.year, 12, 31);
        ASSERT_EQ(calendar().BOWeek(year, week).days, std::max(new_year, at.number - from_monday))
            << at.number;
        ASSERT_EQ(calendar().EOWeek(year, week).days,
                  std::min(new_years_eve, at.number - from_monday + 6))
            << at.number;
    });
    EXPECT_EQ(seen, days_of_the_years);
}

// ---- Years and months -----------------------------------------------------------------------

TEST(Bounds, OfEveryDay) {
    for_every_day(first_year, last_year, [](const ChronoDay& at) {
        using namespace std::chrono;
        const year_month_day_last month_end{year{at.year} / month{at.month} / last};
        for (const double time : {0.0, 0.5, 86399 / 86400.0}) {
            const Date da = at.at(time);
            ASSERT_EQ(calendar().BOYear(da).days, chrono_day_number(at.year, 1, 1)) << da.days;
            ASSERT_EQ(calendar().EOYear(da).days, chrono_day_number(at.year, 12, 31)) << da.days;
            ASSERT_EQ(calendar().BOMonth(da).days, chrono_day_number(at.year, at.month, 1))
                << da.days;
            ASSERT_EQ(calendar().EOMonth(da).days,
                      chrono_day_number(at.year, at.month, unsigned(month_end.day())))
                << da.days;
        }
    });
}

TEST(Bounds, EndsOfMonths) {
    for (int number = 1; number <= 29; ++number) {
        EXPECT_EQ(calendar().EOMonth(day("2024-02-" + digits(number, 2))), day("2024-02-29"));
    }
    EXPECT_EQ(calendar().EOMonth(day("2024-12-15 12:00:00")), day("2024-12-31"));
    EXPECT_EQ(calendar().EOMonth(day("1899-12-29 06:00:00")), day("1899-12-31"));
    EXPECT_EQ(calendar().BOMonth(day("1899-12-30 18:00:00")), day("1899-12-01"));
    EXPECT_EQ(calendar().EOYear(day("0100-01-01")), day("0100-12-31"));
    EXPECT_EQ(calendar().EOYear(day("9999-12-31 23:59:59")), day("9999-12-31"));
    EXPECT_EQ(calendar().EOMonth(day("9999-11-30")), day("9999-11-30"));
}

TEST(Bounds, Strict) {
    // The end of December comes from a January that there is not.
    EXPECT_EQ(failure_of([] { return calendar().EOMonth(day("9999-12-01")); }), 5);
    for (const Date da : {Date{first_day_number - 1.0}, Date{last_day_number + 1.0}, Date{1e300},
                          Date{-1e300}, Date{std::nan("")}}) {
        EXPECT_EQ(failure_of([&] { return calendar().BOYear(da); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().EOYear(da); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().BOMonth(da); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().EOMonth(da); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().BOWeek2(da); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().DzieńDoDnia(da, u"wtorek"); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().DzieńDoDnia2(da, u"wtorek"); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().YearN(da); }), 5) << da.days;
        EXPECT_EQ(failure_of([&] { return calendar().MonthN(da); }), 5) << da.days;
    }
}

// ---- Distances ------------------------------------------------------------------------------

TEST(Distance, TimesOfDayDoNotCount) {
    EXPECT_EQ(calendar().RóżnicaDat(day("2024-03-02 23:59:00"), day("2024-03-01 00:01:00")), 1);
    EXPECT_EQ(calendar().RóżnicaDat(day("2024-03-02 00:01:00"), day("2024-03-01 23:59:00")), 1);
    EXPECT_EQ(calendar().RóżnicaDat(day("2024-05-17 01:00:00"), day("2024-05-17 23:00:00")), 0);
    EXPECT_EQ(calendar().RóżnicaDat(day("2024-03-01"), day("2024-03-02")), -1);
    EXPECT_EQ(calendar().RóżnicaDat(day("1899-12-29 18:00:00"), day("1899-12-31 06:00:00")), -2);
    EXPECT_EQ(calendar().RóżnicaDat(day("9999-12-31"), day("0100-01-01")), 3615899);
    for_every_day(first_year, last_year, [](const ChronoDay& at) {
        ASSERT_EQ(calendar().RóżnicaDat(at.at(0.25), day("2000-02-29 18:00:00")),
                  at.number - chrono_day_number(2000, 2, 29));
        ASSERT_EQ(calendar().RóżnicaDat(day("2000-02-29"), at.at(0.75)),
                  chrono_day_number(2000, 2, 29) - at.number);
    });
}

TEST(Distance, Tolerant) {
    EXPECT_EQ(calendar().RóżnicaDat(Date{1e10}, Date{0}), 0);
    EXPECT_EQ(calendar().RóżnicaDat(Date{0}, Date{1e300}), 0);
    EXPECT_EQ(calendar().RóżnicaDat(Date{2147483647.5}, Date{0.5}), 2147483647);
}

TEST(Distance, ToNamedWeekdaysOfEveryDay) {
    for_every_day(first_year, last_year, [](const ChronoDay& at) {
        for (unsigned weekday = 0; weekday < 7; ++weekday) {
            const StringView name = names_from_sunday[weekday];
            const Date da = at.at(0.999);
            ASSERT_EQ(calendar().DzieńDoDnia(da, name),
                      static_cast<Long>((at.weekday + 7 - weekday) % 7))
                << at.number;
            ASSERT_EQ(calendar().DzieńDoDnia2(da, name),
                      static_cast<Long>((weekday + 7 - at.weekday) % 7))
                << at.number;
        }
        ASSERT_EQ(calendar().DzieńDoDnia(at.at(0), u"Wtorek"), static_cast<Long>(at.weekday + 1));
        ASSERT_EQ(calendar().DzieńDoDnia2(at.at(0), u"Wtorek"), static_cast<Long>(6 - at.weekday));
    });
}

TEST(Distance, NamesAreComparedExactly) {
    const Date thursday = day("2024-05-16");
    EXPECT_EQ(calendar().DzieńDoDnia(thursday, u"wtorek"), 2);
    EXPECT_EQ(calendar().DzieńDoDnia2(thursday, u"wtorek"), 5);
    EXPECT_EQ(calendar().DzieńDoDnia(thursday, u"czwartek"), 0);
    EXPECT_EQ(calendar().DzieńDoDnia2(thursday, u"czwartek"), 0);
    for (const StringView name : {u"Wtorek", u"wtorek ", u" wtorek", u"WTOREK", u"sroda", u"",
                                  u"poniedzialek", u"Środa", u"niedziel", u"niedzielaa"}) {
        EXPECT_EQ(calendar().DzieńDoDnia(thursday, name), 5) << show(name);
        EXPECT_EQ(calendar().DzieńDoDnia2(thursday, name), 2) << show(name);
    }
    // The names are the class's own, whatever the machine's language.
    Locale other;
    other.day_names.fill(u"day");
    const ScopedLocale scope(other);
    EXPECT_EQ(calendar().DzieńDoDnia(thursday, u"wtorek"), 2);
}

// ---- The Sunday of a week -------------------------------------------------------------------

TEST(SundayOnOrBefore, EveryDayKeepsItsTime) {
    EXPECT_EQ(calendar().BOWeek2(day("2024-01-03 10:00:00")), day("2023-12-31 10:00:00"));
    EXPECT_EQ(calendar().BOWeek2(day("2023-12-31")), day("2023-12-31"));
    for_every_day(first_year, last_year, [](const ChronoDay& at) {
        for (const double time : {0.0, 0.25, 0.5}) {
            ASSERT_EQ(calendar().BOWeek2(at.at(time)).days,
                      at.number - static_cast<int>(at.weekday) + time)
                << at.number;
        }
    });
    for_every_day(1890, 1899, [](const ChronoDay& at) {
        const int sunday = at.number - static_cast<int>(at.weekday);
        ASSERT_EQ(calendar().BOWeek2(at.at(0)).days, sunday);
        if (at.number < 0) {
            ASSERT_EQ(calendar().BOWeek2(at.at(0.25)).days, sunday - 0.25);
        }
    });
    // From day 0 with a time the subtraction leads below zero, where times count the other way.
    EXPECT_EQ(calendar().BOWeek2(Date{0.25}).days, -5.75);
}

// ---- Today ----------------------------------------------------------------------------------

TEST(Today, EveryDay) {
    FakePlatform fake;
    for_every_day(first_year, last_year, [&](const ChronoDay& at) {
        fake.clock.now = at.at(0.6);
        fake.clock.reads = 0;
        ASSERT_EQ(calendar().ToDayMonth().days, at.number);
        ASSERT_EQ(fake.clock.reads, 3);
    });
}

TEST(Today, ThreeReadingsInTheirOrder) {
    struct Turn {
        const char *year, *month, *day, *expected;
    };
    const Turn turns[] = {
        {"2023-12-31 23:59:59", "2024-01-01", "2024-01-01", "2023-01-01"},
        {"2023-12-31 23:59:59", "2023-12-31 23:59:59", "2024-01-01", "2023-12-01"},
        {"2024-01-31 23:59:59", "2024-02-01", "2024-02-01", "2024-02-01"},
        {"2024-01-31 23:59:59", "2024-01-31 23:59:59", "2024-02-01", "2024-01-01"},
        // 30 days of February: the day rolls over.
        {"2023-02-28 23:59:59", "2023-02-28 23:59:59", "2023-03-30", "2023-03-02"},
    };
    for (const Turn& turn : turns) {
        ScriptedTime time({day(turn.year), day(turn.month), day(turn.day)});
        EXPECT_EQ(calendar().ToDayMonth(), day(turn.expected)) << turn.expected;
        EXPECT_EQ(time.clock.reads, 3);
    }
}

// ---- Year and month of anything -------------------------------------------------------------

TEST(YearAndMonth, OfEachSubtype) {
    const struct {
        const char* value;
        Long year;
        Long month;
    } cases[] = {
        {"Null", 0, 0},
        {"Empty", 0, 0},
        {"Date 2024-05-17", 2024, 5},
        {"Date 1899-12-30", 1899, 12},
        {"Date 1899-12-29 06:00:00", 1899, 12},
        {"String \"2024-05-17\"", 2024, 5},
        {"String \"2024-05-17 13:45:00\"", 2024, 5},
        {"String \"17 maja 2024\"", 2024, 5},
        {"String \"abc\"", 0, 0},
        {"String \"\"", 0, 0},
        {"String \"45000\"", 0, 0},
        {"Long 45000", 0, 0},
        {"Double 45000.5", 0, 0},
        {"Integer 5", 0, 0},
        {"Byte 5", 0, 0},
        {"Single 5", 0, 0},
        {"Currency 5", 0, 0},
        {"Decimal 5", 0, 0},
        {"Boolean -1", 0, 0},
        {"Error 5", 0, 0},
        {"Missing", 0, 0},
        {"Object", 0, 0},
        {"Nothing", 0, 0},
    };
    for (const auto& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            EXPECT_EQ(calendar().YearN(*value), row.year) << row.value << ", " << form;
            EXPECT_EQ(calendar().MonthN(*value), row.month) << row.value << ", " << form;
            EXPECT_EQ(notation(*value), notation(parse_value(row.value)));
        }
    }
}

TEST(YearAndMonth, OfEveryDay) {
    for_every_day(first_year, last_year, [](const ChronoDay& at) {
        const auto month = static_cast<int>(at.month);
        const std::string text =
            digits(at.year, 4) + "-" + digits(month, 2) + "-" + digits(static_cast<int>(at.day), 2);
        ASSERT_EQ(calendar().YearN(at.at(0.5)), at.year);
        ASSERT_EQ(calendar().MonthN(at.at(0.5)), month);
        ASSERT_EQ(calendar().YearN(wide(text)), at.year) << text;
        ASSERT_EQ(calendar().MonthN(wide(text)), month) << text;
    });
}

}  // namespace
}  // namespace kvarta16::dates_tests
