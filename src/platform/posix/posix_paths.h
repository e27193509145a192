// Windows paths on a POSIX system.
//
//   Z:\home\anna\firma.mdb     /home/anna/firma.mdb: drive Z: is the root of the file system
//   C:\dane\firma.mdb          dane/firma.mdb in the folder of drive C:
//   firma.mdb                  in the process's current directory, which is one of drive Z:
//   \home\anna                 from the root of the current drive, which is Z:
//
// The folder of another drive than Z: is the one that a host has mapped it to, or the folder that
// bears its letter in the drives directory: KVARTA16_DRIVES in the environment, by default
// kvarta16/drives in the user's data directory (XDG_DATA_HOME, or ~/.local/share). A drive without
// such a folder does not exist.
//
// Both separators are taken, several of them count as one. "." and ".." are resolved in the text,
// as Windows does it, and do not lead above the root of a drive. Names are then looked up part by
// part: the exact name, or else one that differs in case alone, Polish letters included, the first
// of these in the order of their bytes. From a part that does not exist the rest is taken as it
// stands.
#pragma once

#include <string>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// Maps a drive to a folder, a path of the system in UTF-8, for this process and all its threads;
// one that is relative counts from the present current directory. The folder need not exist yet.
// False, and nothing is mapped, if `letter` is no letter from A to Y in either case. To be called
// while no other thread uses files.
[[nodiscard]] bool map_drive(char16_t letter, const std::string& folder);

// The path of the system for a Windows path, absolute. It ends with a separator if `path` does, so
// that the system's calls tell a folder from a file. Fails: 52 for an empty text and for one that
// holds a NUL or half a surrogate pair, 76 for a drive that does not exist and for a network path.
[[nodiscard]] std::string native_path(StringView path);

}  // namespace kvarta16::posix
