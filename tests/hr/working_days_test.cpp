// What kind of day a date is: beside the long way, which renders texts and compares them one by
// one, and beside <chrono> and the computus.
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/hr/Kadry.h>
#include <kvarta16/hr/holidays.h>
#include <kvarta16/platform/forwarding.h>

#include "frame/frame_support.h"
#include "support/fake_platform.h"

namespace kvarta16::hr_tests {
namespace {

using frame_tests::failure_of;
using frame_tests::parse_date;
using testing_support::FakePlatform;

constexpr Long first_walked = day_number(1999, 1, 1);
constexpr Long last_walked = day_number(2032, 12, 31);

// The answer by the texts of the day, in the order of the comparisons.
Integer by_texts(Date date, bool holidays) {
    constexpr StringView names[] = {u"poniedziałek", u"wtorek", u"środa",    u"czwartek",
                                    u"piątek",       u"sobota", u"niedziela"};
    Integer result = 0;
    const String name = lower_case(FormatMask(date, u"dddd"));
    for (Integer i = 0; i < 7; ++i) {
        if (name == names[i]) {
            result = i;
        }
    }
    if (!holidays) {
        return result;
    }
    const Long year = ToLong(FormatMask(date, u"yyyy"));
    const String day = FormatMask(date, u"dd-mm");
    for (const StringView fixed : {u"01-01", u"06-01", u"01-05", u"03-05", u"15-08", u"01-11",
                                   u"11-11", u"24-12", u"25-12", u"26-12"}) {
        const bool is_kept =
            fixed == u"06-01" ? year > 2010 : (fixed == u"24-12" ? year >= 2025 : true);
        if (day == fixed && is_kept) {
            return 6;
        }
    }
    const String whole = FormatMask(date, u"dd-mm-yyyy");
    for (const auto& feasts : hr::movable_feasts) {
        if (whole == feasts[0] || whole == feasts[1]) {
            return 6;
        }
    }
    return result;
}

TEST(WorkingDays, EveryDayOfTheListedYearsAsByTexts) {
    const FakePlatform fake;
    const Kadry personnel;
    for (Long number = first_walked; number <= last_walked; ++number) {
        for (const Double time : {0.0, 0.75}) {
            const Date date{number + time};
            ASSERT_EQ(personnel.PodajDzień(date, true), by_texts(date, true)) << number;
            ASSERT_EQ(personnel.PodajDzień(date, false), by_texts(date, false)) << number;
            ASSERT_EQ(personnel.PodajDzień(date), by_texts(date, false)) << number;
        }
    }
}

TEST(WorkingDays, WeekdaysOfTwoCenturiesAsByChrono) {
    const FakePlatform fake;
    using namespace std::chrono;
    const Kadry personnel;
    const sys_days first = 1900y / January / 1;
    for (sys_days at = first; at <= sys_days{2100y / December / 31}; at += days{1}) {
        const auto number = static_cast<Long>((at - sys_days{1899y / December / 30}).count());
        ASSERT_EQ(personnel.PodajDzień(Date{static_cast<Double>(number)}),
                  static_cast<Integer>(weekday{at}.iso_encoding() - 1))
            << number;
    }
}

// Easter Sunday by the rule of the Gregorian calendar: the Sunday behind the paschal full moon.
std::chrono::sys_days easter_sunday(int year) {
    using namespace std::chrono;
    const int golden = year % 19;
    const int century = year / 100;
    const int epact = (century - century / 4 - (8 * century + 13) / 25 + 19 * golden + 15) % 30;
    const int moon = epact - (epact / 28) * (1 - (29 / (epact + 1)) * ((21 - golden) / 11));
    const sys_days full_moon =
        sys_days{std::chrono::year{year} / March / 21} + days{moon};  // at the earliest 21 March
    return full_moon +
           (Sunday - weekday{full_moon} == days{0} ? days{7} : Sunday - weekday{full_moon});
}

TEST(WorkingDays, MovableFeastsAgreeWithTheComputus) {
    using namespace std::chrono;
    const auto text = [](sys_days at) {
        const Double number = static_cast<Double>((at - sys_days{1899y / December / 30}).count());
        return to_utf8(FormatMask(Date{number}, u"dd-mm-yyyy"));
    };
    for (int year = hr::first_listed_year; year <= hr::last_listed_year; ++year) {
        const auto& feasts = hr::movable_feasts[year - hr::first_listed_year];
        const sys_days easter = easter_sunday(year);
        EXPECT_EQ(to_utf8(feasts[0]), text(easter + days{1})) << year;
        EXPECT_EQ(to_utf8(feasts[1]), text(easter + days{60})) << year;
    }
}

TEST(WorkingDays, KnownDays) {
    struct Case {
        const char* date;
        Integer plain;
        Integer with_holidays;
    };
    constexpr Case cases[] = {
        {"2010-01-06", 2, 2},                        // Epiphany is free from 2011 on
        {"2011-01-06", 3, 6}, {"2024-12-24", 1, 1},  // Christmas Eve from 2025 on
        {"2025-12-24", 2, 6}, {"2024-05-30", 3, 6},  // Corpus Christi
        {"2000-04-24", 0, 0},                        // Easter Monday before the list begins
        {"2001-04-16", 0, 6},                        // its first entry
        {"2030-06-20", 3, 6},                        // and its last one
        {"2021-05-01", 5, 6},                        // a holiday on a Saturday
        {"2021-05-03", 0, 6}, {"2024-08-15", 3, 6}, {"2024-11-01", 4, 6},
        {"2024-11-11", 0, 6}, {"2024-12-25", 2, 6}, {"2024-12-26 23:59:59", 3, 6},
        {"2024-12-27", 4, 4}, {"0100-01-01", 4, 6}, {"2024-03-31", 6, 6},
    };
    FakePlatform fake;
    for (const Case& test : cases) {
        EXPECT_EQ(Kadry().PodajDzień(parse_date(test.date)), test.plain) << test.date;
        EXPECT_EQ(Kadry().PodajDzień(parse_date(test.date), false), test.plain) << test.date;
        EXPECT_EQ(Kadry().PodajDzień(parse_date(test.date), true), test.with_holidays) << test.date;
    }
    EXPECT_TRUE(fake.boxes.shown.empty());
}

TEST(WorkingDays, AnyTruthIsARequest) {
    EXPECT_EQ(Kadry().PodajDzień(parse_date("2025-12-25"), Boolean::from_raw(1)), 6);
}

TEST(WorkingDays, BehindTheListABoxStandsAtEachCall) {
    struct Case {
        const char* date;
        Integer plain;
        Integer with_holidays;
    };
    constexpr Case cases[] = {
        {"2031-01-01", 2, 6},
        {"2031-04-14", 0, 0},  // Easter Monday, which is not listed
        {"2031-12-24", 2, 6},
        {"9999-12-31", 4, 4},
    };
    for (const Case& test : cases) {
        FakePlatform fake;
        EXPECT_EQ(Kadry().PodajDzień(parse_date(test.date), true), test.with_holidays);
        EXPECT_EQ(Kadry().PodajDzień(parse_date(test.date), false), test.plain);
        EXPECT_EQ(Kadry().PodajDzień(parse_date(test.date)), test.plain);
        ASSERT_EQ(fake.boxes.shown.size(), 3U);
        for (const auto& box : fake.boxes.shown) {
            EXPECT_EQ(to_utf8(box.text),
                      "DANE KALENDARZA DLA LAT > 2030  NIE SĄ USTAWIONE (Święta Ruchome) Proszę o "
                      "kontakt z firmą ZEVO!");
            EXPECT_EQ(box.style, msg_box::ok_only);
            EXPECT_FALSE(box.title.has_value());
        }
    }
    FakePlatform fake;
    EXPECT_EQ(Kadry().PodajDzień(parse_date("2030-12-31"), true), 1);
    EXPECT_TRUE(fake.boxes.shown.empty());
}

TEST(WorkingDays, TheLanguageOfTheMachineTellsTheWeekday) {
    const FakePlatform fake;
    Locale english;
    english.day_names = {u"Monday", u"Tuesday",  u"Wednesday", u"Thursday",
                         u"Friday", u"Saturday", u"Sunday"};
    Locale capitals;
    capitals.day_names = {u"PONIEDZIAŁEK", u"Wtorek", u"ŚRODA",    u"Czwartek",
                          u"PiąTEK",       u"SOBOTA", u"Niedziela"};
    Locale shifted;
    shifted.day_names = {u"niedziela", u"poniedziałek", u"wtorek", u"środa",
                         u"czwartek",  u"piątek",       u"sobota"};
    for (const Locale& settings : {english, capitals, shifted}) {
        const ScopedLocale scope(settings);
        for (Long number = day_number(2024, 1, 1); number < day_number(2026, 1, 1); ++number) {
            const Date date{static_cast<Double>(number)};
            ASSERT_EQ(Kadry().PodajDzień(date, true), by_texts(date, true)) << number;
            ASSERT_EQ(Kadry().PodajDzień(date), by_texts(date, false)) << number;
        }
    }
    const ScopedLocale scope(english);
    EXPECT_EQ(Kadry().PodajDzień(parse_date("2024-05-17")), 0);
    EXPECT_EQ(Kadry().PodajDzień(parse_date("2024-05-30"), true), 6);
}

TEST(WorkingDays, ABoxThatIsRefusedIsTheCallersFailure) {
    FakePlatform fake;
    const auto plan = std::make_shared<FaultPlan>();
    plan->fail_at("MsgBox", 1, FaultSpan::Once, 70);
    const auto boxes = faulting(fake.boxes, plan);
    Platform operations = fake.operations;
    operations.message_boxes = boxes.get();
    const ScopedPlatform scope(operations);
    const Date day = parse_date("2031-01-01");
    EXPECT_EQ(Kadry().PodajDzień(parse_date("2030-12-31"), true), 1);
    EXPECT_EQ(failure_of([&] { return Kadry().PodajDzień(day, true); }), 70);
    EXPECT_EQ(Kadry().PodajDzień(day, true), 6);
    EXPECT_EQ(fake.boxes.shown.size(), 1U);
}

// Neither argument comes back changed, and the request can be left out.
TEST(WorkingDays, LateBound) {
    const FakePlatform fake;
    Kadry personnel;
    const MemberInfo& member = ClassTable<Kadry>::members[0];
    Date day = parse_date("2024-05-30");
    Boolean holidays = true;
    Arguments both = {Variant::reference(day), Variant::reference(holidays)};
    EXPECT_EQ(invoke(member, &personnel, both), Variant(Integer{6}));
    EXPECT_EQ(day, parse_date("2024-05-30"));
    EXPECT_EQ(holidays, Boolean(true));
    Arguments one = {day};
    EXPECT_EQ(invoke(member, &personnel, one), Variant(Integer{3}));
    EXPECT_EQ(one, (Arguments{day, Boolean(false)}));
    Arguments missing = {day, Variant::missing()};
    EXPECT_EQ(invoke(member, &personnel, missing), Variant(Integer{3}));
}

TEST(WorkingDays, NoDateBeyondTheCalendar) {
    EXPECT_EQ(failure_of([] { return Kadry().PodajDzień(Date{2958466.0}); }), 5);
    EXPECT_EQ(failure_of([] { return Kadry().PodajDzień(Date{-657435.0}); }), 5);
}

}  // namespace
}  // namespace kvarta16::hr_tests
