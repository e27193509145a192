#include <algorithm>
#include <array>
#include <cmath>

#include <kvarta16/dates/aDaty.h>
#include <kvarta16/frame/whole_day.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

// Sunday first: the weekday number is the place in the list, from 1.
constexpr std::array<StringView, 7> weekday_names = {
    u"niedziela", u"poniedziałek", u"wtorek", u"środa", u"czwartek", u"piątek", u"sobota"};

// 0 for an unknown name.
Long weekday_number(StringView name) {
    const auto* found = std::ranges::find(weekday_names, name);
    return found == weekday_names.end() ? 0 : static_cast<Long>(found - weekday_names.begin()) + 1;
}

Long weekday_number(Date date) {
    return (weekday_from_monday(whole_day(date)) + 1) % 7 + 1;
}

Date make_date(std::int32_t year, std::int32_t month, std::int32_t day) {
    return MakeDate(wrap16(year), wrap16(month), wrap16(day));
}

Date make_day(std::int32_t number) {
    return {static_cast<Double>(number)};
}

// 1 January of the year, from which the walk to a week sets out; day 0 for a year that is refused.
Date start_of(Integer year) {
    Date day;
    step([&] { day = MakeDate(year, 1, 1); });
    return day;
}

// The number of a day's week in its year: Monday is the first day, and the week of 1 January is
// week 1.
std::int32_t week_number(Date date) {
    const std::int32_t day = whole_day(date);
    const std::int32_t first = day_number(civil_of(day).year, 1, 1);
    return (day - first + weekday_from_monday(first)) / 7 + 1;
}

// Where a walk from `start` ends that adds single days as long as `week` is above the number of
// the day's week, and stops when it has left the year `year`. It stops behind the year, if that is
// how it ends. The week numbers grow by one on each Monday, so that it ends on the Monday that
// stands `week` - 1 weeks behind the one of the first week; a year of one or two digits, or one
// that was refused, is not the year of `start` and is left at the first step.
std::int32_t walked_to_week(Date start, Integer year, Integer week) {
    const std::int32_t first = whole_day(start);
    if (week <= week_number(start)) {
        return first;
    }
    if (civil_of(first).year != year) {
        return first + 1;
    }
    const std::int32_t monday = first - weekday_from_monday(first) + 7 * (week - 1);
    return std::min(monday, day_number(year, 12, 31) + 1);
}

bool is_of_year(std::int32_t day, Integer year) {
    return day <= last_day_number && civil_of(day).year == year;
}

}  // namespace

Long aDaty::RóżnicaDat(Date da1, Date da2) const {
    Long result = 0;
    step([&] { result = ToLong(std::trunc(da1.days) - std::trunc(da2.days)); });
    return result;
}

Date aDaty::BOWeek(Integer Rok, Integer Tydzień) const {
    const Date start = start_of(Rok);
    const std::int32_t end = walked_to_week(start, Rok, Tydzień);
    const bool has_walked = end != whole_day(start);
    return make_day(has_walked && !is_of_year(end, Rok) ? end - 1 : end);
}

Date aDaty::EOWeek(Integer Rok, Integer Tydzień) const {
    const Integer next_week = wrap16(Tydzień + 1);
    return make_day(walked_to_week(start_of(Rok), Rok, next_week) - 1);
}

Date aDaty::BOYear(Date da) const {
    return make_date(civil_day(da).year, 1, 1);
}

Date aDaty::EOYear(Date da) const {
    return make_date(civil_day(da).year, 12, 31);
}

Date aDaty::BOMonth(Date da) const {
    const Civil day = civil_day(da);
    return make_date(day.year, day.month, 1);
}

Date aDaty::EOMonth(Date da) const {
    const Civil day = civil_day(da);
    const Date next_month =
        day.month == 12 ? make_date(day.year + 1, 1, 1) : make_date(day.year, day.month + 1, 1);
    return {next_month.days - 1};
}

Date aDaty::ToDayMonth() const {
    Clock& clock = *platform().clock;
    const std::int32_t year = civil_day(clock.Now()).year;
    const std::int32_t month = civil_day(clock.Now()).month;
    const std::int32_t day = civil_day(clock.Now()).day;
    return make_date(year, month, day);
}

Date aDaty::BOWeek2(Date da) const {
    return {da.days - weekday_number(da) + 1};
}

Long aDaty::DzieńDoDnia(Date dzień1, StringView dzień2) const {
    const Long days = weekday_number(dzień1) - weekday_number(dzień2);
    return days < 0 ? days + 7 : days;
}

Long aDaty::DzieńDoDnia2(Date dzień1, StringView dzień2) const {
    const Long days = weekday_number(dzień2) - weekday_number(dzień1);
    return days < 0 ? days + 7 : days;
}

Long aDaty::YearN(const Variant& da) const {
    return IsDateValue(da) && !IsNullValue(da) ? civil_day(ToDate(da)).year : 0;
}

Long aDaty::MonthN(const Variant& da) const {
    return IsDateValue(da) && !IsNullValue(da) ? civil_day(ToDate(da)).month : 0;
}

}  // namespace kvarta16
