// Dates read from text, written as text, and built from numbers.
#include <cmath>
#include <optional>

#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

constexpr StringView month_names[] = {u"styczeń",  u"luty",        u"marzec",   u"kwiecień",
                                      u"maj",      u"czerwiec",    u"lipiec",   u"sierpień",
                                      u"wrzesień", u"październik", u"listopad", u"grudzień"};
constexpr StringView day_names[] = {u"niedziela", u"poniedziałek", u"wtorek", u"środa",
                                    u"czwartek",  u"piątek",       u"sobota"};

std::string year_first(const ChronoDay& at) {
    return digits(at.year, 4) + "-" + digits(static_cast<int>(at.month), 2) + "-" +
           digits(static_cast<int>(at.day), 2);
}

std::string day_first(const ChronoDay& at) {
    return digits(static_cast<int>(at.day), 2) + "-" + digits(static_cast<int>(at.month), 2) + "-" +
           digits(at.year, 4);
}

// ---- Reading --------------------------------------------------------------------------------

TEST(ReadingDates, WhatIsADateAndWhatIsNone) {
    FakePlatform fake;
    fake.clock.now = day("2024-02-29 10:20:30");
    for (const StringView text :
         {u"2024-05-17", u"2024-05-17 13:45:00", u" 17.05.2024 ", u"17 maja 2024", u"2024/5/17"}) {
        EXPECT_EQ(simple().Str2Date(text), day("2024-05-17")) << show(text);
        EXPECT_EQ(simple().FlexStr2Date(text), day("2024-05-17")) << show(text);
        EXPECT_EQ(simple().FlexStr2DateNOW(text), day("2024-05-17")) << show(text);
    }
    EXPECT_EQ(fake.clock.reads, 0);
    for (const StringView text : {u"", u"abc", u"2024-02-30", u"45000", u"0000-00-00"}) {
        EXPECT_EQ(simple().Str2Date(text), Date{0}) << show(text);
        EXPECT_EQ(simple().FlexStr2Date(text), Date{0}) << show(text);
        EXPECT_EQ(simple().FlexStr2DateNOW(text), day("2024-02-29")) << show(text);
    }
    EXPECT_EQ(fake.clock.reads, 5);
}

TEST(ReadingDates, TheSourceMaskDecidesWhatSurvives) {
    FakePlatform fake;
    fake.clock.now = day("2024-02-29 10:20:30");
    const Date moment = day("2024-05-17 13:45:00");
    EXPECT_EQ(simple().FormatSD(u"2024-05-17 13:45:00", u"yyyy-MM-dd HH:nn:ss"), moment);
    EXPECT_EQ(simple().FormatSD(u"2024-05-17 13:45:00", u""), moment);
    EXPECT_EQ(simple().FormatSD(u"2024-05-17 13:45:00", u"yyyy-MM-dd"), day("2024-05-17"));
    EXPECT_EQ(simple().FormatSD(u"2024-05-17", u"dd-MM-yyyy", true), day("2024-05-17"));
    EXPECT_EQ(simple().FormatSD(u"2024-05-17", u"yyyy-MM-01", true), day("2024-05-01"));
    EXPECT_EQ(simple().FormatSD(u"abc", u"yyyy-MM-dd HH:nn:ss", true), fake.clock.now);
    EXPECT_EQ(simple().FormatSD(u"abc", u"yyyy-MM-dd", true), day("2024-02-29"));
    EXPECT_EQ(simple().FormatSD(u"abc", u"yyyy-MM-dd", false), Date{0});
    // A mask that cannot be read back matters only where something is rendered under it.
    for (const StringView mask : {u"yyyyMMdd", u"0.00", u"dddd", u"yyyy"}) {
        EXPECT_EQ(failure_of([&] { return simple().FormatSD(u"2024-05-17", mask); }), 13);
        EXPECT_EQ(failure_of([&] { return simple().FormatSD(u"2024-05-17", mask, true); }), 13);
        EXPECT_EQ(failure_of([&] { return simple().FormatSD(u"abc", mask, true); }), 13);
        EXPECT_EQ(simple().FormatSD(u"abc", mask), Date{0});
    }
}

TEST(ReadingDates, EveryDay) {
    for_every_day(first_year, last_year, [](const ChronoDay& at) {
        const std::string text = year_first(at);
        for (const std::string& written :
             {text, text + " 23:59:59", day_first(at), text + " 0:00"}) {
            ASSERT_EQ(simple().Str2Date(wide(written)).days, at.number) << written;
            ASSERT_EQ(simple().FlexStr2Date(wide(written)).days, at.number) << written;
            ASSERT_EQ(simple().FlexStr2DateNOW(wide(written)).days, at.number) << written;
        }
    });
}

