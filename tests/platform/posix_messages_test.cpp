// Keys as messages, on real pseudo-terminals: their codes, what stays in the terminal, and the
// terminal's settings on every way out.

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <kvarta16/platform/posix/posix_messages.h>

#include "program_files.h"
#include "terminal_child.h"

namespace kvarta16::posix {
namespace {

using namespace std::chrono_literals;

constexpr Long WM_KEYLAST = 264;

// The code of the next key, which is taken; 0 for none.
Long next_key(PosixMessages& messages) {
    MSG message;
    messages.PeekMessageA(message, 0, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE);
    return message.wParam;
}

void wait_for_input(PosixMessages& messages) {
    static_cast<void>(comes_true([&] { return messages.GetInputState() != 0; }));
}

bool are_equal(const termios& a, const termios& b) {
    return a.c_iflag == b.c_iflag && a.c_oflag == b.c_oflag && a.c_cflag == b.c_cflag &&
           a.c_lflag == b.c_lflag && std::ranges::equal(a.c_cc, b.c_cc);
}

termios settings_of(int file) {
    termios settings{};
    ::tcgetattr(file, &settings);
    return settings;
}

// What a child on a terminal tells of the keys that are typed at once.
std::string told_of(const std::string& keys, const std::function<std::string()>& body) {
    TerminalChild child([&] {
        const termios before = settings_of(STDIN_FILENO);
        const ssize_t written = ::write(STDOUT_FILENO, "ready", 5);
        std::string told = written == 5 ? body() : "";
        return are_equal(before, settings_of(STDIN_FILENO)) ? told : told + " spoiled";
    });
    EXPECT_TRUE(child.shows("ready"));
    child.type(keys);
    return child.result();
}

std::string codes_of(const std::string& keys) {
    return told_of(keys, [] {
        PosixMessages messages;
        wait_for_input(messages);
        std::string codes;
        for (int quiet = 0; quiet < 3; ++quiet) {
            while (messages.GetInputState() != 0) {
                codes += std::to_string(next_key(messages)) + ' ';
                quiet = 0;
            }
            std::this_thread::sleep_for(5ms);
        }
        return codes;
    });
}

struct KeysCase {
    std::string keys;
    std::string codes;
};

TEST(TerminalKeys, Codes) {
    const KeysCase cases[] = {
        {"\x1B", "27 "},
        {"a", "65 "},
        {"Az09", "65 90 48 57 "},
        {" ", "32 "},
        {"\t\r\n", "9 13 13 "},
        {"%&'(-.#$\"!", "53 55 222 57 189 190 51 52 222 49 "},
        {";:=+,<_>/?`~[{\\|]}@*)",
         "186 186 187 187 188 188 189 190 191 191 192 192 219 219 220 220 "
         "221 221 50 56 48 "},
        {"\x01\x05", "65 69 "},
        {"ąĆęŁńÓśŹż", "65 67 69 76 78 79 83 88 90 "},
        {"€\U0001F600\xE4\xBD\xA0", "231 231 231 "},
        {"\xFF", "231 "},
        {"\x1B[A\x1B[B\x1B[C\x1B[D", "38 40 39 37 "},
        {"\x1BOA\x1BOB\x1BOC\x1BOD", "38 40 39 37 "},
        {"\x1B[1;5D\x1B[1;2A\x1B[3;2~", "37 38 46 "},
        {"\x1B[H\x1B[F\x1B[1~\x1B[4~\x1B[5~\x1B[6~\x1B[2~\x1B[3~", "36 35 36 35 33 34 45 46 "},
        {"\x1BOP\x1BOQ\x1BOR\x1BOS\x1B[15~\x1B[17~", "112 113 114 115 116 117 "},
        {"\x1B[18~\x1B[19~\x1B[20~\x1B[21~\x1B[23~\x1B[24~", "118 119 120 121 122 123 "},
        {"\x1B[1;2P\x1B[25~\x1B[29~\x1B[[A\x1B[Z", "112 124 127 112 9 "},
        {"\x1B[99~\x1B[z\x1B[1;2;3Q", "255 255 113 "},
        {"\x1B\x1B", "27 27 "},
        {"\x1B\x1B[A", "27 38 "},
        {"\x1Bx", "27 88 "},
        {"\x1B[", "27 219 "},
        {"\x1BO", "27 79 "},
        {"\x1B[\x1B[A", "27 219 38 "},
        {"a\x1B"
         "b",
         "65 27 66 "},
        {"\n\x7F", "13 "},  // what edits a line of the terminal's own is no key
    };
    for (const KeysCase& test : cases) {
        EXPECT_EQ(codes_of(test.keys), test.codes) << testing::PrintToString(test.keys);
    }
}

TEST(TerminalKeys, OfATerminalThatGivesSingleKeysAlready) {
    TerminalChild child([] {
        termios raw = settings_of(STDIN_FILENO);
        ::cfmakeraw(&raw);
        raw.c_cc[VMIN] = 5;
        ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
        const ssize_t written = ::write(STDOUT_FILENO, "ready", 5);
        PosixMessages messages;
        wait_for_input(messages);
        const Long code = written == 5 ? next_key(messages) : 0;
        const Long second = next_key(messages);
        return std::to_string(code) + ' ' + std::to_string(second) +
               (are_equal(raw, settings_of(STDIN_FILENO)) ? "" : " spoiled");
    });
    ASSERT_TRUE(child.shows("ready"));
    child.type("\x7F");
    EXPECT_EQ(child.result(), "8 0");
}

TEST(TerminalKeys, NoneWaits) {
    EXPECT_EQ(told_of("",
                      [] {
                          PosixMessages messages;
                          MSG message;
                          message.wParam = 77;
                          const auto start = std::chrono::steady_clock::now();
                          const Long state = messages.GetInputState();
                          const Long found =
                              messages.PeekMessageA(message, 0, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE);
                          messages.DoEvents();
                          const bool quick = std::chrono::steady_clock::now() - start < 5s;
                          return std::to_string(state) + ' ' + std::to_string(found) + ' ' +
                                 std::to_string(message.wParam) + (quick ? " quick" : " slow");
                      }),
              "0 0 77 quick");
}

TEST(TerminalKeys, AMessageIsThatOfAKeyGoingDown) {
    EXPECT_EQ(told_of("a",
                      [] {
                          PosixMessages messages;
                          wait_for_input(messages);
                          MSG message;
                          const Long found =
                              messages.PeekMessageA(message, 0, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE);
                          const MSG wanted{0, 256, 65, 1, message.time, 0, 0};
                          return std::string(found == 1 && message == wanted ? "as told" : "other");
                      }),
              "as told");
}

TEST(TerminalKeys, WhatIsNotAskedForStays) {
    EXPECT_EQ(told_of("ab",
                      [] {
                          PosixMessages messages;
                          wait_for_input(messages);
                          MSG message;
                          std::string told;
                          const auto peek = [&](Long hwnd, Long first, Long last, Long remove) {
                              const Long found =
                                  messages.PeekMessageA(message, hwnd, first, last, remove);
                              told += std::to_string(found) + ':' + std::to_string(message.wParam) +
                                      ' ';
                          };
                          peek(0, 512, 522, PM_REMOVE);  // the mouse
                          peek(0, 257, 264, PM_REMOVE);  // a key going up
                          peek(0, 0, 255, PM_REMOVE);
                          peek(1234, 256, 264, PM_REMOVE);  // a window that there is not
                          peek(0, 256, 264, 0);             // looked at and left
                          peek(0, 256, 264, 0);
                          peek(0, 256, 264, 2);
                          told += std::to_string(messages.GetInputState()) + ' ';
                          peek(0, 256, 256, PM_REMOVE);
                          peek(-1, 0, 0, PM_REMOVE);  // of any kind
                          peek(0, 0, 0, PM_REMOVE);
                          return told;
                      }),
              "0:0 0:0 0:0 0:0 1:65 1:65 1:65 1 1:65 1:66 0:66 ");
}

std::string line_read() {
    std::string line;
    for (char byte = 0; byte != '\n' && ::read(STDIN_FILENO, &byte, 1) == 1;) {
        line += byte;
    }
    return line;
}

TEST(TerminalKeys, TheRestStaysForTheProgramsOwnReading) {
    EXPECT_EQ(told_of("abc\ndef\n",
                      [] {
                          PosixMessages messages;
                          wait_for_input(messages);
                          const Long code = next_key(messages);
                          std::string lines = line_read();
                          lines += line_read();
                          return std::to_string(code) + lines;
                      }),
              "65bc\ndef\n");
    // Looking alone takes nothing.
    EXPECT_EQ(told_of("abc\n",
                      [] {
                          PosixMessages messages;
                          wait_for_input(messages);
                          wait_for_input(messages);
                          return line_read();
                      }),
              "abc\n");
}

// The terminal goes on as before: lines are edited and echoed.
TEST(TerminalKeys, LinesAreEditedAsBefore) {
    TerminalChild child([] {
        PosixMessages messages;
        for (int i = 0; i < 50; ++i) {
            static_cast<void>(messages.GetInputState());
            static_cast<void>(next_key(messages));
        }
        const ssize_t written = ::write(STDOUT_FILENO, "ready", 5);
        return written == 5 ? line_read() : "";
    });
    ASSERT_TRUE(child.shows("ready"));
    child.type("ax\x7Fzb\n");
    EXPECT_EQ(child.result(), "azb\n");
    EXPECT_NE(child.screen().find("ax"), std::string::npos);
}

TEST(TerminalKeys, NoneOfAnInputThatIsNoTerminal) {
    const std::string told = told_of("x", [] {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0 || ::write(ends[1], "a\x1B", 2) != 2) {
            return std::string("no pipe");
        }
        const int terminal = ::dup(STDIN_FILENO);
        ::dup2(ends[0], STDIN_FILENO);
        PosixMessages messages;
        std::this_thread::sleep_for(20ms);
        const Long state = messages.GetInputState() + next_key(messages);
        ::close(STDIN_FILENO);
        const Long closed = messages.GetInputState() + next_key(messages);
        std::array<char, 4> bytes{};
        const ssize_t left = ::read(ends[0], bytes.data(), bytes.size());
        ::dup2(terminal, STDIN_FILENO);
        return std::to_string(state) + std::to_string(closed) + std::to_string(left);
    });
    EXPECT_EQ(told, "002");
}

TEST(TerminalKeys, AJobInTheBackgroundGetsNoneAndIsNotStopped) {
    const std::string told = told_of("x\n", [] {
        const pid_t job = ::fork();
        if (job == 0) {
            ::setpgid(0, 0);
            PosixMessages messages;
            std::this_thread::sleep_for(50ms);
            ::_exit(messages.GetInputState() == 0 && next_key(messages) == 0 ? 5 : 6);
        }
        int status = 0;
        ::waitpid(job, &status, WUNTRACED);
        const std::string how = WIFSTOPPED(status) ? "stopped" : "";
        ::kill(job, SIGKILL);
        return how + std::to_string(WEXITSTATUS(status)) + ' ' + line_read();
    });
    EXPECT_EQ(told, "5 x\n");
}

// A signal that ends the program at any moment leaves the terminal as it was.
TEST(TerminalKeys, ASignalLeavesTheTerminalInOrder) {
    for (int round = 0; round < 25; ++round) {
        TerminalChild child([] {
            const ssize_t written = ::write(STDOUT_FILENO, "ready", 5);
            PosixMessages messages;
            while (written == 5) {
                static_cast<void>(messages.GetInputState());
                static_cast<void>(next_key(messages));
            }
            return std::string();
        });
        const int keeps_it_open = ::open(::ptsname(child.terminal()), O_RDWR | O_NOCTTY);
        ASSERT_TRUE(child.shows("ready"));
        child.type("\x1B");  // the call waits for what may follow
        std::this_thread::sleep_for(std::chrono::microseconds(round * 1500));
        ::kill(child.process(), round % 2 == 0 ? SIGTERM : SIGHUP);
        EXPECT_TRUE(comes_true([&] {
            const std::optional<ProcessState> state = state_of(child.process());
            return !state || state->state == 'Z';
        }));
        const termios settings = settings_of(keeps_it_open);
        EXPECT_NE(settings.c_lflag & ICANON, 0U) << round;
        EXPECT_NE(settings.c_lflag & ECHO, 0U) << round;
        ::close(keeps_it_open);
    }
}

TEST(TerminalKeys, AnEscComesInTimeAndOnlyOnce) {
    EXPECT_EQ(told_of("\x1B",
                      [] {
                          PosixMessages messages;
                          wait_for_input(messages);
                          const auto start = std::chrono::steady_clock::now();
                          const Long code = next_key(messages);
                          const bool quick = std::chrono::steady_clock::now() - start < 2s;
                          const Long second = next_key(messages);
                          return std::to_string(code) + ' ' + std::to_string(second) + ' ' +
                                 std::to_string(messages.GetInputState()) + (quick ? "" : " slow");
                      }),
              "27 0 0");
}

}  // namespace
}  // namespace kvarta16::posix
