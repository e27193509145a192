// clsFTP: the session, the port, the remote commands, the size of a file.

#include "ftp_support.h"

namespace kvarta16 {
namespace {

using namespace ftp_tests;

// ---- Connect and Disconnect -------------------------------------------------------------------

TEST_F(Ftp, IsBornWithoutAConnectionAndPassive) {
    const clsFTP born;
    EXPECT_EQ(born.Connected, Boolean(false));
    EXPECT_EQ(born.lMatching, 0);
    EXPECT_EQ(born.PassiveConnection(), Boolean(true));
    EXPECT_EQ(born.ServerName(), u"");
    EXPECT_EQ(born.LoginName(), u"");
    EXPECT_EQ(born.Password(), u"");
    EXPECT_EQ(born.FTPHwnd(), 0);
    EXPECT_EQ(born.InternetHwnd(), 0);
    EXPECT_EQ(born.LastError(), u"");
    EXPECT_EQ(born.LastErrorNumber(), 0);
}

TEST_F(Ftp, ConnectsWithWhatItWasTold) {
    EXPECT_EQ(ftp.Connect().raw, -1);
    const Calls expected = {"GetAttr(c:\\port21147.txt)", "GetAttr(c:\\hadrik.txt)",
                            "GetAttr(c:\\port2121.txt)", "InternetOpenA(FTP Client; 0; ; ; 0)",
                            "InternetConnectA(1; serwer; 21; ola; tajne; 1; 134217728; 0)"};
    EXPECT_EQ(calls(), expected);
    EXPECT_EQ(ftp.InternetHwnd(), 1);
    EXPECT_EQ(ftp.FTPHwnd(), 2);
    EXPECT_EQ(ftp.Connected.raw, -1);
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Ftp, ConnectsActivelyWhereItIsNotPassive) {
    ftp.PassiveConnection(false);
    ASSERT_TRUE(ftp.Connect());
    EXPECT_EQ(calls().back(), "InternetConnectA(1; serwer; 21; ola; tajne; 1; 0; 0)");
    EXPECT_EQ(ftp.PassiveConnection(), Boolean(false));
}

TEST_F(Ftp, ReadsItsSettingsAnewAtEachConnect) {
    connect();
    ftp.ServerName(u"drugi");
    ftp.LoginName(u"ala");
    ftp.Password(u"Zażółć");
    EXPECT_TRUE(calls().empty());
    ASSERT_TRUE(ftp.Connect());
    EXPECT_EQ(calls().back(), "InternetConnectA(3; drugi; 21; ala; Zażółć; 1; 134217728; 0)");
    EXPECT_EQ(ftp.ServerName(), u"drugi");
    EXPECT_EQ(ftp.LoginName(), u"ala");
    EXPECT_EQ(ftp.Password(), u"Zażółć");
}

struct Markers {
    bool port21147;
    bool hadrik;
    bool port2121;
    const char* port;
};

TEST_F(Ftp, TakesThePortFromTheMarkerFiles) {
    constexpr Markers combinations[] = {
        {false, false, false, "21"},  {false, false, true, "2121"},  {false, true, false, "2121"},
        {false, true, true, "2121"},  {true, false, false, "21147"}, {true, false, true, "21147"},
        {true, true, false, "21147"}, {true, true, true, "21147"},
    };
    const auto stand = [&](StringView path, bool stands) {
        fake.disk.remove(path);
        if (stands) {
            fake.disk.add(path, "what it holds does not matter");
        }
    };
    for (const Markers& row : combinations) {
        stand(u"c:\\port21147.txt", row.port21147);
        stand(u"c:\\hadrik.txt", row.hadrik);
        stand(u"c:\\port2121.txt", row.port2121);
        ASSERT_TRUE(ftp.Connect());
        EXPECT_NE(calls().back().find("; serwer; " + std::string(row.port) + "; ola;"),
                  std::string::npos)
            << calls().back();
    }
}

TEST_F(Ftp, AFolderIsNoMarker) {
    fake.disk.add_folder(u"c:\\port21147.txt");
    fake.disk.add_folder(u"c:\\hadrik.txt");
    fake.disk.add_folder(u"c:\\port2121.txt");
    ASSERT_TRUE(ftp.Connect());
    EXPECT_NE(calls().back().find("; 21; "), std::string::npos);
}

TEST_F(Ftp, LeavesTheSessionOpenWhereTheServerIsMissing) {
    ftp.ServerName(u"");
    ftp.Connected = true;
    EXPECT_EQ(ftp.Connect().raw, 0);
    EXPECT_EQ(ftp.Connected.raw, 0);
    EXPECT_EQ(ftp.InternetHwnd(), 1);
    EXPECT_EQ(ftp.FTPHwnd(), 0);
    EXPECT_EQ(recorded(), nothing);
    EXPECT_EQ(fake.disk.calls("GetLastError"), 0u);

    fake.disk.log.clear();
    ftp.Connected = true;
    ftp.Disconnect();
    EXPECT_EQ(calls(), Calls{});
    EXPECT_EQ(ftp.InternetHwnd(), 1);
    EXPECT_EQ(ftp.Connected.raw, 0);
    EXPECT_EQ(fake.internet.open_handles(), std::vector<Long>{1});
}

TEST_F(Ftp, GoesOnToConnectWithoutASession) {
    faults().fail_at("InternetOpenA", 1, FaultSpan::Once, 12029);
    EXPECT_FALSE(ftp.Connect());
    EXPECT_EQ(calls().back(), "InternetConnectA(0; serwer; 21; ola; tajne; 1; 134217728; 0)");
    EXPECT_EQ(ftp.InternetHwnd(), 0);
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Ftp, ClosesTheConnectionAndThenTheSession) {
    connect();
    ftp.Disconnect();
    EXPECT_EQ(calls(), (Calls{"InternetCloseHandle(2)", "InternetCloseHandle(1)"}));
    EXPECT_EQ(ftp.FTPHwnd(), 0);
    EXPECT_EQ(ftp.InternetHwnd(), 0);
    EXPECT_EQ(ftp.Connected.raw, 0);
    ftp.Disconnect();
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(Ftp, DisconnectLooksAtTheHandleAndNotAtConnected) {
    connect();
    ftp.Connected = false;
    ftp.Disconnect();
    EXPECT_EQ(calls().size(), 2u);
}

TEST_F(Ftp, LosesBothHandlesAtASecondConnect) {
    connect();
    ASSERT_TRUE(ftp.Connect());
    EXPECT_EQ(ftp.InternetHwnd(), 3);
    EXPECT_EQ(ftp.FTPHwnd(), 4);
    EXPECT_EQ(fake.disk.calls("InternetCloseHandle"), 0u);
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2, 3, 4}));
}

