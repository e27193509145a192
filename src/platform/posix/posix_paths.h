// Windows paths on a POSIX system.
//
//   Z:\home\anna\firma.mdb     /home/anna/firma.mdb: drive Z: is the root of the file system
//   C:\dane\firma.mdb          dane/firma.mdb in the folder of drive C:
//   C:firma.mdb                in the current directory of drive C:
//   firma.mdb                  in the current directory of the current drive
//   \home\anna                 from the root of the current drive
//
// A process begins on drive Z: in the directory that the system has given it. Each drive keeps a
// current directory of its own, its root until one is chosen, and that of the current drive is the
// process's real directory, so that programs that are started begin there. A real directory that
// somebody changes past these functions is that of drive Z: while Z: is the current drive; while
// another is, nobody here sees it.
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

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// Maps a drive to a folder, a path of the system in UTF-8, for this process and all its threads;
// one that is relative counts from the present current directory. The folder need not exist yet.
// False, and nothing is mapped, if `letter` is no letter from A to Y in either case. To be called
// while no other thread uses files.
[[nodiscard]] KVARTA16_EXPORT bool map_drive(char16_t letter, const std::string& folder);

// What a Windows path leads to.
struct Location {
    char16_t drive = u'\0';     // 'A' to 'Z'
    bool is_root = false;       // the root folder of the drive
    std::string native;         // as native_path() has it
    std::string native_as_new;  // the same with the last name as it stands in the text
};

// Fails as native_path() does.
[[nodiscard]] KVARTA16_EXPORT Location located(StringView path);

// A path cut before its last name: "C:\dane\" and "*.mdb", "C:" and "a", "." and "a", "\" and "a".
struct SplitPath {
    String folder;
    String name;  // "" where the path ends with a separator
};
[[nodiscard]] KVARTA16_EXPORT SplitPath split_last_name(StringView path);

// The path of the system for a Windows path, absolute. It ends with a separator if `path` does, so
// that the system's calls tell a folder from a file. Fails: 52 for an empty text and for one that
// holds a NUL, half a surrogate pair or a wildcard, 76 for a drive that does not exist and for a
// network path. A file of the system whose name holds "*" or "?" has no Windows path: what deletes
// by wildcards would take others with it.
[[nodiscard]] KVARTA16_EXPORT std::string native_path(StringView path);

// Fails with 52 where the last name of a path is one that Windows does not let a new file or folder
// bear: with one of < > | " : or a wildcard in it.
KVARTA16_EXPORT void require_new_name(StringView path);

// The Windows path in full, by the text alone: nothing need exist, not even the drive. The drive
// letter stays in its case, a separator at the end stays too. Fails as native_path() does, but for
// a drive that does not exist.
[[nodiscard]] KVARTA16_EXPORT String full_path(StringView path);

// Makes a drive the current one and its directory, or its root where that has gone, the process's
// real one. Fails: 5 for what is no letter, 68 for a drive that does not exist or cannot be
// entered.
KVARTA16_EXPORT void change_drive(char16_t letter);

// Makes a folder the directory of its drive. Fails: 76 for what is no folder or cannot be entered,
// 52 for a text that is no path.
KVARTA16_EXPORT void change_directory(StringView path);

// The directory of the current drive by the names that the file system has: "Z:\home\anna", "C:\".
// Fails: 76 where it has gone.
[[nodiscard]] KVARTA16_EXPORT String current_directory();

}  // namespace kvarta16::posix
