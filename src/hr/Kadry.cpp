#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>

#include <kvarta16/frame/whole_day.h>
#include <kvarta16/hr/Kadry.h>
#include <kvarta16/hr/holidays.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

// ---- Kinds of days --------------------------------------------------------------------------

constexpr StringView weekday_names[] = {u"poniedziałek", u"wtorek", u"środa",    u"czwartek",
                                        u"piątek",       u"sobota", u"niedziela"};
constexpr Integer free_day = 6;

constexpr StringView calendar_ends =
    u"DANE KALENDARZA DLA LAT > 2030  NIE SĄ USTAWIONE (Święta Ruchome) Proszę o kontakt z firmą "
    u"ZEVO!";

// The number of the weekday whose name is the day's in the machine's language; 0 if none is.
// Nearly always the language is Polish and the name stands in its own place.
Integer weekday_by_name(std::int32_t day) {
    const auto weekday = static_cast<std::size_t>(weekday_from_monday(day));
    const StringView name = locale().day_names[weekday];
    const StringView expected = weekday_names[weekday];
    if (name.size() == expected.size() &&
        std::memcmp(name.data(), expected.data(), name.size() * sizeof(char16_t)) == 0) {
        return static_cast<Integer>(weekday);
    }
    const auto* const found = std::ranges::find(weekday_names, lower_case(name));
    return found == std::end(weekday_names)
               ? Integer{0}
               : static_cast<Integer>(found - std::begin(weekday_names));
}

constexpr std::int32_t two_digits(StringView text, std::size_t at) {
    return (text[at] - u'0') * 10 + (text[at + 1] - u'0');
}

// The first year in which a day of the year is a fixed holiday, for each month and day; no_year
// where it is none.
constexpr std::int32_t no_year = 10000;
constexpr auto holiday_since = [] {
    std::array<std::array<std::int16_t, 32>, 13> since{};
    for (auto& month : since) {
        month.fill(no_year);
    }
    for (const hr::FixedHoliday& holiday : hr::fixed_holidays) {
        const auto month = static_cast<std::size_t>(two_digits(holiday.day, 3));
        const auto day = static_cast<std::size_t>(two_digits(holiday.day, 0));
        since[month][day] = static_cast<std::int16_t>(holiday.since_year);
    }
    return since;
}();

// The numbers of the days of each listed year that are movable feasts.
constexpr auto feast_days = [] {
    std::array<std::array<std::int32_t, 2>, std::size(hr::movable_feasts)> days{};
    for (std::size_t i = 0; i < days.size(); ++i) {
        for (std::size_t j = 0; j < 2; ++j) {
            const StringView text = hr::movable_feasts[i][j];
            days[i][j] = day_number(two_digits(text, 6) * 100 + two_digits(text, 8),
                                    two_digits(text, 3), two_digits(text, 0));
        }
    }
    return days;
}();

bool is_holiday(std::int32_t day, const Civil& civil) {
    const auto month = static_cast<std::size_t>(civil.month);
    if (civil.year >= holiday_since[month][static_cast<std::size_t>(civil.day)]) {
        return true;
    }
    if (civil.year < hr::first_listed_year || civil.year > hr::last_listed_year) {
        return false;
    }
    const auto& feasts = feast_days[static_cast<std::size_t>(civil.year - hr::first_listed_year)];
    return day == feasts[0] || day == feasts[1];
}

// ---- Periods --------------------------------------------------------------------------------

struct Period {
    std::int32_t years = 0;
    std::int32_t months = 0;
    std::int32_t days = 0;
};

// What borrowed days are made of: the length of the month of the first day, which is known as the
// day before the next month. Fails: 5 in December 9999, which has no next month.
std::int32_t month_of_start(const Civil& start) {
    if (start.month == 12 && start.year == 9999) {
        fail(error::invalid_call);
    }
    return days_in_month(start.year, start.month);
}

