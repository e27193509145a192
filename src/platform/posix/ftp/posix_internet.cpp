#include <algorithm>
#include <array>
#include <concepts>
#include <memory>
#include <vector>

#include <kvarta16/frame/text.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/ftp/local_file.h>
#include <kvarta16/platform/posix/ftp/posix_internet.h>
#include <kvarta16/platform/posix/ftp/remote_text.h>
#include <kvarta16/platform/posix/ftp/server_connection.h>
#include <kvarta16/platform/posix/ftp/thread_state.h>
#include <kvarta16/platform/posix/ftp/transfer.h>

namespace kvarta16::posix {
namespace {

constexpr std::size_t block_size = 262144;  // of whole files

// ---- What handles stand for -----------------------------------------------------------------

class SessionHandle final : public Handled {};

class ConnectionHandle final : public Handled {
  public:
    ConnectionHandle(const ServerLogin& login, const FtpSettings& settings)
        : server(login, settings) {}

    ServerConnection server;
};

// A remote file that is read or written; the connection lives at least as long.
template <class Transfer>
class FileHandle final : public Handled {
  public:
    FileHandle(std::shared_ptr<ConnectionHandle> owner, DataConnection data)
        : connection(std::move(owner)), transfer(connection->server, std::move(data)) {}

    void close() override {
        const std::lock_guard lock(connection->server.mutex());
        connection->server.end_transfer();
        if constexpr (std::same_as<Transfer, Upload>) {
            transfer.finish();
        } else {
            transfer.stop();
        }
    }

    std::shared_ptr<ConnectionHandle> connection;
    Transfer transfer;
};

class SearchHandle final : public Handled {
  public:
    explicit SearchHandle(std::vector<Entry> found) : entries(std::move(found)) {}