TEST_F(Ftp, ClosesNothingWhenItIsDropped) {
    {
        clsFTP dropped;
        dropped.ServerName(u"serwer");
        ASSERT_TRUE(dropped.Connect());
        fake.disk.log.clear();
    }
    EXPECT_EQ(calls(), Calls{});
    EXPECT_EQ(fake.internet.open_handles(), (std::vector<Long>{1, 2}));
}

// ---- The current directory --------------------------------------------------------------------

struct DirectoryCase {
    String told;
    String expected;
};

TEST_F(Ftp, TellsTheCurrentDirectoryWithASeparatorAtItsEnd) {
    connect();
    const DirectoryCase cases[] = {
        {u"/", u"/"},
        {u"/dane", u"/dane/"},
        {u"/dane/", u"/dane/"},
        {u"", u"/"},
        {u"/z łąką", u"/z łąką/"},
        {String(260, u'x'), String(260, u'x') + u"/"},  // fills the buffer: no ending zero
        {String(259, u'x') + u"/", String(259, u'x') + u"/"},
        {String(u"/a\0/b", 5), u"/a/"},
        {u"C:\\dane", u"C:\\dane/"},
    };
    for (const DirectoryCase& row : cases) {
        fake.internet.directory = row.told;
        fake.disk.log.clear();
        EXPECT_EQ(ftp.CurDir(), row.expected);
        EXPECT_EQ(calls(), Calls{"FtpGetCurrentDirectoryA(2; 260; 260)"});
    }
}

TEST_F(Ftp, IsAtTheRootWithoutAConnection) {
    EXPECT_EQ(ftp.CurDir(), u"/");
    EXPECT_EQ(calls(), Calls{"FtpGetCurrentDirectoryA(0; 260; 260)"});
    EXPECT_EQ(recorded(), nothing);
}

class FailingDirectory final : public ForwardingInternet {
  public:
    using ForwardingInternet::ForwardingInternet;
    Long FtpGetCurrentDirectoryA(Long, String&, Long&) override { throw Failure(57); }
};

TEST_F(Ftp, IsAtTheRootWhereThePlatformFails) {
    connect();
    FailingDirectory failing(fake.internet);
    fake.operations.internet = &failing;
    EXPECT_EQ(ftp.CurDir(), u"/");
    EXPECT_EQ(recorded(), nothing);
}

TEST_F(Ftp, IgnoresWhatBecomesOfAChangeOfDirectory) {
    connect();
    ftp.CurDir(u"faktury 2024");
    faults().fail_at("FtpSetCurrentDirectoryA", 1, FaultSpan::Once, 12003);
    ftp.CurDir(u"nie ma");
    ftp.CurDir(u"");
    EXPECT_EQ(calls(),
              (Calls{"FtpSetCurrentDirectoryA(2; faktury 2024)", "FtpSetCurrentDirectoryA(2; )"}));
    EXPECT_EQ(recorded(), nothing);
}

// ---- Remote commands --------------------------------------------------------------------------

struct CommandCase {
    const char* operation;
    Boolean (*run)(clsFTP& ftp);
    const char* arguments;
};

