#include <algorithm>
#include <array>
#include <cmath>

#include <kvarta16/frame/civil.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/ftp/ascii.h>
#include <kvarta16/platform/posix/ftp/listing.h>
#include <kvarta16/platform/posix/ftp/remote_text.h>

namespace kvarta16::posix {
namespace {

constexpr std::int64_t units_per_second = 10'000'000;
constexpr std::int64_t seconds_per_day = 86400;
constexpr std::int32_t first_year = 1601;  // of FILETIME
constexpr std::int32_t last_year = 9999;

// ---- Times ----------------------------------------------------------------------------------

struct Moment {
    std::int32_t year = 0;
    std::int32_t month = 0;
    std::int32_t day = 0;
    std::int32_t hour = 0;
    std::int32_t minute = 0;
    std::int32_t second = 0;
};

bool is_day(const Moment& moment) {
    return moment.year >= first_year && moment.year <= last_year && moment.month >= 1 &&
           moment.month <= 12 && moment.day >= 1 &&
           moment.day <= days_in_month(moment.year, moment.month);
}

// 0 for a moment that is none. The sixtieth second of a leap is the one before it.
std::int64_t time_of(const Moment& moment) {
    if (!is_day(moment) || moment.hour > 23 || moment.minute > 59 || moment.second > 60) {
        return 0;
    }
    const std::int64_t days = day_number(moment.year, moment.month, moment.day) -
                              std::int64_t{day_number(first_year, 1, 1)};
    const std::int64_t seconds =
        (moment.hour * 60 + moment.minute) * 60 + std::min(moment.second, 59);
    return (days * seconds_per_day + seconds) * units_per_second;
}

// "20:18"; false for anything else.
bool read_clock(std::string_view text, Moment& moment) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return false;
    }
    const auto hour = number_of<std::int32_t>(text.substr(0, colon));
    const auto minute = number_of<std::int32_t>(text.substr(colon + 1));
    moment.hour = hour.value_or(24);
    moment.minute = minute.value_or(60);
    return moment.hour <= 23 && moment.minute <= 59;
}

// The year that puts a day last before the end of tomorrow.
std::int32_t year_before(const Moment& moment, Date now) {
    const std::int32_t tomorrow = static_cast<std::int32_t>(std::floor(now.days)) + 1;
    const std::int32_t this_year = civil_of(tomorrow).year;
    for (std::int32_t year = this_year; year > this_year - 9; --year) {  // 29 February: 8 at most
        Moment dated = moment;
        dated.year = year;
        if (is_day(dated) && day_number(year, moment.month, moment.day) <= tomorrow) {
            return year;
        }
    }
    return 0;
}

// 1 to 12 for "Jan" to "Dec", 0 for anything else.
std::int32_t month_of(std::string_view word) {
    constexpr std::array<std::string_view, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto* const found = std::ranges::find_if(
        months, [&](std::string_view month) { return is_same_word(word, month); });
    return found == months.end() ? 0 : static_cast<std::int32_t>(found - months.begin()) + 1;
}

// ---- Names ----------------------------------------------------------------------------------

bool is_usable(const Entry& entry) {
    const auto is_dangerous = [](char16_t unit) {
        return unit < u' ' || unit == u'/' || unit == u'\\';
    };
    return !entry.name.empty() && entry.name != u"." && entry.name != u".." &&
           entry.name.size() <= WIN32_FIND_DATA{}.cFileName.size() &&
           std::ranges::none_of(entry.name, is_dangerous);
}

std::optional<Entry> finished(Entry entry, std::string_view name) {
    entry.name = from_wire(name);
    if (entry.name.starts_with(u'.')) {
        entry.attributes |= file_attribute::hidden;
    }
    return is_usable(entry) ? std::optional(std::move(entry)) : std::nullopt;
}

// ---- Lines of "ls -l" -----------------------------------------------------------------------

