#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <support/ftp_servers.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kvarta16::testing_support {

const char* name_of(FtpServerKind kind) {
    constexpr const char* names[] = {"Pyftpdlib", "PyftpdlibList", "PyftpdlibIpv6", "Proftpd",
                                     "ProftpdList"};
    return names[static_cast<std::size_t>(kind)];
}

FtpServer::FtpServer(FtpServerKind kind) : kind_(kind) {
    what_is_missing_ = find_missing();
    if (!is_there()) {
        return;
    }
    try {
        std::filesystem::create_directory(root());
        user_.own(root());
        // With a password's hash in it, one of the servers wants it for itself.
        std::filesystem::create_directory(folder_ / "etc");
        set_up();
        process_.emplace(command(), folder_ / "log", starts_as(), SIGTERM);
        wait_until_it_answers();
    } catch (const std::exception& failure) {
        what_is_missing_ = std::string(name_of(kind)) + " does not start: " + failure.what() +
                           "\n" + text_of_file(folder_ / "log");
    }
}

const char* FtpServer::host() const {
    return is_ipv6() ? "::1" : "127.0.0.1";
}

std::string FtpServer::root() const {
    return folder_ / "root";
}

void FtpServer::own(const std::filesystem::path& path) const {
    user_.own(path);
}

bool FtpServer::is_ipv6() const {
    return kind_ == FtpServerKind::PyftpdlibIpv6;
}

bool FtpServer::is_proftpd() const {
    return kind_ == FtpServerKind::Proftpd || kind_ == FtpServerKind::ProftpdList;
}

std::string FtpServer::find_missing() const {
    if (is_proftpd()) {
        return program_at({"/usr/sbin/proftpd"}).empty() ? "no proftpd (proftpd-core)" : "";
    }
    namespace fs = std::filesystem;
    if (!fs::exists("/usr/bin/python3") ||
        !fs::exists("/usr/lib/python3/dist-packages/pyftpdlib")) {
        return "no pyftpdlib for /usr/bin/python3 (python3-pyftpdlib)";
    }
    if (is_ipv6() && !has_ipv6()) {
        return "no IPv6 loopback on this machine";
    }
    return "";
}

bool FtpServer::has_ipv6() {
    const int socket = ::socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    const bool bound =
        ::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(socket);
    return bound;
}

void FtpServer::write(const std::string& name, const std::string& text) const {
    std::ofstream(name, std::ios::binary) << text;
    std::filesystem::permissions(name, std::filesystem::perms(is_proftpd() ? 0600 : 0644));
}

void FtpServer::set_up() const {
    is_proftpd() ? set_up_proftpd() : set_up_pyftpdlib();
}

void FtpServer::set_up_pyftpdlib() const {
    const std::string quoted_root = "'" + root() + "'";
    write(folder_ / "etc/server.py",
          "from pyftpdlib.authorizers import DummyAuthorizer\n"
          "from pyftpdlib.handlers import FTPHandler\n"
          "from pyftpdlib.servers import FTPServer\n"
          "people = DummyAuthorizer()\n"
          "people.add_user('" +
              std::string(user) + "', '" + password + "', " + quoted_root +
              ", perm='elradfmwMT')\n"
              "class Handler(FTPHandler):\n"
              "    authorizer = people\n"
              "    auth_failed_timeout = 0\n" +
              (kind_ == FtpServerKind::PyftpdlibList
                   ? "    proto_cmds = {k: v for k, v in FTPHandler.proto_cmds.items()\n"
                     "                  if k not in ('MLSD', 'MLST')}\n"
                   : "") +
              "FTPServer(('" + host() + "', " + std::to_string(port_) +
              "), Handler).serve_forever()\n");
}

void FtpServer::set_up_proftpd() const {
    // It lets nobody in as root; the files are a system user's where the tests are root's.
    struct stat owner {};
    ::stat(root().c_str(), &owner);
    const std::string ids = std::to_string(owner.st_uid) + ":" + std::to_string(owner.st_gid);
    write(folder_ / "etc/users",
          std::string(user) + ":" + password_hash + ":" + ids + "::" + root() + ":/bin/sh\n");
    write(folder_ / "etc/groups", "ola:x:" + std::to_string(owner.st_gid) + ":\n");
    write(folder_ / "etc/proftpd.conf",
          "ServerType standalone\nDefaultAddress 127.0.0.1\nPort " + std::to_string(port_) +
              "\nSocketBindTight on\nUseIPv6 off\nUseReverseDNS off\nUmask 022\n"
              "AllowOverwrite on\nRequireValidShell off\nWtmpLog off\nTransferLog none\n"
              "DelayEngine off\nControlsEngine off\nTimesGMT on\nDefaultServer on\n"
              "AuthOrder mod_auth_file.c\nAuthUserFile " +
              (folder_ / "etc/users") + "\nAuthGroupFile " + (folder_ / "etc/groups") +
              "\nPidFile " + (folder_ / "etc/pid") + "\nScoreboardFile " +
              (folder_ / "etc/scoreboard") + "\nSystemLog " + (folder_ / "etc/system.log") + "\n" +
              (kind_ == FtpServerKind::ProftpdList ? "FactsAdvertise off\n" : "") +
              (::geteuid() == 0 ? "User " + std::string(system_user) + "\nGroup nogroup\n"
                                : std::string()));
}

Command FtpServer::command() const {
    if (is_proftpd()) {
        return {"/usr/sbin/proftpd", "--nodaemon", "--config", folder_ / "etc/proftpd.conf"};
    }
    return {"/usr/bin/python3", "-W", "ignore", folder_ / "etc/server.py"};
}

ServerUser FtpServer::starts_as() const {
    return is_proftpd() ? ServerUser({}) : user_;
}

bool FtpServer::answers() const {
    const int socket = ::socket(is_ipv6() ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port_));
    sockaddr_in6 address6{};
    address6.sin6_family = AF_INET6;
    address6.sin6_addr = in6addr_loopback;
    address6.sin6_port = address.sin_port;
    const int result =
        is_ipv6() ? ::connect(socket, reinterpret_cast<const sockaddr*>(&address6), sizeof address6)
                  : ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::close(socket);
    return result == 0;
}

void FtpServer::wait_until_it_answers() {
    using namespace std::chrono_literals;
    for (int i = 0; i < 400; ++i) {
        if (answers()) {
            return;
        }
        if (!process_->is_running()) {
            break;
        }
        std::this_thread::sleep_for(25ms);
    }
    throw std::runtime_error("nobody answers on its port");
}

FtpServer& ftp_server(FtpServerKind kind) {
    static std::map<FtpServerKind, std::unique_ptr<FtpServer>> servers;
    std::unique_ptr<FtpServer>& server = servers[kind];
    if (server == nullptr) {
        server = std::make_unique<FtpServer>(kind);
    }
    return *server;
}

bool are_servers_required() {
    return std::getenv("KVARTA16_REQUIRE_SERVERS") != nullptr;
}

}  // namespace kvarta16::testing_support
