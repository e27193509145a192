// clsFTP: every member that asks the platform for anything, at every fault. Session 1 and
// connection 2 stand before the run and search 3 is over; what a run leaves open is 4 and so on.
#include <gtest/gtest.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

constexpr FaultSpan once = FaultSpan::Once;
constexpr FaultSpan for_good = FaultSpan::FromThenOn;

constexpr const char16_t* local = u"C:\\dane\\a.bin";

std::string bytes_of(std::size_t count) {
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i) {
        bytes += static_cast<char>('a' + (i / 100 * 3 + i) % 23);
    }
    return bytes;
}

void furnish(FaultBench& b) {
    b.fake.disk.add_folder(u"C:\\dane");
    b.fake.internet.response = u"odp";
    b.fake.internet.directory = u"/dane";
    clsFTP& ftp = b.subjects.ftp;
    ftp.ServerName(u"serwer");
    ftp.LoginName(u"ola");
    ftp.Password(u"tajne");
    ftp.FileTransferProgress = [&b](Long& current, Long&) {
        b.events.push_back(std::to_string(current));
    };
}
// Connected, and what a run before has recorded is gone.
void connect(FaultBench& b) {
    furnish(b);
    static_cast<void>(b.subjects.ftp.Connect());
    b.fake.internet.response = u"";
    b.fake.internet.response_code = 0;
    static_cast<void>(b.subjects.ftp.GetFTPFileSize(u"brak"));
    b.fake.internet.response = u"odp";
    b.fake.internet.response_code.reset();
    b.fake.internet.last_error = 0;
}

std::string recorded(const FaultBench& b) {
    const clsFTP& ftp = b.subjects.ftp;
    return "'" + told(ftp.LastError()) + "' " + told(ftp.LastErrorNumber());
}

const std::string nothing = "'' 0";
const std::string by_server = "'odp' 31337";  // the server's words behind the system's number
const std::string by_system = "'' 31337";     // the server's words cannot be had either
const std::string by_failure = std::string("'") + fault_text + "' 31337";

class FtpFaults : public testing::TestWithParam<Scenario> {};

TEST_P(FtpFaults, EndAsDocumented) {
    check(GetParam());
}

// ---- The session ------------------------------------------------------------------------------

std::string session(FaultBench& b) {
    const clsFTP& ftp = b.subjects.ftp;
    std::string port = "no";
    for (const std::string& call : b.fake.disk.log) {
        if (call.starts_with("InternetConnectA(")) {
            const std::size_t begin = call.find("serwer; ") + 8;
            port = call.substr(begin, call.find(';', begin) - begin);
        }
    }
    return "port " + port + ", " + told(ftp.InternetHwnd()) + " " + told(ftp.FTPHwnd()) + " " +
           told(ftp.Connected) + " " + recorded(b);
}

// A marker file that cannot be looked at is none; no reason is recorded.
const Scenario sessions[] = {
    {.name = "clsFTP.Connect",
     .discipline = Discipline::Tolerant,
     .good = "-1 / port 2121, 1 2 -1 '' 0 | open: internet 1 2",
     .prepare =
         [](FaultBench& b) {
             furnish(b);
             b.fake.disk.add(u"c:\\hadrik.txt");
         },
     .run = [](FaultBench& b) { return told(b.subjects.ftp.Connect()); },
     .written = session,
     .exceptions = {{"Files.GetAttr#1", "0 / port no, 0 0 0 '' 0", for_good},
                    {"Files.GetAttr#2", "-1 / port 21, 1 2 -1 '' 0 | open: internet 1 2", once},
                    {"Files.GetAttr#2", "0 / port no, 0 0 0 '' 0", for_good},
                    {"Internet.InternetOpenA", "0 / port 2121, 0 0 0 '' 0", once},
                    {"Internet.InternetOpenA", "0 / port no, 0 0 0 '' 0", for_good},
                    {"Internet.InternetConnectA", "0 / port no, 1 0 0 '' 0 | open: internet 1"}}},
    // The handles are forgotten whether they could be closed or not.
    {.name = "clsFTP.Disconnect",
     .discipline = Discipline::Tolerant,
     .good = "done / 0 0 0 '' 0, open:",
     .prepare = connect,
     .run =
         [](FaultBench& b) {
             b.subjects.ftp.Disconnect();
             return std::string("done");
         },
     .written =
         [](FaultBench& b) {
             const clsFTP& ftp = b.subjects.ftp;
             std::string text = told(ftp.InternetHwnd()) + " " + told(ftp.FTPHwnd()) + " " +
                                told(ftp.Connected) + " " + recorded(b) + ", open:";
             for (const Long handle : b.fake.internet.open_handles()) {
                 text += " " + std::to_string(handle);
             }
             return text;
         },
     .exceptions = {{"Internet.InternetCloseHandle#1", "done / 0 0 0 '' 0, open: 2", once},
                    {"Internet.InternetCloseHandle#1", "done / 0 0 0 '' 0, open: 1 2", for_good},
                    {"Internet.InternetCloseHandle#2", "done / 0 0 0 '' 0, open: 1"}}},
};

