// A second calendar and a second reader of dates, for the oracles alone, on the standard library's
// own calendar. The settings are the Polish ones: the year first.
#pragma once

#include <cstdint>
#include <optional>

#include <kvarta16/frame/types.h>
#include <kvarta16/frame/value.h>

namespace kvarta16::fuzz {

struct SecondMoment {
    std::int32_t year = 0;
    unsigned month = 0;
    unsigned day = 0;
    std::int32_t day_of_year = 0;  // from 1
    std::int32_t weekday = 0;      // Monday is 0
    std::int32_t weekday_of_new_year = 0;
    std::int32_t seconds = 0;  // since midnight
};

// The day number of a day; nothing for one that its month has not got and outside the years 100 to
// 9999.
[[nodiscard]] std::optional<std::int32_t> second_day_number(std::int32_t year, std::int32_t month,
                                                            std::int32_t day);

// A Date to the nearest second within its day; nothing outside the years 100 to 9999.
[[nodiscard]] std::optional<SecondMoment> second_moment(Date date);

[[nodiscard]] std::optional<Date> second_date(StringView text);

// A moment under a mask that has a letter of a date in it.
[[nodiscard]] String second_date_text(const SecondMoment& moment, StringView mask, WeekStart start);

[[nodiscard]] bool is_second_date_mask(StringView mask);

}  // namespace kvarta16::fuzz
