// The files of a POSIX system behind the file seam, by the paths of posix_paths.h.
#pragma once

#include <kvarta16/platform/files.h>

namespace kvarta16::posix {

class PosixFiles final : public Files {
  public:
    // A folder has the bit 16, everything else 32. 2 is added for a name that begins with a dot,
    // 1 where the permission bits do not let this process write; for the superuser that is where
    // they let nobody write. A symbolic link counts as what it leads to.
    Long GetAttr(StringView path) override;

    // Removes one name; that of a symbolic link and not what it leads to. Refuses folders and what
    // has the bit 1 (75), and a file that is in use (70): that this process has open or on which
    // any process holds a lock; that another process merely has it open is not seen. "*" and "?"
    // are characters of a name here and match nothing else.
    void Kill(StringView path) override;

    std::string native_path(StringView path) override;
};

}  // namespace kvarta16::posix
