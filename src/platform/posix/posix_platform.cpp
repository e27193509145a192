#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <span>
#include <string>
#include <string_view>

#include <unistd.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/named_spoolers.h>
#include <kvarta16/platform/posix/ftp/posix_internet.h>
#include <kvarta16/platform/posix/menus_in_memory.h>
#include <kvarta16/platform/posix/posix_file_table.h>
#include <kvarta16/platform/posix/posix_files.h>
#include <kvarta16/platform/posix/posix_find.h>
#include <kvarta16/platform/posix/posix_folder_dialog.h>
#include <kvarta16/platform/posix/posix_messages.h>
#include <kvarta16/platform/posix/posix_platform.h>
#include <kvarta16/platform/posix/posix_processes.h>
#include <kvarta16/platform/posix/posix_system.h>
#include <kvarta16/platform/posix/registry/posix_registry.h>
#include <kvarta16/platform/posix/spool_folder.h>
#include <kvarta16/platform/posix/terminal.h>

namespace kvarta16 {
namespace {

using posix::read_line;
using posix::TerminalScreen;
using posix::write_all;

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

class TerminalBoxes final : public MessageBoxes {
  public:
    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override {
        const std::string words =
            (title.has_value() ? to_utf8(*title) + "\n" : "") + to_utf8(text) + "\n";
        const TerminalScreen screen;
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

// Never destroyed: connections that a program has left open would say good-bye when the thread's
// own state is gone.
posix::PosixInternet& lasting_internet() {
    static auto* const internet = new posix::PosixInternet;
    return *internet;
}

}  // namespace

const Platform& posix_platform() noexcept {
    static TerminalBoxes boxes;
    static SystemClock clock;
    static SystemSleeper sleeper;
    static posix::PosixFiles files;
    static posix::PosixFindFiles find_files;
    static posix::PosixFileTable file_table;
    static posix::PosixSystemInformation system_information;
    static posix::PosixProcesses processes;
    static posix::PosixMessages messages;
    static posix::PosixFolderDialogs folder_dialogs;
    static posix::SpoolFolder spool_folder;
    static posix::PosixRegistry registry;
    static const Platform operations = [] {
        Platform made;
        made.message_boxes = &boxes;
        made.clock = &clock;
        made.sleeper = &sleeper;
        made.files = &files;
        made.find_files = &find_files;
        made.file_table = &file_table;
        made.system_information = &system_information;
        made.processes = &processes;
        made.messages = &messages;
        made.folder_dialogs = &folder_dialogs;
        made.internet = &lasting_internet();
        made.registry = &registry;
        made.menus = &posix::menus();
        named_spoolers().serve_prefix(posix::spool_folder_prefix, spool_folder);
        made.spooler = &named_spoolers();
        return made;
    }();
    return operations;
}

}  // namespace kvarta16
