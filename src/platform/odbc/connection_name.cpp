#include <algorithm>

#include <kvarta16/frame/text.h>
#include <kvarta16/platform/odbc/connection_name.h>
#include <kvarta16/platform/sql/names.h>

namespace kvarta16::odbc {
namespace {

constexpr StringView shown_keys[] = {u"DSN",  u"FILEDSN",    u"SERVER",   u"SERVERNAME",
                                     u"HOST", u"PORT",       u"DATABASE", u"DB",
                                     u"DBQ",  u"UNIXSOCKET", u"DRIVER"};

// Parts of the keys whose values are secrets.
constexpr StringView secret_parts[] = {u"pwd", u"pass", u"secret", u"token", u"key"};

StringView without_blanks(StringView text) {
    const std::size_t first = text.find_first_not_of(u' ');
    if (first == StringView::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(u' ') - first + 1);
}

bool is_secret(StringView key) {
    const String lower = lower_case(key);
    return std::ranges::any_of(secret_parts,
                               [&](StringView part) { return lower.find(part) != String::npos; });
}

// Where the brace stands that closes the value at the front; 0 if it begins with none, or if none
// closes it.
std::size_t closing_brace(StringView value) {
    if (!value.starts_with(u'{')) {
        return 0;
    }
    std::size_t at = 1;
    while (at < value.size() && (value[at] != u'}' || value.substr(at).starts_with(u"}}"))) {
        at += value[at] == u'}' ? 2 : 1;
    }
    return at < value.size() ? at : 0;
}

// Takes an attribute's value off the front of `rest`, with its braces: up to the ";" behind it.
StringView take_value(StringView& rest) {
    const std::size_t end = std::min(rest.find(u';', closing_brace(rest)), rest.size());
    const StringView value = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return value;
}

StringView without_braces(StringView value) {
    const bool braced = value.size() >= 2 && value.starts_with(u'{') && value.ends_with(u'}');
    return braced ? value.substr(1, value.size() - 2) : value;
}

}  // namespace

ConnectionName read_connection_name(StringView name) {
    ConnectionName result;
    if (name.find(u'=') == StringView::npos) {
        result.attributes.append(u"DSN=").append(name).append(u";");
        result.shown = name;
        return result;
    }
    result.attributes = name;
    for (StringView rest = name; !rest.empty();) {
        const std::size_t sign = rest.find(u'=');
        if (sign == StringView::npos) {
            break;
        }
        const StringView key = without_blanks(rest.substr(0, sign));
        rest.remove_prefix(sign + 1);
        const StringView value = take_value(rest);
        if (is_secret(key)) {
            result.secrets.emplace_back(without_braces(without_blanks(value)));
        } else if (std::ranges::any_of(
                       shown_keys, [&](StringView shown) { return sql::same_name(shown, key); })) {
            result.shown.append(result.shown.empty() ? u"" : u";");
            result.shown.append(key).append(u"=").append(value);
        }
    }
    return result;
}

}  // namespace kvarta16::odbc
