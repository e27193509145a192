// The search for files on real folders, and the times of the platform.
#include <algorithm>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <platform/posix_fixture.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/find_files.h>
#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

namespace fs = std::filesystem;
using testing_support::as_another_user;
using testing_support::CurrentFolder;
using testing_support::Environment;
using testing_support::open_descriptors;
using testing_support::touch;
using testing_support::write_file;

using Names = std::vector<std::string>;

std::string name_of(const WIN32_FIND_DATA& data) {
    const StringView whole(data.cFileName.data(), data.cFileName.size());
    return to_utf8(whole.substr(0, whole.find(u'\0')));
}

std::int64_t units(const FILETIME& time) {
    return (static_cast<std::int64_t>(time.dwHighDateTime) << 32) |
           static_cast<std::int64_t>(static_cast<std::uint32_t>(time.dwLowDateTime));
}

FILETIME time_of(std::int64_t all) {
    return {wrap32(all), wrap32(all >> 32)};
}

// A record that no search leaves behind.
WIN32_FIND_DATA untouched() {
    WIN32_FIND_DATA data;
    data.dwFileAttributes = 12345;
    data.cFileName[0] = u'x';
    return data;
}

class PosixFind : public testing_support::PosixDrive {
  protected:
    // What a search delivers, in its order.
    [[nodiscard]] std::vector<WIN32_FIND_DATA> found(StringView name) {
        std::vector<WIN32_FIND_DATA> entries;
        WIN32_FIND_DATA data = untouched();
        const Long handle = find.FindFirstFileA(name, data);
        if (handle == INVALID_HANDLE_VALUE) {
            EXPECT_EQ(data, untouched());
            return entries;
        }
        do {
            entries.push_back(data);
        } while (find.FindNextFileA(handle, data) != 0);
        EXPECT_EQ(data, entries.back());
        EXPECT_NE(find.FindClose(handle), 0);
        return entries;
    }
    [[nodiscard]] Names names(StringView name) {
        Names all;
        for (const WIN32_FIND_DATA& data : found(name)) {
            all.push_back(name_of(data));
        }
        return all;
    }
    [[nodiscard]] Names sorted(StringView name) {
        Names all = names(name);
        std::sort(all.begin(), all.end());
        return all;
    }
    [[nodiscard]] WIN32_FIND_DATA only(StringView name) {
        const auto entries = found(name);
        EXPECT_EQ(entries.size(), 1U) << to_utf8(name);
        return entries.empty() ? WIN32_FIND_DATA{} : entries.front();
    }

    FindFiles& find = *posix_platform().find_files;
};

// ---- Which names ----------------------------------------------------------------------------

TEST_F(PosixFind, EveryNameInTheOrderOfTheSystem) {
    fs::create_directory(c + "/wiele");
    for (int i = 0; i < 200; ++i) {
        touch(c + "/wiele/" + std::to_string(i * 7919 % 200) + (i % 3 == 0 ? ".txt" : ""));
    }
    Names expected;
    DIR* const folder_handle = ::opendir((c + "/wiele").c_str());
    while (const dirent* const entry = ::readdir(folder_handle)) {
        expected.emplace_back(entry->d_name);
    }
    ::closedir(folder_handle);
    ASSERT_EQ(expected.size(), 202U);
    EXPECT_EQ(names(u"C:\\wiele\\*.*"), expected);
    EXPECT_EQ(names(u"c:/WIELE/*"), expected);
    std::erase_if(expected, [](const std::string& name) { return !name.ends_with(".txt"); });
    EXPECT_EQ(names(u"C:\\wiele\\*.TXT"), expected);
}

