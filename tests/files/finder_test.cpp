// The finder: its order, its fields, what it asks of the platform, and what a failing platform
// makes of it.
#include <kvarta16/files/CFileFind.h>

#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

using testing_support::file_time;
using testing_support::MemoryFindFiles;
using testing_support::units_of;

// The names in the order of FindNextFile.
Lines names_of(CFileFind& find, StringView pattern = u"*.*") {
    Lines names;
    for (bool more = static_cast<bool>(find.FindFile(pattern)); more;
         more = static_cast<bool>(find.FindNextFile())) {
        names.push_back(to_utf8(find.GetFileName()));
    }
    return names;
}

Lines found(FakePlatform& fake, const std::vector<StringView>& delivered) {
    fake.find_files.entries.clear();
    for (const StringView name : delivered) {
        fake.find_files.add(name);
    }
    CFileFind find;
    return names_of(find);
}

// ---- Order ----------------------------------------------------------------------------------

TEST(Finder, LastDeliveredStaysLast) {
    FakePlatform fake;
    EXPECT_EQ(found(fake, {u"b", u"c", u"a"}), (Lines{"b", "c", "a"}));
    EXPECT_EQ(found(fake, {u"c", u"b", u"a"}), (Lines{"b", "c", "a"}));
    EXPECT_EQ(found(fake, {u"b", u"a"}), (Lines{"b", "a"}));
    EXPECT_EQ(found(fake, {u"x"}), Lines{"x"});
    EXPECT_EQ(found(fake, {u"..", u"z", u"ą", u"a", u"Z", u".", u"m"}),
              (Lines{".", "..", "Z", "a", "z", "ą", "m"}));
    EXPECT_EQ(found(fake, {}), Lines{});
}

TEST(Finder, ControlCharactersComeBeforeTheEndOfAName) {
    FakePlatform fake;
    EXPECT_EQ(found(fake, {u"a", u"a\u0001", u"a!", u"z"}), (Lines{"a\u0001", "a", "a!", "z"}));
}

// Files that differ in their sizes alone show which of equal names is which.
std::vector<Long> sizes_of(CFileFind& find) {
    std::vector<Long> sizes;
    for (bool more = static_cast<bool>(find.FindFile(u"")); more;
         more = static_cast<bool>(find.FindNextFile())) {
        sizes.push_back(find.GetLength());
    }
    return sizes;
}

TEST(Finder, EqualNamesAreSwappedAsTheSortSwapsThem) {
    FakePlatform fake;
    for (const StringView name : {u"b", u"a", u"b", u"a", u"b", u"a"}) {
        auto& entry = fake.find_files.add(name);
        entry.nFileSizeLow = static_cast<Long>(fake.find_files.entries.size());
    }
    CFileFind find;
    // b1 a2 b3 a4 b5 | a6: b1 changes places with b5, b5 with a4, then a4 with a2.
    EXPECT_EQ(sizes_of(find), (std::vector<Long>{2, 4, 3, 5, 1, 6}));
}

// SORTUJ by itself sorts the sorted list again: equal names turn about, the entry that was moved
// last is the current one, and the place stays.
TEST(Finder, SortujByItself) {
    FakePlatform fake;
    for (const StringView name : {u"a", u"b", u"b", u"c"}) {
        auto& entry = fake.find_files.add(name);
        entry.nFileSizeLow = static_cast<Long>(fake.find_files.entries.size());
    }
    CFileFind find;
    EXPECT_EQ(sizes_of(find), (std::vector<Long>{1, 3, 2, 4}));
    EXPECT_TRUE(find.FindFile(u""));
    EXPECT_EQ(find.GetLength(), 1);
    find.SORTUJ();
    EXPECT_EQ(find.GetLength(), 3);  // moved from the first place of the two to the second
    EXPECT_TRUE(find.FindNextFile());
    EXPECT_EQ(find.GetLength(), 2);
    EXPECT_TRUE(find.FindNextFile());
    EXPECT_EQ(find.GetLength(), 3);
    EXPECT_TRUE(find.FindNextFile());
    EXPECT_FALSE(find.FindNextFile());
}

TEST(Finder, SortujWithNothingToSwapLeavesTheCurrentEntry) {
    FakePlatform fake;
    CFileFind find;
    find.SORTUJ();
    EXPECT_EQ(show(find.GetFileName()), show(u""));
    EXPECT_EQ(found(fake, {u"a", u"b", u"c"}), (Lines{"a", "b", "c"}));
    EXPECT_TRUE(find.FindFile(u""));
    EXPECT_TRUE(find.FindNextFile());
    find.SORTUJ();
    EXPECT_EQ(show(find.GetFileName()), show(u"b"));
    EXPECT_TRUE(find.FindNextFile());
    EXPECT_EQ(show(find.GetFileName()), show(u"c"));
}

