// Dates as they stand in databases and in statements: ISO text with the time, and whatever other
// programs write in its place.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::sql {

// A day (0 is 1899-12-30) and the milliseconds since its midnight.
struct Moment {
    std::int32_t day = 0;
    std::int32_t millisecond = 0;
    friend constexpr bool operator==(const Moment&, const Moment&) noexcept = default;
};

// What a text must hold to be taken for a moment.
enum class MomentForm : std::uint8_t {
    stored,     // year-first date, with or without a time; a time alone, on day 0
    date,       // year-first date alone
    time,       // time alone, on day 0
    date_time,  // year-first date and time
    jet,        // as stored, but a date whose first part is not a year has its month first
};

// Reads `yyyy-M-d`, parts separated by "-", "/" or ".", and `H:mm`, `H:mm:ss` or `H:mm:ss.fff`
// behind blanks or a "T"; a zone behind the time is passed over, so that the moment is the one
// that is written. Nothing for any other text, or for a day or time that does not exist.
[[nodiscard]] std::optional<Moment> parse_moment(std::string_view text,
                                                 MomentForm form = MomentForm::stored) noexcept;

// A number of days and its time of day to the nearest millisecond; nothing outside the years 100
// to 9999.
[[nodiscard]] std::optional<Moment> moment_of_days(Double days) noexcept;
[[nodiscard]] Date date_of(Moment moment) noexcept;

// "yyyy-MM-dd HH:mm:ss.fff"; without the fraction the first 19 characters. As text it compares as
// the moments do.
using MomentText = std::array<char, 23>;
inline constexpr std::size_t length_to_seconds = 19;
[[nodiscard]] MomentText moment_text(Moment moment) noexcept;

// Whether a text is a moment to the second exactly as moment_text writes it.
[[nodiscard]] bool is_text_to_seconds(std::string_view text) noexcept;

// The text that is stored: with the fraction only where there is one.
[[nodiscard]] std::string stored_text(Moment moment);

}  // namespace kvarta16::sql
