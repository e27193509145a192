// The bytes of one file or listing on their way. Both keep a buffer of their own, so that callers
// may move a file in blocks as small as they like. What goes wrong once goes wrong again at each
// further call.
#pragma once

#include <optional>
#include <span>
#include <string>

#include <kvarta16/platform/posix/ftp/server_connection.h>

namespace kvarta16::posix {

class Download {
  public:
    // `server` outlives this and is not used by others meanwhile.
    Download(ServerConnection& server, DataConnection data)
        : server_(server), data_(std::move(data)) {}
    // What has not been fetched is not wanted: see stop().
    ~Download() { stop(); }
    Download(const Download&) = delete;
    Download& operator=(const Download&) = delete;
    Download(Download&&) = delete;
    Download& operator=(Download&&) = delete;

    // Fills the buffer as far as the file reaches; the count, 0 at its end. At the end it is the
    // server that says whether that was the whole file: 12003 if not.
    [[nodiscard]] std::size_t read(std::span<char> buffer);

    // The same for what is there already, waiting for the first byte only: all that came before a
    // failure has been given then.
    [[nodiscard]] std::size_t read_some(std::span<char> buffer);

    // Ends the transfer where it stands. The server notices the closed connection and says so, so
    // that the next command finds it listening.
    void stop() noexcept;

  private:
    std::size_t receive_some(std::span<char> buffer);
    void end();

    ServerConnection& server_;
    DataConnection data_;
    std::string buffer_;
    std::size_t next_ = 0;
    std::size_t end_ = 0;
    std::optional<Long> problem_;
};

class Upload {
  public:
    Upload(ServerConnection& server, DataConnection data)
        : server_(server), data_(std::move(data)) {}
    // A transfer that was not finished is broken off: see stop().
    ~Upload() { stop(); }
    Upload(const Upload&) = delete;
    Upload& operator=(const Upload&) = delete;
    Upload(Upload&&) = delete;
    Upload& operator=(Upload&&) = delete;

    void write(std::span<const char> bytes);

    // Ends the file, and waits for the server to say that it has all.
    void finish();

    // Breaks off, so that the server sees that the file is not whole.
    void stop() noexcept;

  private:
    void send(std::span<const char> bytes);
    void send_waiting(std::span<const char> bytes);
    template <class Body>
    void guarded_by_problem(Body&& body);
    [[noreturn]] void fail_with_reply(Long number);

    ServerConnection& server_;
    DataConnection data_;
    std::optional<Long> problem_;
};

}  // namespace kvarta16::posix
