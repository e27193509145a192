// The main flows on the files of the system, through the adapter.
#include <algorithm>

#include <kvarta16/files/CFileFind.h>

#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

namespace fs = std::filesystem;

class RealFiles : public testing::Test {
  protected:
    ~RealFiles() override {
        fs::current_path(before_);
        EXPECT_EQ(open_descriptors(), descriptors_);
    }

    // The adapter behind a fault plan, with nobody in front of the boxes.
    struct Host {
        std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
        testing_support::RecordingBoxes boxes;
        std::unique_ptr<Files> files = faulting(*default_platform().files, plan);
        std::unique_ptr<FileTable> file_table = faulting(*default_platform().file_table, plan);
        Platform operations = made();
        ScopedPlatform scope{operations};

      private:
        Platform made() {
            Platform set = default_platform();
            set.message_boxes = &boxes;
            set.files = files.get();
            set.file_table = file_table.get();
            return set;
        }
    };

    RealFolder folder;
    Host host;

  private:
    std::size_t descriptors_ = open_descriptors();
    fs::path before_ = fs::current_path();
};

TEST_F(RealFiles, WhatAPathIs) {
    folder.write("plik.txt", "x");
    folder.write("Żółw.txt", "x");
    fs::create_directory(folder.path / "katalog");
    EXPECT_TRUE(io().IsFile(folder.windows(u"plik.txt")));
    EXPECT_TRUE(io().IsFile(folder.windows(u"PLIK.TXT")));
    EXPECT_TRUE(io().IsFile(folder.windows(u"Żółw.txt")));
    EXPECT_FALSE(io().IsFile(folder.windows(u"katalog")));
    EXPECT_FALSE(io().IsFile(folder.windows(u"brak.txt")));
    EXPECT_FALSE(io().IsFile(u""));
    EXPECT_TRUE(io().IsDIR(folder.windows()));
    EXPECT_TRUE(io().IsDIR(folder.windows(u"katalog")));
    EXPECT_FALSE(io().IsDIR(folder.windows(u"plik.txt")));
    EXPECT_FALSE(io().IsDIR(folder.windows(u"brak")));
    EXPECT_TRUE(io().IsFile_file(folder.windows(u"plik.txt")));
    EXPECT_TRUE(io().IsFile_open(folder.windows(u"plik.txt")));
    EXPECT_FALSE(io().IsFile_open(folder.windows(u"brak.txt")));
}

TEST_F(RealFiles, AnEmptyPathIsNoFolderWhereverTheProcessMayWrite) {
    EXPECT_FALSE(io().IsDIR(u""));
    EXPECT_FALSE(io().IsFile(u""));
}

TEST_F(RealFiles, NamesThatWindowsDoesNotAllowAreNotMade) {
    folder.write("a.txt", "A");
    folder.write("b.txt", "B");
    for (const StringView name : {u"*.txt", u"x?.txt", u"a<b", u"a>b", u"a|b", u"a\"b", u"a:b"}) {
        String target = folder.windows(name);
        String text = u"x";
        EXPECT_FALSE(io().Zapisz_do_pliku(target, text)) << to_utf8(name);
        EXPECT_FALSE(io().FileCopy_Fun(folder.windows(u"a.txt"), target)) << to_utf8(name);
        EXPECT_FALSE(io().RenameFile(folder.windows(u"a.txt"), target)) << to_utf8(name);
        io().MakeDir(target);
        EXPECT_FALSE(io().IsDIR(target)) << to_utf8(name);
        EXPECT_FALSE(io().IsFile(target)) << to_utf8(name);
    }
    EXPECT_EQ(host.boxes.shown.size(), 7U);
    EXPECT_EQ(folder.read("a.txt") + folder.read("b.txt"), "AB");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path), {}), 2);
}

TEST_F(RealFiles, MakeDirChangeGoesIntoAFolderWithoutADrive) {
    fs::create_directory(folder.path / "nd");
    fs::current_path(folder.path);
    io().MakeDirChange(u"nd");
    EXPECT_EQ(fs::current_path(), fs::canonical(folder.path / "nd"));
    io().MakeDirChange(u"nowy");  // made, and not entered
    EXPECT_EQ(fs::current_path(), fs::canonical(folder.path / "nd"));
    EXPECT_TRUE(fs::is_directory(folder.path / "nd/nowy"));
}

