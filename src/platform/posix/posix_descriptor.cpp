#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <kvarta16/platform/posix/posix_descriptor.h>

namespace kvarta16::posix {
namespace {

// The descriptors of this class, in use and kept aside. All in the process: a lock is lost by the
// process.
struct Register {
    std::mutex mutex;
    std::vector<int> in_use;
    std::vector<int> kept_aside;
};

Register& descriptors() {
    static Register all;
    return all;
}

bool contains(const std::vector<int>& values, int value) {
    return std::ranges::find(values, value) != values.end();
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

// Whether the process has the file open by a descriptor that is none of these.
bool is_open_otherwise(const Register& all, int file) {
    struct stat wanted {};
    if (::fstat(file, &wanted) != 0 || !S_ISREG(wanted.st_mode)) {
        return false;
    }
    const std::unique_ptr<DIR, CloseFolder> folder(::opendir("/proc/self/fd"));
    while (const dirent* entry = folder == nullptr ? nullptr : ::readdir(folder.get())) {
        const int other = std::atoi(entry->d_name);  // 0 for the dots, which is looked at anyway
        struct stat status {};
        if (!contains(all.in_use, other) && !contains(all.kept_aside, other) &&
            ::fstat(other, &status) == 0 && identity_of(status) == identity_of(wanted)) {
            return true;
        }
    }
    return false;
}

void close_what_can_be(Register& all) {
    std::erase_if(all.kept_aside, [&](int file) {
        const bool can_go = !is_open_otherwise(all, file);
        if (can_go) {
            ::close(file);
        }
        return can_go;
    });
}

// A descriptor that stays open must not go on locking.
void unlock(int file) {
    struct flock whole {};
    whole.l_type = F_UNLCK;
    whole.l_whence = SEEK_SET;
    ::fcntl(file, F_OFD_SETLK, &whole);
}

}  // namespace

Descriptor::Descriptor(int value) : value_(value) {
    if (is_open()) {
        const std::scoped_lock lock(descriptors().mutex);
        descriptors().in_use.push_back(value);
    }
}

Descriptor::~Descriptor() {
    close();
}

int Descriptor::close() noexcept {
    if (!is_open()) {
        return 0;
    }
    Register& all = descriptors();
    const std::scoped_lock lock(all.mutex);
    close_what_can_be(all);
    const int file = std::exchange(value_, -1);
    if (is_open_otherwise(all, file)) {
        unlock(file);
        std::erase(all.in_use, file);
        all.kept_aside.push_back(file);
        return 0;
    }
    std::erase(all.in_use, file);
    return ::close(file) == 0 || errno == EINTR ? 0 : errno;
}

void close_kept_aside() noexcept {
    const std::scoped_lock lock(descriptors().mutex);
    close_what_can_be(descriptors());
}

}  // namespace kvarta16::posix
