// An FTP server in memory behind the seam of the internet: what stands on it is put there by the
// test, and each call is written with all its arguments into the log of the disk, among those of
// the local files.
//
//   MemoryDisk disk;
//   FakeInternet internet(disk);
//   internet.add(u"cennik.txt", "abc");     // a file, in the listing too
//   internet.add_folder(u"faktury");
//
// Handles count from 1. A login is anybody's; a server without a name does not exist. To have calls
// fail, put a fault plan before them (kvarta16/platform/forwarding.h).
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <support/fake_dao.h>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/internet.h>

namespace kvarta16::testing_support {

class FakeInternet final : public Internet {
  public:
    explicit FakeInternet(MemoryDisk& disk);
    ~FakeInternet() override;

    // An entry of the listing, at the end; no more of the name than the record has room for.
    WIN32_FIND_DATA& list(StringView name, Long attributes = file_attribute::normal);
    WIN32_FIND_DATA& add(StringView name, std::string contents);
    WIN32_FIND_DATA& add_folder(StringView name);

    // The handles that are open.
    [[nodiscard]] std::vector<Long> open_handles() const;

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
    Long FtpSetCurrentDirectoryA(Long connection, StringView wanted) override;
    Long FtpCreateDirectoryA(Long connection, StringView wanted) override;
    Long FtpRemoveDirectoryA(Long connection, StringView wanted) override;
    Long FtpDeleteFileA(Long connection, StringView file) override;
    Long FtpRenameFileA(Long connection, StringView existing, StringView renamed) override;
    Long InternetGetLastResponseInfoA(Long& error, String& text, Long& length) override;
    Long GetLastError() override;

    std::map<String, std::string> files;
    std::vector<WIN32_FIND_DATA> listing;
    String directory = u"/";
    std::size_t most_read_at_once = 1 << 20;
    std::optional<Long> told_written;  // where it is not the count of the bytes
    Long flag_of_success = 1;
    String response;
    std::optional<Long> response_code;  // none: the error stays
    Long last_error = 0;

  private:
    enum class Kind : unsigned char { Session, Connection, File, Find };
    struct Handle {
        Kind kind = Kind::Session;
        String name;               // of a file; the pattern of a search
        std::size_t position = 0;  // in the file, in the listing
    };

    static std::string text(StringView value);
    static std::string number(Long value);
    static std::string size(std::size_t value);

    void log(std::string call, const std::vector<std::string>& arguments);
    Long refuse(Long error);
    Long new_handle(Handle handle);
    [[nodiscard]] bool is(Long handle, Kind kind) const;
    Long command(const std::string& name, Long connection, std::vector<std::string> arguments);
    bool next_entry(Handle& find, WIN32_FIND_DATA& data);

    MemoryDisk& disk_;
    std::map<Long, Handle> handles_;
    Long next_handle_ = 1;
};

}  // namespace kvarta16::testing_support
