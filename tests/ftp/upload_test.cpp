// clsFTP: UploadFile and UploadFileProgress.

#include "ftp_support.h"

namespace kvarta16 {
namespace {

using namespace ftp_tests;

class Upload : public Ftp {
  protected:
    // Sends a local file of so many bytes as plik.bin.
    Boolean send(std::size_t size) {
        fake.disk.add(u"C:\\dane\\a.bin", bytes_of(size));
        fake.internet.files.clear();
        events.clear();
        fake.disk.log.clear();
        String local = u"C:\\dane\\a.bin";
        String remote = u"plik.bin";
        Boolean asc = true;
        const Boolean result = ftp.UploadFileProgress(local, remote, asc);
        EXPECT_EQ(asc.raw, 0);
        return result;
    }
    // Sends whatever stands under that name; no more is told of it than the result.
    Boolean send_path(String local) {
        String remote = u"plik.bin";
        Boolean asc;
        return ftp.UploadFileProgress(local, remote, asc);
    }
};

// ---- UploadFile -------------------------------------------------------------------------------

TEST_F(Upload, HandsAWholeFileToThePlatform) {
    connect();
    fake.disk.add(u"C:\\dane\\a.bin", "abc");
    Boolean asc = true;
    EXPECT_EQ(ftp.UploadFile(u"C:\\dane\\a.bin", u"b.bin", asc).raw, 1);
    EXPECT_EQ(asc.raw, 0);
    EXPECT_EQ(calls(), Calls{"FtpPutFileA(2; C:\\dane\\a.bin; b.bin; 2; 0)"});
    EXPECT_EQ(fake.internet.files.at(u"b.bin"), "abc");
    EXPECT_EQ(ftp.UploadFile(u"C:\\dane\\a.bin", u"c.bin").raw, 1);
    EXPECT_EQ(events, Events{});
}

TEST_F(Upload, RecordsNoRefusalOfAWholeFile) {
    connect();
    Boolean asc = true;
    EXPECT_EQ(ftp.UploadFile(u"C:\\nie.bin", u"b.bin", asc).raw, 0);
    EXPECT_EQ(asc.raw, 0);
    EXPECT_EQ(calls().size(), 1u);
    EXPECT_EQ(recorded(), nothing);
}

class FailingPut final : public ForwardingInternet {
  public:
    using ForwardingInternet::ForwardingInternet;
    Long FtpPutFileA(Long, StringView, StringView, Long, Long) override { throw Failure(57); }
};

TEST_F(Upload, RecordsAFailureOfAWholeFile) {
    connect();
    FailingPut failing(fake.internet);
    fake.operations.internet = &failing;
    Boolean asc = true;
    EXPECT_EQ(ftp.UploadFile(u"C:\\dane\\a.bin", u"b.bin", asc).raw, 0);
    EXPECT_EQ(asc.raw, 0);
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"Device I/O error", 57}));
}

// ---- UploadFileProgress: what is asked, in order ----------------------------------------------

TEST_F(Upload, SendsBlocksOf100AndTheRest) {
    connect();
    EXPECT_EQ(send(250).raw, -1);
    EXPECT_EQ(calls(), (Calls{"FtpOpenFileA(2; plik.bin; 1073741824; 2; 0)", "FreeFile",
                              "Open(C:\\dane\\a.bin; 1; binary read)", "LOF(1)", "Get(1; 100)",
                              "InternetWriteFile(3; 100)", "DoEvents()", "event(100; 250)",
                              "Get(1; 100)", "InternetWriteFile(3; 100)", "DoEvents()",
                              "event(200; 250)", "Get(1; 100)", "InternetWriteFile(3; 50)",
                              "Close(1)", "event(250; 250)", "InternetCloseHandle(3)"}));
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(250));
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2}));
    EXPECT_EQ(recorded(), nothing);
}

struct Lengths {
    std::size_t size;
    Events events;
};

