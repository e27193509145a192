// Printing a file: the calls of the spooler and of the numbered files in their order with all their
// arguments, the names of job and printer, the blocks, the boxes, and every fault.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/ui/ClsPrint.h>

#include "support/fake_platform.h"

namespace kvarta16::ui_tests {
namespace {

using testing_support::FakePlatform;
using Calls = std::vector<std::string>;

constexpr StringView no_printer =
    u"Mam problem ze znalezieniem drukarki systemowej. Prosze sprawdzić czy wszystko jest "
    u"prawidłowo podłączone (a także uprawnienia użytkownika systemu WINDOWS do drukarki).";
constexpr StringView path = u"C:\\dane\\wydruk.prn";

// All 256 byte values, in an order that no table keeps.
std::string bytes_of_size(std::size_t size) {
    std::string bytes;
    bytes.reserve(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes += static_cast<char>(i * 89 + i / 256);
    }
    return bytes;
}

// A platform with the printer "Etykiety" and a file on its disk.
struct PrintingPlatform : FakePlatform {
    explicit PrintingPlatform(const std::string& contents = "abc") {
        spooler.printers = {u"Etykiety"};
        disk.add_folder(u"C:\\dane");
        disk.add(path, contents);
    }
};

std::string opening(const std::string& name, Long handle = 0) {
    return "OpenPrinterA(" + name + "; " + std::to_string(handle) + "; \"\"; 124; 8)";
}

TEST(SpoolFile, CallsTheSpoolerAndTheFileInTheirOrder) {
    PrintingPlatform fake("abc");
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
    EXPECT_EQ(fake.spooler.calls,
              (Calls{opening("Etykiety"), "StartDocPrinterA(77; 1; wydruk.prn; \"\"; RAW)",
                     "StartPagePrinter(77)", "WritePrinter(77; 3; 0)", "EndPagePrinter(77)",
                     "EndDocPrinter(77)", "ClosePrinter(77)"}));
    EXPECT_EQ(fake.disk.log,
              (Calls{"FreeFile", "Open(C:\\dane\\wydruk.prn; 1; input)", "LOF(1)", "Close(1)"}));
    EXPECT_EQ(fake.spooler.sent, "abc");
    EXPECT_TRUE(fake.boxes.shown.empty());
    EXPECT_TRUE(fake.file_table.open_numbers().empty());
}

TEST(SpoolFile, TakesTheNextFreeNumber) {
    PrintingPlatform fake;
    fake.disk.add(u"C:\\dane\\inny.txt", "x");
    fake.file_table.Open(u"C:\\dane\\inny.txt", 1, OpenMode::Input, Sharing::Default);
    fake.disk.log.clear();
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
    EXPECT_EQ(fake.disk.log,
              (Calls{"FreeFile", "Open(C:\\dane\\wydruk.prn; 2; input)", "LOF(2)", "Close(2)"}));
    EXPECT_EQ(fake.file_table.open_numbers(), std::set<Integer>{1});
}

// ---- Names ----------------------------------------------------------------------------------

TEST(SpoolFile, TheJobBearsTheFilesName) {
    struct Case {
        const char16_t* file;
        const char16_t* application;
        const char* job;
    };
    const Case cases[] = {
        {u"c:\\dane\\wydruk.prn", u"Faktury", "Faktury: wydruk.prn"},
        {u"c:\\dane\\wydruk.prn", u"", "wydruk.prn"},
        {u"wydruk.prn", u"", "wydruk.prn"},
        {u"c:wydruk.prn", u"", "c:wydruk.prn"},
        {u"c:/dane/wydruk.prn", u"", "c:/dane/wydruk.prn"},
        {u"\\wydruk.prn", u"", "wydruk.prn"},
        {u"c:\\dane\\", u"", ""},
        {u"c:\\dane\\", u"Faktury", "Faktury: "},
        {u"", u"", ""},
        {u"", u"Faktury", "Faktury: "},
        {u"\\\\serwer\\udział\\żółć.prn", u" ", " : żółć.prn"},
        {u"a\\b\\", u"x\\y", "x\\y: "},
    };
    for (const Case& test : cases) {
        FakePlatform fake;
        fake.spooler.printers = {u"Etykiety"};
        EXPECT_EQ(ClsPrint().SpoolFile(test.file, u"Etykiety", test.application).raw, -1);
        ASSERT_GE(fake.spooler.calls.size(), 2u);
        EXPECT_EQ(fake.spooler.calls[1],
                  std::string("StartDocPrinterA(77; 1; ") + test.job + "; \"\"; RAW)");
    }
}

TEST(SpoolFile, ThePrinterIsTriedUnderThreeFormsOfItsName) {
    struct Case {
        const char16_t* known;
        Calls tried;
    };
    const Case cases[] = {
        {u"Drukarka Ćma", {opening("Drukarka Ćma")}},
        {u"drukarka ćma", {opening("Drukarka Ćma"), opening("drukarka ćma")}},
        {u"DRUKARKA ĆMA",
         {opening("Drukarka Ćma"), opening("drukarka ćma"), opening("DRUKARKA ĆMA")}},
    };
    for (const Case& test : cases) {
        PrintingPlatform fake;
        fake.spooler.printers = {test.known};
        EXPECT_EQ(ClsPrint().SpoolFile(path, u"Drukarka Ćma").raw, -1);
        ASSERT_GT(fake.spooler.calls.size(), test.tried.size());
        EXPECT_EQ(Calls(fake.spooler.calls.begin(),
                        fake.spooler.calls.begin() + static_cast<int>(test.tried.size())),
                  test.tried);
        EXPECT_TRUE(fake.spooler.calls[test.tried.size()].starts_with("StartDocPrinterA(77"));
        EXPECT_EQ(fake.spooler.sent, "abc");
    }
}

TEST(SpoolFile, AMixedNameIsNotFoundByItsCapitals) {
    PrintingPlatform fake;
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"ETYKIETY").raw, 0);
    EXPECT_EQ(fake.spooler.calls,
              (Calls{opening("ETYKIETY"), opening("etykiety"), opening("ETYKIETY")}));
}

