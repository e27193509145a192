// The current drive, the directories of the drives, new folders and full paths.
#include <filesystem>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <platform/posix_fixture.h>
#include <sys/stat.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

namespace fs = std::filesystem;
using testing_support::as_another_user;
using testing_support::caught;
using testing_support::on_root_drive;

class PosixCurrent : public testing_support::PosixDrive {
  protected:
    PosixCurrent() {
        fs::create_directory(folder / "D");
        fs::create_directory(folder / "D/Kopie");
    }
    [[nodiscard]] Long of_drive(StringView path) {
        return caught([&] { files.ChDrive(path); }).number;
    }
    [[nodiscard]] Long of_folder(StringView path) {
        return caught([&] { files.ChDir(path); }).number;
    }
    [[nodiscard]] Long of_mkdir(StringView path) {
        return caught([&] { files.MkDir(path); }).number;
    }
    [[nodiscard]] std::string current() { return to_utf8(files.CurDir()); }
    static std::string real() { return fs::current_path().string(); }
    static std::string native(StringView path) { return posix::native_path(path); }

    Files& files = *posix_platform().files;
    const testing_support::CurrentDrives back;
};

TEST_F(PosixCurrent, DriveZ) {
    const std::string dane = to_utf8(on_root_drive(fs::canonical(c).string())) + "\\Dane";
    EXPECT_EQ(of_folder(on_root_drive(c + "/DANE")), 0);
    EXPECT_EQ(current(), dane);
    EXPECT_EQ(real(), fs::canonical(c + "/Dane"));
    EXPECT_EQ(of_folder(u"..\\dane2\\"), 0);
    EXPECT_EQ(real(), fs::canonical(c + "/dane2"));
    EXPECT_EQ(of_folder(u"Z:\\"), 0);
    EXPECT_EQ(current(), "Z:\\");
    EXPECT_EQ(of_folder(u".."), 0);
    EXPECT_EQ(current(), "Z:\\");
    EXPECT_EQ(of_drive(u"z:\\cokolwiek"), 0);
    EXPECT_EQ(current(), "Z:\\");
}

TEST_F(PosixCurrent, ADriveThatIsNotCurrentKeepsItsOwn) {
    const std::string begin = current();
    const std::string began = real();
    EXPECT_EQ(of_folder(u"C:\\DANE"), 0);
    EXPECT_EQ(current(), begin);  // the current drive stays
    EXPECT_EQ(real(), began);
    EXPECT_EQ(native(u"C:firma.mdb"), c + "/Dane/firma.mdb");
    EXPECT_EQ(native(u"C:..\\dane2"), c + "/dane2");
    EXPECT_EQ(native(u"C:..\\..\\..\\dane2"), c + "/dane2");
    EXPECT_EQ(native(u"C:\\firma.mdb"), c + "/firma.mdb");
    EXPECT_EQ(native(u"C:"), c + "/Dane");
    EXPECT_EQ(native(u"D:x"), folder / "D/x");
}

TEST_F(PosixCurrent, ADriveThatIsCurrent) {
    const std::string began = real();
    EXPECT_EQ(of_folder(u"C:\\DANE"), 0);
    EXPECT_EQ(of_drive(u"c:"), 0);
    EXPECT_EQ(current(), "C:\\Dane");
    EXPECT_EQ(real(), fs::canonical(c + "/Dane"));  // programs begin there
    EXPECT_EQ(native(u"FIRMA.mdb"), c + "/Dane/firma.mdb");
    EXPECT_EQ(native(u"\\x"), c + "/x");
    EXPECT_EQ(native(u"."), c + "/Dane");
    EXPECT_EQ(native(u"Z:x"), began == "/" ? "/x" : began + "/x");

    EXPECT_EQ(of_folder(u"Z:\\"), 0);
    EXPECT_EQ(real(), fs::canonical(c + "/Dane"));
    EXPECT_EQ(of_folder(u"..\\DANE2"), 0);
    EXPECT_EQ(current(), "C:\\dane2");
    EXPECT_EQ(real(), fs::canonical(c + "/dane2"));
    EXPECT_EQ(of_folder(u"\\"), 0);
    EXPECT_EQ(current(), "C:\\");
    EXPECT_EQ(native(u"x"), c + "/x");
}

TEST_F(PosixCurrent, FromDriveToDrive) {
    EXPECT_EQ(of_folder(u"D:Kopie"), 0);
    EXPECT_EQ(of_drive(u"C:"), 0);
    EXPECT_EQ(of_folder(u"Z:\\"), 0);
    EXPECT_EQ(of_drive(u"D:\\x"), 0);
    EXPECT_EQ(current(), "D:\\Kopie");
    EXPECT_EQ(real(), fs::canonical(folder / "D/Kopie"));
    EXPECT_EQ(of_drive(u"Z:"), 0);
    EXPECT_EQ(current(), "Z:\\");
    EXPECT_EQ(real(), "/");
    EXPECT_EQ(of_drive(u"C:"), 0);
    EXPECT_EQ(current(), "C:\\");
}