TEST_F(RealFiles, DeletingAndRenaming) {
    folder.write("a.txt", "A");
    folder.write("b.txt", "B");
    EXPECT_FALSE(io().RenameFile(folder.windows(u"a.txt"), folder.windows(u"b.txt")));
    EXPECT_EQ(folder.read("a.txt") + folder.read("b.txt"), "AB");
    EXPECT_TRUE(io().RenameFile(folder.windows(u"a.txt"), folder.windows(u"b.txt"), true));
    EXPECT_FALSE(folder.has("a.txt"));
    EXPECT_EQ(folder.read("b.txt"), "A");
    EXPECT_FALSE(io().RenameFile(folder.windows(u"brak"), folder.windows(u"b.txt"), true));
    EXPECT_FALSE(folder.has("b.txt"));  // the old target is gone all the same

    folder.write("c.txt", "C");
    EXPECT_TRUE(io().FileCopy_Fun(folder.windows(u"c.txt"), folder.windows(u"d.txt")));
    EXPECT_EQ(folder.read("d.txt"), "C");
    EXPECT_TRUE(io().DelFile(folder.windows(u"c.txt")));
    EXPECT_FALSE(folder.has("c.txt"));
    EXPECT_TRUE(io().DelFile(folder.windows(u"c.txt")));
    io().DelFile2(folder.windows(u"*.txt"));
    EXPECT_FALSE(folder.has("d.txt"));
    EXPECT_TRUE(host.boxes.shown.empty());
}

TEST_F(RealFiles, FoldersAndTheCurrentOne) {
    const String made = folder.windows(u"nowy");
    io().MakeDirChange(made);
    EXPECT_TRUE(fs::is_directory(folder.path / "nowy"));
    EXPECT_NE(fs::current_path(), fs::canonical(folder.path / "nowy"));
    io().MakeDirChange(made);
    EXPECT_EQ(fs::current_path(), fs::canonical(folder.path / "nowy"));
    String path;
    String name;
    io().SeparatePathAndFileName(u"plik.txt", path, name);
    EXPECT_EQ(show(path),
              show(u"Z:" + replace_all(from_utf8(fs::current_path().string()), u"/", u"\\")));
    io().MakeDir(u"x");
    EXPECT_TRUE(fs::is_directory(folder.path / "nowy" / "x"));
    io().MakeDir(u"y\\z");
    EXPECT_FALSE(folder.has("nowy/y"));
}

TEST_F(RealFiles, BytesThatAreWritten) {
    const String path = folder.windows(u"wydruk.txt");
    EXPECT_TRUE(io().Zapisz_do_pliku(path, u"Zażółć gęślą jaźń €\u4E2D"));
    EXPECT_EQ(folder.read("wydruk.txt"), "Za\xBF\xF3\xB3\xE6 g\xEA\x9Cl\xB9 ja\x9F\xF1 \x80?\r\n");
    EXPECT_TRUE(io().Zapisz_do_pliku(path, u"a\nb"));
    EXPECT_EQ(folder.read("wydruk.txt"), "a\nb\r\n");
    EXPECT_TRUE(host.boxes.shown.empty());
    EXPECT_FALSE(io().Zapisz_do_pliku(folder.windows(u"brak\\wydruk.txt"), u"x"));
    ASSERT_EQ(host.boxes.shown.size(), 1U);
    EXPECT_EQ(host.boxes.shown[0].style, 16);
    EXPECT_EQ(host.boxes.shown[0].title, std::nullopt);
    EXPECT_EQ(show(host.boxes.shown[0].text),
              show(u"Plik jest za duży by wydrukować go na ekranie !"));
}

TEST_F(RealFiles, NumberOneThatIsOpen) {
    folder.write("a.txt", "A");
    platform().file_table->Open(folder.windows(u"a.txt"), 1, OpenMode::Input, Sharing::Shared);
    EXPECT_FALSE(io().IsFile_open(folder.windows(u"a.txt")));
    EXPECT_TRUE(io().IsFile_file(folder.windows(u"a.txt")));
    EXPECT_TRUE(io().Zapisz_do_pliku(folder.windows(u"b.txt"), u"b"));
    EXPECT_TRUE(io().IsFile_open(folder.windows(u"a.txt")));
}

TEST_F(RealFiles, WriteTestLeavesNothing) {
    host.plan->fail_at("GetAttr", 1, FaultSpan::Once, error::file_not_found);
    EXPECT_TRUE(io().IsDIR(folder.windows()));
    EXPECT_EQ(host.plan->failed_calls(), 1);
    EXPECT_TRUE(fs::is_empty(folder.path));
    fs::create_directory(folder.path / "x");
    host.plan->fail_at("GetAttr", 1, FaultSpan::Once, error::file_not_found);
    EXPECT_TRUE(io().IsDIR(folder.windows(u"x\\")));
    EXPECT_TRUE(fs::is_empty(folder.path / "x"));
}

