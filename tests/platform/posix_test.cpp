// The POSIX platform against the real thing: boxes on pseudo-terminals and without one, pauses
// under signals, the clock against the system's.

#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

constexpr Long yes_no_style = msg_box::yes_no | msg_box::question;
constexpr StringView question = u"Aktualizować parametry płacowe ? ";

// ---- Boxes ----------------------------------------------------------------------------------

int asked(Long style, std::optional<StringView> title = std::nullopt) {
    return static_cast<int>(posix_platform().message_boxes->MsgBox(question, style, title));
}

struct Ended {
    int status;  // what the child's body has returned, or -1 if it died
    std::string screen;
};

// Runs `body` in a child process on a pseudo-terminal of its own.
class TerminalChild {
  public:
    explicit TerminalChild(const std::function<int()>& body) {
        const termios settings = line_by_line();
        process_ = ::forkpty(&terminal_, nullptr, &settings, nullptr);
        if (process_ == 0) {
            ::alarm(60);  // a child that nobody answers any more ends
            ::_exit(body());
        }
        EXPECT_GT(process_, 0);
    }
    ~TerminalChild() {
        if (process_ > 0) {
            static_cast<void>(end());
        }
    }
    TerminalChild(const TerminalChild&) = delete;
    TerminalChild& operator=(const TerminalChild&) = delete;
    TerminalChild(TerminalChild&&) = delete;
    TerminalChild& operator=(TerminalChild&&) = delete;

    void type(const std::string& keys) const {
        ASSERT_EQ(::write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }

    // Waits until the screen shows `text`. False if the child ends before.
    bool shows(const std::string& text) {
        while (screen_.find(text) == std::string::npos) {
            std::array<char, 256> bytes{};
            const ssize_t count = ::read(terminal_, bytes.data(), bytes.size());
            if (count <= 0) {
                return false;
            }
            screen_.append(bytes.data(), static_cast<std::size_t>(count));
        }
        return true;
    }

    Ended end() {
        static_cast<void>(shows("\x1A this is never shown"));  // so all of the screen is read
        int status = 0;
        ::waitpid(process_, &status, 0);
        ::close(terminal_);
        process_ = -1;
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, screen_};
    }

  private:
    // As a shell leaves a terminal, but for the echo and the carriage returns, so that the screen
    // shows what the child writes.
    static termios line_by_line() {
        termios settings{};
        settings.c_iflag = ICRNL;
        settings.c_cflag = CS8 | CREAD;
        settings.c_lflag = ICANON | ISIG;
        settings.c_cc[VEOF] = 4;
        settings.c_cc[VMIN] = 1;
        return settings;
    }

    pid_t process_ = -1;
    int terminal_ = -1;
    std::string screen_;
};

Ended answered(const std::string& keys, Long style, std::optional<StringView> title = {}) {
    TerminalChild child([=] { return asked(style, title); });
    child.type(keys);
    return child.end();
}

const std::string asked_once = "Aktualizować parametry płacowe ? \n[Tak]/Nie: ";

struct AnswerCase {
    const char* keys;
    MsgBoxResult result;
};

TEST(TerminalBox, TakesTheWordsOfBothLanguages) {
    constexpr auto yes = MsgBoxResult::Yes;
    constexpr auto no = MsgBoxResult::No;
    const AnswerCase cases[] = {
        {"t\n", yes},       {"T\n", yes},   {"tak\n", yes}, {"TAK\n", yes}, {"Tak\n", yes},
        {"y\n", yes},       {"Y\n", yes},   {"yes\n", yes}, {"\n", yes},    {"  \n", yes},
        {" tak \t\n", yes}, {"tak\r", yes}, {"n\n", no},    {"N\n", no},    {"nie\n", no},
        {"NIE\n", no},      {"no\n", no},   {" n\n", no},
    };
    for (const AnswerCase& answer : cases) {
        const Ended ended = answered(answer.keys, yes_no_style);
        EXPECT_EQ(ended.status, static_cast<int>(answer.result)) << answer.keys;
        EXPECT_EQ(ended.screen, asked_once) << answer.keys;
    }
}

TEST(TerminalBox, AsksAgainOnAnythingElse) {
    const Ended ended = answered("a\nta\nnietak\n6\n\xC5\x82\ntak\n", yes_no_style);
    EXPECT_EQ(ended.status, static_cast<int>(MsgBoxResult::Yes));
    EXPECT_EQ(ended.screen, asked_once +
                                "[Tak]/Nie: [Tak]/Nie: [Tak]/Nie: [Tak]/Nie: "
                                "[Tak]/Nie: ");
}

