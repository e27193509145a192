// Wildcards and what they delete, on real folders.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <platform/posix_fixture.h>
#include <sys/stat.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/name_pattern.h>
#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

namespace fs = std::filesystem;
using testing_support::caught;
using testing_support::CurrentFolder;
using testing_support::touch;

struct PatternCase {
    StringView pattern;
    StringView name;
    bool matches;
};

TEST(NamePattern, AsThePlatformMatches) {
    const PatternCase cases[] = {
        {u"*", u"a", true},
        {u"*", u"a.b", true},
        {u"*", u".", true},
        {u"*", u"..", true},
        {u"*.*", u"a", true},  // every name
        {u"*.*", u"a.b", true},
        {u"*.*", u".a", true},
        {u"*.*", u"..", true},
        {u"*.txt", u"a.txt", true},
        {u"*.txt", u"A.TXT", true},
        {u"*.TXT", u"a.b.txt", true},
        {u"*.txt", u".txt", true},
        {u"*.txt", u"a.txt.bak", false},
        {u"*.txt", u"a.txtx", false},
        {u"*.txt", u"txt", false},
        {u"*.txt", u"..", false},
        {u"*.", u"a", true},  // the names without a dot
        {u"*.", u"a.b", false},
        {u"*.", u".", true},
        {u"*.", u"..", true},
        {u"a*.", u"abc", true},
        {u"a*.", u"abc.d", false},
        {u"*..", u"a", true},
        {u"a*", u"a", true},
        {u"a*", u"A.b.c", true},
        {u"a*", u"ba", false},
        {u"*a", u"ba", true},
        {u"*a", u"b.a", true},
        {u"*a*b*", u"xaybz", true},
        {u"*a*b*", u"xbyaz", false},
        {u"a.*", u"a", true},  // a dot before a wildcard matches the end too
        {u"a.*", u"a.", true},
        {u"a.*", u"a.b", true},
        {u"a.*", u"ab", false},
        {u"a*.*", u"abc", true},
        {u"a*.*", u"abc.d.e", true},
        {u"a.?", u"a", true},
        {u"a.?", u"a.b", true},
        {u"a.?", u"a.bc", false},
        {u"*.?", u"abc", true},
        {u"*.?", u"a.b.c", true},
        {u"?", u"a", true},
        {u"?", u"ab", false},
        {u"?", u".a", false},
        {u"???", u"a", true},  // none at the end of a name
        {u"???", u"abcd", false},
        {u"???", u".", true},
        {u"a?.txt", u"a.txt", true},  // none before a dot
        {u"a?.txt", u"ab.txt", true},
        {u"a?.txt", u"abc.txt", false},
        {u"a?b", u"a.b", false},
        {u"a?b", u"ab", false},
        {u"a?b", u"axb", true},
        {u"????????.???", u"a", true},
        {u"????????.???", u"firma.mdb", true},
        {u"????????.???", u"firma2026.mdb", false},
        {u"żó*", u"ŻÓŁW.txt", true},
        {u"zo*", u"żółw.txt", false},
        {u"?ółw*", u"Żółw", true},
        {u"[a]*", u"a", false},
        {u"[a]*", u"[a]", true},
        {u"a*", u"..", false},
    };
    for (const PatternCase& each : cases) {
        EXPECT_EQ(posix::NamePattern(each.pattern).matches(each.name), each.matches)
            << to_utf8(each.pattern) << " on " << to_utf8(each.name);
    }
}

TEST(NamePattern, Wildcards) {
    EXPECT_TRUE(posix::NamePattern::has_wildcards(u"a*"));
    EXPECT_TRUE(posix::NamePattern::has_wildcards(u"?a"));
    EXPECT_FALSE(posix::NamePattern::has_wildcards(u"a[b].c"));
    EXPECT_FALSE(posix::NamePattern::has_wildcards(u""));
}

// A pattern of many stars does not take for ever on a long name that it does not match.
TEST(NamePattern, ManyStars) {
    String pattern;
    for (int i = 0; i < 100; ++i) {
        pattern += u"*a";
    }
    EXPECT_FALSE(posix::NamePattern(pattern + u"b").matches(String(250, u'a')));
    EXPECT_TRUE(posix::NamePattern(pattern + u"*").matches(String(250, u'a')));
}

class PosixKill : public testing_support::PosixDrive {
  protected:
    Files& files = *posix_platform().files;
    [[nodiscard]] Long of_kill(StringView path) {
        return caught([&] { files.Kill(path); }).number;
    }
    [[nodiscard]] std::vector<std::string> names_in_dane() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(c + "/Dane")) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(PosixKill, RemovesFilesAndNoFolders) {
    for (const char* name : {"a.txt", ".b.TXT", "*.txt"}) {
        touch(c + "/Dane/" + name);
    }
    fs::create_directory(c + "/Dane/folder.txt");
    fs::create_symlink("folder.txt", c + "/Dane/link.txt");
    fs::create_symlink("nowhere", c + "/Dane/dangling.txt");
    fs::create_symlink("firma.mdb", c + "/Dane/file.txt");
    files.Kill(u"C:\\DANE\\*.txt");
    const std::vector<std::string> left = {"firma.mdb", "folder.txt", "link.txt"};
    EXPECT_EQ(names_in_dane(), left);
    files.Kill(u"C:/dane/*.*");
    const std::vector<std::string> folders = {"folder.txt", "link.txt"};
    EXPECT_EQ(names_in_dane(), folders);
}

