// A descriptor of the system that is closed with its owner, and closed in such a way that the
// process keeps its locks.
//
// The classic record locks of POSIX, those of database engines, are all lost when the process
// closes any descriptor of the file, whichever took them. So a descriptor of a file that the
// process has open by other means too is kept aside and closed when those have gone.
#pragma once

#include <compare>
#include <utility>

#include <sys/stat.h>

namespace kvarta16::posix {

// What tells one file from another, by whatever name it is reached.
struct FileIdentity {
    dev_t device = 0;
    ino_t number = 0;

    friend constexpr auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

[[nodiscard]] inline FileIdentity identity_of(const struct stat& status) {
    return {status.st_dev, status.st_ino};
}

class Descriptor {
  public:
    Descriptor() noexcept = default;
    // Takes over what open() has answered; below 0 there is none.
    explicit Descriptor(int value);
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int value() const noexcept { return value_; }
    [[nodiscard]] bool is_open() const noexcept { return value_ >= 0; }

    // The system's error, 0 where there is none. Nothing is open then.
    int close() noexcept;

  private:
    int value_ = -1;
};

// Closes what has been kept aside and need not be any more.
void close_kept_aside() noexcept;

}  // namespace kvarta16::posix
