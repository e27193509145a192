// Small programs that a test writes for itself, and what the system knows of a process.
#pragma once

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include <sys/types.h>

namespace kvarta16::posix {

// A folder of a test's own, gone with it.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "kvarta16 test XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = name;
    }
    ~ScratchFolder() {
        std::error_code ignored;  // a program that still runs may hold something
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ScratchFolder(ScratchFolder&&) = delete;
    ScratchFolder& operator=(ScratchFolder&&) = delete;

    [[nodiscard]] std::string operator/(const std::string& name) const {
        return (path_ / name).string();
    }
    [[nodiscard]] std::string path() const { return path_.string(); }

    // Writes a script of the system's shell that may be executed; its path.
    [[nodiscard]] std::string script(const std::string& name, const std::string& body) const {
        std::string path = *this / name;
        std::ofstream(path) << "#!/bin/sh\n" << body;
        std::filesystem::permissions(path, std::filesystem::perms(0755));
        return path;
    }

  private:
    std::filesystem::path path_;
};

// Sets a variable of the environment, or takes it out, until the scope ends.
class ScopedVariable {
  public:
    ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
        const char* before = std::getenv(name);
        before_ = before != nullptr ? std::optional<std::string>(before) : std::nullopt;
        set(value);
    }
    ~ScopedVariable() { set(before_); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ScopedVariable(ScopedVariable&&) = delete;
    ScopedVariable& operator=(ScopedVariable&&) = delete;

  private:
    void set(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(name_, value->c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }

    const char* name_;
    std::optional<std::string> before_;
};

inline std::string path_with(const std::string& folder) {
    return folder + ":" + std::getenv("PATH");
}

inline std::string text_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Waits until something holds, at most 20 seconds; whether it does.
inline bool comes_true(const std::function<bool()>& condition) {
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

// The state of a process ("S", "Z" for a zombie), and its parent.
struct ProcessState {
    char state = '\0';
    pid_t parent = 0;
    pid_t group = 0;
    pid_t session = 0;
};

inline std::optional<ProcessState> state_of(pid_t process) {
    const std::string text = text_of("/proc/" + std::to_string(process) + "/stat");
    const std::size_t behind_name = text.rfind(')');
    if (behind_name == std::string::npos) {
        return std::nullopt;
    }
    ProcessState found;
    std::sscanf(text.c_str() + behind_name + 1, " %c %d %d %d", &found.state, &found.parent,
                &found.group, &found.session);
    return found;
}

// How many children this process has, zombies included.
inline int number_of_children(pid_t process) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") == std::string::npos) {
            const std::optional<ProcessState> state = state_of(std::stoi(name));
            count += state && state->parent == process ? 1 : 0;
        }
    }
    return count;
}

}  // namespace kvarta16::posix
