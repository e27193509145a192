// The tool's commands of printing on a real print server.
#include <cstdlib>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "support/print_server.h"
#include "tool/tool_process.h"

namespace tool_test {
namespace {

using kvarta16::testing_support::print_server;
using kvarta16::testing_support::PrintServer;

class ToolOnPrintServer : public testing::Test {
  protected:
    void SetUp() override {
        if (!print_server().is_there() && !PrintServer::is_required()) {
            GTEST_SKIP() << print_server().what_is_missing();
        }
        ASSERT_TRUE(print_server().is_there()) << print_server().what_is_missing();
        options.environment["CUPS_SERVER"] = print_server().address();
    }

    TempFolder folder;
    Options options;
};

TEST_F(ToolOnPrintServer, PrintsAFileAsItIs) {
    std::string bytes;
    for (int i = 0; i < 50'000; ++i) {
        bytes += static_cast<char>(i * 89 + i / 256);
    }
    std::ofstream(folder.file("wydruk.prn"), std::ios::binary) << bytes;
    const ToolRun run = run_tool(
        {"print", folder.file("wydruk.prn"), "--printer", "Etykiety", "--app", "Faktury"}, options);
    EXPECT_EQ(run.status, 0) << run.err;
    ASSERT_TRUE(run.out.starts_with("job ")) << run.out;
    const int job = std::atoi(run.out.c_str() + 4);
    EXPECT_EQ(run.out,
              "job " + std::to_string(job) + " on Etykiety: Faktury: wydruk.prn (50000 bytes)\n");
    EXPECT_TRUE(print_server().printed(job) == bytes);
    EXPECT_TRUE(print_server().title(job).starts_with("Faktury: wydruk.prn\n"));
}

TEST_F(ToolOnPrintServer, SaysWhatThePrinterDoesNotTake) {
    std::ofstream(folder.file("nic.prn")) << "";
    std::ofstream(folder.file("wydruk.prn")) << "x";
    const ToolRun empty =
        run_tool({"print", folder.file("nic.prn"), "--printer", "Etykiety"}, options);
    EXPECT_EQ(empty.status, 1);
    EXPECT_NE(empty.err.find("does not take \"nic.prn\" (EndDocPrinter)"), std::string::npos)
        << empty.err;
    const ToolRun closed =
        run_tool({"print", folder.file("wydruk.prn"), "--printer", "STOP"}, options);
    EXPECT_EQ(closed.status, 1);
    EXPECT_NE(closed.err.find("(StartDocPrinterA)"), std::string::npos) << closed.err;
}

TEST_F(ToolOnPrintServer, ListsThePrinters) {
    const ToolRun run = run_tool({"printers"}, options);
    EXPECT_EQ(run.status, 0) << run.err;
    for (const char* line :
         {"Etykiety  (default)  Drukarka Etykiety\n", "faktury  Drukarka faktury\n",
          "STOP  (takes no jobs)  Drukarka STOP\n", "Czeka  Drukarka Czeka\n"}) {
        EXPECT_NE(run.out.find(line), std::string::npos) << run.out;
    }
}

}  // namespace
}  // namespace tool_test
