// What the tool tells of the platform that it runs on.
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "platform/fake_display.h"
#include "tool_process.h"

namespace tool_test {
namespace {

using kvarta16::posix::FakeDisplay;
using kvarta16::posix::ScratchFolder;

// The listing by its first column; each row as its state and the rest.
std::map<std::string, std::string> rows_of(const std::string& listing) {
    std::map<std::string, std::string> rows;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t end = line.find("  ");
        const std::size_t state = line.find_first_not_of(' ', end);
        const std::size_t state_end = line.find(' ', state);
        const std::size_t how = line.find_first_not_of(' ', state_end);
        rows[line.substr(0, end)] = line.substr(state, state_end - state) + ": " + line.substr(how);
    }
    return rows;
}

std::map<std::string, std::string> doctor(const std::string& language, const Options& options) {
    const ToolRun run = run_tool({"doctor", "--lang", language}, options);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    return rows_of(run.out);
}

// Nothing installed, no display, no drives.
Options bare(const ScratchFolder& programs) {
    Options options;
    options.environment = {{"PATH", programs.path()},
                           {"DISPLAY", ""},
                           {"WAYLAND_DISPLAY", ""},
                           {"KVARTA16_DRIVES", programs / "drives"}};
    return options;
}

TEST(Doctor, WhatIsMissingAndHowToGetIt) {
    const ScratchFolder programs;
    auto rows = doctor("en", bare(programs));
    EXPECT_EQ(rows.size(), 16U);
    EXPECT_EQ(rows["windows and keys"], "no: xdotool is missing: apt-get install xdotool");
    EXPECT_EQ(rows["keyboard"], "no: standard input is no terminal");
    EXPECT_EQ(rows["message boxes"],
              "part: standard input is no terminal: boxes get their default answer");
    EXPECT_EQ(rows["folder dialog"],
              "no: no terminal; a window: a display and apt-get install zenity");
    EXPECT_EQ(rows["version record"], "no: the system has none: version numbers are 0");
    EXPECT_EQ(rows["files and drives"],
              "yes: more as folders C, D ... of KVARTA16_DRIVES; there are: Z: /");
    EXPECT_EQ(rows["database files"], "yes: SQLite, sqlite:FILE");
    EXPECT_TRUE(rows["starting programs"].starts_with("yes: ")) << rows["starting programs"];

    auto polish = doctor("pl", bare(programs));
    EXPECT_EQ(polish.size(), 16U);
    EXPECT_EQ(polish["okna i klawisze programów"], "nie: brak xdotool: apt-get install xdotool");
    EXPECT_EQ(polish["pliki baz danych"], "tak: SQLite, sqlite:PLIK");
}

TEST(Doctor, WhatIsThere) {
    const ScratchFolder programs;
    Options options = bare(programs);
    std::filesystem::create_directories(programs / "drives/C");
    std::filesystem::create_directories(programs / "drives/M");
    static_cast<void>(programs.script("xdotool", "true\n"));
    static_cast<void>(programs.script("kdialog", "true\n"));
    auto rows = doctor("en", options);
    EXPECT_EQ(rows["windows and keys"], "no: xdotool is there, an X display is not: set DISPLAY");
    EXPECT_EQ(rows["files and drives"],
              "yes: more as folders C, D ... of KVARTA16_DRIVES; there are: C: " +
                  (programs / "drives/C") + "/, M: " + (programs / "drives/M") + "/, Z: /");
    EXPECT_TRUE(rows["folder dialog"].starts_with("no: ")) << rows["folder dialog"];

    const FakeDisplay display;
    options.environment.erase("DISPLAY");
    rows = doctor("en", options);
    EXPECT_EQ(rows["windows and keys"], "yes: through xdotool");
    EXPECT_EQ(rows["folder dialog"], "yes: on the display, through kdialog");
    std::filesystem::permissions(programs / "kdialog", std::filesystem::perms(0644));
    static_cast<void>(programs.script("zenity", "true\n"));
    EXPECT_EQ(doctor("pl", options)["wybór folderu"], "tak: na ekranie, przez zenity");
}

TEST(Doctor, OnATerminal) {
    const ScratchFolder programs;
    TerminalRun run({"doctor", "--lang", "en"}, bare(programs));
    std::string listing = run.finish().out;
    std::erase(listing, '\r');
    auto rows = rows_of(listing);
    EXPECT_EQ(rows["message boxes"], "yes: asked on the terminal");
    EXPECT_EQ(rows["keyboard"], "yes: keys of the terminal");
    EXPECT_EQ(rows["folder dialog"],
              "part: asked on the terminal; a window: a display and apt-get install zenity");
}

TEST(Doctor, TheLanguageIsThatOfTheEnvironment) {
    Options options;
    options.environment = {{"LC_ALL", "pl_PL.UTF-8"}};
    EXPECT_NE(run_tool({"doctor"}, options).out.find("drukowanie"), std::string::npos);
    options.environment = {{"LC_ALL", "C"}};
    EXPECT_NE(run_tool({"doctor"}, options).out.find("printing"), std::string::npos);
    EXPECT_EQ(run_tool({"doctor", "everything"}).status, 2);
}

}  // namespace
}  // namespace tool_test
