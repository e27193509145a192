// Windows paths and the files behind them, on real folders.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <platform/posix_fixture.h>
#include <support/sqlite_files.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

namespace fs = std::filesystem;
using testing_support::as_another_user;
using testing_support::caught;
using testing_support::CurrentFolder;
using testing_support::Environment;
using testing_support::on_root_drive;
using testing_support::touch;

class PosixPaths : public testing_support::PosixDrive {
  protected:
    [[nodiscard]] static std::string native(StringView path) { return posix::native_path(path); }
    [[nodiscard]] static Long failure(StringView path) {
        return caught([&] { static_cast<void>(posix::native_path(path)); }).number;
    }
};

struct PathCase {
    StringView path;
    const char* native;  // behind the folder of drive C:
};

TEST_F(PosixPaths, OnADrive) {
    const PathCase cases[] = {
        {u"C:\\Dane\\firma.mdb", "/Dane/firma.mdb"},
        {u"c:/Dane/firma.mdb", "/Dane/firma.mdb"},
        {u"C:\\Dane/firma.mdb", "/Dane/firma.mdb"},
        {u"C:\\\\Dane\\\\firma.mdb", "/Dane/firma.mdb"},
        {u"C:Dane\\firma.mdb", "/Dane/firma.mdb"},  // relative to the drive's root
        {u"C:\\Dane\\", "/Dane/"},
        {u"C:\\Dane\\\\", "/Dane/"},
        {u"C:\\Dane\\firma.mdb\\", "/Dane/firma.mdb/"},
        {u"C:\\", "/"},
        {u"C:", ""},
        {u"C:\\.", ""},
        {u"C:\\.\\Dane\\.", "/Dane"},
        {u"C:\\Dane\\..\\dane2", "/dane2"},
        {u"C:\\nie ma\\..\\Dane", "/Dane"},
        {u"C:\\..\\..\\Dane", "/Dane"},
        {u"C:\\Dane\\..\\..\\..\\etc\\passwd", "/etc/passwd"},
        {u"C:..\\..", ""},
        {u"C:\\a:b", "/a:b"},
        {u"C:\\a\"b 'c'\n$(d)", "/a\"b 'c'\n$(d)"},
    };
    for (const PathCase& each : cases) {
        EXPECT_EQ(native(each.path), c + each.native) << to_utf8(each.path);
    }
}

TEST_F(PosixPaths, NamesAreMatchedExactlyFirstAndWithoutCaseSecond) {
    const PathCase cases[] = {
        {u"C:\\DANE\\FIRMA.MDB", "/Dane/firma.mdb"},
        {u"C:\\dane\\ŻÓŁW.TXT", "/Dane/Żółw.txt"},
        {u"C:\\dANE\\żółw.txt", "/Dane/Żółw.txt"},
        {u"C:\\dane\\zolw.txt", "/Dane/zolw.txt"},
        {u"C:\\DANE\\", "/Dane/"},
        {u"C:\\DANE\\Nowa.MDB", "/Dane/Nowa.MDB"},  // the folder as it is, the new name as given
        {u"C:\\Nie Ma\\FIRMA.MDB", "/Nie Ma/FIRMA.MDB"},
        {u"C:\\DANE\\FIRMA.MDB\\X", "/Dane/firma.mdb/X"},
    };
    for (const PathCase& each : cases) {
        EXPECT_EQ(native(each.path), c + each.native) << to_utf8(each.path);
    }
    touch(c + "/Dane/FIRMA.mdb");
    touch(c + "/Dane/FIRMA.MDB");
    EXPECT_EQ(native(u"C:\\dane\\firma.mdb"), c + "/Dane/firma.mdb");
    EXPECT_EQ(native(u"C:\\dane\\FIRMA.mdb"), c + "/Dane/FIRMA.mdb");
    EXPECT_EQ(native(u"C:\\dane\\Firma.mdb"), c + "/Dane/FIRMA.MDB");  // the first by its bytes
    fs::create_directory(c + "/DANE");
    EXPECT_EQ(native(u"C:\\DANE\\firma.mdb"), c + "/DANE/firma.mdb");
}