TEST(TerminalBox, EndOfInputIsNoOnesAnswer) {
    for (const char* keys : {"\x04", "t\x04\x04", "rubbish\n\x04"}) {
        const Ended ended = answered(keys, yes_no_style);
        EXPECT_EQ(ended.status, static_cast<int>(MsgBoxResult::No));
        EXPECT_EQ(ended.screen.substr(0, asked_once.size()), asked_once);
        EXPECT_EQ(ended.screen.back(), '\n');
    }
    EXPECT_EQ(answered("\x04", msg_box::exclamation).status, static_cast<int>(MsgBoxResult::Ok));
}

TEST(TerminalBox, PlainBoxWaitsForEnter) {
    for (const char* keys : {"\n", "ok\n", "O\n", "nie\n\n"}) {
        const Ended ended = answered(keys, msg_box::critical, u"Uwaga");
        EXPECT_EQ(ended.status, static_cast<int>(MsgBoxResult::Ok));
        EXPECT_EQ(ended.screen.substr(0, ended.screen.find("[OK]: ") + 6),
                  "Uwaga\nAktualizować parametry płacowe ? \n[OK]: ");
    }
}

TEST(TerminalBox, LeavesTheRestOfTheInputToTheProgram) {
    TerminalChild child([] {
        const int first = asked(yes_no_style);
        std::array<char, 16> rest{};
        const ssize_t count = ::read(STDIN_FILENO, rest.data(), rest.size());
        const bool is_rest = std::string(rest.data(), static_cast<std::size_t>(count)) == "rest\n";
        const int second = asked(yes_no_style);
        return is_rest ? first * 10 + second : 0;
    });
    child.type("n\nrest\ntak\n");
    EXPECT_EQ(child.end().status, 76);
}

void say_signal(int) {
    const ssize_t written = ::write(STDERR_FILENO, "signal", 6);
    static_cast<void>(written);
}

// Arranges for SIGALRM every 20 ms, with calls that are not taken up again by the system.
void signal_every_20_ms(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    ASSERT_EQ(::sigaction(SIGALRM, &action, nullptr), 0);
    const itimerval every{{0, 20'000}, {0, 20'000}};
    ASSERT_EQ(::setitimer(ITIMER_REAL, &every, nullptr), 0);
}

void no_more_signals() {
    const itimerval never{};
    ::setitimer(ITIMER_REAL, &never, nullptr);
    ::signal(SIGALRM, SIG_DFL);
}

TEST(TerminalBox, WaitsOnThroughSignals) {
    TerminalChild child([] {
        signal_every_20_ms(&say_signal);
        const int result = asked(yes_no_style);
        no_more_signals();
        return result;
    });
    ASSERT_TRUE(child.shows("[Tak]/Nie: signalsignal"));
    child.type("nie\n");
    EXPECT_EQ(child.end().status, static_cast<int>(MsgBoxResult::No));
}

// What a child has written to the end of `pipe` that it was given as standard error.
std::string all_of(int file) {
    std::string text;
    std::array<char, 256> bytes{};
    for (ssize_t count = 0; (count = ::read(file, bytes.data(), bytes.size())) > 0;) {
        text.append(bytes.data(), static_cast<std::size_t>(count));
    }
    ::close(file);
    return text;
}

struct Pipe {
    Pipe() { EXPECT_EQ(::pipe(ends.data()), 0); }
    [[nodiscard]] int out() const { return ends[0]; }
    [[nodiscard]] int in() const { return ends[1]; }
    std::array<int, 2> ends{};
};

TEST(TerminalBox, GoesToTheTerminalWhenStandardErrorIsRedirected) {
    const Pipe standard_error;
    TerminalChild child([&] {
        ::dup2(standard_error.in(), STDERR_FILENO);
        return asked(yes_no_style);
    });
    ::close(standard_error.in());
    child.type("tak\n");
    const Ended ended = child.end();
    EXPECT_EQ(ended.status, static_cast<int>(MsgBoxResult::Yes));
    EXPECT_EQ(ended.screen, asked_once);
    EXPECT_EQ(all_of(standard_error.out()), "");
}

TEST(UnattendedBox, InputThatIsNoTerminalIsNotRead) {
    const Pipe input;
    TerminalChild child([&] {
        ::dup2(input.out(), STDIN_FILENO);
        return asked(yes_no_style);
    });
    ASSERT_EQ(::write(input.in(), "tak\n", 4), 4);
    const Ended ended = child.end();
    EXPECT_EQ(ended.status, static_cast<int>(MsgBoxResult::No));
    EXPECT_EQ(ended.screen, "Aktualizować parametry płacowe ?  -> Nie (no terminal to ask on)\n");
    EXPECT_EQ(::close(input.in()) + ::close(input.out()), 0);
}

