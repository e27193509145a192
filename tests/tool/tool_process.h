// Running the tool as a person or a program does: as a process of its own, over pipes or on a
// terminal.
//
//   const ToolRun run = run_tool({"call", "value.ToLong", "2.5"});
//   EXPECT_EQ(run.status, 0);
//   EXPECT_EQ(run.out, "2\n");
#pragma once

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <linux/capability.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tool_test {

using Words = std::vector<std::string>;

// A folder of a test's own, gone with the test.
class TempFolder {
  public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kvarta16-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no folder for the test");
        }
        path_ = name;
    }
    ~TempFolder() { std::filesystem::remove_all(path_); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    TempFolder(TempFolder&&) = delete;
    TempFolder& operator=(TempFolder&&) = delete;

    [[nodiscard]] std::string file(const std::string& name) const {
        return (path_ / name).string();
    }

  private:
    std::filesystem::path path_;
};

inline void close_file(int& file) {
    if (file >= 0) {
        ::close(file);
        file = -1;
    }
}

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        read_end = ends[0];
        write_end = ends[1];
    }
    int read_end;
    int write_end;
};

// Root may write to a file that nobody may write to; without this capability it may not. To
// anybody else it makes no difference.
inline void respect_file_permissions() {
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_OVERRIDE, 0, 0, 0);
    ::prctl(PR_CAPBSET_DROP, CAP_DAC_READ_SEARCH, 0, 0, 0);
}

struct Options {
    std::map<std::string, std::string> environment;
    std::string folder;  // to work in
    std::string input;   // on standard input
    std::function<void()> in_child = [] {};
};

// Starts the tool with these three files; what it gets from `options` but the input.
inline pid_t start_tool(const Words& words, int in, int out, int err, const Options& options) {
    const pid_t process = ::fork();
    if (process != 0) {
        return process;
    }
    ::signal(SIGPIPE, SIG_DFL);
    ::dup2(in, STDIN_FILENO);
    ::dup2(out, STDOUT_FILENO);
    ::dup2(err, STDERR_FILENO);
    for (const auto& [name, value] : options.environment) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    if (!options.folder.empty() && ::chdir(options.folder.c_str()) != 0) {
        ::_exit(126);
    }
    options.in_child();
    std::vector<char*> arguments{const_cast<char*>(KVARTA16_TOOL_PATH)};
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    ::execv(KVARTA16_TOOL_PATH, arguments.data());
    ::_exit(127);
}

// The exit status; that of a shell for a process that a signal has ended.
inline int status_of(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
};

// Reads what is there into `text`; false at the end.
inline bool read_some(int file, std::string& text) {
    std::array<char, 65536> buffer{};
    const ssize_t count = ::read(file, buffer.data(), buffer.size());
    if (count > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return count > 0 || (count < 0 && errno == EINTR);
}

// Writes what the pipe takes of `text` and drops it from there; false if nobody reads any more.
inline bool write_some(int file, std::string_view& text) {
    const ssize_t count = ::write(file, text.data(), text.size());
    if (count > 0) {
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return count >= 0 || errno == EINTR || errno == EAGAIN;
}

// Runs the tool to its end.
inline ToolRun run_tool(const Words& words, const Options& options = {}) {
    ::signal(SIGPIPE, SIG_IGN);
    Pipe in;
    Pipe out;
    Pipe err;
    const pid_t process = start_tool(words, in.read_end, out.write_end, err.write_end, options);
    close_file(in.read_end);
    close_file(out.write_end);
    close_file(err.write_end);
    ::fcntl(in.write_end, F_SETFL, O_NONBLOCK);
    ToolRun run;
    std::string_view input = options.input;
    while (out.read_end >= 0 || err.read_end >= 0) {
        if (input.empty()) {
            close_file(in.write_end);
        }
        std::array<pollfd, 3> files{pollfd{out.read_end, POLLIN, 0},
                                    pollfd{err.read_end, POLLIN, 0},
                                    pollfd{in.write_end, POLLOUT, 0}};
        ::poll(files.data(), files.size(), -1);
        if (files[0].revents != 0 && !read_some(out.read_end, run.out)) {
            close_file(out.read_end);
        }
        if (files[1].revents != 0 && !read_some(err.read_end, run.err)) {
            close_file(err.read_end);
        }
        if (files[2].revents != 0 && !write_some(in.write_end, input)) {
            close_file(in.write_end);
            input = {};
        }
    }
    close_file(in.write_end);
    run.status = status_of(process);
    return run;
}

// The tool on a terminal of its own, as a person has it.
class TerminalRun {
  public:
    explicit TerminalRun(const Words& words, const Options& options = {}) {
        master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
            throw std::runtime_error("no terminal");
        }
        const std::string name = ::ptsname(master_);
        int terminal = ::open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        Options with_terminal = options;
        with_terminal.in_child = [=] {
            ::setsid();
            ::ioctl(STDIN_FILENO, TIOCSCTTY, 0);
            options.in_child();
        };
        process_ = start_tool(words, terminal, terminal, terminal, with_terminal);
        close_file(terminal);
    }
    ~TerminalRun() {
        close_file(master_);
        if (process_ > 0) {
            ::kill(process_, SIGKILL);
            status_of(process_);
        }
    }
    TerminalRun(const TerminalRun&) = delete;
    TerminalRun& operator=(const TerminalRun&) = delete;
    TerminalRun(TerminalRun&&) = delete;
    TerminalRun& operator=(TerminalRun&&) = delete;

    [[nodiscard]] pid_t process() const { return process_; }

    void type(std::string_view text) {
        while (!text.empty() && write_some(master_, text)) {
        }
    }

    // What the screen has got up to and with `text`; all of it if that never comes.
    std::string read_until(const std::string& text) {
        while (screen_.find(text) == std::string::npos && read_some(master_, screen_)) {
        }
        return screen_;
    }

    // Everything that the screen gets, and the exit status.
    ToolRun finish() {
        while (read_some(master_, screen_)) {
        }
        const pid_t process = std::exchange(process_, 0);
        return {status_of(process), screen_, {}};
    }

  private:
    int master_ = -1;
    pid_t process_ = 0;
    std::string screen_;
};

}  // namespace tool_test
