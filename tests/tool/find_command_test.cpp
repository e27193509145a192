// Listing what a pattern matches.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tool_process.h"

namespace tool_test {
namespace {

namespace fs = std::filesystem;

TEST(FindCommand, TellsAttributesSizeTimeAndName) {
    const TempFolder folder;
    std::ofstream(folder.file("plik.txt")) << "12345";
    const ToolRun run = run_tool({"find", folder.file("*.txt")});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    // "----a           5  2026-11-21 20:15:00  plik.txt"
    ASSERT_EQ(run.out.size(),
              std::string("----a           5  2026-11-21 20:15:00  plik.txt\n").size());
    EXPECT_TRUE(run.out.starts_with("----a           5  2")) << run.out;
    EXPECT_TRUE(run.out.ends_with("  plik.txt\n")) << run.out;
}

TEST(FindCommand, FoldersAndHiddenFilesAreMarked) {
    const TempFolder folder;
    fs::create_directory(folder.file("katalog"));
    std::ofstream(folder.file(".ukryty")) << "x";
    EXPECT_TRUE(run_tool({"find", folder.file("katalog")}).out.starts_with("d---- "));
    EXPECT_TRUE(run_tool({"find", folder.file(".ukryty")}).out.starts_with("--h-a "));
    const ToolRun all = run_tool({"find", folder.file("*.*")});
    EXPECT_EQ(std::count(all.out.begin(), all.out.end(), '\n'), 4);  // with "." and ".."
}

TEST(FindCommand, NothingThatMatches) {
    const TempFolder folder;
    const ToolRun run = run_tool({"find", folder.file("*.dbf")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("nothing matches"), std::string::npos);
    EXPECT_EQ(run_tool({"find"}).status, 2);
}

}  // namespace
}  // namespace tool_test
