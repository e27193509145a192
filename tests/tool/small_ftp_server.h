// A small FTP server on loopback, in a thread of the test: one flat directory in memory, passive
// data connections, one client at a time.
//
//   SmallFtpServer server(2121);       // on the first address of 127.0.0.x where the port is free
//   server.put("cennik.txt", "abc");
#pragma once

#include <array>
#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tool_test {

class SmallFtpServer {
  public:
    static constexpr const char* user = "ola";
    static constexpr const char* password = "hasło&tajne";

    // Port 0 for any that is free.
    explicit SmallFtpServer(std::uint16_t port) {
        constexpr std::uint32_t hosts = 50;
        for (std::uint32_t host = 1; host <= hosts && listener_ < 0; ++host) {
            address_ = INADDR_LOOPBACK - 1 + host;
            listener_ = listening(port);
        }
        if (listener_ < 0) {
            throw std::runtime_error("the port is taken on every address");
        }
        port_ = port_of(listener_);
        thread_ = std::thread([this] { serve(); });
    }
    ~SmallFtpServer() {
        is_stopped_ = true;
        thread_.join();
        ::close(listener_);
    }
    SmallFtpServer(const SmallFtpServer&) = delete;
    SmallFtpServer& operator=(const SmallFtpServer&) = delete;
    SmallFtpServer(SmallFtpServer&&) = delete;
    SmallFtpServer& operator=(SmallFtpServer&&) = delete;

    [[nodiscard]] std::string host() const { return "127.0.0." + std::to_string(address_ & 0xFF); }
    [[nodiscard]] std::uint16_t port() const { return port_; }

    void put(const std::string& name, std::string contents) {
        const std::lock_guard lock(mutex_);
        files_[name] = std::move(contents);
    }
    [[nodiscard]] std::optional<std::string> contents(const std::string& name) {
        const std::lock_guard lock(mutex_);
        const auto found = files_.find(name);
        return found == files_.end() ? std::nullopt : std::optional(found->second);
    }
    // The commands that have come, without the password.
    [[nodiscard]] std::vector<std::string> commands() {
        const std::lock_guard lock(mutex_);
        return commands_;
    }
    // A pause before each piece of 4096 bytes that is sent, so that a transfer takes its time.
    std::atomic<int> milliseconds_a_piece = 0;

