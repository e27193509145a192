// FTP on sockets behind the internet seam.
//
// Beyond what the seam promises:
//
//   - Names and paths take both slashes; "/" is sent. They go out as UTF-8 where the server says
//     that it speaks it, else as Windows-1250. CR, LF, NUL, and a letter that the code page has
//     not got are refused (87) before anything is sent.
//   - Transfers are binary; flags that ask for text are refused (87).
//   - A listing is read whole and compared with the pattern's last part here, with case unless the
//     lines are a Windows server's. A pattern that is the name of a folder lists the folder.
//     Entries as in listing.h. An empty folder has nothing that matches (18).
//   - A file handle reads ahead and writes in larger parts. So a failed write may be told by a
//     later call; the last one that can tell is InternetCloseHandle, which then answers 0 and has
//     closed all the same. A reading handle that is closed early breaks the transfer off, and the
//     connection goes on.
//   - FtpGetFileA asks the server first and then makes the local file. What a failed transfer has
//     written stays, as it does on the server when storing fails. Of the attributes it gives the
//     file the bit 1.
//   - GetLastError: the numbers of internet_error, and 122 for a buffer that is too small. A
//     connection that failed once is of no further use (12030); a server that breaks the protocol
//     is left with 12111.
//   - InternetGetLastResponseInfoA leaves `error` where the last failure was no refusal of the
//     server's, such as 18 or 12002: its own number says more than the code of an older answer.
//
// Time-outs as in ftp_settings.h. Each thread has its own last error and last response; handles
// are the process's.
#pragma once

#include <kvarta16/platform/internet.h>
#include <kvarta16/platform/posix/ftp/handle_table.h>

namespace kvarta16::posix {

class PosixInternet final : public Internet {
  public:
    Long InternetOpenA(StringView agent, Long access_type, StringView proxy,
                       StringView proxy_bypass, Long flags) override;
    Long InternetConnectA(Long session, StringView server, Integer port, StringView user,
                          StringView password, Long service, Long flags, Long context) override;
    Long InternetCloseHandle(Long handle) override;
    Long FtpPutFileA(Long connection, StringView local_file, StringView remote_file, Long flags,
                     Long context) override;
    Long FtpGetFileA(Long connection, StringView remote_file, StringView local_file,
                     bool fail_if_exists, Long attributes, Long flags, Long& context) override;
    Long FtpOpenFileA(Long connection, StringView remote_file, Long access, Long flags,
                      Long context) override;
    Long InternetReadFile(Long file, std::span<Byte> buffer, Long& read) override;
    Long InternetWriteFile(Long file, std::span<const Byte> buffer, Long& written) override;
    Long FtpFindFirstFileA(Long connection, StringView pattern, WIN32_FIND_DATA& data, Long flags,
                           Long context) override;
    Long InternetFindNextFileA(Long find, WIN32_FIND_DATA& data) override;
    Long FtpGetCurrentDirectoryA(Long connection, String& buffer, Long& length) override;
    Long FtpSetCurrentDirectoryA(Long connection, StringView directory) override;
    Long FtpCreateDirectoryA(Long connection, StringView directory) override;
    Long FtpRemoveDirectoryA(Long connection, StringView directory) override;
    Long FtpDeleteFileA(Long connection, StringView file) override;
    Long FtpRenameFileA(Long connection, StringView existing, StringView renamed) override;
    Long InternetGetLastResponseInfoA(Long& error, String& text, Long& length) override;
    Long GetLastError() override;

  private:
    HandleTable handles_;
};

}  // namespace kvarta16::posix
