// The files of a POSIX system behind the file seam, by the paths of posix_paths.h. Every failure
// carries the standard text of its number and no path.
#pragma once

#include <kvarta16/platform/files.h>

namespace kvarta16::posix {

class PosixFiles final : public Files {
  public:
    // A folder has the bit 16, everything else 32. 2 is added for a name that begins with a dot,
    // 1 where the permission bits do not let this process write; for the superuser that is where
    // they let nobody write. A symbolic link counts as what it leads to.
    Long GetAttr(StringView path) override;

    // Removes names; that of a symbolic link and not what it leads to. Refuses folders and what
    // has the bit 1 (75), and a file that is in use (70): that this process has open or on which
    // any process holds a lock; that another process merely has it open is not seen. Wildcards are
    // those of name_pattern.h; they match files with a dot in front too, and no folders and links
    // to folders. The files go in the order of the system.
    void Kill(StringView path) override;

    // A name that differs from the old one in case alone is given; the very same name exists (58).
    // In use is what Kill takes for it. A symbolic link is moved and not what it leads to, whereby
    // a relative one may lead elsewhere. A folder stays on its drive letter and on its file system
    // (74). A file that goes to another file system is copied whole, then the old one is removed;
    // of what is neither file nor link that is refused (75).
    void Name(StringView old_path, StringView new_path) override;

    void MkDir(StringView path) override;
    void ChDrive(StringView path) override;
    void ChDir(StringView path) override;

    // The copy is made under a name of its own beside the target and takes its place when it is
    // whole: a copy that fails leaves the old file. The copy has the source's time of the last
    // writing; its permission bits are those of the old file, else those of the source. Symbolic
    // links are followed on both sides, and a target that is a device is written to. A lock that
    // somebody else holds on either refuses the copy as being open does (70), one for reading on
    // the source excepted; so does the source as its own target.
    void FileCopy(StringView source, StringView target) override;

    String CurDir() override;
    std::string native_path(StringView path) override;
};

}  // namespace kvarta16::posix