// "drwxr-xr-x", perhaps with a mark of further rights behind it.
bool are_rights(std::string_view word) {
    constexpr std::string_view kinds = "-dlbcps";
    constexpr std::string_view rights = "-rwxsStTlL";
    return word.size() >= 10 && kinds.find(word.front()) != std::string_view::npos &&
           word.substr(1, 9).find_first_not_of(rights) == std::string_view::npos;
}

Long attributes_of_rights(std::string_view rights) {
    Long attributes = rights.front() == 'd' ? file_attribute::directory : file_attribute::archive;
    if (rights.front() != 'l' && rights.substr(1, 9).find('w') == std::string_view::npos) {
        attributes |= file_attribute::read_only;
    }
    return attributes;
}

// "Nov 21 20:18 name", "Nov 21 2023 name" or "2023-11-21 20:18 name" behind the size; false for
// anything else. A day that its month has not got is still a time, if none that counts. `rest`
// becomes what follows the time.
bool read_moment(std::string_view& rest, Date now, Moment& moment) {
    const std::string_view first = taken_word(rest);
    const std::string_view second = taken_word(rest);
    if (first.size() == 10 && first[4] == '-' && first[7] == '-') {
        moment.year = number_of<std::int32_t>(first.substr(0, 4)).value_or(0);
        moment.month = number_of<std::int32_t>(first.substr(5, 2)).value_or(0);
        moment.day = number_of<std::int32_t>(first.substr(8, 2)).value_or(0);
        return is_day(moment) && read_clock(second.substr(0, 5), moment);
    }
    const std::string_view third = taken_word(rest);
    moment.month = month_of(first);
    moment.day = number_of<std::int32_t>(second).value_or(0);
    if (moment.month == 0 || moment.day < 1 || moment.day > 31) {
        return false;
    }
    if (read_clock(third, moment)) {
        moment.year = year_before(moment, now);
        return true;
    }
    moment.hour = moment.minute = 0;
    moment.year = number_of<std::int32_t>(third).value_or(0);
    return moment.year != 0;
}

// What stands behind the rights and the count of links, from the size on.
struct Tail {
    std::uint64_t size = 0;
    Moment moment;
    std::string_view name;
};

// Owner and group may be one word, two or, with blanks in them, more: the size is the first number
// that a time follows.
std::optional<Tail> dated_tail(std::string_view rest, Date now) {
    constexpr int most_words = 8;
    for (int i = 0; i < most_words && !rest.empty(); ++i) {
        Tail tail;
        const auto size = number_of<std::uint64_t>(taken_word(rest));
        std::string_view after = rest;
        if (size && read_moment(after, now, tail.moment)) {
            tail.size = *size;
            tail.name = after.substr(std::min<std::size_t>(after.size(), 1));
            return tail;
        }
    }
    return std::nullopt;
}

// Without a time the size is the word in its usual place, or one before where a group is not told.
std::optional<Tail> undated_tail(std::string_view rest) {
    static_cast<void>(taken_word(rest));  // links
    static_cast<void>(taken_word(rest));  // owner
    const auto early_size = number_of<std::uint64_t>(taken_word(rest));
    std::string_view after = rest;
    const auto size = number_of<std::uint64_t>(taken_word(after));
    if (size && after.starts_with(' ')) {
        return Tail{*size, {}, after.substr(1)};
    }
    if (early_size && rest.starts_with(' ')) {
        return Tail{*early_size, {}, rest.substr(1)};
    }
    return std::nullopt;
}

}  // namespace

bool Entry::is_folder() const noexcept {
    return (attributes & file_attribute::directory) != 0;
}

std::optional<Entry> unix_entry(std::string_view line, Date now) {
    std::string_view rest = line;
    const std::string_view rights = taken_word(rest);
    if (line.starts_with(' ') || !are_rights(rights)) {
        return std::nullopt;
    }
    std::optional<Tail> tail = dated_tail(rest, now);
    if (!tail) {
        tail = undated_tail(rest);
    }
    if (!tail) {
        return std::nullopt;
    }
    if (rights.front() == 'l') {
        tail->name = tail->name.substr(0, tail->name.find(" -> "));
    }
    Entry entry;
    entry.attributes = attributes_of_rights(rights);
    entry.size = entry.is_folder() ? 0 : tail->size;
    entry.written = time_of(tail->moment);
    return finished(std::move(entry), tail->name);
}

