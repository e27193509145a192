// Listings of an FTP server: an entry written as each kind of server writes it is read back as it
// was, and whatever a server sends, what is read is safe to use. An input is 16 bytes that make an
// entry and the present moment, the entry's name, a line feed, and a listing.
#include <chrono>
#include <cstdio>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/ftp/listing.h>
#include <kvarta16/platform/posix/ftp/wildcard.h>

#include "fuzz_support.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::show;
using posix::Entry;

using std::chrono::days;
using std::chrono::sys_days;

constexpr sys_days first_day = std::chrono::year(1601) / 1 / 1;
constexpr std::int64_t units_a_second = 10'000'000;
constexpr std::int64_t units_a_day = 86400 * units_a_second;
constexpr const char* month_names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

struct Stamp {
    int year, month, day, hour, minute, second;
    std::int64_t fraction;
};

Stamp stamp_of(std::int64_t time) {
    const std::chrono::year_month_day day(first_day + days(time / units_a_day));
    const auto seconds = static_cast<int>(time % units_a_day / units_a_second);
    return {static_cast<int>(day.year()),
            static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day())),
            seconds / 3600,
            seconds / 60 % 60,
            seconds % 60,
            time % units_a_second};
}

template <class... Arguments>
std::string formatted(const char* form, Arguments... arguments) {
    char text[200];
    std::snprintf(text, sizeof text, form, arguments...);
    return text;
}

bool same(const Entry& a, const Entry& b) {
    return a.name == b.name && a.attributes == b.attributes && a.size == b.size &&
           a.written == b.written;
}

std::string show_entry(const std::optional<Entry>& entry) {
    return entry ? show(entry->name) + ", attributes " + show(entry->attributes) + ", size " +
                       show(entry->size) + ", written " + show(entry->written)
                 : "nothing";
}

void expect_entry(const std::string& line, const std::optional<Entry>& actual,
                  const std::optional<Entry>& wanted) {
    const bool is_same = actual && wanted ? same(*actual, *wanted) : !actual && !wanted;
    if (!is_same) {
        fuzz::broken("The entry of the line", show(line),
                     "is " + show_entry(actual) + "\n  and should be " + show_entry(wanted));
    }
}

// ---- Lines as servers write them -------------------------------------------------------------

std::string fact_line(const Entry& entry) {
    const Stamp stamp = stamp_of(entry.written);
    const bool is_read_only = (entry.attributes & file_attribute::read_only) != 0;
    std::string line = entry.is_folder() ? "Type=dir;" : "Type=file;";
    line += entry.is_folder()
                ? ""
                : formatted("Size=%llu;", static_cast<unsigned long long>(entry.size));
    if (entry.written != 0) {
        line += formatted("Modify=%04d%02d%02d%02d%02d%02d.%07lld;", stamp.year, stamp.month,
                          stamp.day, stamp.hour, stamp.minute, stamp.second,
                          static_cast<long long>(stamp.fraction));
    }
    line += is_read_only ? "Perm=el;" : entry.is_folder() ? "Perm=elcmp;" : "Perm=raw;";
    return line + " " + to_utf8(entry.name);
}

std::string rights(const Entry& entry) {
    const bool is_read_only = (entry.attributes & file_attribute::read_only) != 0;
    return std::string(entry.is_folder() ? "d" : "-") + (is_read_only ? "r-xr-xr-x" : "rwxr-xr-x");
}

std::string unix_line(const Entry& entry) {
    const Stamp stamp = stamp_of(entry.written);
    return rights(entry) +
           formatted("  1 ftp   ftp %12llu %s %2d  %04d ",
                     static_cast<unsigned long long>(entry.size), month_names[stamp.month - 1],
                     stamp.day, stamp.year) +
           to_utf8(entry.name);
}

std::string windows_line(const Entry& entry) {
    const Stamp stamp = stamp_of(entry.written);
    const int hour = stamp.hour % 12 == 0 ? 12 : stamp.hour % 12;
    std::string line = formatted("%02d-%02d-%04d  %02d:%02d%s ", stamp.month, stamp.day, stamp.year,
                                 hour, stamp.minute, stamp.hour < 12 ? "AM" : "PM");
    line += entry.is_folder() ? "      <DIR>         "
                              : formatted("%20llu ", static_cast<unsigned long long>(entry.size));
    return line + to_utf8(entry.name);
}

bool is_usable(const String& name) {
    return !name.empty() && name != u"." && name != u".." && name.size() <= 260 &&
           from_utf8(to_utf8(name)) == name && std::ranges::none_of(name, [](char16_t unit) {
               return unit < u' ' || unit == u'/' || unit == u'\\';
           });
}

// To the unit that the line tells; a name that is not usable is left out.
void check_written(Entry entry, Date now) {
    const bool usable = is_usable(entry.name);
    const auto wanted = [&](std::int64_t unit, Long attributes) -> std::optional<Entry> {
        Entry told = entry;
        told.written -= told.written % unit;
        told.attributes &= attributes;
        return usable ? std::optional(told) : std::nullopt;
    };
    const std::string facts = fact_line(entry);
    expect_entry(facts, posix::machine_entry(facts), wanted(1, ~0));
    const std::string unix_text = unix_line(entry);
    expect_entry(unix_text, posix::unix_entry(unix_text, now), wanted(units_a_day, ~0));
    // Blanks before a name in a Windows listing are those of the column.
    if (!entry.name.starts_with(u' ')) {
        const std::string windows = windows_line(entry);
        expect_entry(windows, posix::windows_entry(windows),
                     wanted(60 * units_a_second, ~file_attribute::read_only));
    }
}

