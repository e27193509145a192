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

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <support/fake_dao.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/internet.h>

namespace kvarta16::testing_support {

class FakeInternet final : public Internet {
  public:
    explicit FakeInternet(MemoryDisk& disk) : disk_(disk) {}

    // An entry of the listing, at the end; no more of the name than the record has room for.
    WIN32_FIND_DATA& list(StringView name, Long attributes = file_attribute::normal) {
        WIN32_FIND_DATA& entry = listing.emplace_back();
        entry.dwFileAttributes = attributes;
        std::copy_n(name.begin(), std::min(name.size(), entry.cFileName.size()),
                    entry.cFileName.begin());
        return entry;
    }
    WIN32_FIND_DATA& add(StringView name, std::string contents) {
        WIN32_FIND_DATA& entry = list(name);
        entry.nFileSizeLow = wrap32(static_cast<std::int64_t>(contents.size()));
        files[String(name)] = std::move(contents);
        return entry;
    }
    WIN32_FIND_DATA& add_folder(StringView name) { return list(name, file_attribute::directory); }

    // The handles that are open.
    [[nodiscard]] std::vector<Long> open_handles() const {
        std::vector<Long> handles;
        handles.reserve(handles_.size());
        for (const auto& [handle, kind] : handles_) {
            handles.push_back(handle);
        }
        return handles;
    }

    Long InternetOpenA(StringView agent, Long access_type, StringView proxy,
                       StringView proxy_bypass, Long flags) override {
        log("InternetOpenA",
            {text(agent), number(access_type), text(proxy), text(proxy_bypass), number(flags)});
        return new_handle({Kind::Session, {}, 0});
    }
    Long InternetConnectA(Long session, StringView server, Integer port, StringView user,
                          StringView password, Long service, Long flags, Long context) override {
        log("InternetConnectA", {number(session), text(server), number(port), text(user),
                                 text(password), number(service), number(flags), number(context)});
        if (!is(session, Kind::Session)) {
            return refuse(internet_error::invalid_handle);
        }
        return server.empty() ? refuse(internet_error::name_not_resolved)
                              : new_handle({Kind::Connection, {}, 0});
    }
    Long InternetCloseHandle(Long handle) override {
        log("InternetCloseHandle", {number(handle)});
        return handles_.erase(handle) > 0 ? 1 : refuse(internet_error::invalid_handle);
    }
    Long FtpPutFileA(Long connection, StringView local_file, StringView remote_file, Long flags,
                     Long context) override {
        log("FtpPutFileA", {number(connection), text(local_file), text(remote_file), number(flags),
                            number(context)});
        const MemoryDisk::Entry* entry = disk_.find(local_file);
        if (!is(connection, Kind::Connection) || entry == nullptr) {
            return refuse(internet_error::file_not_found);
        }
        files[String(remote_file)] = entry->contents;
        return flag_of_success;
    }
    Long FtpGetFileA(Long connection, StringView remote_file, StringView local_file,
                     bool fail_if_exists, Long attributes, Long flags, Long& context) override {
        log("FtpGetFileA",
            {number(connection), text(remote_file), text(local_file),
             number(fail_if_exists ? 1 : 0), number(attributes), number(flags), number(context)});
        const auto found = files.find(String(remote_file));
        if (!is(connection, Kind::Connection) || found == files.end()) {
            return refuse(internet_error::extended_error);
        }
        disk_.add(local_file, found->second);
        return flag_of_success;
    }
    Long FtpOpenFileA(Long connection, StringView remote_file, Long access, Long flags,
                      Long context) override {
        log("FtpOpenFileA", {number(connection), text(remote_file), number(access), number(flags),
                             number(context)});
        const bool is_read = access == internet::generic_read;
        if (!is(connection, Kind::Connection) ||
            (is_read && !files.contains(String(remote_file)))) {
            return refuse(internet_error::extended_error);
        }
        if (!is_read) {
            files[String(remote_file)].clear();
        }
        return new_handle({Kind::File, String(remote_file), 0});
    }
    Long InternetReadFile(Long file, std::span<Byte> buffer, Long& read) override {
        log("InternetReadFile", {number(file), size(buffer.size())});
        if (!is(file, Kind::File)) {
            return refuse(internet_error::invalid_handle);
        }
        Handle& handle = handles_.at(file);
        const std::string& bytes = files[handle.name];
        const std::size_t from = std::min(handle.position, bytes.size());
        const std::size_t count = std::min({buffer.size(), bytes.size() - from, most_read_at_once});
        for (std::size_t i = 0; i < count; ++i) {
            buffer[i] = static_cast<Byte>(bytes[from + i]);
        }
        handle.position += count;
        read = static_cast<Long>(count);
        return flag_of_success;
    }
    Long InternetWriteFile(Long file, std::span<const Byte> buffer, Long& written) override {
        log("InternetWriteFile", {number(file), size(buffer.size())});
        if (!is(file, Kind::File)) {
            return refuse(internet_error::invalid_handle);
        }
        std::string& bytes = files[handles_.at(file).name];
        for (const Byte byte : buffer) {
            bytes += static_cast<char>(byte);
        }
        written = told_written.value_or(static_cast<Long>(buffer.size()));
        return flag_of_success;
    }
    Long FtpFindFirstFileA(Long connection, StringView pattern, WIN32_FIND_DATA& data, Long flags,
                           Long context) override {
        log("FtpFindFirstFileA",
            {number(connection), text(pattern), number(flags), number(context)});
        if (!is(connection, Kind::Connection)) {
            return refuse(internet_error::invalid_handle);
        }
        const Long find = new_handle({Kind::Find, upper_case(pattern), 0});
        if (!next_entry(handles_.at(find), data)) {
            handles_.erase(find);
            return refuse(internet_error::no_more_files);
        }
        return find;
    }
    Long InternetFindNextFileA(Long find, WIN32_FIND_DATA& data) override {
        log("InternetFindNextFileA", {number(find)});
        if (!is(find, Kind::Find)) {
            return refuse(internet_error::invalid_handle);
        }
        return next_entry(handles_.at(find), data) ? flag_of_success
                                                   : refuse(internet_error::no_more_files);
    }
    Long FtpGetCurrentDirectoryA(Long connection, String& buffer, Long& length) override {
        log("FtpGetCurrentDirectoryA", {number(connection), size(buffer.size()), number(length)});
        if (!is(connection, Kind::Connection)) {
            return refuse(internet_error::invalid_handle);
        }
        std::copy_n(directory.begin(), std::min(directory.size(), buffer.size()), buffer.begin());
        length = static_cast<Long>(directory.size());
        return flag_of_success;
    }
    Long FtpSetCurrentDirectoryA(Long connection, StringView wanted) override {
        return command("FtpSetCurrentDirectoryA", connection, {text(wanted)});
    }
    Long FtpCreateDirectoryA(Long connection, StringView wanted) override {
        return command("FtpCreateDirectoryA", connection, {text(wanted)});
    }
    Long FtpRemoveDirectoryA(Long connection, StringView wanted) override {
        return command("FtpRemoveDirectoryA", connection, {text(wanted)});
    }
    Long FtpDeleteFileA(Long connection, StringView file) override {
        return command("FtpDeleteFileA", connection, {text(file)});
    }
    Long FtpRenameFileA(Long connection, StringView existing, StringView renamed) override {
        return command("FtpRenameFileA", connection, {text(existing), text(renamed)});
    }
    Long InternetGetLastResponseInfoA(Long& error, String& text, Long& length) override {
        log("InternetGetLastResponseInfoA", {number(error), size(text.size()), number(length)});
        const auto needed = static_cast<Long>(response.size());
        const bool fits = length >= needed;
        length = needed;
        error = response_code.value_or(error);
        if (fits) {
            std::copy(response.begin(), response.end(), text.begin());
        }
        return fits ? 1 : 0;
    }
    Long GetLastError() override {
        log("GetLastError", {});
        return last_error;
    }

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