// ---- Walking --------------------------------------------------------------------------------

TEST(Finder, EndOfTheListChangesNothing) {
    FakePlatform fake;
    fake.find_files.add(u"a");
    fake.find_files.add(u"b");
    CFileFind find;
    EXPECT_EQ(find.FindNextFile().raw, 0);
    EXPECT_EQ(find.FindFile(u"").raw, -1);
    EXPECT_EQ(find.FindNextFile().raw, -1);
    EXPECT_EQ(find.FindNextFile().raw, 0);
    EXPECT_EQ(find.FindNextFile().raw, 0);
    EXPECT_EQ(show(find.GetFileName()), show(u"b"));
}

TEST(Finder, FindCloseKeepsTheCurrentEntry) {
    FakePlatform fake;
    fake.find_files.add(u"a");
    fake.find_files.add(u"b");
    fake.find_files.add(u"c");
    CFileFind find;
    EXPECT_TRUE(find.FindFile(u""));
    EXPECT_TRUE(find.FindNextFile());
    find.FindClose();
    EXPECT_EQ(show(find.GetFileName()), show(u"b"));
    EXPECT_FALSE(find.FindNextFile());
    EXPECT_EQ(show(find.GetFileName()), show(u"b"));
    find.SORTUJ();
    EXPECT_EQ(show(find.GetFileName()), show(u"b"));
    EXPECT_EQ(names_of(find), (Lines{"a", "b", "c"}));
}

TEST(Finder, NothingFound) {
    FakePlatform fake;
    fake.find_files.add(u"a").nFileSizeLow = 5;
    CFileFind find;
    EXPECT_TRUE(find.FindFile(u""));
    fake.find_files.entries.clear();
    EXPECT_EQ(find.FindFile(u"x*").raw, 0);
    EXPECT_EQ(find.FindNextFile().raw, 0);
    EXPECT_EQ(show(find.GetFileName()), show(u""));
    EXPECT_EQ(find.GetLength(), 0);
    EXPECT_TRUE(fake.boxes.shown.empty());
}

TEST(Finder, NewOneAnswersWithNothing) {
    const FakePlatform fake;
    CFileFind find;
    EXPECT_EQ(find.GetAttributes(), 0);
    EXPECT_FALSE(find.IsDirectory());
    EXPECT_FALSE(find.IsDots());
    for (const String& text : {find.GetRoot(), find.GetFileTitle(), find.GetFilePath(),
                               find.GetFileName(), find.GetShortPath(), find.GetShortName()}) {
        EXPECT_EQ(show(text), show(u""));
    }
    EXPECT_EQ(show(find.GetFileURL()), show(u"file://"));
    EXPECT_EQ(find.GetLength(), 0);
    EXPECT_EQ(notation(find.GetLength64()), "Long 0");
    EXPECT_EQ(find.GetCreationDateHigh(), 0);
    EXPECT_EQ(find.GetCreationDate(), MakeDate(1601, 1, 1));
    EXPECT_FALSE(find.FindNextFile());
    find.FindClose();
}

TEST(Finder, EachSearchBeginsAnew) {
    FakePlatform fake;
    CFileFind find;
    fake.find_files.add(u"a");
    EXPECT_EQ(names_of(find), Lines{"a"});
    fake.find_files.add(u"b");
    EXPECT_EQ(names_of(find), (Lines{"a", "b"}));
    fake.find_files.entries.resize(1);
    EXPECT_EQ(names_of(find), Lines{"a"});
}

// ---- What is asked of the platform ----------------------------------------------------------

TEST(Finder, Patterns) {
    FakePlatform fake;
    CFileFind find;
    for (const StringView name : {u"", u"c:\\dane\\", u"c:\\dane", u"*.txt", u"\\", u"c:/"}) {
        EXPECT_FALSE(find.FindFile(name));
    }
    EXPECT_EQ(fake.find_files.searched, (std::vector<String>{u"*.*", u"c:\\dane\\*.*", u"c:\\dane",
                                                             u"*.txt", u"\\*.*", u"c:/"}));
    EXPECT_TRUE(fake.find_files.path_calls.empty());
    EXPECT_TRUE(fake.find_files.closed.empty());
}

