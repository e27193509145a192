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

#include <optional>
#include <string>

#include <support/server_process.h>

namespace kvarta16::testing_support {

class PrintServer {
  public:
    PrintServer() {
        if (program_.empty()) {
            what_is_missing_ = "cupsd is not installed (Debian: cups-daemon)";
            return;
        }
        try {
            set_up();
            process_.emplace(server_command(), folder_ / "output", user_, SIGTERM);
            wait_until_it_answers();
        } catch (const std::exception& failure) {
            what_is_missing_ = std::string("cupsd does not start: ") + failure.what() + "\n" +
                               text_of_file(folder_ / "output") + text_of_file(folder_ / "log");
        }
    }

    [[nodiscard]] bool is_there() const { return what_is_missing_.empty(); }
    [[nodiscard]] const std::string& what_is_missing() const { return what_is_missing_; }
    // Whether a missing server is a failure.
    [[nodiscard]] static bool is_required() {
        return std::getenv("KVARTA16_REQUIRE_SERVERS") != nullptr;
    }

    // For CUPS_SERVER.
    [[nodiscard]] std::string address() const { return "127.0.0.1:" + std::to_string(port_); }

    // What has come out of the queue for a job; waits for it, and throws where nothing comes.
    [[nodiscard]] std::string printed(int job) const {
        if (!waited_for([&] { return std::filesystem::exists(output_of_job(job)); })) {
            throw std::runtime_error("job " + std::to_string(job) + " is not printed:\n" +
                                     text_of_file(folder_ / "log"));
        }
        return text_of_file(output_of_job(job));
    }
    [[nodiscard]] bool has_printed(int job) const {
        return std::filesystem::exists(output_of_job(job));
    }
    // The title of a printed job, and the user it belongs to, a line each.
    [[nodiscard]] std::string title(int job) const {
        return text_of_file(output_of_job(job) + ".title");
    }
    [[nodiscard]] std::string log() const { return text_of_file(folder_ / "log"); }

    void stop() { process_.reset(); }

    [[nodiscard]] static bool waited_for(const std::function<bool()>& is_done) {
        using namespace std::chrono_literals;
        for (int i = 0; i < 300; ++i) {
            if (is_done()) {
                return true;
            }
            std::this_thread::sleep_for(50ms);
        }
        return false;
    }

  private:
    [[nodiscard]] std::string output_of_job(int job) const {
        return folder_ / ("printed/" + std::to_string(job));
    }
    [[nodiscard]] Command server_command() const {
        return {program_, "-f",
                "-c",     folder_ / "root/cupsd.conf",
                "-s",     folder_ / "root/cups-files.conf"};
    }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name) << text;
        user_.own(folder_ / name);
    }

    void set_up() const {
        namespace fs = std::filesystem;
        for (const char* name : {"", "root", "spool", "spool/tmp", "cache", "state", "bin",
                                 "bin/backend", "printed"}) {
            fs::create_directory(folder_ / name);
            user_.own(folder_ / name);
        }
        fs::create_directory_symlink("/usr/lib/cups/daemon", folder_ / "bin/daemon");
        // The device: its whole input into a file that appears when it is complete.
        write("bin/backend/plik",
              "#!/bin/sh\n[ $# -eq 0 ] && exit 0\n"
              "to=\"${DEVICE_URI#plik:}/$1\"\n"
              "printf '%s\\n%s\\n' \"$3\" \"$2\" >\"$to.title\"\n"
              "cat -- ${6:+\"$6\"} >\"$to.part\" && mv \"$to.part\" \"$to\"\n");
        fs::permissions(folder_ / "bin/backend/plik", fs::perms(0755));
        const auto folder = [&](const char* name) { return folder_ / name; };
        write("root/cups-files.conf",
              "ServerRoot " + folder("root") + "\nServerBin " + folder("bin") + "\nRequestRoot " +
                  folder("spool") + "\nTempDir " + folder("spool/tmp") + "\nCacheDir " +
                  folder("cache") + "\nStateDir " + folder("state") + "\nErrorLog " +
                  folder("log") + "\nAccessLog " + folder("access") + "\nPageLog " +
                  folder("page") + "\nPrintcap\n");
        write("root/cupsd.conf",
              "Listen " + address() +
                  "\nBrowsing Off\nDefaultAuthType None\nLogLevel info\n"
                  "<Location />\nOrder allow,deny\nAllow 127.0.0.1\n</Location>\n"
                  "<Policy default>\n<Limit All>\nOrder allow,deny\nAllow all\n</Limit>\n"
                  "</Policy>\n");
        write("root/printers.conf", queue("DefaultPrinter", "Etykiety", "Idle", "Yes") +
                                        queue("Printer", "faktury", "Idle", "Yes") +
                                        queue("Printer", "STOP", "Idle", "No") +
                                        queue("Printer", "Czeka", "Stopped", "Yes"));
    }
    [[nodiscard]] std::string queue(const std::string& kind, const std::string& name,
                                    const std::string& state, const std::string& accepts) const {
        return "<" + kind + " " + name + ">\nInfo Drukarka " + name +
               "\nDeviceURI plik:" + (folder_ / "printed") + "\nState " + state + "\nAccepting " +
               accepts + "\nShared No\nOpPolicy default\n</" + kind + ">\n";
    }

    void wait_until_it_answers() {
        const bool answers = waited_for([&] {
            if (!process_->is_running()) {
                throw std::runtime_error("it has ended");
            }
            return is_listening();
        });
        if (!answers) {
            throw std::runtime_error("it does not listen");
        }
    }
    [[nodiscard]] bool is_listening() const {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port_));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const bool connected =
            ::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        ::close(socket);
        return connected;
    }

    std::string program_ = program_at({"/usr/sbin/cupsd"});
    std::string what_is_missing_;
    ServerUser user_{{"lp"}};
    ServerFolder folder_;
    int port_ = free_port();
    std::optional<Process> process_;
};

// The one that the tests of a program share; started at its first use.
inline PrintServer& print_server() {
    static PrintServer server;
    return server;
}

}  // namespace kvarta16::testing_support