// ---- Lines of a Windows server --------------------------------------------------------------

namespace {

// "02-21-24", "02-21-2024" or "2024-02-21".
bool read_windows_day(std::string_view word, Moment& moment) {
    const std::size_t first = word.find('-');
    const std::size_t second = word.find('-', std::min(word.size(), first + 1));
    if (first == std::string_view::npos || second == std::string_view::npos) {
        return false;
    }
    const auto a = number_of<std::int32_t>(word.substr(0, first));
    const auto b = number_of<std::int32_t>(word.substr(first + 1, second - first - 1));
    const auto c = number_of<std::int32_t>(word.substr(second + 1));
    if (!a || !b || !c) {
        return false;
    }
    constexpr std::int32_t first_year_of_1900s = 70;  // of those written with two digits
    if (first == 4) {
        moment.year = *a;
        moment.month = *b;
        moment.day = *c;
    } else {
        moment.month = *a;
        moment.day = *b;
        const bool is_short = word.size() - second == 3;
        moment.year = is_short ? *c + (*c < first_year_of_1900s ? 2000 : 1900) : *c;
    }
    return is_day(moment);
}

// "01:05PM" or "13:05".
bool read_windows_clock(std::string_view word, Moment& moment) {
    const bool has_half = word.size() > 2 && upper_ascii(word.back()) == 'M';
    if (!has_half) {
        return read_clock(word, moment);
    }
    const char half = upper_ascii(word[word.size() - 2]);
    if ((half != 'A' && half != 'P') || !read_clock(word.substr(0, word.size() - 2), moment) ||
        moment.hour < 1 || moment.hour > 12) {
        return false;
    }
    moment.hour = moment.hour % 12 + (half == 'P' ? 12 : 0);
    return true;
}

// Digits with the commas that part them.
std::optional<std::uint64_t> grouped_number(std::string_view word) {
    std::string digits(word);
    std::erase(digits, ',');
    return number_of<std::uint64_t>(digits);
}

bool is_windows_folder(std::string_view word) {
    constexpr std::array<std::string_view, 3> folders = {"<DIR>", "<JUNCTION>", "<SYMLINKD>"};
    return std::ranges::any_of(folders,
                               [&](std::string_view mark) { return is_same_word(word, mark); });
}

}  // namespace

std::optional<Entry> windows_entry(std::string_view line) {
    Moment moment;
    if (!read_windows_day(taken_word(line), moment) ||
        !read_windows_clock(taken_word(line), moment)) {
        return std::nullopt;
    }
    const std::string_view third = taken_word(line);
    const bool is_folder = is_windows_folder(third);
    const std::optional<std::uint64_t> size = is_folder ? 0 : grouped_number(third);
    if (!size) {
        return std::nullopt;
    }
    Entry entry;
    entry.attributes = is_folder ? file_attribute::directory : file_attribute::archive;
    entry.size = *size;
    entry.written = time_of(moment);
    line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
    return finished(std::move(entry), line);
}

// ---- Facts ----------------------------------------------------------------------------------