TEST(Finder, TakesTheRootInTwoCallsAndTheShortRootInNone) {
    FakePlatform fake;
    fake.find_files.add(u"a");
    CFileFind find;
    EXPECT_TRUE(find.FindFile(u"*.txt"));
    EXPECT_EQ(fake.find_files.path_calls,
              (Lines{"GetFullPathNameA(*.txt; 0)", "GetFullPathNameA(*.txt; 14)",
                     "GetShortPathNameA(C:\\dane\\; 0)", "GetShortPathNameA(C:\\dane\\; 0)"}));
}

TEST(Finder, RootIsEmptyAfterTheSearch) {
    FakePlatform fake;
    fake.find_files.add(u" a.txt ", file_attribute::archive, u" A.TXT ");
    CFileFind find;
    EXPECT_TRUE(find.FindFile(u"c:\\dane\\*.txt"));
    EXPECT_EQ(show(find.GetRoot()), show(u""));
    EXPECT_EQ(show(find.GetFilePath()), show(u"a.txt"));
    EXPECT_EQ(show(find.GetFileURL()), show(u"file://a.txt"));
    EXPECT_EQ(show(find.GetShortPath()), show(u"A.TXT"));
    EXPECT_EQ(show(find.GetFileName()), show(u"a.txt"));
    EXPECT_EQ(show(find.GetShortName()), show(u"A.TXT"));
}

TEST(Finder, ClosesEachSearchOnce) {
    FakePlatform fake;
    fake.find_files.add(u"a");
    fake.find_files.add(u"b");
    {
        CFileFind find;
        EXPECT_TRUE(find.FindFile(u"1"));
        EXPECT_TRUE(fake.find_files.open.empty());
        EXPECT_TRUE(find.FindFile(u"2"));
        EXPECT_TRUE(find.FindNextFile());
        find.FindClose();
    }
    EXPECT_EQ(fake.find_files.closed, (std::vector<Long>{7, 8}));
    EXPECT_TRUE(fake.find_files.open.empty());
}

// ---- Fields ---------------------------------------------------------------------------------

TEST(Finder, Attributes) {
    using Test = Boolean (CFileFind::*)() const;
    const std::pair<Test, Long> tests[] = {
        {&CFileFind::IsArchived, 32},   {&CFileFind::IsNormal, 128},
        {&CFileFind::IsTemporary, 256}, {&CFileFind::IsHidden, 2},
        {&CFileFind::IsSystem, 4},      {&CFileFind::IsCompressed, 2048},
        {&CFileFind::IsDirectory, 16},  {&CFileFind::IsReadOnly, 1},
    };
    FakePlatform fake;
    fake.find_files.add(u"a");
    CFileFind find;
    for (int bit = 0; bit < 32; ++bit) {
        const Long one = wrap32(std::int64_t{1} << bit);
        for (const Long attributes : {one, ~one}) {
            fake.find_files.entries[0].dwFileAttributes = attributes;
            ASSERT_TRUE(find.FindFile(u""));
            EXPECT_EQ(find.GetAttributes(), attributes);
            for (const auto& [test, wanted] : tests) {
                EXPECT_EQ((find.*test)().raw, (attributes & wanted) != 0 ? -1 : 0) << bit;
            }
        }
    }
}

TEST(Finder, MatchesMask) {
    constexpr Long top_bit = std::numeric_limits<Long>::min();
    struct Case {
        Long attributes;
        Long mask;
        bool matches;
    };
    constexpr Case cases[] = {
        {16, 16, true},         {16, 0, false},       {16, 32, false},           {48, 32, true},
        {48, -1, true},         {top_bit, -1, false}, {top_bit, top_bit, false}, {-1, -1, false},
        {-1, 0x7FFFFFFF, true}, {0, -1, false},
    };
    FakePlatform fake;
    fake.find_files.add(u"a");
    CFileFind find;
    for (const Case& test : cases) {
        fake.find_files.entries[0].dwFileAttributes = test.attributes;
        ASSERT_TRUE(find.FindFile(u""));
        EXPECT_EQ(find.MatchesMask(test.mask).raw, test.matches ? -1 : 0)
            << test.attributes << " " << test.mask;
    }
}

TEST(Finder, IsDots) {
    struct Case {
        StringView name;
        Long attributes;
        bool is_dots;
    };
    constexpr Case cases[] = {
        {u".", 16, true},    {u"..", 16, true},   {u"..", 32, false}, {u".", 0, false},
        {u"...", 16, false}, {u" .. ", 48, true}, {u".a", 16, false}, {u"", 16, false},
    };
    FakePlatform fake;
    CFileFind find;
    for (const Case& test : cases) {
        fake.find_files.entries.clear();
        fake.find_files.add(test.name, test.attributes);
        ASSERT_TRUE(find.FindFile(u""));
        EXPECT_EQ(find.IsDots().raw, test.is_dots ? -1 : 0) << show(test.name);
    }
}