TEST_F(PosixKill, NoMatch) {
    EXPECT_EQ(of_kill(u"C:\\DANE\\*.zip"), error::file_not_found);
    EXPECT_EQ(of_kill(u"C:\\*.*"), error::file_not_found);  // folders alone
    EXPECT_EQ(of_kill(u"C:\\Nie ma\\*.txt"), error::path_not_found);
    EXPECT_EQ(of_kill(u"C:\\Dane\\firma.mdb\\*.txt"), error::path_not_found);
    EXPECT_EQ(of_kill(u"D:\\*.txt"), error::path_not_found);
    EXPECT_EQ(of_kill(u"C:\\Da*\\firma.mdb"), error::bad_file_name);
    EXPECT_EQ(caught([&] { files.Kill(u"C:\\dane2\\*"); }).text, "File not found");
    EXPECT_EQ(names_in_dane().size(), 2U);
}

TEST_F(PosixKill, FromTheCurrentDirectory) {
    const CurrentFolder current(c + "/Dane");
    files.Kill(u"?IRMA.*");
    EXPECT_FALSE(fs::exists(c + "/Dane/firma.mdb"));
    touch(c + "/firma.mdb");
    files.Kill(u"C:*.mdb");
    EXPECT_FALSE(fs::exists(c + "/firma.mdb"));
}

TEST_F(PosixKill, StopsAtWhatIsRefused) {
    fs::create_directory(c + "/wiele");
    for (int i = 0; i < 20; ++i) {
        touch(c + "/wiele/" + std::to_string(i) + ".txt");
    }
    ::chmod((c + "/wiele/7.txt").c_str(), 0444);
    EXPECT_EQ(of_kill(u"C:\\wiele\\*.txt"), error::file_access);
    EXPECT_TRUE(fs::exists(c + "/wiele/7.txt"));
    ::chmod((c + "/wiele/7.txt").c_str(), 0644);
    {
        const std::ifstream open_here(c + "/wiele/7.txt");
        EXPECT_EQ(of_kill(u"C:\\wiele\\?.txt"), error::permission_denied);
        EXPECT_TRUE(fs::exists(c + "/wiele/7.txt"));
    }
    EXPECT_EQ(of_kill(u"C:\\wiele\\*.txt"), 0);
    EXPECT_TRUE(fs::is_empty(c + "/wiele"));
}

TEST_F(PosixKill, NamesThatTheCodePageHasNotGot) {
    touch(c + "/Dane/日本語.txt");
    EXPECT_EQ(files.GetAttr(u"C:\\Dane\\日本語.txt"), 32);
    files.Kill(u"C:\\Dane\\日*.txt");
    EXPECT_FALSE(fs::exists(c + "/Dane/日本語.txt"));
    touch(c + "/Dane/a\xB9.bin");  // no UTF-8
    files.Kill(u"C:\\Dane\\*.bin");
    EXPECT_FALSE(fs::exists(c + "/Dane/a\xB9.bin"));
}

TEST_F(PosixKill, FilesOfTheTableAreInUse) {
    FileTable& table = *posix_platform().file_table;
    for (const Sharing sharing : {Sharing::Default, Sharing::Shared}) {
        table.Open(u"C:\\Dane\\firma.mdb", 9, OpenMode::Random, sharing);
        EXPECT_EQ(of_kill(u"C:\\Dane\\firma.mdb"), error::permission_denied);
        EXPECT_EQ(of_kill(u"C:\\Dane\\*.mdb"), error::permission_denied);
        table.Close(9);
    }
    EXPECT_EQ(of_kill(u"C:\\Dane\\*.mdb"), 0);
}

// The attribute counts for the superuser too, and a folder's rights for everybody else.
TEST_F(PosixKill, AFolderThatMayNotBeWrittenTo) {
    ::chmod(folder.path().c_str(), 0755);
    ::chmod((c + "/Dane/firma.mdb").c_str(), 0666);
    ::chmod((c + "/Dane").c_str(), 0555);
    EXPECT_EQ(testing_support::as_another_user(
                  [&] { return of_kill(u"C:\\Dane\\*.mdb") == error::file_access; }),
              0);
    ::chmod((c + "/Dane").c_str(), 0755);
    EXPECT_TRUE(fs::exists(c + "/Dane/firma.mdb"));
}

TEST_F(PosixKill, NoDescriptorIsLeft) {
    const int before = testing_support::open_descriptors();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(of_kill(u"C:\\*.nie ma"), error::file_not_found);
        touch(c + "/x.tmp");
        EXPECT_EQ(of_kill(u"C:\\*.tmp"), 0);
    }
    EXPECT_EQ(testing_support::open_descriptors(), before);
}

}  // namespace
}  // namespace kvarta16
