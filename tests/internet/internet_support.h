// What the tests of the FTP adapter share: a client on a server, short time-outs, a folder.
#pragma once

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/ftp/ftp_settings.h>
#include <kvarta16/platform/posix/ftp/posix_internet.h>

namespace kvarta16::internet_tests {

namespace fs = std::filesystem;

// Time-outs for servers that fall silent; the old ones come back at the end.
class ShortTimeouts {
  public:
    explicit ShortTimeouts(std::chrono::milliseconds timeout = std::chrono::milliseconds(300))
        : previous_(posix::ftp_settings()) {
        posix::ftp_settings() = {timeout, timeout, timeout};
    }
    ~ShortTimeouts() { posix::ftp_settings() = previous_; }
    ShortTimeouts(const ShortTimeouts&) = delete;
    ShortTimeouts& operator=(const ShortTimeouts&) = delete;
    ShortTimeouts(ShortTimeouts&&) = delete;
    ShortTimeouts& operator=(ShortTimeouts&&) = delete;

  private:
    posix::FtpSettings previous_;
};

class TestFolder {
  public:
    TestFolder() {
        std::string name = (fs::temp_directory_path() / "kvarta16-ftp-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder");
        }
        path_ = name;
    }
    ~TestFolder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    TestFolder(TestFolder&&) = delete;
    TestFolder& operator=(TestFolder&&) = delete;

    [[nodiscard]] fs::path operator/(const std::string& name) const { return path_ / name; }

  private:
    fs::path path_;
};

inline String windows_path(const fs::path& path) {
    return u"Z:" + from_utf8(path.string());
}

inline void write_file(const fs::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string bytes_of(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Bytes of every value, the same for the same size.
inline std::string sample(std::size_t size) {
    std::string bytes(size, '\0');
    std::uint32_t state = 12345;
    for (char& byte : bytes) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    return bytes;
}

inline std::size_t open_descriptors() {
    const fs::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(fs::begin(all), fs::end(all)));
}

// A session and a connection, closed at the end.
struct Client {
    Client(int port, bool is_passive, StringView user = u"ola", StringView password = u"Tajne;1",
           StringView host = u"127.0.0.1")
        : session(net.InternetOpenA(u"FTP Client", 0, u"", u"", 0)),
          ftp(net.InternetConnectA(session, host, static_cast<Integer>(port), user, password,
                                   internet::service_ftp, is_passive ? internet::flag_passive : 0,
                                   0)) {}
    explicit Client(int port) : Client(port, true) {}
    ~Client() { net.InternetCloseHandle(session); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;
    Client(Client&&) = delete;
    Client& operator=(Client&&) = delete;

    // What the server answered, as callers fetch it; `error` as they pass it.
    std::string response(Long& error) {
        String text;
        Long length = 0;
        net.InternetGetLastResponseInfoA(error, text, length);
        text.assign(static_cast<std::size_t>(length), u'\0');
        EXPECT_EQ(net.InternetGetLastResponseInfoA(error, text, length), 1);
        return to_utf8(text);
    }
    std::string response() {
        Long ignored = 0;
        return response(ignored);
    }
    // The number that callers end up with: the failure's, unless an answer of the server's has one.
    Long error_number() {
        Long error = net.GetLastError();
        response(error);
        return error;
    }
    Long open(StringView name, Long access) {
        return net.FtpOpenFileA(ftp, name, access, internet::transfer_type_binary, 0);
    }
    Long get(StringView remote, const fs::path& local) {
        Long context = 0;
        return net.FtpGetFileA(ftp, remote, windows_path(local), false, 0, internet::flag_reload,
                               context);
    }
    Long put(const fs::path& local, StringView remote) {
        return net.FtpPutFileA(ftp, windows_path(local), remote, internet::transfer_type_binary, 0);
    }
    // The names that a pattern finds, in the server's order.
    std::vector<std::string> names(StringView pattern) {
        std::vector<std::string> all;
        WIN32_FIND_DATA data;
        const Long find = net.FtpFindFirstFileA(ftp, pattern, data, internet::flag_reload, 0);
        for (Long more = find; more != 0; more = net.InternetFindNextFileA(find, data)) {
            all.push_back(name_of(data));
        }
        if (find != 0) {
            EXPECT_EQ(net.GetLastError(), internet_error::no_more_files);
            EXPECT_EQ(net.InternetCloseHandle(find), 1);
        }
        return all;
    }
    std::string current_directory() {
        String buffer(260, u'\0');
        Long length = 260;
        return net.FtpGetCurrentDirectoryA(ftp, buffer, length) == 0
                   ? ""
                   : to_utf8(buffer.substr(0, static_cast<std::size_t>(length)));
    }
    static std::string name_of(const WIN32_FIND_DATA& data) {
        const String name(data.cFileName.begin(), data.cFileName.end());
        return to_utf8(name.substr(0, name.find(u'\0')));
    }

    posix::PosixInternet net;
    Long session;
    Long ftp;
};

}  // namespace kvarta16::internet_tests
