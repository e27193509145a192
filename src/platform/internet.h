// The FTP client of the platform, call by call. Handles are numbers; 0 is none.
//
// None of these raises a failure: a call that cannot be served answers 0 (false) and leaves its
// reason in GetLastError, as one of internet_error or a number of the system's, and what the server
// said in InternetGetLastResponseInfoA. A handle that is none is refused.
#pragma once

#include <span>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>
#include <kvarta16/platform/find_files.h>

namespace kvarta16 {

namespace internet_error {
inline constexpr Long file_not_found = 2;
inline constexpr Long path_not_found = 3;
inline constexpr Long access_denied = 5;
inline constexpr Long invalid_handle = 6;
inline constexpr Long no_more_files = 18;
inline constexpr Long file_exists = 80;
inline constexpr Long invalid_parameter = 87;
inline constexpr Long disk_full = 112;
inline constexpr Long timeout = 12002;
inline constexpr Long extended_error = 12003;  // the server refused; its words are the response
inline constexpr Long name_not_resolved = 12007;
inline constexpr Long incorrect_user_name = 12013;
inline constexpr Long incorrect_password = 12014;
inline constexpr Long login_failure = 12015;
inline constexpr Long incorrect_handle_type = 12018;
inline constexpr Long incorrect_handle_state = 12019;
inline constexpr Long cannot_connect = 12029;
inline constexpr Long connection_aborted = 12030;
inline constexpr Long connection_reset = 12031;
inline constexpr Long transfer_in_progress = 12110;
inline constexpr Long ftp_dropped = 12111;
}  // namespace internet_error

namespace internet {
inline constexpr Long open_type_preconfig = 0;            // INTERNET_OPEN_TYPE_PRECONFIG
inline constexpr Long service_ftp = 1;                    // INTERNET_SERVICE_FTP
inline constexpr Long flag_passive = 0x08000000;          // INTERNET_FLAG_PASSIVE
inline constexpr Long flag_reload = wrap32(0x80000000);   // INTERNET_FLAG_RELOAD
inline constexpr Long generic_read = wrap32(0x80000000);  // GENERIC_READ
inline constexpr Long generic_write = 0x40000000;         // GENERIC_WRITE
inline constexpr Long transfer_type_ascii = 1;            // FTP_TRANSFER_TYPE_ASCII
inline constexpr Long transfer_type_binary = 2;           // FTP_TRANSFER_TYPE_BINARY
}  // namespace internet

class KVARTA16_EXPORT Internet {
  public:
    virtual ~Internet() = default;

    // A session. The agent's name is for protocols that tell it; FTP does not.
    [[nodiscard]] virtual Long InternetOpenA(StringView agent, Long access_type, StringView proxy,
                                             StringView proxy_bypass, Long flags) = 0;

    // A connection to a server, logged in; with flag_passive the server opens the ports for data,
    // otherwise this side does.
    [[nodiscard]] virtual Long InternetConnectA(Long session, StringView server, Integer port,
                                                StringView user, StringView password, Long service,
                                                Long flags, Long context) = 0;

    // Closes a handle of any kind and those that came from it. 0 for one that is none.
    virtual Long InternetCloseHandle(Long handle) = 0;

    // Sends a whole local file.
    [[nodiscard]] virtual Long FtpPutFileA(Long connection, StringView local_file,
                                           StringView remote_file, Long flags, Long context) = 0;

    // Fetches a whole file. The local one is made anew unless `fail_if_exists` and it is there.
    [[nodiscard]] virtual Long FtpGetFileA(Long connection, StringView remote_file,
                                           StringView local_file, bool fail_if_exists,
                                           Long attributes, Long flags, Long& context) = 0;

    // Opens one remote file to be read (generic_read) or made anew (generic_write). Until it is
    // closed the connection serves nothing else (12110).
    [[nodiscard]] virtual Long FtpOpenFileA(Long connection, StringView remote_file, Long access,
                                            Long flags, Long context) = 0;

    // Reads up to the length of `buffer`; `read` is the count, less than asked for only at the end
    // of the file. Non-zero at the end too.
    [[nodiscard]] virtual Long InternetReadFile(Long file, std::span<Byte> buffer, Long& read) = 0;

    // Writes all of `buffer`; `written` is the count.
    [[nodiscard]] virtual Long InternetWriteFile(Long file, std::span<const Byte> buffer,
                                                 Long& written) = 0;

    // A listing of the current remote directory, or of what `pattern` names, and its first entry.
    // 0 with 18 where nothing matches. Without flag_reload a listing just read may serve again.
    [[nodiscard]] virtual Long FtpFindFirstFileA(Long connection, StringView pattern,
                                                 WIN32_FIND_DATA& data, Long flags,
                                                 Long context) = 0;

    // The next entry; 0 with 18 at the end.
    [[nodiscard]] virtual Long InternetFindNextFileA(Long find, WIN32_FIND_DATA& data) = 0;

    // The current remote directory, with an ending zero over the beginning of `buffer`, which has
    // `length` characters; `length` becomes the count without the zero.
    [[nodiscard]] virtual Long FtpGetCurrentDirectoryA(Long connection, String& buffer,
                                                       Long& length) = 0;

    // These answer as the server does: 1 or 0.
    [[nodiscard]] virtual Long FtpSetCurrentDirectoryA(Long connection, StringView directory) = 0;
    [[nodiscard]] virtual Long FtpCreateDirectoryA(Long connection, StringView directory) = 0;
    [[nodiscard]] virtual Long FtpRemoveDirectoryA(Long connection, StringView directory) = 0;
    [[nodiscard]] virtual Long FtpDeleteFileA(Long connection, StringView file) = 0;
    [[nodiscard]] virtual Long FtpRenameFileA(Long connection, StringView existing,
                                              StringView renamed) = 0;

    // What the server answered last on this thread: the whole reply with its codes, CR LF between
    // its lines. Where `length` characters hold it, it is written over the beginning of `text` and
    // the answer is 1; otherwise nothing is written and the answer is 0. Either way `length`
    // becomes its length. `error` becomes the code of that reply (550, say) where the last failure
    // was the server's refusal, and stays otherwise.
    virtual Long InternetGetLastResponseInfoA(Long& error, String& text, Long& length) = 0;

    // Why the last call on this thread that failed did so.
    [[nodiscard]] virtual Long GetLastError() = 0;
};

}  // namespace kvarta16