TEST(Finder, GetFileTitle) {
    constexpr std::pair<StringView, StringView> cases[] = {
        {u"a.tar.gz", u"a.tar"}, {u"plik", u"plik"}, {u".cfg", u""},     {u"plik.", u"plik"},
        {u"a .txt", u"a"},       {u"..", u"."},      {u" a b ", u"a b"}, {u"a. b", u"a"},
    };
    FakePlatform fake;
    CFileFind find;
    for (const auto& [name, title] : cases) {
        fake.find_files.entries.clear();
        fake.find_files.add(name);
        ASSERT_TRUE(find.FindFile(u""));
        EXPECT_EQ(show(find.GetFileTitle()), show(title)) << show(name);
    }
}

TEST(Finder, NamesThatFillTheirPlace) {
    FakePlatform fake;
    fake.find_files.add(String(260, u'n'), 0, String(14, u's'));
    CFileFind find;
    ASSERT_TRUE(find.FindFile(u""));
    EXPECT_EQ(show(find.GetFileName()), show(String(260, u'n')));
    EXPECT_EQ(show(find.GetShortName()), show(String(14, u's')));
}

// What stands behind the ending zero is no part of a name.
TEST(Finder, NamesEndAtTheirZero) {
    FakePlatform fake;
    auto& entry = fake.find_files.add(u"abcdef", 0, u"ABCDEF");
    entry.cFileName[3] = u'\0';
    entry.cAlternateFileName[2] = u'\0';
    CFileFind find;
    ASSERT_TRUE(find.FindFile(u""));
    EXPECT_EQ(show(find.GetFileName()), show(u"abc"));
    EXPECT_EQ(show(find.GetShortName()), show(u"AB"));
}

TEST(Finder, Sizes) {
    struct Case {
        Long high;
        Long low;
        const char* size;
    };
    constexpr Case cases[] = {
        {0, 0, "Long 0"},
        {0, 2147483647, "Long 2147483647"},
        {0, std::numeric_limits<Long>::min(), "Long -2147483648"},  // from 2 GiB on
        {0, -1, "Long -1"},
        {1, 0, "Double 2e+32"},
        {-1, 0, "Double -2e+32"},
        {3, 5, "Double 6e+32"},
    };
    FakePlatform fake;
    fake.find_files.add(u"a");
    CFileFind find;
    for (const Case& test : cases) {
        fake.find_files.entries[0].nFileSizeHigh = test.high;
        fake.find_files.entries[0].nFileSizeLow = test.low;
        ASSERT_TRUE(find.FindFile(u""));
        EXPECT_EQ(find.GetLength(), test.low);
        EXPECT_EQ(notation(find.GetLength64()), notation(parse_value(test.size)));
    }
}

// ---- Times ----------------------------------------------------------------------------------

TEST(Finder, TimesAreLocalAndToTheSecond) {
    FakePlatform fake;
    fake.find_files.offset = 2 * 3600 * testing_support::units_per_second;
    auto& entry = fake.find_files.add(u"a");
    entry.ftCreationTime = file_time(2024, 5, 17, 43200, 9'999'999);
    entry.ftLastAccessTime = file_time(2024, 12, 31, 22 * 3600 + 61);
    entry.ftLastWriteTime = file_time(1999, 2, 28, 86399);
    CFileFind find;
    ASSERT_TRUE(find.FindFile(u""));
    EXPECT_EQ(find.GetCreationDate(), (Date{45429 + 14 / 24.0}));
    EXPECT_EQ(find.GetLastAccessTime(), (Date{45658 + 61 / 86400.0}));
    EXPECT_EQ(find.GetLastWriteTime(), (Date{36220 + 7199 / 86400.0}));
    const FILETIME creation = file_time(2024, 5, 17, 50400, 9'999'999);
    EXPECT_EQ(find.GetCreationDateHigh(), creation.dwHighDateTime);
    EXPECT_EQ(find.GetCreationDateLow(), creation.dwLowDateTime);
    const FILETIME access = file_time(2025, 1, 1, 61);
    EXPECT_EQ(find.GetLastAccessTimeHigh(), access.dwHighDateTime);
    EXPECT_EQ(find.GetLastAccessTimeLow(), access.dwLowDateTime);
    const FILETIME write = file_time(1999, 3, 1, 7199);
    EXPECT_EQ(find.GetLastWriteTimeHigh(), write.dwHighDateTime);
    EXPECT_EQ(find.GetLastWriteTimeLow(), write.dwLowDateTime);
}