// ---- Remote commands --------------------------------------------------------------------------

// They hand on the platform's flag and record nothing.
Scenario command(const char* name, std::function<Boolean(clsFTP&)> call) {
    return {.name = name,
            .discipline = Discipline::Guarded,
            .good = "1 / '' 0",
            .prepared = "0 / '' 0",
            .prepare = connect,
            .run = [call = std::move(call)](FaultBench& b) { return told(call(b.subjects.ftp)); },
            .written = recorded};
}

const Scenario commands[] = {
    {.name = "clsFTP.CurDir, get",
     .discipline = Discipline::Guarded,
     .good = "/dane/ / '' 0",
     .prepared = "/ / '' 0",
     .prepare = connect,
     .run = [](FaultBench& b) { return told(b.subjects.ftp.CurDir()); },
     .written = recorded},
    {.name = "clsFTP.CurDir, let",
     .discipline = Discipline::Tolerant,
     .good = "done / '' 0",
     .prepare = connect,
     .run =
         [](FaultBench& b) {
             b.subjects.ftp.CurDir(u"/faktury");
             return std::string("done");
         },
     .written = recorded},
    command("clsFTP.MakeDir", [](clsFTP& ftp) { return ftp.MakeDir(u"x"); }),
    command("clsFTP.DelDir", [](clsFTP& ftp) { return ftp.DelDir(u"x"); }),
    command("clsFTP.DeleteFile", [](clsFTP& ftp) { return ftp.DeleteFile(u"x"); }),
    command("clsFTP.RenameFile", [](clsFTP& ftp) { return ftp.RenameFile(u"x", u"y"); }),
    // Whatever came of it is recorded, the server's words as far as they can be had.
    {.name = "clsFTP.GetFTPFileSize",
     .discipline = Discipline::Tolerant,
     .good = "3 / 'odp' 0",
     .prepare =
         [](FaultBench& b) {
             connect(b);
             b.fake.internet.add(u"a b", "abc");
         },
     .run = [](FaultBench& b) { return told(b.subjects.ftp.GetFTPFileSize(u"a b")); },
     .written = recorded,
     .exceptions = {{"Internet.FtpFindFirstFileA", "-2 / " + by_server, once},
                    {"Internet.FtpFindFirstFileA", "-2 / " + by_system, for_good},
                    {"Internet.InternetGetLastResponseInfoA#1", "3 / '' 0", once},
                    {"Internet.InternetGetLastResponseInfoA#1", "3 / '' 0 | open: internet 4",
                     for_good},
                    {"Internet.InternetGetLastResponseInfoA#2",
                     "3 / '" + std::string(3, '\0') + "' 0", once},
                    {"Internet.InternetGetLastResponseInfoA#2",
                     "3 / '" + std::string(3, '\0') + "' 0 | open: internet 4", for_good},
                    {"Internet.InternetCloseHandle", good + " | open: internet 4"}}},
};

// ---- The listing ------------------------------------------------------------------------------

void two_files(FaultBench& b) {
    connect(b);
    b.fake.internet.add(u"a", "abc").ftLastWriteTime = file_time(2024, 5, 17);
    b.fake.internet.add(u"b", "abcd").ftLastWriteTime = file_time(2024, 5, 18);
    b.fake.internet.add_folder(u"c");
}
std::string listed(FaultBench& b) {
    const clsFTP& ftp = b.subjects.ftp;
    std::string text;
    for (Long i = 1; i <= ftp.lMatching; ++i) {
        text += told(ftp.Nazwa_pliku(i)) + " " + told(ftp.Rozmiar_pliku(i)) + " " +
                told(FormatMask(ftp.CzasLastWrite_pliku(i), u"yyyy-MM-dd")) + ", ";
    }
    return text + recorded(b);
}