// Somebody has planted a link where the write test makes its file.
TEST_F(RealFiles, WriteTestDoesNotFollowAPlantedLink) {
    fs::create_directory(folder.path / "cel");
    fs::create_directory(folder.path / "katalog");
    const fs::path link = folder.path / "katalog" / "zevotest.tmp";
    fs::create_symlink(folder.path / "cel" / "nowy", link);
    host.plan->fail_at("GetAttr", 1, FaultSpan::Once, error::file_not_found);
    static_cast<void>(io().IsDIR(folder.windows(u"katalog")));
    EXPECT_TRUE(fs::is_empty(folder.path / "cel"));

    folder.write("wazny.txt", "ważne");
    fs::remove(link);
    fs::create_symlink(folder.path / "wazny.txt", link);
    host.plan->fail_at("GetAttr", 1, FaultSpan::Once, error::file_not_found);
    static_cast<void>(io().IsDIR(folder.windows(u"katalog")));
    EXPECT_EQ(folder.read("wazny.txt"), "ważne");
}

TEST_F(RealFiles, EachOperationThatFailsLeaksNothing) {
    folder.write("a.txt", "A");
    for (const char* operation : {"GetAttr", "Kill", "FreeFile", "Open", "Close", "PrintLine"}) {
        for (Long n = 1; n <= 4; ++n) {
            host.plan->fail_at(operation, n, FaultSpan::Once, error::device_io);
            static_cast<void>(io().IsDIR(folder.windows()));
            static_cast<void>(io().IsFile_file(folder.windows(u"a.txt")));
            static_cast<void>(io().Zapisz_do_pliku(folder.windows(u"b.txt"), u"b"));
            host.plan->clear();
            platform().file_table->Close(1);  // what a failing write has left open
            EXPECT_TRUE(io().DelFile(folder.windows(u"b.txt"))) << operation << n;
        }
    }
    EXPECT_EQ(folder.read("a.txt"), "A");
    EXPECT_FALSE(folder.has("zevotest.tmp"));
}

// ---- The finder -----------------------------------------------------------------------------

TEST_F(RealFiles, Finder) {
    folder.write("b.txt", "12345");
    folder.write("Żaba.txt", "");
    folder.write("a.tar.gz", "1");
    fs::create_directory(folder.path / "Katalog");
    std::map<std::string, Long> found;
    Lines order;
    CFileFind find;
    for (bool more = static_cast<bool>(find.FindFile(folder.windows() + u"\\")); more;
         more = static_cast<bool>(find.FindNextFile())) {
        const std::string name = to_utf8(find.GetFileName());
        order.push_back(name);
        found[name] = find.GetLength();
        const bool is_folder = name == "." || name == ".." || name == "Katalog";
        EXPECT_EQ(static_cast<bool>(find.IsDirectory()), is_folder) << name;
        EXPECT_EQ(static_cast<bool>(find.IsDots()), name == "." || name == "..") << name;
        const Date now = default_platform().clock->Now();
        EXPECT_LE(find.GetLastWriteTime().days, now.days + 2 / 86400.0) << name;
    }
    EXPECT_EQ(found.size(), 6U);
    EXPECT_EQ(found.at("b.txt"), 5);
    EXPECT_EQ(found.at("a.tar.gz"), 1);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end() - 1));

    EXPECT_TRUE(find.FindFile(folder.windows(u"a.*")));
    EXPECT_EQ(show(find.GetFileTitle()), show(u"a.tar"));
    EXPECT_EQ(show(find.GetFilePath()), show(u"a.tar.gz"));
    EXPECT_FALSE(find.FindNextFile());
    EXPECT_FALSE(find.FindFile(folder.windows(u"brak*")));
    EXPECT_FALSE(find.FindFile(folder.windows(u"brak\\*.*")));
}

TEST_F(RealFiles, FinderInTheCurrentFolder) {
    folder.write("x.txt", "");
    io().MakeDirChange(folder.windows());
    CFileFind find;
    Lines names;
    for (bool more = static_cast<bool>(find.FindFile(u"")); more;
         more = static_cast<bool>(find.FindNextFile())) {
        names.push_back(to_utf8(find.GetFileName()));
    }
    std::ranges::sort(names);
    EXPECT_EQ(names, (Lines{".", "..", "x.txt"}));
}

// ---- Programs -------------------------------------------------------------------------------

TEST_F(RealFiles, ProgramThatIsMissing) {
    EXPECT_FALSE(io().SyncShell(u"kvarta16-nie-ma-takiego-programu"));
    ASSERT_EQ(host.boxes.shown.size(), 1U);
    EXPECT_EQ(show(*host.boxes.shown[0].title), show(u"Error:53"));
    EXPECT_EQ(show(host.boxes.shown[0].text), show(u"File not found"));
    EXPECT_EQ(host.boxes.shown[0].style, 48);
}

}  // namespace
}  // namespace kvarta16::files_tests