    std::vector<Entry> entries;
    std::size_t next = 1;  // the first is told with the handle
};

// ---- Answers --------------------------------------------------------------------------------

// What the body gives, 1 where it gives nothing, or 0 with the reason for GetLastError.
template <class Body>
Long answer_of(Body&& body) {
    try {
        if constexpr (std::same_as<decltype(body()), Long>) {
            return body();
        } else {
            body();
            return 1;
        }
    } catch (const FtpError& failed) {
        thread_state().failed(failed.number());
        return 0;
    }
}

// The same for what is asked of a connection.
template <class Body>
Long answer_of(const HandleTable& handles, Long connection, Body&& body) {
    return answer_of([&] {
        const auto handle = handles.get<ConnectionHandle>(connection);
        const std::lock_guard lock(handle->server.mutex());
        return body(handle);
    });
}

using Connection = std::shared_ptr<ConnectionHandle>;

// How much a buffer of `length` characters holds.
std::size_t capacity_of(const String& buffer, Long length) {
    return std::min(buffer.size(), static_cast<std::size_t>(std::max<Long>(length, 0)));
}

void expect_binary(Long flags) {
    if ((flags & internet::transfer_type_ascii) != 0) {
        throw FtpError(internet_error::invalid_parameter);
    }
}

std::span<char> characters(std::span<Byte> bytes) {
    return {reinterpret_cast<char*>(bytes.data()), bytes.size()};
}

std::span<const char> characters(std::span<const Byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// A transfer within one call, over at its end however that comes.
template <class Transfer>
class WholeTransfer {
  public:
    WholeTransfer(ServerConnection& server, DataConnection data)
        : transfer(server, std::move(data)), server_(server) {}
    ~WholeTransfer() { server_.end_transfer(); }
    WholeTransfer(const WholeTransfer&) = delete;
    WholeTransfer& operator=(const WholeTransfer&) = delete;
    WholeTransfer(WholeTransfer&&) = delete;
    WholeTransfer& operator=(WholeTransfer&&) = delete;

    Transfer transfer;

  private:
    ServerConnection& server_;
};

void put_file(ServerConnection& server, StringView local_path, StringView remote_path) {
    LocalFile local(local_path, LocalFile::Use::read);
    WholeTransfer<Upload> whole(server, server.begin_upload(remote_path));
    std::vector<char> block(block_size);
    while (const std::size_t count = local.read(block)) {
        whole.transfer.write(std::span(block).first(count));
    }
    whole.transfer.finish();
}

void get_file(ServerConnection& server, StringView remote_path, StringView local_path,
              LocalFile::Use use, Long attributes) {
    expect_writable(local_path, use);
    WholeTransfer<Download> whole(server, server.begin_download(remote_path));
    LocalFile local(local_path, use);
    std::vector<char> block(block_size);
    while (const std::size_t count = whole.transfer.read_some(block)) {
        local.write(std::span(block).first(count));
    }
    if ((attributes & file_attribute::read_only) != 0) {
        local.protect();
    }
    local.close();
}

}  // namespace

// ---- Sessions and connections ---------------------------------------------------------------

Long PosixInternet::InternetOpenA(StringView, Long, StringView, StringView, Long) {
    return answer_of([&] { return handles_.add(0, std::make_shared<SessionHandle>()); });
}

Long PosixInternet::InternetConnectA(Long session, StringView server, Integer port, StringView user,
                                     StringView password, Long service, Long flags, Long) {
    return answer_of([&] {
        static_cast<void>(handles_.get<SessionHandle>(session));
        if (service != internet::service_ftp) {
            throw FtpError(internet_error::invalid_parameter);
        }
        const ServerLogin login{String(server), static_cast<std::uint16_t>(port), String(user),
                                String(password), (flags & internet::flag_passive) != 0};
        return handles_.add(session, std::make_shared<ConnectionHandle>(login, ftp_settings()));
    });
}

Long PosixInternet::InternetCloseHandle(Long handle) {
    return answer_of([&] {
        Long problem = 0;
        for (std::shared_ptr<Handled>& handled : handles_.take(handle)) {
            try {
                handled->close();
            } catch (const FtpError& failed) {  // the others are closed all the same
                problem = problem == 0 ? failed.number() : problem;
            }
            handled.reset();
        }
        if (problem != 0) {
            throw FtpError(problem);
        }
    });
}

// ---- Whole files ----------------------------------------------------------------------------

Long PosixInternet::FtpPutFileA(Long connection, StringView local_file, StringView remote_file,
                                Long flags, Long) {
    return answer_of(handles_, connection, [&](const Connection& handle) {
        expect_binary(flags);
        put_file(handle->server, local_file, remote_file);
    });
}

Long PosixInternet::FtpGetFileA(Long connection, StringView remote_file, StringView local_file,
                                bool fail_if_exists, Long attributes, Long flags, Long&) {
    return answer_of(handles_, connection, [&](const Connection& handle) {
        expect_binary(flags);
        get_file(handle->server, remote_file, local_file,
                 fail_if_exists ? LocalFile::Use::write_new : LocalFile::Use::write, attributes);
    });
}

// ---- Files in blocks ------------------------------------------------------------------------

Long PosixInternet::FtpOpenFileA(Long connection, StringView remote_file, Long access, Long flags,
                                 Long) {
    return answer_of(handles_, connection, [&](const Connection& handle) {
        expect_binary(flags);
        if (access == internet::generic_read) {
            return handles_.add(connection,
                                std::make_shared<FileHandle<Download>>(
                                    handle, handle->server.begin_download(remote_file)));
        }
        if (access == internet::generic_write) {
            return handles_.add(connection, std::make_shared<FileHandle<Upload>>(
                                                handle, handle->server.begin_upload(remote_file)));
        }
        throw FtpError(internet_error::invalid_parameter);
    });
}

Long PosixInternet::InternetReadFile(Long file, std::span<Byte> buffer, Long& read) {
    read = 0;
    return answer_of([&] {
        const auto handle = handles_.get<FileHandle<Download>>(file);
        const std::lock_guard lock(handle->connection->server.mutex());
        read = static_cast<Long>(handle->transfer.read(characters(buffer)));
    });
}

Long PosixInternet::InternetWriteFile(Long file, std::span<const Byte> buffer, Long& written) {
    written = 0;
    return answer_of([&] {
        const auto handle = handles_.get<FileHandle<Upload>>(file);
        const std::lock_guard lock(handle->connection->server.mutex());
        handle->transfer.write(characters(buffer));
        written = static_cast<Long>(buffer.size());
    });
}

// ---- Listings -------------------------------------------------------------------------------

Long PosixInternet::FtpFindFirstFileA(Long connection, StringView pattern, WIN32_FIND_DATA& data,
                                      Long, Long) {
    return answer_of(handles_, connection, [&](const Connection& handle) {
        auto search = std::make_shared<SearchHandle>(handle->server.find(pattern));
        data = find_data_of(search->entries.front());
        return handles_.add(connection, std::move(search));
    });
}

Long PosixInternet::InternetFindNextFileA(Long find, WIN32_FIND_DATA& data) {
    return answer_of([&] {
        const auto search = handles_.get<SearchHandle>(find);
        if (search->next >= search->entries.size()) {
            throw FtpError(internet_error::no_more_files);
        }
        data = find_data_of(search->entries[search->next++]);
    });
}

// ---- Folders and names ----------------------------------------------------------------------

Long PosixInternet::FtpGetCurrentDirectoryA(Long connection, String& buffer, Long& length) {
    return answer_of(handles_, connection, [&](const Connection& handle) {
        const String path = handle->server.current_directory();
        const bool fits = path.size() < capacity_of(buffer, length);
        length = kvarta16::length(path) + (fits ? 0 : 1);
        if (!fits) {
            throw FtpError(insufficient_buffer);
        }
        std::ranges::copy(path, buffer.begin());
        buffer[path.size()] = u'\0';
    });
}

Long PosixInternet::FtpSetCurrentDirectoryA(Long connection, StringView directory) {
    return answer_of(handles_, connection,
                     [&](const Connection& handle) { handle->server.change_directory(directory); });
}

Long PosixInternet::FtpCreateDirectoryA(Long connection, StringView directory) {
    return answer_of(handles_, connection,
                     [&](const Connection& handle) { handle->server.create_directory(directory); });
}

Long PosixInternet::FtpRemoveDirectoryA(Long connection, StringView directory) {
    return answer_of(handles_, connection,
                     [&](const Connection& handle) { handle->server.remove_directory(directory); });
}

Long PosixInternet::FtpDeleteFileA(Long connection, StringView file) {
    return answer_of(handles_, connection,
                     [&](const Connection& handle) { handle->server.delete_file(file); });
}

Long PosixInternet::FtpRenameFileA(Long connection, StringView existing, StringView renamed) {
    return answer_of(handles_, connection, [&](const Connection& handle) {
        handle->server.rename_file(existing, renamed);
    });
}

// ---- What went wrong ------------------------------------------------------------------------

Long PosixInternet::InternetGetLastResponseInfoA(Long& error, String& text, Long& length) {
    ThreadState& state = thread_state();
    const String response = from_wire(state.response);
    error = state.response_code != 0 ? state.response_code : error;
    const bool fits = response.size() <= capacity_of(text, length);
    length = kvarta16::length(response);
    if (!fits) {
        state.last_error = insufficient_buffer;
        return 0;
    }
    std::ranges::copy(response, text.begin());
    return 1;
}

Long PosixInternet::GetLastError() {
    return thread_state().last_error;
}

}  // namespace kvarta16::posix
