// The replies of an FTP server, read out of lines and understood. No sockets here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kvarta16::posix {

// What a reply may be long; more is no reply but an attack or a fault.
inline constexpr std::size_t longest_reply_line = 8192;
inline constexpr std::size_t longest_reply = 65536;
inline constexpr std::size_t most_reply_lines = 1000;

struct Reply {
    int code = 0;      // 100 to 599
    std::string text;  // all lines with their codes, CR LF between them

    [[nodiscard]] bool is_preliminary() const noexcept { return code / 100 == 1; }
    [[nodiscard]] bool is_good() const noexcept { return code / 100 == 2; }
    [[nodiscard]] bool is_intermediate() const noexcept { return code / 100 == 3; }
};

// One reply, put together line by line. It is one line, "226 Done", or begins with "226-" and ends
// with the first line that begins with "226 "; lines between may begin as they like.
class ReplyBuilder {
  public:
    enum class State : std::uint8_t { wants_more, complete, broken };

    // Takes a line without its end. Broken: no reply begins like this, a NUL, too much of it.
    State add(std::string_view line);
    [[nodiscard]] const Reply& reply() const noexcept { return reply_; }

  private:
    Reply reply_;
    std::size_t lines_ = 0;
};

// The port of "229 Entering Extended Passive Mode (|||6446|)"; any character may stand for "|".
[[nodiscard]] std::optional<std::uint16_t> extended_passive_port(std::string_view text);

// The port of "227 Entering Passive Mode (127,0,0,1,25,46)", with the parentheses or without. The
// address is for nobody: data comes from where the replies come from.
[[nodiscard]] std::optional<std::uint16_t> passive_port(std::string_view text);

// The path of '257 "/a ""b"" c" is the current directory'.
[[nodiscard]] std::optional<std::string> quoted_path(std::string_view text);

// What a server tells of itself in its answer to FEAT.
struct Features {
    bool utf8 = false;
    bool machine_listing = false;  // MLSD
};
[[nodiscard]] Features features_of(const Reply& reply);

}  // namespace kvarta16::posix