constexpr CommandCase commands[] = {
    {"FtpCreateDirectoryA", [](clsFTP& ftp) { return ftp.MakeDir(u"nowy"); }, "nowy"},
    {"FtpRemoveDirectoryA", [](clsFTP& ftp) { return ftp.DelDir(u"stary"); }, "stary"},
    {"FtpDeleteFileA", [](clsFTP& ftp) { return ftp.DeleteFile(u"plik"); }, "plik"},
    {"FtpRenameFileA", [](clsFTP& ftp) { return ftp.RenameFile(u"a", u"b"); }, "a; b"},
};

TEST_F(Ftp, HandsThePlatformsFlagOnAsItComes) {
    connect();
    for (const CommandCase& row : commands) {
        fake.disk.log.clear();
        fake.internet.flag_of_success = 1;
        EXPECT_EQ(row.run(ftp).raw, 1) << row.operation;
        EXPECT_EQ(calls(), Calls{std::string(row.operation) + "(2; " + row.arguments + ")"});
        fake.internet.flag_of_success = 7;
        EXPECT_EQ(row.run(ftp).raw, 7) << row.operation;
    }
}

TEST_F(Ftp, RecordsNoCommandThatFails) {
    fake.internet.response = u"550 nie";
    for (const CommandCase& row : commands) {
        fake.disk.log.clear();
        EXPECT_EQ(row.run(ftp).raw, 0) << row.operation;
        EXPECT_EQ(calls(), Calls{std::string(row.operation) + "(0; " + row.arguments + ")"});
        EXPECT_EQ(recorded(), nothing);
    }
}

// ---- GetFTPFileSize ---------------------------------------------------------------------------

TEST_F(Ftp, AsksForTheSizeOfAFile) {
    connect();
    fake.internet.add(u"mój plik 1.txt", bytes_of(300));
    fake.internet.response = u"226 OK\r\n";
    fake.internet.response_code = 226;
    const String name = u"mój plik 1.txt";
    EXPECT_EQ(ftp.GetFTPFileSize(name), 300);
    EXPECT_EQ(name, u"mój plik 1.txt");
    EXPECT_EQ(calls(),
              (Calls{"FtpFindFirstFileA(2; mój?plik?1.txt; 0; 0)", "GetLastError()",
                     "InternetGetLastResponseInfoA(0; 0; 0)",
                     "InternetGetLastResponseInfoA(226; 8; 8)", "InternetCloseHandle(3)"}));
    EXPECT_EQ(recorded(), (std::pair<String, Long>{u"226 OK\r\n", 226}));
}

TEST_F(Ftp, TellsTheLowHalfOfASizeAlone) {
    connect();
    WIN32_FIND_DATA& entry = fake.internet.list(u"duży");
    entry.nFileSizeHigh = 1;
    entry.nFileSizeLow = wrap32(0x90000000);
    EXPECT_EQ(ftp.GetFTPFileSize(u"duży"), wrap32(0x90000000));
}

struct RefusedSize {
    Long error;
    std::optional<Long> response_code;
    Long size;
    Long number;
};

TEST_F(Ftp, TellsAFileThatIsNotThereFromOtherRefusals) {
    constexpr RefusedSize rows[] = {
        {18, std::nullopt, -1, 18},       {12003, 550, -2, 550},
        {12003, std::nullopt, -2, 12003}, {18, 550, -2, 550},
        {12031, std::nullopt, -2, 12031}, {12003, 18, -1, 18},
    };
    connect();
    for (const RefusedSize& row : rows) {
        faults().fail_at("FtpFindFirstFileA", 1, FaultSpan::Once, row.error);
        fake.internet.response = u"nie ma";
        fake.internet.response_code = row.response_code;
        fake.disk.log.clear();
        EXPECT_EQ(ftp.GetFTPFileSize(u"x"), row.size) << row.error;
        EXPECT_EQ(recorded(), (std::pair<String, Long>{u"nie ma", row.number}));
        EXPECT_EQ(fake.disk.calls("InternetCloseHandle"), 0u);
    }
}

TEST_F(Ftp, RefusesASizeWithoutAConnection) {
    EXPECT_EQ(ftp.GetFTPFileSize(u"x"), -2);
    EXPECT_EQ(ftp.LastErrorNumber(), internet_error::invalid_handle);
}

// ---- What is recorded -------------------------------------------------------------------------

TEST_F(Ftp, RecordsTheServersWordsWhole) {
    connect();
    const String words[] = {u"", u"550", u"  550 \r\n ", String(u"a\0b\0", 4), String(5000, u'ż')};
    for (const String& text : words) {
        fake.internet.response = text;
        EXPECT_EQ(ftp.GetFTPFileSize(u"x"), -1);
        EXPECT_EQ(ftp.LastError(), text);
    }
}

TEST_F(Ftp, RecordsZerosWhereTheSecondAnswerIsLost) {
    connect();
    fake.internet.response = u"550 nie";
    faults().fail_at("InternetGetLastResponseInfoA", 2, FaultSpan::Once, 6);
    EXPECT_EQ(ftp.GetFTPFileSize(u"x"), -1);
    EXPECT_EQ(ftp.LastError(), String(7, u'\0'));
}

}  // namespace
}  // namespace kvarta16
