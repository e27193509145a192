// The search for files on a POSIX system, by the paths of posix_paths.h and the wildcards of
// name_pattern.h.
//
// Entries come in the order in which the system lists the folder. Their attributes are those of
// GetAttr; "." and ".." are folders and not hidden. A symbolic link is told as what it leads to;
// one that leads nowhere is a file of no length with the link's own times. Only files have a
// length. The time of creation is the system's; a file system that keeps none has the earliest of
// the times that it does keep. There are no short names: cAlternateFileName is empty.
//
// A name without wildcards finds that one name, the exact one first and one that differs in case
// second; with a separator at its end, and for the root of a drive, it finds nothing.
//
// Handles count from 1, and the lowest free one is given. A search holds one descriptor until
// FindClose.
#pragma once

#include <kvarta16/platform/find_files.h>

namespace kvarta16::posix {

// Threads may search at the same time; one search is one thread's.
class PosixFindFiles final : public FindFiles {
  public:
    Long FindFirstFileA(StringView name, WIN32_FIND_DATA& data) override;
    Long FindNextFileA(Long handle, WIN32_FIND_DATA& data) override;
    Long FindClose(Long handle) override;

    // Network paths are none here: 0. Names stay in the case in which they are given.
    Long GetFullPathNameA(StringView name, Long length, String& buffer) override;

    // The name as it is given.
    Long GetShortPathNameA(StringView name, Long length, String& buffer) override;

    Long FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) override;
    Long FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) override;
};

}  // namespace kvarta16::posix
