// Windows-1250, the ANSI code page of the platform on every system: what files, the registry, a
// printer and a server get where the platform writes a text as bytes.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// The characters of the bytes from 128 on. The five codes without a character (129, 131, 136, 144,
// 152) stand for the control characters of their numbers.
inline constexpr StringView ansi_from_128 =
    u"€\u0081‚\u0083„…†‡\u0088‰Š‹ŚŤŽŹ"
    u"\u0090‘’“”•–—\u0098™š›śťžź"
    u"\u00A0ˇ˘Ł¤Ą¦§¨©Ş«¬\u00AD®Ż"
    u"°±˛ł´µ¶·¸ąş»Ľ˝ľż"
    u"ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎ"
    u"ĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß"
    u"ŕáâăäĺćçčéęëěíîď"
    u"đńňóôőö÷řůúűüýţ˙";
static_assert(ansi_from_128.size() == 128);

// One byte for each code unit; "?" for one that the code page has not got.
[[nodiscard]] KVARTA16_EXPORT std::string to_ansi(StringView text);

// One code unit for each byte; each goes back to the same byte.
[[nodiscard]] KVARTA16_EXPORT String from_ansi(std::string_view bytes);

// The byte of one code unit.
[[nodiscard]] KVARTA16_EXPORT Byte ansi_byte(char16_t unit) noexcept;

// The code unit of one byte.
[[nodiscard]] constexpr char16_t ansi_unit(Byte byte) noexcept {
    return byte < 128 ? char16_t{byte} : ansi_from_128[byte - 128U];
}

}  // namespace kvarta16