// A listing that stops early is a shorter one. A local time that cannot be had is recorded with the
// one reason that there is, and the date is zero.
const Scenario listings[] = {
    {.name = "clsFTP.GetMatchingFiles",
     .discipline = Discipline::Tolerant,
     .good = "-1 / a 3 2024-05-17, b 4 2024-05-18, '' 0",
     .prepare = two_files,
     .run = [](FaultBench& b) { return told(b.subjects.ftp.GetMatchingFiles()); },
     .written = listed,
     .exceptions = {{"Internet.FtpFindFirstFileA", "0 / '' 0"},
                    {"FindFiles.FileTimeToLocalFileTime#1",
                     "-1 / a 3 1899-12-30, b 4 2024-05-18, 'odp' 87", once},
                    {"FindFiles.FileTimeToLocalFileTime#1",
                     "-1 / a 3 1899-12-30, '' 87 | open: internet 4", for_good},
                    {"Internet.InternetFindNextFileA#1", "-1 / a 3 2024-05-17, '' 0", once},
                    {"Internet.InternetFindNextFileA#1",
                     "-1 / a 3 2024-05-17, '' 0 | open: internet 4", for_good},
                    {"FindFiles.FileTimeToLocalFileTime#2",
                     "-1 / a 3 2024-05-17, b 4 1899-12-30, 'odp' 87", once},
                    {"FindFiles.FileTimeToLocalFileTime#2",
                     "-1 / a 3 2024-05-17, b 4 1899-12-30, '' 87 | open: internet 4", for_good},
                    {"Internet.InternetFindNextFileA", good, once},
                    {"Internet.InternetFindNextFileA", good + " | open: internet 4", for_good},
                    {"Internet.InternetCloseHandle", good + " | open: internet 4"}}},
};

// ---- Transfers in one call ----------------------------------------------------------------------

std::string fetched(FaultBench& b) {
    return contents(b, local) + ", " + recorded(b);
}
void to_be_fetched(FaultBench& b) {
    connect(b);
    b.fake.disk.add(local, "stary");
    b.fake.internet.add(u"plik", "nowy");
}

const Scenario transfers[] = {
    {.name = "clsFTP.UploadFile",
     .discipline = Discipline::Guarded,
     .good = "1 / nowy 0 '' 0",
     .prepared = "0 / - 0 '' 0",
     .prepare =
         [](FaultBench& b) {
             connect(b);
             b.fake.disk.add(local, "nowy");
             b.flag = true;
         },
     .run = [](FaultBench& b) { return told(b.subjects.ftp.UploadFile(local, u"plik", b.flag)); },
     .written =
         [](FaultBench& b) {
             const auto found = b.fake.internet.files.find(u"plik");
             return (found == b.fake.internet.files.end() ? "-" : found->second) + " " +
                    told(b.flag) + " " + recorded(b);
         }},
    // A folder that is not seen is made, which fails: it is there.
    {.name = "clsFTP.DownloadFile",
     .discipline = Discipline::Guarded,
     .good = "1 / nowy, '' 0",
     .prepared = "0 / stary, " + by_failure,
     .prepare = to_be_fetched,
     .run = [](FaultBench& b) { return told(b.subjects.ftp.DownloadFile(u"plik", local, true)); },
     .written = fetched,
     .exceptions = {{"Files.GetAttr#1", "0 / stary, 'Path/File access error' 75", once},
                    {"Files.GetAttr#2", good, once},
                    {"Files.GetAttr#2", "0 / stary, '' 0", for_good},
                    {"Internet.FtpGetFileA", "0 / -, '' 0"}}},
    {.name = "clsFTP.DownloadFile, making the folder",
     .discipline = Discipline::Guarded,
     .good = "1 / nowy '' 0",
     .prepared = "0 / - " + by_failure,
     .prepare = to_be_fetched,
     .run =
         [](FaultBench& b) {
             return told(b.subjects.ftp.DownloadFile(u"plik", u"C:\\nowy\\b.bin", true));
         },
     .written = [](FaultBench& b) { return contents(b, u"C:\\nowy\\b.bin") + " " + recorded(b); },
     .exceptions = {{"Files.GetAttr", good, once},
                    {"Files.GetAttr#2", "0 / - '' 0", for_good},
                    {"Internet.FtpGetFileA", "0 / - '' 0"}}},
    {.name = "clsFTP.DownloadFile, without overwriting",
     .discipline = Discipline::Guarded,
     .good = "0 / stary, 'File already exists at C:\\dane\\a.bin' -2147221503",
     .prepared = "0 / stary, " + by_failure,
     .prepare = to_be_fetched,
     .run = [](FaultBench& b) { return told(b.subjects.ftp.DownloadFile(u"plik", local, false)); },
     .written = fetched,
     .exceptions = {{"Files.GetAttr", "0 / stary, 'Path/File access error' 75", once}}},
};

// ---- Transfers that count -----------------------------------------------------------------------

