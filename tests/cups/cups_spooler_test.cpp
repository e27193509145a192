// Printing through a real print server: what comes out of a raw queue is what went in.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <cups/cups.h>
#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/cups/cups_printers.h>
#include <kvarta16/platform/cups/cups_spooler.h>
#include <kvarta16/platform/named_spoolers.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/ui/ClsPrint.h>

#include "support/print_server.h"

namespace kvarta16::cups_tests {
namespace {

using testing_support::print_server;
using testing_support::PrintServer;

// Boxes that only remember, the rest is the program's own platform.
class KeptBoxes final : public MessageBoxes {
  public:
    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView>) override {
        texts.push_back(to_utf8(text));
        return unattended_answer(style);
    }
    std::vector<std::string> texts;
};

class OnPrintServer : public testing::Test {
  protected:
    void SetUp() override {
        PrintServer& server = print_server();
        if (!server.is_there() && !PrintServer::is_required()) {
            GTEST_SKIP() << server.what_is_missing();
        }
        ASSERT_TRUE(server.is_there()) << server.what_is_missing();
        ::setenv("CUPS_SERVER", server.address().c_str(), 1);
        ::cupsSetServer(server.address().c_str());
        operations.message_boxes = &boxes;
    }

    // Prints a file of these bytes by the class; the number of its job in the server's list.
    int job_of_file(const std::string& bytes, StringView printer, StringView application = {}) {
        const std::string path = folder / "wydruk żółty.prn";
        std::ofstream(path, std::ios::binary) << bytes;
        const int before = newest_job();
        EXPECT_EQ(ClsPrint().SpoolFile(u"Z:" + windows(path), printer, application).raw, -1);
        const int job = newest_job();
        return job == before ? 0 : job;
    }

    static String windows(const std::string& path) {
        String text = from_utf8(path);
        for (char16_t& c : text) {
            c = c == u'/' ? u'\\' : c;
        }
        return text;
    }

    struct Job {
        int number;
        ipp_jstate_t state;
        std::string title;
        std::string printer;
        std::string format;
    };
    static std::vector<Job> jobs() {
        cups_job_t* list = nullptr;
        const int count = ::cupsGetJobs2(CUPS_HTTP_DEFAULT, &list, nullptr, 0, CUPS_WHICHJOBS_ALL);
        std::vector<Job> all;
        for (int i = 0; i < count; ++i) {
            all.push_back({list[i].id, list[i].state, list[i].title, list[i].dest, list[i].format});
        }
        ::cupsFreeJobs(count, list);
        return all;
    }
    static int newest_job() {
        int newest = 0;
        for (const Job& job : jobs()) {
            newest = std::max(newest, job.number);
        }
        return newest;
    }
    static std::optional<Job> job(int number) {
        for (const Job& one : jobs()) {
            if (one.number == number) {
                return one;
            }
        }
        return std::nullopt;
    }

    testing_support::ServerFolder folder;
    KeptBoxes boxes;
    Platform operations = platform();
    ScopedPlatform scope{operations};
    cups::CupsSpooler spooler;
    const PRINTER_DEFAULTS defaults{u"", {124}, PRINTER_ACCESS_USE};
    const DOC_INFO_1 document{u"dokument", u"", u"RAW"};
};

std::string bytes_of_size(std::size_t size) {
    std::string bytes;
    bytes.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes += static_cast<char>(i * 89 + i / 256);
    }
    return bytes;
}

std::span<const Byte> span_of(const std::string& bytes) {
    return {reinterpret_cast<const Byte*>(bytes.data()), bytes.size()};
}

