// The notation in which callers write keys.
//
//   abc Ąę 12          each character is its key
//   ~ {ENTER} {F4}     keys by their names, in either case
//   {LEFT 42} {h 10}   a key or a character so often, at most 32767 times
//   {+} {{} {}} {~}    a character that means something else by itself
//   +a ^c %{F4} ^%x    with Shift, Ctrl, Alt held
//   +(ab^(c))          held for all keys of a group; groups stand in one another
//
// A carriage return, a line feed or the two together are Enter; a tab, a backspace and an escape
// character are their keys. A capital beyond ASCII is pressed with Shift. "[" and "]" are
// themselves, with braces and without.
#pragma once

#include <string>
#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

struct KeyPress {
    std::string key;  // by the names of the X window system: "a", "Return", "U00E4"
    bool shift = false;
    bool control = false;
    bool alt = false;
    Long count = 1;
    bool is_rare = false;  // beyond ASCII: a display may have to be given the key first

    friend bool operator==(const KeyPress&, const KeyPress&) = default;
};

// The keys of a text, in their order; one that is to be pressed 0 times is left out. Fails: 5 for a
// name that there is not, a brace or parenthesis without its other half, a modifier with nothing
// to hold for, a count that is none, and characters that no key gives.
[[nodiscard]] std::vector<KeyPress> parse_keys(StringView text);

}  // namespace kvarta16::posix
