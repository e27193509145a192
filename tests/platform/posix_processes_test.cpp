// Programs that are started, against the system's own view of them; keys and windows where there is
// no display, and what goes to the program that sends them.

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/child_programs.h>
#include <kvarta16/platform/posix/posix_processes.h>

#include "fake_display.h"
#include "program_files.h"
#include "support/sanitized.h"

namespace kvarta16::posix {
namespace {

pid_t shell(const std::string& command_line) {
    return static_cast<pid_t>(PosixProcesses().Shell(from_utf8(command_line), 3));
}

Long failure_of(const std::function<void()>& body) {
    try {
        body();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

Long failure_of_shell(const std::string& command_line) {
    return failure_of([&] { static_cast<void>(shell(command_line)); });
}

bool has_ended(pid_t process) {
    const std::optional<ProcessState> state = state_of(process);
    return !state || state->state == 'Z';
}

// A script that writes what `words` print into the file "out" of its folder, whole at once.
std::string writing(const ScratchFolder& folder, const std::string& words) {
    const std::string out = folder / "out";
    return "{ " + words + "; } > '" + out + ".new'\nmv '" + out + ".new' '" + out + "'\n";
}

std::string output_of(const ScratchFolder& folder, const std::string& command_line) {
    std::filesystem::remove(folder / "out");
    const pid_t process = shell(command_line);
    EXPECT_GT(process, 0);
    EXPECT_TRUE(comes_true([&] { return std::filesystem::exists(folder / "out"); }));
    return text_of(folder / "out");
}

// ---- Names and arguments --------------------------------------------------------------------

TEST(Shell, ArgumentsArriveAsTheyAre) {
    const ScratchFolder folder;
    const std::string program =
        folder.script("wypisz argumenty", writing(folder, "printf '<%s>' \"$@\""));
    EXPECT_EQ(output_of(folder, '"' + program + "\" a \"b c\" \"\" 'd e' \\\"f\\\" \"g\\\\\""),
              "<a><b c><><'d><e'><\"f\"><g\\>");
    EXPECT_EQ(output_of(folder, '"' + program + "\" $HOME `id` ; rm * > x | y & \\ \"\n\" -n"),
              "<$HOME><`id`><;><rm><*><>><x><|><y><&><\\><\n><-n>");
    EXPECT_EQ(output_of(folder, '"' + program + "\" Zażółć \"gęślą jaźń\" \U0001F600"),
              "<Zażółć><gęślą jaźń><\U0001F600>");
    EXPECT_EQ(output_of(folder, '"' + program + "\""), "<>");
}

TEST(Shell, NamesAreFoundInAllForms) {
    const ScratchFolder folder;
    const std::string program =
        folder.script("Żółty program", writing(folder, "printf '%s' \"$#\""));
    std::string windows = "Z:" + program;
    std::ranges::replace(windows, '/', '\\');
    const std::string forms[] = {
        program,  // blanks without quotes
        windows,
        '"' + windows + '"',
        "  \t" + windows,
        '"' + folder.path() + "/nothing/../ŻÓŁTY program\"",  // without case
    };
    for (const std::string& form : forms) {
        EXPECT_EQ(output_of(folder, form + " a \"b c\""), "2") << form;
    }
    {
        const ScopedVariable path("PATH", path_with("/nothing::" + folder.path()));
        EXPECT_EQ(output_of(folder, "\"Żółty program\" x"), "1");
        EXPECT_EQ(output_of(folder, "Żółty program x y z"), "3");
        EXPECT_EQ(failure_of_shell("\"żółty program\""), 53);
    }
    EXPECT_EQ(failure_of_shell("\"Żółty program\""), 53);
}

TEST(Shell, TheShortestNameComesFirst) {
    const ScratchFolder folder;
    const std::string longer = folder.script("a b", writing(folder, "printf longer"));
    EXPECT_EQ(output_of(folder, longer + " c"), "longer");
    static_cast<void>(folder.script("a", writing(folder, "printf 'shorter %s %s' \"$@\"")));
    EXPECT_EQ(output_of(folder, longer + " c"), "shorter b c");
    std::filesystem::remove(folder / "a");
    std::filesystem::create_directory(folder / "a");  // a folder is no program
    EXPECT_EQ(output_of(folder, longer + " c"), "longer");
}

TEST(Shell, ProgramsThatThereAreNot) {
    const ScratchFolder folder;
    const std::string cases[] = {
        "no-such-program-16",
        "\"no such program 16\" a",
        folder / "nothing",
        "Q:\\nothing\\x.exe",
        "\\\\server\\share\\x.exe",
        '"' + folder.path() + '"',
        "\"x:y:z\"",
        "..",
        "true.exe",  // by its exact name alone
    };
    for (const std::string& line : cases) {
        EXPECT_EQ(failure_of_shell(line), 53) << line;
    }
    for (const char* line : {"", "   ", "\"\"", "\" \" x"}) {
        EXPECT_EQ(failure_of_shell(line), 5) << line;
    }
    // A script whose interpreter is missing: the system says that there is no such file.
    std::ofstream(folder / "lost") << "#!/no/such/interpreter\n";
    std::filesystem::permissions(folder / "lost", std::filesystem::perms(0755));
    EXPECT_EQ(failure_of_shell('"' + (folder / "lost") + '"'), 53);
}

TEST(Shell, FilesThatAreNoPrograms) {
    const ScratchFolder folder;
    std::ofstream(folder / "text") << "touch '" << folder / "touched"
                                   << "'\n";
    EXPECT_EQ(failure_of_shell('"' + (folder / "text") + '"'), 75);  // no right to run it
    // What has the right and no form that the system knows is not given to a shell.
    std::filesystem::permissions(folder / "text", std::filesystem::perms(0755));
    EXPECT_EQ(failure_of_shell('"' + (folder / "text") + '"'), 75);
    EXPECT_FALSE(std::filesystem::exists(folder / "touched"));
    {
        const ScopedVariable path("PATH", folder.path());
        EXPECT_EQ(failure_of_shell("text"), 75);
        std::filesystem::permissions(folder / "text", std::filesystem::perms(0644));
        EXPECT_EQ(failure_of_shell("text"), 75);
    }
}

TEST(Shell, ACurrentDirectoryIsNotSearched) {
    const ScratchFolder folder;
    static_cast<void>(folder.script("here-16", "true\n"));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(failure_of_shell("here-16"), 53);
    EXPECT_EQ(failure_of_shell(".\\here-16"), 0);
    {
        const ScopedVariable path("PATH", path_with(":"));
        EXPECT_EQ(failure_of_shell("here-16"), 53);
    }
    std::filesystem::current_path(before);
}

// ---- What the program has -------------------------------------------------------------------

TEST(Shell, TheProgramHasNoneOfOurFiles) {
    const ScratchFolder folder;
    const std::string program = folder.script(
        "files", writing(folder,
                         "for n in /proc/$$/fd/*; do echo \"${n##*/} $(readlink $n)\"; "
                         "done"));
    const int ours = ::open("/dev/zero", O_RDONLY);  // without close-on-exec
    const int high = ::fcntl(ours, F_DUPFD, 500);
    ASSERT_GE(high, 500);
    const std::string files = output_of(folder, '"' + program + '"');
    ::close(ours);
    ::close(high);
    EXPECT_EQ(files.find("/dev/zero"), std::string::npos) << files;
    EXPECT_NE(files.find("0 /dev/null\n"), std::string::npos) << files;
    EXPECT_NE(files.find("2 /dev/null\n"), std::string::npos) << files;
}

TEST(Shell, TheProgramHasThreeFiles) {
    const ScratchFolder folder;
    const pid_t process = shell("sleep 60");
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/fd")) {
        EXPECT_EQ(std::filesystem::read_symlink(entry.path()), "/dev/null");
        ++count;
    }
    EXPECT_EQ(count, 3);
    ::kill(process, SIGKILL);
}

TEST(Shell, WorksWithTheStandardFilesClosed) {
    const ScratchFolder folder;
    const std::string program = folder.script("p", writing(folder, "ls -l /proc/$$/fd"));
    const pid_t host = ::fork();
    if (host == 0) {
        ::alarm(60);
        for (const int file : {0, 1, 2}) {
            ::close(file);
        }
        const bool fails = failure_of_shell("no-such-program-16") == 53;
        static_cast<void>(output_of(folder, '"' + program + '"'));
        ::_exit(fails ? 0 : 1);
    }
    int status = 0;
    ::waitpid(host, &status, 0);
    EXPECT_EQ(status, 0);
    const std::string files = text_of(folder / "out");
    EXPECT_NE(files.find("0 -> /dev/null"), std::string::npos) << files;
    EXPECT_NE(files.find("2 -> /dev/null"), std::string::npos) << files;
}

TEST(Shell, SignalsAreTheDefaultOnesAndNoneIsBlocked) {
    const ScratchFolder folder;
    struct sigaction before {};
    struct sigaction ignored {};
    ignored.sa_handler = SIG_IGN;
    ::sigaction(SIGUSR1, &ignored, &before);
    sigset_t usr2;
    ::sigemptyset(&usr2);
    ::sigaddset(&usr2, SIGUSR2);
    sigset_t mask;
    ::sigprocmask(SIG_BLOCK, &usr2, &mask);
    const pid_t process = shell("sleep 60");
    sigset_t now;
    ::sigprocmask(SIG_SETMASK, &mask, &now);
    ::sigaction(SIGUSR1, &before, nullptr);
    EXPECT_EQ(::sigismember(&now, SIGUSR2), 1);  // ours are as they were
    EXPECT_EQ(::sigismember(&now, SIGINT), 0);
    const std::string status = text_of("/proc/" + std::to_string(process) + "/status");
    EXPECT_NE(status.find("SigBlk:\t0000000000000000\n"), std::string::npos) << status;
    EXPECT_NE(status.find("SigIgn:\t0000000000000000\n"), std::string::npos) << status;
    ::kill(process, SIGKILL);
}

TEST(Shell, TheProgramIsInASessionOfItsOwn) {
    const pid_t process = shell("sleep 60");
    const std::optional<ProcessState> state = state_of(process);
    ASSERT_TRUE(state.has_value());
    EXPECT_EQ(state->session, process);
    EXPECT_EQ(state->group, process);
    EXPECT_NE(state->parent, ::getpid());
    EXPECT_EQ(::kill(-process, SIGKILL), 0);
}

TEST(Shell, TheProgramHasTheEnvironmentAndTheCurrentDirectory) {
    const ScratchFolder folder;
    const std::string program = folder.script("e", writing(folder, "pwd -P; echo \"$KVARTA16_T\""));
    const ScopedVariable variable("KVARTA16_T", "żółw");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    EXPECT_EQ(output_of(folder, '"' + program + '"'),
              std::filesystem::canonical(folder.path()).string() + "\nżółw\n");
    std::filesystem::current_path(before);
}

// ---- How it lives and ends ------------------------------------------------------------------

TEST(Shell, ReturnsWhileTheProgramRunsAndLeavesNoZombie) {
    const int children = number_of_children(::getpid());
    const pid_t process = shell("sleep 60");
    EXPECT_FALSE(has_ended(process));
    EXPECT_EQ(number_of_children(::getpid()), children);
    ::kill(process, SIGTERM);
    EXPECT_TRUE(comes_true([&] { return has_ended(process); }));
    EXPECT_EQ(number_of_children(::getpid()), children);
    EXPECT_EQ(failure_of_shell("no-such-program-16"), 53);
    EXPECT_EQ(number_of_children(::getpid()), children);
}

TEST(Shell, TheProgramOutlivesItsCaller) {
    const ScratchFolder folder;
    const std::string program =
        folder.script("late", "while [ ! -e '" + (folder / "go") + "' ]; do sleep 0.02; done\n" +
                                  writing(folder, "echo late"));
    const pid_t host = ::fork();
    if (host == 0) {
        ::setsid();
        static_cast<void>(shell('"' + program + '"'));
        ::kill(0, SIGINT);  // as Ctrl-C does it to all of a terminal's job
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(host, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    std::ofstream(folder / "go") << "go";
    EXPECT_TRUE(comes_true([&] { return text_of(folder / "out") == "late\n"; }));
}

// The host's own children stay for the host to wait for, however it treats them.
TEST(Shell, LeavesTheHostsChildrenAlone) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(7);
    }
    EXPECT_TRUE(comes_true([&] { return has_ended(child); }));
    ::kill(shell("sleep 60"), SIGKILL);
    int status = 0;
    EXPECT_EQ(::waitpid(-1, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

void reap_all(int) {
    const int error = errno;
    while (::waitpid(-1, nullptr, WNOHANG) > 0) {
    }
    errno = error;
}

TEST(Shell, WorksHoweverTheHostTreatsItsChildren) {
    for (void (*const handler)(int) : {static_cast<void (*)(int)>(SIG_IGN), &reap_all}) {
        struct sigaction before {};
        struct sigaction action {};
        action.sa_handler = handler;
        ::sigaction(SIGCHLD, &action, &before);
        const pid_t process = shell("sleep 60");
        EXPECT_FALSE(has_ended(process));
        ::kill(process, SIGKILL);
        EXPECT_EQ(failure_of_shell("no-such-program-16"), 53);
        const std::optional<Ended> ended = run_program({"sh", "-c", "echo out; exit 3"});
        ::sigaction(SIGCHLD, &before, nullptr);
        ASSERT_TRUE(ended.has_value());
        EXPECT_EQ(ended->status, 3);
        EXPECT_EQ(ended->output, "out\n");
    }
}

int number_of_files() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<int>(std::distance(begin(files), end(files)));
}

TEST(Shell, KeepsNoFileAndNoMask) {
    const int before = number_of_files();
    for (int i = 0; i < 20; ++i) {
        static_cast<void>(shell("true"));
        EXPECT_EQ(failure_of_shell("/etc/passwd"), 75);
        EXPECT_TRUE(run_program({"true"}).has_value());
    }
    EXPECT_EQ(number_of_files(), before);
}

TEST(Shell, IsRefusedWhereNoFileCanBeOpened) {
    if (testing_support::is_sanitized) {
        GTEST_SKIP() << "the sanitizer looks at virtual tables through a pipe of its own";
    }
    const pid_t host = ::fork();
    if (host == 0) {
        std::vector<int> files;
        for (int file = 0; (file = ::open("/dev/null", O_RDONLY)) >= 0;) {
            files.push_back(file);
        }
        for (std::size_t free = 0; free < 3; ++free) {  // three are too few
            if (failure_of_shell("true") != 70) {
                ::_exit(1);
            }
            ::close(files.back());
            files.pop_back();
        }
        ::_exit(failure_of_shell("true") == 0 ? 0 : 2);
    }
    int status = 0;
    ::waitpid(host, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(RunProgram, TellsHowAProgramEnds) {
    const std::optional<Ended> none = run_program({"no-such-program-16"});
    EXPECT_FALSE(none.has_value());
    const std::optional<Ended> killed = run_program({"sh", "-c", "kill -9 $$"});
    ASSERT_TRUE(killed.has_value());
    EXPECT_EQ(killed->status, 128 + SIGKILL);
    const std::optional<Ended> last = run_program({"sh", "-c", "exit 127"});
    ASSERT_TRUE(last.has_value());
    EXPECT_EQ(last->status, 127);
    const std::optional<Ended> big = run_program({"sh", "-c", "head -c 300000 /dev/zero"});
    ASSERT_TRUE(big.has_value());
    EXPECT_EQ(big->output.size(), 300'000U);
}

TEST(RunProgram, KillsWhatTakesTooLong) {
    using namespace std::chrono_literals;
    const int children = number_of_children(::getpid());
    const auto start = std::chrono::steady_clock::now();
    const std::optional<Ended> ended = run_program({"sleep", "60"}, 100ms);
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
    ASSERT_TRUE(ended.has_value());
    EXPECT_EQ(ended->status, 128 + SIGKILL);
    EXPECT_EQ(number_of_children(::getpid()), children);
    EXPECT_EQ(run_program({"sh", "-c", "exit 3"}, 20s)->status, 3);
}

// ---- Windows and keys -----------------------------------------------------------------------

TEST(Keys, NowhereWithoutADisplay) {
    for (const char* display : {"", ":", ":59999", "rubbish", ":x", "unix:59999.0"}) {
        const ScopedVariable variable("DISPLAY", display);
        EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"a", false); }), 5) << display;
        EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"", true); }), 5);
        EXPECT_EQ(failure_of([] { PosixProcesses().AppActivate(u"a", true); }), 5);
    }
    const ScopedVariable variable("DISPLAY", std::nullopt);
    EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"a", false); }), 5);
}

