// New names and copies on real file systems.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <platform/posix_fixture.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/posix/posix_descriptor.h>
#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

namespace fs = std::filesystem;
using testing_support::as_another_user;
using testing_support::caught;
using testing_support::file_bytes;
using testing_support::in_another_process;
using testing_support::on_root_drive;
using testing_support::open_descriptors;
using testing_support::touch;
using testing_support::write_file;

std::size_t count_names(const std::string& path) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(path), {}));
}

// ---- Names ----------------------------------------------------------------------------------

class PosixName : public testing_support::PosixDrive {
  protected:
    [[nodiscard]] testing_support::Caught of_name(StringView from, StringView to) {
        return caught([&] { files.Name(from, to); });
    }
    Files& files = *posix_platform().files;
};

TEST_F(PosixName, FilesAndFolders) {
    write_file(c + "/Dane/firma.mdb", "treść");
    files.Name(u"C:\\DANE\\FIRMA.MDB", u"C:\\dane2\\Nowa.mdb");
    EXPECT_FALSE(fs::exists(c + "/Dane/firma.mdb"));
    EXPECT_EQ(file_bytes(c + "/dane2/Nowa.mdb"), "treść");
    files.Name(u"C:\\dane2", u"C:\\Dane\\日本語");
    EXPECT_EQ(file_bytes(c + "/Dane/日本語/Nowa.mdb"), "treść");
    files.Name(u"C:\\Dane\\日本語\\", u"C:\\Trzeci\\");
    EXPECT_EQ(file_bytes(c + "/Trzeci/Nowa.mdb"), "treść");
    files.Name(u"C:\\Trzeci\\Nowa.mdb", on_root_drive(c + "/dalej.mdb"));  // to another letter
    EXPECT_EQ(file_bytes(c + "/dalej.mdb"), "treść");
}

TEST_F(PosixName, CaseAlone) {
    files.Name(u"C:\\Dane\\firma.mdb", u"C:\\Dane\\FIRMA.mdb");
    EXPECT_TRUE(fs::exists(c + "/Dane/FIRMA.mdb"));
    EXPECT_FALSE(fs::exists(c + "/Dane/firma.mdb"));
    files.Name(u"C:\\DANE", u"C:\\dane");
    EXPECT_TRUE(fs::exists(c + "/dane/FIRMA.mdb"));
    EXPECT_EQ(of_name(u"C:\\dane", u"C:\\dane").number, error::file_exists);
}

TEST_F(PosixName, WhatDoesNotExistOrDoes) {
    EXPECT_EQ(of_name(u"C:\\Dane\\nie ma", u"C:\\x").number, error::file_not_found);
    EXPECT_EQ(of_name(u"C:\\nie ma\\x", u"C:\\x").number, error::path_not_found);
    EXPECT_EQ(of_name(u"C:\\Dane\\firma.mdb", u"C:\\nie ma\\x").number, error::path_not_found);
    EXPECT_EQ(of_name(u"C:\\Dane\\firma.mdb", u"C:\\Dane\\ŻÓŁW.txt").number, error::file_exists);
    EXPECT_EQ(of_name(u"C:\\Dane\\firma.mdb", u"C:\\dane2").number, error::file_exists);
    EXPECT_EQ(of_name(u"C:\\Dane", u"C:\\dane2").number, error::file_exists);
    EXPECT_EQ(of_name(u"C:\\Dane", u"C:\\dane2").text, "File already exists");
    EXPECT_EQ(of_name(u"", u"C:\\x").number, error::bad_file_name);
    EXPECT_EQ(of_name(u"C:\\Dane", u"").number, error::bad_file_name);
    EXPECT_EQ(of_name(u"C:\\Dane", u"D:\\x").number, error::path_not_found);
    fs::create_symlink("nowhere", c + "/dangling");
    EXPECT_EQ(of_name(u"C:\\Dane\\firma.mdb", u"C:\\dangling").number, error::file_exists);
    EXPECT_EQ(of_name(u"C:\\dangling", u"C:\\link2").number, 0);  // the link itself
    EXPECT_TRUE(fs::is_symlink(c + "/link2"));
    EXPECT_TRUE(fs::exists(c + "/Dane/firma.mdb"));
}

