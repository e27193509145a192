#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <fcntl.h>
#include <unistd.h>

#include <kvarta16/platform/posix/posix_descriptor.h>
#include <kvarta16/platform/posix/posix_status.h>
#include <kvarta16/platform/posix/registry/registry_file.h>
#include <kvarta16/platform/posix/registry/registry_text.h>

namespace kvarta16::posix::registry {
namespace {

constexpr std::int64_t ns_per_second = 1'000'000'000;

// Two contents written within a tick of the file system's clock can bear one stamp.
constexpr std::int64_t settling_ns = 100'000'000;

std::int64_t nanoseconds(const timespec& time) {
    return time.tv_sec * ns_per_second + time.tv_nsec;
}

std::int64_t now_ns() {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return nanoseconds(now);
}

Long status_of(int system_error, Long otherwise) {
    const bool is_refused =
        system_error == EACCES || system_error == EPERM || system_error == EROFS;
    return is_refused ? registry_status::access_denied : otherwise;
}
Long write_status() {
    return status_of(errno, registry_status::write_fault);
}

// Repeated where a signal has ended it early.
template <class Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

bool read_all(int file, std::string& bytes) {
    std::array<char, 65536> buffer{};
    for (;;) {
        const ssize_t count =
            uninterrupted([&] { return ::read(file, buffer.data(), buffer.size()); });
        if (count <= 0) {
            return count == 0;
        }
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

bool write_all(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count =
            uninterrupted([&] { return ::write(file, bytes.data(), bytes.size()); });
        if (count < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

// The file that a symbolic link leads to: the link stays.
std::string target_of(const std::string& path) {
    char* const resolved = ::realpath(path.c_str(), nullptr);
    std::string target = resolved == nullptr ? path : resolved;
    std::free(resolved);  // NOLINT(cppcoreguidelines-no-malloc): how realpath gives it
    return target;
}

// What the superuser makes in somebody's folder is to be that person's: who runs one program with
// greater rights would otherwise be shut out of the own settings by it.
void give_to_owner_of_folder(const std::string& name) {
    struct stat folder {};
    if (::geteuid() == 0 && ::stat(folder_of(name).c_str(), &folder) == 0) {
        static_cast<void>(::lchown(name.c_str(), folder.st_uid, folder.st_gid));
    }
}

bool make_folders(const std::string& folder, mode_t mode) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) == 0) {
        return true;
    }
    if (errno != ENOENT || !make_folders(folder_of(folder), mode)) {
        return false;
    }
    if (::mkdir(folder.c_str(), mode) != 0) {
        return errno == EEXIST;
    }
    give_to_owner_of_folder(folder);
    return true;
}

// Waits for its turn. Not open where it could not be had; errno then tells why.
Descriptor locked(const std::string& name, mode_t mode) {
    Descriptor lock(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, mode));
    if (!lock.is_open()) {
        return lock;
    }
    give_to_owner_of_folder(name);
    struct flock whole {};
    whole.l_type = F_WRLCK;
    whole.l_whence = SEEK_SET;
    if (uninterrupted([&] { return ::fcntl(lock.value(), F_OFD_SETLKW, &whole); }) != 0) {
        const int reason = errno;
        lock.close();
        errno = reason;
    }
    return lock;
}

// A file system that keeps no record of folders to be written refuses with EINVAL.
bool sync_folder_of(const std::string& name) {
    const Descriptor folder(::open(folder_of(name).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return folder.is_open() &&
           (uninterrupted([&] { return ::fsync(folder.value()); }) == 0 || errno == EINVAL);
}

// Permissions and owner of the file that is there, else the mode for a new one. Another owner can
// be given by the superuser alone; for anybody else the file becomes the writer's.
void take_over_permissions(int file, const std::string& name, const std::string& target,
                           mode_t mode_of_new) {
    struct stat status {};
    if (::stat(target.c_str(), &status) != 0) {
        give_to_owner_of_folder(name);
        ::fchmod(file, mode_of_new);
        return;
    }
    if (::fchown(file, status.st_uid, status.st_gid) != 0) {
        static_cast<void>(::fchown(file, static_cast<uid_t>(-1), status.st_gid));
    }
    ::fchmod(file, status.st_mode & 07777U);
}

enum class Copy : std::uint8_t { Made, Taken, Impossible };

// Puts the bytes under a name that is free, or finds them there.
Copy copy_to(const std::string& name, const std::string& bytes) {
    const Descriptor present(::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (present.is_open()) {
        std::string other;
        return read_all(present.value(), other) && other == bytes ? Copy::Made : Copy::Taken;
    }
    if (errno != ENOENT) {
        return Copy::Taken;
    }
    const Descriptor made(
        ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, own_modes.file));
    if (!made.is_open()) {
        return errno == EEXIST ? Copy::Taken : Copy::Impossible;
    }
    return write_all(made.value(), bytes) && ::fsync(made.value()) == 0 ? Copy::Made
                                                                        : Copy::Impossible;
}

// The name of the copy; "" where none could be made.
std::string kept_aside(const std::string& path, const std::string& bytes) {
    constexpr int most_copies = 999;
    for (int number = 1; number <= most_copies; ++number) {
        std::string name = path + ".damaged-" + std::to_string(number);
        const Copy copy = copy_to(name, bytes);
        if (copy == Copy::Made) {
            return name;
        }
        if (copy == Copy::Impossible) {
            break;
        }
    }
    return "";
}

}  // namespace

RegistryFile::Stamp::Stamp(const struct stat& status)
    : device(status.st_dev),
      number(status.st_ino),
      size(status.st_size),
      written_ns(nanoseconds(status.st_mtim)),
      changed_ns(nanoseconds(status.st_ctim)) {}

Long RegistryFile::read(std::shared_ptr<const Key>& tree) {
    const std::scoped_lock lock(mutex_);
    struct stat status {};
    if (path_.empty() || ::stat(path_.c_str(), &status) != 0) {
        if (!path_.empty() && errno != ENOENT && errno != ENOTDIR) {
            return status_of(errno, registry_status::read_fault);
        }
        content_.reset();
        tree = std::make_shared<const Key>();
        return registry_status::success;
    }
    if (!S_ISREG(status.st_mode)) {
        return registry_status::read_fault;
    }
    if (!content_ || !content_->is_settled || content_->stamp != Stamp(status)) {
        const Descriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        if (!file.is_open() || ::fstat(file.value(), &status) != 0) {
            return status_of(errno, registry_status::read_fault);
        }
        content_ = loaded(file.value(), status);
    }
    if (content_->status == registry_status::success) {
        tree = content_->tree;
    }
    return content_->status;
}

RegistryFile::Content RegistryFile::loaded(int file, const struct stat& status) {
    const std::int64_t now = now_ns();
    Content content{Stamp(status), false, registry_status::read_fault, nullptr};
    std::string bytes;
    if (!read_all(file, bytes)) {
        return content;
    }
    try {
        content.tree = std::make_shared<const Key>(bytes.empty() ? Key() : read_tree(bytes));
        content.status = registry_status::success;
    } catch (const TextError& error) {
        content.status = registry_status::corrupt;
        report_damage(bytes, error.what(), content.stamp);
    }
    content.is_settled =
        std::max(content.stamp.written_ns, content.stamp.changed_ns) + settling_ns < now;
    return content;
}

void RegistryFile::report_damage(const std::string& bytes, const std::string& words,
                                 const Stamp& stamp) {
    if (reported_ == stamp) {
        return;
    }
    reported_ = stamp;
    const std::string copy = kept_aside(target_of(path_), bytes);
    const std::string line = "kvarta16: " + path_ + ", " + words +
                             "; no setting is read or stored there until the " +
                             "file is mended or moved away; " +
                             (copy.empty() ? "it could not be copied" : "copied to ") + copy + "\n";
    static_cast<void>(write_all(STDERR_FILENO, line));
}

Long RegistryFile::change(const std::function<Long(Key& tree)>& body) {
    if (path_.empty()) {
        return registry_status::write_fault;
    }
    const std::string target = target_of(path_);
    if (!make_folders(folder_of(target), modes_.folder)) {
        return write_status();
    }
    const Descriptor lock = locked(target + ".lock", modes_.file);
    if (!lock.is_open()) {
        return write_status();
    }
    std::shared_ptr<const Key> newest;
    if (const Long status = read(newest); status != registry_status::success) {
        return status;
    }
    const auto changed = std::make_shared<Key>(*newest);
    if (const Long status = body(*changed); status != registry_status::success) {
        return status;
    }
    if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0 && errno != ENOENT) {
        return write_status();
    }
    return replace(target, changed);
}

Long RegistryFile::replace(const std::string& target, std::shared_ptr<const Key> tree) {
    const std::string name = target + ".new";
    ::unlink(name.c_str());
    const Descriptor file(
        ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, own_modes.file));
    if (!file.is_open()) {
        return write_status();
    }
    take_over_permissions(file.value(), name, target, modes_.file);
    if (!write_all(file.value(), write_tree(*tree)) ||
        uninterrupted([&] { return ::fsync(file.value()); }) != 0 ||
        ::rename(name.c_str(), target.c_str()) != 0) {
        const Long status = write_status();
        ::unlink(name.c_str());
        return status;
    }
    struct stat status {};
    if (::fstat(file.value(), &status) == 0) {
        const std::scoped_lock lock(mutex_);
        content_ = Content{Stamp(status), false, registry_status::success, std::move(tree)};
    }
    return sync_folder_of(target) ? registry_status::success : registry_status::write_fault;
}

}  // namespace kvarta16::posix::registry
