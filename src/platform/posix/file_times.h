// The times of the platform: 100-nanosecond units since the beginning of 1601.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>

#include <kvarta16/platform/find_files.h>

namespace kvarta16::posix {

[[nodiscard]] FILETIME file_time(std::int64_t units) noexcept;
[[nodiscard]] std::int64_t units_of(const FILETIME& time) noexcept;

// Of a moment of the system's clock, which counts from the beginning of 1970. What lies outside
// the range is its nearer end.
[[nodiscard]] std::int64_t units_since_1601(std::int64_t seconds,
                                            std::uint32_t nanoseconds) noexcept;

// In the machine's time zone by the rule in force at that moment; nothing for a time that is none
// or whose result is.
[[nodiscard]] std::optional<std::int64_t> local_units(std::int64_t units) noexcept;

// Nothing for a negative time.
[[nodiscard]] std::optional<SYSTEMTIME> calendar_parts(std::int64_t units) noexcept;

}  // namespace kvarta16::posix
