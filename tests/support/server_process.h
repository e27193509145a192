// A server that a test starts for itself: a process on a free port of this machine alone, in a
// folder that goes away with it, under a system user of its own where the tests run as root.
//
// The process ends with the test program, however that ends.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace kvarta16::testing_support {

using Command = std::vector<std::string>;

// The user under whom a server runs: of the names the first that the system has, for servers that
// do not run as root; the user of the tests if that is not root.
class ServerUser {
  public:
    explicit ServerUser(const std::vector<const char*>& names);

    void own(const std::filesystem::path& path) const;
    // In the child process; false if it cannot be done.
    [[nodiscard]] bool become() const;

  private:
    uid_t user_ = 0;
    gid_t group_ = 0;
    bool is_other_ = false;
};

// A child process whose output goes to a file. It is stopped by `stop_signal` when this goes, and
// by the system when the test program ends before.
class Process {
  public:
    Process(const Command& command, const std::string& output, const ServerUser& user,
            int stop_signal);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    Process(Process&&) = delete;
    Process& operator=(Process&&) = delete;

    [[nodiscard]] bool is_running();
    int wait();
    // As a power cut does it.
    void kill();
    void stop();

  private:
    [[noreturn]] void run(const Command& command, int file, const ServerUser& user,
                          pid_t parent) const;

    int stop_signal_;
    pid_t id_ = -1;
    int status_ = 0;
};

std::string text_of_file(const std::string& path);

// Runs a program to its end and gives what it printed; throws with that if it fails.
std::string output_of(const Command& command, const std::string& scratch, const ServerUser& user);

// A folder that everybody may look into, gone with this.
class ServerFolder {
  public:
    ServerFolder();
    ~ServerFolder();
    ServerFolder(const ServerFolder&) = delete;
    ServerFolder& operator=(const ServerFolder&) = delete;
    ServerFolder(ServerFolder&&) = delete;
    ServerFolder& operator=(ServerFolder&&) = delete;

    std::string operator/(const std::string& name) const;

  private:
    std::filesystem::path path_;
};

// A port of this machine that nobody listens on now, another at each call. No other test that runs
// at the same time is given it, and no connection.
int free_port();

// The first of the programs that is there; "" for none. "*" in a folder's place stands for the
// folder of the highest name.
std::string program_at(const std::vector<std::string>& paths);

}  // namespace kvarta16::testing_support
