#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <memory>
#include <utility>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <unistd.h>

#include <kvarta16/platform/posix/ftp/ftp_error.h>
#include <kvarta16/platform/posix/ftp/socket.h>

namespace kvarta16::posix {
namespace {

constexpr int most_waiting_connections = 4;

[[noreturn]] void fail_by(int system_error) {
    switch (system_error) {
        case ECONNRESET:
            throw FtpError(internet_error::connection_reset);
        case ETIMEDOUT:
            throw FtpError(internet_error::timeout);
        default:
            throw FtpError(internet_error::connection_aborted);
    }
}

bool would_wait(int system_error) {
    return system_error == EAGAIN || system_error == EWOULDBLOCK || system_error == EINTR;
}

const sockaddr* plain(const Address& address) {
    return reinterpret_cast<const sockaddr*>(&address.storage);
}

sockaddr* plain(Address& address) {
    return reinterpret_cast<sockaddr*>(&address.storage);
}

template <class Kind>
Kind as(const Address& address) {
    Kind kind{};
    std::memcpy(&kind, &address.storage, sizeof kind);
    return kind;
}

void set_option(int file, int level, int option) {
    const int on = 1;
    // Options of speed alone: a socket without them still serves.
    static_cast<void>(::setsockopt(file, level, option, &on, sizeof on));
}

Socket make_socket(int family) {
    Socket socket(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (!socket.is_open()) {
        throw FtpError(internet_error::cannot_connect);
    }
    return socket;
}

struct Free {
    void operator()(addrinfo* list) const { ::freeaddrinfo(list); }
};
using AddressList = std::unique_ptr<addrinfo, Free>;

AddressList addresses_of(const std::string& host, std::uint16_t port) {
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* list = nullptr;
    if (::getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &list) != 0) {
        throw FtpError(internet_error::name_not_resolved);
    }
    return AddressList(list);
}

Address address_of(const addrinfo& entry) {
    Address address;
    address.size = std::min<socklen_t>(entry.ai_addrlen, sizeof address.storage);
    std::memcpy(&address.storage, entry.ai_addr, address.size);
    return address;
}

}  // namespace

std::chrono::milliseconds Deadline::left() const {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now());
    return std::max(left, std::chrono::milliseconds(0));
}

// ---- Sockets --------------------------------------------------------------------------------

Socket& Socket::operator=(Socket&& other) noexcept {
    if (this != &other) {
        close();
        file_ = other.release();
    }
    return *this;
}

int Socket::release() noexcept {
    return std::exchange(file_, -1);
}

void Socket::close() noexcept {
    if (is_open()) {
        ::close(release());
    }
}

void Socket::close_with_reset() noexcept {
    if (is_open()) {
        const linger at_once{1, 0};
        static_cast<void>(::setsockopt(file_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once));
        close();
    }
}

// ---- Addresses ------------------------------------------------------------------------------

std::uint16_t Address::port() const noexcept {
    return ntohs(is_ipv6() ? as<sockaddr_in6>(*this).sin6_port : as<sockaddr_in>(*this).sin_port);
}

void Address::set_port(std::uint16_t port) noexcept {
    if (is_ipv6()) {
        auto changed = as<sockaddr_in6>(*this);
        changed.sin6_port = htons(port);
        std::memcpy(&storage, &changed, sizeof changed);
    } else {
        auto changed = as<sockaddr_in>(*this);
        changed.sin_port = htons(port);
        std::memcpy(&storage, &changed, sizeof changed);
    }
}

std::string Address::host() const {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (is_ipv6()) {
        const auto address = as<sockaddr_in6>(*this);
        ::inet_ntop(AF_INET6, &address.sin6_addr, text.data(), text.size());
    } else {
        const auto address = as<sockaddr_in>(*this);
        ::inet_ntop(AF_INET, &address.sin_addr, text.data(), text.size());
    }
    return text.data();
}

bool is_same_host(const Address& a, const Address& b) noexcept {
    if (a.storage.ss_family != b.storage.ss_family) {
        return false;
    }
    if (a.is_ipv6()) {
        const in6_addr left = as<sockaddr_in6>(a).sin6_addr;
        const in6_addr right = as<sockaddr_in6>(b).sin6_addr;
        return std::memcmp(&left, &right, sizeof left) == 0;
    }
    return as<sockaddr_in>(a).sin_addr.s_addr == as<sockaddr_in>(b).sin_addr.s_addr;
}

Address local_address(const Socket& socket) {
    Address address;
    address.size = sizeof address.storage;
    if (::getsockname(socket.file(), plain(address), &address.size) != 0) {
        throw FtpError(internet_error::connection_aborted);
    }
    return address;
}

