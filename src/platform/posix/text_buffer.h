// A text for a caller's buffer, as the platform's calls hand one out.
#pragma once

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// With room for the text and an ending zero in `length` characters the beginning of `buffer` is
// overwritten, with the zero where the buffer has a place for it, and the answer is the length
// without the zero. Otherwise nothing is written and the answer is the length with it.
[[nodiscard]] Long hand_out(StringView text, Long length, String& buffer);

}  // namespace kvarta16::posix
