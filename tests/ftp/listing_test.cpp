// clsFTP: the listing and its entries.

#include "ftp_support.h"

namespace kvarta16 {
namespace {

using namespace ftp_tests;

constexpr StringView any = u"*.*";

std::int32_t failure_of(const std::function<void()>& body) {
    try {
        body();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

// ---- Reading ----------------------------------------------------------------------------------

TEST_F(Ftp, ListsFilesWithTheSearchClosedBehind) {
    connect();
    fake.internet.add(u"a.txt", "abc");
    fake.internet.add_folder(u"faktury");
    fake.internet.add(u"b.txt", "");
    EXPECT_EQ(ftp.GetMatchingFiles().raw, -1);
    EXPECT_EQ(calls(), (Calls{"FtpFindFirstFileA(2; *.*; -2147483648; 0)",
                              "InternetFindNextFileA(3)", "InternetFindNextFileA(3)",
                              "InternetFindNextFileA(3)", "InternetCloseHandle(3)"}));
    ASSERT_EQ(ftp.lMatching, 2);
    EXPECT_EQ(ftp.Nazwa_pliku(1), u"a.txt");
    EXPECT_EQ(ftp.Rozmiar_pliku(1), 3);
    EXPECT_EQ(ftp.Nazwa_pliku(2), u"b.txt");
    EXPECT_EQ(ftp.Rozmiar_pliku(2), 0);
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Ftp, ListsDirectoriesAlone) {
    connect();
    fake.internet.add(u"a.txt", "abc");
    fake.internet.list(u"kosz", file_attribute::directory | file_attribute::hidden);
    EXPECT_EQ(ftp.GetMatchingFiles(any, true).raw, -1);
    ASSERT_EQ(ftp.lMatching, 1);
    EXPECT_EQ(ftp.Nazwa_pliku(1), u"kosz");
}

TEST_F(Ftp, IsTrueWithoutEntriesOfTheKindAskedFor) {
    connect();
    fake.internet.add(u"a.txt", "abc");
    EXPECT_EQ(ftp.GetMatchingFiles(any, true).raw, -1);
    EXPECT_EQ(ftp.lMatching, 0);
    EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.Nazwa_pliku(1)); }), 9);
}

TEST_F(Ftp, HandsThePatternOnAsText) {
    connect();
    fake.internet.add(u"a.txt", "abc");
    fake.internet.add(u"b.dat", "abcd");
    fake.internet.add(u"12", "x");
    EXPECT_TRUE(ftp.GetMatchingFiles(u"*.DAT"));
    EXPECT_EQ(ftp.Nazwa_pliku(1), u"b.dat");
    EXPECT_TRUE(ftp.GetMatchingFiles(Variant(Long{12})));
    EXPECT_EQ(ftp.Nazwa_pliku(1), u"12");
    String pattern = u"a.*";
    EXPECT_TRUE(ftp.GetMatchingFiles(Variant::reference(pattern)));
    EXPECT_EQ(ftp.Nazwa_pliku(1), u"a.txt");
    EXPECT_EQ(pattern, u"a.*");
}

TEST_F(Ftp, RecordsAPatternThatIsNoText) {
    connect();
    fake.internet.add(u"a.txt", "abc");
    ASSERT_TRUE(ftp.GetMatchingFiles());
    fake.disk.log.clear();
    EXPECT_EQ(ftp.GetMatchingFiles(Variant::null()).raw, 0);
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"Invalid use of Null", 94}));
    EXPECT_EQ(ftp.GetMatchingFiles(Variant::missing()).raw, 0);
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"Type mismatch", 13}));
    EXPECT_EQ(ftp.lMatching, 0);
    EXPECT_EQ(calls(), Calls{});
}

