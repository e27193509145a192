#include <algorithm>
#include <utility>

#include <support/fake_internet.h>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>

namespace kvarta16::testing_support {

FakeInternet::FakeInternet(MemoryDisk& disk) : disk_(disk) {}

FakeInternet::~FakeInternet() = default;

WIN32_FIND_DATA& FakeInternet::list(StringView name, Long attributes) {
    WIN32_FIND_DATA& entry = listing.emplace_back();
    entry.dwFileAttributes = attributes;
    std::copy_n(name.begin(), std::min(name.size(), entry.cFileName.size()),
                entry.cFileName.begin());
    return entry;
}

WIN32_FIND_DATA& FakeInternet::add(StringView name, std::string contents) {
    WIN32_FIND_DATA& entry = list(name);
    entry.nFileSizeLow = wrap32(static_cast<std::int64_t>(contents.size()));
    files[String(name)] = std::move(contents);
    return entry;
}

WIN32_FIND_DATA& FakeInternet::add_folder(StringView name) {
    return list(name, file_attribute::directory);
}

std::vector<Long> FakeInternet::open_handles() const {
    std::vector<Long> handles;
    handles.reserve(handles_.size());
    for (const auto& [handle, kind] : handles_) {
        handles.push_back(handle);
    }
    return handles;
}

Long FakeInternet::InternetOpenA(StringView agent, Long access_type, StringView proxy,
                                 StringView proxy_bypass, Long flags) {
    log("InternetOpenA",
        {text(agent), number(access_type), text(proxy), text(proxy_bypass), number(flags)});
    return new_handle({Kind::Session, {}, 0});
}

Long FakeInternet::InternetConnectA(Long session, StringView server, Integer port, StringView user,
                                    StringView password, Long service, Long flags, Long context) {
    log("InternetConnectA", {number(session), text(server), number(port), text(user),
                             text(password), number(service), number(flags), number(context)});
    if (!is(session, Kind::Session)) {
        return refuse(internet_error::invalid_handle);
    }
    return server.empty() ? refuse(internet_error::name_not_resolved)
                          : new_handle({Kind::Connection, {}, 0});
}

Long FakeInternet::InternetCloseHandle(Long handle) {
    log("InternetCloseHandle", {number(handle)});
    return handles_.erase(handle) > 0 ? 1 : refuse(internet_error::invalid_handle);
}

Long FakeInternet::FtpPutFileA(Long connection, StringView local_file, StringView remote_file,
                               Long flags, Long context) {
    log("FtpPutFileA",
        {number(connection), text(local_file), text(remote_file), number(flags), number(context)});
    const MemoryDisk::Entry* entry = disk_.find(local_file);
    if (!is(connection, Kind::Connection) || entry == nullptr) {
        return refuse(internet_error::file_not_found);
    }
    files[String(remote_file)] = entry->contents;
    return flag_of_success;
}

Long FakeInternet::FtpGetFileA(Long connection, StringView remote_file, StringView local_file,
                               bool fail_if_exists, Long attributes, Long flags, Long& context) {
    log("FtpGetFileA",
        {number(connection), text(remote_file), text(local_file), number(fail_if_exists ? 1 : 0),
         number(attributes), number(flags), number(context)});
    const auto found = files.find(String(remote_file));
    if (!is(connection, Kind::Connection) || found == files.end()) {
        return refuse(internet_error::extended_error);
    }
    disk_.add(local_file, found->second);
    return flag_of_success;
}

Long FakeInternet::FtpOpenFileA(Long connection, StringView remote_file, Long access, Long flags,
                                Long context) {
    log("FtpOpenFileA",
        {number(connection), text(remote_file), number(access), number(flags), number(context)});
    const bool is_read = access == internet::generic_read;
    if (!is(connection, Kind::Connection) || (is_read && !files.contains(String(remote_file)))) {
        return refuse(internet_error::extended_error);
    }
    if (!is_read) {
        files[String(remote_file)].clear();
    }
    return new_handle({Kind::File, String(remote_file), 0});
}

Long FakeInternet::InternetReadFile(Long file, std::span<Byte> buffer, Long& read) {
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

Long FakeInternet::InternetWriteFile(Long file, std::span<const Byte> buffer, Long& written) {
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

Long FakeInternet::FtpFindFirstFileA(Long connection, StringView pattern, WIN32_FIND_DATA& data,
                                     Long flags, Long context) {
    log("FtpFindFirstFileA", {number(connection), text(pattern), number(flags), number(context)});
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

Long FakeInternet::InternetFindNextFileA(Long find, WIN32_FIND_DATA& data) {
    log("InternetFindNextFileA", {number(find)});
    if (!is(find, Kind::Find)) {
        return refuse(internet_error::invalid_handle);
    }
    return next_entry(handles_.at(find), data) ? flag_of_success
                                               : refuse(internet_error::no_more_files);
}

Long FakeInternet::FtpGetCurrentDirectoryA(Long connection, String& buffer, Long& length) {
    log("FtpGetCurrentDirectoryA", {number(connection), size(buffer.size()), number(length)});
    if (!is(connection, Kind::Connection)) {
        return refuse(internet_error::invalid_handle);
    }
    std::copy_n(directory.begin(), std::min(directory.size(), buffer.size()), buffer.begin());
    length = static_cast<Long>(directory.size());
    return flag_of_success;
}

Long FakeInternet::FtpSetCurrentDirectoryA(Long connection, StringView wanted) {
    return command("FtpSetCurrentDirectoryA", connection, {text(wanted)});
}

Long FakeInternet::FtpCreateDirectoryA(Long connection, StringView wanted) {
    return command("FtpCreateDirectoryA", connection, {text(wanted)});
}

Long FakeInternet::FtpRemoveDirectoryA(Long connection, StringView wanted) {
    return command("FtpRemoveDirectoryA", connection, {text(wanted)});
}

Long FakeInternet::FtpDeleteFileA(Long connection, StringView file) {
    return command("FtpDeleteFileA", connection, {text(file)});
}

Long FakeInternet::FtpRenameFileA(Long connection, StringView existing, StringView renamed) {
    return command("FtpRenameFileA", connection, {text(existing), text(renamed)});
}

Long FakeInternet::InternetGetLastResponseInfoA(Long& error, String& text, Long& length) {
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

Long FakeInternet::GetLastError() {
    log("GetLastError", {});
    return last_error;
}

std::string FakeInternet::text(StringView value) {
    return to_utf8(value);
}

std::string FakeInternet::number(Long value) {
    return std::to_string(value);
}

std::string FakeInternet::size(std::size_t value) {
    return std::to_string(value);
}

void FakeInternet::log(std::string call, const std::vector<std::string>& arguments) {
    call += "(";
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        call += (i > 0 ? "; " : "") + arguments[i];
    }
    disk_.log.push_back(call + ")");
}

Long FakeInternet::refuse(Long error) {
    last_error = error;
    return 0;
}

Long FakeInternet::new_handle(Handle handle) {
    handles_[next_handle_] = std::move(handle);
    return next_handle_++;
}

bool FakeInternet::is(Long handle, Kind kind) const {
    const auto found = handles_.find(handle);
    return found != handles_.end() && found->second.kind == kind;
}

Long FakeInternet::command(const std::string& name, Long connection,
                           std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), number(connection));
    log(name, arguments);
    return is(connection, Kind::Connection) ? flag_of_success
                                            : refuse(internet_error::invalid_handle);
}

bool FakeInternet::next_entry(Handle& find, WIN32_FIND_DATA& data) {
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

}  // namespace kvarta16::testing_support
