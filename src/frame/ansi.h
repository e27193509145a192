// Windows-1250, the ANSI code page of the platform on every system: what files, the registry, a
// printer and a server get where the platform writes a text as bytes.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16 {

// One byte for each code unit; "?" for one that the code page has not got.
[[nodiscard]] std::string to_ansi(StringView text);

// One code unit for each byte; the five bytes without a character (81, 83, 88, 90, 98 in
// hexadecimal) are the control characters of the same number, and go back to the same byte.
[[nodiscard]] String from_ansi(std::string_view bytes);

// The byte of one code unit.
[[nodiscard]] Byte ansi_byte(char16_t unit) noexcept;

// The code unit of one byte.
[[nodiscard]] char16_t ansi_unit(Byte byte) noexcept;

}  // namespace kvarta16
