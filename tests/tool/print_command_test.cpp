// The commands of printing, on folders as printers; and the printing class over JSON-RPC.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "rpc_client.h"

namespace tool_test {
namespace {

std::string text_of_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Printing : public testing::Test {
  protected:
    void SetUp() override {
        std::filesystem::create_directory(spool);
        std::ofstream(file, std::ios::binary) << bytes;
        // No server answers there, whatever the machine of the tests has.
        options.environment["CUPS_SERVER"] = "127.0.0.1:1";
    }

    TempFolder folder;
    std::string spool = folder.file("wydruki");
    std::string file = folder.file("wydruk.prn");
    std::string bytes = std::string("a\0\x1A\xFF\r\n", 6);
    Options options;
};

TEST_F(Printing, AFileGoesToAFolder) {
    const ToolRun run =
        run_tool({"print", file, "--printer", "spool:" + spool, "--app", "Faktury"}, options);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, "job 1 on spool:" + spool + ": Faktury: wydruk.prn (6 bytes)\n");
    EXPECT_EQ(text_of_file(spool + "/0001-Faktury_ wydruk.prn.prn"), bytes);
    const ToolRun second = run_tool({"print", file, "--printer", "spool:" + spool}, options);
    EXPECT_EQ(second.out, "job 2 on spool:" + spool + ": wydruk.prn (6 bytes)\n");
    EXPECT_EQ(text_of_file(spool + "/0002-wydruk.prn.prn"), bytes);
}

TEST_F(Printing, WhatGoesWrongIsTold) {
    struct Case {
        Words words;
        std::string reason;
        int status;
    };
    const Case cases[] = {
        {{"print", file + "x", "--printer", "spool:" + spool}, "File not found", 1},
        {{"print", folder.file("nie/ma"), "--printer", "spool:" + spool}, "Path not found", 1},
        {{"print", spool, "--printer", "spool:" + spool}, "access error", 1},
        {{"print", file, "--printer", "spool:" + folder.file("x")}, "Mam problem", 1},
        {{"print", file, "--printer", "Etykiety"}, "Mam problem", 1},
        {{"print", file, "--printer", ""}, "Mam problem", 1},
        {{"print", file}, "--printer is required", 2},
        {{"print", "--printer", "x"}, "FILE is required", 2},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::PrintToString(test.words));
        const ToolRun run = run_tool(test.words, options);
        EXPECT_EQ(run.status, test.status);
        EXPECT_EQ(run.out, "");
        EXPECT_NE(run.err.find(test.reason), std::string::npos) << run.err;
    }
    EXPECT_TRUE(std::filesystem::is_empty(spool));
}

TEST_F(Printing, WithoutAPrintServerThereIsNoPrinter) {
    const ToolRun run = run_tool({"printers"}, options);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("spool:FOLDER"), std::string::npos) << run.err;
}

TEST_F(Printing, TheClassPrintsOverRpc) {
    RpcClient rpc(options);
    const auto params = [&](const std::string& path, const std::string& printer) {
        return Json::array({path, printer, "Faktury"}).dump();
    };
    EXPECT_EQ(rpc.value("ClsPrint.SpoolFile", params("Z:" + file, "spool:" + spool)),
              R"({"Boolean":-1})");
    // Without a backslash the whole path is the job's name.
    bool is_there = false;
    for (const auto& entry : std::filesystem::directory_iterator(spool)) {
        const std::string name = entry.path().filename().string();
        is_there = is_there || (name.starts_with("0001-Faktury_ Z_") && name.ends_with(".prn") &&
                                text_of_file(entry.path().string()) == bytes);
    }
    EXPECT_TRUE(is_there);

    const Json missing = rpc.result("ClsPrint.SpoolFile", params("Z:\\nie\\ma", "spool:" + spool));
    EXPECT_EQ(missing["value"], Json::parse(R"({"Boolean":-1})"));
    EXPECT_EQ(missing["boxes"],
              Json::parse(R"([{"text":"Path not found","style":0,"title":null,"answer":"ok"}])"));
    const Json nobody = rpc.result("ClsPrint.SpoolFile", params("Z:" + file, "Etykiety"));
    EXPECT_EQ(nobody["value"], Json::parse(R"({"Boolean":0})"));
    EXPECT_EQ(nobody["boxes"][0]["style"], 16);

    rpc.value("host.fault", R"(["WritePrinter",1,"from",5])");
    EXPECT_EQ(rpc.result("ClsPrint.SpoolFile", params("Z:" + file, "spool:" + spool))["boxes"],
              Json::array());
}

}  // namespace
}  // namespace tool_test
