// The time-outs of the FTP adapter. A host sets them before its first connection; a connection
// keeps those that were in force when it was made.
//
//   posix::ftp_settings().reply = std::chrono::seconds(5);
#pragma once

#include <chrono>

#include <kvarta16/frame/export.h>

namespace kvarta16::posix {

struct FtpSettings {
    // For making a connection, all addresses of the server's name together; and for the server's
    // own connection where it is the one that makes it.
    std::chrono::milliseconds connect = std::chrono::seconds(30);
    // For one whole reply of the server, however slowly it arrives.
    std::chrono::milliseconds reply = std::chrono::seconds(30);
    // For the next bytes of a file or a listing to come or to be taken.
    std::chrono::milliseconds data = std::chrono::seconds(60);
};

// Those of the process. At the first use all three are KVARTA16_FTP_TIMEOUT of the environment,
// whole seconds from 1 to 86400, where it holds such a number.
[[nodiscard]] KVARTA16_EXPORT FtpSettings& ftp_settings();

// The settings by the text of that variable; null for one that is not set.
[[nodiscard]] KVARTA16_EXPORT FtpSettings ftp_settings_from(const char* seconds);

}  // namespace kvarta16::posix
