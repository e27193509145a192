// Listings of servers, patterns and texts: without a socket.
#include <array>
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/ftp/ftp_error.h>
#include <kvarta16/platform/posix/ftp/listing.h>
#include <kvarta16/platform/posix/ftp/remote_text.h>
#include <kvarta16/platform/posix/ftp/wildcard.h>

namespace kvarta16::posix {
namespace {

constexpr Long folder = file_attribute::directory;
constexpr Long file = file_attribute::archive;
constexpr Long read_only = file_attribute::read_only;
constexpr Long hidden = file_attribute::hidden;

constexpr Date now{46347.5};  // 2026-11-21 12:00

// "yyyy-MM-dd hh:mm:ss" of a record's time; "" for none.
std::string time_text(std::int64_t time) {
    if (time == 0) {
        return "";
    }
    constexpr std::int64_t units_per_day = 864'000'000'000;
    const auto days = static_cast<std::int32_t>(time / units_per_day);
    const Civil civil = civil_of(days + day_number(1601, 1, 1));
    const auto seconds = static_cast<int>(time % units_per_day / 10'000'000);
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", civil.year,
                  civil.month, civil.day, seconds / 3600, seconds / 60 % 60, seconds % 60);
    return text.data();
}

struct LineCase {
    std::string line;
    std::string name;  // "" for a line that is left out
    Long attributes = 0;
    std::uint64_t size = 0;
    std::string written = {};
};

void expect_entry(const std::optional<Entry>& entry, const LineCase& expected) {
    ASSERT_EQ(entry.has_value(), !expected.name.empty());
    if (entry) {
        EXPECT_EQ(to_utf8(entry->name), expected.name);
        EXPECT_EQ(entry->attributes, expected.attributes);
        EXPECT_EQ(entry->size, expected.size);
        EXPECT_EQ(time_text(entry->written), expected.written);
    }
}

// ---- "ls -l" --------------------------------------------------------------------------------

const LineCase unix_lines[] = {
    {"-rw-r--r-- 1 ola users 1234 Nov 20 20:18 a.txt", "a.txt", file, 1234, "2026-11-20 20:18:00"},
    {"-rw-r--r--   1 ola      users        99 Mar  7  2019 a.txt", "a.txt", file, 99,
     "2019-03-07 00:00:00"},
    {"drwxr-xr-x 2 ola users 4096 Jan  1 00:00 dane", "dane", folder, 0, "2026-01-01 00:00:00"},
    // Without a year: tomorrow is still this year, the day behind it the last one.
    {"-rw-r--r-- 1 o g 1 Nov 22 23:59 x", "x", file, 1, "2026-11-22 23:59:00"},
    {"-rw-r--r-- 1 o g 1 Nov 23 00:00 x", "x", file, 1, "2025-11-23 00:00:00"},
    {"-rw-r--r-- 1 o g 1 Dec 31 10:00 x", "x", file, 1, "2025-12-31 10:00:00"},
    {"-rw-r--r-- 1 o g 1 Feb 29 10:00 x", "x", file, 1, "2024-02-29 10:00:00"},
    {"-rw-r--r-- 1 o g 1 Feb 29 2023 x", "x", file, 1, ""},
    {"-rw-r--r-- 1 o g 7 2024-05-17 13:45 x y", "x y", file, 7, "2024-05-17 13:45:00"},
    // Names with blanks, at their ends too; Polish letters in UTF-8 and in Windows-1250.
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 moje dane.txt", "moje dane.txt", file, 1,
     "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18  dwa  blanki ", " dwa  blanki ", file, 1,
     "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 zażółć.txt", "zażółć.txt", file, 1, "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 za\xBF\xF3\xB3\xE6.txt", "zażółć.txt", file, 1,
     "2026-11-20 20:18:00"},
    // Attributes.
    {"-r--r--r-- 1 o g 1 Nov 20 20:18 x", "x", file | read_only, 1, "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 .x", ".x", file | hidden, 1, "2026-11-20 20:18:00"},
    {"drwxrwsr-t+ 1 o g 1 Nov 20 20:18 .d", ".d", folder | hidden, 0, "2026-11-20 20:18:00"},
    {"lrwxrwxrwx 1 o g 8 Nov 20 20:18 link -> /etc/passwd", "link", file, 8, "2026-11-20 20:18:00"},
    // Owners and groups of no word, and of more than one.
    {"-rw-r--r-- 1 ola 1234 Nov 20 20:18 x", "x", file, 1234, "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 ola nowak domain users 1234 Nov 20 20:18 x", "x", file, 1234,
     "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 1000 1000 1234 Nov 20 20:18 x", "x", file, 1234, "2026-11-20 20:18:00"},
    // Sizes of 64 bits; one beyond them is none.
    {"-rw-r--r-- 1 o g 5000000000 Nov 20 20:18 x", "x", file, 5000000000, "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 o g 18446744073709551615 Nov 20 20:18 x", "x", file, 18446744073709551615U,
     "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 o g 18446744073709551616 Nov 20 20:18 x", ""},
    // Without times.
    {"-rw-r--r-- 1 ola users 1234 x y.txt", "x y.txt", file, 1234, ""},
    {"-rw-r--r-- 1 ola 1234 x y.txt", "x y.txt", file, 1234, ""},
    {"-rw-r--r-- 1 0 0 1234 x", "x", file, 1234, ""},
    // No entries, or none to be trusted.
    {"total 12", ""},
    {"", ""},
    {"ls: cannot open", ""},
    {"drwxr-xr-x 2 o g 4096 Nov 20 20:18 .", ""},
    {"drwxr-xr-x 2 o g 4096 Nov 20 20:18 ..", ""},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 ../x", ""},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 /etc/passwd", ""},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 ..\\x", ""},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 a\x01z", ""},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18", ""},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 ", ""},
    {"-rw-r--r--", ""},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 " + std::string(260, 'n'), std::string(260, 'n'), file, 1,
     "2026-11-20 20:18:00"},
    {"-rw-r--r-- 1 o g 1 Nov 20 20:18 " + std::string(261, 'n'), ""},
};

