// The files of the platform. Paths are Windows paths; an adapter of another system maps them.
#pragma once

#include <string>

#include <kvarta16/frame/types.h>

namespace kvarta16 {

// The bits of a file's attributes.
namespace file_attribute {
inline constexpr Long read_only = 1;
inline constexpr Long hidden = 2;
inline constexpr Long system = 4;
inline constexpr Long directory = 16;
inline constexpr Long archive = 32;
}  // namespace file_attribute

// The numbers that callers of the platform's file operations know.
namespace error {
inline constexpr Long bad_file_name = 52;
inline constexpr Long file_not_found = 53;
inline constexpr Long file_access = 75;     // the system refuses: a folder, a right, a lock
inline constexpr Long path_not_found = 76;  // a folder on the way is missing
inline constexpr Long permission_denied = 70;
}  // namespace error

class Files {
  public:
    virtual ~Files() = default;

    // The attributes of a file or folder, a sum of file_attribute bits. Fails: 53 for a name that
    // does not exist, 76 for a folder on the way that does not, 52 for a text that is no name.
    [[nodiscard]] virtual Long GetAttr(StringView path) = 0;

    // Deletes a file. Fails: 53 for a file that does not exist, 75 or 70 where the system refuses,
    // a folder included.
    virtual void Kill(StringView path) = 0;

    // The path as the operating system's own calls take it, in UTF-8: for adapters that hand it to
    // another library. The file need not exist. Fails: 52 for a text that is no path, 76 for a
    // drive that is none.
    [[nodiscard]] virtual std::string native_path(StringView path) = 0;
};

}  // namespace kvarta16
