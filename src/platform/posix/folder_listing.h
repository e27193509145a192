// The entries of a folder as the system lists them.
#pragma once

#include <memory>
#include <string>

#include <dirent.h>

namespace kvarta16::posix {

class FolderListing {
  public:
    // One that is not open.
    FolderListing() noexcept = default;
    explicit FolderListing(const std::string& native);

    [[nodiscard]] bool is_open() const noexcept { return folder_ != nullptr; }

    // The system's error where the folder could not be opened.
    [[nodiscard]] int error() const noexcept { return error_; }

    // For calls on the entries by their names alone.
    [[nodiscard]] int descriptor() const noexcept;

    // The next entry in the order of the system, "." and ".." included, valid until the next call;
    // nullptr at the end and where the folder cannot be read on.
    [[nodiscard]] const dirent* next() noexcept;

  private:
    struct Close {
        void operator()(DIR* folder) const noexcept { ::closedir(folder); }
    };
    std::unique_ptr<DIR, Close> folder_;
    int error_ = 0;
};

}  // namespace kvarta16::posix
