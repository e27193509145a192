#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/ftp/ftp_error.h>
#include <kvarta16/platform/posix/ftp/local_file.h>
#include <kvarta16/platform/posix/posix_paths.h>

namespace kvarta16::posix {
namespace {

constexpr mode_t new_file_mode = 0666;
constexpr mode_t protected_mode = 0444;

std::string native(StringView path, LocalFile::Use use) {
    try {
        if (use != LocalFile::Use::read) {
            require_new_name(path);
        }
        return platform().files->native_path(path);
    } catch (const Failure& failure) {
        throw FtpError(failure.number() == error::path_not_found ? internet_error::path_not_found
                       : failure.number() == error::file_not_found
                           ? internet_error::file_not_found
                           : internet_error::invalid_parameter);
    }
}

// The folder that a path's last name stands in.
std::string folder_of(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

[[noreturn]] void fail_by(int system_error, const std::string& path) {
    struct stat status {};
    switch (system_error) {
        case ENOENT:
            throw FtpError(::stat(folder_of(path).c_str(), &status) == 0
                               ? internet_error::file_not_found
                               : internet_error::path_not_found);
        case ENOTDIR:
            throw FtpError(internet_error::path_not_found);
        case EEXIST:
            throw FtpError(internet_error::file_exists);
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            throw FtpError(internet_error::disk_full);
        case ENAMETOOLONG:
        case EINVAL:
            throw FtpError(internet_error::invalid_parameter);
        default:
            throw FtpError(internet_error::access_denied);
    }
}

int flags_of(LocalFile::Use use) {
    constexpr int always = O_CLOEXEC | O_NONBLOCK;  // a pipe without another end is not waited for
    switch (use) {
        case LocalFile::Use::read:
            return O_RDONLY | always;
        case LocalFile::Use::write_new:
            return O_WRONLY | O_CREAT | O_EXCL | always;
        case LocalFile::Use::write:
            return O_WRONLY | O_CREAT | O_TRUNC | always;
    }
    return always;
}

}  // namespace

LocalFile::LocalFile(StringView path, Use use)
    : path_(native(path, use)), file_(::open(path_.c_str(), flags_of(use), new_file_mode)) {
    if (file_ < 0) {
        fail_by(errno, path_);
    }
    struct stat status {};
    if (::fstat(file_, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(std::exchange(file_, -1));
        throw FtpError(internet_error::access_denied);
    }
}

LocalFile::~LocalFile() {
    if (file_ >= 0) {
        ::close(file_);
    }
}

std::size_t LocalFile::read(std::span<char> buffer) {
    for (;;) {
        const ssize_t count = ::read(file_, buffer.data(), buffer.size());
        if (count >= 0) {
            return static_cast<std::size_t>(count);
        }
        if (errno != EINTR) {
            fail_by(errno, path_);
        }
    }
}

void LocalFile::write(std::span<const char> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file_, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            fail_by(errno, path_);
        }
    }
}

void LocalFile::protect() {
    if (::fchmod(file_, protected_mode) != 0) {
        fail_by(errno, path_);
    }
}

void LocalFile::close() {
    if (::close(std::exchange(file_, -1)) != 0 && errno != EINTR) {
        fail_by(errno, path_);
    }
}

void expect_writable(StringView path, LocalFile::Use use) {
    const std::string target = native(path, use);
    struct stat status {};
    if (::stat(target.c_str(), &status) == 0) {
        if (use == LocalFile::Use::write_new) {
            throw FtpError(internet_error::file_exists);
        }
        if (!S_ISREG(status.st_mode)) {
            throw FtpError(internet_error::access_denied);
        }
        if (::access(target.c_str(), W_OK) == 0) {
            return;
        }
    } else if (errno == ENOENT && ::access(folder_of(target).c_str(), W_OK) == 0) {
        return;
    }
    fail_by(errno, target);
}

}  // namespace kvarta16::posix
