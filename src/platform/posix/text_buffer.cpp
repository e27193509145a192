#include <algorithm>

#include <kvarta16/platform/posix/text_buffer.h>

namespace kvarta16::posix {

Long hand_out(StringView text, Long length, String& buffer) {
    const Long needed = wrap32(static_cast<std::int64_t>(text.size())) + 1;
    if (length < needed) {
        return needed;
    }
    const std::size_t count = std::min(text.size(), buffer.size());
    std::copy_n(text.begin(), count, buffer.begin());
    if (count < buffer.size()) {
        buffer[count] = u'\0';
    }
    return needed - 1;
}

}  // namespace kvarta16::posix
