// clsFTP: DownloadFile and DownloadFileProgress.

#include "ftp_support.h"

namespace kvarta16 {
namespace {

using namespace ftp_tests;

class Download : public Ftp {
  protected:
    // Connects anew and lists plik.bin of so many bytes, then fetches it. The log begins with the
    // transfer.
    Boolean fetch(std::size_t size, Boolean overwrite = true) {
        fake.internet.listing.clear();
        fake.internet.add(u"plik.bin", bytes_of(size));
        connect_and_list();
        events.clear();
        return fetch_as(u"C:\\dane\\a.bin", overwrite);
    }
    Boolean fetch_as(String local, Boolean overwrite = true) {
        String remote = u"plik.bin";
        Boolean asc = true;
        const Boolean result = ftp.DownloadFileProgress(remote, local, overwrite, asc);
        EXPECT_EQ(asc.raw, 0);
        return result;
    }
    // What stands in the local file; "-" if there is none.
    [[nodiscard]] std::string local_contents() const {
        const MemoryDisk::Entry* entry = fake.disk.find(u"C:\\dane\\a.bin");
        return entry == nullptr ? "-" : entry->contents;
    }
    [[nodiscard]] bool is_remote_closed() const {
        return fake.internet.open_handles() == std::vector<Long>{1, 2};
    }
};

// ---- DownloadFile -----------------------------------------------------------------------------

TEST_F(Download, FetchesAWholeFileInOneCall) {
    connect();
    fake.internet.files[u"plik.bin"] = "abc";
    EXPECT_EQ(ftp.DownloadFile(u"plik.bin", u"C:\\dane\\a.bin", true).raw, 1);
    EXPECT_EQ(calls(), (Calls{"GetAttr(C:\\dane)", "GetAttr(C:\\dane\\a.bin)",
                              "FtpGetFileA(2; plik.bin; C:\\dane\\a.bin; 0; 0; -2147483648; 0)"}));
    EXPECT_EQ(local_contents(), "abc");
    EXPECT_EQ(events, Events{});
}

TEST_F(Download, DeletesTheFileThatItReplaces) {
    connect();
    fake.internet.files[u"plik.bin"] = "abc";
    fake.disk.add(u"C:\\dane\\a.bin", "stary");
    EXPECT_EQ(ftp.DownloadFile(u"plik.bin", u"C:\\dane\\a.bin", true).raw, 1);
    EXPECT_EQ(calls()[2], "Kill(C:\\dane\\a.bin)");
    EXPECT_EQ(local_contents(), "abc");
}

TEST_F(Download, FetchesNothingWholeWithoutOverwriting) {
    connect();
    fake.internet.files[u"plik.bin"] = "abc";
    const std::pair<String, Long> expected{u"File already exists at C:\\nowy\\a.bin",
                                           static_cast<Long>(0x80040001)};
    EXPECT_EQ(ftp.DownloadFile(u"plik.bin", u"C:\\nowy\\a.bin", false).raw, 0);
    // The folder is made all the same.
    EXPECT_EQ(calls(), (Calls{"GetAttr(C:\\nowy)", "MkDir(C:\\nowy)"}));
    EXPECT_EQ(recorded(), expected);
    EXPECT_NE(fake.disk.find(u"C:\\nowy"), nullptr);
    EXPECT_EQ(fake.disk.find(u"C:\\nowy\\a.bin"), nullptr);
}

TEST_F(Download, RecordsAPathWithoutAFolder) {
    connect();
    fake.internet.files[u"plik.bin"] = "abc";
    for (const StringView path : {u"a.bin", u"", u"C:a.bin", u"C:/dane/a.bin"}) {
        fake.disk.log.clear();
        EXPECT_EQ(ftp.DownloadFile(u"plik.bin", path, true).raw, 0);
        EXPECT_EQ(calls(), (Calls{"GetAttr()", "MkDir()"}));
        EXPECT_EQ(recorded(), (std::pair<String, Long>{u"Path not found", 76}));
    }
}

TEST_F(Download, MakesOneLevelOfFolders) {
    connect();
    fake.internet.files[u"plik.bin"] = "abc";
    EXPECT_EQ(ftp.DownloadFile(u"plik.bin", u"C:\\x\\y\\a.bin", true).raw, 0);
    EXPECT_EQ(ftp.LastErrorNumber(), 76);
    EXPECT_EQ(fake.disk.find(u"C:\\x"), nullptr);
    EXPECT_EQ(ftp.DownloadFile(u"plik.bin", u"C:\\x\\a.bin", true).raw, 1);
    EXPECT_EQ(ftp.DownloadFile(u"plik.bin", u"C:\\x\\y\\a.bin", true).raw, 1);
}

TEST_F(Download, RecordsAFileThatCannotBeReplaced) {
    connect();
    fake.disk.add(u"C:\\dane\\a.bin", "stary").is_held = true;
    EXPECT_EQ(ftp.DownloadFile(u"plik.bin", u"C:\\dane\\a.bin", true).raw, 0);
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"Path/File access error", 75}));
    EXPECT_EQ(fake.disk.calls("FtpGetFileA"), 0u);
}