TEST_F(Ftp, ClosesNoHandleToo) {
    connect();
    ftp.lMatching = 7;
    EXPECT_EQ(ftp.GetMatchingFiles().raw, 0);  // an empty directory: the first search finds nothing
    EXPECT_EQ(calls(),
              (Calls{"FtpFindFirstFileA(2; *.*; -2147483648; 0)", "InternetCloseHandle(0)"}));
    EXPECT_EQ(ftp.lMatching, 0);
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Ftp, RefusesAListingWithoutAConnection) {
    EXPECT_EQ(ftp.GetMatchingFiles().raw, 0);
    EXPECT_EQ(ftp.lMatching, 0);
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Ftp, KeepsTheOtherArraysUntilAnEntryComes) {
    connect();
    WIN32_FIND_DATA& entry = fake.internet.add(u"a.txt", "abc");
    entry.ftLastAccessTime = {10, 0};
    entry.ftCreationTime = {20, 0};
    entry.ftLastWriteTime = file_time(2024, 5, 17);
    ASSERT_TRUE(ftp.GetMatchingFiles());
    ASSERT_TRUE(ftp.GetMatchingFiles(any, true));
    EXPECT_EQ(ftp.lMatching, 0);
    EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.Nazwa_pliku(1)); }), 9);
    EXPECT_EQ(ftp.Rozmiar_pliku(1), 3);
    EXPECT_EQ(ftp.Data_pliku(1), Date{10});
    EXPECT_EQ(ftp.CzasCreate_pliku(1), Date{20});
    EXPECT_EQ(ftp.CzasLastWrite_pliku(1), Date{45429});

    fake.internet.add(u"b.txt", "abcd");
    ASSERT_TRUE(ftp.GetMatchingFiles(u"b.*"));
    EXPECT_EQ(ftp.Rozmiar_pliku(1), 4);
    EXPECT_EQ(ftp.Data_pliku(1), Date{0});
    EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.Rozmiar_pliku(2)); }), 9);
}

TEST_F(Ftp, ReplacesALongerListing) {
    connect();
    for (std::size_t i = 0; i < 500; ++i) {
        fake.internet.add(from_utf8("p" + std::to_string(i)), std::string(i, 'x'));
    }
    ASSERT_TRUE(ftp.GetMatchingFiles());
    ASSERT_EQ(ftp.lMatching, 500);
    for (Long i = 1; i <= 500; ++i) {
        EXPECT_EQ(ftp.Nazwa_pliku(i), from_utf8("p" + std::to_string(i - 1)));
        EXPECT_EQ(ftp.Rozmiar_pliku(i), i - 1);
    }
    ASSERT_TRUE(ftp.GetMatchingFiles(u"p7"));
    EXPECT_EQ(ftp.lMatching, 1);
    EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.Nazwa_pliku(2)); }), 9);
}

// ---- Entries ----------------------------------------------------------------------------------

TEST_F(Ftp, RaisesForAnEntryThatThereIsNot) {
    connect();
    fake.internet.add(u"a.txt", "abc");
    ASSERT_TRUE(ftp.GetMatchingFiles());
    ftp.lMatching = 100;  // the arrays do not follow it
    for (const Long I :
         {0, 2, -1, std::numeric_limits<Long>::min(), std::numeric_limits<Long>::max()}) {
        EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.Nazwa_pliku(I)); }), 9) << I;
        EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.Rozmiar_pliku(I)); }), 9) << I;
        EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.Data_pliku(I)); }), 9) << I;
        EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.CzasCreate_pliku(I)); }), 9) << I;
        EXPECT_EQ(failure_of([&] { static_cast<void>(ftp.CzasLastWrite_pliku(I)); }), 9) << I;
    }
    EXPECT_EQ(ftp.Nazwa_pliku(1), u"a.txt");
}