TEST_F(PosixPaths, FolderOfADriveIsFoundInEitherCase) {
    fs::create_directory(folder / "d");
    EXPECT_EQ(native(u"D:\\x"), folder / "d/x");
    EXPECT_EQ(native(u"d:\\x"), folder / "d/x");
    fs::create_directory(folder / "D");
    EXPECT_EQ(native(u"d:\\x"), folder / "D/x");
}

TEST_F(PosixPaths, DriveZIsTheRoot) {
    EXPECT_EQ(native(u"Z:\\"), "/");
    EXPECT_EQ(native(u"z:/"), "/");
    EXPECT_EQ(native(on_root_drive(c + "/Dane")), c + "/Dane");
    EXPECT_EQ(native(on_root_drive(c + "/DANE/firma.MDB")), c + "/Dane/firma.mdb");
    EXPECT_EQ(native(u"Z:\\..\\..\\"), "/");
    EXPECT_EQ(native(from_utf8(c)), c);
    EXPECT_EQ(native(u"\\"), "/");
}

TEST_F(PosixPaths, WithoutADriveFromTheCurrentDirectory) {
    const CurrentFolder current(c + "/Dane");
    const std::string here = fs::current_path();
    EXPECT_EQ(native(u"firma.mdb"), here + "/firma.mdb");
    EXPECT_EQ(native(u"FIRMA.MDB"), here + "/firma.mdb");
    EXPECT_EQ(native(u"Z:firma.mdb"), here + "/firma.mdb");
    EXPECT_EQ(native(u"."), here);
    EXPECT_EQ(native(u"Z:"), here);
    EXPECT_EQ(native(u"nowy\\"), here + "/nowy/");
    EXPECT_EQ(native(u"..\\DANE2"), c + "/dane2");
    EXPECT_EQ(native(u".."), c);
    String above;
    for (int i = 0; i < 100; ++i) {
        above += u"../";
    }
    EXPECT_EQ(native(above), "/");
    EXPECT_EQ(native(above + u"etc"), "/etc");
}

TEST_F(PosixPaths, CurrentDirectoryOfAnyNameIsTakenAsItIs) {
    const std::string odd = c + "/a\\b\xFF";
    fs::create_directory(odd);
    touch(odd + "/x");
    const CurrentFolder current(odd);
    EXPECT_EQ(native(u"X"), fs::current_path().string() + "/x");
    EXPECT_EQ(native(u"..\\Dane"), c + "/Dane");
}

TEST_F(PosixPaths, CurrentDirectoryThatIsGone) {
    const std::string gone = c + "/gone";
    fs::create_directory(gone);
    const CurrentFolder current(gone);
    fs::remove(gone);
    EXPECT_EQ(failure(u"x"), error::path_not_found);
    EXPECT_EQ(native(u"C:\\Dane"), c + "/Dane");
}

TEST_F(PosixPaths, NamesThatAreNoUtf8AreFoundByWhatTheyReadAs) {
    touch(c + "/a\xB9.txt");
    EXPECT_EQ(native(u"C:\\a\uFFFD.txt"), c + "/a\xB9.txt");
}

TEST_F(PosixPaths, WhatIsNoPath) {
    EXPECT_EQ(failure(u""), error::bad_file_name);
    EXPECT_EQ(failure(String({u'C', u':', u'\\', u'a', u'\0', u'b'})), error::bad_file_name);
    EXPECT_EQ(failure(String(1, u'\0')), error::bad_file_name);
    EXPECT_EQ(failure(String({u'C', u':', u'\\', u'\xD83D'})), error::bad_file_name);
    EXPECT_EQ(failure(String({u'C', u':', u'\\', u'\xDE00', u'\xD83D'})), error::bad_file_name);
    EXPECT_EQ(failure(String({u'\xD83D', u'x'})), error::bad_file_name);
    EXPECT_EQ(native(u"C:\\\U0001F600"), c + "/\xF0\x9F\x98\x80");
}

