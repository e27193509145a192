#include <algorithm>

#include <kvarta16/frame/text.h>
#include <kvarta16/platform/posix/name_pattern.h>

namespace kvarta16::posix {
namespace {

bool is_wildcard(char16_t unit) {
    return unit == u'*' || unit == u'?';
}

}  // namespace

NamePattern::NamePattern(StringView text) : matches_all_(text == u"*" || text == u"*.*") {
    const std::size_t kept = text.find_last_not_of(u'.') + 1;
    const bool ended_with_dot = kept < text.size();
    text = text.substr(0, kept);
    const auto next_is = [&](std::size_t i, auto&& test) {
        return i + 1 < text.size() ? test(text[i + 1]) : false;
    };
    tokens_.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool is_last = i + 1 == text.size();
        Kind kind = Kind::Character;
        if (text[i] == u'*') {
            const bool before_dot = is_last ? ended_with_dot : text[i + 1] == u'.';
            kind = before_dot ? Kind::UpToLastDot : Kind::AnyCharacters;
        } else if (text[i] == u'?') {
            kind = Kind::OneOrNone;
        } else if (text[i] == u'.' && next_is(i, is_wildcard)) {
            kind = Kind::DotOrEnd;
        }
        tokens_.push_back({kind, upper_case(text[i])});
    }
}

// Adds the states that are reached from others without a character of the name, of which `at` is
// the next one.
void NamePattern::skip_empty(std::vector<bool>& reached, StringView name, std::size_t at) const {
    const bool is_end = at == name.size();
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
        const Kind kind = tokens_[i].kind;
        const bool can_be_empty = kind == Kind::AnyCharacters || kind == Kind::UpToLastDot ||
                                  (kind == Kind::OneOrNone && (is_end || name[at] == u'.')) ||
                                  (kind == Kind::DotOrEnd && is_end);
        if (reached[i] && can_be_empty) {
            reached[i + 1] = true;
        }
    }
}

bool NamePattern::matches(StringView name) const {
    if (matches_all_) {
        return true;
    }
    if (name == u"." || name == u"..") {
        name = {};
    }
    const std::size_t last_dot = name.rfind(u'.');
    std::vector<bool> reached(tokens_.size() + 1);
    reached[0] = true;
    skip_empty(reached, name, 0);
    for (std::size_t at = 0; at < name.size(); ++at) {
        std::vector<bool> next(reached.size());
        for (std::size_t i = 0; i < tokens_.size(); ++i) {
            const Token token = tokens_[i];
            const bool is_dot = name[at] == u'.';
            const bool stays = token.kind == Kind::AnyCharacters ||
                               (token.kind == Kind::UpToLastDot && at != last_dot);
            const bool goes_on =
                (token.kind == Kind::Character && upper_case(name[at]) == token.character) ||
                (token.kind == Kind::OneOrNone && !is_dot) ||
                (token.kind == Kind::DotOrEnd && is_dot);
            next[i] = next[i] || (reached[i] && stays);
            next[i + 1] = reached[i] && goes_on;
        }
        reached = std::move(next);
        skip_empty(reached, name, at + 1);
    }
    return reached.back();
}

bool NamePattern::has_wildcards(StringView name) {
    return std::ranges::any_of(name, is_wildcard);
}

}  // namespace kvarta16::posix