TEST(UnixListing, Lines) {
    for (const LineCase& one : unix_lines) {
        SCOPED_TRACE(one.line);
        expect_entry(unix_entry(one.line, now), one);
    }
}

// ---- Windows --------------------------------------------------------------------------------

const LineCase windows_lines[] = {
    {"02-21-24  01:05PM       <DIR>          dane", "dane", folder, 0, "2024-02-21 13:05:00"},
    {"02-21-24  12:05AM                 1234 a b.txt", "a b.txt", file, 1234,
     "2024-02-21 00:05:00"},
    {"02-21-24  12:05PM               20,123 a.txt", "a.txt", file, 20123, "2024-02-21 12:05:00"},
    {"02-21-99  11:59PM                    0 a.txt", "a.txt", file, 0, "1999-02-21 23:59:00"},
    {"02-21-69  11:59PM                    0 a.txt", "a.txt", file, 0, "2069-02-21 23:59:00"},
    {"02-21-2024  23:59           5000000000 a.txt", "a.txt", file, 5000000000,
     "2024-02-21 23:59:00"},
    {"2024-02-21  23:59                    1 a.txt", "a.txt", file, 1, "2024-02-21 23:59:00"},
    {"02-21-24  01:05PM       <JUNCTION>     j", "j", folder, 0, "2024-02-21 13:05:00"},
    {"02-21-24  01:05PM       <DIR>          ..", ""},
    {"02-30-24  01:05PM       <DIR>          dane", ""},
    {"02-21-24  13:05PM       <DIR>          dane", ""},
    {"02-21-24  00:05AM       <DIR>          dane", ""},
    {"02-21-24  01:05XM       <DIR>          dane", ""},
    {"02-21-24  01:05PM       <OTHER>        dane", ""},
    {"02-21-24  01:05PM       <DIR>", ""},
    {"02-21-24", ""},
    {"--", ""},
};

TEST(WindowsListing, Lines) {
    for (const LineCase& one : windows_lines) {
        SCOPED_TRACE(one.line);
        expect_entry(windows_entry(one.line), one);
    }
}

TEST(WindowsListing, IgnoresCase) {
    EXPECT_TRUE(listing_of("02-21-24  01:05PM  12 A.TXT\r\n", now).ignores_case);
    EXPECT_FALSE(listing_of("-rw-r--r-- 1 o g 1 Nov 20 20:18 x\r\n", now).ignores_case);
}

// ---- Facts ----------------------------------------------------------------------------------

