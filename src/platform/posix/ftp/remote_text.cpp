#include <algorithm>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/ftp/ftp_error.h>
#include <kvarta16/platform/posix/ftp/remote_text.h>

namespace kvarta16::posix {

bool is_sendable(StringView text) {
    return text.find_first_of(StringView(u"\r\n\0", 3)) == StringView::npos &&
           from_utf8(to_utf8(text)) == text;
}

std::string to_wire(StringView text, bool is_utf8) {
    if (!is_sendable(text)) {
        throw FtpError(internet_error::invalid_parameter);
    }
    std::string bytes = is_utf8 ? to_utf8(text) : to_ansi(text);
    if (!is_utf8 && from_ansi(bytes) != text) {
        throw FtpError(internet_error::invalid_parameter);
    }
    return bytes;
}

std::string path_to_wire(StringView path, bool is_utf8) {
    if (path.empty()) {
        throw FtpError(internet_error::invalid_parameter);
    }
    return to_wire(with_slashes(path), is_utf8);
}

String from_wire(std::string_view bytes) {
    String text = from_utf8(bytes);
    return to_utf8(text) == bytes ? text : from_ansi(bytes);
}

String with_slashes(StringView path) {
    String text(path);
    std::ranges::replace(text, u'\\', u'/');
    return text;
}

}  // namespace kvarta16::posix