TEST_F(Download, RecordsNoRefusalOfAWholeFile) {
    connect();
    EXPECT_EQ(ftp.DownloadFile(u"nie ma", u"C:\\dane\\a.bin", true).raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.disk.calls("GetLastError"), 0u);
}

// A system on which the empty folder can be made.
class EmptyFolder final : public ForwardingFiles {
  public:
    using ForwardingFiles::ForwardingFiles;
    void MkDir(StringView) override {}
};

TEST_F(Download, LeavesAnEmptyPathToThePlatform) {
    EmptyFolder files(fake.files);
    fake.operations.files = &files;
    connect();
    for (const bool overwrite : {false, true}) {
        EXPECT_EQ(ftp.DownloadFile(u"nie ma", u"", overwrite).raw, 0);
        EXPECT_EQ(calls().back(), "FtpGetFileA(2; nie ma; ; 0; 0; -2147483648; 0)");
        EXPECT_EQ(recorded(), nothing);
    }
}

// ---- DownloadFileProgress: what is asked, in order --------------------------------------------

TEST_F(Download, FetchesBlocksOf100AndTheRest) {
    fake.disk.add(u"C:\\dane\\a.bin", bytes_of(1000));
    EXPECT_EQ(fetch(250).raw, -1);
    EXPECT_EQ(calls(), (Calls{"FtpOpenFileA(2; plik.bin; -2147483648; 2; 0)",
                              "GetAttr(C:\\dane)",
                              "GetAttr(C:\\dane\\a.bin)",
                              "Kill(C:\\dane\\a.bin)",
                              "FreeFile",
                              "Open(C:\\dane\\a.bin; 1; binary)",
                              "InternetReadFile(4; 100)",
                              "Put(1; 100)",
                              "DoEvents()",
                              "event(101; 250)",
                              "InternetReadFile(4; 100)",
                              "Put(1; 100)",
                              "DoEvents()",
                              "event(201; 250)",
                              "InternetReadFile(4; 50)",
                              "Put(1; 50)",
                              "Close(1)",
                              "event(250; 250)",
                              "InternetCloseHandle(4)",
                              "GetAttr(C:\\dane\\a.bin)"}));
    EXPECT_EQ(local_contents(), bytes_of(250));
    EXPECT_TRUE(is_remote_closed());
    EXPECT_EQ(recorded(), nothing);
}

struct Lengths {
    std::size_t size;
    Events events;
};

TEST_F(Download, TellsOneByteMoreButAtTheEnd) {
    const Lengths rows[] = {
        {1, {{1, 1}}},
        {99, {{99, 99}}},
        {100, {{101, 100}, {100, 100}}},
        {101, {{101, 101}, {101, 101}}},
        {200, {{101, 200}, {201, 200}, {200, 200}}},
        {250, {{101, 250}, {201, 250}, {250, 250}}},
    };
    for (const Lengths& row : rows) {
        EXPECT_EQ(fetch(row.size).raw, -1) << row.size;
        EXPECT_EQ(events, row.events) << row.size;
        EXPECT_EQ(local_contents(), bytes_of(row.size)) << row.size;
        EXPECT_EQ(fake.disk.calls("Put("), (row.size + 99) / 100) << row.size;
        EXPECT_EQ(fake.disk.calls("InternetReadFile"), (row.size + 99) / 100) << row.size;
    }
}