TEST(SpoolFile, WithoutAPrinterABoxSaysSo) {
    PrintingPlatform fake;
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Inna", u"Faktury").raw, 0);
    EXPECT_EQ(fake.spooler.calls, (Calls{opening("Inna"), opening("inna"), opening("INNA")}));
    ASSERT_EQ(fake.boxes.shown.size(), 1u);
    EXPECT_EQ(fake.boxes.shown[0].text, no_printer);
    EXPECT_EQ(fake.boxes.shown[0].style, 16);
    EXPECT_EQ(fake.boxes.shown[0].title, std::nullopt);
    EXPECT_TRUE(fake.disk.log.empty());
}

// ---- Blocks ---------------------------------------------------------------------------------

TEST(SpoolFile, SendsBlocksAndTheRest) {
    struct Case {
        std::size_t size;
        std::vector<Long> writes;
    };
    const Case cases[] = {
        {0, {}},
        {1, {1}},
        {256, {256}},
        {16383, {16383}},
        {16384, {16384}},
        {16385, {16384, 1}},
        {32768, {16384, 16384}},
        {100000, {16384, 16384, 16384, 16384, 16384, 16384, 1696}},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.size);
        const std::string bytes = bytes_of_size(test.size);
        PrintingPlatform fake(bytes);
        EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
        Calls expected{opening("Etykiety"), "StartDocPrinterA(77; 1; wydruk.prn; \"\"; RAW)",
                       "StartPagePrinter(77)"};
        for (const Long size : test.writes) {
            expected.push_back("WritePrinter(77; " + std::to_string(size) + "; 0)");
        }
        for (const char* name : {"EndPagePrinter(77)", "EndDocPrinter(77)", "ClosePrinter(77)"}) {
            expected.emplace_back(name);
        }
        EXPECT_EQ(fake.spooler.calls, expected);
        EXPECT_TRUE(fake.spooler.sent == bytes);
    }
}

// ---- What goes wrong ------------------------------------------------------------------------