TEST_F(Ftp, TakesANameUpToItsFirstZero) {
    connect();
    const String names[] = {u"z łąką i blankami .txt", String(u"a\0b", 3), String(260, u'n'),
                            String(259, u'm')};
    for (const String& name : names) {
        fake.internet.list(name);
    }
    ASSERT_TRUE(ftp.GetMatchingFiles());
    EXPECT_EQ(ftp.Nazwa_pliku(1), names[0]);
    EXPECT_EQ(ftp.Nazwa_pliku(2), u"a");
    EXPECT_EQ(ftp.Nazwa_pliku(3), names[2]);
    EXPECT_EQ(ftp.Nazwa_pliku(4), names[3]);
}

struct SizeCase {
    std::int64_t high;
    std::int64_t low;
    std::int64_t size;
};

TEST_F(Ftp, CountsTheHighHalfOfASizeAs256) {
    constexpr SizeCase cases[] = {
        {0, 300, 300},
        {1, 300, 556},
        {1, 0, 256},
        {0x00FFFFFF, 0, -256},
        {0x01000000, 5, 5},  // shifted out
        {0x00800000, 0, -2147483648LL},
        {0, 0xFFFFFFFF, -1},
        {1, 0xFFFFFFFF, 255},
        {-1, 0, -256},
        {0x007FFFFF, 256, -2147483648LL},
    };
    connect();
    for (const SizeCase& row : cases) {
        fake.internet.listing.clear();
        WIN32_FIND_DATA& entry = fake.internet.list(u"x");
        entry.nFileSizeHigh = wrap32(row.high);
        entry.nFileSizeLow = wrap32(row.low);
        ASSERT_TRUE(ftp.GetMatchingFiles());
        EXPECT_EQ(ftp.Rozmiar_pliku(1), row.size) << row.high << " " << row.low;
    }
}

// ---- Times ------------------------------------------------------------------------------------

struct HalvesCase {
    Long low;
    Long high;
    Double days;
};

TEST_F(Ftp, AddsTheHalvesOfATimeUp) {
    constexpr HalvesCase cases[] = {
        {0, 0, 0},
        {1, 2, 3},
        {-5, 5, 0},
        {2958465, 0, 2958465},  // the last day of the year 9999
        {-657434, 0, -657434},  // the first of the year 100
        {std::numeric_limits<Long>::max(), std::numeric_limits<Long>::min(), -1},
        {std::numeric_limits<Long>::min(), std::numeric_limits<Long>::min(), 0},  // wraps
    };
    connect();
    for (const HalvesCase& row : cases) {
        fake.internet.listing.clear();
        WIN32_FIND_DATA& entry = fake.internet.list(u"x");
        entry.ftLastAccessTime = {row.low, row.high};
        entry.ftCreationTime = {row.high, row.low};
        ASSERT_TRUE(ftp.GetMatchingFiles()) << row.low << " " << row.high;
        EXPECT_EQ(ftp.Data_pliku(1), Date{row.days});
        EXPECT_EQ(ftp.CzasCreate_pliku(1), Date{row.days});
        EXPECT_EQ(ftp.CzasLastWrite_pliku(1), Date{-109205});
    }
}

TEST_F(Ftp, EndsTheListingAtASumThatIsNoDate) {
    for (const bool is_access : {true, false}) {
        for (const Long sum : {2958466, -657435, 0x7FFFFFFF}) {
            fake.internet.listing.clear();
            fake.internet.add(u"dobry", "abc").ftLastAccessTime = {7, 0};
            WIN32_FIND_DATA& bad = fake.internet.add(u"zły", "abcd");
            (is_access ? bad.ftLastAccessTime : bad.ftCreationTime) = {sum, 0};
            fake.internet.add(u"dalszy", "abcde");
            fake.disk.log.clear();
            ASSERT_TRUE(ftp.Connect());
            fake.disk.log.clear();
            const Long find = ftp.FTPHwnd() + 1;
            EXPECT_EQ(ftp.GetMatchingFiles().raw, 0);
            EXPECT_EQ(recorded(), (std::pair<String, Long>{u"Overflow", 6}));
            // The server is not asked, and the search stays open.
            EXPECT_EQ(calls(), (Calls{"FtpFindFirstFileA(" + std::to_string(ftp.FTPHwnd()) +
                                          "; *.*; -2147483648; 0)",
                                      "InternetFindNextFileA(" + std::to_string(find) + ")"}));
            EXPECT_EQ(fake.internet.open_handles().back(), find);
            // What was stored stays, the front of the bad entry included.
            ASSERT_EQ(ftp.lMatching, 2);
            EXPECT_EQ(ftp.Nazwa_pliku(1), u"dobry");
            EXPECT_EQ(ftp.Data_pliku(1), Date{7});
            EXPECT_EQ(ftp.Nazwa_pliku(2), u"zły");
            EXPECT_EQ(ftp.Rozmiar_pliku(2), 4);
            EXPECT_EQ(ftp.CzasLastWrite_pliku(2), Date{0});
        }
    }
}