TEST_F(PosixFind, PatternsAndNames) {
    struct FindCase {
        StringView name;
        Names names;
    };
    touch(c + "/Dane/日本語.txt");
    touch(c + "/Dane/FIRMA.mdb");
    const FindCase cases[] = {
        {u"C:\\*.*", {"Dane", "dane2"}},  // a root has no dots
        {u"C:*", {"Dane", "dane2"}},
        {u"C:\\dane?", {"Dane", "dane2"}},
        {u"C:\\dane", {"Dane"}},
        {u"C:\\Dane\\.", {"Dane"}},
        {u"C:\\Dane\\..\\dane2", {"dane2"}},
        {u"C:\\DANE\\*.*", {".", "..", "FIRMA.mdb", "firma.mdb", "Żółw.txt", "日本語.txt"}},
        {u"C:\\DANE\\*.", {".", ".."}},
        {u"C:\\DANE\\*.mdb", {"FIRMA.mdb", "firma.mdb"}},
        {u"C:\\DANE\\ż*", {"Żółw.txt"}},
        {u"C:\\DANE\\日*", {"日本語.txt"}},
        {u"C:\\Dane\\firma.mdb", {"firma.mdb"}},  // the exact name first
        {u"C:\\Dane\\FIRMA.mdb", {"FIRMA.mdb"}},
        {u"C:\\Dane\\Firma.mdb", {"FIRMA.mdb"}},
        {u"C:\\Dane\\ŻÓŁW.TXT", {"Żółw.txt"}},
        {u"C:\\Dane\\*.zip", {}},
        {u"C:\\Dane\\nie ma", {}},
        {u"C:\\Dane\\", {}},
        {u"C:\\nie ma\\*.*", {}},
        {u"C:\\Dane\\firma.mdb\\*.*", {}},
        {u"C:\\Da*\\firma.mdb", {}},
        {u"C:\\", {}},
        {u"C:", {}},
        {u"D:\\*.*", {}},
        {u"\\\\serwer\\*.*", {}},
        {u"", {}},
        {StringView(u"C:\\Dane\\\0*", 10), {}},
        {u"C:\\Dane\\\xD83D*", {}},
    };
    for (const FindCase& each : cases) {
        EXPECT_EQ(sorted(each.name), each.names) << to_utf8(each.name);
    }
}

TEST_F(PosixFind, FromTheCurrentDirectory) {
    const CurrentFolder current(c + "/Dane");
    const Names all = {".", "..", "firma.mdb", "Żółw.txt"};
    EXPECT_EQ(sorted(u"*.*"), all);
    EXPECT_EQ(sorted(u"FIRMA.*"), Names{"firma.mdb"});
    EXPECT_EQ(sorted(u"..\\D*"), (Names{"Dane", "dane2"}));
}

TEST_F(PosixFind, TheRootOfDriveZHasNoDots) {
    const Names all = sorted(u"Z:\\*.*");
    EXPECT_FALSE(std::ranges::binary_search(all, "."));
    EXPECT_FALSE(std::ranges::binary_search(all, ".."));
    EXPECT_TRUE(std::ranges::binary_search(all, "proc"));
}

TEST_F(PosixFind, LongNames) {
    const std::string name(255, 'x');
    touch(c + "/Dane/" + name);
    EXPECT_EQ(names(u"C:\\Dane\\xx*"), Names{name});
    EXPECT_EQ(only(u"C:\\Dane\\xx*").cFileName[255], u'\0');
}

// ---- What is told of them -------------------------------------------------------------------

TEST_F(PosixFind, AttributesAreThoseOfGetAttr) {
    touch(c + "/.hidden");
    fs::create_directory(c + "/.folder");
    touch(c + "/locked");
    ::chmod((c + "/locked").c_str(), 0444);
    ::mkfifo((c + "/pipe").c_str(), 0600);
    fs::create_symlink("Dane", c + "/do folderu");
    fs::create_symlink("locked", c + "/do pliku");
    const std::map<std::string, Long> expected = {
        {".hidden", 34}, {".folder", 18},    {"locked", 33},   {"pipe", 32},
        {"Dane", 16},    {"do folderu", 16}, {"do pliku", 33}, {"dane2", 16},
    };
    std::map<std::string, Long> told;
    for (const WIN32_FIND_DATA& data : found(u"C:\\*")) {
        told[name_of(data)] = data.dwFileAttributes;
        EXPECT_EQ(data.dwFileAttributes,
                  posix_platform().files->GetAttr(u"C:\\" + from_utf8(name_of(data))));
    }
    EXPECT_EQ(told, expected);
    for (const WIN32_FIND_DATA& data : found(u"C:\\.folder\\*")) {
        EXPECT_EQ(data.dwFileAttributes, 16) << name_of(data);  // the dots, which are not hidden
    }
}

TEST_F(PosixFind, ALinkThatLeadsNowhereIsListed) {
    fs::create_symlink("nowhere", c + "/Dane/dangling");
    for (const StringView name : {u"C:\\Dane\\dang*", u"C:\\Dane\\DANGLING"}) {
        const WIN32_FIND_DATA data = only(name);
        EXPECT_EQ(name_of(data), "dangling");
        EXPECT_EQ(data.dwFileAttributes & file_attribute::directory, 0);
        EXPECT_EQ(data.nFileSizeLow, 0);
        EXPECT_GT(units(data.ftLastWriteTime), 0);
    }
}

