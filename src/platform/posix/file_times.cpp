#include <chrono>
#include <limits>

#include <kvarta16/platform/posix/file_times.h>

namespace kvarta16::posix {
namespace {

constexpr std::int64_t units_per_second = 10'000'000;
constexpr std::int64_t units_per_millisecond = 10'000;
constexpr std::int64_t nanoseconds_per_unit = 100;
constexpr std::int64_t seconds_from_1601_to_1970 = 11'644'473'600;
constexpr int low_bits = 32;

}  // namespace

FILETIME file_time(std::int64_t units) noexcept {
    return {wrap32(units), wrap32(units >> low_bits)};
}

std::int64_t units_of(const FILETIME& time) noexcept {
    const auto high = static_cast<std::uint64_t>(static_cast<std::uint32_t>(time.dwHighDateTime));
    const auto low = static_cast<std::uint64_t>(static_cast<std::uint32_t>(time.dwLowDateTime));
    return static_cast<std::int64_t>((high << low_bits) | low);
}

std::int64_t units_since_1601(std::int64_t seconds, std::uint32_t nanoseconds) noexcept {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (seconds < -seconds_from_1601_to_1970) {
        return 0;
    }
    if (seconds >= most / units_per_second - seconds_from_1601_to_1970) {
        return most;
    }
    return (seconds + seconds_from_1601_to_1970) * units_per_second +
           nanoseconds / nanoseconds_per_unit;
}

std::optional<std::int64_t> local_units(std::int64_t units) noexcept {
    if (units < 0) {
        return std::nullopt;
    }
    const std::time_t moment = units / units_per_second - seconds_from_1601_to_1970;
    std::tm local{};
    if (::localtime_r(&moment, &local) == nullptr) {
        return std::nullopt;
    }
    const std::int64_t shift = local.tm_gmtoff * units_per_second;
    const bool is_beyond = shift > 0 && units > std::numeric_limits<std::int64_t>::max() - shift;
    if (is_beyond || units + shift < 0) {
        return std::nullopt;
    }
    return units + shift;
}

std::optional<SYSTEMTIME> calendar_parts(std::int64_t units) noexcept {
    using std::chrono::days;
    if (units < 0) {
        return std::nullopt;
    }
    const std::chrono::milliseconds since_1601(units / units_per_millisecond);
    const auto since_1970 = since_1601 - std::chrono::seconds(seconds_from_1601_to_1970);
    const std::chrono::sys_days day(std::chrono::floor<days>(since_1970));
    const std::chrono::year_month_day civil(day);
    const std::chrono::hh_mm_ss time(since_1970 - day.time_since_epoch());
    SYSTEMTIME parts;
    parts.wYear = static_cast<Integer>(static_cast<int>(civil.year()));
    parts.wMonth = static_cast<Integer>(static_cast<unsigned>(civil.month()));
    parts.wDayOfWeek = static_cast<Integer>(std::chrono::weekday(day).c_encoding());
    parts.wDay = static_cast<Integer>(static_cast<unsigned>(civil.day()));
    parts.wHour = static_cast<Integer>(time.hours().count());
    parts.wMinute = static_cast<Integer>(time.minutes().count());
    parts.wSecond = static_cast<Integer>(time.seconds().count());
    parts.wMilliseconds = static_cast<Integer>(time.subseconds().count());
    return parts;
}

}  // namespace kvarta16::posix