TEST_F(Download, NeedsNobodyWhoListens) {
    ftp.FileTransferProgress = nullptr;
    EXPECT_EQ(fetch(250).raw, -1);
    EXPECT_EQ(local_contents(), bytes_of(250));
}

TEST_F(Download, MayLeaveTheLastArgumentOut) {
    fake.internet.add(u"plik.bin", "abc");
    connect_and_list();
    String remote = u"plik.bin";
    String local = u"C:\\dane\\a.bin";
    EXPECT_EQ(ftp.DownloadFileProgress(remote, local, true).raw, -1);
    EXPECT_EQ(local_contents(), "abc");
}

// ---- The listing that the size comes from -----------------------------------------------------

TEST_F(Download, OpensNothingThatTheLastListingHasNot) {
    fake.internet.add(u"inny.bin", "abc");
    fake.internet.files[u"plik.bin"] = "abc";
    connect_and_list();
    EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, 0);
    EXPECT_EQ(calls(), Calls{});
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Download, OpensNothingBehindAListingOfDirectories) {
    fake.internet.add(u"plik.bin", "abc");
    connect();
    ASSERT_TRUE(ftp.GetMatchingFiles(u"*.*", true));
    fake.disk.log.clear();
    EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, 0);
    EXPECT_EQ(calls(), Calls{});
}

TEST_F(Download, OpensNoFileOfSizeZeroOrLess) {
    for (const std::int64_t size : {std::int64_t{0}, std::int64_t{0xFFFFFFFF}}) {
        fake.internet.listing.clear();
        fake.internet.add(u"plik.bin", "abc").nFileSizeLow = wrap32(size);
        connect_and_list();
        EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, 0);
        EXPECT_EQ(calls(), Calls{});
        EXPECT_EQ(recorded(), nothing);
    }
}

TEST_F(Download, LooksTheNameUpInAnyCase) {
    fake.internet.add(u"ŻÓŁĆ Plik.bin", "abc");
    fake.internet.files[u"żółć plik.BIN"] = "def";
    connect_and_list();
    String remote = u"  żółć plik.BIN ";
    String local = u" C:\\dane\\a.bin  ";
    EXPECT_EQ(ftp.DownloadFileProgress(remote, local, true).raw, -1);
    EXPECT_EQ(remote, u"żółć plik.BIN");  // and asks the server for the name as it was given
    EXPECT_EQ(local, u"C:\\dane\\a.bin");
    EXPECT_EQ(local_contents(), "def");
}

TEST_F(Download, TakesTheFirstOfTwoEntries) {
    fake.internet.add(u"PLIK.bin", "abcde");
    fake.internet.add(u"plik.bin", "abc");
    connect_and_list();
    EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, -1);
    EXPECT_EQ(events, (Events{{5, 5}}));
    EXPECT_EQ(local_contents(), std::string("abc\0\0", 5));
}

TEST_F(Download, TrustsTheCountOfEntriesThatACallerWrites) {
    fake.internet.add(u"inny.bin", "abc");
    fake.internet.add(u"plik.bin", "abc");
    connect_and_list();
    ftp.lMatching = 1;
    EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, 0);
    ftp.lMatching = -5;
    EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, 0);
    EXPECT_EQ(calls(), Calls{});
    ftp.lMatching = 3;  // one too many; the file is found before
    EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, -1);
    // A name that is not there runs past the end of the arrays.
    String remote = u"nie ma";
    String local = u"C:\\dane\\b.bin";
    fake.disk.log.clear();
    EXPECT_EQ(ftp.DownloadFileProgress(remote, local, true).raw, 0);
    EXPECT_EQ(calls(), Calls{"Close(0)"});
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Download, RefusesAnEmptyName) {
    fake.internet.add(u"plik.bin", "abc");
    connect_and_list();
    for (const auto& [local_name, remote_name] :
         {std::pair{u"", u"plik.bin"}, {u"x", u""}, {u"   ", u" plik.bin "}, {u" x ", u"  "}}) {
        String local = local_name;
        String remote = remote_name;
        Boolean asc = true;
        EXPECT_EQ(ftp.DownloadFileProgress(remote, local, true, asc).raw, 0);
        EXPECT_EQ(local, String(trim(StringView(local_name))));
        EXPECT_EQ(remote, String(trim(StringView(remote_name))));
        EXPECT_EQ(asc.raw, 0);
    }
    EXPECT_EQ(calls(), Calls{});
    EXPECT_EQ(recorded(), nothing);
}

