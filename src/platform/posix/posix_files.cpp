#include <cerrno>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/file_copy.h>
#include <kvarta16/platform/posix/files_in_use.h>
#include <kvarta16/platform/posix/folder_listing.h>
#include <kvarta16/platform/posix/name_pattern.h>
#include <kvarta16/platform/posix/posix_files.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_status.h>

namespace kvarta16::posix {
namespace {

// ---- Deletion -------------------------------------------------------------------------------

// Removes one name from a folder, of which `status` tells without following a link.
void remove_name(int folder, const std::string& name, const struct stat& status,
                 const FilesInUse& in_use, const std::string& native) {
    const bool is_link = S_ISLNK(status.st_mode);
    if (S_ISDIR(status.st_mode) || (!is_link && Caller().may_only_read(status))) {
        throw Failure(error::file_access);
    }
    if (S_ISREG(status.st_mode) && in_use.contains(status)) {
        throw Failure(error::permission_denied);
    }
    if (::unlinkat(folder, name.c_str(), 0) != 0) {
        fail_by(errno, native);
    }
}

void kill_one(const std::string& native) {
    struct stat status {};
    if (::lstat(native.c_str(), &status) != 0) {
        fail_by(errno, native);
    }
    remove_name(AT_FDCWD, native, status, FilesInUse(), native);
}

bool leads_to_folder(int folder, const std::string& name) {
    struct stat status {};
    return ::fstatat(folder, name.c_str(), &status, 0) == 0 && S_ISDIR(status.st_mode);
}

// Listed whole before the first file goes: a folder that changes under a listing may be told
// anyhow.
void kill_matching(StringView folder_path, StringView pattern_text) {
    const std::string native = native_path(folder_path);
    FolderListing folder(native);
    if (!folder.is_open()) {
        throw Failure(folder.error() == ENOENT ? error::path_not_found
                                               : failure_number(folder.error(), native));
    }
    const NamePattern pattern(pattern_text);
    std::vector<std::string> names;
    while (const dirent* const entry = folder.next()) {
        const std::string name = entry->d_name;
        if (pattern.matches(from_utf8(name)) && !leads_to_folder(folder.descriptor(), name)) {
            names.push_back(name);
        }
    }
    if (names.empty()) {
        throw Failure(error::file_not_found);
    }
    const FilesInUse in_use;
    for (const std::string& name : names) {
        const std::string path = std::string(native).append("/").append(name);
        struct stat status {};
        if (::fstatat(folder.descriptor(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            fail_by(errno, path);
        }
        remove_name(folder.descriptor(), name, status, in_use, path);
    }
}

// ---- Renaming -------------------------------------------------------------------------------

bool is_in_use(const struct stat& status) {
    return S_ISREG(status.st_mode) && FilesInUse().contains(status);
}

bool is_there(const std::string& native) {
    struct stat status {};
    return ::lstat(native.c_str(), &status) == 0;
}

// A link is made anew, a file is copied; nothing else can go to another file system.
void move_across(const struct stat& status, const std::string& from, const std::string& to) {
    if (S_ISDIR(status.st_mode)) {
        throw Failure(error::different_drive);
    }
    if (S_ISLNK(status.st_mode)) {
        std::vector<char> goal(static_cast<std::size_t>(status.st_size) + 1);
        const ssize_t length = ::readlink(from.c_str(), goal.data(), goal.size());
        if (length < 0 ||
            ::symlink(std::string(goal.data(), static_cast<std::size_t>(length)).c_str(),
                      to.c_str()) != 0) {
            fail_by(errno, from);
        }
    } else {
        copy_to_new(from, to);
    }
    if (::unlink(from.c_str()) != 0) {
        const int error = errno;
        ::unlink(to.c_str());
        fail_by(error, from);
    }
}

}  // namespace

Long PosixFiles::GetAttr(StringView path) {
    const std::string native = native_path(path);
    struct stat status {};
    if (::stat(native.c_str(), &status) != 0) {
        fail_by(errno, native);
    }
    return Caller().attributes(status, last_name(native));
}

void PosixFiles::Kill(StringView path) {
    const SplitPath parts = split_last_name(path);
    if (NamePattern::has_wildcards(parts.name)) {
        kill_matching(parts.folder, parts.name);
    } else {
        kill_one(native_path(path));
    }
}

void PosixFiles::Name(StringView old_path, StringView new_path) {
    require_new_name(new_path);
    const Location from = located(old_path);
    const Location to = located(new_path);
    struct stat status {};
    if (::lstat(from.native.c_str(), &status) != 0) {
        fail_by(errno, from.native);
    }
    const bool changes_case = from.native == to.native && from.native != to.native_as_new;
    if (is_there(to.native) && !changes_case) {
        throw Failure(error::file_exists);
    }
    if (from.is_root) {
        throw Failure(error::file_access);
    }
    if (is_in_use(status)) {
        throw Failure(error::permission_denied);
    }
    if (S_ISDIR(status.st_mode) && from.drive != to.drive) {
        throw Failure(error::different_drive);
    }
    const int error = rename_to_new(from.native, to.native_as_new);
    if (error == EXDEV) {
        move_across(status, from.native, to.native);
    } else if (error == EEXIST) {
        throw Failure(error::file_exists);
    } else if (error == ENOENT) {
        throw Failure(error::path_not_found);
    } else if (error == EINVAL) {  // a folder into itself
        throw Failure(error::file_access);
    } else if (error != 0) {
        fail_by(error, to.native);
    }
}

void PosixFiles::MkDir(StringView path) {
    constexpr mode_t everybody = 0777;  // less what the process's mask takes away
    require_new_name(path);
    const std::string native = native_path(path);
    if (::mkdir(native.c_str(), everybody) == 0) {
        return;
    }
    switch (errno) {
        case ENOENT:
        case ENOTDIR:
            throw Failure(error::path_not_found);
        case ENAMETOOLONG:
            throw Failure(error::bad_file_name);
        default:
            throw Failure(error::file_access);
    }
}

void PosixFiles::ChDrive(StringView path) {
    if (path.size() >= 2 && path[1] == u':') {
        change_drive(path.front());
    }
}

void PosixFiles::ChDir(StringView path) {
    change_directory(path);
}

void PosixFiles::FileCopy(StringView source, StringView target) {
    require_new_name(target);
    copy_over(native_path(source), native_path(target));
}

String PosixFiles::CurDir() {
    return current_directory();
}

std::string PosixFiles::native_path(StringView path) {
    return posix::native_path(path);
}

}  // namespace kvarta16::posix