void expect_plain_box(const FakePlatform& fake, StringView text) {
    ASSERT_EQ(fake.boxes.shown.size(), 1u);
    EXPECT_EQ(fake.boxes.shown[0].text, text);
    EXPECT_EQ(fake.boxes.shown[0].style, 0);
    EXPECT_EQ(fake.boxes.shown[0].title, std::nullopt);
}

TEST(SpoolFile, AMissingFileIsTrueAndTheDocumentStaysOpen) {
    FakePlatform fake;
    fake.spooler.printers = {u"Etykiety"};
    EXPECT_EQ(ClsPrint().SpoolFile(u"C:\\nie ma.prn", u"Etykiety").raw, -1);
    EXPECT_EQ(fake.spooler.calls,
              (Calls{opening("Etykiety"), "StartDocPrinterA(77; 1; nie ma.prn; \"\"; RAW)",
                     "StartPagePrinter(77)", "ClosePrinter(77)"}));
    expect_plain_box(fake, u"File not found");
}

TEST(SpoolFile, RefusalsOfTheSpoolerAreNotNoticed) {
    PrintingPlatform fake(bytes_of_size(16385));
    const auto plan = std::make_shared<FaultPlan>();
    const auto faulty = faulting(fake.spooler, plan);
    fake.operations.spooler = faulty.get();
    for (const char* operation : {"StartDocPrinterA", "StartPagePrinter", "WritePrinter",
                                  "EndPagePrinter", "EndDocPrinter", "ClosePrinter"}) {
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            SCOPED_TRACE(operation);
            fake.spooler.calls.clear();
            plan->fail_at(operation, 1, span, 5);
            EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
            const std::size_t refused =
                operation == std::string("WritePrinter") && span == FaultSpan::FromThenOn ? 2 : 1;
            EXPECT_EQ(fake.spooler.calls.size(), 8 - refused);
            EXPECT_TRUE(fake.boxes.shown.empty());
            plan->clear();
        }
    }
}

TEST(SpoolFile, ARefusedNameIsFollowedByTheNext) {
    PrintingPlatform fake;
    fake.spooler.printers = {u"Etykiety", u"etykiety", u"ETYKIETY"};
    const auto plan = std::make_shared<FaultPlan>();
    const auto faulty = faulting(fake.spooler, plan);
    fake.operations.spooler = faulty.get();
    plan->fail_at("OpenPrinterA", 1, FaultSpan::Once, 5);
    plan->fail_at("OpenPrinterA", 2, FaultSpan::Once, 5);
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
    EXPECT_EQ(fake.spooler.calls.front(), opening("ETYKIETY"));
    plan->clear();
    plan->fail_at("OpenPrinterA", 1, FaultSpan::FromThenOn, 5);
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, 0);
    EXPECT_EQ(fake.boxes.shown.size(), 1u);
}

struct FileFault {
    const char* operation;
    Long call;
    Long number;
    const char16_t* text;
    bool stays_open;   // the number of the file
    std::size_t sent;  // bytes, before the failure
};

TEST(SpoolFile, AFailureOfTheFileIsToldAndThePrinterClosed) {
    const FileFault faults[] = {
        {"FreeFile", 1, 67, u"Too many files", false, 0},
        {"FileTable.Open", 1, 70, u"Permission denied", false, 0},
        {"LOF", 1, 52, u"Bad file name or number", true, 0},
        {"InputCharacter", 1, 57, u"Device I/O error", true, 0},
        {"InputCharacter", 16384, 57, u"Device I/O error", true, 0},
        {"InputCharacter", 16385, 62, u"Input past end of file", true, 16384},
        {"FileTable.Close", 1, 57, u"Device I/O error", true, 16385},
    };
    for (const FileFault& fault : faults) {
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            SCOPED_TRACE(std::string(fault.operation) + " " + std::to_string(fault.call));
            PrintingPlatform fake(bytes_of_size(16385));
            const auto plan = std::make_shared<FaultPlan>();
            const auto faulty = faulting(fake.file_table, plan);
            fake.operations.file_table = faulty.get();
            plan->fail_at(fault.operation, fault.call, span, fault.number);
            EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
            expect_plain_box(fake, fault.text);
            EXPECT_EQ(fake.spooler.sent.size(), fault.sent);
            EXPECT_EQ(fake.spooler.calls.back(), "ClosePrinter(77)");
            for (const std::string& call : fake.spooler.calls) {
                EXPECT_FALSE(call.starts_with("End")) << call;
            }
            EXPECT_EQ(fake.file_table.open_numbers().contains(1), fault.stays_open);
        }
    }
}

