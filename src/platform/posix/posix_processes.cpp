#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/child_programs.h>
#include <kvarta16/platform/posix/command_line.h>
#include <kvarta16/platform/posix/display.h>
#include <kvarta16/platform/posix/key_notation.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_processes.h>

namespace kvarta16::posix {
namespace {

// ---- Programs -------------------------------------------------------------------------------

// What native_path gives; nothing where it fails.
std::optional<std::string> native_path_if_any(StringView path) {
    try {
        return native_path(path);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

std::optional<Program> program_of(const String& name) {
    if (name.find_first_of(u"\\/:") == String::npos) {
        const std::string plain_name = to_utf8(name);
        const std::optional<std::string> path = program_on_path(plain_name);
        return path ? std::optional(Program{*path, {plain_name}}) : std::nullopt;
    }
    const std::optional<std::string> path = native_path_if_any(name);
    if (!path || !is_program_file(*path)) {
        return std::nullopt;
    }
    return Program{*path, {*path}};
}

Program program_of_line(StringView command_line) {
    const std::vector<CommandReading> readings = readings_of(command_line);
    if (readings.empty()) {
        fail(error::invalid_call);
    }
    for (const CommandReading& reading : readings) {
        if (std::optional<Program> program = program_of(reading.program)) {
            for (const String& argument : arguments_of(reading.arguments)) {
                program->arguments.push_back(to_utf8(argument));
            }
            return std::move(*program);
        }
    }
    fail(error::file_not_found);
}

// The failure of a program that the system does not start.
Long failure_of_start(int system_error) {
    switch (system_error) {
        case ENOENT:
        case ENOTDIR:
            return error::file_not_found;
        case EAGAIN:
        case ENOMEM:
        case EMFILE:
        case ENFILE:
        case ECANCELED:
            return error::permission_denied;
        default:
            return error::file_access;
    }
}

// ---- Windows and keys -----------------------------------------------------------------------

constexpr std::chrono::milliseconds patience{5000};

// Runs xdotool and gives what it prints; nothing where it fails.
std::optional<std::string> xdotool(std::vector<std::string> words,
                                   std::chrono::milliseconds limit = patience) {
    words.insert(words.begin(), "xdotool");
    std::optional<Ended> ended = run_program(words, limit);
    if (!ended || ended->status != 0) {
        return std::nullopt;
    }
    return std::move(ended->output);
}

void require_display() {
    if (!has_x_display() || !program_on_path("xdotool")) {
        fail(error::invalid_call);
    }
}

// A pattern that every title matches that begins with `title`, and others too: what is no letter,
// digit or blank may be anything, for the locale decides what one character is there.
std::string pattern_of(StringView title) {
    const auto is_plain = [](char16_t unit) {
        return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
               (unit >= u'0' && unit <= u'9') || unit == u' ';
    };
    std::string pattern = "^";
    for (const char16_t unit : title) {
        if (is_plain(unit)) {
            pattern += static_cast<char>(unit);
        } else if (!pattern.ends_with('*')) {
            pattern += ".*";
        }
    }
    return pattern;
}

struct Window {
    std::string id;
    String title;  // in capitals
};

// The windows that may have this title, those on the screen before others.
std::vector<Window> windows_like(StringView title) {
    std::vector<Window> windows;
    for (const bool only_visible : {true, false}) {
        std::vector<std::string> words{"search", "--name", pattern_of(title)};
        if (only_visible) {
            words.insert(words.begin() + 1, "--onlyvisible");
        }
        std::istringstream ids(xdotool(words).value_or(""));
        for (std::string id; std::getline(ids, id);) {
            if (std::ranges::find(windows, id, &Window::id) == windows.end()) {
                std::string name = xdotool({"getwindowname", id}).value_or("");
                name.resize(name.ends_with('\n') ? name.size() - 1 : name.size());
                windows.push_back({id, upper_case(from_utf8(name))});
            }
        }
    }
    return windows;
}

// A window manager brings a window to the front; where there is none, the display itself.
bool activate(const std::string& id) {
    return xdotool({"windowactivate", "--sync", id}).has_value() ||
           xdotool({"windowraise", id, "windowfocus", "--sync", id}).has_value();
}

std::string words_of(const KeyPress& press) {
    return std::string(press.shift ? "shift+" : "") + (press.control ? "ctrl+" : "") +
           (press.alt ? "alt+" : "") + press.key;
}

// Sends keys in portions, each by one run of xdotool.
class KeySender {
  public:
    void add(const KeyPress& press) {
        if (press.is_rare != are_rare_) {
            flush();
            are_rare_ = press.is_rare;
        }
        const std::string key = words_of(press);
        for (Long i = 0; i < press.count; ++i) {
            keys_.push_back(key);
            if (keys_.size() == portion) {
                flush();
            }
        }
    }

    void flush() {
        if (keys_.empty()) {
            return;
        }
        const std::chrono::milliseconds pause = are_rare_ ? pause_of_rare_keys : pause_of_keys;
        std::vector<std::string> words{"key", "--delay", std::to_string(pause.count())};
        words.insert(words.end(), keys_.begin(), keys_.end());
        constexpr int slowness = 10;  // of a loaded machine
        const auto time = pause * static_cast<int>(keys_.size()) * slowness;
        keys_.clear();
        if (!xdotool(std::move(words), patience + time)) {
            fail(error::permission_denied);
        }
    }

  private:
    static constexpr std::size_t portion = 256;
    static constexpr std::chrono::milliseconds pause_of_keys{12};
    // A key that the layout lacks is there while it is sent and no longer: the program that gets
    // it has this time to look it up.
    static constexpr std::chrono::milliseconds pause_of_rare_keys{200};

    std::vector<std::string> keys_;
    bool are_rare_ = false;
};

// Whether keys go to anybody: "0" is no window.
bool has_focus() {
    const std::optional<std::string> focus = xdotool({"getwindowfocus", "-f"});
    return focus.has_value() && *focus != "0\n";
}

}  // namespace

Double PosixProcesses::Shell(StringView command_line, Integer) {
    const Started started = start_program(program_of_line(command_line));
    if (started.error != 0) {
        fail(failure_of_start(started.error));
    }
    return started.process;
}

void PosixProcesses::AppActivate(StringView title, bool) {
    require_display();
    if (title.empty()) {
        fail(error::invalid_call);
    }
    const String wanted = upper_case(title);
    const std::vector<Window> windows = windows_like(title);
    const auto is_exact = [&](const Window& window) { return window.title == wanted; };
    const auto begins = [&](const Window& window) { return window.title.starts_with(wanted); };
    auto found = std::ranges::find_if(windows, is_exact);
    if (found == windows.end()) {
        found = std::ranges::find_if(windows, begins);
    }
    if (found == windows.end() || !activate(found->id)) {
        fail(error::invalid_call);
    }
}

void PosixProcesses::SendKeys(StringView keys, bool) {
    const std::vector<KeyPress> presses = parse_keys(keys);
    require_display();
    if (presses.empty()) {
        return;
    }
    if (!has_focus()) {
        fail(error::invalid_call);
    }
    KeySender sender;
    for (const KeyPress& press : presses) {
        sender.add(press);
    }
    sender.flush();
}

}  // namespace kvarta16::posix
