// The search of the platform for files, and the record that it fills.
#pragma once

#include <array>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// 100-nanosecond units since 1601-01-01, in two signed halves.
struct FILETIME {
    Long dwLowDateTime = 0;
    Long dwHighDateTime = 0;

    friend constexpr bool operator==(const FILETIME&, const FILETIME&) noexcept = default;
};

struct SYSTEMTIME {
    Integer wYear = 0;
    Integer wMonth = 0;      // 1 to 12
    Integer wDayOfWeek = 0;  // 0 is Sunday
    Integer wDay = 0;
    Integer wHour = 0;
    Integer wMinute = 0;
    Integer wSecond = 0;
    Integer wMilliseconds = 0;

    friend constexpr bool operator==(const SYSTEMTIME&, const SYSTEMTIME&) noexcept = default;
};

// What a search tells of one entry. The platform ends the names with U+0000 unless they fill
// their place.
struct WIN32_FIND_DATA {
    Long dwFileAttributes = 0;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    Long nFileSizeHigh = 0;
    Long nFileSizeLow = 0;
    Long dwReserved0 = 0;
    Long dwReserved1 = 0;
    std::array<char16_t, 260> cFileName{};
    std::array<char16_t, 14> cAlternateFileName{};

    friend constexpr bool operator==(const WIN32_FIND_DATA&,
                                     const WIN32_FIND_DATA&) noexcept = default;
};

inline constexpr Long INVALID_HANDLE_VALUE = -1;

// None of these raises a failure: they answer 0, or INVALID_HANDLE_VALUE, where they cannot serve.
class KVARTA16_EXPORT FindFiles {
  public:
    virtual ~FindFiles() = default;

    // Begins a search for the names that match a path whose last name may hold "*" and "?"; "*.*"
    // matches every name. Fills `data` with the first entry, in the order of the system, "." and
    // ".." included where a folder other than a root is listed. The handle of the search, or
    // INVALID_HANDLE_VALUE where nothing matches or the folder cannot be read; `data` then stays.
    [[nodiscard]] virtual Long FindFirstFileA(StringView name, WIN32_FIND_DATA& data) = 0;

    // The next entry. 0 where there is none more, where the folder cannot be read on, and for a
    // handle that is none; `data` then stays.
    [[nodiscard]] virtual Long FindNextFileA(Long handle, WIN32_FIND_DATA& data) = 0;

    // Ends a search. 0 for a handle that is none.
    virtual Long FindClose(Long handle) = 0;

    // The full path of a name that need not exist: drive, folders, "." and ".." resolved. With
    // room for it and an ending zero in `length` characters it is written over the beginning of
    // `buffer`, with the zero where the buffer has a place for it, and the answer is its length
    // without the zero. Otherwise nothing is written and the answer is the length needed with the
    // zero. 0 on a text that is no path.
    [[nodiscard]] virtual Long GetFullPathNameA(StringView name, Long length, String& buffer) = 0;

    // The short form of a path that exists, in the same manner; the path itself where the system
    // keeps no short names. 0 where the path does not exist.
    [[nodiscard]] virtual Long GetShortPathNameA(StringView name, Long length, String& buffer) = 0;

    // A time of the system in the machine's time zone, by the rule in force at that time. 0, and
    // `local` stays, for a time that is none (negative or beyond what the result can hold).
    [[nodiscard]] virtual Long FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) = 0;

    // The calendar's parts of a time. 0, and `parts` stays, for a negative time.
    [[nodiscard]] virtual Long FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) = 0;
};

}  // namespace kvarta16
