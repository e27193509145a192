#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <support/print_server.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kvarta16::testing_support {

PrintServer::PrintServer() {
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

bool PrintServer::is_required() {
    return std::getenv("KVARTA16_REQUIRE_SERVERS") != nullptr;
}

std::string PrintServer::address() const {
    return "127.0.0.1:" + std::to_string(port_);
}

std::string PrintServer::printed(int job) const {
    if (!waited_for([&] { return std::filesystem::exists(output_of_job(job)); })) {
        throw std::runtime_error("job " + std::to_string(job) + " is not printed:\n" +
                                 text_of_file(folder_ / "log"));
    }
    return text_of_file(output_of_job(job));
}

bool PrintServer::has_printed(int job) const {
    return std::filesystem::exists(output_of_job(job));
}

std::string PrintServer::title(int job) const {
    return text_of_file(output_of_job(job) + ".title");
}

std::string PrintServer::log() const {
    return text_of_file(folder_ / "log");
}

void PrintServer::stop() {
    process_.reset();
}

bool PrintServer::waited_for(const std::function<bool()>& is_done) {
    using namespace std::chrono_literals;
    for (int i = 0; i < 300; ++i) {
        if (is_done()) {
            return true;
        }
        std::this_thread::sleep_for(50ms);
    }
    return false;
}

std::string PrintServer::output_of_job(int job) const {
    return folder_ / ("printed/" + std::to_string(job));
}

Command PrintServer::server_command() const {
    return {
        program_, "-f", "-c", folder_ / "root/cupsd.conf", "-s", folder_ / "root/cups-files.conf"};
}

void PrintServer::write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ / name) << text;
    user_.own(folder_ / name);
}

void PrintServer::set_up() const {
    namespace fs = std::filesystem;
    for (const char* name :
         {"", "root", "spool", "spool/tmp", "cache", "state", "bin", "bin/backend", "printed"}) {
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
              folder("cache") + "\nStateDir " + folder("state") + "\nErrorLog " + folder("log") +
              "\nAccessLog " + folder("access") + "\nPageLog " + folder("page") + "\nPrintcap\n");
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

std::string PrintServer::queue(const std::string& kind, const std::string& name,
                               const std::string& state, const std::string& accepts) const {
    return "<" + kind + " " + name + ">\nInfo Drukarka " + name +
           "\nDeviceURI plik:" + (folder_ / "printed") + "\nState " + state + "\nAccepting " +
           accepts + "\nShared No\nOpPolicy default\n</" + kind + ">\n";
}

void PrintServer::wait_until_it_answers() {
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

bool PrintServer::is_listening() const {
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

PrintServer& print_server() {
    static PrintServer server;
    return server;
}

}  // namespace kvarta16::testing_support