// xdotool as a script that writes its words down, a line a call, and answers as told.
class KeysThroughAProgram : public testing::Test {
  protected:
    KeysThroughAProgram() : path_("PATH", path_with(folder_.path())) {}

    void answer(const std::string& cases) const {
        static_cast<void>(folder_.script(
            "xdotool",
            "echo \"$*\" >> '" + (folder_ / "calls") + "'\ncase \"$*\" in\n" + cases + "\nesac\n"));
    }
    [[nodiscard]] std::string calls() const { return text_of(folder_ / "calls"); }

    ScratchFolder folder_;

  private:
    ScopedVariable path_;
    FakeDisplay display_;
};

TEST_F(KeysThroughAProgram, KeysGoInTheirOrder) {
    answer("getwindowfocus*) echo 77;;");
    PosixProcesses().SendKeys(u"Aą{Ł 2}{LEFT 3}^c+({F4}~)%x", true);
    EXPECT_EQ(calls(),
              "getwindowfocus -f\n"
              "key --delay 12 A\n"
              "key --delay 200 aogonek shift+Lstroke shift+Lstroke\n"
              "key --delay 12 Left Left Left ctrl+c shift+F4 shift+Return alt+x\n");
}

TEST_F(KeysThroughAProgram, ManyKeysGoInPortions) {
    answer("getwindowfocus*) echo 77;;");
    PosixProcesses().SendKeys(u"{x 600}", false);
    std::istringstream lines(calls());
    std::vector<std::size_t> keys;
    for (std::string line; std::getline(lines, line);) {
        keys.push_back(static_cast<std::size_t>(std::ranges::count(line, 'x')));
    }
    EXPECT_EQ(keys, (std::vector<std::size_t>{0, 256, 256, 88}));
}