TEST_F(Upload, TellsHowFarItIs) {
    const Lengths rows[] = {
        {0, {{0, 0}}},
        {1, {{1, 1}}},
        {99, {{99, 99}}},
        {100, {{100, 100}, {100, 100}}},
        {101, {{100, 101}, {101, 101}}},
        {200, {{100, 200}, {200, 200}, {200, 200}}},
        {250, {{100, 250}, {200, 250}, {250, 250}}},
    };
    connect();
    for (const Lengths& row : rows) {
        EXPECT_EQ(send(row.size).raw, -1) << row.size;
        EXPECT_EQ(events, row.events) << row.size;
        EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(row.size)) << row.size;
        EXPECT_EQ(fake.disk.calls("DoEvents"), row.size / 100) << row.size;
        EXPECT_EQ(fake.disk.calls("InternetWriteFile"), (row.size + 99) / 100) << row.size;
    }
}

TEST_F(Upload, SendsNothingOfAnEmptyFile) {
    connect();
    EXPECT_EQ(send(0).raw, -1);
    EXPECT_EQ(calls(), (Calls{"FtpOpenFileA(2; plik.bin; 1073741824; 2; 0)", "FreeFile",
                              "Open(C:\\dane\\a.bin; 1; binary read)", "LOF(1)", "Close(1)",
                              "event(0; 0)", "InternetCloseHandle(3)"}));
}

TEST_F(Upload, NeedsNobodyWhoListens) {
    connect();
    ftp.FileTransferProgress = nullptr;
    EXPECT_EQ(send(250).raw, -1);
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(250));
}

TEST_F(Upload, DoesNotLookAtTheCountWritten) {
    connect();
    fake.internet.told_written = 3;
    EXPECT_EQ(send(150).raw, -1);
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(150));
}

TEST_F(Upload, CannotBeCancelled) {
    connect();
    on_event = [this](Long&, Long&) { ftp.Connected = false; };
    EXPECT_EQ(send(250).raw, -1);
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(250));
    EXPECT_EQ(ftp.Connected.raw, 0);
}

// ---- Names ------------------------------------------------------------------------------------

TEST_F(Upload, TrimsTheNames) {
    connect();
    fake.disk.add(u"C:\\dane\\a b.bin", "abc");
    String local = u"  C:\\dane\\a b.bin ";
    String remote = u" z plik.bin   ";
    Boolean asc = true;
    EXPECT_EQ(ftp.UploadFileProgress(local, remote, asc).raw, -1);
    EXPECT_EQ(local, u"C:\\dane\\a b.bin");
    EXPECT_EQ(remote, u"z plik.bin");
    EXPECT_EQ(fake.internet.files.at(u"z plik.bin"), "abc");
}

TEST_F(Upload, RefusesAnEmptyName) {
    connect();
    for (const auto& [local_name, remote_name] :
         {std::pair{u"", u"x"}, {u"x", u""}, {u"   ", u" x "}, {u" x ", u"  "}, {u"", u""}}) {
        String local = local_name;
        String remote = remote_name;
        Boolean asc = true;
        EXPECT_EQ(ftp.UploadFileProgress(local, remote, asc).raw, 0);
        EXPECT_EQ(local, String(trim(StringView(local_name))));
        EXPECT_EQ(remote, String(trim(StringView(remote_name))));
        EXPECT_EQ(asc.raw, 0);
    }
    EXPECT_EQ(calls(), Calls{});
    EXPECT_EQ(recorded(), nothing);
}

// ---- Failures before the first block ----------------------------------------------------------

TEST_F(Upload, RecordsARemoteFileThatDoesNotOpen) {
    connect();
    fake.internet.response = u"553 nie wolno";
    fake.internet.response_code = 553;
    faults().fail_at("FtpOpenFileA", 1, FaultSpan::Once, 12003);
    EXPECT_EQ(send(250).raw, 0);
    EXPECT_EQ(calls(), (Calls{"InternetGetLastResponseInfoA(12003; 0; 0)",
                              "InternetGetLastResponseInfoA(553; 13; 13)"}));
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"553 nie wolno", 553}));
    EXPECT_EQ(events, Events{});
}

TEST_F(Upload, RefusesALocalFileThatIsNotThere) {
    connect();
    EXPECT_EQ(send_path(u"C:\\dane\\nie ma.bin").raw, 0);
    EXPECT_EQ(fake.disk.find(u"C:\\dane\\nie ma.bin"), nullptr);  // and does not make it
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(events, Events{});
    EXPECT_EQ(calls().back(), "Close(1)");
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2, 3}));
}

