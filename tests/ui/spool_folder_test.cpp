// Folders as printers: which names are printers, what a document becomes, and that half a document
// never appears. And the choice of a spooler by the printer's name.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/named_spoolers.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/spool_folder.h>
#include <kvarta16/ui/ClsPrint.h>

#include "support/fake_platform.h"
#include "support/server_process.h"

namespace kvarta16::ui_tests {
namespace {

namespace fs = std::filesystem;
using posix::SpoolFolder;
using testing_support::RecordingSpooler;
using testing_support::text_of_file;
using Names = std::vector<std::string>;

constexpr Long raw_level = 1;

std::span<const Byte> span_of(const std::string& bytes) {
    return {reinterpret_cast<const Byte*>(bytes.data()), bytes.size()};
}

class Folder : public testing::Test {
  protected:
    [[nodiscard]] Names names() const {
        Names all;
        for (const auto& entry : fs::directory_iterator(folder / "")) {
            all.push_back(entry.path().filename().string());
        }
        std::ranges::sort(all);
        return all;
    }
    Long opened() {
        Long handle = 0;
        EXPECT_EQ(spooler.OpenPrinterA(printer, handle, {}), 1);
        return handle;
    }
    // A document from its beginning to its end; the answer of the last call.
    Long print(StringView name, const std::string& bytes) {
        const Long handle = opened();
        Long written = -1;
        EXPECT_GT(spooler.StartDocPrinterA(handle, raw_level, {String(name), u"", u"RAW"}), 0);
        EXPECT_EQ(spooler.StartPagePrinter(handle), 1);
        EXPECT_EQ(spooler.WritePrinter(handle, span_of(bytes), written), 1);
        EXPECT_EQ(written, static_cast<Long>(bytes.size()));
        EXPECT_EQ(spooler.EndPagePrinter(handle), 1);
        const Long answer = spooler.EndDocPrinter(handle);
        EXPECT_EQ(spooler.ClosePrinter(handle), 1);
        return answer;
    }