TEST_F(KeysThroughAProgram, NothingIsSentOfAnIllFormedText) {
    answer("getwindowfocus*) echo 77;;");
    EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"abc{NONE}", false); }), 5);
    EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"", false); }), 0);
    EXPECT_EQ(calls(), "");
}

TEST_F(KeysThroughAProgram, WhatTheProgramRefuses) {
    answer("getwindowfocus*) echo 0;;");  // no window has the focus
    EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"a", false); }), 5);
    answer("*) exit 1;;");
    EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"a", false); }), 5);
    answer("getwindowfocus*) echo 77;;\nkey*) exit 1;;");
    EXPECT_EQ(failure_of([] { PosixProcesses().SendKeys(u"a", false); }), 70);
}

const std::string three_windows =
    "search*) echo 11; echo 12; echo 13;;\n"
    "'getwindowname 11') echo 'Żółta księga - KPiR';;\n"
    "'getwindowname 12') echo 'żółta KSIĘGA';;\n"
    "'getwindowname 13') echo 'Inna żółta księga';;\n";

TEST_F(KeysThroughAProgram, TheExactTitleComesFirst) {
    answer(three_windows);
    PosixProcesses().AppActivate(u"Żółta księga", false);
    EXPECT_TRUE(calls().starts_with("search --onlyvisible --name ^.*ta ksi.*ga\n")) << calls();
    EXPECT_TRUE(calls().ends_with("windowactivate --sync 12\n")) << calls();
}

TEST_F(KeysThroughAProgram, ElseTheFirstThatBeginsWithIt) {
    answer(three_windows);
    PosixProcesses().AppActivate(u"ŻÓŁTA KSIĘGA -", true);
    EXPECT_TRUE(calls().ends_with("windowactivate --sync 11\n")) << calls();
    EXPECT_EQ(failure_of([] { PosixProcesses().AppActivate(u"księga", false); }), 5);
    EXPECT_EQ(failure_of([] { PosixProcesses().AppActivate(u"", false); }), 5);
}

TEST_F(KeysThroughAProgram, WithoutAWindowManagerTheDisplayIsAsked) {
    answer(three_windows + "windowactivate*) exit 1;;");
    PosixProcesses().AppActivate(u"żółta księga", false);
    EXPECT_TRUE(calls().ends_with("windowraise 12 windowfocus --sync 12\n")) << calls();
    answer(three_windows + "windowactivate* | windowraise*) exit 1;;");
    EXPECT_EQ(failure_of([] { PosixProcesses().AppActivate(u"Inna", false); }), 5);
}

}  // namespace
}  // namespace kvarta16::posix
