#include <algorithm>

#include <poll.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/ftp/ftp_error.h>
#include <kvarta16/platform/posix/ftp/remote_text.h>
#include <kvarta16/platform/posix/ftp/server_connection.h>
#include <kvarta16/platform/posix/ftp/thread_state.h>
#include <kvarta16/platform/posix/ftp/transfer.h>
#include <kvarta16/platform/posix/ftp/wildcard.h>

namespace kvarta16::posix {
namespace {

constexpr std::uint16_t usual_port = 21;
constexpr std::size_t longest_listing = std::size_t{64} << 20;  // some 500 000 entries

// The server's replies that this side looks at by their number.
constexpr int no_such_command = 500;
constexpr int not_implemented = 502;
constexpr int not_logged_in = 530;

// Refuses what must not reach the server before there is one to reach.
ServerLogin checked(ServerLogin login) {
    const bool is_good = !login.server.empty() && is_sendable(login.server) &&
                         is_sendable(login.user) && is_sendable(login.password);
    if (!is_good) {
        throw FtpError(internet_error::invalid_parameter);
    }
    if (login.server.starts_with(u'[') && login.server.ends_with(u']')) {
        login.server = login.server.substr(1, login.server.size() - 2);
    }
    login.port = login.port == 0 ? usual_port : login.port;
    return login;
}

Socket connected(const ServerLogin& login, const FtpSettings& settings) {
    const ServerLogin good = checked(login);
    return connect_to_name(to_utf8(good.server), good.port, settings.connect);
}

bool is_ascii(StringView text) {
    return std::ranges::all_of(text, [](char16_t unit) { return unit < 0x80; });
}

// Whether the server's last answer was that it has no such command.
bool was_unknown() {
    const Long code = thread_state().response_code;
    return code == no_such_command || code == not_implemented;
}

}  // namespace

// ---- Login ----------------------------------------------------------------------------------

ServerConnection::ServerConnection(const ServerLogin& login, const FtpSettings& settings)
    : settings_(settings),
      control_(connected(login, settings), settings),
      server_(remote_address(control_.socket())),
      is_passive_(login.is_passive) {
    control_.finish_well();
    log_in(login);
    ask_for_features();
    expect_good(control_.ask("TYPE I"));
}

void ServerConnection::log_in(const ServerLogin& login) {
    const String user = login.user.empty() ? u"anonymous" : login.user;
    const bool is_guest = user == u"anonymous" && login.password.empty();
    const String password = is_guest ? u"anonymous@" : login.password;
    if (!is_ascii(user + password)) {
        ask_for_features();  // most servers tell them to strangers too
    }
    Reply reply = control_.ask("USER " + to_wire(user, features_.utf8));
    if (reply.code == not_logged_in) {
        throw FtpError(internet_error::incorrect_user_name);
    }
    constexpr int password_wanted = 331;
    if (reply.code == password_wanted) {
        reply = control_.ask("PASS " + to_wire(password, features_.utf8));
        if (reply.code == not_logged_in) {
            throw FtpError(internet_error::incorrect_password);
        }
    }
    if (!reply.is_good()) {
        throw FtpError(internet_error::login_failure);
    }
}

// A server without FEAT has none.
void ServerConnection::ask_for_features() {
    if (are_features_known_) {
        return;
    }
    const Reply reply = control_.ask("FEAT");
    are_features_known_ = reply.is_good();
    features_ = features_of(reply);
    if (features_.utf8) {
        // Some servers speak UTF-8 only when told to; others know no such option and go on.
        control_.ask("OPTS UTF8 ON");
    }
}

// ---- Commands -------------------------------------------------------------------------------

void ServerConnection::expect_idle() const {
    if (is_transferring_) {
        throw FtpError(internet_error::transfer_in_progress);
    }
}

void ServerConnection::command(const std::string& verb, StringView path) {
    expect_idle();
    expect_good(control_.ask(verb + " " + path_to_wire(path, features_.utf8)));
}

String ServerConnection::current_directory() {
    expect_idle();
    const Reply reply = control_.ask("PWD");
    const std::optional<std::string> path = quoted_path(reply.text);
    if (!reply.is_good() || !path) {
        throw FtpError(internet_error::extended_error);
    }
    return from_wire(*path);
}

void ServerConnection::change_directory(StringView path) {
    command("CWD", path);
}

void ServerConnection::create_directory(StringView path) {
    command("MKD", path);
}

void ServerConnection::remove_directory(StringView path) {
    command("RMD", path);
}

void ServerConnection::delete_file(StringView path) {
    command("DELE", path);
}

void ServerConnection::rename_file(StringView path, StringView renamed) {
    expect_idle();
    const std::string from = path_to_wire(path, features_.utf8);
    const std::string to = path_to_wire(renamed, features_.utf8);
    if (!control_.ask("RNFR " + from).is_intermediate()) {
        throw FtpError(internet_error::extended_error);
    }
    expect_good(control_.ask("RNTO " + to));
}

// ---- Data connections -----------------------------------------------------------------------

// The port that the server opens. The address that it tells with PASV is not looked at: data of
// this connection come from this server, and from nobody that it points to.
std::uint16_t ServerConnection::ask_for_port() {
    if (takes_extended_) {
        const Reply reply = control_.ask("EPSV");
        const std::optional<std::uint16_t> port = extended_passive_port(reply.text);
        if (reply.is_good() && port) {
            return *port;
        }
        takes_extended_ = false;
    }
    if (!server_.is_ipv6()) {
        const Reply reply = control_.ask("PASV");
        const std::optional<std::uint16_t> port = passive_port(reply.text);
        if (reply.is_good() && port) {
            return *port;
        }
    }
    takes_extended_ = true;  // neither: the next time is another try of both
    throw FtpError(internet_error::extended_error);
}

// Tells the server where this side listens.
void ServerConnection::tell_port(const Address& address) {
    const std::string port = std::to_string(address.port());
    if (takes_extended_) {
        const std::string family = address.is_ipv6() ? "2" : "1";
        const Reply reply =
            control_.ask("EPRT |" + family + "|" + address.host() + "|" + port + "|");
        if (reply.is_good()) {
            return;
        }
        if (address.is_ipv6()) {
            throw FtpError(internet_error::extended_error);
        }
        takes_extended_ = false;
    }
    std::string numbers = address.host();
    std::ranges::replace(numbers, '.', ',');
    numbers +=
        "," + std::to_string(address.port() / 256) + "," + std::to_string(address.port() % 256);
    expect_good(control_.ask("PORT " + numbers));
}

// Begins a command with data. Whether a reply is still to come when the data are through.
bool ServerConnection::begin(const std::string& command) {
    const Reply reply = control_.begin(command);
    if (!reply.is_preliminary()) {
        expect_good(reply);
    }
    return reply.is_preliminary();
}

// The server's connection, or what it says instead.
Socket ServerConnection::accept_data(const Socket& listener, bool& is_reply_due) {
    const Deadline deadline(settings_.connect);
    for (;;) {
        if (Socket data = accept_from(listener, server_); data.is_open()) {
            return data;
        }
        const bool may_answer = is_reply_due && !control_.has_input();
        if (is_reply_due && control_.has_input()) {
            is_reply_due = false;
            control_.finish_well();
        }
        const Ready ready =
            wait_for(listener, POLLIN, may_answer ? &control_.socket() : nullptr, deadline);
        if (ready == Ready::nothing) {
            control_.give_up();  // its answer to the command is still to come
            throw FtpError(internet_error::timeout);
        }
        if (ready == Ready::second) {
            is_reply_due = false;
            control_.finish_well();
        }
    }
}

DataConnection ServerConnection::open_data(const std::string& command) {
    DataConnection data;
    if (is_passive_) {
        Address address = server_;
        address.set_port(ask_for_port());
        data.socket = connect_to_address(address, Deadline(settings_.connect));
        data.is_reply_due = begin(command);
        return data;
    }
    const Socket listener = listen_at(local_address(control_.socket()));
    tell_port(local_address(listener));
    data.is_reply_due = begin(command);
    data.socket = accept_data(listener, data.is_reply_due);
    return data;
}

DataConnection ServerConnection::begin_transfer(const std::string& verb, StringView path) {
    expect_idle();
    DataConnection data = open_data(verb + " " + path_to_wire(path, features_.utf8));
    is_transferring_ = true;
    return data;
}

DataConnection ServerConnection::begin_download(StringView path) {
    return begin_transfer("RETR", path);
}

DataConnection ServerConnection::begin_upload(StringView path) {
    return begin_transfer("STOR", path);
}

// ---- Listings -------------------------------------------------------------------------------

std::string ServerConnection::list_text(const std::string& command) {
    DataConnection data = open_data(command);
    Download download(*this, std::move(data));
    std::string text;
    for (;;) {
        constexpr std::size_t part = 65536;
        const std::size_t had = text.size();
        text.resize(had + part);
        text.resize(had + download.read_some(std::span(text).subspan(had)));
        if (text.size() == had) {
            return text;
        }
        if (text.size() > longest_listing) {
            control_.give_up();
            throw FtpError(internet_error::ftp_dropped);
        }
    }
}

Listing ServerConnection::list_folder(StringView folder) {
    std::string path = to_wire(folder, features_.utf8);
    if (features_.machine_listing) {
        try {
            return machine_listing_of(list_text(path.empty() ? "MLSD" : "MLSD " + path));
        } catch (const FtpError& refused) {
            if (refused.number() != internet_error::extended_error || !was_unknown()) {
                throw;
            }
            features_.machine_listing = false;  // it has promised too much
        }
    }
    if (path.starts_with('-')) {
        path.insert(0, "./");  // not an option of the server's program
    }
    return listing_of(list_text(path.empty() ? "LIST" : "LIST " + path), platform().clock->Now());
}

std::vector<Entry> ServerConnection::find(StringView pattern) {
    expect_idle();
    const RemotePattern wanted = remote_pattern(pattern);
    if (!is_sendable(wanted.name)) {
        throw FtpError(internet_error::invalid_parameter);
    }
    Listing listing = list_folder(wanted.folder);
    if (!wanted.name.empty()) {
        std::erase_if(listing.entries, [&](const Entry& entry) {
            return !matches(entry.name, wanted.name, listing.ignores_case);
        });
    }
    const bool names_folder = !wanted.name.empty() && !has_wildcard(wanted.name) &&
                              listing.entries.size() == 1 && listing.entries.front().is_folder();
    if (names_folder) {
        listing = list_folder(with_slashes(pattern));
    }
    if (listing.entries.empty()) {
        throw FtpError(internet_error::no_more_files);
    }
    return std::move(listing.entries);
}

}  // namespace kvarta16::posix