// ---- Local files ------------------------------------------------------------------------------

TEST_F(Download, WritesOverAFileFromItsFirstByte) {
    fake.disk.add(u"C:\\dane\\a.bin", std::string(400, 's'));
    EXPECT_EQ(fetch(250, false).raw, -1);
    EXPECT_EQ(local_contents(), bytes_of(250) + std::string(150, 's'));
    EXPECT_EQ(fake.disk.calls("Kill"), 0u);
}

TEST_F(Download, MakesTheFolderOneLevel) {
    fake.internet.add(u"plik.bin", "abc");
    connect_and_list();
    EXPECT_EQ(fetch_as(u"C:\\nowy\\a.bin").raw, -1);
    EXPECT_EQ(fake.disk.find(u"C:\\nowy\\a.bin")->contents, "abc");
    EXPECT_EQ(fetch_as(u"C:\\x\\y\\a.bin").raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.disk.find(u"C:\\x"), nullptr);
}

TEST_F(Download, RefusesAPathWithoutAFolder) {
    fake.internet.add(u"plik.bin", "abc");
    connect_and_list();
    EXPECT_EQ(fetch_as(u"a.bin").raw, 0);
    EXPECT_EQ(calls(), (Calls{"FtpOpenFileA(2; plik.bin; -2147483648; 2; 0)", "GetAttr()",
                              "MkDir()", "Close(0)"}));
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2, 4}));
}

TEST_F(Download, LeavesTheRemoteFileOpenWhereTheLocalOneFails) {
    fake.disk.add(u"C:\\dane\\a.bin", "stary").is_held = true;
    EXPECT_EQ(fetch(250).raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(local_contents(), "stary");
    EXPECT_EQ(events, Events{});
    EXPECT_FALSE(is_remote_closed());
}

TEST_F(Download, TakesAFreeNumber) {
    fake.disk.add(u"C:\\dane\\inny.bin", "i");
    fake.file_table.Open(u"C:\\dane\\inny.bin", 1, OpenMode::Binary, Sharing::Default);
    EXPECT_EQ(fetch(250).raw, -1);
    EXPECT_EQ(fake.disk.calls("Open(C:\\dane\\a.bin; 2; binary)"), 1u);
    EXPECT_EQ(fake.disk.calls("LOF"), 0u);
    EXPECT_EQ(local_contents(), bytes_of(250));
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{1});
}

TEST_F(Download, IsFalseWhereTheFileIsGoneAtTheEnd) {
    on_event = [this](Long& current, Long& total) {
        if (current == total) {
            fake.disk.remove(u"C:\\dane\\a.bin");
        }
    };
    EXPECT_EQ(fetch(250).raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_TRUE(is_remote_closed());
}

// ---- What the server does ---------------------------------------------------------------------

TEST_F(Download, RecordsARemoteFileThatDoesNotOpen) {
    fake.internet.response = u"550 nie ma";
    fake.internet.response_code = 550;
    faults().fail_at("FtpOpenFileA", 1, FaultSpan::Once, 12003);
    EXPECT_EQ(fetch(250).raw, 0);
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"550 nie ma", 550}));
    EXPECT_EQ(calls(), (Calls{"InternetGetLastResponseInfoA(12003; 0; 0)",
                              "InternetGetLastResponseInfoA(550; 10; 10)"}));
    EXPECT_EQ(local_contents(), "-");
}