TEST_F(PosixName, WhatIsRefused) {
    EXPECT_EQ(of_name(u"C:\\Dane", u"C:\\Dane\\w sobie").number, error::file_access);
    EXPECT_EQ(of_name(u"C:\\", u"C:\\x").number, error::file_access);
    EXPECT_EQ(of_name(u"C:\\Dane", on_root_drive(c + "/x")).number, error::different_drive);
    EXPECT_EQ(of_name(u"C:\\Dane", on_root_drive(c + "/x")).text,
              "Can't rename with different drive");
    {
        const std::ifstream open_here(c + "/Dane/firma.mdb");
        const auto refused = of_name(u"C:\\Dane\\firma.mdb", u"C:\\x");
        EXPECT_EQ(refused.number, error::permission_denied);
        EXPECT_EQ(refused.text, "Permission denied");
    }
    ::chmod((c + "/Dane/firma.mdb").c_str(), 0444);
    EXPECT_EQ(of_name(u"C:\\Dane\\firma.mdb", u"C:\\x").number, 0);
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0555);
    EXPECT_EQ(as_another_user([&] {
                  return of_name(u"C:\\x", u"C:\\y").number == error::file_access &&
                         of_name(u"C:\\Dane", u"C:\\y").number == error::file_access;
              }),
              0);
    ::chmod(c.c_str(), 0755);
}

// Drive D: on a file system other than that of drive C:.
class PosixNameAcross : public PosixName {
  protected:
    PosixNameAcross() {
        struct stat here {};
        struct stat there {};
        ::stat(c.c_str(), &here);
        std::string name = (fs::temp_directory_path() / "kvarta16-test-XXXXXX").string();
        if (::mkdtemp(name.data()) != nullptr && ::stat(name.c_str(), &there) == 0) {
            other = name;
            is_other = here.st_dev != there.st_dev;
        }
        fs::create_directory_symlink(other, folder / "D");
    }
    ~PosixNameAcross() override { fs::remove_all(other); }
    void SetUp() override {
        if (!is_other) {
            GTEST_SKIP() << "the temporary folders are on one file system";
        }
    }

    std::string other;
    bool is_other = false;
};

TEST_F(PosixNameAcross, AFileIsCopiedWhole) {
    const std::string bytes = std::string(3'000'000, 'x') + "koniec";
    write_file(c + "/Dane/firma.mdb", bytes);
    ::chmod((c + "/Dane/firma.mdb").c_str(), 0440);
    const auto time = fs::last_write_time(c + "/Dane/firma.mdb") - std::chrono::hours(50);
    fs::last_write_time(c + "/Dane/firma.mdb", time);
    files.Name(u"C:\\Dane\\firma.mdb", u"D:\\nowa.mdb");
    EXPECT_FALSE(fs::exists(c + "/Dane/firma.mdb"));
    EXPECT_EQ(file_bytes(other + "/nowa.mdb"), bytes);
    EXPECT_EQ(fs::status(other + "/nowa.mdb").permissions(), fs::perms(0440));
    EXPECT_EQ(fs::last_write_time(other + "/nowa.mdb"), time);
    EXPECT_EQ(of_name(u"C:\\Dane\\Żółw.txt", u"D:\\NOWA.mdb").number, error::file_exists);
    EXPECT_EQ(of_name(u"C:\\Dane\\Żółw.txt", u"D:\\nie ma\\x").number, error::path_not_found);
    EXPECT_TRUE(fs::exists(c + "/Dane/Żółw.txt"));
    EXPECT_EQ(count_names(other), 1U);
}

TEST_F(PosixNameAcross, ALinkIsMadeAnewAndTheRestIsRefused) {
    EXPECT_EQ(of_name(u"C:\\Dane", u"D:\\Dane").number, error::different_drive);
    EXPECT_EQ(of_name(on_root_drive(c + "/Dane"), on_root_drive(other + "/Dane")).number,
              error::different_drive);
    fs::create_symlink("Dane/Żółw.txt", c + "/link");
    files.Name(u"C:\\link", u"D:\\link");
    EXPECT_EQ(fs::read_symlink(other + "/link"), "Dane/Żółw.txt");
    EXPECT_FALSE(fs::is_symlink(c + "/link"));
    ::mkfifo((c + "/pipe").c_str(), 0600);
    EXPECT_EQ(of_name(u"C:\\pipe", u"D:\\pipe").number, error::file_access);
    EXPECT_EQ(count_names(other), 1U);
}

TEST_F(PosixNameAcross, AFileThatCannotGoIsNotThereTwice) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can act as two users";
    }
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0755);
    ::chmod(other.c_str(), 0777);
    touch(c + "/moja");
    ::chmod((c + "/moja").c_str(), 0644);
    EXPECT_EQ(as_another_user(
                  [&] { return of_name(u"C:\\moja", u"D:\\moja").number == error::file_access; }),
              0);
    EXPECT_TRUE(fs::exists(c + "/moja"));
    EXPECT_TRUE(fs::is_empty(other));
}

// ---- Copies ---------------------------------------------------------------------------------

