// A connection to an FTP server, logged in, with one transfer at a time. What it cannot do is an
// FtpError.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <kvarta16/platform/posix/ftp/control_connection.h>
#include <kvarta16/platform/posix/ftp/listing.h>

namespace kvarta16::posix {

struct ServerLogin {
    String server;  // a name or an address; one of IPv6 may stand in brackets
    std::uint16_t port = 0;
    String user;  // "" is "anonymous"
    String password;
    bool is_passive = true;
};

// Data on their way, and whether the server has yet to say how the transfer ended.
struct DataConnection {
    Socket socket;
    bool is_reply_due = false;
};

class ServerConnection {
  public:
    // Connects and logs in. The password is sent where the server asks for it; for "anonymous"
    // without one it is "anonymous@". An account beyond that is not given. Fails: 87 before
    // anything is sent, 12007, 12002, 12029, 12030, 12031, 12111, 12003 for a server that does
    // not want to talk, 12013 for a user and 12014 for a password that is refused (530), 12015
    // for any other end of the login.
    ServerConnection(const ServerLogin& login, const FtpSettings& settings);
    ~ServerConnection() { control_.quit(); }
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;
    ServerConnection(ServerConnection&&) = delete;
    ServerConnection& operator=(ServerConnection&&) = delete;

    [[nodiscard]] String current_directory();
    void change_directory(StringView path);
    void create_directory(StringView path);
    void remove_directory(StringView path);
    void delete_file(StringView path);
    void rename_file(StringView path, StringView renamed);

    // The entries that a pattern names; never none (18).
    [[nodiscard]] std::vector<Entry> find(StringView pattern);

    // Begins to fetch or to store a file. Until end_transfer() everything above fails (12110).
    [[nodiscard]] DataConnection begin_download(StringView path);
    [[nodiscard]] DataConnection begin_upload(StringView path);
    void end_transfer() noexcept { is_transferring_ = false; }

    [[nodiscard]] ControlConnection& control() noexcept { return control_; }
    [[nodiscard]] const FtpSettings& settings() const noexcept { return settings_; }
    // Held by whoever uses the connection.
    [[nodiscard]] std::mutex& mutex() noexcept { return mutex_; }

  private:
    void log_in(const ServerLogin& login);
    void ask_for_features();
    void expect_idle() const;
    void command(const std::string& verb, StringView path);
    [[nodiscard]] DataConnection begin_transfer(const std::string& verb, StringView path);
    [[nodiscard]] DataConnection open_data(const std::string& command);
    [[nodiscard]] std::uint16_t ask_for_port();
    void tell_port(const Address& address);
    [[nodiscard]] bool begin(const std::string& command);
    [[nodiscard]] Socket accept_data(const Socket& listener, bool& is_reply_due);
    [[nodiscard]] Listing list_folder(StringView folder);
    [[nodiscard]] std::string list_text(const std::string& command);

    FtpSettings settings_;
    ControlConnection control_;
    Address server_;
    Features features_;
    bool are_features_known_ = false;
    bool is_passive_;
    bool takes_extended_ = true;  // EPSV and EPRT
    bool is_transferring_ = false;
    std::mutex mutex_;
};

}  // namespace kvarta16::posix