namespace {

// "20241121201805.123", UTC. Hundreds of nanoseconds are what the record holds; 0 where it is none.
std::int64_t time_of_fact(std::string_view value) {
    constexpr std::size_t length = 14;
    if (value.size() < length || !std::all_of(value.begin(), value.begin() + length, is_digit)) {
        return 0;
    }
    const auto part = [&](std::size_t from, std::size_t count) {
        return number_of<std::int32_t>(value.substr(from, count)).value_or(0);
    };
    std::int64_t time =
        time_of({part(0, 4), part(4, 2), part(6, 2), part(8, 2), part(10, 2), part(12, 2)});
    if (time != 0 && value.size() > length && value[length] == '.') {
        std::int64_t unit = units_per_second / 10;
        for (const char digit : value.substr(length + 1)) {
            time += is_digit(digit) ? (digit - '0') * unit : 0;
            unit /= 10;
        }
    }
    return time;
}

// Whether nothing may be written: to a file, or into a folder.
bool is_read_only(std::string_view perm, bool is_folder) {
    const std::string_view writing = is_folder ? "cmpCMP" : "awAW";
    return perm.find_first_of(writing) == std::string_view::npos;
}

struct Facts {
    std::string_view type = "file";
    std::optional<std::string_view> perm;
    Entry entry;
    bool is_good = true;
};

void take_fact(std::string_view name, std::string_view value, Facts& facts) {
    if (is_same_word(name, "type")) {
        facts.type = value;
    } else if (is_same_word(name, "size")) {
        const auto size = number_of<std::uint64_t>(value);
        facts.is_good = facts.is_good && size.has_value();
        facts.entry.size = size.value_or(0);
    } else if (is_same_word(name, "modify")) {
        facts.entry.written = time_of_fact(value);
    } else if (is_same_word(name, "perm")) {
        facts.perm = value;
    }
}

}  // namespace

std::optional<Entry> machine_entry(std::string_view line) {
    const std::size_t blank = line.find(' ');
    if (blank == std::string_view::npos) {
        return std::nullopt;
    }
    Facts facts;
    for (std::string_view rest = line.substr(0, blank); !rest.empty();) {
        const std::string_view fact = rest.substr(0, rest.find(';'));
        rest.remove_prefix(std::min(rest.size(), fact.size() + 1));
        const std::size_t sign = fact.find('=');
        if (sign == std::string_view::npos) {
            return std::nullopt;  // an answer to another question
        }
        take_fact(fact.substr(0, sign), fact.substr(sign + 1), facts);
    }
    if (!facts.is_good || is_same_word(facts.type, "cdir") || is_same_word(facts.type, "pdir")) {
        return std::nullopt;
    }
    const bool is_folder = is_same_word(facts.type, "dir");
    facts.entry.attributes = is_folder ? file_attribute::directory : file_attribute::archive;
    if (is_folder) {
        facts.entry.size = 0;
    }
    if (facts.perm && is_read_only(*facts.perm, is_folder)) {
        facts.entry.attributes |= file_attribute::read_only;
    }
    return finished(std::move(facts.entry), line.substr(blank + 1));
}

// ---- Whole listings -------------------------------------------------------------------------

Listing listing_of(std::string_view text, Date now) {
    Listing listing;
    while (!text.empty()) {
        const std::string_view line = taken_line(text);
        if (std::optional<Entry> entry = unix_entry(line, now)) {
            listing.entries.push_back(std::move(*entry));
        } else if (std::optional<Entry> other = windows_entry(line)) {
            listing.entries.push_back(std::move(*other));
            listing.ignores_case = true;
        }
    }
    return listing;
}

Listing machine_listing_of(std::string_view text) {
    Listing listing;
    while (!text.empty()) {
        if (std::optional<Entry> entry = machine_entry(taken_line(text))) {
            listing.entries.push_back(std::move(*entry));
        }
    }
    return listing;
}

WIN32_FIND_DATA find_data_of(const Entry& entry) {
    constexpr int half = 32;
    WIN32_FIND_DATA data;
    data.dwFileAttributes = entry.attributes;
    data.ftLastWriteTime = {wrap32(entry.written), wrap32(entry.written >> half)};
    data.nFileSizeHigh = wrap32(static_cast<std::int64_t>(entry.size >> half));
    data.nFileSizeLow = wrap32(static_cast<std::int64_t>(entry.size));
    std::copy_n(entry.name.begin(), std::min(entry.name.size(), data.cFileName.size()),
                data.cFileName.begin());
    return data;
}

}  // namespace kvarta16::posix