const LineCase fact_lines[] = {
    {"type=file;size=99;modify=20240517134501; a.txt", "a.txt", file, 99, "2024-05-17 13:45:01"},
    {"Type=File;Size=99;Modify=20240517134501.123; a b.txt", "a b.txt", file, 99,
     "2024-05-17 13:45:01"},
    {"type=dir;size=4096;modify=20240517134501; dane", "dane", folder, 0, "2024-05-17 13:45:01"},
    {"type=file;perm=r;size=1; x", "x", file | read_only, 1, ""},
    {"type=file;perm=adfrw;size=1; x", "x", file, 1, ""},
    {"type=dir;perm=el; x", "x", folder | read_only, 0, ""},
    {"type=dir;perm=elcmp; .x", ".x", folder | hidden, 0, ""},
    {"type=OS.unix=slink:/etc;size=5; x", "x", file, 5, ""},
    {" x", "x", file, 0, ""},  // a server that tells no facts
    {"size=5000000000;  x", " x", file, 5000000000, ""},
    {"type=file;size=1;modify=20240230000000; x", "x", file, 1, ""},
    {"type=file;size=1;modify=2024; x", "x", file, 1, ""},
    {"type=file;size=1;create=20240517134501; x", "x", file, 1, ""},
    {"type=file;size=1;modify=20161231235960; x", "x", file, 1, "2016-12-31 23:59:59"},
    {"type=cdir; .", ""},
    {"type=pdir; ..", ""},
    {"type=cdir; dane", ""},
    {"type=dir; ..", ""},
    {"type=file;size=-1; x", ""},
    {"type=file;size=99999999999999999999; x", ""},
    {"type=file;size=1; ../../x", ""},
    {"type=file;size=1;", ""},
    {"total 12", ""},
    {"", ""},
};

TEST(MachineListing, Lines) {
    for (const LineCase& one : fact_lines) {
        SCOPED_TRACE(one.line);
        expect_entry(machine_entry(one.line), one);
    }
}

TEST(MachineListing, TimesToTheMillisecond) {
    const auto entry = machine_entry("modify=20240517134501.25; x");
    EXPECT_EQ(entry->written % 10'000'000, 2'500'000);
}

// ---- Records --------------------------------------------------------------------------------

TEST(FindData, SplitsSizeAndTime) {
    const WIN32_FIND_DATA data =
        find_data_of({u"zażółć", file, (std::uint64_t{7} << 32) + 0x89ABCDEF, 0x0123456789ABCDEF});
    EXPECT_EQ(data.nFileSizeHigh, 7);
    EXPECT_EQ(data.nFileSizeLow, wrap32(0x89ABCDEF));
    EXPECT_EQ(data.ftLastWriteTime.dwHighDateTime, 0x01234567);
    EXPECT_EQ(data.ftLastWriteTime.dwLowDateTime, wrap32(0x89ABCDEF));
    EXPECT_EQ(data.ftCreationTime, FILETIME{});
    EXPECT_EQ(data.ftLastAccessTime, FILETIME{});
    EXPECT_EQ(StringView(data.cFileName.data()), u"zażółć");
}

TEST(FindData, TheNameMayFillItsPlace) {
    const String name(260, u'n');
    const WIN32_FIND_DATA data = find_data_of({name, file, 0, 0});
    EXPECT_EQ(String(data.cFileName.begin(), data.cFileName.end()), name);
}

TEST(Listing, LinesEndWithAndWithoutCarriageReturn) {
    const Listing listing = listing_of(
        "total 2\n-rw-r--r-- 1 o g 1 Nov 20 20:18 a\n-rw-r--r-- 1 o g 2 Nov 20 20:18 b\r\n"
        "-rw-r--r-- 1 o g 3 Nov 20 20:18 c",
        now);
    ASSERT_EQ(listing.entries.size(), 3);
    EXPECT_EQ(listing.entries[0].name, u"a");
    EXPECT_EQ(listing.entries[1].name, u"b");
    EXPECT_EQ(listing.entries[2].name, u"c");
}

// ---- Patterns -------------------------------------------------------------------------------

struct MatchCase {
    StringView name;
    StringView pattern;
    bool fits;
};

const MatchCase match_cases[] = {
    {u"a.txt", u"*.txt", true}, {u"a.TXT", u"*.txt", false},
    {u"a.txt", u"?.txt", true}, {u"ab.txt", u"?.txt", false},
    {u"a.txt", u"a.txt", true}, {u"a.txt", u"", false},
    {u"", u"", true},           {u"", u"*", true},
    {u"", u"?", false},         {u"moje dane", u"moje?dane", true},
    {u"abcabd", u"*abd", true}, {u"abcabd", u"a*b*d", true},
    {u"abcabd", u"a*c", false}, {u"a*b", u"a?b", true},
    {u"a", u"a***", true},      {u"raport.txt", u"*.*", true},
};

TEST(Pattern, Matches) {
    for (const MatchCase& one : match_cases) {
        EXPECT_EQ(matches(one.name, one.pattern, false), one.fits)
            << to_utf8(one.name) << " " << to_utf8(one.pattern);
    }
    EXPECT_TRUE(matches(u"ŻÓŁĆ.TXT", u"żółć.*", true));
    EXPECT_FALSE(matches(u"ŻÓŁĆ.TXT", u"żółć.*", false));
}

