#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/file_copy.h>
#include <kvarta16/platform/posix/files_in_use.h>
#include <kvarta16/platform/posix/posix_descriptor.h>
#include <kvarta16/platform/posix/posix_file_table.h>
#include <kvarta16/platform/posix/posix_status.h>

namespace kvarta16::posix {
namespace {

constexpr std::size_t block_size = 1 << 20;
constexpr mode_t permission_bits = 0777;

// ---- Bytes ----------------------------------------------------------------------------------

void write_all(int to, const char* bytes, std::size_t count, const std::string& name) {
    while (count > 0) {
        const ssize_t written = ::write(to, bytes, count);
        if (written < 0 && errno != EINTR) {
            fail_by(errno, name);
        }
        if (written > 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        }
    }
}

void copy_bytes(int from, const std::string& source, int to, const std::string& target) {
    std::vector<char> block(block_size);
    for (;;) {
        const ssize_t count = ::read(from, block.data(), block.size());
        if (count == 0) {
            return;
        }
        if (count < 0 && errno != EINTR) {
            fail_by(errno, source);
        }
        if (count > 0) {
            write_all(to, block.data(), static_cast<std::size_t>(count), target);
        }
    }
}

// ---- The source -----------------------------------------------------------------------------

struct Source {
    Descriptor file;
    struct stat status {};
    std::string name;
};

// A pipe would keep the caller waiting, a device may never end.
Source opened_source(const std::string& name) {
    Source source;
    source.name = name;
    source.file = Descriptor(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!source.file.is_open() || ::fstat(source.file.value(), &source.status) != 0) {
        fail_by(errno, name);
    }
    if (!S_ISREG(source.status.st_mode)) {
        throw Failure(error::file_access);
    }
    struct flock writer {};
    writer.l_type = F_RDLCK;
    writer.l_whence = SEEK_SET;
    const bool is_written =
        ::fcntl(source.file.value(), F_OFD_GETLK, &writer) == 0 && writer.l_type != F_UNLCK;
    if (is_written || is_in_file_table(identity_of(source.status))) {
        throw Failure(error::permission_denied);
    }
    return source;
}

// ---- The copy beside the target -------------------------------------------------------------

// A name that nobody else takes.
std::string name_of_new_file(const std::string& folder) {
    static std::atomic<unsigned> made = 0;
    return folder + ".kvarta16-" + std::to_string(::getpid()) + '-' + std::to_string(++made);
}

// A new file in a folder, under a name of its own until it is given another; removed otherwise.
class NewFile {
  public:
    // The process's mask takes its part of `mode` away.
    NewFile(const std::string& target, mode_t mode)
        : name_(name_of_new_file(folder_of(target))),
          file_(::open(name_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                       mode & permission_bits)) {
        if (!file_.is_open()) {
            fail_by(errno, target);
        }
    }
    ~NewFile() {
        if (!is_named_) {
            ::unlink(name_.c_str());
        }
    }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    NewFile(NewFile&&) = delete;
    NewFile& operator=(NewFile&&) = delete;

    // Whatever the mask says.
    void set_mode(mode_t mode, const std::string& target) const {
        if (::fchmod(file_.value(), mode & permission_bits) != 0) {
            fail_by(errno, target);
        }
    }

    // All of the source, with its time of the last writing.
    void fill(const Source& source, const std::string& target) {
        copy_bytes(source.file.value(), source.name, file_.value(), target);
        const timespec times[] = {source.status.st_atim, source.status.st_mtim};
        if (::futimens(file_.value(), times) != 0) {
            fail_by(errno, target);
        }
        if (const int error = file_.close(); error != 0) {
            fail_by(error, target);
        }
    }

    void take_name(const std::string& target, bool replaces) {
        const int error = replaces ? (::rename(name_.c_str(), target.c_str()) == 0 ? 0 : errno)
                                   : rename_to_new(name_, target);
        if (error == EEXIST) {
            throw Failure(error::file_exists);
        }
        if (error != 0) {
            fail_by(error, target);
        }
        is_named_ = true;
    }

  private:
    std::string name_;
    Descriptor file_;
    bool is_named_ = false;
};

// ---- The target -----------------------------------------------------------------------------

void copy_to_device(const Source& source, const std::string& target) {
    const Descriptor device(::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!device.is_open()) {
        fail_by(errno, target);
    }
    copy_bytes(source.file.value(), source.name, device.value(), target);
}

void require_replaceable(const struct stat& target, const Source& source) {
    if (!S_ISREG(target.st_mode) || Caller().may_only_read(target)) {
        throw Failure(error::file_access);
    }
    const FileIdentity identity = identity_of(target);
    if (identity == identity_of(source.status) || FilesInUse().contains(target)) {
        throw Failure(error::permission_denied);
    }
}

// What a name leads to through symbolic links.
std::string resolved(const std::string& name) {
    const std::unique_ptr<char, decltype(&std::free)> path(::realpath(name.c_str(), nullptr),
                                                           &std::free);
    if (path == nullptr) {
        fail_by(errno, name);
    }
    return path.get();
}

}  // namespace

void copy_over(const std::string& source_name, const std::string& target) {
    const Source source = opened_source(source_name);
    struct stat old {};
    if (::stat(target.c_str(), &old) != 0) {
        const int error = errno;
        struct stat link {};
        const bool is_dangling = ::lstat(target.c_str(), &link) == 0 && S_ISLNK(link.st_mode);
        if (error != ENOENT || target.ends_with('/') || is_dangling) {
            throw Failure(error == ENOTDIR ? error::path_not_found : error::file_access);
        }
        NewFile copy(target, source.status.st_mode);
        copy.fill(source, target);
        copy.take_name(target, true);
    } else if (S_ISCHR(old.st_mode)) {
        copy_to_device(source, target);
    } else {
        require_replaceable(old, source);
        const std::string name = resolved(target);
        NewFile copy(name, old.st_mode);
        copy.set_mode(old.st_mode, name);
        copy.fill(source, name);
        copy.take_name(name, true);
    }
}

void copy_to_new(const std::string& source_name, const std::string& target) {
    const Source source = opened_source(source_name);
    NewFile copy(target, source.status.st_mode);
    copy.set_mode(source.status.st_mode, target);
    copy.fill(source, target);
    copy.take_name(target, false);
}

int rename_to_new(const std::string& old_name, const std::string& new_name) {
    if (::renameat2(AT_FDCWD, old_name.c_str(), AT_FDCWD, new_name.c_str(), RENAME_NOREPLACE) ==
        0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return errno;
    }
    // A file system that cannot look and rename in one step.
    struct stat status {};
    if (::lstat(new_name.c_str(), &status) == 0) {
        return EEXIST;
    }
    return ::rename(old_name.c_str(), new_name.c_str()) == 0 ? 0 : errno;
}

}  // namespace kvarta16::posix
