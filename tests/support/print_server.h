// A print server for tests, from the system's own package: cupsd on a free port of this machine
// alone, with its configuration, its queues and its spool in a folder that goes away with it.
//
//   PrintServer& server = print_server();
//   if (!server.is_there() && !PrintServer::is_required()) {
//       GTEST_SKIP() << server.what_is_missing();
//   }
//   ASSERT_TRUE(server.is_there()) << server.what_is_missing();
//   const std::string bytes = server.printed(job);    // what came out of the queue, byte by byte
//
// The queues are raw: no filter is between the document and the device, and the device is a file
// for each job. A queue "Etykiety", which is the default, one "faktury", one "STOP" that takes no
// jobs, and one "Czeka" that keeps its jobs without printing.
//
// A machine without the server leaves those tests out, and says why. With
// KVARTA16_REQUIRE_SERVERS set in the environment that is a failure.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include <support/server_process.h>

namespace kvarta16::testing_support {

class PrintServer {
  public:
    PrintServer();

    [[nodiscard]] bool is_there() const { return what_is_missing_.empty(); }
    [[nodiscard]] const std::string& what_is_missing() const { return what_is_missing_; }
    // Whether a missing server is a failure.
    [[nodiscard]] static bool is_required();

    // For CUPS_SERVER.
    [[nodiscard]] std::string address() const;

    // What has come out of the queue for a job; waits for it, and throws where nothing comes.
    [[nodiscard]] std::string printed(int job) const;
    [[nodiscard]] bool has_printed(int job) const;
    // The title of a printed job, and the user it belongs to, a line each.
    [[nodiscard]] std::string title(int job) const;
    [[nodiscard]] std::string log() const;

    void stop();

    [[nodiscard]] static bool waited_for(const std::function<bool()>& is_done);

  private:
    [[nodiscard]] std::string output_of_job(int job) const;
    [[nodiscard]] Command server_command() const;
    void write(const std::string& name, const std::string& text) const;
    void set_up() const;
    [[nodiscard]] std::string queue(const std::string& kind, const std::string& name,
                                    const std::string& state, const std::string& accepts) const;
    void wait_until_it_answers();
    [[nodiscard]] bool is_listening() const;
    std::string program_ = program_at({"/usr/sbin/cupsd"});
    std::string what_is_missing_;
    ServerUser user_{{"lp"}};
    ServerFolder folder_;
    int port_ = free_port();
    std::optional<Process> process_;
};

// The one that the tests of a program share; started at its first use.
PrintServer& print_server();

}  // namespace kvarta16::testing_support