TEST_F(OnPrintServer, WhatComesOutIsTheFileByteByByte) {
    std::string every_byte;
    for (int i = 0; i < 256; ++i) {
        every_byte += static_cast<char>(i);
    }
    std::vector<std::string> files{every_byte, std::string(1, '\0'), "\x1A",
                                   "\x04\x1B%-12345X\r\n"};
    for (const std::size_t size : {1U, 16383U, 16384U, 16385U, 32768U, 100000U}) {
        files.push_back(bytes_of_size(size));
    }
    for (const std::string& bytes : files) {
        SCOPED_TRACE(bytes.size());
        const int number = job_of_file(bytes, u"Etykiety");
        ASSERT_NE(number, 0);
        EXPECT_TRUE(print_server().printed(number) == bytes);
    }
    EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(OnPrintServer, TheJobBearsItsNameAndGoesRaw) {
    const int number = job_of_file("abc", u"faktury", u"Faktury");
    ASSERT_NE(number, 0);
    EXPECT_EQ(print_server().printed(number), "abc");
    EXPECT_EQ(print_server().title(number),
              std::string("Faktury: wydruk żółty.prn\n") + ::cupsUser() + "\n");
    EXPECT_EQ(job(number)->printer, "faktury");
    EXPECT_EQ(job(number)->format, "application/vnd.cups-raw");
}

TEST_F(OnPrintServer, AnyDocumentNameWillDo) {
    String long_name;
    std::string cut;
    for (int i = 0; i < 300; ++i) {
        long_name += u'ż';
        cut += i < 127 ? "ż" : "";
    }
    struct Case {
        String name;
        std::string title;
    };
    const Case cases[] = {
        {long_name, cut},           {u"a" + long_name, "a" + cut},
        {u"a\nb\tc\x1B", "a b c "}, {String(u"a\0b", 3), "a b"},
        {u"<b>&\"'", "<b>&\"'"},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.title);
        Long handle = 0;
        Long written = 0;
        ASSERT_EQ(spooler.OpenPrinterA(u"Etykiety", handle, defaults), 1);
        const Long number = spooler.StartDocPrinterA(handle, 1, {test.name, u"", u"RAW"});
        EXPECT_GT(number, 0);
        EXPECT_EQ(spooler.WritePrinter(handle, span_of("x"), written), 1);
        EXPECT_EQ(spooler.EndDocPrinter(handle), 1);
        EXPECT_EQ(spooler.ClosePrinter(handle), 1);
        EXPECT_EQ(print_server().printed(number), "x");
        EXPECT_EQ(print_server().title(number), test.title + "\n" + ::cupsUser() + "\n");
    }
}

TEST_F(OnPrintServer, ThreeFormsOfANameAndNoOther) {
    EXPECT_NE(job_of_file("x", u"FAKTURY"), 0);  // by its lower case
    const std::string path = folder / "a.prn";
    std::ofstream(path) << "x";
    // The server itself would take any case.
    EXPECT_EQ(ClsPrint().SpoolFile(windows(path), u"ETYKIETY").raw, 0);
    EXPECT_EQ(boxes.texts.size(), 1u);
    Long handle = 5;
    for (const char16_t* name : {u"etykiety", u"Etykiety ", u"Etykiet", u"", u"Etykiety/x", u"ż"}) {
        EXPECT_EQ(spooler.OpenPrinterA(name, handle, defaults), 0) << to_utf8(name);
    }
    EXPECT_EQ(handle, 5);
}

// The server takes no document without a byte: the job is made, and taken back.
TEST_F(OnPrintServer, AnEmptyFileMakesNoFailure) {
    const int before = job_of_file("x", u"Etykiety");
    const std::string path = folder / "nic.prn";
    std::ofstream(path) << "";
    EXPECT_EQ(ClsPrint().SpoolFile(u"Z:" + windows(path), u"Etykiety").raw, -1);
    EXPECT_TRUE(boxes.texts.empty());
    EXPECT_EQ(newest_job(), before);  // nothing is left that waits for its data
    EXPECT_EQ(job_of_file("x", u"Etykiety"), before + 2);
}