// The plain differences of the fields. `end` is the day behind the last one, which is what takes
// the last day in.
constexpr Period differences(const Civil& start, const Civil& end) {
    return {end.year - start.year, end.month - start.month, end.day - start.day};
}

Period normalised_period(const Civil& start, const Civil& end) {
    Period period = differences(start, end);
    if (period.days < 0) {
        period.days += month_of_start(start);
        period.months -= 1;
    }
    if (period.months < 0) {
        period.months += 12;
        period.years -= 1;
    }
    period.years = std::max(period.years, 0);
    return period;
}

Period plain_period(const Civil& start, const Civil& end) {
    Period period = differences(start, end);
    if (period.months < 0) {
        period.months += 12;
        period.years -= 1;
    }
    if (period.days < 0) {
        period.days += month_of_start(start);
        period.months -= 1;
    }
    return period;
}

void write(const Period& period, Integer& years, Integer& months, Integer& days) {
    years = wrap16(period.years);
    months = wrap16(period.months);
    days = wrap16(period.days);
}

Civil day_behind(Date last) {
    return civil_day({last.days + 1});
}

Integer months_of_service(Integer years, Integer months) {
    return wrap16(years * 12 + months);
}

// ---- Searches -------------------------------------------------------------------------------

struct Base {
    Integer months = 0;
    Integer days = 0;
    std::optional<Integer> years;  // none: the caller's years are not set to a base
};
struct Total {
    Integer& months;
    Integer& days;
    Integer& years;
};
struct Service {
    Integer& years;
    Integer& months;
    Integer& days;
};

// The pass at which a search for a number of years may begin. The years of a total are those of
// the base, those between the calendar years of the two days, and at most one that is carried, so
// that no day before the year in which they can come together is the answer; what its pass would
// write is written anew by each later one. Three passes more make room for a time of day, whose
// fraction can round.
Integer first_pass(Date start, const Civil& first, Integer base_years, Integer limit) {
    const std::int32_t year = first.year + limit - base_years - 1;
    if (year <= first.year || year > 9999) {
        return 1;
    }
    const std::int32_t pass = day_number(year, 1, 1) - whole_day(start) - 3;
    const bool fits = pass >= 1 && pass <= std::numeric_limits<Integer>::max();
    return fits ? static_cast<Integer>(pass) : Integer{1};
}

// Tries one day after another until `reached`, which is one of the fields of the total, is at the
// limit. The counter of the passes wraps at 16 bits: the days then go on from before the start.
Date search(Date start, const Base& base, const Total& total, const Service& service,
            const Integer& reached, Integer limit) {
    if (reached >= limit) {
        return {};
    }
    constexpr std::int32_t all_passes = 65536;
    const auto put_base = [&] {
        total.months = base.months;
        total.days = base.days;
        total.years = base.years.value_or(total.years);
    };
    const Kadry personnel;
    put_base();  // before a start that is no day of the calendar fails
    const Civil first = civil_day(start);
    Integer pass = base.years ? first_pass(start, first, *base.years, limit) : Integer{1};
    for (std::int32_t passes = 0; passes < all_passes; ++passes) {
        put_base();
        const Date last{start.days + pass};
        write(normalised_period(first, day_behind(last)), service.years, service.months,
              service.days);
        personnel.sumuj_okresy(service.years, service.months, service.days, total.days,
                               total.months, total.years);
        if (reached >= limit) {
            return last;
        }
        pass = wrap16(pass + 1);
    }
    fail(error::overflow);
}

}  // namespace

// ---- The class ------------------------------------------------------------------------------

Integer Kadry::PodajDzień(Date Dat, Boolean Święto) const {
    const std::int32_t day = whole_day(Dat);
    const Civil civil = civil_of(day);
    if (civil.year > hr::last_listed_year) {
        platform().message_boxes->MsgBox(calendar_ends, msg_box::ok_only, std::nullopt);
    }
    return Święto && is_holiday(day, civil) ? free_day : weekday_by_name(day);
}