TEST(Finder, TimeThatIsNoneIsDayOne) {
    FakePlatform fake;
    auto& entry = fake.find_files.add(u"a");
    entry.ftCreationTime = {0, -1};
    entry.ftLastWriteTime = file_time(2024, 5, 17);
    CFileFind find;
    ASSERT_TRUE(find.FindFile(u""));
    EXPECT_EQ(find.GetCreationDate(), Date{1});
    EXPECT_EQ(find.GetCreationDateHigh(), -1);  // as the system has it: it is no time to convert
    EXPECT_EQ(find.GetLastWriteTime(), Date{45429});
}

// A search whose times are beyond the dates.
TEST(Finder, TimeBeyondTheDatesIsAFailure) {
    class Far final : public ForwardingFindFiles {
      public:
        using ForwardingFindFiles::ForwardingFindFiles;
        Long FileTimeToSystemTime(const FILETIME&, SYSTEMTIME& parts) override {
            parts = {10000, 1, 6, 1, 0, 0, 0, 0};
            return 1;
        }
    };
    FakePlatform fake;
    Far far(fake.find_files);
    Platform operations = fake.operations;
    operations.find_files = &far;
    const ScopedPlatform scope(operations);
    const CFileFind find;
    EXPECT_EQ(frame_tests::failure_of([&] { return find.GetCreationDate(); }), 5);
}

// ---- A platform that fails ------------------------------------------------------------------

TEST(Finder, ScanThatBreaksOffEndsTheListWithoutASign) {
    for (Long n = 1; n <= 4; ++n) {
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            FaultyPlatform host({{"FindNextFileA", n, span}});
            for (const StringView name : {u"d", u"c", u"b", u"a"}) {
                host.fake.find_files.add(name);
            }
            CFileFind find;
            const Lines expected[] = {{"d"}, {"d", "c"}, {"c", "d", "b"}, {"b", "c", "d", "a"}};
            EXPECT_EQ(names_of(find), expected[n - 1]);
            EXPECT_TRUE(host.fake.find_files.open.empty());
            EXPECT_TRUE(host.fake.boxes.shown.empty());
        }
    }
}

TEST(Finder, OtherCallsThatFail) {
    for (const char* operation : {"GetFullPathNameA", "GetShortPathNameA", "FindFirstFileA",
                                  "FileTimeToLocalFileTime", "FileTimeToSystemTime", "FindClose"}) {
        for (Long n = 1; n <= 3; ++n) {
            for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
                SCOPED_TRACE(std::string(operation) + "@" + std::to_string(n));
                FaultyPlatform host({{operation, n, span}});
                host.fake.find_files.offset = testing_support::units_per_day;
                for (const StringView name : {u"b", u"a"}) {
                    host.fake.find_files.add(name).ftCreationTime = file_time(2024, 5, 17);
                }
                CFileFind find;
                const bool finds_nothing =
                    std::string_view(operation) == "FindFirstFileA" && n == 1;
                EXPECT_EQ(names_of(find), finds_nothing ? Lines{} : (Lines{"b", "a"}));
                EXPECT_EQ(show(find.GetRoot()), show(u""));
                EXPECT_TRUE(host.fake.boxes.shown.empty());
            }
        }
    }
}

TEST(Finder, TimeThatIsNotConvertedStays) {
    FaultyPlatform host({{"FileTimeToLocalFileTime", 1, FaultSpan::Once}});
    host.fake.find_files.offset = testing_support::units_per_day;
    auto& entry = host.fake.find_files.add(u"a");
    entry.ftCreationTime = file_time(2024, 5, 17);
    entry.ftLastWriteTime = file_time(2024, 5, 17);
    CFileFind find;
    ASSERT_TRUE(find.FindFile(u""));
    EXPECT_EQ(find.GetCreationDate(), Date{45429});
    EXPECT_EQ(find.GetLastWriteTime(), Date{45430});
    host.plan->fail_at("FileTimeToSystemTime", 1, FaultSpan::Once, 5);
    EXPECT_EQ(find.GetLastWriteTime(), Date{1});
    EXPECT_EQ(find.GetLastWriteTime(), Date{45430});
}

TEST(Finder, HundredThousandEntries) {
    FakePlatform fake;
    Random random(84);
    for (int i = 0; i < 100'000; ++i) {
        fake.find_files.add(wide("plik_" + random.digits(6) + ".txt"));
    }
    CFileFind find;
    const Lines names = names_of(find);
    ASSERT_EQ(names.size(), 100'000U);
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end() - 1));
}

}  // namespace
}  // namespace kvarta16::files_tests