TEST_F(Upload, SendsWhatIsOpenToBeReadOrMayOnlyBeRead) {
    connect();
    fake.disk.add(u"C:\\dane\\a.bin", bytes_of(250));
    fake.disk.find(u"C:\\dane\\a.bin")->attributes = file_attribute::read_only;
    fake.file_table.Open(u"C:\\dane\\a.bin", 2, OpenMode::Input, Sharing::Default);
    EXPECT_EQ(send_path(u"C:\\dane\\a.bin").raw, -1);
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(250));
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{2});
}

TEST_F(Upload, RefusesAFolder) {
    connect();
    EXPECT_EQ(send_path(u"C:\\dane").raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2, 3}));
}

// ---- The literal number 1 ---------------------------------------------------------------------

TEST_F(Upload, TakesTheSizeOfTheFileUnderNumber1) {
    for (const std::size_t others : {0U, 30U, 150U, 420U}) {
        connect();
        fake.disk.add(u"C:\\dane\\inny.bin", std::string(others, 'i'));
        fake.file_table.Open(u"C:\\dane\\inny.bin", 1, OpenMode::Binary, Sharing::Default);
        EXPECT_EQ(send(250).raw, -1);
        EXPECT_EQ(fake.disk.calls("Open(C:\\dane\\a.bin; 2; binary read)"), 1u);
        EXPECT_EQ(events.back(), (std::pair{static_cast<Long>(others), static_cast<Long>(others)}));
        // What the block held before stays in it behind the end of the file.
        const std::string sent = fake.internet.files.at(u"plik.bin");
        ASSERT_EQ(sent.size(), others);
        EXPECT_EQ(sent.substr(0, 250), bytes_of(250).substr(0, others));
        if (others == 420) {
            EXPECT_EQ(sent.substr(250, 50), bytes_of(250).substr(150, 50));
            EXPECT_EQ(sent.substr(300, 100), sent.substr(200, 100));
        }
        EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{1});
        fake.file_table.Close(1);
    }
}

TEST_F(Upload, FailsWhereNumber1IsNotOpen) {
    // The file comes under another number while 1 is free.
    class SecondFree final : public ForwardingFileTable {
      public:
        using ForwardingFileTable::ForwardingFileTable;
        Integer FreeFile() override { return 2; }
    };
    SecondFree table(fake.file_table);
    connect();
    fake.operations.file_table = &table;
    EXPECT_EQ(send(250).raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(events, Events{});
    EXPECT_EQ(calls().back(), "Close(2)");
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
}

// ---- Retries ----------------------------------------------------------------------------------

TEST_F(Upload, TriesABlockElevenTimes) {
    connect();
    fake.internet.response = u"426 zerwane";
    fake.internet.response_code = 426;
    faults().fail_at("InternetWriteFile", 2, FaultSpan::FromThenOn, 12031);
    EXPECT_EQ(send(250).raw, 0);
    Events expected{{100, 250}};
    for (int i = 0; i < 11; ++i) {
        expected.emplace_back(-1, 250);
    }
    EXPECT_EQ(events, expected);
    EXPECT_EQ(faults().failed_calls(), 11);
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"426 zerwane", 426}));
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(250).substr(0, 100));
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2, 3}));
    EXPECT_EQ(fake.disk.calls("DoEvents"), 1u);
    EXPECT_EQ(calls().back(), "Close(1)");
}

TEST_F(Upload, CountsTheRetriesOfEachBlockAnew) {
    connect();
    // Ten failures for each of the three pieces, the rest among them.
    for (const Long first : {1, 12, 23}) {
        for (Long i = 0; i < 10; ++i) {
            faults().fail_at("InternetWriteFile", first + i, FaultSpan::Once, 12031);
        }
    }
    EXPECT_EQ(send(250).raw, -1);
    EXPECT_EQ(faults().failed_calls(), 30);
    EXPECT_EQ(std::ranges::count(events, std::pair<Long, Long>{-1, 250}), 30);
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(250));
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Upload, TriesTheRestElevenTimesToo) {
    connect();
    faults().fail_at("InternetWriteFile", 3, FaultSpan::FromThenOn, 12031);
    EXPECT_EQ(send(250).raw, 0);
    EXPECT_EQ(faults().failed_calls(), 11);
    EXPECT_EQ(events.size(), 13u);
    EXPECT_EQ(events.back(), (std::pair<Long, Long>{-1, 250}));
    EXPECT_EQ(ftp.LastErrorNumber(), 12031);
}