struct ReadFault {
    Long n;
    Events events;
    std::size_t written;
};

TEST_F(Download, EndsAtTheFirstBlockThatCannotBeRead) {
    const ReadFault rows[] = {
        {1, {}, 0}, {2, {{101, 250}}, 100}, {3, {{101, 250}, {201, 250}}, 200}};
    fake.internet.response = u"426 zerwane";
    for (const ReadFault& row : rows) {
        faults().fail_at("InternetReadFile", row.n, FaultSpan::Once, 12031);
        ftp.Disconnect();
        EXPECT_EQ(fetch(250).raw, 0) << row.n;
        EXPECT_EQ(events, row.events) << row.n;
        EXPECT_EQ(local_contents(), bytes_of(250).substr(0, row.written)) << row.n;
        EXPECT_EQ(recorded(), (std::pair<String, Long>{u"426 zerwane", 12031})) << row.n;
        EXPECT_EQ(calls().back(), "Close(1)") << row.n;
        EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{}) << row.n;
        EXPECT_EQ(fake.internet.open_handles().back(), ftp.FTPHwnd() + 2) << row.n;
        EXPECT_EQ(ftp.Connected.raw, -1) << row.n;
    }
}

TEST_F(Download, WritesTheStaleTailOfAShortBlock) {
    fake.internet.add(u"plik.bin", bytes_of(250));
    connect_and_list();
    fake.internet.files[u"plik.bin"] = std::string(130, 'x') + std::string(20, 'y');
    EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, -1);
    // The second block is half the first one's; the rest comes from a buffer of its own.
    EXPECT_EQ(local_contents(), std::string(130, 'x') + std::string(20, 'y') +
                                    std::string(50, 'x') + std::string(50, '\0'));
    EXPECT_EQ(events.back(), (std::pair<Long, Long>{250, 250}));
}

// ---- Cancelling -------------------------------------------------------------------------------

TEST_F(Download, IsCancelledAtTheNextBlock) {
    on_event = [this](Long& current, Long&) { ftp.Connected = current < 201; };
    EXPECT_EQ(fetch(450).raw, 0);
    EXPECT_EQ(events, (Events{{101, 450}, {201, 450}}));
    // The file is still open under its number, so that it cannot be deleted and stays.
    EXPECT_EQ(Calls(calls().end() - 4, calls().end()),
              (Calls{"InternetCloseHandle(4)", "GetAttr(C:\\dane\\a.bin)", "Kill(C:\\dane\\a.bin)",
                     "Close(1)"}));
    EXPECT_EQ(local_contents(), bytes_of(450).substr(0, 200));
    EXPECT_TRUE(is_remote_closed());
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(ftp.Connected.raw, 0);
    EXPECT_EQ(ftp.FTPHwnd(), 2);
}

TEST_F(Download, IsCancelledFromThePump) {
    messages.run = [this] { ftp.Connected = false; };
    EXPECT_EQ(fetch(450).raw, 0);
    EXPECT_EQ(events, (Events{{101, 450}}));  // the event of the block still comes
    EXPECT_EQ(local_contents(), bytes_of(450).substr(0, 100));
}

TEST_F(Download, IsCancelledBeforeTheRest) {
    on_event = [this](Long&, Long&) { ftp.Connected = false; };
    EXPECT_EQ(fetch(150).raw, 0);
    EXPECT_EQ(events, (Events{{101, 150}}));
    EXPECT_EQ(fake.disk.calls("InternetReadFile"), 1u);
    EXPECT_EQ(local_contents(), bytes_of(150).substr(0, 100));
}

TEST_F(Download, IsCancelledBehindTheLastFullBlock) {
    on_event = [this](Long& current, Long&) { ftp.Connected = current < 201; };
    EXPECT_EQ(fetch(200).raw, 0);
    EXPECT_EQ(events, (Events{{101, 200}, {201, 200}}));
    EXPECT_EQ(local_contents(), bytes_of(200));
    EXPECT_TRUE(is_remote_closed());
}