    static std::string text(StringView value) { return to_utf8(value); }
    static std::string number(Long value) { return std::to_string(value); }
    static std::string size(std::size_t value) { return std::to_string(value); }

    void log(std::string call, const std::vector<std::string>& arguments) {
        call += "(";
        for (std::size_t i = 0; i < arguments.size(); ++i) {
            call += (i > 0 ? "; " : "") + arguments[i];
        }
        disk_.log.push_back(call + ")");
    }
    Long refuse(Long error) {
        last_error = error;
        return 0;
    }
    Long new_handle(Handle handle) {
        handles_[next_handle_] = std::move(handle);
        return next_handle_++;
    }
    [[nodiscard]] bool is(Long handle, Kind kind) const {
        const auto found = handles_.find(handle);
        return found != handles_.end() && found->second.kind == kind;
    }
    Long command(const std::string& name, Long connection, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), number(connection));
        log(name, arguments);
        return is(connection, Kind::Connection) ? flag_of_success
                                                : refuse(internet_error::invalid_handle);
    }
    bool next_entry(Handle& find, WIN32_FIND_DATA& data) {
        for (; find.position < listing.size(); ++find.position) {
            const WIN32_FIND_DATA& entry = listing[find.position];
            const StringView name(entry.cFileName.data(), entry.cFileName.size());
            if (matches_pattern(upper_case(name.substr(0, name.find(u'\0'))), find.name)) {
                data = entry;
                ++find.position;
                return true;
            }
        }
        return false;
    }

    MemoryDisk& disk_;
    std::map<Long, Handle> handles_;
    Long next_handle_ = 1;
};

}  // namespace kvarta16::testing_support