TEST(ReadingDates, TodayOnEveryDay) {
    FakePlatform fake;
    for_every_day(first_year, last_year, [&](const ChronoDay& at) {
        fake.clock.now = at.at(0.75);
        fake.clock.reads = 0;
        ASSERT_EQ(simple().FlexStr2DateNOW(u"").days, at.number);
        ASSERT_EQ(fake.clock.reads, 1);
    });
}

// ---- Text to text ---------------------------------------------------------------------------

TEST(DateTexts, FlexTextIsShown) {
    EXPECT_EQ(simple().Flex2DateStr(u"2024-05-17"), u"17-05-2024");
    EXPECT_EQ(simple().Flex2DateStr(u"2024-05-17 13:45:00"), u"17-05-2024");
    EXPECT_EQ(simple().Flex2DateStr(u""), u"31-12-1899");
    EXPECT_EQ(simple().Flex2DateStr(u"abc"), u"31-12-1899");
    String mask = u"mmmm yyyy";
    EXPECT_EQ(show(simple().Flex2DateStr(u"2024-05-17", mask)), show(u"maj 2024"));
    EXPECT_EQ(mask, u"mmmm yyyy");
}

TEST(DateTexts, AnEmptyTargetMaskIsWritten) {
    String mask;
    EXPECT_EQ(simple().Flex2DateStr(u"2024-05-17", mask), u"2024-05-17");
    EXPECT_EQ(mask, u"yyyy-MM-dd");
    mask.clear();
    EXPECT_EQ(simple().FormatSDS(u"17.05.2024", u"MM-dd-yyyy 00:00:00", mask),
              u"05-17-2024 00:00:00");
    EXPECT_EQ(mask, u"MM-dd-yyyy 00:00:00");
    mask.clear();
    EXPECT_EQ(simple().FormatSDS(u"", u"dd-mm", mask), u"31-12");
    EXPECT_EQ(mask, u"dd-mm");
    // Also where the call fails in the end.
    mask.clear();
    EXPECT_EQ(failure_of([&] { return simple().FormatSDS(u"2024-05-17", u"yyyyMMdd", mask); }), 13);
    EXPECT_EQ(mask, u"yyyyMMdd");
    // Left out there is nobody to see it.
    EXPECT_EQ(simple().FormatSDS(u"2024-05-17", u"dd-MM-yyyy"), u"17-05-2024");
    EXPECT_EQ(simple().FormatSDS(u"2024-05-17", u"dd-MM-yyyy"), u"17-05-2024");
}

TEST(DateTexts, NoDateIsTheNumberOne) {
    String empty;
    EXPECT_EQ(simple().FormatSDS(u"abc", u"", empty), u"1");
    EXPECT_EQ(empty, u"");
    String number = u"0.00";
    EXPECT_EQ(simple().FormatSDS(u"abc", u"yyyy-MM-dd", number), u"1,00");
    EXPECT_EQ(simple().FormatSDS(u"2024-05-17", u"yyyy-MM-dd", number), u"45429,00");
    String flex = u"yyyy-MM-dd";
    EXPECT_EQ(simple().FormatSDS(u"", u"dd-MM-yyyy", flex), u"1899-12-31");
    // The source mask is not looked at.
    EXPECT_EQ(simple().FormatSDS(u"", u"yyyyMMdd", flex), u"1899-12-31");
    EXPECT_EQ(simple().FormatSDS(u"2024-05-17", u"", empty), u"2024-05-17");
}

TEST(DateTexts, SourceAndTargetMask) {
    String target = u"dd-MM-yyyy HH:nn";
    EXPECT_EQ(simple().FormatSDS(u"2024-05-17 13:45:00", u"yyyy-MM-dd HH:nn:ss", target),
              u"17-05-2024 13:45");
    EXPECT_EQ(simple().FormatSDS(u"2024-05-17 13:45:00", u"yyyy-MM-dd", target),
              u"17-05-2024 00:00");
}

// ---- Dates under masks ----------------------------------------------------------------------

