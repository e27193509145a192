// A child process on a pseudo-terminal of its own, with the settings that a shell leaves: lines,
// and an echo of what is typed.
#pragma once

#include <array>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kvarta16::posix {

class TerminalChild {
  public:
    // The body runs in the child; the text that it returns is what result() gives.
    explicit TerminalChild(const std::function<std::string()>& body) {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        result_ = ends[0];
        process_ = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
        if (process_ == 0) {
            ::alarm(60);  // a child that nobody answers any more ends
            const std::string text = body();
            const ssize_t written = ::write(ends[1], text.data(), text.size());
            ::_exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
        }
        ::close(ends[1]);
        if (process_ < 0) {
            throw std::runtime_error("no terminal");
        }
    }
    ~TerminalChild() {
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            ::waitpid(process_, nullptr, 0);
        }
        ::close(terminal_);
        ::close(result_);
    }
    TerminalChild(const TerminalChild&) = delete;
    TerminalChild& operator=(const TerminalChild&) = delete;
    TerminalChild(TerminalChild&&) = delete;
    TerminalChild& operator=(TerminalChild&&) = delete;

    [[nodiscard]] pid_t process() const { return process_; }
    [[nodiscard]] int terminal() const { return terminal_; }
    [[nodiscard]] const std::string& screen() const { return screen_; }

    void type(const std::string& keys) const {
        if (::write(terminal_, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
            throw std::runtime_error("the terminal takes no keys");
        }
    }

    // Waits until the screen shows `text`. False if the child ends before.
    bool shows(const std::string& text) {
        while (screen_.find(text) == std::string::npos) {
            if (!read_some(terminal_, screen_)) {
                return false;
            }
        }
        return true;
    }

    // Waits for the end; what the body has returned, "" if it died.
    std::string result() {
        while (read_some(terminal_, screen_)) {
        }
        std::string text;
        while (read_some(result_, text)) {
        }
        ::waitpid(std::exchange(process_, -1), nullptr, 0);
        return text;
    }

  private:
    static bool read_some(int file, std::string& text) {
        std::array<char, 4096> bytes{};
        const ssize_t count = ::read(file, bytes.data(), bytes.size());
        text.append(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        return count > 0;
    }

    pid_t process_ = -1;
    int terminal_ = -1;
    int result_ = -1;
    std::string screen_;
};

}  // namespace kvarta16::posix
