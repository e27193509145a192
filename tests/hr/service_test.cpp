// Length of service, leave, and the searches: beside the steps written out on <chrono>, for which
// every day is tried.
#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/hr/Kadry.h>

#include "frame/frame_support.h"

namespace kvarta16::hr_tests {
namespace {

using frame_tests::failure_of;
using frame_tests::parse_date;
using frame_tests::Random;

struct Triple {
    Integer years = 0;
    Integer months = 0;
    Integer days = 0;
    friend bool operator==(const Triple&, const Triple&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Triple& t) {
        return out << t.years << "/" << t.months << "/" << t.days;
    }
};

Triple counted(Date from, Date to) {
    Triple t{77, 77, 77};
    Kadry().licz_okres(from, to, t.years, t.months, t.days);
    return t;
}
Triple counted2(Date from, Date to) {
    Triple t{77, 77, 77};
    Kadry().licz_okres2(from, to, t.years, t.months, t.days);
    return t;
}

// ---- The steps, on <chrono> -----------------------------------------------------------------

std::chrono::year_month_day fields(Long number) {
    using namespace std::chrono;
    return {sys_days{1899y / December / 30} + days{number}};
}

int month_length(const std::chrono::year_month_day& date) {
    using namespace std::chrono;
    return static_cast<int>(static_cast<unsigned>((date.year() / date.month() / last).day()));
}

// The period from one day number to another, borrowing days first or months first.
Triple by_steps(Long from, Long to, bool days_first) {
    const auto start = fields(from);
    const auto end = fields(to + 1);
    int years = static_cast<int>(end.year()) - static_cast<int>(start.year());
    int months = static_cast<int>(static_cast<unsigned>(end.month())) -
                 static_cast<int>(static_cast<unsigned>(start.month()));
    int days = static_cast<int>(static_cast<unsigned>(end.day())) -
               static_cast<int>(static_cast<unsigned>(start.day()));
    const auto borrow_days = [&] {
        if (days < 0) {
            days = month_length(start) - static_cast<int>(static_cast<unsigned>(start.day())) +
                   static_cast<int>(static_cast<unsigned>(end.day()));
            --months;
        }
    };
    const auto borrow_months = [&] {
        if (months < 0) {
            months += 12;
            --years;
        }
    };
    if (days_first) {
        borrow_days();
        borrow_months();
        years = years < 0 ? 0 : years;
    } else {
        borrow_months();
        borrow_days();
    }
    return {wrap16(years), wrap16(months), wrap16(days)};
}

// ---- Periods --------------------------------------------------------------------------------

TEST(Periods, KnownOnes) {
    struct Case {
        const char* from;
        const char* to;
        Triple normalised;
        Triple plain;
    };
    const Case cases[] = {
        {"2020-01-01", "2020-12-31", {1, 0, 0}, {1, 0, 0}},
        {"2020-01-31", "2020-03-01", {0, 1, 2}, {0, 1, 2}},
        {"2020-03-15", "2021-03-10", {0, 11, 27}, {1, -1, 27}},
        {"2020-03-15", "2020-03-15", {0, 0, 1}, {0, 0, 1}},
        {"2020-03-15", "2020-03-14", {0, 0, 0}, {0, 0, 0}},
        {"2020-03-15", "2019-03-15", {0, 0, 1}, {-1, 0, 1}},  // the years alone are clamped
        {"2020-03-15", "2019-01-10", {0, 9, 27}, {-2, 9, 27}},
        {"2020-02-29", "2021-02-28", {1, 0, 1}, {1, 0, 1}},
        {"2019-12-31", "2020-01-30", {0, 1, 0}, {0, 1, 0}},
        {"0100-01-01", "9999-12-30", {9899, 11, 30}, {9899, 11, 30}},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(counted(parse_date(test.from), parse_date(test.to)), test.normalised)
            << test.from << " " << test.to;
        EXPECT_EQ(counted2(parse_date(test.from), parse_date(test.to)), test.plain)
            << test.from << " " << test.to;
    }
}

TEST(Periods, EveryPairOfDaysOfThreeYearsAsByTheSteps) {
    const Long first = day_number(2023, 11, 1);
    const Long last = day_number(2026, 3, 31);
    for (Long from = first; from <= last; ++from) {
        for (Long to = first; to <= last; ++to) {
            const Date start{static_cast<Double>(from)};
            const Date end{static_cast<Double>(to)};
            ASSERT_EQ(counted(start, end), by_steps(from, to, true)) << from << " " << to;
            ASSERT_EQ(counted2(start, end), by_steps(from, to, false)) << from << " " << to;
        }
    }
}

TEST(Periods, RandomPairsWithTimesAsByTheSteps) {
    Random random(7);
    for (int i = 0; i < 200'000; ++i) {
        const auto from = static_cast<Long>(random.between(0, 2'900'000));
        const auto to = static_cast<Long>(random.between(0, 2'900'000));
        const Date start{from + 0.5};
        const Date end{to + 0.99};
        ASSERT_EQ(counted(start, end), by_steps(from, to, true)) << from << " " << to;
        ASSERT_EQ(counted2(start, end), by_steps(from, to, false)) << from << " " << to;
    }
}

TEST(Periods, EndOfTheCalendar) {
    Triple t{1, 2, 3};
    const auto count = [&t](const char* from, const char* to) {
        return failure_of([&] {
            Kadry().licz_okres(parse_date(from), parse_date(to), t.years, t.months, t.days);
        });
    };
    EXPECT_EQ(count("2020-01-01", "9999-12-31"), 5);  // its next day is none
    EXPECT_EQ(count("9999-12-30", "9999-12-15"), 5);  // borrows from a month without a next one
    EXPECT_EQ(t, (Triple{1, 2, 3}));
    EXPECT_EQ(count("9999-12-15", "9999-12-30"), 0);
    EXPECT_EQ(t, (Triple{0, 0, 16}));
}

TEST(Periods, AddUpWithOneCarryEach) {
    struct Case {
        Triple added;
        Triple total;
        Triple expected;
    };
    const Case cases[] = {
        {{0, 0, 1}, {0, 11, 29}, {1, 0, 0}},         {{0, 0, 70}, {0, 0, 0}, {0, 1, 40}},
        {{0, 0, 70}, {0, 0, 29}, {0, 1, 69}},        {{0, 30, 0}, {0, 0, 0}, {1, 18, 0}},
        {{2, 6, 15}, {3, 6, 15}, {6, 1, 0}},         {{2, 5, 14}, {3, 6, 15}, {5, 11, 29}},
        {{-1, -1, -1}, {0, 0, 0}, {-1, -1, -1}},     {{0, 0, 32767}, {0, 0, 1}, {0, 0, -32768}},
        {{0, 32767, 0}, {0, 1, 0}, {0, -32768, 0}},  {{32767, 0, 0}, {1, 0, 0}, {-32768, 0, 0}},
        {{0, 32767, 30}, {0, 0, 0}, {0, -32768, 0}}, {{0, 0, 30}, {32767, 11, 0}, {-32768, 0, 0}},
    };
    for (const Case& test : cases) {
        Triple total = test.total;
        Kadry().sumuj_okresy(test.added.years, test.added.months, test.added.days, total.days,
                             total.months, total.years);
        EXPECT_EQ(total, test.expected) << test.added << " + " << test.total;
    }
}

// ---- Leave ----------------------------------------------------------------------------------

TEST(Leave, Known) {
    struct Case {
        Integer years;
        Integer months;
        Integer school;
        Integer expected;
    };
    const Case cases[] = {
        {0, 5, 8, 0},      {0, 6, 8, 20},  {0, 6, 0, 18}, {0, 6, 5, 18},   {0, 6, 6, 20},
        {0, 6, 9, 20},     {0, 6, 10, 26}, {2, 0, 4, 20}, {10, 0, 0, 26},  {1, 0, -2, 26},
        {-1, 20, 0, 26},   {-1, 17, 9, 0}, {1, -7, 9, 0}, {2731, 0, 0, 0},  // 32772 months wrap
        {6, 0, 32767, 26},                                                  // the sum wraps too
    };
    for (const Case& test : cases) {
        EXPECT_EQ(Kadry().limit_u(test.years, test.months, test.school), test.expected)
            << test.years << " " << test.months << " " << test.school;
    }
}

TEST(Leave, KnownWithAge) {
    struct Case {
        Integer years;
        Integer months;
        Integer school;
        Integer age;
        Integer expected;
    };
    const Case cases[] = {
        {0, 5, 3, 17, 0},  {0, 6, 3, 17, 12},  {0, 11, 99, 99, 12}, {1, 0, 0, 17, 26},
        {1, 0, 0, 18, 20}, {0, 12, 5, 17, 26}, {0, 12, 5, 18, 20},  {0, 12, 6, 17, 0},
        {7, 0, 0, 30, 0},  {1, 0, -2, 30, 0},  {5, 0, 0, -1, 26},   {5, 11, 0, 64, 20},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(Kadry().limit_u1(test.years, test.months, test.school, test.age), test.expected)
            << test.years << " " << test.months << " " << test.school << " " << test.age;
    }
}

// ---- Searches -------------------------------------------------------------------------------

struct Search {
    Date result;
    Triple total;
    Triple service;
    friend bool operator==(const Search& a, const Search& b) {
        return a.result.days == b.result.days && a.total == b.total && a.service == b.service;
    }
    friend std::ostream& operator<<(std::ostream& out, const Search& s) {
        return out << s.result.days << " " << s.total << " " << s.service;
    }
};

enum class Threshold { Months6, Months12, Years6, Years10 };
constexpr Threshold thresholds[] = {Threshold::Months6, Threshold::Months12, Threshold::Years6,
                                    Threshold::Years10};

Search found(Threshold threshold, Date from, Triple base, Search s) {
    const Kadry personnel;
    switch (threshold) {
        case Threshold::Months6:
            s.result = personnel.data_6m(from, base.months, base.days, 1, 2, 3, s.total.months,
                                         s.total.days, s.total.years);
            break;
        case Threshold::Months12:
            s.result = personnel.data_12m(from, base.months, base.days, s.total.months,
                                          s.total.days, s.total.years, s.service.years,
                                          s.service.months, s.service.days);
            break;
        case Threshold::Years6:
            s.result = personnel.data_6l(from, base.years, base.months, base.days, s.total.months,
                                         s.total.days, s.total.years, s.service.years,
                                         s.service.months, s.service.days);
            break;
        case Threshold::Years10:
            s.result = personnel.data_10l(from, base.years, base.months, base.days, s.total.months,
                                          s.total.days, s.total.years, s.service.years,
                                          s.service.months, s.service.days);
    }
    return s;
}

// Every day, one after another, by the public methods.
Search by_every_day(Threshold threshold, Date from, Triple base, Search s) {
    const bool by_months = threshold == Threshold::Months6;
    const Integer limit = by_months || threshold == Threshold::Years6 ? 6
                          : threshold == Threshold::Years10           ? 10
                                                                      : 1;
    const auto reached = [&] { return by_months ? s.total.months : s.total.years; };
    Triple service = s.service;
    s.result = {};
    for (Integer i = 1; reached() < limit; i = wrap16(i + 1)) {
        s.total.months = base.months;
        s.total.days = base.days;
        if (!by_months) {
            s.total.years = threshold == Threshold::Months12 ? Integer{0} : base.years;
        }
        s.result = {from.days + i};
        service = counted(from, s.result);
        Kadry().sumuj_okresy(service.years, service.months, service.days, s.total.days,
                             s.total.months, s.total.years);
    }
    if (!by_months) {
        s.service = service;
    }
    return s;
}

TEST(Searches, KnownOnes) {
    const Date start = parse_date("2020-01-01");
    // The carry of 30 days makes the year full on the day before the last.
    EXPECT_EQ(found(Threshold::Months12, start, {}, {}),
              (Search{parse_date("2020-12-30"), {1, 0, 0}, {0, 11, 30}}));
    EXPECT_EQ(found(Threshold::Months12, start, {0, 6, 0}, {}),
              (Search{parse_date("2020-06-30"), {1, 0, 0}, {0, 6, 0}}));
    EXPECT_EQ(found(Threshold::Months6, start, {}, {}),
              (Search{parse_date("2020-06-30"), {0, 6, 0}, {}}));
    EXPECT_EQ(found(Threshold::Years10, start, {}, {}),
              (Search{parse_date("2029-12-30"), {10, 0, 0}, {9, 11, 30}}));
    // The years of data_6m are not set to a base: each of the 181 days tried carries one more.
    EXPECT_EQ(found(Threshold::Months6, start, {0, 12, 0}, {{}, {3, 0, 0}, {}}),
              (Search{parse_date("2020-06-30"), {184, 6, 0}, {}}));
}

TEST(Searches, ThatAreOverOnEntryWriteNothing) {
    for (const Threshold threshold : thresholds) {
        for (const Integer entry : {Integer{10}, Integer{32767}}) {
            const Search given{Date{1.0}, {entry, entry, 29}, {1, 2, 3}};
            Search expected = given;
            expected.result = {};
            EXPECT_EQ(found(threshold, Date{40000}, {0, 0, 0}, given), expected);
        }
    }
    EXPECT_EQ(found(Threshold::Years6, Date{40000}, {}, {{}, {6, 0, 0}, {1, 2, 3}}),
              (Search{{}, {6, 0, 0}, {1, 2, 3}}));
    EXPECT_NE(found(Threshold::Years10, Date{40000}, {}, {{}, {9, 0, 0}, {1, 2, 3}}).result.days,
              0);
}

TEST(Searches, AsByEveryDay) {
    Random random(11);
    for (int i = 0; i < 4'000; ++i) {
        const Threshold threshold = thresholds[i % 4];
        const bool has_time = random.between(0, 3) == 0;
        const Double number = static_cast<Double>(random.between(-600'000, 2'900'000));
        const Date from{number + (has_time ? 0.7 * (number < 0 ? -1 : 1) : 0)};
        const Triple base{
            static_cast<Integer>(random.between(-3, 12)),
            static_cast<Integer>(random.between(-5, 15)),  // below, data_6m has no end
            static_cast<Integer>(random.between(-40, 70))};
        const Search given{{}, {static_cast<Integer>(random.between(-2, 5)), 0, 9}, {7, 7, 7}};
        ASSERT_EQ(found(threshold, from, base, given), by_every_day(threshold, from, base, given))
            << static_cast<int>(threshold) << " from " << from.days << " on " << base;
    }
}

// Around the day from which the count leaves the negative numbers, and where a fraction rounds.
TEST(Searches, AsByEveryDayAroundDayZero) {
    for (Long number = -5000; number <= 100; number += 37) {
        for (const Double time : {0.0, 0.25, 0.9999999999999}) {
            const Date from{number - time};
            for (const Threshold threshold : thresholds) {
                ASSERT_EQ(found(threshold, from, {}, {}), by_every_day(threshold, from, {}, {}))
                    << from.days;
            }
        }
    }
}

TEST(Searches, AsByEveryDayWithBasesOutOfTheOrdinary) {
    const Triple bases[] = {{-75, 0, 0},   {-79, 11, 29}, {32767, 0, 0}, {0, 32767, 0}, {0, -13, 0},
                            {0, 0, 32767}, {9, 11, 29},   {5, 23, 0},    {0, 119, 0}};
    for (const Triple& base : bases) {
        for (const Threshold threshold : {Threshold::Years6, Threshold::Years10}) {
            const Date from{40000};
            ASSERT_EQ(found(threshold, from, base, {}), by_every_day(threshold, from, base, {}))
                << base;
        }
    }
}

TEST(Searches, ThatFindNoDayEnd) {
    Search s{{}, {0, 0, 0}, {1, 2, 3}};
    const auto search = [&s](const char* from, Integer years) {
        return failure_of([&] {
            return Kadry().data_10l(parse_date(from), years, 4, 5, s.total.months, s.total.days,
                                    s.total.years, s.service.years, s.service.months,
                                    s.service.days);
        });
    };
    EXPECT_EQ(search("2020-01-01", -200), 6);  // no day within the counter's reach
    EXPECT_EQ(search("2020-01-01", -32768), 6);
    s = {{}, {0, 0, 0}, {1, 2, 3}};
    EXPECT_EQ(search("9995-01-01", 0), 5);  // the calendar ends first
    EXPECT_EQ(s.total, (Triple{0, 4, 5}));  // the base of the day that could not be tried
    EXPECT_EQ(s.service, (Triple{4, 11, 30}));
    EXPECT_EQ(search("9999-12-31", 0), 5);
    s = {{}, {0, 0, 0}, {1, 2, 3}};
    EXPECT_EQ(failure_of([&] {
                  return Kadry().data_12m(Date{3'000'000}, 4, 5, s.total.months, s.total.days,
                                          s.total.years, s.service.years, s.service.months,
                                          s.service.days);
              }),
              5);
    EXPECT_EQ(s.total, (Triple{0, 4, 5}));  // the base is put before the start is looked at
    EXPECT_EQ(s.service, (Triple{1, 2, 3}));
}

// ---- Late-bound calls -----------------------------------------------------------------------

Variant call(StringView name, Arguments& arguments) {
    Kadry personnel;
    const auto& members = ClassTable<Kadry>::members;
    const auto* const found = std::ranges::find(members, name, &MemberInfo::name);
    if (found == members.end()) {
        fail(error::invalid_call);
    }
    return invoke(*found, &personnel, arguments);
}

Variant whole(int number) {
    return static_cast<Integer>(number);
}

// What a caller's variables hold afterwards, whatever their type; values of one's own stay.
TEST(LateBound, ASearchWritesTheTotalAndThePeriod) {
    Date from = parse_date("2020-01-01");
    Integer base = 6;
    Long months = 1;
    Variant days = u"2";
    Integer years = 0;
    Double period_months = 7;
    Arguments arguments = {Variant::reference(from),
                           Variant::reference(base),
                           whole(0),
                           Variant::reference(months),
                           Variant::reference(days),
                           Variant::reference(years),
                           whole(7),
                           Variant::reference(period_months),
                           whole(7)};
    EXPECT_EQ(call(u"data_12m", arguments), Variant(parse_date("2020-06-30")));
    EXPECT_EQ(from, parse_date("2020-01-01"));
    EXPECT_EQ(base, 6);
    EXPECT_EQ(months, 0);
    EXPECT_EQ(days, whole(0));
    EXPECT_EQ(years, 1);
    EXPECT_EQ(arguments[6], whole(0));
    EXPECT_EQ(period_months, 6);
    EXPECT_EQ(arguments[8], whole(0));
}

TEST(LateBound, TheSearchForMonthsKeepsThePeriodToItself) {
    Integer period[] = {1, 2, 3};
    Arguments arguments = {parse_date("2020-01-01"),
                           whole(0),
                           whole(0),
                           Variant::reference(period[0]),
                           Variant::reference(period[1]),
                           Variant::reference(period[2]),
                           whole(0),
                           whole(0),
                           whole(0)};
    EXPECT_EQ(call(u"data_6m", arguments), Variant(parse_date("2020-06-30")));
    EXPECT_EQ((Triple{period[0], period[1], period[2]}), (Triple{1, 2, 3}));
    EXPECT_EQ(arguments[6], whole(6));
    EXPECT_EQ(arguments[7], whole(0));
    EXPECT_EQ(arguments[8], whole(0));
}

TEST(LateBound, ATotalHasItsDaysFirst) {
    Arguments arguments = {whole(2), whole(1), whole(5), whole(26), whole(3), whole(9)};
    EXPECT_TRUE(call(u"sumuj_okresy", arguments).is(Subtype::Empty));
    EXPECT_EQ(arguments, (Arguments{whole(2), whole(1), whole(5), whole(1), whole(5), whole(11)}));
}

TEST(LateBound, ReadArgumentsStayAsTheyAre) {
    Integer years = 0;
    Integer months = 6;
    Integer school = 8;
    Integer age = 17;
    Arguments arguments = {Variant::reference(years), Variant::reference(months),
                           Variant::reference(school)};
    EXPECT_EQ(call(u"limit_u", arguments), whole(20));
    arguments.push_back(Variant::reference(age));
    EXPECT_EQ(call(u"limit_u1", arguments), whole(12));
    EXPECT_EQ(years, 0);
    EXPECT_EQ(months, 6);
    EXPECT_EQ(school, 8);
    EXPECT_EQ(age, 17);
}

TEST(LateBound, ArgumentsAreCoercedBeforeTheCall) {
    Arguments arguments = {Double{1.5}, u"0,5", Currency::raw(25000)};  // 2, 0 and 2, ties to even
    EXPECT_EQ(call(u"limit_u", arguments), whole(18));
    EXPECT_EQ(arguments, (Arguments{whole(2), whole(0), whole(2)}));
    const auto number_of = [](const Variant& school) {
        Arguments tried = {whole(1), whole(0), school};
        return failure_of([&] { return call(u"limit_u", tried); });
    };
    EXPECT_EQ(number_of(Variant::null()), 94);
    EXPECT_EQ(number_of(u"abc"), 13);
    EXPECT_EQ(number_of(Long{32768}), 6);
    EXPECT_EQ(number_of(Variant::missing()), 13);
}

}  // namespace
}  // namespace kvarta16::hr_tests