TEST_F(OnPrintServer, AMissingFileLeavesNoJobBehind) {
    const int before = job_of_file("x", u"Etykiety");
    EXPECT_EQ(ClsPrint().SpoolFile(u"Z:\\nie\\ma.prn", u"Etykiety").raw, -1);
    EXPECT_EQ(boxes.texts, std::vector<std::string>{"Path not found"});
    EXPECT_EQ(newest_job(), before);
    // The job has been made, and taken back.
    const int after = job_of_file("x", u"Etykiety");
    EXPECT_EQ(after, before + 2);
    EXPECT_EQ(print_server().printed(after), "x");
    EXPECT_FALSE(print_server().has_printed(before + 1));
}

TEST_F(OnPrintServer, AClosedPrinterTakesItsJobBack) {
    Long handle = 0;
    ASSERT_EQ(spooler.OpenPrinterA(u"Etykiety", handle, defaults), 1);
    const Long number = spooler.StartDocPrinterA(handle, 1, document);
    ASSERT_GT(number, 0);
    Long written = -1;
    const std::string bytes = bytes_of_size(50000);
    EXPECT_EQ(spooler.WritePrinter(handle, span_of(bytes), written), 1);
    EXPECT_EQ(written, 50000);
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
    EXPECT_TRUE(PrintServer::waited_for([&] {
        const auto one = job(number);
        return !one || one->state >= IPP_JSTATE_CANCELED;
    }));
    EXPECT_FALSE(print_server().has_printed(number));
}

TEST_F(OnPrintServer, TwoDocumentsAtOnceDoNotMix) {
    Long first = 0;
    Long second = 0;
    ASSERT_EQ(spooler.OpenPrinterA(u"Etykiety", first, defaults), 1);
    ASSERT_EQ(spooler.OpenPrinterA(u"Etykiety", second, defaults), 1);
    EXPECT_NE(first, second);
    const Long one = spooler.StartDocPrinterA(first, 1, document);
    const Long two = spooler.StartDocPrinterA(second, 1, document);
    ASSERT_GT(one, 0);
    ASSERT_GT(two, 0);
    Long written = 0;
    const std::string a(40000, 'a');
    const std::string b(40000, 'b');
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(spooler.WritePrinter(first, span_of(a), written), 1);
        EXPECT_EQ(spooler.WritePrinter(second, span_of(b), written), 1);
        EXPECT_EQ(spooler.WritePrinter(first, {}, written), 1);
    }
    EXPECT_EQ(spooler.EndDocPrinter(first), 1);
    EXPECT_EQ(spooler.EndDocPrinter(second), 1);
    EXPECT_TRUE(print_server().printed(one) == a + a + a);
    EXPECT_TRUE(print_server().printed(two) == b + b + b);
    EXPECT_EQ(spooler.ClosePrinter(first), 1);
    EXPECT_EQ(spooler.ClosePrinter(second), 1);
}

TEST_F(OnPrintServer, WrongHandlesAndOrdersAreRefused) {
    Long handle = 0;
    Long written = 7;
    ASSERT_EQ(spooler.OpenPrinterA(u"Etykiety", handle, defaults), 1);
    for (const Long wrong : {0, -1, handle + 1}) {
        EXPECT_EQ(spooler.StartDocPrinterA(wrong, 1, document), 0);
        EXPECT_EQ(spooler.ClosePrinter(wrong), 0);
    }
    EXPECT_EQ(spooler.StartPagePrinter(handle), 0);
    EXPECT_EQ(spooler.WritePrinter(handle, span_of("x"), written), 0);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(spooler.EndPagePrinter(handle), 0);
    EXPECT_EQ(spooler.EndDocPrinter(handle), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, 2, document), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, 1, {u"x", u"", u"EMF"}), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, 1, {u"x", u"c:\\plik", u"RAW"}), 0);
    EXPECT_GT(spooler.StartDocPrinterA(handle, 1, document), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, 1, document), 0);  // one at a time
    EXPECT_EQ(spooler.StartPagePrinter(handle), 1);
    EXPECT_EQ(spooler.EndPagePrinter(handle), 1);
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
    EXPECT_EQ(spooler.ClosePrinter(handle), 0);
}

