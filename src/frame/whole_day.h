// A Date without its time of day, as the classes that count in days take it apart.
#pragma once

#include <cmath>

#include <kvarta16/frame/value.h>

namespace kvarta16 {

// The day's number. Before day 0 too the time counts forward from the number cut towards zero:
// -1.25 is 06:00 of day -1. Fails: 5 outside the years 100 to 9999.
[[nodiscard]] inline std::int32_t whole_day(Date date) {
    const Double day = std::trunc(date.days);
    if (!(day >= first_day_number && day <= last_day_number)) {
        fail(error::invalid_call);
    }
    return static_cast<std::int32_t>(day);
}

// Year, month and day of it. Fails: 5.
[[nodiscard]] inline Civil civil_day(Date date) {
    return civil_of(whole_day(date));
}

}  // namespace kvarta16
