#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_files.h>
#include <kvarta16/platform/posix/posix_paths.h>

namespace kvarta16::posix {
namespace {

// ---- Failures -------------------------------------------------------------------------------

// Whether the folder that the last name of `native` stands in is there.
bool has_folder(std::string native) {
    while (native.size() > 1 && native.back() == '/') {
        native.pop_back();
    }
    native.erase(native.rfind('/') + 1);
    struct stat status {};
    return ::stat(native.c_str(), &status) == 0;
}

// What the system's error means to callers of the file operations.
struct Meaning {
    Long number;
    StringView words;
};

Meaning meaning_of(int system_error, const std::string& native) {
    switch (system_error) {
        case ENOENT:
            return has_folder(native) ? Meaning{error::file_not_found, u"File not found"}
                                      : Meaning{error::path_not_found, u"Path not found"};
        case ENOTDIR:
            return {error::path_not_found, u"Path not found"};
        case ENAMETOOLONG:
        case EINVAL:
        case ELOOP:
            return {error::bad_file_name, u"Bad file name"};
        case EBUSY:
        case ETXTBSY:
            return {error::permission_denied, u"Permission denied"};
        default:
            return {error::file_access, u"Path/File access error"};
    }
}

[[noreturn]] void fail_by(int system_error, StringView path, const std::string& native) {
    const Meaning meaning = meaning_of(system_error, native);
    const String reason = from_utf8(std::generic_category().message(system_error));
    throw Failure(meaning.number,
                  String(meaning.words) + u": " + String(path) + u" (" + reason + u")");
}

// ---- Attributes -----------------------------------------------------------------------------

bool is_in_group(gid_t group) {
    if (group == ::getegid()) {
        return true;
    }
    std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
    return count > 0 &&
           std::find(groups.begin(), groups.begin() + count, group) != groups.begin() + count;
}

bool is_read_only(const struct stat& status) {
    const mode_t mode = status.st_mode;
    if (::geteuid() == 0) {
        return (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
    }
    if (status.st_uid == ::geteuid()) {
        return (mode & S_IWUSR) == 0;
    }
    return (mode & (is_in_group(status.st_gid) ? S_IWGRP : S_IWOTH)) == 0;
}

// ---- Files in use ---------------------------------------------------------------------------

bool is_open_here(const struct stat& file) {
    std::error_code ignored;  // a descriptor may go while it is looked at
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
        struct stat open {};
        if (::stat(entry.path().c_str(), &open) == 0 && open.st_dev == file.st_dev &&
            open.st_ino == file.st_ino) {
            return true;
        }
    }
    return false;
}

// A line of the system's list of locks: "1: POSIX  ADVISORY  WRITE 3568 08:01:2867 0 EOF".
bool is_locked(const struct stat& file) {
    std::array<char, 64> wanted{};
    std::snprintf(wanted.data(), wanted.size(), "%02x:%02x:%llu", major(file.st_dev),
                  minor(file.st_dev), static_cast<unsigned long long>(file.st_ino));
    std::ifstream locks("/proc/locks");
    for (std::string word; locks >> word;) {
        if (word == wanted.data()) {
            return true;
        }
    }
    return false;
}

// Whether somebody works with a file, so that it is not to go away under them: this process has it
// open, or any process holds a lock on it. A process that merely has it open is not seen.
bool is_held(const struct stat& file) {
    return is_open_here(file) || is_locked(file);
}

// The last name of a path that may end with a separator; "" for the root.
std::string last_name(std::string native) {
    while (!native.empty() && native.back() == '/') {
        native.pop_back();
    }
    return native.substr(native.rfind('/') + 1);
}

}  // namespace

Long PosixFiles::GetAttr(StringView path) {
    const std::string native = native_path(path);
    struct stat status {};
    if (::stat(native.c_str(), &status) != 0) {
        fail_by(errno, path, native);
    }
    Long attributes = S_ISDIR(status.st_mode) ? file_attribute::directory : file_attribute::archive;
    if (is_read_only(status)) {
        attributes |= file_attribute::read_only;
    }
    if (last_name(native).starts_with('.')) {
        attributes |= file_attribute::hidden;
    }
    return attributes;
}

void PosixFiles::Kill(StringView path) {
    const std::string native = native_path(path);
    struct stat status {};
    if (::lstat(native.c_str(), &status) != 0) {
        fail_by(errno, path, native);
    }
    if (S_ISDIR(status.st_mode)) {
        fail_by(EISDIR, path, native);
    }
    if (!S_ISLNK(status.st_mode) && is_read_only(status)) {
        fail_by(EACCES, path, native);
    }
    if (S_ISREG(status.st_mode) && is_held(status)) {
        fail_by(EBUSY, path, native);
    }
    if (::unlink(native.c_str()) != 0) {
        fail_by(errno, path, native);
    }
}

std::string PosixFiles::native_path(StringView path) {
    return posix::native_path(path);
}

}  // namespace kvarta16::posix
