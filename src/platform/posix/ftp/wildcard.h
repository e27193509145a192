// Patterns of remote names: the folder is the server's to find, the last part is compared here.
#pragma once

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// Whether "*" (any characters, none included) and "?" (one) make the pattern fit the whole name.
[[nodiscard]] bool matches(StringView name, StringView pattern, bool ignores_case);

struct RemotePattern {
    String folder;  // "" is the current one
    String name;    // "" is everything in it
};

// "/dane/*.txt" is the folder "/dane" and the name "*.txt". Both slashes part. "*" and "*.*" are
// every name, and so is nothing behind the last slash. "." and ".." are folders.
[[nodiscard]] RemotePattern remote_pattern(StringView pattern);

[[nodiscard]] bool has_wildcard(StringView name) noexcept;

}  // namespace kvarta16::posix
