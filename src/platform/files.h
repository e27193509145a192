// The files of the platform. Paths are Windows paths; an adapter of another system maps them.
#pragma once

#include <string>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// The bits of a file's attributes.
namespace file_attribute {
inline constexpr Long read_only = 1;
inline constexpr Long hidden = 2;
inline constexpr Long system = 4;
inline constexpr Long directory = 16;
inline constexpr Long archive = 32;
inline constexpr Long normal = 128;
inline constexpr Long temporary = 256;
inline constexpr Long compressed = 2048;
}  // namespace file_attribute

// The numbers that callers of the platform's file operations know. A failure carries the standard
// text of its number.
namespace error {
inline constexpr Long bad_file_name = 52;  // a text that is no name, a number that is not open
inline constexpr Long file_not_found = 53;
inline constexpr Long bad_file_mode = 54;  // not what the file was opened for
inline constexpr Long file_already_open = 55;
inline constexpr Long device_io = 57;
inline constexpr Long file_exists = 58;
inline constexpr Long disk_full = 61;
inline constexpr Long past_end_of_file = 62;
inline constexpr Long too_many_files = 67;
inline constexpr Long device_unavailable = 68;  // no such drive
inline constexpr Long permission_denied = 70;   // in use
inline constexpr Long different_drive = 74;
inline constexpr Long file_access = 75;     // the system refuses: a folder, a right, a name taken
inline constexpr Long path_not_found = 76;  // a folder on the way is missing
}  // namespace error

class KVARTA16_EXPORT Files {
  public:
    virtual ~Files() = default;

    // The attributes of a file or folder, a sum of file_attribute bits. Fails: 53 for a name that
    // does not exist, 76 for a folder on the way that does not, 52 for a text that is no name.
    [[nodiscard]] virtual Long GetAttr(StringView path) = 0;

    // Deletes files; the last name of `path` may hold the wildcards "*" and "?", which folders do
    // not match. Fails: 53 where no file is matched, 75 where the system refuses, a folder or a
    // read-only file included, 70 for a file that is in use. Of several matches those before the
    // refused one are gone.
    virtual void Kill(StringView path) = 0;

    // Gives a file or folder a new name, which may lie in another folder; a file may go to
    // another drive. Fails: 53 or 76 where the old one does not exist, 58 where the new one does,
    // 70 for a file that is in use, 74 for a folder that would go to another drive, 75 where the
    // system refuses.
    virtual void Name(StringView old_path, StringView new_path) = 0;

    // Makes one folder. Fails: 75 where the name exists or the system refuses, 76 where the folder
    // above does not exist.
    virtual void MkDir(StringView path) = 0;

    // Makes the drive that a path tells the current one, whatever follows it; a path without a
    // drive changes nothing. Fails: 5 where the colon stands behind no letter, 68 for a drive that
    // does not exist.
    virtual void ChDrive(StringView path) = 0;

    // Makes a folder the current directory of its drive; the current drive stays. Fails: 76 where
    // it is none.
    virtual void ChDir(StringView path) = 0;

    // Copies a file over what stands at the target. Fails: 53 or 76 where the source does not
    // exist, 70 where either is open in the numbered file table, 75 where the system refuses, a
    // folder included, 61 when the disk is full. What a failed copy has written is not left.
    virtual void FileCopy(StringView source, StringView target) = 0;

    // The current directory of the current drive, without a separator at its end unless it is a
    // root: "Z:\home\anna", "Z:\". Fails: 76 where it has gone.
    [[nodiscard]] virtual String CurDir() = 0;

    // The path as the operating system's own calls take it, in UTF-8: for adapters that hand it to
    // another library. The file need not exist. Fails: 52 for a text that is no path, 76 for a
    // drive that is none.
    [[nodiscard]] virtual std::string native_path(StringView path) = 0;
};

}  // namespace kvarta16