std::string events(const FaultBench& b) {
    std::string text;
    for (const std::string& event : b.events) {
        text += event + " ";
    }
    return text;
}

// How much has reached the server, as the bytes of the file; "other bytes" would be a defect.
std::string sent(FaultBench& b) {
    const std::string& remote = b.fake.internet.files[u"plik"];
    const bool is_beginning = bytes_of(250).starts_with(remote);
    return (is_beginning ? std::to_string(remote.size()) : "other bytes") + " of 250, " +
           events(b) + told(b.flag) + " " + told(b.first) + " " + told(b.second) + " " +
           recorded(b);
}
std::string arguments_and(const std::string& record) {
    return "0 C:\\dane\\a.bin plik " + record;
}
const std::string unrecorded = arguments_and(nothing);

const std::string eleven = "-1 -1 -1 -1 -1 -1 -1 -1 -1 -1 -1 ";
const std::string remote_open = " | open: internet 4";
const std::string both_open = " | open: file 1, internet 4";

// The remote handle stays open wherever the file was not sent whole. A local file that fails is not
// recorded, a server that refuses is.
const Scenario upload = {
    .name = "clsFTP.UploadFileProgress",
    .discipline = Discipline::Guarded,
    .good = "-1 / 250 of 250, 100 200 250 " + unrecorded,
    .prepared = "0 / 0 of 250, " + unrecorded + remote_open,
    .prepare =
        [](FaultBench& b) {
            connect(b);
            b.fake.disk.add(local, bytes_of(250));
            b.first = u" C:\\dane\\a.bin ";
            b.second = u" plik ";
            b.flag = true;
        },
    .run =
        [](FaultBench& b) {
            return told(b.subjects.ftp.UploadFileProgress(b.first, b.second, b.flag));
        },
    .written = sent,
    .exceptions =
        {{"Internet.FtpOpenFileA", "0 / 0 of 250, " + arguments_and(by_server), once},
         {"Internet.FtpOpenFileA", "0 / 0 of 250, " + arguments_and(by_system), for_good},
         {"FileTable.LOF", "0 / 0 of 250, " + unrecorded + both_open, for_good},
         {"FileTable.Get#1", "0 / 0 of 250, " + unrecorded + both_open, for_good},
         {"Internet.InternetWriteFile#1", "-1 / 250 of 250, -1 100 200 250 " + unrecorded, once},
         {"Internet.InternetWriteFile#1",
          "0 / 0 of 250, " + eleven + arguments_and(by_system) + both_open, for_good},
         {"Messages.DoEvents", good, once},
         {"Messages.DoEvents#1", "0 / 100 of 250, 100 " + unrecorded + both_open, for_good},
         {"FileTable.Get#2", "0 / 100 of 250, 100 " + unrecorded + remote_open, once},
         {"FileTable.Get#2", "0 / 100 of 250, 100 " + unrecorded + both_open, for_good},
         {"Internet.InternetWriteFile#2", "-1 / 250 of 250, 100 -1 200 250 " + unrecorded, once},
         {"Internet.InternetWriteFile#2",
          "0 / 100 of 250, 100 " + eleven + arguments_and(by_system) + both_open, for_good},
         {"Messages.DoEvents#2", "0 / 200 of 250, 100 200 " + unrecorded + both_open, for_good},
         {"FileTable.Get#3", "0 / 200 of 250, 100 200 " + unrecorded + remote_open, once},
         {"FileTable.Get#3", "0 / 200 of 250, 100 200 " + unrecorded + both_open, for_good},
         {"Internet.InternetWriteFile#3", "-1 / 250 of 250, 100 200 -1 250 " + unrecorded, once},
         {"Internet.InternetWriteFile#3",
          "0 / 200 of 250, 100 200 " + eleven + arguments_and(by_system) + both_open, for_good},
         {"FileTable.Close", "0 / 250 of 250, 100 200 " + unrecorded + remote_open, once},
         {"FileTable.Close", "0 / 250 of 250, 100 200 " + unrecorded + both_open, for_good},
         {"Internet.InternetCloseHandle", good + remote_open}}};

// The names of the arguments the other way round, and search 4 is that of the listing, closed.
std::string came(FaultBench& b) {
    const std::string found = contents(b, local);
    const bool is_beginning = bytes_of(250).starts_with(found) && found != "stary";
    return (is_beginning ? std::to_string(found.size()) : found) + " of 250, " + events(b) +
           told(b.flag) + " " + recorded(b);
}

const std::string download_open = " | open: internet 5";
const std::string both_of_download_open = " | open: file 1, internet 5";

