// clsFTP: each operation of the platform fails at each of its calls, once and from then on. What
// must hold whatever happens: a result, no failure but those of the accessors, no local file left
// open, and what is recorded only where the member records.

#include "ftp_support.h"

namespace kvarta16 {
namespace {

using namespace ftp_tests;

struct FaultCase {
    const char* operation;
    Long calls;           // that a good transfer makes
    bool once_is_enough;  // to make the transfer fail
    bool is_recorded;
};

class Faults : public Ftp {
  protected:
    // A fresh platform for each fault: this one is left alone.
    struct Run {
        Boolean result;
        std::pair<String, Long> recorded;
        std::set<Integer> open_numbers;
        std::string remote;
        std::string local;
        Long failed_calls;
    };
    static Run upload(const char* operation, Long n, FaultSpan span) {
        return run(operation, n, span, [](Bench& bench) {
            String local = u"C:\\dane\\a.bin";
            String remote = u"plik.bin";
            Boolean asc;
            return bench.ftp.UploadFileProgress(local, remote, asc);
        });
    }
    static Run download(const char* operation, Long n, FaultSpan span) {
        return run(operation, n, span, [](Bench& bench) {
            String local = u"C:\\dane\\b.bin";
            String remote = u"wzór.bin";
            return bench.ftp.DownloadFileProgress(remote, local, true);
        });
    }

  private:
    class Bench : public Ftp {
      public:
        void TestBody() override {}
        using Ftp::connect_and_list;
        using Ftp::fake;
        using Ftp::faults;
        using Ftp::ftp;
        using Ftp::recorded;
    };

    static Run run(const char* operation, Long n, FaultSpan span,
                   const std::function<Boolean(Bench&)>& transfer) {
        Bench bench;
        bench.fake.disk.add(u"C:\\dane\\a.bin", bytes_of(250));
        bench.fake.disk.add(u"C:\\dane\\b.bin", "stary");
        bench.fake.internet.add(u"wzór.bin", bytes_of(250));
        bench.connect_and_list();
        bench.fake.internet.response = u"426";
        bench.faults().fail_at(operation, n, span, 57);
        Run outcome;
        outcome.result = transfer(bench);
        outcome.recorded = bench.recorded();
        outcome.open_numbers = bench.fake.file_table.open_numbers();
        outcome.remote = bench.fake.internet.files[u"plik.bin"];
        const MemoryDisk::Entry* local = bench.fake.disk.find(u"C:\\dane\\b.bin");
        outcome.local = local == nullptr ? "-" : local->contents;
        outcome.failed_calls = bench.faults().failed_calls();
        return outcome;
    }
};

constexpr FaultCase upload_faults[] = {
    {"FtpOpenFileA", 1, true, true},
    {"FreeFile", 1, true, false},
    {"FileTable.Open", 1, true, false},
    {"LOF", 1, true, false},
    {"Get", 3, true, false},
    {"InternetWriteFile", 3, false, true},
    {"FileTable.Close", 1, true, false},
    {"InternetCloseHandle", 1, false, false},
};

constexpr FaultCase download_faults[] = {
    {"FtpOpenFileA", 1, true, true},
    {"Kill", 1, true, false},
    {"FreeFile", 1, true, false},
    {"FileTable.Open", 1, true, false},
    {"Seek", 1, true, false},
    {"InternetReadFile", 3, true, true},
    {"Put", 3, true, false},
    {"FileTable.Close", 1, true, false},
    {"InternetCloseHandle", 1, false, false},
};

const std::pair<String, Long> no_record{u"", 0};
const std::pair<String, Long> record{u"426", 57};

TEST_F(Faults, OfAnUpload) {
    for (const FaultCase& row : upload_faults) {
        for (Long n = 1; n <= row.calls + 1; ++n) {
            for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
                SCOPED_TRACE(std::string(row.operation) + " " + std::to_string(n));
                const Run run = upload(row.operation, n, span);
                const bool is_reached = n <= row.calls;
                const bool is_write = std::string_view(row.operation) == "InternetWriteFile";
                const bool fails = is_reached && (row.once_is_enough ||
                                                  (is_write && span == FaultSpan::FromThenOn));
                EXPECT_EQ(run.result.raw, fails ? 0 : -1);
                EXPECT_EQ(run.recorded, fails && row.is_recorded ? record : no_record);
                EXPECT_EQ(run.failed_calls > 0, is_reached);
                if (std::string_view(row.operation) != "FileTable.Close") {
                    EXPECT_EQ(run.open_numbers, std::set<Integer>{});
                }
                if (!fails) {
                    EXPECT_EQ(run.remote, bytes_of(250));
                } else {
                    EXPECT_EQ(run.remote, bytes_of(250).substr(0, run.remote.size()));
                }
            }
        }
    }
}

TEST_F(Faults, OfADownload) {
    for (const FaultCase& row : download_faults) {
        for (Long n = 1; n <= row.calls + 1; ++n) {
            for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
                SCOPED_TRACE(std::string(row.operation) + " " + std::to_string(n));
                const Run run = download(row.operation, n, span);
                const bool fails = n <= row.calls && row.once_is_enough;
                EXPECT_EQ(run.result.raw, fails ? 0 : -1);
                EXPECT_EQ(run.recorded, fails && row.is_recorded ? record : no_record);
                EXPECT_EQ(run.failed_calls > 0, n <= row.calls);
                if (std::string_view(row.operation) != "FileTable.Close") {
                    EXPECT_EQ(run.open_numbers, std::set<Integer>{});
                }
                if (!fails) {
                    EXPECT_EQ(run.local, bytes_of(250));
                }
            }
        }
    }
}