TEST(Masks, OfEveryDay) {
    for_every_day(first_year, last_year, [](const ChronoDay& at) {
        const Date moment = at.at(0.7);
        const String y = wide(digits(at.year, 4));
        const String m = wide(digits(static_cast<int>(at.month), 2));
        const String d = wide(digits(static_cast<int>(at.day), 2));
        const String name_and_year = String(month_names[at.month - 1]) + u" " + y;
        ASSERT_EQ(simple().FormatDS(moment, u"yyyy-MM-dd"), y + u"-" + m + u"-" + d);
        ASSERT_EQ(simple().FormatDS(moment, u"dd-MM-yyyy"), d + u"-" + m + u"-" + y);
        ASSERT_EQ(simple().FormatDS(moment, u"dd-mm-yyyy"), d + u"-" + m + u"-" + y);
        ASSERT_EQ(simple().FormatDS(moment, u"dd-mm"), d + u"-" + m);
        ASSERT_EQ(simple().FormatDS(moment, u"MM-dd-yyyy 00:00:00"),
                  m + u"-" + d + u"-" + y + u" 00:00:00");
        ASSERT_EQ(simple().FormatDS(moment, u"MM-dd-yyyy 23:59:59"),
                  m + u"-" + d + u"-" + y + u" 23:59:59");
        ASSERT_EQ(simple().FormatDS(moment, u"dddd"), day_names[at.weekday]);
        ASSERT_EQ(simple().FormatDS(moment, u"mmmm yyyy"), name_and_year);
        ASSERT_EQ(simple().NazwaMiesiąca(moment),
                  at.year == 1990 ? String(u"Miesiąc nie wybrany") : name_and_year);
    });
}

TEST(Masks, WeeksBeginOnSunday) {
    EXPECT_EQ(simple().FormatDS(day("2023-01-01"), u"ww"), u"1");
    EXPECT_EQ(simple().FormatDS(day("2023-01-07"), u"ww"), u"1");
    EXPECT_EQ(simple().FormatDS(day("2023-01-08"), u"ww"), u"2");
    int differing = 0;
    for_every_day(first_year, last_year, [&](const ChronoDay& at) {
        const String week = wide(std::to_string(at.week_from_sunday()));
        ASSERT_EQ(simple().FormatDS(at.at(0), u"ww"), week) << at.number;
        ASSERT_EQ(simple().FormatDS(at.at(0), u"w"), wide(std::to_string(at.weekday + 1)));
        String mask = u"ww";
        ASSERT_EQ(simple().Flex2DateStr(wide(year_first(at)), mask), week);
        differing += at.week_from_sunday() != at.week_from_monday() ? 1 : 0;
    });
    EXPECT_GT(differing, 10000);
}

TEST(Masks, DayOneIsTheNumberOne) {
    EXPECT_EQ(simple().FormatDS(Date{1}, u"yyyy-MM-dd"), u"1899-12-31");
    EXPECT_EQ(simple().FormatDS(Date{1}, u"0.00"), u"1,00");
    EXPECT_EQ(simple().FormatDS(Date{1}, u""), u"1");
    EXPECT_EQ(simple().FormatDS(Date{0}, u""), u"1899-12-30");
    EXPECT_EQ(simple().FormatDS(Date{1.5}, u""), u"1899-12-31 12:00:00");
    EXPECT_EQ(simple().FormatDS(Date{2.25}, u"0.00"), u"2,25");
    EXPECT_EQ(failure_of([] { return simple().FormatDS(Date{1e7}, u"yyyy-MM-dd"); }), 13);
}

TEST(Masks, MonthsOf1990AreNotChosen) {
    EXPECT_EQ(show(simple().NazwaMiesiąca(day("1990-01-01"))), show(u"Miesiąc nie wybrany"));
    EXPECT_EQ(show(simple().NazwaMiesiąca(day("1990-12-31 23:59:59"))),
              show(u"Miesiąc nie wybrany"));
    EXPECT_EQ(show(simple().NazwaMiesiąca(day("1991-01-01"))), show(u"styczeń 1991"));
    EXPECT_EQ(show(simple().NazwaMiesiąca(day("1989-12-31"))), show(u"grudzień 1989"));
    EXPECT_EQ(failure_of([] { return simple().NazwaMiesiąca(Date{1e7}); }), 5);
}

// ---- Without the time -----------------------------------------------------------------------

TEST(WithoutTime, OfEveryDay) {
    for_every_day(1890, last_year, [](const ChronoDay& at) {
        for (const double time : {0.0, 0.25, 86399 / 86400.0}) {
            ASSERT_EQ(simple().ObetnijGodz(at.at(time)).days, at.number);
            ASSERT_EQ(simple().Date2Str(at.at(time)).days, at.number);
        }
    });
    EXPECT_EQ(simple().Date2Str(day("2024-05-17 13:45:00")), day("2024-05-17"));
    EXPECT_EQ(simple().Date2Str(day("0100-01-01")), day("0100-01-01"));
    EXPECT_EQ(simple().Date2Str(day("9999-12-31 23:59:59")), day("9999-12-31"));
}

