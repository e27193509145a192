#include <algorithm>
#include <cerrno>

#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/posix_status.h>

namespace kvarta16::posix {

Long failure_number(int system_error, const std::string& native) {
    switch (system_error) {
        case ENOENT: {
            struct stat status {};
            return ::stat(folder_of(native).c_str(), &status) == 0 ? error::file_not_found
                                                                   : error::path_not_found;
        }
        case ENOTDIR:
            return error::path_not_found;
        case ENAMETOOLONG:
        case EINVAL:
        case ELOOP:
            return error::bad_file_name;
        case EBUSY:
        case ETXTBSY:
            return error::permission_denied;
        case EMFILE:
        case ENFILE:
            return error::too_many_files;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return error::disk_full;
        case EIO:
            return error::device_io;
        default:
            return error::file_access;
    }
}

void fail_by(int system_error, const std::string& native) {
    throw Failure(failure_number(system_error, native));
}

Caller::Caller() : user_(::geteuid()) {
    groups_.resize(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
    const int count = ::getgroups(static_cast<int>(groups_.size()), groups_.data());
    groups_.resize(static_cast<std::size_t>(std::max(count, 0)));
    groups_.push_back(::getegid());
}

bool Caller::may_only_read(mode_t mode, uid_t owner, gid_t group) const {
    if (user_ == 0) {
        return (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
    }
    if (owner == user_) {
        return (mode & S_IWUSR) == 0;
    }
    const bool is_in_group = std::ranges::find(groups_, group) != groups_.end();
    return (mode & (is_in_group ? S_IWGRP : S_IWOTH)) == 0;
}

Long Caller::attributes(mode_t mode, uid_t owner, gid_t group, std::string_view name) const {
    Long sum = S_ISDIR(mode) ? file_attribute::directory : file_attribute::archive;
    if (may_only_read(mode, owner, group)) {
        sum |= file_attribute::read_only;
    }
    if (name.starts_with('.') && name != "." && name != "..") {
        sum |= file_attribute::hidden;
    }
    return sum;
}

std::string last_name(std::string native) {
    native.resize(native.find_last_not_of('/') + 1);
    return native.substr(native.rfind('/') + 1);
}

std::string folder_of(std::string native) {
    native.resize(native.find_last_not_of('/') + 1);
    native.resize(native.rfind('/') + 1);
    return native.empty() ? "/" : native;
}

}  // namespace kvarta16::posix
