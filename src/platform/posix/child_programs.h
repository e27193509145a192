// Programs of the system that the adapters start.
//
// Nothing goes through a shell: a program gets its arguments as they are. It has the environment
// and the current directory of this process, but none of its descriptors; its signals are the
// default ones, it has nothing to read, and its standard error goes nowhere.
//
// This process sees no child of its own: a helper process stands between it and the program, and is
// waited for by its number. So a host's children, its SIGCHLD and its waiting stay its own, and no
// program that ends is left as a zombie.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include <kvarta16/frame/export.h>

namespace kvarta16::posix {

struct Program {
    std::string path;                    // of the system
    std::vector<std::string> arguments;  // with the program's name before them
};

// Whether a path of the system is a file, through symbolic links; a folder is none.
[[nodiscard]] KVARTA16_EXPORT bool is_program_file(const std::string& path);

// The program of this name in the folders of PATH: the first that may be executed, else the first
// file of this name. Empty entries of PATH count for nothing: the current directory is not
// searched.
[[nodiscard]] KVARTA16_EXPORT std::optional<std::string> program_on_path(const std::string& name);

struct Started {
    pid_t process = 0;  // that of the program
    int error = 0;      // errno of what has failed; 0 if the program runs
};

// Starts a program that runs on by itself, in a session of its own, so that a Ctrl-C at the
// caller's terminal does not reach it. What it writes goes nowhere. Returns when it runs or has
// failed to.
[[nodiscard]] KVARTA16_EXPORT Started start_program(Program program);

struct Ended {
    int status = 0;      // the exit status; 128 and the signal's number if a signal has ended it
    std::string output;  // what it wrote to standard output
};

// Runs the program of this name on PATH to its end. One that takes longer than `limit` is killed.
// Nothing if there is no such program or it cannot be started.
[[nodiscard]] KVARTA16_EXPORT std::optional<Ended> run_program(
    const std::vector<std::string>& words,
    std::optional<std::chrono::milliseconds> limit = std::nullopt);

}  // namespace kvarta16::posix
