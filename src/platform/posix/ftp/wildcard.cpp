#include <algorithm>

#include <kvarta16/frame/text.h>
#include <kvarta16/platform/posix/ftp/remote_text.h>
#include <kvarta16/platform/posix/ftp/wildcard.h>

namespace kvarta16::posix {

// Walks both texts once, and goes back to the last "*" alone: the work is at most the product of
// the lengths, whatever the pattern.
bool matches(StringView name, StringView pattern, bool ignores_case) {
    const auto is_same = [&](char16_t a, char16_t b) {
        return a == b || (ignores_case && upper_case(a) == upper_case(b));
    };
    std::size_t in_name = 0;
    std::size_t in_pattern = 0;
    std::size_t star = StringView::npos;
    std::size_t behind_star = 0;
    while (in_name < name.size()) {
        const bool has_more = in_pattern < pattern.size();
        if (has_more && pattern[in_pattern] == u'*') {
            star = in_pattern++;
            behind_star = in_name;
        } else if (has_more &&
                   (pattern[in_pattern] == u'?' || is_same(name[in_name], pattern[in_pattern]))) {
            ++in_name;
            ++in_pattern;
        } else if (star != StringView::npos) {
            in_pattern = star + 1;
            in_name = ++behind_star;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(u'*', in_pattern) == StringView::npos;
}

RemotePattern remote_pattern(StringView pattern) {
    const String path = with_slashes(pattern);
    const std::size_t slash = path.rfind(u'/');
    RemotePattern parts;
    parts.name = slash == String::npos ? path : path.substr(slash + 1);
    if (slash != String::npos) {
        parts.folder = path.substr(0, std::max<std::size_t>(slash, 1));
    }
    if (parts.name == u"*" || parts.name == u"*.*") {
        parts.name.clear();
    } else if (parts.name == u"." || parts.name == u"..") {
        parts.folder = path;
        parts.name.clear();
    }
    return parts;
}

bool has_wildcard(StringView name) noexcept {
    return name.find_first_of(u"*?") != StringView::npos;
}

}  // namespace kvarta16::posix
