// The wildcards of the platform: which names a pattern matches.
//
//   *      any characters, none included
//   ?      one character that is no dot; none at the end of the name or before a dot
//
// "*.*" matches every name, with a dot or without. Otherwise a dot before a wildcard also matches
// the end of a name ("a.*" matches "a"), and a star before a dot reaches up to the name's last dot
// at most ("*.txt" does not match "a.txt.bak"). A dot at the very end matches nothing of a name;
// "*." matches the names without a dot. Case does not count. "." and ".." are matched as names of
// no character: "*", "*.*", "*." and "?" match them.
#pragma once

#include <cstdint>
#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

class NamePattern {
  public:
    explicit NamePattern(StringView text);

    [[nodiscard]] bool matches(StringView name) const;

    // Whether a name has "*" or "?" in it.
    [[nodiscard]] static bool has_wildcards(StringView name);

  private:
    enum class Kind : std::uint8_t {
        Character,      // this one
        AnyCharacters,  // *
        UpToLastDot,    // * before a dot
        OneOrNone,      // ?
        DotOrEnd,       // a dot before a wildcard
    };
    struct Token {
        Kind kind = Kind::Character;
        char16_t character = u'\0';
    };

    void skip_empty(std::vector<bool>& reached, StringView name, std::size_t at) const;

    std::vector<Token> tokens_;
    bool matches_all_ = false;
};

}  // namespace kvarta16::posix