Address remote_address(const Socket& socket) {
    Address address;
    address.size = sizeof address.storage;
    if (::getpeername(socket.file(), plain(address), &address.size) != 0) {
        throw FtpError(internet_error::connection_aborted);
    }
    return address;
}

// ---- Making connections ---------------------------------------------------------------------

Socket connect_to_address(const Address& address, const Deadline& deadline) {
    Socket socket = make_socket(address.storage.ss_family);
    set_option(socket.file(), IPPROTO_TCP, TCP_NODELAY);
    set_option(socket.file(), SOL_SOCKET, SO_KEEPALIVE);
    if (::connect(socket.file(), plain(address), address.size) == 0) {
        return socket;
    }
    if (errno != EINPROGRESS && errno != EINTR) {
        throw FtpError(internet_error::cannot_connect);
    }
    if (wait_for(socket, POLLOUT, nullptr, deadline) == Ready::nothing) {
        throw FtpError(internet_error::timeout);
    }
    int problem = 0;
    socklen_t size = sizeof problem;
    if (::getsockopt(socket.file(), SOL_SOCKET, SO_ERROR, &problem, &size) != 0 || problem != 0) {
        throw FtpError(problem == ETIMEDOUT ? internet_error::timeout
                                            : internet_error::cannot_connect);
    }
    return socket;
}

Socket connect_to_name(const std::string& host, std::uint16_t port,
                       std::chrono::milliseconds timeout) {
    const AddressList list = addresses_of(host, port);
    int left = 0;
    for (const addrinfo* entry = list.get(); entry != nullptr; entry = entry->ai_next) {
        ++left;
    }
    const Deadline all(timeout);
    Long problem = internet_error::cannot_connect;
    for (const addrinfo* entry = list.get(); entry != nullptr; entry = entry->ai_next, --left) {
        try {
            return connect_to_address(address_of(*entry), Deadline(all.left() / left));
        } catch (const FtpError& refused) {  // the next address may answer
            problem = refused.number();
        }
    }
    throw FtpError(problem);
}

Socket listen_at(Address address) {
    address.set_port(0);
    Socket socket = make_socket(address.storage.ss_family);
    if (::bind(socket.file(), plain(address), address.size) != 0 ||
        ::listen(socket.file(), most_waiting_connections) != 0) {
        throw FtpError(internet_error::cannot_connect);
    }
    return socket;
}

Socket accept_from(const Socket& listener, const Address& host) {
    for (;;) {
        Address from;
        from.size = sizeof from.storage;
        Socket socket(
            ::accept4(listener.file(), plain(from), &from.size, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (socket.is_open()) {
            if (is_same_host(from, host)) {
                return socket;
            }
        } else if (errno != EINTR && errno != ECONNABORTED) {
            return {};
        }
    }
}

// ---- Waiting, receiving, sending ------------------------------------------------------------

Ready wait_for(const Socket& first, short events, const Socket* second, const Deadline& deadline) {
    std::array<pollfd, 2> files{{{first.file(), events, 0}, {-1, POLLIN, 0}}};
    if (second != nullptr) {
        files[1].fd = second->file();
    }
    for (;;) {
        const auto left =
            std::min<std::chrono::milliseconds::rep>(deadline.left().count(), INT_MAX);
        const int count = ::poll(files.data(), files.size(), static_cast<int>(left));
        if (count > 0) {
            return files[0].revents != 0 ? Ready::first : Ready::second;
        }
        if (count == 0 && left == 0) {
            return Ready::nothing;
        }
        if (count < 0 && errno != EINTR) {
            throw FtpError(internet_error::connection_aborted);
        }
    }
}

std::size_t receive(const Socket& socket, std::span<char> buffer, const Deadline& deadline) {
    for (;;) {
        const ssize_t count = ::recv(socket.file(), buffer.data(), buffer.size(), 0);
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (!would_wait(errno)) {
            fail_by(errno);
        }
        if (wait_for(socket, POLLIN, nullptr, deadline) == Ready::nothing) {
            throw FtpError(internet_error::timeout);
        }
    }
}

std::size_t send_some(const Socket& socket, std::span<const char> bytes, bool more_follows) {
    const int flags = MSG_NOSIGNAL | (more_follows ? MSG_MORE : 0);
    const ssize_t count = ::send(socket.file(), bytes.data(), bytes.size(), flags);
    if (count >= 0) {
        return static_cast<std::size_t>(count);
    }
    if (!would_wait(errno)) {
        fail_by(errno);
    }
    return 0;
}

void send_all(const Socket& socket, std::span<const char> bytes, const Deadline& deadline) {
    while (!bytes.empty()) {
        bytes = bytes.subspan(send_some(socket, bytes));
        if (!bytes.empty() && wait_for(socket, POLLOUT, nullptr, deadline) == Ready::nothing) {
            throw FtpError(internet_error::timeout);
        }
    }
}

}  // namespace kvarta16::posix
