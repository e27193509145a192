// The connection that commands and replies travel on. Each reply is noted for the calling thread.
//
// When it has failed once (a time-out, an end, a reply that is none) it is broken for good: a late
// reply would be taken for the next one. Everything fails with 12030 from then on. A server that
// breaks the protocol is left with 12111.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include <kvarta16/platform/posix/ftp/ftp_settings.h>
#include <kvarta16/platform/posix/ftp/replies.h>
#include <kvarta16/platform/posix/ftp/socket.h>

namespace kvarta16::posix {

class ControlConnection {
  public:
    ControlConnection(Socket socket, const FtpSettings& settings)
        : socket_(std::move(socket)), settings_(settings) {}

    // Sends a command and gives the first reply to it, which may be a preliminary one.
    Reply begin(std::string_view command);
    // The last reply of a command that has begun, or the greeting.
    Reply finish();
    // Both, for a command that needs no data.
    Reply ask(std::string_view command);
    // What finish() says, or 12003 where that is a refusal.
    Reply finish_well();

    // Says good-bye and waits for the answer no longer than a moment.
    void quit() noexcept;

    // No further use of it. Whoever loses the order of replies says so.
    void give_up() noexcept;

    [[nodiscard]] bool is_broken() const noexcept { return is_broken_; }
    [[nodiscard]] const Socket& socket() const noexcept { return socket_; }
    // Whether a part of a reply has been received already, so that the socket need not tell.
    [[nodiscard]] bool has_input() const noexcept { return next_ < end_; }

  private:
    Reply read_reply(const Deadline& deadline);
    std::string read_line(const Deadline& deadline);
    void drop_late_replies();
    template <class Body>
    auto used(Body&& body);

    Socket socket_;
    FtpSettings settings_;
    std::array<char, 4096> input_{};
    std::size_t next_ = 0;
    std::size_t end_ = 0;
    bool is_broken_ = false;
};

// Throws 12003 for a reply that is none of the good ones.
void expect_good(const Reply& reply);

}  // namespace kvarta16::posix