TEST_F(Ftp, AnEntryThatIsSkippedMayHaveAnyTime) {
    connect();
    fake.internet.add_folder(u"zły").ftLastAccessTime = {0x7FFFFFFF, 0};
    fake.internet.add(u"dobry", "abc");
    EXPECT_TRUE(ftp.GetMatchingFiles());
    EXPECT_EQ(ftp.lMatching, 1);
}

struct WriteCase {
    FILETIME time;
    std::int64_t offset;  // of the local time, in 100-nanosecond units
    Double days;
};

TEST_F(Ftp, TellsTheLastWriteInLocalTime) {
    const std::int64_t hour = 3600 * units_per_second;
    const WriteCase cases[] = {
        {file_time(2024, 5, 17), 0, 45429},
        {file_time(2024, 5, 17, 43200), 0, 45429.5},
        {file_time(2024, 5, 17, 43200), 6 * hour, 45429.75},
        {file_time(2024, 5, 17), -6 * hour, 45428.75},
        {file_time(1899, 12, 30), 0, 0},
        {file_time(1899, 12, 29, 64800), 0, -0.25},  // days of a count, not of a Date's fraction
        {{0, 0}, 0, -109205},
        {{-1, 0}, 0, 4294967295.0 / 10000 / 86400000 - 109205},  // the low half has no sign
        {file_time(9999, 12, 31), 0, 2958465},
    };
    connect();
    for (const WriteCase& row : cases) {
        fake.find_files.offset = row.offset;
        fake.internet.listing.clear();
        fake.internet.list(u"x").ftLastWriteTime = row.time;
        ASSERT_TRUE(ftp.GetMatchingFiles());
        EXPECT_EQ(ftp.CzasLastWrite_pliku(1), Date{row.days});
    }
}

TEST_F(Ftp, GoesOnBehindATimeThatTheSystemRefuses) {
    connect();
    fake.internet.response = u"226 OK";
    fake.internet.add(u"a", "abc").ftLastWriteTime = {0, -1};
    fake.internet.add(u"b", "abcd").ftLastWriteTime = file_time(2024, 5, 17);
    EXPECT_EQ(ftp.GetMatchingFiles().raw, -1);
    ASSERT_EQ(ftp.lMatching, 2);
    EXPECT_EQ(ftp.CzasLastWrite_pliku(1), Date{0});
    EXPECT_EQ(ftp.CzasLastWrite_pliku(2), Date{45429});
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"226 OK", internet_error::invalid_parameter}));
    EXPECT_EQ(calls()[1], "InternetGetLastResponseInfoA(87; 0; 0)");
    EXPECT_EQ(calls()[2], "InternetGetLastResponseInfoA(87; 6; 6)");
}

TEST_F(Ftp, EndsTheListingAtALastWriteThatIsNoDate) {
    connect();
    fake.internet.add(u"a", "abc").ftLastWriteTime = {0, 0x7FFFFFFF};  // the year 30828
    EXPECT_EQ(ftp.GetMatchingFiles().raw, 0);
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"Overflow", 6}));
    EXPECT_EQ(ftp.lMatching, 1);
}

}  // namespace
}  // namespace kvarta16