    testing_support::ServerFolder folder;
    String printer = u"spool:Z:" + from_utf8(folder / "");
    SpoolFolder spooler;
};

TEST_F(Folder, ADocumentBecomesTwoFiles) {
    EXPECT_EQ(print(u"Faktury: wydruk.prn", "abc"), 1);
    EXPECT_EQ(names(), (Names{"0001-Faktury_ wydruk.prn.job", "0001-Faktury_ wydruk.prn.prn"}));
    EXPECT_EQ(text_of_file(folder / "0001-Faktury_ wydruk.prn.prn"), "abc");
    EXPECT_EQ(text_of_file(folder / "0001-Faktury_ wydruk.prn.job"),
              "name: Faktury: wydruk.prn\nprinter: " + to_utf8(printer) + "\nbytes: 3\n");
}

TEST_F(Folder, TheFileBearsASafeName) {
    std::string long_name;
    for (int i = 0; i < 80; ++i) {
        long_name += "ż";
    }
    const std::string half = long_name.substr(0, 100);
    struct Case {
        StringView name;
        std::string file;
    };
    const String wide = from_utf8("a" + long_name);
    const Case cases[] = {
        {u"zwykła nazwa", "0001-zwykła nazwa"},
        {u"../../etc/passwd", "0001-.._.._etc_passwd"},
        {u"a\\b:c*d?e\"f<g>h|i", "0001-a_b_c_d_e_f_g_h_i"},
        {StringView(u"a\0b\nc\r", 6), "0001-a_b_c_"},
        {u"", "0001"},
        {u".", "0001-."},
        {wide, "0001-a" + half.substr(0, 98)},  // no half of a letter
    };
    for (const Case& test : cases) {
        EXPECT_EQ(print(test.name, "x"), 1);
        EXPECT_EQ(names(), (Names{test.file + ".job", test.file + ".prn"}));
        for (const std::string& name : names()) {
            fs::remove(folder / name);
        }
    }
    EXPECT_EQ(print(u"a\nprinter: b\r", "x"), 1);
    EXPECT_TRUE(
        text_of_file(folder / "0001-a_printer_ b_.job").starts_with("name: a printer: b \n"));
}

TEST_F(Folder, NumbersGoOnFromTheHighest) {
    std::ofstream(folder / "0007-stary.prn") << "";
    std::ofstream(folder / ".0011.part") << "";
    std::ofstream(folder / "9999") << "";
    std::ofstream(folder / "99x-a.prn") << "";
    std::ofstream(folder / "2147483647-a.prn") << "";
    std::ofstream(folder / "99999999999-a.prn") << "";
    std::ofstream(folder / "2024-05-17.txt") << "";
    EXPECT_EQ(print(u"a", "x"), 1);
    EXPECT_TRUE(fs::exists(folder / "2025-a.prn"));  // which looks like a number of the spooler's
    fs::remove(folder / "2024-05-17.txt");
    fs::remove(folder / "2025-a.prn");
    fs::remove(folder / "2025-a.job");
    EXPECT_EQ(print(u"a", "x"), 1);
    EXPECT_TRUE(fs::exists(folder / "0012-a.prn"));
    std::ofstream(folder / "99999-a.prn") << "";
    EXPECT_EQ(print(u"b", "x"), 1);
    EXPECT_TRUE(fs::exists(folder / "100000-b.prn"));
}

TEST_F(Folder, NothingAppearsBeforeTheEnd) {
    const Long handle = opened();
    Long written = 0;
    EXPECT_EQ(spooler.StartDocPrinterA(handle, raw_level, {u"a", u"", u"RAW"}), 1);
    EXPECT_EQ(spooler.WritePrinter(handle, span_of(std::string(100000, 'x')), written), 1);
    EXPECT_EQ(names(), Names{".0001.part"});
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
    EXPECT_EQ(names(), Names{});
}

TEST_F(Folder, APrinterTakesOneDocumentAfterTheOther) {
    const Long handle = opened();
    for (const Long number : {1, 2, 3}) {
        EXPECT_EQ(spooler.StartDocPrinterA(handle, raw_level, {u"a", u"", u"RAW"}), number);
        EXPECT_EQ(spooler.StartDocPrinterA(handle, raw_level, {u"b", u"", u"RAW"}), 0);
        EXPECT_EQ(spooler.EndDocPrinter(handle), 1);
        EXPECT_EQ(spooler.EndDocPrinter(handle), 0);
    }
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
    EXPECT_EQ(names().size(), 6u);
}

TEST_F(Folder, TwoAtOnceHaveTwoNumbers) {
    const Long first = opened();
    const Long second = opened();
    EXPECT_NE(first, second);
    Long written = 0;
    EXPECT_EQ(spooler.StartDocPrinterA(first, raw_level, {u"a", u"", u"RAW"}), 1);
    EXPECT_EQ(spooler.StartDocPrinterA(second, raw_level, {u"b", u"", u"RAW"}), 2);
    EXPECT_EQ(spooler.WritePrinter(first, span_of("a"), written), 1);
    EXPECT_EQ(spooler.WritePrinter(second, span_of("b"), written), 1);
    EXPECT_EQ(spooler.EndDocPrinter(second), 1);
    EXPECT_EQ(spooler.EndDocPrinter(first), 1);
    EXPECT_EQ(text_of_file(folder / "0001-a.prn"), "a");
    EXPECT_EQ(text_of_file(folder / "0002-b.prn"), "b");
    EXPECT_EQ(spooler.ClosePrinter(first), 1);
    EXPECT_EQ(spooler.ClosePrinter(second), 1);
}

TEST_F(Folder, SeveralProcessesLoseNothing) {
    constexpr int processes = 4;
    constexpr int documents = 20;
    std::vector<pid_t> children;
    for (int i = 0; i < processes; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            int done = 0;
            for (int n = 0; n < documents; ++n) {
                done += print(u"a", std::to_string(i * documents + n)) == 1 ? 1 : 0;
            }
            ::_exit(done == documents ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    std::set<std::string> contents;
    for (const std::string& name : names()) {
        if (name.ends_with(".prn")) {
            contents.insert(text_of_file(folder / name));
        }
    }
    EXPECT_EQ(contents.size(), std::size_t{processes * documents});
    EXPECT_EQ(names().size(), std::size_t{2 * processes * documents});
}

TEST_F(Folder, OnlyFoldersThatAreThereArePrinters) {
    std::ofstream(folder / "plik") << "";
    Long handle = 5;
    for (const String& name : {String(u"spool:"), u"spool:Z:" + from_utf8(folder / "nie ma"),
                               u"spool:Z:" + from_utf8(folder / "plik"), String(u"spool:Q:\\x"),
                               u"SPOOL:Z:" + from_utf8(folder / ""), from_utf8(folder / ""),
                               String(u""), u"spool:" + String(1, u'\xD800')}) {
        EXPECT_EQ(spooler.OpenPrinterA(name, handle, {}), 0) << to_utf8(name);
    }
    EXPECT_EQ(handle, 5);
    EXPECT_EQ(spooler.OpenPrinterA(u"spool:" + from_utf8(folder / ""), handle, {}), 1);
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
}

TEST_F(Folder, WrongHandlesAndOrdersAreRefused) {
    const Long handle = opened();
    Long written = 7;
    for (const Long wrong : {0, -1, handle + 1}) {
        EXPECT_EQ(spooler.StartDocPrinterA(wrong, raw_level, {u"a", u"", u"RAW"}), 0);
        EXPECT_EQ(spooler.StartPagePrinter(wrong), 0);
        EXPECT_EQ(spooler.WritePrinter(wrong, span_of("x"), written), 0);
        EXPECT_EQ(spooler.EndPagePrinter(wrong), 0);
        EXPECT_EQ(spooler.EndDocPrinter(wrong), 0);
        EXPECT_EQ(spooler.ClosePrinter(wrong), 0);
    }
    EXPECT_EQ(spooler.StartPagePrinter(handle), 0);
    EXPECT_EQ(spooler.WritePrinter(handle, span_of("x"), written), 0);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(spooler.EndPagePrinter(handle), 0);
    EXPECT_EQ(spooler.EndDocPrinter(handle), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, 2, {u"a", u"", u"RAW"}), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, raw_level, {u"a", u"", u"EMF"}), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, raw_level, {u"a", u"c:\\x", u"RAW"}), 0);
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
    EXPECT_EQ(spooler.ClosePrinter(handle), 0);
    EXPECT_EQ(names(), Names{});
}

// In a process of its own, which may write no file longer than 1000 bytes.
TEST_F(Folder, ADocumentThatCannotBeWrittenWholeIsDropped) {
    const pid_t child = ::fork();
    if (child == 0) {
        const rlimit limit{1000, 1000};
        ::signal(SIGXFSZ, SIG_IGN);
        const Long handle = opened();
        Long written = 0;
        const bool as_told =
            ::setrlimit(RLIMIT_FSIZE, &limit) == 0 &&
            spooler.StartDocPrinterA(handle, raw_level, {u"a", u"", u"RAW"}) == 1 &&
            spooler.WritePrinter(handle, span_of(std::string(600, 'x')), written) == 1 &&
            spooler.WritePrinter(handle, span_of(std::string(600, 'x')), written) == 0 &&
            written == 400 && spooler.EndDocPrinter(handle) == 0 && names().empty();
        ::_exit(as_told ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(names(), Names{});
}

TEST_F(Folder, AFolderThatHasGoneRefuses) {
    fs::create_directory(folder / "raz");
    Long handle = 0;
    ASSERT_EQ(spooler.OpenPrinterA(u"spool:Z:" + from_utf8(folder / "raz"), handle, {}), 1);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, raw_level, {u"a", u"", u"RAW"}), 1);
    fs::remove_all(folder / "raz");
    EXPECT_EQ(spooler.EndDocPrinter(handle), 0);
    EXPECT_EQ(spooler.StartDocPrinterA(handle, raw_level, {u"a", u"", u"RAW"}), 0);
    EXPECT_EQ(spooler.ClosePrinter(handle), 1);
}

// ---- By the class, on the program's own platform --------------------------------------------

TEST_F(Folder, AFileIsPrintedByteByByte) {
    testing_support::RecordingBoxes boxes;
    Platform operations = platform();
    operations.message_boxes = &boxes;
    const ScopedPlatform scope(operations);
    testing_support::ServerFolder files;
    for (const std::size_t size : {0U, 1U, 256U, 16383U, 16384U, 16385U, 100000U}) {
        SCOPED_TRACE(size);
        std::string bytes;
        for (std::size_t i = 0; i < size; ++i) {
            bytes += static_cast<char>(i * 89 + i / 256);
        }
        std::ofstream(files / "wydruk.prn", std::ios::binary) << bytes;
        const String path = u"Z:" + from_utf8(files / "wydruk.prn");
        String windows = path;
        std::ranges::replace(windows, u'/', u'\\');
        EXPECT_EQ(ClsPrint().SpoolFile(windows, printer, u"Faktury").raw, -1);
        ASSERT_EQ(names().size(), 2u);
        EXPECT_TRUE(text_of_file(folder / "0001-Faktury_ wydruk.prn.prn") == bytes);
        for (const std::string& name : names()) {
            fs::remove(folder / name);
        }
    }
    EXPECT_TRUE(boxes.shown.empty());
    EXPECT_EQ(ClsPrint().SpoolFile(u"Z:\\nie\\ma.prn", printer).raw, -1);
    EXPECT_EQ(boxes.shown.size(), 1u);
    EXPECT_EQ(names(), Names{});
}

// ---- The choice by name ---------------------------------------------------------------------

TEST(NamedPrinters, TheNameDecidesWhoGetsThem) {
    RecordingSpooler files;
    RecordingSpooler queues;
    files.printers = {u"spool:a", u"spool:"};
    queues.printers = {u"Etykiety", u"Spool:a", u" spool:a", u""};
    NamedSpoolers spoolers;
    Long handle = 9;
    EXPECT_EQ(spoolers.OpenPrinterA(u"Etykiety", handle, {}), 0);  // nobody yet
    EXPECT_EQ(handle, 9);
    spoolers.serve_others(queues);
    spoolers.serve_prefix(u"spool:", files);
    for (const String& name : files.printers) {
        EXPECT_EQ(spoolers.OpenPrinterA(name, handle, {}), 1);
    }
    EXPECT_TRUE(queues.calls.empty());
    files.calls.clear();
    for (const String& name : queues.printers) {
        EXPECT_EQ(spoolers.OpenPrinterA(name, handle, {}), 1);
    }
    EXPECT_TRUE(files.calls.empty());
    handle = 9;
    EXPECT_EQ(spoolers.OpenPrinterA(u"spool:b", handle, {}), 0);
    EXPECT_EQ(handle, 9);
}

TEST(NamedPrinters, EachCallGoesToThePrintersOwnSpooler) {
    RecordingSpooler files;
    RecordingSpooler queues;
    files.printers = {u"spool:a"};
    queues.printers = {u"b"};
    NamedSpoolers spoolers;
    spoolers.serve_prefix(u"spool:", files);
    spoolers.serve_others(queues);
    Long first = 0;
    Long second = 0;
    ASSERT_EQ(spoolers.OpenPrinterA(u"spool:a", first, {u"", {124}, 8}), 1);
    ASSERT_EQ(spoolers.OpenPrinterA(u"b", second, {u"", {124}, 8}), 1);
    EXPECT_NE(first, second);
    for (const Long handle : {second, first}) {
        Long written = 0;
        EXPECT_EQ(spoolers.StartDocPrinterA(handle, 1, {u"n", u"", u"RAW"}), 1);
        EXPECT_EQ(spoolers.StartPagePrinter(handle), 1);
        EXPECT_EQ(spoolers.WritePrinter(handle, span_of("ab"), written), 1);
        EXPECT_EQ(written, 2);
        EXPECT_EQ(spoolers.EndPagePrinter(handle), 1);
        EXPECT_EQ(spoolers.EndDocPrinter(handle), 1);
        EXPECT_EQ(spoolers.ClosePrinter(handle), 1);
        EXPECT_EQ(spoolers.ClosePrinter(handle), 0);
    }
    const Names expected = {"StartDocPrinterA(77; 1; n; \"\"; RAW)",
                            "StartPagePrinter(77)",
                            "WritePrinter(77; 2; 0)",
                            "EndPagePrinter(77)",
                            "EndDocPrinter(77)",
                            "ClosePrinter(77)"};
    EXPECT_EQ(Names(files.calls.begin() + 1, files.calls.end()), expected);
    EXPECT_EQ(Names(queues.calls.begin() + 1, queues.calls.end()), expected);
    EXPECT_EQ(files.calls[0], "OpenPrinterA(spool:a; 0; \"\"; 124; 8)");
}

TEST(NamedPrinters, WrongHandlesReachNobody) {
    NamedSpoolers spoolers;
    Long written = 0;
    for (const Long wrong : {0, 1, -1}) {
        EXPECT_EQ(spoolers.StartDocPrinterA(wrong, 1, {u"n", u"", u"RAW"}), 0);
        EXPECT_EQ(spoolers.StartPagePrinter(wrong), 0);
        EXPECT_EQ(spoolers.WritePrinter(wrong, span_of("ab"), written), 0);
        EXPECT_EQ(spoolers.EndPagePrinter(wrong), 0);
        EXPECT_EQ(spoolers.EndDocPrinter(wrong), 0);
        EXPECT_EQ(spoolers.ClosePrinter(wrong), 0);
    }
}

TEST(NamedPrinters, AreThoseOfTheProgramsPlatform) {
    EXPECT_EQ(platform().spooler, &named_spoolers());
}

}  // namespace
}  // namespace kvarta16::ui_tests