TEST(SpoolFile, AFileThatStaysOpenTakesItsNumber) {
    PrintingPlatform fake;
    const auto plan = std::make_shared<FaultPlan>();
    const auto faulty = faulting(fake.file_table, plan);
    fake.operations.file_table = faulty.get();
    plan->fail_at("InputCharacter", 2, FaultSpan::Once, 57);
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
    fake.disk.log.clear();
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
    EXPECT_EQ(fake.disk.log[1], "Open(C:\\dane\\wydruk.prn; 2; input)");
    EXPECT_EQ(fake.spooler.sent, "abc");
}

TEST(SpoolFile, AFailingBoxIsAFailureToo) {
    PrintingPlatform fake;
    const auto plan = std::make_shared<FaultPlan>();
    const auto faulty = faulting(fake.boxes, plan);
    fake.operations.message_boxes = faulty.get();
    plan->fail_at("MsgBox", 1, FaultSpan::Once, 5);
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Inna").raw, -1);
    expect_plain_box(fake, u"Invalid procedure call or argument");
    EXPECT_EQ(fake.spooler.calls.back(), "ClosePrinter(0)");
    plan->clear();
    plan->fail_at("MsgBox", 1, FaultSpan::FromThenOn, 5);
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Inna").raw, -1);
    EXPECT_EQ(fake.boxes.shown.size(), 1u);
}

// A file whose length the test sets, of blanks without an end.
class LongFiles final : public ForwardingFileTable {
  public:
    using ForwardingFileTable::ForwardingFileTable;
    Long LOF(Integer) override { return length; }
    char16_t InputCharacter(Integer) override { return u' '; }

    Long length = 0;
};

TEST(SpoolFile, ALengthThatHasWrappedSendsNothing) {
    struct Case {
        Long length;
        std::size_t boxes;
    };
    for (const Case& test : {Case{-1, 1}, Case{-16385, 1}, Case{-16384, 0}}) {
        PrintingPlatform fake;
        LongFiles files(fake.file_table);
        files.length = test.length;
        fake.operations.file_table = &files;
        EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, -1);
        EXPECT_EQ(fake.spooler.sent, "");
        ASSERT_EQ(fake.boxes.shown.size(), test.boxes);
        if (test.boxes > 0) {
            EXPECT_EQ(fake.boxes.shown[0].text, u"Subscript out of range");
        }
    }
}

TEST(SpoolFile, WithoutASpoolerThereIsNoPrinter) {
    FakePlatform fake;
    fake.operations.spooler = &unavailable_spooler();
    EXPECT_EQ(ClsPrint().SpoolFile(path, u"Etykiety").raw, 0);
    EXPECT_EQ(fake.boxes.shown.size(), 1u);
}

TEST(SpoolFile, IsCalledByName) {
    PrintingPlatform fake;
    const ClassInfo* const info = find_class(u"ClsPrint");
    ASSERT_NE(info, nullptr);
    const MemberInfo* const member = info->find(u"SpoolFile", MemberKind::Method);
    ASSERT_NE(member, nullptr);
    const ClassObject object(*info);
    Arguments arguments{String(path), u"Etykiety"};
    EXPECT_EQ(invoke(*member, object.self(), arguments).get_if<Boolean>()->raw, -1);
    ASSERT_EQ(arguments.size(), 3u);
    EXPECT_EQ(*arguments[2].get_if<String>(), u"");
    EXPECT_EQ(fake.spooler.sent, "abc");
    Arguments too_few{String(path)};
    EXPECT_THROW(invoke(*member, object.self(), too_few), WrongArgumentCount);
    Arguments null{Variant::null(), u"Etykiety"};
    EXPECT_THROW(invoke(*member, object.self(), null), Failure);
}

}  // namespace
}  // namespace kvarta16::ui_tests
