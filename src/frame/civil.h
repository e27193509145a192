// The civil (proleptic Gregorian) calendar on day numbers: day 0 is 1899-12-30.
#pragma once

#include <cstdint>

namespace kvarta16 {

struct Civil {
    std::int32_t year;
    std::int32_t month;  // 1 to 12
    std::int32_t day;    // 1 to 31
    friend constexpr bool operator==(const Civil&, const Civil&) = default;
};

// The days that a Date can hold: 0100-01-01 to 9999-12-31.
inline constexpr std::int32_t first_day_number = -657434;
inline constexpr std::int32_t last_day_number = 2958465;

[[nodiscard]] constexpr bool is_leap_year(std::int32_t year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

[[nodiscard]] constexpr std::int32_t days_in_month(std::int32_t year, std::int32_t month) noexcept {
    constexpr std::int32_t days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && is_leap_year(year) ? 29 : days[month - 1];
}

// The day number of a civil date. The year counts from 1 March, so that the leap day is its
// last day and the months before it follow one linear rule; four centuries are one cycle of
// 146097 days. Month 1 to 12; any day, also outside the month; year 0 to 32767.
[[nodiscard]] constexpr std::int32_t day_number(std::int32_t year, std::int32_t month,
                                                std::int32_t day) noexcept {
    constexpr std::int32_t day_number_of_0000_03_01 = -693899;
    const std::int32_t march_year = month > 2 ? year : year - 1;
    const std::int32_t march_month = month > 2 ? month - 3 : month + 9;
    const std::int32_t era = (march_year >= 0 ? march_year : march_year - 399) / 400;
    const std::int32_t year_of_era = march_year - era * 400;
    const std::int32_t day_of_year = (153 * march_month + 2) / 5 + day - 1;
    const std::int32_t day_of_era =
        year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
    return era * 146097 + day_of_era + day_number_of_0000_03_01;
}

// The civil date of a day number from first_day_number to last_day_number: day_number() backwards.
[[nodiscard]] constexpr Civil civil_of(std::int32_t number) noexcept {
    const std::int32_t shifted = number + 693899;  // days since 0000-03-01, never negative here
    const std::int32_t era = shifted / 146097;
    const std::int32_t day_of_era = shifted - era * 146097;
    const std::int32_t year_of_era =
        (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
    const std::int32_t day_of_year =
        day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
    const std::int32_t march_month = (5 * day_of_year + 2) / 153;
    const std::int32_t month = march_month < 10 ? march_month + 3 : march_month - 9;
    return {year_of_era + era * 400 + (month <= 2 ? 1 : 0), month,
            day_of_year - (153 * march_month + 2) / 5 + 1};
}

// Monday = 0 to Sunday = 6. Day 0 is a Saturday.
[[nodiscard]] constexpr std::int32_t weekday_from_monday(std::int32_t number) noexcept {
    const std::int32_t remainder = (number + 5) % 7;
    return remainder < 0 ? remainder + 7 : remainder;
}

static_assert(day_number(1899, 12, 30) == 0);
static_assert(day_number(100, 1, 1) == first_day_number);
static_assert(day_number(9999, 12, 31) == last_day_number);
static_assert(civil_of(45429) == Civil{2024, 5, 17});
static_assert(civil_of(first_day_number) == Civil{100, 1, 1});
static_assert(weekday_from_monday(45429) == 4);  // 2024-05-17, a Friday

}  // namespace kvarta16
