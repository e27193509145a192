// Sockets that never wait longer than they are told: they do not block, and each wait has a
// deadline. They are closed when a program is started, and writing to a broken one gives no
// signal. What goes wrong is an FtpError: 12002, 12007, 12029, 12030 or 12031.
#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

#include <sys/socket.h>

namespace kvarta16::posix {

class Deadline {
  public:
    explicit Deadline(std::chrono::milliseconds from_now)
        : end_(std::chrono::steady_clock::now() + from_now) {}

    [[nodiscard]] std::chrono::milliseconds left() const;

  private:
    std::chrono::steady_clock::time_point end_;
};

// One end of a connection. A move leaves an empty one behind.
class Socket {
  public:
    Socket() = default;
    explicit Socket(int file) noexcept : file_(file) {}
    ~Socket() { close(); }
    Socket(Socket&& other) noexcept : file_(other.release()) {}
    Socket& operator=(Socket&& other) noexcept;
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    [[nodiscard]] int file() const noexcept { return file_; }
    [[nodiscard]] bool is_open() const noexcept { return file_ >= 0; }
    void close() noexcept;
    // So that the other side learns that something is missing: a reset instead of a plain end.
    void close_with_reset() noexcept;

  private:
    int release() noexcept;

    int file_ = -1;
};

struct Address {
    sockaddr_storage storage{};
    socklen_t size = 0;

    [[nodiscard]] bool is_ipv6() const noexcept { return storage.ss_family == AF_INET6; }
    [[nodiscard]] std::uint16_t port() const noexcept;
    void set_port(std::uint16_t port) noexcept;
    // "127.0.0.1" or "::1".
    [[nodiscard]] std::string host() const;
};

[[nodiscard]] bool is_same_host(const Address& a, const Address& b) noexcept;
[[nodiscard]] Address local_address(const Socket& socket);
[[nodiscard]] Address remote_address(const Socket& socket);

// Tries all addresses of a name in the resolver's order until one answers. The time is shared
// among those that have not been tried, so that a dead one leaves some for the next. Looking up
// the name takes what the system's resolver takes. Fails: 12007; 12002 where the last address did
// not answer in time, 12029 where it refused.
[[nodiscard]] Socket connect_to_name(const std::string& host, std::uint16_t port,
                                     std::chrono::milliseconds timeout);

[[nodiscard]] Socket connect_to_address(const Address& address, const Deadline& deadline);

// Listens on a free port of one address of this machine.
[[nodiscard]] Socket listen_at(Address address);

// The connection that waits at a listening socket, if there is one and `host` has made it;
// connections of others are closed. An empty socket if none waits.
[[nodiscard]] Socket accept_from(const Socket& listener, const Address& host);

// What a wait has found.
enum class Ready : std::uint8_t { nothing, first, second };

// Waits until `first` can do what `events` ask for (POLLIN, POLLOUT) or `second`, if it is a
// socket at all, can be read. Both at once is the first.
[[nodiscard]] Ready wait_for(const Socket& first, short events, const Socket* second,
                             const Deadline& deadline);

// What has arrived, waiting for the first byte. 0 at the end of the connection.
[[nodiscard]] std::size_t receive(const Socket& socket, std::span<char> buffer,
                                  const Deadline& deadline);

// As much as can be sent without waiting, perhaps nothing. With `more_follows` the system may wait
// a fifth of a second for what fills the packet.
[[nodiscard]] std::size_t send_some(const Socket& socket, std::span<const char> bytes,
                                    bool more_follows = false);

void send_all(const Socket& socket, std::span<const char> bytes, const Deadline& deadline);

}  // namespace kvarta16::posix