void Kadry::licz_okres(Date Data_od, Date Data_do, Integer& staz_lata, Integer& staz_miesiace,
                       Integer& staz_dni) const {
    write(normalised_period(civil_day(Data_od), day_behind(Data_do)), staz_lata, staz_miesiace,
          staz_dni);
}

void Kadry::licz_okres2(Date Data_od, Date Data_do, Integer& staz_lata, Integer& staz_miesiace,
                        Integer& staz_dni) const {
    write(plain_period(civil_day(Data_od), day_behind(Data_do)), staz_lata, staz_miesiace,
          staz_dni);
}

void Kadry::sumuj_okresy(Integer lata, Integer Mies, Integer dni, Integer& suma_d, Integer& suma_m,
                         Integer& suma_l) const {
    suma_d = wrap16(suma_d + dni);
    if (suma_d >= 30) {
        suma_d = wrap16(suma_d - 30);
        suma_m = wrap16(suma_m + 1);
    }
    suma_m = wrap16(suma_m + Mies);
    if (suma_m >= 12) {
        suma_m = wrap16(suma_m - 12);
        suma_l = wrap16(suma_l + 1);
    }
    suma_l = wrap16(suma_l + lata);
}

Integer Kadry::limit_u(Integer lata, Integer Mies, Integer szkoła) const {
    if (months_of_service(lata, Mies) <= 5) {
        return 0;
    }
    const Integer years = wrap16(lata + szkoła);
    if (years >= 0 && years <= 5) {
        return 18;
    }
    return years >= 6 && years <= 9 ? Integer{20} : Integer{26};
}

Integer Kadry::limit_u1(Integer lata, Integer Mies, Integer szkoła, Integer wiek) const {
    const Integer service = months_of_service(lata, Mies);
    if (service <= 5) {
        return 0;
    }
    if (service < 12) {
        return 12;
    }
    const Integer years = wrap16(lata + szkoła);
    if (years < 0 || years > 5) {
        return 0;
    }
    return wiek < 18 ? Integer{26} : Integer{20};
}

Date Kadry::data_6m(Date DataOd, Integer Mies, Integer dni, Integer staz_lata,
                    Integer staz_miesiace, Integer staz_dni, Integer& suma_m, Integer& suma_d,
                    Integer& suma_l) const {
    return search(DataOd, {Mies, dni, std::nullopt}, {suma_m, suma_d, suma_l},
                  {staz_lata, staz_miesiace, staz_dni}, suma_m, 6);
}

Date Kadry::data_12m(Date DataOd, Integer Mies, Integer dni, Integer& suma_m, Integer& suma_d,
                     Integer& suma_l, Integer& staz_lata, Integer& staz_miesiace,
                     Integer& staz_dni) const {
    return search(DataOd, {Mies, dni, Integer{0}}, {suma_m, suma_d, suma_l},
                  {staz_lata, staz_miesiace, staz_dni}, suma_l, 1);
}

Date Kadry::data_6l(Date DataOd, Integer lata, Integer Mies, Integer dni, Integer& suma_m,
                    Integer& suma_d, Integer& suma_l, Integer& staz_lata, Integer& staz_miesiace,
                    Integer& staz_dni) const {
    return search(DataOd, {Mies, dni, lata}, {suma_m, suma_d, suma_l},
                  {staz_lata, staz_miesiace, staz_dni}, suma_l, 6);
}

Date Kadry::data_10l(Date DataOd, Integer lata, Integer Mies, Integer dni, Integer& suma_m,
                     Integer& suma_d, Integer& suma_l, Integer& staz_lata, Integer& staz_miesiace,
                     Integer& staz_dni) const {
    return search(DataOd, {Mies, dni, lata}, {suma_m, suma_d, suma_l},
                  {staz_lata, staz_miesiace, staz_dni}, suma_l, 10);
}

}  // namespace kvarta16