  private:
    [[nodiscard]] sockaddr_in place(std::uint16_t port) const {
        sockaddr_in place{};
        place.sin_family = AF_INET;
        place.sin_addr.s_addr = htonl(address_);
        place.sin_port = htons(port);
        return place;
    }
    // -1 where the port is taken.
    [[nodiscard]] int listening(std::uint16_t port) const {
        const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const int on = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        const sockaddr_in own = place(port);
        if (::bind(socket, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
            ::listen(socket, 8) != 0) {
            ::close(socket);
            return -1;
        }
        return socket;
    }
    static std::uint16_t port_of(int socket) {
        sockaddr_in own{};
        socklen_t size = sizeof own;
        ::getsockname(socket, reinterpret_cast<sockaddr*>(&own), &size);
        return ntohs(own.sin_port);
    }

    // Whether there is something to read, before the server is stopped.
    [[nodiscard]] bool wait_for(int socket) const {
        while (!is_stopped_) {
            pollfd wanted{socket, POLLIN, 0};
            if (::poll(&wanted, 1, 20) > 0) {
                return true;
            }
        }
        return false;
    }
    // False where nobody reads any more.
    static bool send_all(int socket, std::string_view text) {
        while (!text.empty()) {
            const ssize_t sent = ::send(socket, text.data(), text.size(), MSG_NOSIGNAL);
            if (sent <= 0) {
                return false;
            }
            text.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }
    void reply(const std::string& text) const { send_all(client_, text + "\r\n"); }

    void serve() {
        while (wait_for(listener_)) {
            client_ = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
            reply("220 gotowy");
            std::string received;
            std::array<char, 4096> piece{};
            while (wait_for(client_)) {
                const ssize_t count = ::recv(client_, piece.data(), piece.size(), 0);
                if (count <= 0) {
                    break;
                }
                received.append(piece.data(), static_cast<std::size_t>(count));
                for (std::size_t end = 0; (end = received.find("\r\n")) != std::string::npos;) {
                    const std::string line = received.substr(0, end);
                    received.erase(0, end + 2);
                    answer(line.substr(0, line.find(' ')), line.find(' ') == std::string::npos
                                                               ? ""
                                                               : line.substr(line.find(' ') + 1));
                }
            }
            ::close(client_);
            close_data();
        }
    }

    void answer(const std::string& verb, const std::string& argument) {
        {
            const std::lock_guard lock(mutex_);
            commands_.push_back(verb == "PASS" ? verb : verb + " " + argument);
        }
        if (verb == "USER") {
            reply("331 haslo");
        } else if (verb == "PASS") {
            is_known_ = argument == password || argument == "kvarta16@";
            reply(is_known_ ? "230 witaj" : "530 nie dla " + argument);
        } else if (verb == "FEAT") {
            reply("211-ma\r\n UTF8\r\n EPSV\r\n211 koniec");
        } else if (verb == "TYPE" || verb == "OPTS" || verb == "NOOP") {
            reply("200 dobrze");
        } else if (verb == "PWD") {
            reply("257 \"/\"");
        } else if (verb == "CWD") {
            reply(argument == "dane" ? "250 dobrze" : "550 nie ma " + argument);
        } else if (verb == "MKD") {
            reply("257 \"/" + argument + "\"");
        } else if (verb == "RNFR") {
            renamed_ = argument;
            reply("350 dalej");
        } else if (verb == "RNTO" || verb == "DELE") {
            reply(change(verb, argument) ? "250 dobrze" : "550 nie ma");
        } else if (verb == "EPSV") {
            close_data();
            data_listener_ = listening(0);
            reply("229 prosze (|||" + std::to_string(port_of(data_listener_)) + "|)");
        } else if (verb == "LIST" || verb == "RETR" || verb == "STOR") {
            transfer(verb, argument);
        } else if (verb == "QUIT") {
            reply("221 do widzenia");
        } else {
            reply("502 nie znam");
        }
    }

    bool change(const std::string& verb, const std::string& name) {
        const std::lock_guard lock(mutex_);
        if (verb == "DELE") {
            return files_.erase(name) == 1;
        }
        auto moved = files_.extract(renamed_);
        if (moved.empty()) {
            return false;
        }
        moved.key() = name;
        files_.insert(std::move(moved));
        return true;
    }

    [[nodiscard]] std::string listing() {
        const std::lock_guard lock(mutex_);
        std::string text = "drwxr-xr-x 1 ola ola 4096 Jan 10 2024 dane\r\n";
        for (const auto& [name, contents] : files_) {
            text += "-rw-r--r-- 1 ola ola " + std::to_string(contents.size()) + " Jan 10 2024 " +
                    name + "\r\n";
        }
        return text;
    }

    void transfer(const std::string& verb, const std::string& name) {
        const std::optional<std::string> file = contents(name);
        if (verb == "RETR" && !file) {
            return reply("550 nie ma " + name);
        }
        reply("150 zaraz");
        if (data_listener_ < 0 || !wait_for(data_listener_)) {
            return reply("425 bez polaczenia");
        }
        const int data = ::accept4(data_listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (verb == "STOR") {
            std::string received;
            std::array<char, 4096> piece{};
            for (ssize_t count = 0;
                 wait_for(data) && (count = ::recv(data, piece.data(), piece.size(), 0)) > 0;) {
                received.append(piece.data(), static_cast<std::size_t>(count));
            }
            put(name, std::move(received));
        } else {
            const std::string text = verb == "LIST" ? listing() : *file;
            bool is_read = true;
            for (std::size_t at = 0; at < text.size() && is_read && !is_stopped_; at += 4096) {
                std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds_a_piece));
                is_read = send_all(data, std::string_view(text).substr(at, 4096));
            }
        }
        ::close(data);
        close_data();
        reply("226 gotowe");
    }

    void close_data() {
        if (data_listener_ >= 0) {
            ::close(std::exchange(data_listener_, -1));
        }
    }

    std::uint32_t address_ = INADDR_LOOPBACK;
    std::uint16_t port_ = 0;
    int listener_ = -1;
    int client_ = -1;
    int data_listener_ = -1;
    bool is_known_ = false;
    std::string renamed_;
    std::atomic<bool> is_stopped_ = false;
    std::mutex mutex_;
    std::map<std::string, std::string> files_;
    std::vector<std::string> commands_;
    std::thread thread_;
};

}  // namespace tool_test
