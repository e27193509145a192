#include "ftp_url.h"

#include <algorithm>
#include <charconv>

#include <kvarta16/frame/utf8.h>

#include "usage_error.h"

namespace kvarta16::tool {
namespace {

[[noreturn]] void refuse(const std::string& why) {
    throw UsageError(why + "; an address is ftp://[USER@]HOST[:PORT]/PATH");
}

int hex_digit(char c) {
    int value = 0;
    const auto read = std::from_chars(&c, &c + 1, value, 16);
    return read.ptr == &c + 1 ? value : -1;
}

// With "%41" taken back. Control characters have no business in a name, and line ends would end
// the command that it travels in.
std::string decoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        if (c == '%') {
            const int high = i + 1 < text.size() ? hex_digit(text[i + 1]) : -1;
            const int low = i + 2 < text.size() ? hex_digit(text[i + 2]) : -1;
            if (high < 0 || low < 0) {
                refuse("a % that is none is written %25");
            }
            c = static_cast<char>(high * 16 + low);
            i += 2;
        }
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            refuse("there is a control character in the address");
        }
        result += c;
    }
    if (to_utf8(from_utf8(result)) != result) {
        refuse("the address is no UTF-8");
    }
    return result;
}

std::uint16_t read_port(std::string_view digits) {
    std::uint16_t port = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), port);
    if (read.ptr != digits.data() + digits.size() || read.ec != std::errc() || port == 0) {
        refuse("a port is a number from 1 to 65535");
    }
    return port;
}

bool is_host_character(char c) {
    const bool is_letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return is_letter || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_';
}

// Takes "host", "host:port" or "[address]:port" apart.
void read_place(std::string_view place, FtpUrl& url) {
    std::string_view rest;
    if (place.starts_with('[')) {
        const std::size_t end = place.find(']');
        const std::string_view address =
            place.substr(1, end == std::string_view::npos ? 0 : end - 1);
        if (address.empty() ||
            address.find_first_not_of("0123456789abcdefABCDEF:.%") != std::string_view::npos) {
            refuse("that is no IPv6 address");
        }
        url.host = address;
        rest = place.substr(end + 1);
    } else {
        const std::size_t end = std::min(place.find(':'), place.size());
        url.host = place.substr(0, end);
        rest = place.substr(end);
        if (url.host.empty() || !std::ranges::all_of(url.host, is_host_character)) {
            refuse("that is no host");
        }
    }
    if (!rest.empty()) {
        if (rest.front() != ':') {
            refuse("that is no host");
        }
        url.port = read_port(rest.substr(1));
    }
}

}  // namespace

std::string FtpUrl::directory() const {
    const std::size_t separator = path.rfind('/');
    // Of "/name" the directory is the root.
    return separator == std::string::npos ? ""
                                          : path.substr(0, std::max<std::size_t>(separator, 1));
}

std::string FtpUrl::name() const {
    return path.substr(path.rfind('/') + 1);
}

FtpUrl read_ftp_url(std::string_view text) {
    constexpr std::string_view scheme = "ftp://";
    if (!text.starts_with(scheme)) {
        refuse("the address does not begin with ftp://");
    }
    text.remove_prefix(scheme.size());
    const std::size_t slash = std::min(text.find('/'), text.size());
    std::string_view place = text.substr(0, slash);
    FtpUrl url;
    if (const std::size_t at = place.rfind('@'); at != std::string_view::npos) {
        const std::string_view user = place.substr(0, at);
        if (user.find(':') != std::string_view::npos) {
            throw UsageError(
                "a password does not belong on a command line, where others can read it; put it "
                "into KVARTA16_FTP_PASSWORD, or leave it out and be asked");
        }
        if (user.empty()) {
            refuse("there is no user before the @");
        }
        url.user = decoded(user);
        place.remove_prefix(at + 1);
    }
    read_place(place, url);
    url.path = decoded(text.substr(std::min(slash + 1, text.size())));
    return url;
}

}  // namespace kvarta16::tool
