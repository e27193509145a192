#include <algorithm>

#include <poll.h>

#include <kvarta16/platform/posix/ftp/control_connection.h>
#include <kvarta16/platform/posix/ftp/ftp_error.h>
#include <kvarta16/platform/posix/ftp/thread_state.h>

namespace kvarta16::posix {
namespace {

constexpr int most_preliminary_replies = 10;
constexpr std::chrono::milliseconds longest_good_bye{500};
constexpr int service_closing = 421;

}  // namespace

// Broken until the body has come to its end.
template <class Body>
auto ControlConnection::used(Body&& body) {
    if (is_broken_) {
        throw FtpError(internet_error::connection_aborted);
    }
    is_broken_ = true;
    auto result = body();
    is_broken_ = false;
    return result;
}

std::string ControlConnection::read_line(const Deadline& deadline) {
    std::string line;
    for (;;) {
        if (next_ == end_) {
            next_ = 0;
            end_ = receive(socket_, input_, deadline);
            if (end_ == 0) {
                throw FtpError(internet_error::connection_aborted);
            }
        }
        const char byte = input_[next_++];
        if (byte == '\n') {
            if (line.ends_with('\r')) {
                line.pop_back();
            }
            return line;
        }
        line += byte;
        if (line.size() > longest_reply_line + 1) {
            throw FtpError(internet_error::ftp_dropped);
        }
    }
}

Reply ControlConnection::read_reply(const Deadline& deadline) {
    ReplyBuilder builder;
    for (;;) {
        switch (builder.add(read_line(deadline))) {
            case ReplyBuilder::State::complete:
                thread_state().answered(builder.reply());
                return builder.reply();
            case ReplyBuilder::State::broken:
                throw FtpError(internet_error::ftp_dropped);
            case ReplyBuilder::State::wants_more:
                break;
        }
    }
}

// What the server has said unasked, such as a second answer to a transfer that was broken off, is
// no reply to the next command.
void ControlConnection::drop_late_replies() {
    for (int i = 0; i < most_preliminary_replies; ++i) {
        const Deadline now(std::chrono::milliseconds(0));
        if (!has_input() && wait_for(socket_, POLLIN, nullptr, now) == Ready::nothing) {
            return;
        }
        if (read_reply(Deadline(settings_.reply)).code == service_closing) {
            throw FtpError(internet_error::connection_aborted);
        }
    }
    throw FtpError(internet_error::ftp_dropped);
}

Reply ControlConnection::begin(std::string_view command) {
    return used([&] {
        drop_late_replies();
        const Deadline deadline(settings_.reply);
        send_all(socket_, std::string(command) + "\r\n", deadline);
        return read_reply(deadline);
    });
}

Reply ControlConnection::finish() {
    return used([&] {
        const Deadline deadline(settings_.reply);
        for (int i = 0; i <= most_preliminary_replies; ++i) {
            Reply reply = read_reply(deadline);
            if (!reply.is_preliminary()) {
                return reply;
            }
        }
        throw FtpError(internet_error::ftp_dropped);
    });
}

Reply ControlConnection::ask(std::string_view command) {
    Reply reply = begin(command);
    return reply.is_preliminary() ? finish() : reply;
}

Reply ControlConnection::finish_well() {
    Reply reply = finish();
    expect_good(reply);
    return reply;
}

void ControlConnection::quit() noexcept {
    if (is_broken_) {
        return;
    }
    is_broken_ = true;
    try {
        const Deadline deadline(std::min(settings_.reply, longest_good_bye));
        send_all(socket_, std::string_view("QUIT\r\n"), deadline);
        read_reply(deadline);
    } catch (const FtpError&) {  // the connection goes either way
    }
}

void ControlConnection::give_up() noexcept {
    is_broken_ = true;
}

void expect_good(const Reply& reply) {
    if (!reply.is_good()) {
        throw FtpError(internet_error::extended_error);
    }
}

}  // namespace kvarta16::posix
