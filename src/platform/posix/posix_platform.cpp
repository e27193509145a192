#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <span>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_files.h>
#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

// ---- Message boxes --------------------------------------------------------------------------

struct Button {
    MsgBoxResult result;
    std::string_view caption;
    std::array<std::string_view, 4> answers;  // in lower case
};

// The buttons of a box; the first one is the default.
constexpr Button ok_button[] = {{MsgBoxResult::Ok, "OK", {"o", "ok"}}};
constexpr Button yes_no_buttons[] = {{MsgBoxResult::Yes, "Tak", {"t", "tak", "y", "yes"}},
                                     {MsgBoxResult::No, "Nie", {"n", "nie", "no"}}};

std::span<const Button> buttons_of(Long style) {
    if ((style & msg_box::button_mask) == msg_box::yes_no) {
        return yes_no_buttons;
    }
    return ok_button;
}

// Nothing can be done for a box that cannot be shown; it is asked all the same.
void write_all(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return;
        }
    }
}

// The next line without its end. Read byte by byte, so that what stands behind it is left to the
// program. False at the end of the input, a line without an end included.
bool read_line(int file, std::string& line) {
    line.clear();
    for (;;) {
        char byte = 0;
        const ssize_t count = ::read(file, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        if (byte == '\n') {
            return true;
        }
        line += byte;
    }
}

// An answer without the blanks around it, its ASCII letters in lower case.
std::string normalised(std::string_view line) {
    constexpr std::string_view white = " \t\r";
    const std::size_t first = line.find_first_not_of(white);
    if (first == std::string_view::npos) {
        return "";
    }
    std::string answer(line.substr(first, line.find_last_not_of(white) - first + 1));
    for (char& letter : answer) {
        letter = static_cast<char>(letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : letter);
    }
    return answer;
}

const Button* button_answered(std::span<const Button> buttons, const std::string& answer) {
    if (answer.empty()) {
        return &buttons.front();
    }
    const auto found = std::ranges::find_if(buttons, [&](const Button& button) {
        return std::ranges::find(button.answers, answer) != button.answers.end();
    });
    return found == buttons.end() ? nullptr : &*found;
}

// "[Tak]/Nie: ", the default button in brackets.
std::string prompt_of(std::span<const Button> buttons) {
    std::string prompt = "[" + std::string(buttons.front().caption) + "]";
    for (const Button& button : buttons.subspan(1)) {
        prompt += "/" + std::string(button.caption);
    }
    return prompt + ": ";
}

// Where a person sees a box: standard error or, where that has been redirected, the controlling
// terminal.
class Screen {
  public:
    Screen() {
        if (::isatty(STDIN_FILENO) == 0) {
            return;
        }
        if (::isatty(STDERR_FILENO) != 0) {
            file_ = STDERR_FILENO;
        } else {
            file_ = ::open("/dev/tty", O_WRONLY | O_NOCTTY | O_CLOEXEC);
            is_own_ = file_ >= 0;
        }
    }
    ~Screen() {
        if (is_own_) {
            ::close(file_);
        }
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;
    Screen(Screen&&) = delete;
    Screen& operator=(Screen&&) = delete;

    [[nodiscard]] bool is_there() const { return file_ >= 0; }
    [[nodiscard]] int file() const { return file_; }

  private:
    int file_ = -1;
    bool is_own_ = false;
};

class TerminalBoxes final : public MessageBoxes {
  public:
    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override {
        const std::string words =
            (title.has_value() ? to_utf8(*title) + "\n" : "") + to_utf8(text) + "\n";
        const Screen screen;
        return screen.is_there() ? asked(screen.file(), words, style) : unattended(words, style);
    }

  private:
    static MsgBoxResult asked(int screen, const std::string& words, Long style) {
        const std::span<const Button> buttons = buttons_of(style);
        write_all(screen, words);
        for (std::string line;;) {
            write_all(screen, prompt_of(buttons));
            if (!read_line(STDIN_FILENO, line)) {
                write_all(screen, "\n");
                return unattended_answer(style);
            }
            if (const Button* button = button_answered(buttons, normalised(line))) {
                return button->result;
            }
        }
    }

    static MsgBoxResult unattended(std::string words, Long style) {
        const MsgBoxResult answer = unattended_answer(style);
        const auto button = std::ranges::find(buttons_of(style), answer, &Button::result);
        std::ranges::replace_if(
            words, [](char c) { return c == '\n' || c == '\r'; }, ' ');
        words += "-> " + std::string(button->caption) + " (no terminal to ask on)\n";
        write_all(STDERR_FILENO, words);
        return answer;
    }
};

// ---- Clock and pause ------------------------------------------------------------------------

class SystemClock final : public Clock {
  public:
    Date Now() override {
        const std::time_t moment = std::time(nullptr);
        std::tm local{};
        ::localtime_r(&moment, &local);
        const Long day = day_number(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
        const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
        return {day + seconds / 86400.0};
    }
};

class SystemSleeper final : public Sleeper {
  public:
    void Sleep(Long milliseconds) override {
        if (milliseconds <= 0) {
            return;
        }
        std::timespec left{milliseconds / 1000, milliseconds % 1000 * 1'000'000L};
        // A signal ends the call early and leaves in `left` what has not been slept.
        while (::nanosleep(&left, &left) != 0 && errno == EINTR) {
        }
    }
};

}  // namespace

const Platform& posix_platform() noexcept {
    static TerminalBoxes boxes;
    static SystemClock clock;
    static SystemSleeper sleeper;
    static posix::PosixFiles files;
    static const Platform operations{&boxes, &clock, &sleeper, &files};
    return operations;
}

}  // namespace kvarta16
