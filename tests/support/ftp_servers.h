// FTP servers for tests, from the system's own packages, each on a free port of this machine with
// a folder of its own and the user "ola".
//
//   FtpServer& server = ftp_server(FtpServerKind::Pyftpdlib);
//   if (!server.is_there()) { GTEST_SKIP() << server.what_is_missing(); }
//   ... server.host(), server.port(), server.root() ...
//
// A machine without a server leaves those tests out, and says why. With KVARTA16_REQUIRE_SERVERS
// set in the environment that is a failure.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include <support/server_process.h>

namespace kvarta16::testing_support {

enum class FtpServerKind : unsigned char {
    Pyftpdlib,      // lists by facts
    PyftpdlibList,  // the same without MLSD
    PyftpdlibIpv6,  // the same on ::1
    Proftpd,
    ProftpdList,
};

const char* name_of(FtpServerKind kind);

class FtpServer {
  public:
    static constexpr const char* user = "ola";
    static constexpr const char* password = "Tajne;1";

    explicit FtpServer(FtpServerKind kind);

    [[nodiscard]] bool is_there() const { return what_is_missing_.empty(); }
    [[nodiscard]] const std::string& what_is_missing() const { return what_is_missing_; }
    [[nodiscard]] const char* host() const;
    [[nodiscard]] int port() const { return port_; }
    // The folder that the user sees as "/" or as what PWD says at first.
    [[nodiscard]] std::string root() const;

    // What a test puts into the folder is the server's to serve.
    void own(const std::filesystem::path& path) const;

  private:
    [[nodiscard]] bool is_ipv6() const;
    [[nodiscard]] bool is_proftpd() const;
    [[nodiscard]] std::string find_missing() const;
    static bool has_ipv6();
    void write(const std::string& name, const std::string& text) const;
    void set_up() const;
    void set_up_pyftpdlib() const;
    void set_up_proftpd() const;
    [[nodiscard]] Command command() const;
    // The one changes its user itself, and has to be root for it.
    [[nodiscard]] ServerUser starts_as() const;
    [[nodiscard]] bool answers() const;
    void wait_until_it_answers();

    static constexpr const char* system_user = "nobody";
    // SHA-256 of the password, as the system keeps one.
    static constexpr const char* password_hash =
        "$5$kvarta16$AN7jd.m2stl5HOOdXt7hTB4Zk6eNLrHH8CMglrV/VE9";

    FtpServerKind kind_;
    std::string what_is_missing_;
    ServerFolder folder_;
    ServerUser user_{{system_user}};
    int port_ = free_port();
    std::optional<Process> process_;
};

// One of each for the test program, started when first asked for.
FtpServer& ftp_server(FtpServerKind kind);

bool are_servers_required();

}  // namespace kvarta16::testing_support