// The attributes are read for the folder, for the file before and for the file behind; a reading
// that fails says no.
TEST_F(Faults, OfTheAttributesInADownload) {
    struct Row {
        Long n;
        FaultSpan span;
        int result;
        const char* local;
    };
    const std::string tail = bytes_of(250);
    const Row rows[] = {
        {1, FaultSpan::Once, 0, "stary"},        // no folder: it is made, and that fails
        {1, FaultSpan::FromThenOn, 0, "stary"},  //
        {2, FaultSpan::Once, -1, tail.c_str()},  // no file: it is written over
        {2, FaultSpan::FromThenOn, 0, tail.c_str()},
        {3, FaultSpan::Once, 0, tail.c_str()},   // no file behind
        {4, FaultSpan::Once, -1, tail.c_str()},  // never reached
    };
    for (const Row& row : rows) {
        const Run run = download("GetAttr", row.n, row.span);
        EXPECT_EQ(run.result.raw, row.result) << row.n;
        EXPECT_EQ(run.local.substr(0, 5), std::string(row.local, 5)) << row.n;
        EXPECT_EQ(run.recorded, no_record) << row.n;
        EXPECT_EQ(run.open_numbers, std::set<Integer>{}) << row.n;
    }
}

TEST_F(Faults, OfAListing) {
    connect();
    fake.internet.add(u"a", "abc");
    fake.internet.add(u"b", "abc");
    const auto list_with = [&](const char* operation, Long n) {
        faults().fail_at(operation, n, FaultSpan::Once, 12031);
        const Boolean result = ftp.GetMatchingFiles();
        return std::pair<int, Long>{result.raw, ftp.lMatching};
    };
    using Outcome = std::pair<int, Long>;
    EXPECT_EQ(list_with("FtpFindFirstFileA", 1), (Outcome{0, 0}));
    EXPECT_EQ(list_with("InternetFindNextFileA", 1), (Outcome{-1, 1}));  // as the end of a listing
    EXPECT_EQ(list_with("InternetFindNextFileA", 2), (Outcome{-1, 2}));
    EXPECT_EQ(list_with("InternetCloseHandle", 1), (Outcome{-1, 2}));
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(list_with("FileTimeToLocalFileTime", 2), (Outcome{-1, 2}));
    EXPECT_EQ(ftp.LastErrorNumber(), internet_error::invalid_parameter);
}

TEST_F(Faults, OfConnectAndDisconnect) {
    faults().fail_at("InternetConnectA", 1, FaultSpan::Once, 12014);
    EXPECT_EQ(ftp.Connect().raw, 0);
    EXPECT_EQ(ftp.InternetHwnd(), 1);
    EXPECT_EQ(recorded(), nothing);
    faults().fail_at("GetAttr", 1, FaultSpan::FromThenOn, 75);
    fake.disk.add(u"c:\\port21147.txt");
    EXPECT_EQ(ftp.Connect().raw, -1);
    EXPECT_NE(calls().back().find("; 21; "), std::string::npos);
    faults().fail_at("InternetCloseHandle", 1, FaultSpan::FromThenOn, 6);
    ftp.Disconnect();
    EXPECT_EQ(ftp.FTPHwnd(), 0);
    EXPECT_EQ(ftp.InternetHwnd(), 0);
    EXPECT_EQ(ftp.Connected.raw, 0);
}

}  // namespace
}  // namespace kvarta16
