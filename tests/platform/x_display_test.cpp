// Windows and keys on a real X display, which the test starts for itself: a terminal window runs a
// script that writes down what is typed into it.
//
// The keyboard is the Polish one. Left out where Xvfb, xterm, xdotool or setxkbmap is missing, but
// not where KVARTA16_REQUIRE_SERVERS is set.

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/posix/child_programs.h>
#include <kvarta16/platform/posix/posix_processes.h>

#include "program_files.h"

namespace kvarta16::posix {
namespace {

// A program of the test, which ends with it.
class Child {
  public:
    // `kept` stays open in the program.
    Child(std::vector<std::string> words, int kept) {
        std::vector<char*> arguments;
        for (std::string& word : words) {
            arguments.push_back(word.data());
        }
        arguments.push_back(nullptr);
        process_ = ::fork();
        if (process_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            const int nothing = ::open("/dev/null", O_RDWR);
            for (const int file : {0, 1, 2}) {
                ::dup2(nothing, file);
            }
            if (kept >= 0) {
                ::fcntl(kept, F_SETFD, 0);
            }
            ::execvp(arguments[0], arguments.data());
            ::_exit(127);
        }
    }
    ~Child() {
        ::kill(process_, SIGTERM);
        ::waitpid(process_, nullptr, 0);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    Child(Child&&) = delete;
    Child& operator=(Child&&) = delete;

  private:
    pid_t process_;
};

// An X server without a screen, on a display that it chooses itself; it keeps its keyboard when
// nobody is connected.
class XServer {
  public:
    XServer() : pipe_(made_pipe()), server_(words(pipe_[1]), pipe_[1]) {
        ::close(pipe_[1]);
        std::string number;
        pollfd end{pipe_[0], POLLIN, 0};
        constexpr int patience = 20'000;
        for (char byte = 0;
             ::poll(&end, 1, patience) > 0 && ::read(pipe_[0], &byte, 1) == 1 && byte != '\n';) {
            number += byte;
        }
        ::close(pipe_[0]);
        if (number.empty()) {
            throw std::runtime_error("Xvfb does not tell its display");
        }
        variable_.emplace("DISPLAY", ":" + number);
    }

  private:
    static std::array<int, 2> made_pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        return ends;
    }
    static std::vector<std::string> words(int file) {
        return {"Xvfb",    "-displayfd", std::to_string(file), "-noreset", "-nolisten", "tcp",
                "-screen", "0",          "640x480x24"};
    }

    std::array<int, 2> pipe_;
    Child server_;
    std::optional<ScopedVariable> variable_;
};

std::string missing_programs() {
    std::string missing;
    for (const char* name : {"Xvfb", "xterm", "xdotool", "setxkbmap"}) {
        missing += program_on_path(name) ? "" : std::string(" ") + name;
    }
    return missing;
}

// A window with this title, which writes each line that is typed into a file.
class TypingWindow {
  public:
    TypingWindow(const ScratchFolder& folder, const std::string& name, const std::string& title)
        : out_(folder / (name + ".out")),
          window_(
              {"xterm", "-u8", "-title", title, "-e",
               folder.script(name, "printf ready > '" + (out_ + ".ready") +
                                       "'\nwhile IFS= read -r line; do printf '%s\\n' \"$line\" "
                                       ">> '" +
                                       out_ + "'; done\n")},
              -1) {
        EXPECT_TRUE(comes_true([&] { return text_of(out_ + ".ready") == "ready"; }));
    }
    [[nodiscard]] bool gets(const std::string& text) const {
        return comes_true([&] { return text_of(out_) == text; });
    }
    [[nodiscard]] std::string text() const { return text_of(out_); }

  private:
    std::string out_;
    Child window_;
};

class XDisplay : public testing::Test {
  protected:
    void SetUp() override {
        const std::string missing = missing_programs();
        if (missing.empty()) {
            server_.emplace();
            ASSERT_TRUE(run_program({"setxkbmap", "pl"}).has_value());
        } else if (std::getenv("KVARTA16_REQUIRE_SERVERS") != nullptr) {
            FAIL() << "not installed:" << missing;
        } else {
            GTEST_SKIP() << "not installed:" << missing;
        }
    }

  private:
    std::optional<XServer> server_;
};

TEST_F(XDisplay, KeysGoToTheWindowThatIsActivated) {
    const ScopedVariable language("LC_ALL", "C.UTF-8");
    const ScratchFolder folder;
    const TypingWindow ledger(folder, "ledger", "Ksiega KPiR - firma 7");
    const TypingWindow stock(folder, "stock", "Magazyn (1) [a*b]");
    PosixProcesses processes;

    processes.AppActivate(u"ksiega kpir", true);
    processes.SendKeys(u"Faktura 12/2024{+}{{}{}}{(}{)}{~}xy{BS 2}!~", true);
    EXPECT_TRUE(ledger.gets("Faktura 12/2024+{}()~!\n")) << ledger.text();

    processes.AppActivate(u"MAGAZYN (1) [A*B]", false);
    processes.SendKeys(u"+(ab)c+d{z 3}ąŻó^u{e 2}ńŁ{ENTER}", false);
    EXPECT_TRUE(stock.gets("eeńŁ\n")) << stock.text();
    EXPECT_EQ(ledger.text(), "Faktura 12/2024+{}()~!\n");

    processes.SendKeys(u"+(ab)c+d{z 3}ąŻó~", false);
    EXPECT_TRUE(stock.gets("eeńŁ\nABcDzzząŻó\n")) << stock.text();
    EXPECT_THROW(processes.AppActivate(u"PIR", false), Failure);
}

}  // namespace
}  // namespace kvarta16::posix