TEST(Pattern, DoesNotRunAway) {
    const String name(20000, u'a');
    String pattern;
    for (int i = 0; i < 2000; ++i) {
        pattern += u"a*";
    }
    EXPECT_FALSE(matches(name, pattern + u"b", false));
}

struct PatternCase {
    StringView pattern;
    StringView folder;
    StringView name;
};

const PatternCase pattern_cases[] = {
    {u"", u"", u""},
    {u"*", u"", u""},
    {u"*.*", u"", u""},
    {u"*.txt", u"", u"*.txt"},
    {u"/a/b*", u"/a", u"b*"},
    {u"/b*", u"/", u"b*"},
    {u"a/", u"a", u""},
    {u"/", u"/", u""},
    {u"..", u"..", u""},
    {u"a/..", u"a/..", u""},
    {u"a\\b\\*.*", u"a/b", u""},
    {u"a b?c", u"", u"a b?c"},
};

TEST(Pattern, Parts) {
    for (const PatternCase& one : pattern_cases) {
        const RemotePattern parts = remote_pattern(one.pattern);
        EXPECT_EQ(to_utf8(parts.folder), to_utf8(one.folder)) << to_utf8(one.pattern);
        EXPECT_EQ(to_utf8(parts.name), to_utf8(one.name)) << to_utf8(one.pattern);
    }
}

// ---- Texts ----------------------------------------------------------------------------------

Long number_of_failure(StringView path, bool is_utf8) {
    try {
        static_cast<void>(path_to_wire(path, is_utf8));
    } catch (const FtpError& failed) {
        return failed.number();
    }
    return 0;
}

TEST(RemoteText, GoesOutInTheServersLetters) {
    EXPECT_EQ(path_to_wire(u"zażółć\\x", true), "zażółć/x");
    EXPECT_EQ(path_to_wire(u"zażółć", false), "za\xBF\xF3\xB3\xE6");
    EXPECT_EQ(from_wire("za\xBF\xF3\xB3\xE6"), u"zażółć");
    EXPECT_EQ(from_wire("zażółć"), u"zażółć");
}

TEST(RemoteText, RefusesWhatIsNoName) {
    for (const bool is_utf8 : {false, true}) {
        for (const StringView bad :
             {StringView(u""), StringView(u"a\rb"), StringView(u"a\nb"), StringView(u"a\0b", 3),
              StringView(u"a\r\nDELE b"), StringView(u"\xD800")}) {
            EXPECT_EQ(number_of_failure(bad, is_utf8), internet_error::invalid_parameter);
        }
    }
    // The code page has no such letter; with "?" for it this would be another file.
    EXPECT_EQ(number_of_failure(u"файл", false), internet_error::invalid_parameter);
    EXPECT_EQ(number_of_failure(u"файл", true), 0);
}

// ---- Anything at all ------------------------------------------------------------------------

TEST(Listing, TakesAnything) {
    std::mt19937 random(20261121);
    const std::string words[] = {"-rw-r--r--",
                                 "drwxr-xr-x",
                                 " ",
                                 "  ",
                                 "1",
                                 "4096",
                                 "Nov",
                                 "20",
                                 "20:18",
                                 "2024",
                                 "x",
                                 "type=",
                                 "file;",
                                 "size=",
                                 "modify=",
                                 ";",
                                 "=",
                                 "20240517134501",
                                 "02-21-24",
                                 "01:05PM",
                                 "<DIR>",
                                 "\r\n",
                                 "\n",
                                 "\r",
                                 std::string(1, '\0'),
                                 "\xFF",
                                 "\xC5",
                                 "->",
                                 "..",
                                 "/",
                                 "99999999999999999999",
                                 "-",
                                 ":",
                                 std::string(300, 'a')};
    std::uniform_int_distribution<std::size_t> word(0, std::size(words) - 1);
    std::uniform_int_distribution<int> count(0, 20);
    std::uniform_int_distribution<int> byte(0, 255);
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (int i = count(random); i > 0; --i) {
            text += words[word(random)];
            text += byte(random) < 40 ? std::string(1, static_cast<char>(byte(random))) : "";
        }
        for (const Listing& listing : {listing_of(text, now), machine_listing_of(text)}) {
            ASSERT_LE(listing.entries.size(), text.size());
            for (const Entry& entry : listing.entries) {
                ASSERT_FALSE(entry.name.empty());
                ASSERT_LE(entry.name.size(), 260);
                ASSERT_EQ(entry.name.find_first_of(u"/\\\r\n"), String::npos);
                ASSERT_GE(entry.written, 0);
                static_cast<void>(find_data_of(entry));
            }
        }
    }
}

}  // namespace
}  // namespace kvarta16::posix
