// Which files somebody works with, so that they are not to go away under them.
#pragma once

#include <set>
#include <string>

#include <kvarta16/platform/posix/posix_descriptor.h>

namespace kvarta16::posix {

// As it stands when this is made: what this process has open and what any process holds a lock on.
// A process that merely has a file open is not seen.
class FilesInUse {
  public:
    FilesInUse();

    [[nodiscard]] bool contains(const struct stat& file) const;

  private:
    std::set<FileIdentity> open_here_;
    std::set<std::string> locked_;  // as the system's list of locks has them
};

}  // namespace kvarta16::posix