TEST_F(PosixFind, Sizes) {
    struct SizeCase {
        std::uintmax_t size;
        Long high;
        Long low;
    };
    const SizeCase cases[] = {
        {0, 0, 0},
        {1, 0, 1},
        {2'147'483'647, 0, 2'147'483'647},
        {2'147'483'648, 0, std::numeric_limits<Long>::min()},
        {4'294'967'295, 0, -1},
        {4'294'967'296, 1, 0},
        {10'000'000'000, 2, 1'410'065'408},
    };
    for (const SizeCase& each : cases) {
        fs::resize_file(c + "/Dane/firma.mdb", each.size);
        for (const StringView name : {u"C:\\Dane\\firma.mdb", u"C:\\Dane\\f*"}) {
            const WIN32_FIND_DATA data = only(name);
            EXPECT_EQ(data.nFileSizeHigh, each.high) << each.size;
            EXPECT_EQ(data.nFileSizeLow, each.low) << each.size;
        }
    }
    EXPECT_EQ(only(u"C:\\Dane").nFileSizeLow, 0);
    fs::create_symlink("Dane/firma.mdb", c + "/link");
    EXPECT_EQ(only(u"C:\\link").nFileSizeHigh, 2);
    const WIN32_FIND_DATA data = only(u"C:\\link");
    EXPECT_EQ(data.cAlternateFileName, WIN32_FIND_DATA{}.cAlternateFileName);
    EXPECT_EQ(data.dwReserved0, 0);
    EXPECT_EQ(data.dwReserved1, 0);
}

TEST_F(PosixFind, Times) {
    const std::string path = c + "/Dane/firma.mdb";
    // 2001-02-03 04:05:06.7891234 and 1999-12-31 23:59:59 UTC.
    const timespec times[] = {{946684799, 0}, {981173106, 789123456}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    const WIN32_FIND_DATA data = only(u"C:\\Dane\\firma.mdb");
    EXPECT_EQ(units(data.ftLastAccessTime), (946684799 + 11644473600) * 10'000'000);
    EXPECT_EQ(units(data.ftLastWriteTime), (981173106 + 11644473600) * 10'000'000 + 7'891'234);
    // Made now, or else the earliest of the other times.
    struct statx status {};
    ASSERT_EQ(::statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME, &status), 0);
    const bool has_creation = (status.stx_mask & STATX_BTIME) != 0;
    const std::int64_t made =
        (status.stx_btime.tv_sec + 11644473600) * 10'000'000 + status.stx_btime.tv_nsec / 100;
    EXPECT_EQ(units(data.ftCreationTime), has_creation ? made : units(data.ftLastAccessTime));
    // Before 1970 and before 1601.
    const timespec early[] = {{-1, 500'000'000}, {-11644473601, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), early, 0), 0);
    struct stat kept {};
    ::stat(path.c_str(), &kept);
    const WIN32_FIND_DATA old = only(u"C:\\Dane\\firma.mdb");
    EXPECT_EQ(units(old.ftLastAccessTime), 11644473600 * 10'000'000 - 5'000'000);
    if (kept.st_mtim.tv_sec == -11644473601) {
        EXPECT_EQ(units(old.ftLastWriteTime), 0);
    }
}

TEST_F(PosixFind, AFolderThatMayBeListedAndNotEntered) {
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0755);
    ::chmod((c + "/Dane").c_str(), 0744);
    EXPECT_EQ(as_another_user([&] {
                  const auto all = found(u"C:\\Dane\\*.mdb");
                  return all.size() == 1 && name_of(all[0]) == "firma.mdb" &&
                         all[0].dwFileAttributes == 32 && units(all[0].ftLastWriteTime) == 0;
              }),
              0);
    ::chmod((c + "/Dane").c_str(), 0700);
    EXPECT_EQ(as_another_user([&] { return found(u"C:\\Dane\\*.*").empty(); }), 0);
    ::chmod((c + "/Dane").c_str(), 0755);
}

// ---- Handles --------------------------------------------------------------------------------

TEST_F(PosixFind, HandlesAreGivenAgain) {
    WIN32_FIND_DATA data;
    const Long first = find.FindFirstFileA(u"C:\\Dane\\*.*", data);
    const Long second = find.FindFirstFileA(u"C:\\*.*", data);
    EXPECT_GT(first, 0);
    EXPECT_GT(second, first);
    EXPECT_NE(find.FindClose(first), 0);
    EXPECT_EQ(find.FindClose(first), 0);
    data = untouched();
    EXPECT_EQ(find.FindNextFileA(first, data), 0);
    EXPECT_EQ(find.FindFirstFileA(u"C:\\Dane\\f*", data), first);
    EXPECT_NE(find.FindNextFileA(second, data), 0);
    EXPECT_NE(find.FindClose(second), 0);
    EXPECT_NE(find.FindClose(first), 0);
    data = untouched();
    for (const Long handle : {0, -1, 1, 2, 999'999, std::numeric_limits<Long>::min()}) {
        EXPECT_EQ(find.FindNextFileA(handle, data), 0);
        EXPECT_EQ(find.FindClose(handle), 0);
    }
    EXPECT_EQ(data, untouched());
}

TEST_F(PosixFind, NoDescriptorIsLeft) {
    const int before = open_descriptors();
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(names(u"C:\\Dane\\*.*").size(), 4U);
        EXPECT_TRUE(names(u"C:\\Dane\\*.zip").empty());
        EXPECT_TRUE(names(u"C:\\nie ma\\*.*").empty());
        EXPECT_EQ(names(u"C:\\Dane\\firma.mdb").size(), 1U);
    }
    EXPECT_EQ(open_descriptors(), before);
}

// What goes while a search runs is not delivered, or not again.
TEST_F(PosixFind, AFolderThatChanges) {
    WIN32_FIND_DATA data;
    const Long handle = find.FindFirstFileA(u"C:\\Dane\\*.*", data);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    fs::remove_all(c + "/Dane");
    int more = 0;
    while (find.FindNextFileA(handle, data) != 0) {
        const std::string name = name_of(data);
        EXPECT_TRUE(name == "." || name == "..") << name;
        ++more;
    }
    EXPECT_LE(more, 2);
    EXPECT_NE(find.FindClose(handle), 0);
}

// Far from a time that grows by the square; of the processor, whatever else the machine does.
TEST_F(PosixFind, ManyEntries) {
    constexpr int count = 100'000;
    fs::create_directory(c + "/wiele");
    const int made = ::open((c + "/wiele").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < count; ++i) {
        ::close(::openat(made, ("plik" + std::to_string(i)).c_str(), O_CREAT | O_WRONLY, 0644));
    }
    ::close(made);
    const std::clock_t begin = std::clock();
    EXPECT_EQ(found(u"C:\\wiele\\*.*").size(), count + 2U);
    EXPECT_LT(static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC, 5.0);
}

// ---- Paths ----------------------------------------------------------------------------------

TEST_F(PosixFind, FullPathNames) {
    String buffer;
    EXPECT_EQ(find.GetFullPathNameA(u"C:\\Dane\\.\\..\\x.txt", 0, buffer), 9);
    EXPECT_EQ(buffer, u"");
    buffer = String(12, u'-');
    EXPECT_EQ(find.GetFullPathNameA(u"C:\\x.txt", 8, buffer), 9);  // no room for the zero
    EXPECT_EQ(buffer, String(12, u'-'));
    EXPECT_EQ(find.GetFullPathNameA(u"C:/x.txt", 9, buffer), 8);
    EXPECT_EQ(buffer, String(u"C:\\x.txt\0---", 12));
    buffer = String(8, u'-');
    EXPECT_EQ(find.GetFullPathNameA(u"C:\\x.txt", 9, buffer), 8);  // no place for the zero
    EXPECT_EQ(buffer, u"C:\\x.txt");
    EXPECT_EQ(find.GetFullPathNameA(u"C:\\x.txt", -1, buffer), 9);
    EXPECT_EQ(find.GetFullPathNameA(u"", 100, buffer), 0);
    EXPECT_EQ(find.GetFullPathNameA(u"\\\\serwer\\x", 100, buffer), 0);
    EXPECT_EQ(find.GetFullPathNameA(StringView(u"C:\0", 3), 100, buffer), 0);
    EXPECT_EQ(buffer, u"C:\\x.txt");
    const std::string gone = c + "/gone";
    fs::create_directory(gone);
    const CurrentFolder current(gone);
    fs::remove(gone);
    EXPECT_EQ(find.GetFullPathNameA(u"x", 100, buffer), 0);
    EXPECT_EQ(find.FindFirstFileA(u"*.*", *std::make_unique<WIN32_FIND_DATA>()),
              INVALID_HANDLE_VALUE);
}

TEST_F(PosixFind, ShortPathNames) {
    String buffer(20, u'-');
    EXPECT_EQ(find.GetShortPathNameA(u"C:\\DANE\\", 0, buffer), 9);
    EXPECT_EQ(buffer, String(20, u'-'));
    EXPECT_EQ(find.GetShortPathNameA(u"C:\\DANE\\", 9, buffer), 8);
    EXPECT_EQ(buffer, String(u"C:\\DANE\\\0-----------", 20));
    EXPECT_EQ(find.GetShortPathNameA(u"C:\\nie ma", 100, buffer), 0);
    EXPECT_EQ(find.GetShortPathNameA(u"C:\\nie ma\\x", 100, buffer), 0);
    EXPECT_EQ(find.GetShortPathNameA(u"", 100, buffer), 0);
}

// ---- Times ----------------------------------------------------------------------------------

// A time zone for a test; the machine's own afterwards.
class Zone {
  public:
    explicit Zone(const char* name) : variable_(std::in_place, "TZ", name) { ::tzset(); }
    ~Zone() {
        variable_.reset();
        ::tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;
    Zone(Zone&&) = delete;
    Zone& operator=(Zone&&) = delete;

  private:
    std::optional<Environment> variable_;
};

constexpr std::int64_t hour = 36'000'000'000;
constexpr std::int64_t units_1970 = 11644473600 * 10'000'000;

TEST_F(PosixFind, LocalTimesFollowTheRuleOfTheirMoment) {
    const Zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    struct ZoneCase {
        std::int64_t seconds;
        std::int64_t hours;
    };
    const ZoneCase cases[] = {
        {981173106, 1},   // February 2001
        {995000000, 2},   // July 2001
        {985481999, 1},   // the last second before the summer time of 2001
        {985482000, 2},   // its first
        {1004230799, 2},  // its last
        {1004230800, 1},
    };
    for (const ZoneCase& each : cases) {
        const std::int64_t all = each.seconds * 10'000'000 + units_1970 + 7;
        FILETIME local;
        EXPECT_EQ(find.FileTimeToLocalFileTime(time_of(all), local), 1);
        EXPECT_EQ(units(local), all + each.hours * hour) << each.seconds;
    }
}

TEST_F(PosixFind, TimesThatHaveNoLocalTime) {
    const FILETIME before{11, 22};
    FILETIME local = before;
    {
        const Zone west("EST5");
        EXPECT_EQ(find.FileTimeToLocalFileTime(time_of(5 * hour - 1), local), 0);
        EXPECT_EQ(local, before);
        EXPECT_EQ(find.FileTimeToLocalFileTime(time_of(5 * hour), local), 1);
        EXPECT_EQ(units(local), 0);
    }
    local = before;
    const Zone east("CET-1");
    constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(find.FileTimeToLocalFileTime(time_of(last - hour + 1), local), 0);
    EXPECT_EQ(find.FileTimeToLocalFileTime(time_of(-1), local), 0);
    EXPECT_EQ(
        find.FileTimeToLocalFileTime(time_of(std::numeric_limits<std::int64_t>::min()), local), 0);
    EXPECT_EQ(local, before);
    EXPECT_EQ(find.FileTimeToLocalFileTime(time_of(last - hour), local), 1);
    EXPECT_EQ(units(local), last);
    EXPECT_EQ(find.FileTimeToLocalFileTime(time_of(0), local), 1);
    EXPECT_EQ(units(local), hour);
}

TEST_F(PosixFind, CalendarParts) {
    struct PartsCase {
        std::int64_t all;
        SYSTEMTIME parts;
    };
    const PartsCase cases[] = {
        {0, {1601, 1, 1, 1, 0, 0, 0, 0}},
        {units_1970, {1970, 1, 4, 1, 0, 0, 0, 0}},
        {(981173106 * 10'000'000LL) + units_1970 + 7'899'999, {2001, 2, 6, 3, 4, 5, 6, 789}},
        {(951868799 * 10'000'000LL) + units_1970 + 9'999'999, {2000, 2, 2, 29, 23, 59, 59, 999}},
        {std::numeric_limits<std::int64_t>::max(), {30828, 9, 4, 14, 2, 48, 5, 477}},
    };
    for (const PartsCase& each : cases) {
        SYSTEMTIME parts;
        EXPECT_EQ(find.FileTimeToSystemTime(time_of(each.all), parts), 1);
        EXPECT_EQ(parts, each.parts) << each.all << ": " << parts.wYear << '-' << parts.wMonth
                                     << '-' << parts.wDay << " (" << parts.wDayOfWeek << ')';
    }
    SYSTEMTIME parts;
    parts.wYear = 7;
    EXPECT_EQ(find.FileTimeToSystemTime(time_of(-1), parts), 0);
    EXPECT_EQ(find.FileTimeToSystemTime({-1, -1}, parts), 0);
    EXPECT_EQ(parts.wYear, 7);
}

}  // namespace
}  // namespace kvarta16
