// UTF-8 at the edges of the library: database engines, terminals and JSON speak it, the library
// itself works on UTF-16.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/frame/export.h>

namespace kvarta16 {

// A code unit that is half of no pair comes out as U+FFFD, the replacement character.
[[nodiscard]] KVARTA16_EXPORT std::string to_utf8(std::u16string_view text);

// Bytes that are no UTF-8 come out as U+FFFD, one for each byte that fits nowhere.
[[nodiscard]] KVARTA16_EXPORT std::u16string from_utf8(std::string_view bytes);

}  // namespace kvarta16