TEST_F(PosixPaths, DrivesThatAreNone) {
    for (const StringView path : {u"D:\\x", u"a:", u"Y:\\", u"\\\\serwer\\udzial\\plik.txt",
                                  u"//serwer/udzial", u"\\\\", u"/\\x"}) {
        EXPECT_EQ(failure(path), error::path_not_found) << to_utf8(path);
    }
    touch(folder / "E");
    EXPECT_EQ(failure(u"E:\\x"), error::path_not_found);
    // No drive letters.
    const CurrentFolder current(c);
    EXPECT_EQ(native(u"1:\\x"), c + "/1:/x");
    EXPECT_EQ(native(u"ą:x"), c + "/ą:x");
    EXPECT_EQ(native(u":x"), c + "/:x");
    EXPECT_EQ(native(u"[:x"), c + "/[:x");
}

TEST_F(PosixPaths, HostsMapDrives) {
    fs::create_directory(folder / "elsewhere");
    EXPECT_TRUE(posix::map_drive(u'q', folder / "elsewhere"));
    EXPECT_EQ(native(u"Q:\\x"), folder / "elsewhere/x");
    EXPECT_EQ(native(u"q:\\..\\x"), folder / "elsewhere/x");
    // A mapped drive goes before the folder of its letter.
    fs::create_directory(folder / "Q");
    EXPECT_EQ(native(u"q:\\x"), folder / "elsewhere/x");
    fs::create_directory(folder / "another");
    EXPECT_TRUE(posix::map_drive(u'Q', folder / "another"));
    EXPECT_EQ(native(u"q:\\x"), folder / "another/x");
    fs::remove(folder / "another");
    EXPECT_EQ(failure(u"q:\\x"), error::path_not_found);
    {
        const CurrentFolder current(folder.path());
        EXPECT_TRUE(posix::map_drive(u'Q', "elsewhere"));
    }
    EXPECT_EQ(native(u"q:\\x"), folder / "elsewhere/x");
    for (const char16_t letter : {u'Z', u'z', u'1', u'\0', u'ą', u'[', u'@', u'`', u'{'}) {
        EXPECT_FALSE(posix::map_drive(letter, "/")) << static_cast<int>(letter);
    }
}

TEST_F(PosixPaths, DrivesDirectory) {
    fs::create_directories(folder / "data/kvarta16/drives/F");
    fs::create_directories(folder / "home/.local/share/kvarta16/drives/F");
    fs::create_directories(folder / "relative/F");
    const Environment told("KVARTA16_DRIVES", nullptr);
    const Environment home("HOME", (folder / "home").c_str());
    {
        const Environment data("XDG_DATA_HOME", (folder / "data").c_str());
        EXPECT_EQ(native(u"F:\\x"), folder / "data/kvarta16/drives/F/x");
        const Environment empty("KVARTA16_DRIVES", "");
        EXPECT_EQ(native(u"F:\\x"), folder / "data/kvarta16/drives/F/x");
    }
    for (const char* value : {static_cast<const char*>(nullptr), "", "relative"}) {
        const Environment data("XDG_DATA_HOME", value);
        EXPECT_EQ(native(u"F:\\x"), folder / "home/.local/share/kvarta16/drives/F/x");
    }
    const CurrentFolder current(folder.path());
    const Environment relative("KVARTA16_DRIVES", "relative");
    EXPECT_EQ(native(u"F:\\x"), folder / "relative/F/x");
}

// ---- Attributes and deletion ----------------------------------------------------------------

class PosixFilesTest : public PosixPaths {
  protected:
    Files& files = *posix_platform().files;
    [[nodiscard]] Long attributes(StringView path) { return files.GetAttr(path); }
    [[nodiscard]] testing_support::Caught of_attributes(StringView path) {
        return caught([&] { static_cast<void>(files.GetAttr(path)); });
    }
    [[nodiscard]] testing_support::Caught of_kill(StringView path) {
        return caught([&] { files.Kill(path); });
    }
};