TEST(WithoutTime, BeyondTheCalendar) {
    EXPECT_EQ(simple().ObetnijGodz(Date{-1e9 - 0.5}).days, -1e9);
    EXPECT_EQ(simple().ObetnijGodz(Date{1e9 + 0.5}).days, 1e9);
    EXPECT_FALSE(std::signbit(simple().ObetnijGodz(Date{-0.5}).days));
    EXPECT_EQ(failure_of([] { return simple().Date2Str(Date{1e9}); }), 13);
}

// ---- Built from numbers ---------------------------------------------------------------------

TEST(BuiltDates, RollOverAndWrap) {
    for (const bool now : {false, true}) {
        EXPECT_EQ(simple().DateSerialSpr(2024, 2, 30, now), day("2024-03-01"));
        EXPECT_EQ(simple().DateSerialSpr(2023, 2, 31, now), day("2023-03-03"));
        EXPECT_EQ(simple().DateSerialSpr(2024, 13, 0, now), day("2024-12-31"));
        EXPECT_EQ(simple().DateSerialSpr(65536 + 2024, 65537, -65536 + 17, now), day("2024-01-17"));
        EXPECT_EQ(simple().DateSerialSpr(24, 5, 17, now), day("2024-05-17"));
    }
    EXPECT_EQ(simple().DateSerialSpr(2024, 5, 17), day("2024-05-17"));
}

TEST(BuiltDates, FallBack) {
    FakePlatform fake;
    fake.clock.now = day("2024-02-10 12:00:00");
    EXPECT_EQ(simple().DateSerialSpr(10000, 5, 1, true), day("2024-02-29"));
    EXPECT_EQ(fake.clock.reads, 1);
    EXPECT_EQ(failure_of([] { return simple().DateSerialSpr(10000, 5, 1, false); }), 5);
    EXPECT_EQ(failure_of([] { return simple().DateSerialSpr(10000, 5, 1); }), 5);
    EXPECT_EQ(failure_of([] { return simple().DateSerialSpr(-1, 5, 1); }), 5);
    // The day alone leads out of the calendar, so that the month asked for is there.
    EXPECT_EQ(simple().DateSerialSpr(9999, 11, 62), day("9999-11-30"));
    EXPECT_EQ(simple().DateSerialSpr(100, 1, 0), day("0100-01-31"));
    EXPECT_EQ(simple().DateSerialSpr(100, 1, 0, true), day("2024-02-29"));
    EXPECT_EQ(failure_of([] { return simple().DateSerialSpr(9999, 12, 32); }), 5);
    EXPECT_EQ(fake.clock.reads, 2);
    // Today, too, may have no last day of its month.
    fake.clock.now = day("9999-12-31");
    EXPECT_EQ(failure_of([] { return simple().DateSerialSpr(10000, 5, 1, true); }), 5);
}

// A date that rolls over, by <chrono>; nothing outside the calendar.
std::optional<std::int32_t> rolled(int year, int month, int day_of_month) {
    using namespace std::chrono;
    const int full = year < 0 || year > 99 ? year : year < 30 ? 2000 + year : 1900 + year;
    const year_month first = std::chrono::year{0} / January + months{full * 12 + month - 1};
    if (int(first.year()) < 100 || int(first.year()) > 9999) {
        return std::nullopt;
    }
    const sys_days at = sys_days{first / 1} + days{day_of_month - 1};
    if (at < sys_days{100y / January / 1} || at > sys_days{9999y / December / 31}) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>((at - sys_days{1899y / December / 30}).count());
}

TEST(BuiltDates, AsByAnotherCalendar) {
    FakePlatform fake;
    Random random(42);
    int built = 0;
    for (int i = 0; i < frame_tests::random_cases; ++i) {
        const auto number = [&](std::int64_t low, std::int64_t high) {
            return wrap32(random.chance(90) ? random.between(low, high) : random.count());
        };
        const Long year = number(-5, 10010);
        const Long month = number(-30, 40);
        const Long day_of_month = number(-400, 400);
        const auto expected = rolled(wrap16(year), wrap16(month), wrap16(day_of_month));
        if (expected) {
            ++built;
            ASSERT_EQ(simple().DateSerialSpr(year, month, day_of_month).days, *expected);
        } else {
            ASSERT_EQ(simple().DateSerialSpr(year, month, day_of_month, true), day("2024-05-31"))
                << year << " " << month << " " << day_of_month;
        }
    }
    EXPECT_GT(built, frame_tests::random_cases / 2);
}

}  // namespace
}  // namespace kvarta16::dates_tests