TEST_F(OnPrintServer, AQueueThatTakesNoJobsIsAPrinterThatRefusesThem) {
    Long handle = 0;
    ASSERT_EQ(spooler.OpenPrinterA(u"STOP", handle, defaults), 1);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, 1, document), 0);
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
    EXPECT_EQ(job_of_file("abc", u"STOP"), 0);
    EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(OnPrintServer, AStoppedQueueKeepsTheJob) {
    const int number = job_of_file("abc", u"Czeka");
    ASSERT_NE(number, 0);
    EXPECT_EQ(job(number)->state, IPP_JSTATE_PENDING);
    EXPECT_EQ(job(number)->title, "wydruk żółty.prn");
}

TEST_F(OnPrintServer, ListsThePrinters) {
    const std::vector<cups::Printer> all = cups::printers();
    std::vector<std::string> lines;
    for (const cups::Printer& printer : all) {
        lines.push_back(to_utf8(printer.name) + "|" + to_utf8(printer.description) +
                        (printer.is_default ? "|default" : "") +
                        (printer.accepts_jobs ? "" : "|closed"));
    }
    std::ranges::sort(lines);
    EXPECT_EQ(lines, (std::vector<std::string>{
                         "Czeka|Drukarka Czeka", "Etykiety|Drukarka Etykiety|default",
                         "STOP|Drukarka STOP|closed", "faktury|Drukarka faktury"}));
}

TEST_F(OnPrintServer, TheProgramsPlatformHasBothKindsOfPrinters) {
    EXPECT_EQ(default_platform().spooler, &named_spoolers());
    Long handle = 0;
    EXPECT_EQ(platform().spooler->OpenPrinterA(u"Etykiety", handle, defaults), 1);
    EXPECT_EQ(platform().spooler->ClosePrinter(handle), 1);
    const String printer = u"spool:" + from_utf8(folder / "");
    EXPECT_EQ(platform().spooler->OpenPrinterA(printer, handle, defaults), 1);
    EXPECT_EQ(platform().spooler->ClosePrinter(handle), 1);
}

// ---- Without a server -----------------------------------------------------------------------

TEST(WithoutPrintServer, ThereIsNoPrinter) {
    const std::string nobody = "127.0.0.1:" + std::to_string(testing_support::free_port());
    ::cupsSetServer(nobody.c_str());
    cups::CupsSpooler spooler;
    Long handle = 3;
    EXPECT_EQ(spooler.OpenPrinterA(u"Etykiety", handle, {}), 0);
    EXPECT_EQ(handle, 3);
    EXPECT_TRUE(cups::printers().empty());
}

// The server goes while a document is under way.
TEST(WithoutPrintServer, ADocumentThatIsCutOffIsNoDocument) {
    PrintServer server;
    if (!server.is_there() && !PrintServer::is_required()) {
        GTEST_SKIP() << server.what_is_missing();
    }
    ASSERT_TRUE(server.is_there()) << server.what_is_missing();
    ::cupsSetServer(server.address().c_str());
    cups::CupsSpooler spooler;
    Long handle = 0;
    Long written = 0;
    ASSERT_EQ(spooler.OpenPrinterA(u"Etykiety", handle, {}), 1);
    ASSERT_GT(spooler.StartDocPrinterA(handle, 1, {u"x", u"", u"RAW"}), 0);
    ASSERT_EQ(spooler.WritePrinter(handle, span_of("abc"), written), 1);
    server.stop();
    const std::string block = bytes_of_size(16384);
    bool is_refused = false;
    for (int i = 0; i < 1000 && !is_refused; ++i) {
        is_refused = spooler.WritePrinter(handle, span_of(block), written) == 0;
    }
    EXPECT_TRUE(is_refused);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(spooler.EndDocPrinter(handle), 0);
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
}

}  // namespace
}  // namespace kvarta16::cups_tests