class PosixCopy : public testing_support::PosixDrive {
  protected:
    [[nodiscard]] Long of_copy(StringView source, StringView target) {
        return caught([&] { files.FileCopy(source, target); }).number;
    }
    Files& files = *posix_platform().files;
    FileTable& table = *posix_platform().file_table;
};

TEST_F(PosixCopy, CopiesOverWhatStandsThere) {
    const std::string bytes = std::string(2'500'000, 'x') + std::string(1, '\0') + "koniec";
    write_file(c + "/Dane/firma.mdb", bytes);
    ::chmod((c + "/Dane/firma.mdb").c_str(), 0640);
    const auto time = fs::last_write_time(c + "/Dane/firma.mdb") - std::chrono::hours(50);
    fs::last_write_time(c + "/Dane/firma.mdb", time);
    files.FileCopy(u"C:\\DANE\\FIRMA.MDB", u"C:\\kopia.mdb");
    EXPECT_EQ(file_bytes(c + "/kopia.mdb"), bytes);
    EXPECT_EQ(fs::last_write_time(c + "/kopia.mdb"), time);
    EXPECT_EQ(fs::status(c + "/kopia.mdb").permissions(), fs::perms(0640));
    write_file(c + "/stara", "dłuższa treść");
    ::chmod((c + "/stara").c_str(), 0606);
    write_file(c + "/Dane/firma.mdb", "x");
    files.FileCopy(u"C:\\Dane\\firma.mdb", u"C:\\STARA");
    EXPECT_EQ(file_bytes(c + "/stara"), "x");
    EXPECT_EQ(fs::status(c + "/stara").permissions(), fs::perms(0606));
    EXPECT_EQ(count_names(c), 4U);
}

TEST_F(PosixCopy, LinksAreFollowed) {
    write_file(c + "/Dane/firma.mdb", "treść");
    fs::create_symlink("Dane/firma.mdb", c + "/source");
    fs::create_symlink("Dane/Żółw.txt", c + "/target");
    files.FileCopy(u"C:\\source", u"C:\\target");
    EXPECT_TRUE(fs::is_symlink(c + "/target"));
    EXPECT_EQ(file_bytes(c + "/Dane/Żółw.txt"), "treść");
    fs::create_symlink("nowhere", c + "/dangling");
    EXPECT_EQ(of_copy(u"C:\\source", u"C:\\dangling"), error::file_access);
    EXPECT_FALSE(fs::exists(c + "/nowhere"));
    EXPECT_EQ(of_copy(u"C:\\dangling", u"C:\\x"), error::file_not_found);
    EXPECT_EQ(of_copy(u"C:\\source", u"C:\\Dane\\firma.mdb"), error::permission_denied);
    EXPECT_EQ(file_bytes(c + "/Dane/firma.mdb"), "treść");
}

TEST_F(PosixCopy, Refusals) {
    write_file(c + "/Dane/firma.mdb", "treść");
    EXPECT_EQ(of_copy(u"C:\\nie ma", u"C:\\x"), error::file_not_found);
    EXPECT_EQ(of_copy(u"C:\\nie ma\\x", u"C:\\x"), error::path_not_found);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\nie ma\\x"), error::path_not_found);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\Dane\\Żółw.txt\\x"), error::path_not_found);
    EXPECT_EQ(of_copy(u"C:\\Dane", u"C:\\x"), error::file_access);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\dane2"), error::file_access);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\nowy\\"), error::file_access);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\Dane\\FIRMA.mdb"), error::permission_denied);
    EXPECT_EQ(of_copy(u"", u"C:\\x"), error::bad_file_name);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u""), error::bad_file_name);
    ::chmod((c + "/Dane/Żółw.txt").c_str(), 0444);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\Dane\\Żółw.txt"), error::file_access);
    ::mkfifo((c + "/Dane/pipe").c_str(), 0600);
    EXPECT_EQ(of_copy(u"C:\\Dane\\pipe", u"C:\\x"), error::file_access);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\Dane\\pipe"), error::file_access);
    EXPECT_EQ(count_names(c), 2U);
    EXPECT_EQ(file_bytes(c + "/Dane/firma.mdb"), "treść");
    ::chmod(folder.path().c_str(), 0755);
    ::chmod(c.c_str(), 0555);
    EXPECT_EQ(as_another_user(
                  [&] { return of_copy(u"C:\\Dane\\firma.mdb", u"C:\\x") == error::file_access; }),
              0);
    ::chmod(c.c_str(), 0755);
}