// A line without a year is of the last year that puts it before the end of tomorrow.
void check_year(const Entry& entry, Date now) {
    const Stamp stamp = stamp_of(entry.written);
    const std::string line = rights(entry) + formatted("  1 ftp   ftp 7 %s %2d %02d:%02d a",
                                                       month_names[stamp.month - 1], stamp.day,
                                                       stamp.hour, stamp.minute);
    constexpr sys_days day_zero = std::chrono::year(1899) / 12 / 30;
    const sys_days tomorrow = day_zero + days(static_cast<int>(now.days) + 1);
    int year = static_cast<int>(std::chrono::year_month_day(tomorrow).year());
    sys_days day;
    for (;; --year) {
        const std::chrono::year_month_day date(
            std::chrono::year(year), std::chrono::month(static_cast<unsigned>(stamp.month)),
            std::chrono::day(static_cast<unsigned>(stamp.day)));
        day = date;
        if (date.ok() && day <= tomorrow) {
            break;
        }
    }
    Entry wanted = entry;
    wanted.name = u"a";
    wanted.size = entry.is_folder() ? 0 : 7;
    wanted.attributes &= ~file_attribute::hidden;
    wanted.written = (day - first_day).count() * units_a_day +
                     (stamp.hour * 60 + stamp.minute) * 60 * units_a_second;
    expect_entry(line, posix::unix_entry(line, now), wanted);
}

// ---- Whatever a server sends ----------------------------------------------------------------

std::uint64_t both_halves(Long high, Long low) {
    return (std::uint64_t{static_cast<std::uint32_t>(high)} << 32) |
           static_cast<std::uint32_t>(low);
}

void check_entries(const posix::Listing& listing, std::string_view text) {
    const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
    const std::string shown = show(text);
    expect(listing.entries.size() <= lines, "No more entries than lines in", shown);
    std::size_t units = 0;
    for (const Entry& entry : listing.entries) {
        units += entry.name.size();
        expect(is_usable(entry.name), "A name that can be used in", shown);
        expect(entry.written >= 0, "No time before the first one in", shown);
        const std::string facts = fact_line(entry);
        expect_entry(facts, posix::machine_entry(facts), entry);
        const WIN32_FIND_DATA data = posix::find_data_of(entry);
        expect_same("The size in the record of", shown,
                    both_halves(data.nFileSizeHigh, data.nFileSizeLow), entry.size);
        expect_same(
            "The time in the record of", shown,
            both_halves(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime),
            static_cast<std::uint64_t>(entry.written));
        expect(std::equal(entry.name.begin(), entry.name.end(), data.cFileName.begin()),
               "The name in the record of", shown);
    }
    expect(units <= text.size(), "Names no longer than", shown);
}

// ---- Patterns -------------------------------------------------------------------------------

// Row by row: which beginnings of the name fit the pattern so far.
bool fits(StringView name, StringView pattern) {
    std::vector<bool> fitting(name.size() + 1);
    fitting[0] = true;
    for (const char16_t unit : pattern) {
        std::vector<bool> next(fitting.size());
        for (std::size_t i = 0; i <= name.size(); ++i) {
            if (unit == u'*') {
                next[i] = fitting[i] || (i > 0 && next[i - 1]);
            } else if (i > 0) {
                next[i] = fitting[i - 1] && (unit == u'?' || unit == name[i - 1]);
            }
        }
        fitting = std::move(next);
    }
    return fitting.back();
}

void check_pattern(const String& name, const String& pattern) {
    const std::string shown = show(name) + " by " + show(pattern);
    expect_same("matches of", shown, posix::matches(name, pattern, false), fits(name, pattern));
    const bool ignoring = posix::matches(name, pattern, true);
    expect_same("matches in any case of", shown, ignoring,
                fits(upper_case(name), upper_case(pattern)));
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    fuzz::Input input(data, size);
    Entry entry;
    entry.size = input.number<std::uint64_t>() >> 1;
    // From 1601 to the year 2500, and a present from 1990 to 2080. The first second of 1601 is
    // none: 0 stands for a time that is not told.
    const auto time = input.number<std::uint32_t>();
    entry.written = std::int64_t{time} * 66'000'007 + units_a_second;
    const Date now{32874.0 + input.number<std::uint16_t>() % 32768};
    const auto flags = input.number<std::uint16_t>();
    entry.attributes = (flags & 1) != 0 ? file_attribute::directory : file_attribute::archive;
    entry.attributes |= (flags & 2) != 0 ? file_attribute::read_only : 0;
    entry.size = entry.is_folder() ? 0 : entry.size;
    // As it travels: half a surrogate pair arrives as U+FFFD.
    entry.name = from_utf8(to_utf8(input.line_as_text()));
    entry.attributes |= entry.name.starts_with(u'.') ? file_attribute::hidden : 0;
    check_written(entry, now);
    check_year(entry, now);

    const std::string_view text = input.rest();
    check_entries(posix::listing_of(text, now), text);
    check_entries(posix::machine_listing_of(text), text);
    constexpr std::size_t longest = 64;
    check_pattern(entry.name.substr(0, longest), fuzz::text_of(text.substr(0, longest)));
    return 0;
}
