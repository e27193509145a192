// The command line as a whole: help, version, and what is wrong with it.
#include <gtest/gtest.h>

#include "tool_process.h"

namespace tool_test {
namespace {

TEST(CommandLine, Version) {
    const ToolRun run = run_tool({"--version"});
    EXPECT_EQ("1.0.9999.kvarta16\n", run.out);
    EXPECT_EQ(0, run.status);
}

TEST(CommandLine, HelpOfEveryCommandHasExamples) {
    for (const std::string command : {"", "seed", "rates", "call", "catalogue", "rpc"}) {
        const ToolRun run = run_tool(command.empty() ? Words{"--help"} : Words{command, "--help"});
        EXPECT_NE(std::string::npos, run.out.find("kvarta16 " + command)) << run.out;
        EXPECT_TRUE(run.out.find("Examples:") != std::string::npos || command == "rpc");
        EXPECT_EQ("", run.err);
        EXPECT_EQ(0, run.status);
    }
    EXPECT_NE(std::string::npos, run_tool({"rpc", "--help"}).out.find("\"jsonrpc\":\"2.0\""));
}

TEST(CommandLine, WhatIsWrongIsToldOnStandardError) {
    const struct {
        Words words;
        std::string told;
    } cases[] = {
        {{}, "a command is wanted"},
        {{"nothing"}, "nothing"},
        {{"--nothing"}, "--nothing"},
        {{"seed", "--db", "sqlite:x.db", "--nothing"}, "--nothing"},
        {{"seed"}, "--db is required"},
        {{"seed", "--db"}, "--db"},
        {{"seed", "--db", "sqlite:"}, "sqlite:FILE"},
        {{"seed", "--db", "x.db"}, "\"x.db\" names no database: give sqlite:FILE"},
        {{"seed", "--db", "sqlite:x.db", "--tables", "payroll,other"}, "other"},
        {{"seed", "--db", "sqlite:x.db", "--dialect", "other"}, "other"},
        {{"rates"}, "--db is required"},
        {{"rates", "--db", "x.db"}, "sqlite:FILE"},
        {{"rates", "--db", "sqlite:x.db", "--on", "tomorrow"}, "\"tomorrow\" is no date"},
        {{"rates", "--db", "sqlite:x.db", "--lang", "de"}, "de"},
        {{"rates", "seed", "--db", "sqlite:x.db"}, "seed"},
        {{"catalogue", "Nothing"}, "there is no class \"Nothing\""},
        {{"catalogue", "aChar", "Class3"}, "Class3"},
        {{"rpc", "extra"}, "extra"},
    };
    TempFolder folder;
    for (const auto& wrong : cases) {
        Options options;
        options.folder = folder.file("");
        const ToolRun run = run_tool(wrong.words, options);
        EXPECT_EQ("", run.out);
        EXPECT_NE(std::string::npos, run.err.find(wrong.told)) << run.err;
        EXPECT_EQ(2, run.status) << wrong.told;
    }
    EXPECT_FALSE(std::filesystem::exists(folder.file("x.db")));
}

TEST(CommandLine, OutputThatCannotBeWrittenIsAFailure) {
    Options options;
    options.in_child = [] { ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO); };
    for (const Words& words : {Words{"call", "amain.VersjaLib"}, Words{"catalogue"}}) {
        const ToolRun run = run_tool(words, options);
        EXPECT_EQ("kvarta16: standard output cannot be written\n", run.err);
        EXPECT_EQ(1, run.status);
    }
    options.input = R"({"jsonrpc":"2.0","id":1,"method":"amain.VersjaLib"})"
                    "\n";
    EXPECT_EQ(1, run_tool({"rpc"}, options).status);
}

}  // namespace
}  // namespace tool_test
