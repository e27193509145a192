#include <algorithm>

#include <poll.h>

#include <kvarta16/platform/posix/ftp/ftp_error.h>
#include <kvarta16/platform/posix/ftp/transfer.h>

namespace kvarta16::posix {
namespace {

constexpr std::size_t buffer_size = 65536;

}  // namespace

// ---- Download -------------------------------------------------------------------------------

std::size_t Download::receive_some(std::span<char> buffer) {
    try {
        return receive(data_.socket, buffer, Deadline(server_.settings().data));
    } catch (const FtpError& failed) {
        if (failed.number() == internet_error::timeout) {
            server_.control().give_up();  // silent here, and its reply would come too late
        } else {
            end();  // the server's own words, where it has some, say more
        }
        throw;
    }
}

// The connection is closed: the server's last word decides.
void Download::end() {
    data_.socket.close();
    if (data_.is_reply_due) {
        data_.is_reply_due = false;
        server_.control().finish_well();
    }
}

std::size_t Download::read_some(std::span<char> buffer) {
    if (problem_) {
        throw FtpError(*problem_);
    }
    try {
        if (next_ == end_ && data_.socket.is_open()) {
            const bool is_direct = buffer.size() >= buffer_size;
            buffer_.resize(buffer_size);
            const std::size_t received = receive_some(is_direct ? buffer : std::span(buffer_));
            if (received == 0) {
                end();
                return 0;
            }
            if (is_direct) {
                return received;
            }
            next_ = 0;
            end_ = received;
        }
    } catch (const FtpError& failed) {
        problem_ = failed.number();
        throw;
    }
    const std::size_t count = std::min(end_ - next_, buffer.size());
    std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(next_), count, buffer.begin());
    next_ += count;
    return count;
}

std::size_t Download::read(std::span<char> buffer) {
    std::size_t count = 0;
    while (count < buffer.size()) {
        const std::size_t part = read_some(buffer.subspan(count));
        if (part == 0) {
            break;
        }
        count += part;
    }
    return count;
}

void Download::stop() noexcept {
    const bool was_open = data_.socket.is_open();
    data_.socket.close();
    if (was_open && data_.is_reply_due && !server_.control().is_broken()) {
        data_.is_reply_due = false;
        try {
            server_.control().finish();  // 426, or 226 where all had been sent
        } catch (const FtpError&) {      // broken now, which the next command tells
        }
    }
}

// ---- Upload ---------------------------------------------------------------------------------

// The server's own words, where it has some, say more than a closed connection.
void Upload::fail_with_reply(Long number) {
    data_.socket.close();
    if (data_.is_reply_due) {
        data_.is_reply_due = false;
        server_.control().finish_well();
    }
    throw FtpError(number);
}

void Upload::send_waiting(std::span<const char> bytes) {
    ControlConnection& control = server_.control();
    while (!bytes.empty()) {
        const std::size_t sent = send_some(data_.socket, bytes, true);
        bytes = bytes.subspan(sent);
        if (bytes.empty() || sent > 0) {
            continue;
        }
        // A server that speaks before the end has had enough.
        const Ready ready =
            wait_for(data_.socket, POLLOUT, data_.is_reply_due ? &control.socket() : nullptr,
                     Deadline(server_.settings().data));
        if (ready == Ready::nothing) {
            control.give_up();
            throw FtpError(internet_error::timeout);
        }
        if (ready == Ready::second) {
            throw FtpError(internet_error::connection_aborted);
        }
    }
}

void Upload::send(std::span<const char> bytes) {
    try {
        send_waiting(bytes);
    } catch (const FtpError& failed) {
        if (server_.control().is_broken()) {
            throw;
        }
        fail_with_reply(failed.number());
    }
}

template <class Body>
void Upload::guarded_by_problem(Body&& body) {
    if (problem_) {
        throw FtpError(*problem_);
    }
    try {
        body();
    } catch (const FtpError& failed) {
        problem_ = failed.number();
        throw;
    }
}

// Each block is handed to the system at once, which fills packets for a fifth of a second at most:
// what was written comes to the server, whatever becomes of this process.
void Upload::write(std::span<const char> bytes) {
    guarded_by_problem([&] { send(bytes); });
}

void Upload::finish() {
    guarded_by_problem([&] {
        ::shutdown(data_.socket.file(), SHUT_WR);
        if (data_.is_reply_due) {
            data_.is_reply_due = false;
            server_.control().finish_well();
        }
        data_.socket.close();
    });
}

void Upload::stop() noexcept {
    const bool was_open = data_.socket.is_open();
    data_.socket.close_with_reset();
    if (was_open && data_.is_reply_due && !server_.control().is_broken()) {
        data_.is_reply_due = false;
        try {
            server_.control().finish();
        } catch (const FtpError&) {  // broken now, which the next command tells
        }
    }
}

}  // namespace kvarta16::posix