TEST_F(PosixFilesTest, Attributes) {
    touch(c + "/.hidden");
    fs::create_directory(c + "/.folder");
    touch(c + "/locked");
    ::chmod((c + "/locked").c_str(), 0444);
    touch(c + "/.locked");
    ::chmod((c + "/.locked").c_str(), 0400);
    EXPECT_EQ(attributes(u"C:\\dane\\FIRMA.mdb"), 32);
    EXPECT_EQ(attributes(u"C:\\Dane"), 16);
    EXPECT_EQ(attributes(u"C:\\Dane\\"), 16);
    EXPECT_EQ(attributes(u"C:\\"), 16);
    EXPECT_EQ(attributes(u"C:\\.hidden"), 32 + 2);
    EXPECT_EQ(attributes(u"C:\\.folder"), 16 + 2);
    EXPECT_EQ(attributes(u"C:\\.folder\\"), 16 + 2);
    EXPECT_EQ(attributes(u"C:\\.folder\\.."), 16);
    EXPECT_EQ(attributes(u"C:\\locked"), 32 + 1);
    EXPECT_EQ(attributes(u"C:\\.locked"), 32 + 2 + 1);
    EXPECT_EQ(attributes(u"Z:\\") & file_attribute::directory, 16);
    ::mkfifo((c + "/pipe").c_str(), 0600);
    EXPECT_EQ(attributes(u"C:\\pipe"), 32);
}

TEST_F(PosixFilesTest, AttributesOfALinkAreThoseOfWhatItLeadsTo) {
    fs::create_symlink("Dane/firma.mdb", c + "/link");
    fs::create_symlink("Dane", c + "/.folder");
    fs::create_symlink("nowhere", c + "/dangling");
    fs::create_symlink("circle", c + "/circle");
    EXPECT_EQ(attributes(u"C:\\link"), 32);
    EXPECT_EQ(attributes(u"C:\\.folder"), 16 + 2);
    EXPECT_EQ(attributes(u"C:\\.folder\\firma.mdb"), 32);
    EXPECT_EQ(of_attributes(u"C:\\dangling").number, error::file_not_found);
    EXPECT_EQ(of_attributes(u"C:\\circle").number, error::bad_file_name);
}

TEST_F(PosixFilesTest, WhatCannotBeLookedAt) {
    const auto missing = of_attributes(u"C:\\Dane\\nie ma.mdb");
    EXPECT_EQ(missing.number, error::file_not_found);
    EXPECT_EQ(missing.text, "File not found");
    EXPECT_EQ(of_attributes(u"C:\\nie ma\\x").text, "Path not found");
    EXPECT_EQ(of_attributes(u"").text, "Bad file name or number");
    EXPECT_EQ(of_attributes(u"C:\\nie ma").number, error::file_not_found);
    EXPECT_EQ(of_attributes(u"C:\\nie ma\\").number, error::file_not_found);
    EXPECT_EQ(of_attributes(u"C:\\nie ma\\x").number, error::path_not_found);
    EXPECT_EQ(of_attributes(u"C:\\Dane\\firma.mdb\\x").number, error::path_not_found);
    EXPECT_EQ(of_attributes(u"C:\\Dane\\firma.mdb\\").number, error::path_not_found);
    EXPECT_EQ(of_attributes(u"D:\\x").number, error::path_not_found);
    EXPECT_EQ(of_attributes(u"").number, error::bad_file_name);
    EXPECT_EQ(of_attributes(u"C:\\" + String(300, u'x')).number, error::bad_file_name);
    // What deletes by wildcards would take other files with one of these names.
    std::ofstream(c + "/Dane/*.mdb") << "x";
    std::ofstream(c + "/Dane/firm?") << "x";
    for (const StringView path :
         {u"C:\\*", u"C:\\Dane\\*.mdb", u"C:\\Dane\\firm?", u"C:\\Da*\\x"}) {
        EXPECT_EQ(of_attributes(path).number, error::bad_file_name) << to_utf8(path);
    }
}

TEST_F(PosixFilesTest, KillRemovesAFile) {
    files.Kill(u"C:\\DANE\\FIRMA.MDB");
    EXPECT_FALSE(fs::exists(c + "/Dane/firma.mdb"));
    EXPECT_TRUE(fs::exists(c + "/Dane/Żółw.txt"));
    EXPECT_EQ(of_kill(u"C:\\DANE\\FIRMA.MDB").number, error::file_not_found);
}

