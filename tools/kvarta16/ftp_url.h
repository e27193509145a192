// The address of something on an FTP server, as a person writes it:
//
//   ftp://ftp.example.com/cennik.txt
//   ftp://ola@192.168.1.5:2121/faktury%202024/01.xml
//   ftp://[2001:db8::1]/
//
// The path is relative to the directory of the login; "//" before it makes it absolute.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kvarta16::tool {

struct FtpUrl {
    std::string user;  // "" for anonymous
    std::string host;
    std::uint16_t port = 21;
    std::string path;  // without the "/" behind the host

    // What stands before the last "/" of the path, and behind it.
    [[nodiscard]] std::string directory() const;
    [[nodiscard]] std::string name() const;
};

// Throws UsageError for anything else, for a password in it, and for control characters.
[[nodiscard]] FtpUrl read_ftp_url(std::string_view text);

}  // namespace kvarta16::tool
