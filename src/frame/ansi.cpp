#include <algorithm>

#include <kvarta16/frame/ansi.h>

namespace kvarta16 {

Byte ansi_byte(char16_t unit) noexcept {
    if (unit < 128) {
        return static_cast<Byte>(unit);
    }
    const std::size_t found = ansi_from_128.find(unit);
    return found == StringView::npos ? Byte{'?'} : static_cast<Byte>(128 + found);
}

std::string to_ansi(StringView text) {
    std::string bytes(text.size(), '\0');
    std::ranges::transform(text, bytes.begin(),
                           [](char16_t unit) { return static_cast<char>(ansi_byte(unit)); });
    return bytes;
}

String from_ansi(std::string_view bytes) {
    String text(bytes.size(), u'\0');
    std::ranges::transform(bytes, text.begin(),
                           [](char byte) { return ansi_unit(static_cast<Byte>(byte)); });
    return text;
}

}  // namespace kvarta16