// No reading is tried again. A failed run of the system's own calls, of folder and file, is not
// recorded, and leaves the remote handle open.
const Scenario download = {
    .name = "clsFTP.DownloadFileProgress",
    .discipline = Discipline::Guarded,
    .good = "-1 / 250 of 250, 101 201 250 0 '' 0",
    .prepared = "0 / stary of 250, 0 '' 0" + download_open,
    .prepare =
        [](FaultBench& b) {
            connect(b);
            b.fake.internet.add(u"plik", bytes_of(250));
            static_cast<void>(b.subjects.ftp.GetMatchingFiles());
            b.fake.disk.add(local, "stary");
            b.first = u" C:\\dane\\a.bin ";
            b.second = u" PLIK ";
            b.fake.internet.files[u"PLIK"] = bytes_of(250);
            b.flag = true;
        },
    .run =
        [](FaultBench& b) {
            return told(b.subjects.ftp.DownloadFileProgress(b.second, b.first, true, b.flag));
        },
    .written = came,
    .exceptions =
        {{"Internet.FtpOpenFileA", "0 / stary of 250, 0 " + by_server, once},
         {"Internet.FtpOpenFileA", "0 / stary of 250, 0 " + by_system, for_good},
         {"Files.GetAttr#2", good, once},  // not seen, and written over
         {"FileTable.FreeFile", "0 / - of 250, 0 '' 0" + download_open},
         {"FileTable.Open", "0 / - of 250, 0 '' 0" + download_open},
         {"FileTable.Seek", "0 / 0 of 250, 0 '' 0" + download_open, once},
         {"FileTable.Seek", "0 / 0 of 250, 0 '' 0" + both_of_download_open, for_good},
         {"Internet.InternetReadFile#1", "0 / 0 of 250, 0 " + by_server + download_open, once},
         {"Internet.InternetReadFile#1", "0 / 0 of 250, 0 " + by_system + both_of_download_open},
         {"FileTable.Put#1", "0 / 0 of 250, 0 '' 0" + download_open, once},
         {"FileTable.Put#1", "0 / 0 of 250, 0 '' 0" + both_of_download_open},
         {"Messages.DoEvents", good, once},
         {"Messages.DoEvents#1", "0 / 100 of 250, 101 0 " + by_system + both_of_download_open},
         {"Internet.InternetReadFile#2", "0 / 100 of 250, 101 0 " + by_server + download_open,
          once},
         {"Internet.InternetReadFile#2",
          "0 / 100 of 250, 101 0 " + by_system + both_of_download_open},
         {"FileTable.Put#2", "0 / 100 of 250, 101 0 '' 0" + download_open, once},
         {"FileTable.Put#2", "0 / 100 of 250, 101 0 '' 0" + both_of_download_open},
         {"Messages.DoEvents#2", "0 / 200 of 250, 101 201 0 " + by_system + both_of_download_open},
         {"Internet.InternetReadFile#3", "0 / 200 of 250, 101 201 0 " + by_server + download_open,
          once},
         {"Internet.InternetReadFile#3",
          "0 / 200 of 250, 101 201 0 " + by_system + both_of_download_open},
         {"FileTable.Put#3", "0 / 200 of 250, 101 201 0 '' 0" + download_open, once},
         {"FileTable.Put#3", "0 / 200 of 250, 101 201 0 '' 0" + both_of_download_open},
         {"FileTable.Close", "0 / 250 of 250, 101 201 0 '' 0" + download_open, once},
         {"FileTable.Close", "0 / 250 of 250, 101 201 0 '' 0" + both_of_download_open},
         {"Internet.InternetCloseHandle", good + download_open, once},
         {"Internet.InternetCloseHandle", "0 / 250 of 250, 101 201 250 0 '' 0" + download_open},
         {"Files.GetAttr#3", "0 / 250 of 250, 101 201 250 0 '' 0"}}};

INSTANTIATE_TEST_SUITE_P(Sessions, FtpFaults, testing::ValuesIn(sessions));
INSTANTIATE_TEST_SUITE_P(Commands, FtpFaults, testing::ValuesIn(commands));
INSTANTIATE_TEST_SUITE_P(Listings, FtpFaults, testing::ValuesIn(listings));
INSTANTIATE_TEST_SUITE_P(Transfers, FtpFaults, testing::ValuesIn(transfers));
INSTANTIATE_TEST_SUITE_P(Upload, FtpFaults, testing::Values(upload));
INSTANTIATE_TEST_SUITE_P(Download, FtpFaults, testing::Values(download));

}  // namespace
}  // namespace kvarta16::fault_tests