TEST_F(Download, DeletesTheWholeFileWhereTheLastEventCancels) {
    on_event = [this](Long& current, Long& total) { ftp.Connected = current != total; };
    EXPECT_EQ(fetch(250).raw, 0);
    EXPECT_EQ(events, (Events{{101, 250}, {201, 250}, {250, 250}}));
    EXPECT_EQ(Calls(calls().end() - 5, calls().end()),
              (Calls{"Close(1)", "event(250; 250)", "InternetCloseHandle(4)",
                     "GetAttr(C:\\dane\\a.bin)", "Kill(C:\\dane\\a.bin)"}));
    EXPECT_EQ(local_contents(), "-");
    EXPECT_TRUE(is_remote_closed());
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Download, IsFalseWhereTheLastEventCancelsAndTheFileIsGone) {
    on_event = [this](Long& current, Long& total) {
        if (current == total) {
            ftp.Connected = false;
            fake.disk.remove(u"C:\\dane\\a.bin");
        }
    };
    EXPECT_EQ(fetch(50).raw, 0);
    EXPECT_EQ(fake.disk.calls("Kill"), 0u);
}

TEST_F(Download, FetchesNothingWhileConnectedIsFalse) {
    for (const std::size_t size : {50U, 250U}) {
        fake.internet.listing.clear();
        fake.internet.add(u"plik.bin", bytes_of(size));
        connect_and_list();
        events.clear();
        ftp.Connected = false;
        EXPECT_EQ(fetch_as(u"C:\\dane\\a.bin").raw, 0);
        EXPECT_EQ(events, Events{});
        EXPECT_EQ(fake.disk.calls("InternetReadFile"), 0u);
        EXPECT_EQ(local_contents(), "");
    }
}

TEST_F(Download, GoesOnWhereConnectedIsSetAgain) {
    messages.run = [this] { ftp.Connected = false; };
    on_event = [this](Long&, Long&) { ftp.Connected = true; };
    EXPECT_EQ(fetch(250).raw, -1);
    EXPECT_EQ(local_contents(), bytes_of(250));
}

// ---- A handler that writes the event's arguments ----------------------------------------------

TEST_F(Download, TakesTheCounterThatAHandlerWrites) {
    on_event = [](Long& current, Long&) { current = 5000; };
    EXPECT_EQ(fetch(300).raw, -1);
    EXPECT_EQ(events, (Events{{101, 300}, {5100, 300}, {5100, 300}, {300, 300}}));
    EXPECT_EQ(local_contents(), bytes_of(300));
}

TEST_F(Download, TakesTheTotalThatAHandlerWrites) {
    on_event = [](Long&, Long& total) { total = 1030; };
    EXPECT_EQ(fetch(250).raw, -1);
    EXPECT_EQ(events, (Events{{101, 250}, {201, 1030}, {1030, 1030}}));
    EXPECT_EQ(local_contents(), bytes_of(250).substr(0, 230));
}

TEST_F(Download, ATotalBelowZeroIsNoCountOfBytes) {
    on_event = [](Long&, Long& total) { total = -50; };
    EXPECT_EQ(fetch(250).raw, 0);
    EXPECT_EQ(events, (Events{{101, 250}, {201, -50}}));
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
}

TEST_F(Download, AFailureOfAHandlerEndsTheTransfer) {
    on_event = [](Long&, Long&) { throw Failure(5); };
    EXPECT_EQ(fetch(250).raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
    EXPECT_FALSE(is_remote_closed());
}

TEST_F(Download, FollowsTheCallersVariableToTheEnd) {
    // The name is the caller's own; a handler that changes it changes what is looked for at the
    // end.
    fake.internet.add(u"plik.bin", bytes_of(50));
    connect_and_list();
    String remote = u"plik.bin";
    String local = u"C:\\dane\\a.bin";
    on_event = [&](Long&, Long&) { local = u"C:\\dane\\nie ma takiego pliku, a nazwa jest długa"; };
    EXPECT_EQ(ftp.DownloadFileProgress(remote, local, true).raw, 0);
    EXPECT_EQ(local_contents(), bytes_of(50));
}

}  // namespace
}  // namespace kvarta16