TEST_F(PosixCurrent, ComesBackToWhereDriveZWas) {
    fs::current_path(c + "/Dane");
    EXPECT_EQ(of_drive(u"C:"), 0);
    EXPECT_EQ(real(), fs::canonical(c));
    EXPECT_EQ(native(u"Z:x"), fs::canonical(c + "/Dane").string() + "/x");
    EXPECT_EQ(of_drive(u"Z:"), 0);
    EXPECT_EQ(real(), fs::canonical(c + "/Dane"));
}

TEST_F(PosixCurrent, WhatIsNone) {
    const std::string begin = current();
    EXPECT_EQ(of_drive(u""), 0);
    EXPECT_EQ(of_drive(u"1:"), error::invalid_call);
    EXPECT_EQ(of_drive(u"ą:"), error::invalid_call);
    for (const StringView without_drive : {u"\\\\serwer", u"ą", u"E", u"dane", u"\\dane"}) {
        EXPECT_EQ(of_drive(without_drive), 0) << to_utf8(without_drive);
    }
    const auto missing = caught([&] { files.ChDrive(u"E:"); });
    EXPECT_EQ(missing.number, 68);
    EXPECT_EQ(missing.text, "Device unavailable");
    EXPECT_EQ(of_folder(u"C:\\nie ma"), error::path_not_found);
    EXPECT_EQ(of_folder(u"C:\\Dane\\firma.mdb"), error::path_not_found);
    EXPECT_EQ(of_folder(on_root_drive(c + "/Dane/firma.mdb")), error::path_not_found);
    EXPECT_EQ(of_folder(on_root_drive(c + "/nie ma")), error::path_not_found);
    EXPECT_EQ(of_folder(u"E:\\"), error::path_not_found);
    EXPECT_EQ(of_folder(u"\\\\serwer\\x"), error::path_not_found);
    EXPECT_EQ(of_folder(u""), error::bad_file_name);
    EXPECT_EQ(current(), begin);
    EXPECT_EQ(of_drive(u"C:"), 0);
    EXPECT_EQ(of_folder(u"C:\\nie ma"), error::path_not_found);
    EXPECT_EQ(of_folder(u"D:\\nie ma"), error::path_not_found);
    EXPECT_EQ(current(), "C:\\");
    EXPECT_EQ(native(u"D:x"), folder / "D/x");
}

TEST_F(PosixCurrent, ADirectoryOfDriveZThatHasGone) {
    fs::create_directory(c + "/gone");
    EXPECT_EQ(of_folder(on_root_drive(c + "/gone")), 0);
    fs::remove(c + "/gone");
    const auto gone = caught([&] { static_cast<void>(files.CurDir()); });
    EXPECT_EQ(gone.number, error::path_not_found);
    EXPECT_EQ(gone.text, "Path not found");
    EXPECT_EQ(of_drive(u"C:"), 0);
    EXPECT_EQ(current(), "C:\\");
    EXPECT_EQ(of_drive(u"Z:"), 0);
    EXPECT_EQ(current(), "Z:\\");  // its root stands for what has gone
}

TEST_F(PosixCurrent, ADirectoryOfAnotherDriveThatHasGone) {
    fs::create_directory(c + "/gone");
    EXPECT_EQ(of_folder(u"C:\\gone"), 0);
    fs::remove(c + "/gone");
    EXPECT_EQ(files.GetAttr(u"C:\\Dane"), 16);
    EXPECT_EQ(caught([&] { static_cast<void>(files.GetAttr(u"C:x")); }).number,
              error::path_not_found);
    EXPECT_EQ(of_drive(u"C:"), 0);
    EXPECT_EQ(current(), "C:\\");

    fs::create_directory(c + "/gone");
    EXPECT_EQ(of_folder(u"C:gone"), 0);
    fs::remove(c + "/gone");
    EXPECT_EQ(caught([&] { static_cast<void>(files.CurDir()); }).number, error::path_not_found);
}

TEST_F(PosixCurrent, NamesAreThoseOfTheFileSystem) {
    fs::create_directories(c + "/Ż日本/głębiej");
    EXPECT_EQ(of_folder(u"c:\\ż日本\\GŁĘBIEJ"), 0);
    EXPECT_EQ(of_drive(u"c:"), 0);
    EXPECT_EQ(current(), "C:\\Ż日本\\głębiej");
    EXPECT_EQ(of_folder(u".."), 0);
    EXPECT_EQ(current(), "C:\\Ż日本");
}

