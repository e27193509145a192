// Dates taken apart and read from text. Private to the value layer.
#pragma once

#include <optional>

#include <kvarta16/frame/locale.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

struct DateParts {
    std::int32_t day_number;
    Civil civil;
    std::int32_t hour;
    std::int32_t minute;
    std::int32_t second;

    [[nodiscard]] bool is_midnight() const { return hour == 0 && minute == 0 && second == 0; }
};

// A Date taken apart, to the nearest second but never into the next day, so that the time of day
// does not show in the day. Nothing outside the years 100 to 9999.
[[nodiscard]] std::optional<DateParts> parts_of(Date date);

// Whether a day number lies in the years 100 to 9999.
[[nodiscard]] constexpr bool is_day_of_calendar(Double days) noexcept {
    // The time of day reaches beyond the first and the last day.
    return days > first_day_number - 1.0 && days < last_day_number + 1.0;
}

// The year that a year of one or two digits means.
[[nodiscard]] constexpr std::int32_t full_year(std::int32_t year) noexcept {
    return year < 0 || year > 99 ? year : year < 30 ? 2000 + year : 1900 + year;
}

// A date by the grammar of ToDate; nothing if the text is none.
[[nodiscard]] std::optional<Date> read_date(StringView text, const Locale& settings);

}  // namespace kvarta16