TEST_F(Upload, PumpsNothingBetweenTheTries) {
    connect();
    faults().fail_at("InternetWriteFile", 1, FaultSpan::Once, 12031);
    EXPECT_EQ(send(100).raw, -1);
    EXPECT_EQ(calls(),
              (Calls{"FtpOpenFileA(2; plik.bin; 1073741824; 2; 0)", "FreeFile",
                     "Open(C:\\dane\\a.bin; 1; binary read)", "LOF(1)", "Get(1; 100)",
                     "event(-1; 100)", "InternetWriteFile(3; 100)", "DoEvents()", "event(100; 100)",
                     "Close(1)", "event(100; 100)", "InternetCloseHandle(3)"}));
}

// ---- A handler that writes the event's arguments ----------------------------------------------

TEST_F(Upload, TakesTheCounterThatAHandlerWrites) {
    connect();
    on_event = [](Long& current, Long&) { current = 5000; };
    EXPECT_EQ(send(300).raw, -1);
    EXPECT_EQ(events, (Events{{100, 300}, {5100, 300}, {5100, 300}, {300, 300}}));
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(300));
}

TEST_F(Upload, WrapsTheCounter) {
    connect();
    on_event = [](Long& current, Long&) { current = std::numeric_limits<Long>::max(); };
    EXPECT_EQ(send(200).raw, -1);
    EXPECT_EQ(events, (Events{{100, 200}, {-2147483549, 200}, {200, 200}}));
}

TEST_F(Upload, TakesTheTotalThatAHandlerWrites) {
    connect();
    on_event = [](Long&, Long& total) { total = 1030; };
    EXPECT_EQ(send(250).raw, -1);
    // The number of full blocks stands; the rest is that of the new total.
    EXPECT_EQ(events, (Events{{100, 250}, {200, 1030}, {1030, 1030}}));
    EXPECT_EQ(fake.internet.files.at(u"plik.bin"), bytes_of(250).substr(0, 230));
}

TEST_F(Upload, TheMinusOneIsNoVariableOfTheTransfer) {
    connect();
    faults().fail_at("InternetWriteFile", 2, FaultSpan::Once, 12031);
    on_event = [](Long& current, Long& total) {
        if (current == -1) {
            current = 9999;
            total = 400;
        }
    };
    EXPECT_EQ(send(300).raw, -1);
    EXPECT_EQ(events, (Events{{100, 300}, {-1, 300}, {200, 400}, {300, 400}, {400, 400}}));
}

TEST_F(Upload, ATotalBelowZeroIsNoCountOfBytes) {
    connect();
    on_event = [](Long&, Long& total) { total = -50; };
    EXPECT_EQ(send(250).raw, 0);
    EXPECT_EQ(events, (Events{{100, 250}, {200, -50}}));
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
}

TEST_F(Upload, AHandlerMayPutAnotherInItsPlace) {
    connect();
    int later = 0;
    ftp.FileTransferProgress = [&](Long&, Long&) {
        ftp.FileTransferProgress = [&later](Long&, Long&) { ++later; };
    };
    EXPECT_EQ(send(250).raw, -1);
    EXPECT_EQ(later, 2);
}

TEST_F(Upload, AFailureOfAHandlerEndsTheTransfer) {
    connect();
    on_event = [](Long& current, Long&) {
        if (current == 200) {
            throw Failure(5);
        }
    };
    EXPECT_EQ(send(250).raw, 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{});
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2, 3}));
}

TEST_F(Upload, TheLastEventComesWithTheLocalFileClosed) {
    connect();
    on_event = [this](Long& current, Long& total) {
        EXPECT_EQ(fake.file_table.open_numbers().empty(), current == total);
        EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2, 3}));
    };
    EXPECT_EQ(send(250).raw, -1);
}

}  // namespace
}  // namespace kvarta16