// Runs `body` in a child without any terminal; its standard error is what the screen is.
Ended without_terminal(const std::function<int()>& body) {
    const Pipe standard_error;
    const pid_t process = ::fork();
    if (process == 0) {
        ::alarm(60);
        ::setsid();
        ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
        ::dup2(standard_error.in(), STDERR_FILENO);
        ::_exit(body());
    }
    ::close(standard_error.in());
    Ended ended{-1, all_of(standard_error.out())};
    int status = 0;
    ::waitpid(process, &status, 0);
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return ended;
}

TEST(UnattendedBox, IsAnsweredAndTellsSoInOneLine) {
    const Ended question_box = without_terminal([] { return asked(yes_no_style); });
    EXPECT_EQ(question_box.status, static_cast<int>(MsgBoxResult::No));
    EXPECT_EQ(question_box.screen,
              "Aktualizować parametry płacowe ?  -> Nie (no terminal to ask on)\n");

    const Ended plain_box = without_terminal([] {
        return static_cast<int>(posix_platform().message_boxes->MsgBox(
            u"first\r\nsecond", msg_box::exclamation, u"Uwaga"));
    });
    EXPECT_EQ(plain_box.status, static_cast<int>(MsgBoxResult::Ok));
    EXPECT_EQ(plain_box.screen, "Uwaga first  second -> OK (no terminal to ask on)\n");
}

TEST(UnattendedBox, ClosedStandardFilesDoNoHarm) {
    const Ended ended = without_terminal([] {
        ::close(STDIN_FILENO);
        ::close(STDERR_FILENO);
        return asked(yes_no_style);
    });
    EXPECT_EQ(ended.status, static_cast<int>(MsgBoxResult::No));
}

// ---- Pauses ---------------------------------------------------------------------------------

volatile std::sig_atomic_t signals_seen = 0;
void count_signal(int) {
    signals_seen = signals_seen + 1;
}

std::chrono::milliseconds slept(Long milliseconds) {
    const auto start = std::chrono::steady_clock::now();
    posix_platform().sleeper->Sleep(milliseconds);
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 start);
}

TEST(Sleep, LastsAsLongAsAskedForWhateverSignalsArrive) {
    signals_seen = 0;
    signal_every_20_ms(&count_signal);
    const std::chrono::milliseconds elapsed = slept(250);
    no_more_signals();
    EXPECT_GE(elapsed.count(), 250);
    EXPECT_GE(signals_seen, 2);
}

TEST(Sleep, WholeSecondsAndTheRest) {
    EXPECT_GE(slept(1001).count(), 1001);
}

TEST(Sleep, NothingToWaitFor) {
    for (const Long milliseconds : {0, -1, -2147483647 - 1}) {
        EXPECT_LT(slept(milliseconds).count(), 10'000) << milliseconds;
    }
}

// ---- Clock ----------------------------------------------------------------------------------

// Seconds since day 0 on the local clock, by the system's own calendar.
std::int64_t local_seconds() {
    const std::time_t moment = std::time(nullptr);
    std::tm local = *std::localtime(&moment);
    constexpr std::int64_t day_of_1970 = 25569;
    return static_cast<std::int64_t>(::timegm(&local)) + day_of_1970 * 86400;
}

void expect_clock_is_right() {
    const std::int64_t before = local_seconds();
    const std::int64_t now = std::llround(posix_platform().clock->Now().days * 86400);
    const std::int64_t after = local_seconds();
    EXPECT_LE(before, now);
    EXPECT_LE(now, after);
}

TEST(SystemClock, TellsTheLocalTime) {
    expect_clock_is_right();
    const char* zone = std::getenv("TZ");
    const std::optional<std::string> kept = zone != nullptr ? std::optional(zone) : std::nullopt;
    for (const char* other : {"EAST-13:45", "WEST+11", "UTC0"}) {
        ::setenv("TZ", other, 1);
        ::tzset();
        expect_clock_is_right();
    }
    if (kept.has_value()) {
        ::setenv("TZ", kept->c_str(), 1);
    } else {
        ::unsetenv("TZ");
    }
    ::tzset();
}

// ---- The default ----------------------------------------------------------------------------

TEST(DefaultPlatform, IsThisOneInAProgramThatLinksIt) {
    const auto expect_is_this_one = [] {
        EXPECT_EQ(platform().message_boxes, posix_platform().message_boxes);
        EXPECT_EQ(platform().clock, posix_platform().clock);
        EXPECT_EQ(platform().sleeper, posix_platform().sleeper);
        EXPECT_EQ(platform().files, posix_platform().files);
    };
    expect_is_this_one();
    std::thread(expect_is_this_one).join();
}

}  // namespace
}  // namespace kvarta16