TEST_F(PosixCopy, FilesOfTheTableAreOpen) {
    write_file(c + "/cel", "stary");
    for (const Sharing sharing : {Sharing::Default, Sharing::Shared}) {
        table.Open(u"C:\\Dane\\firma.mdb", 5, OpenMode::Input, sharing);
        EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\cel"), error::permission_denied);
        EXPECT_EQ(of_copy(u"C:\\cel", u"C:\\Dane\\firma.mdb"), error::permission_denied);
        table.Close(5);
    }
    EXPECT_EQ(file_bytes(c + "/cel"), "stary");
    EXPECT_EQ(of_copy(u"C:\\cel", u"C:\\Dane\\firma.mdb"), 0);
}

TEST_F(PosixCopy, FilesThatAnotherProcessHasLocked) {
    testing_support::OtherProgram(c + "/baza.db").run("create table t (a)");
    {
        const testing_support::LockingProcess locking(c + "/baza.db", "begin exclusive");
        EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\baza.db"), error::permission_denied);
        EXPECT_EQ(of_copy(u"C:\\baza.db", u"C:\\x"), error::permission_denied);
    }
    EXPECT_EQ(of_copy(u"C:\\baza.db", u"C:\\x"), 0);
}

TEST_F(PosixCopy, AFullDisk) {
    write_file(c + "/Dane/firma.mdb", "treść");
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"Z:\\dev\\full"), error::disk_full);
    EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"Z:\\dev\\null"), 0);
    // A file that cannot grow: what has been written of the copy goes, the old file stays.
    write_file(c + "/duży", std::string(3'000'000, 'x'));
    write_file(c + "/stary", "stary");
    EXPECT_EQ(in_another_process([&] {
                  const rlimit limit{1'500'000, 1'500'000};
                  return ::signal(SIGXFSZ, SIG_IGN) != SIG_ERR &&
                         ::setrlimit(RLIMIT_FSIZE, &limit) == 0 &&
                         of_copy(u"C:\\duży", u"C:\\stary") == error::disk_full &&
                         of_copy(u"C:\\duży", u"C:\\nowy") == error::disk_full;
              }),
              0);
    EXPECT_EQ(file_bytes(c + "/stary"), "stary");
    EXPECT_FALSE(fs::exists(c + "/nowy"));
    EXPECT_EQ(count_names(c), 4U);
}

TEST_F(PosixCopy, NoDescriptorIsLeft) {
    const int before = open_descriptors();
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\x"), 0);
        EXPECT_EQ(of_copy(u"C:\\Dane\\firma.mdb", u"C:\\nie ma\\x"), error::path_not_found);
        EXPECT_EQ(of_copy(u"C:\\Dane", u"C:\\x"), error::file_access);
    }
    EXPECT_EQ(open_descriptors(), before);
}

// ---- The locks of databases -----------------------------------------------------------------

// The record locks of a process are lost when it closes any descriptor of the file.
TEST_F(PosixCopy, DatabaseLocksOfThisProcessStay) {
    testing_support::OtherProgram mine(c + "/baza.db");
    mine.run("create table t (a)");
    mine.run("begin");
    EXPECT_EQ(mine.value("select count(*) from t"), "0");  // takes a lock for reading
    const auto others_see_a_lock = [&] {
        return in_another_process([&] {
                   struct flock lock {};
                   lock.l_type = F_WRLCK;
                   const int file = ::open((c + "/baza.db").c_str(), O_RDWR | O_CLOEXEC);
                   return ::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type == F_RDLCK;
               }) == 0;
    };
    ASSERT_TRUE(others_see_a_lock());
    EXPECT_EQ(of_copy(u"C:\\baza.db", u"C:\\kopia.db"), 0);
    EXPECT_TRUE(others_see_a_lock());
    table.Open(u"C:\\baza.db", 1, OpenMode::Input, Sharing::Default);
    table.Close(1);
    EXPECT_TRUE(others_see_a_lock());
    mine.run("commit");
    EXPECT_FALSE(others_see_a_lock());
}

TEST_F(PosixCopy, WhatIsKeptForTheLocksGoesWithThem) {
    posix::close_kept_aside();
    const int before = open_descriptors();
    {
        const std::ifstream open_here(c + "/Dane/firma.mdb");
        table.Open(u"C:\\Dane\\firma.mdb", 1, OpenMode::Binary, Sharing::Default);
        table.Close(1);
        EXPECT_EQ(open_descriptors(), before + 2);
        // What is kept locks nobody out.
        EXPECT_EQ(in_another_process([&] {
                      return caught([&] {
                                 table.Open(u"C:\\Dane\\firma.mdb", 1, OpenMode::Binary,
                                            Sharing::Default);
                             }).number == 0;
                  }),
                  0);
    }
    EXPECT_EQ(caught([&] { files.Kill(u"C:\\Dane\\firma.mdb"); }).number, 0);
    EXPECT_EQ(open_descriptors(), before);
}

}  // namespace
}  // namespace kvarta16
