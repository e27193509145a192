// Texts on their way to a server and back.
#pragma once

#include <string>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// Whether a text may stand in a command: without CR, LF and NUL, which would end it and begin
// another, and without half a surrogate pair.
[[nodiscard]] bool is_sendable(StringView text);

// The bytes of a text, UTF-8 or Windows-1250. Throws 87 for one that is not sendable and for one
// that the code page cannot tell: with "?" in a letter's place it would name another file.
[[nodiscard]] std::string to_wire(StringView text, bool is_utf8);

// The same for a path: both slashes part, and 87 for "" too.
[[nodiscard]] std::string path_to_wire(StringView path, bool is_utf8);

// UTF-8 where it is valid, else Windows-1250.
[[nodiscard]] String from_wire(std::string_view bytes);

// The path with "/" for each "\".
[[nodiscard]] String with_slashes(StringView path);

}  // namespace kvarta16::posix
