// One file of the registry, shared with other processes.
//
// Readers take no lock: a file is replaced as a whole, by renaming a new one that is on the disk
// already. Writers read, change and replace it under the lock of the file with ".lock" behind its
// name, so that none loses what another has stored; the lock goes with the process that holds it. A
// process that is killed, or a machine that stops, leaves the old or the new content, and perhaps
// a file with ".new" behind its name, which the next writer replaces.
//
// A file that cannot be understood is never written to. It is told on standard error and copied
// beside itself under ".damaged-1", -2 and so on; until a person has mended or removed it, all that
// is asked of it answers `corrupt`. An empty file counts as none.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include <sys/stat.h>

#include <kvarta16/platform/posix/registry/registry_tree.h>

namespace kvarta16::posix::registry {

// The permissions of what is made where it is missing.
struct FileModes {
    mode_t file = 0;
    mode_t folder = 0;
};
inline constexpr FileModes own_modes{0600, 0700};
inline constexpr FileModes shared_modes{0644, 0755};

// Usable from several threads.
class RegistryFile {
  public:
    RegistryFile(std::string path, FileModes modes) : path_(std::move(path)), modes_(modes) {}

    // The newest content, whose top keys are the roots. Looks at the file's status alone while
    // nobody has written. The answer is a registry_status; `tree` is written with success.
    [[nodiscard]] Long read(std::shared_ptr<const Key>& tree);

    // Has `body` change the newest content and stores it; it is on the disk when the answer is
    // success. Nothing is stored where `body` answers another status, which is then the result.
    // Refused with access_denied without the right to write the file.
    [[nodiscard]] Long change(const std::function<Long(Key& tree)>& body);

  private:
    // What tells one content of the file from another.
    struct Stamp {
        explicit Stamp(const struct stat& status);
        friend bool operator==(const Stamp&, const Stamp&) = default;

        dev_t device;
        ino_t number;
        off_t size;
        std::int64_t written_ns;
        std::int64_t changed_ns;
    };

    struct Content {
        Stamp stamp;
        bool is_settled = false;  // old enough for its stamp to be its own
        Long status = 0;
        std::shared_ptr<const Key> tree;  // with success
    };

    [[nodiscard]] Content loaded(int file, const struct stat& status);
    void report_damage(const std::string& bytes, const std::string& words, const Stamp& stamp);
    [[nodiscard]] Long replace(const std::string& target, std::shared_ptr<const Key> tree);

    std::string path_;
    FileModes modes_;
    std::mutex mutex_;  // for what follows
    std::optional<Content> content_;
    std::optional<Stamp> reported_;  // the damage that has been told
};

}  // namespace kvarta16::posix::registry
