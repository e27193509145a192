// The registry of the platform: keys that hold keys and named values. Handles are numbers; the
// roots have fixed ones and need not be closed.
//
// Names and paths pass in the ANSI code page and end at their first character of code 0. Those of
// keys and of values match without case, Polish letters too, and keep the spelling in which they
// were made. The value with the empty name is the key's default value. In a path several
// backslashes count as one, and one at the end as none; one at the beginning is refused (161).
//
// None of these raises a failure: each answers a status, 0 for success. On any other status no
// result is written, but for the type and size that come with 234: a value that is not there leaves
// the caller the type that it has had.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

inline constexpr Long HKEY_CLASSES_ROOT = wrap32(0x80000000);
inline constexpr Long HKEY_CURRENT_USER = wrap32(0x80000001);
inline constexpr Long HKEY_LOCAL_MACHINE = wrap32(0x80000002);

// The types of values. Texts are the first two and the last; the others are bytes as they stand.
inline constexpr Long REG_SZ = 1;
inline constexpr Long REG_EXPAND_SZ = 2;
inline constexpr Long REG_BINARY = 3;
inline constexpr Long REG_DWORD = 4;
inline constexpr Long REG_MULTI_SZ = 7;

namespace registry_status {
inline constexpr Long success = 0;
inline constexpr Long file_not_found = 2;  // no such key or value
inline constexpr Long access_denied = 5;   // no right, or a key with sub-keys that was to go
inline constexpr Long invalid_handle = 6;
inline constexpr Long write_fault = 29;        // the store could not be written
inline constexpr Long read_fault = 30;         // the store could not be read
inline constexpr Long invalid_parameter = 87;  // a name that the store cannot keep, a wrong size
inline constexpr Long bad_path_name = 161;     // a path that begins with a backslash
inline constexpr Long more_data = 234;         // the buffer is too small
inline constexpr Long corrupt = 1015;          // the store is damaged
inline constexpr Long key_deleted = 1018;      // the open key is not there any more
}  // namespace registry_status

class KVARTA16_EXPORT Registry {
  public:
    virtual ~Registry() = default;

    // Opens a key that exists; an empty path is `key` itself. `result` is a handle that stays until
    // it is closed as often as it was opened: one number may stand for all openings of a key.
    [[nodiscard]] virtual Long RegOpenKeyA(Long key, StringView path, Long& result) = 0;

    // The same, and makes the key with those above it where they are missing.
    [[nodiscard]] virtual Long RegCreateKeyA(Long key, StringView path, Long& result) = 0;

    // Type and size in bytes of a value; with a buffer of at least that many characters also its
    // bytes, each as the character of the ANSI code page, from the buffer's beginning; what stands
    // behind them stays, and so does the buffer's length. `size` is the room in the buffer before
    // and the size of the value after; 234 where the room is too small. The buffer may be nullptr.
    // The size is that of the text in the ANSI code page: a byte for each character, and the
    // ending zero only where it was stored.
    [[nodiscard]] virtual Long RegQueryValueExA(Long key, StringView name, Long& type, String* data,
                                                Long& size) = 0;

    // Puts a value: the first `size` characters of the text, by the ANSI code page. Whether an
    // ending zero is stored is the caller's choice of `size`, which reaches at most over that zero.
    // `reserved` is 0. Refused with 87: another `reserved`, a size below 0 or beyond the text.
    [[nodiscard]] virtual Long RegSetValueExA(Long key, StringView name, Long reserved, Long type,
                                              StringView data, Long size) = 0;

    [[nodiscard]] virtual Long RegCloseKey(Long key) = 0;

    // Deletes a key with its values; one that has sub-keys is refused (5).
    [[nodiscard]] virtual Long RegDeleteKeyA(Long key, StringView path) = 0;

    [[nodiscard]] virtual Long RegDeleteValueA(Long key, StringView name) = 0;
};

}  // namespace kvarta16
