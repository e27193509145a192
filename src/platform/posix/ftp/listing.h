// Remote listings, read into entries: the lines of "ls -l", those of a Windows server, and the
// facts of MLSD. No sockets here; whatever the text is, the result is no larger than it.
//
// Left out are: the folder itself and the one above it, lines that tell no entry, and names that
// no caller could use safely or at all: with "/", "\" or a control character in them (a server
// that sends "../x" means to be written elsewhere), or longer than the 260 units of the record.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include <kvarta16/platform/find_files.h>

namespace kvarta16::posix {

struct Entry {
    String name;
    Long attributes = 0;       // bits of file_attribute
    std::uint64_t size = 0;    // in bytes
    std::int64_t written = 0;  // 100-nanosecond units since 1601-01-01; 0 where not told

    [[nodiscard]] bool is_folder() const noexcept;
};

struct Listing {
    std::vector<Entry> entries;  // in the server's order
    bool ignores_case = false;   // a Windows server's
};

// The answer to LIST. A line without a year is of the year that puts it last before `now`, the
// present moment in local time, or within the day behind it, for the server may lie further east.
// Times are taken as they are written: most servers tell UTC. Links count as files.
[[nodiscard]] Listing listing_of(std::string_view text, Date now);

// The answer to MLSD, whose times are UTC.
[[nodiscard]] Listing machine_listing_of(std::string_view text);

// One line of each; nothing where it is to be left out.
[[nodiscard]] std::optional<Entry> unix_entry(std::string_view line, Date now);
[[nodiscard]] std::optional<Entry> windows_entry(std::string_view line);
[[nodiscard]] std::optional<Entry> machine_entry(std::string_view line);

// The record of the platform. The times of creation and of the last access stay zero: FTP does
// not tell them, and callers add their halves up to a date, which no real time survives.
[[nodiscard]] WIN32_FIND_DATA find_data_of(const Entry& entry);

}  // namespace kvarta16::posix