TEST_F(PosixFilesTest, KillRefuses) {
    touch(c + "/locked");
    ::chmod((c + "/locked").c_str(), 0444);
    EXPECT_EQ(of_kill(u"C:\\locked").number, error::file_access);
    EXPECT_EQ(of_kill(u"C:\\dane2").number, error::file_access);
    EXPECT_EQ(of_kill(u"C:\\dane2\\").number, error::file_access);
    EXPECT_EQ(of_kill(u"C:\\").number, error::file_access);
    EXPECT_EQ(of_kill(u"C:\\nie ma").number, error::file_not_found);
    EXPECT_EQ(of_kill(u"C:\\nie ma\\x").number, error::path_not_found);
    EXPECT_EQ(of_kill(u"C:\\dane2\\*.*").number, error::file_not_found);
    EXPECT_EQ(of_kill(u"").number, error::bad_file_name);
    EXPECT_EQ(of_kill(String({u'C', u':', u'\\', u'x', u'\0'})).number, error::bad_file_name);
    EXPECT_TRUE(fs::exists(c + "/locked"));
    EXPECT_TRUE(fs::exists(c + "/dane2"));
    EXPECT_TRUE(fs::exists(c + "/Dane/firma.mdb"));
}

// What somebody works with does not go away under them.
TEST_F(PosixFilesTest, KillRefusesFilesInUse) {
    {
        const std::ifstream open_here(c + "/Dane/firma.mdb");
        EXPECT_EQ(of_kill(u"C:\\Dane\\firma.mdb").number, error::permission_denied);
    }
    testing_support::OtherProgram(c + "/baza.db").run("create table t (a)");
    {
        const testing_support::LockingProcess locking(c + "/baza.db", "begin immediate");
        EXPECT_EQ(of_kill(u"C:\\baza.db").number, error::permission_denied);
    }
    EXPECT_EQ(of_kill(u"C:\\Dane\\firma.mdb").number, 0);
    EXPECT_EQ(of_kill(u"C:\\baza.db").number, 0);
}

TEST_F(PosixFilesTest, KillRemovesALinkAndNotWhatItLeadsTo) {
    ::chmod((c + "/Dane/firma.mdb").c_str(), 0444);
    fs::create_symlink("Dane/firma.mdb", c + "/link");
    fs::create_symlink("Dane", c + "/folder");
    fs::create_symlink("nowhere", c + "/dangling");
    for (const char16_t* link : {u"C:\\link", u"C:\\folder", u"C:\\DANGLING"}) {
        EXPECT_EQ(of_kill(link).number, 0);
    }
    EXPECT_FALSE(fs::is_symlink(c + "/link"));
    EXPECT_FALSE(fs::is_symlink(c + "/folder"));
    EXPECT_FALSE(fs::is_symlink(c + "/dangling"));
    EXPECT_TRUE(fs::exists(c + "/Dane/firma.mdb"));
}

TEST_F(PosixFilesTest, ReadOnlyIsWhatTheCallerMayNotWrite) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can make files of others";
    }
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0777);
    const auto make = [&](const char* name, uid_t user, gid_t group, mode_t mode) {
        const std::string path = c + "/" + name;
        touch(path);
        ASSERT_EQ(::chown(path.c_str(), user, group), 0);
        ::chmod(path.c_str(), mode);
    };
    make("own", 65534, 65534, 0600);
    make("own_locked", 65534, 65534, 0466);
    make("group", 0, 65534, 0064);
    make("group_locked", 0, 65534, 0646);
    make("other", 0, 0, 0646);
    make("other_locked", 0, 0, 0664);
    EXPECT_EQ(attributes(u"C:\\group"), 32);  // the superuser may write where anybody may
    EXPECT_EQ(as_another_user([&] {
                  return attributes(u"C:\\own") == 32 && attributes(u"C:\\own_locked") == 33 &&
                         attributes(u"C:\\group") == 32 && attributes(u"C:\\group_locked") == 33 &&
                         attributes(u"C:\\other") == 32 && attributes(u"C:\\other_locked") == 33 &&
                         of_kill(u"C:\\other_locked").number == error::file_access;
              }),
              0);
    ::chmod(c.c_str(), 0755);
    EXPECT_EQ(as_another_user([&] { return of_kill(u"C:\\own").number == error::file_access; }), 0);
    EXPECT_TRUE(fs::exists(c + "/own"));
}

TEST_F(PosixFilesTest, NativePathOfTheSeamIsTheSame) {
    EXPECT_EQ(files.native_path(u"C:\\DANE\\nowa.mdb"), c + "/Dane/nowa.mdb");
}

}  // namespace
}  // namespace kvarta16