TEST_F(PosixCurrent, AFolderThatMayNotBeEntered) {
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0755);
    ::chmod((c + "/dane2").c_str(), 0);
    EXPECT_EQ(as_another_user([&] {
                  return of_folder(u"C:\\dane2") == error::path_not_found &&
                         of_folder(on_root_drive(c + "/dane2")) == error::path_not_found;
              }),
              0);
    ::chmod((c + "/dane2").c_str(), 0755);
}

TEST_F(PosixCurrent, MkDirMakesOneLevel) {
    EXPECT_EQ(of_mkdir(u"C:\\nowy"), 0);
    EXPECT_TRUE(fs::is_directory(c + "/nowy"));
    EXPECT_EQ(of_mkdir(u"C:\\DANE\\Głębiej\\"), 0);
    EXPECT_TRUE(fs::is_directory(c + "/Dane/Głębiej"));
    EXPECT_EQ(of_mkdir(u"C:\\nowy"), error::file_access);
    EXPECT_EQ(of_mkdir(u"C:\\NOWY"), error::file_access);
    EXPECT_EQ(of_mkdir(u"C:\\Dane\\FIRMA.mdb"), error::file_access);
    EXPECT_EQ(of_mkdir(u"C:\\"), error::file_access);
    EXPECT_EQ(of_mkdir(u"C:\\nie ma\\x"), error::path_not_found);
    EXPECT_EQ(of_mkdir(u"C:\\Dane\\firma.mdb\\x"), error::path_not_found);
    EXPECT_EQ(of_mkdir(u"E:\\x"), error::path_not_found);
    EXPECT_EQ(of_mkdir(u""), error::bad_file_name);
    EXPECT_EQ(of_mkdir(u"C:\\" + String(300, u'x')), error::bad_file_name);
    fs::create_symlink("nowhere", c + "/dangling");
    EXPECT_EQ(of_mkdir(u"C:\\dangling"), error::file_access);
    EXPECT_FALSE(fs::exists(c + "/nowhere"));
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0555);
    EXPECT_EQ(as_another_user([&] { return of_mkdir(u"C:\\inny") == error::file_access; }), 0);
    ::chmod(c.c_str(), 0755);
}

TEST_F(PosixCurrent, FullPaths) {
    fs::current_path(c + "/Dane");
    EXPECT_EQ(of_folder(u"D:\\Kopie"), 0);
    const String here = on_root_drive(fs::current_path().string());
    const std::pair<StringView, String> cases[] = {
        {u"C:\\a\\b", u"C:\\a\\b"},
        {u"c:/a//b/", u"c:\\a\\b\\"},
        {u"C:\\", u"C:\\"},
        {u"C:\\a\\..", u"C:\\"},
        {u"C:\\..\\..\\x\\.\\y", u"C:\\x\\y"},
        {u"C:", u"C:\\"},
        {u"C:x", u"C:\\x"},
        {u"D:x\\*.*", u"D:\\Kopie\\x\\*.*"},
        {u"D:..\\x", u"D:\\x"},
        {u"E:x", u"E:\\x"},  // need not exist
        {u"x", here + u"\\x"},
        {u"X\\", here + u"\\X\\"},
        {u".", here},
        {u"\\x", u"Z:\\x"},
        {u"日本", here + u"\\日本"},
    };
    for (const auto& [path, full] : cases) {
        EXPECT_EQ(to_utf8(posix::full_path(path)), to_utf8(full)) << to_utf8(path);
    }
    for (const StringView path : {u"", u"\\\\serwer\\x"}) {
        EXPECT_NE(caught([&] { static_cast<void>(posix::full_path(path)); }).number, 0);
    }
}

TEST(PosixPathText, SplitsBeforeTheLastName) {
    struct SplitCase {
        StringView path;
        StringView folder;
        StringView name;
    };
    const SplitCase cases[] = {
        {u"C:\\dane\\*.mdb", u"C:\\dane\\", u"*.mdb"},
        {u"C:/dane/a", u"C:/dane/", u"a"},
        {u"C:a", u"C:", u"a"},
        {u"a", u".", u"a"},
        {u"\\a", u"\\", u"a"},
        {u"C:\\", u"C:\\", u""},
        {u"C:", u"C:", u""},
        {u"", u".", u""},
        {u"1:a", u".", u"1:a"},
    };
    for (const SplitCase& each : cases) {
        const posix::SplitPath parts = posix::split_last_name(each.path);
        EXPECT_EQ(to_utf8(parts.folder), to_utf8(each.folder)) << to_utf8(each.path);
        EXPECT_EQ(to_utf8(parts.name), to_utf8(each.name)) << to_utf8(each.path);
    }
}

}  // namespace
}  // namespace kvarta16
