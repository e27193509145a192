#include <charconv>
#include <cstdlib>
#include <string_view>

#include <kvarta16/platform/posix/ftp/ftp_settings.h>

namespace kvarta16::posix {
namespace {

constexpr int longest_timeout = 86400;  // a day, in seconds

}  // namespace

FtpSettings ftp_settings_from(const char* seconds) {
    FtpSettings settings;
    if (seconds == nullptr) {
        return settings;
    }
    const std::string_view text(seconds);
    int value = 0;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool is_whole = problem == std::errc() && end == text.data() + text.size();
    if (is_whole && value >= 1 && value <= longest_timeout) {
        settings.connect = settings.reply = settings.data = std::chrono::seconds(value);
    }
    return settings;
}

FtpSettings& ftp_settings() {
    static FtpSettings settings = ftp_settings_from(std::getenv("KVARTA16_FTP_TIMEOUT"));
    return settings;
}

}  // namespace kvarta16::posix
