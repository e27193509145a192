// The keys that the notation names, and the letters that a Polish keyboard has beyond the Latin
// ones, by their names in the X window system.
#pragma once

#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

struct NamedKey {
    StringView name;
    std::string_view key;
};

inline constexpr NamedKey named_keys[] = {
    {u"BACKSPACE", "BackSpace"},
    {u"BS", "BackSpace"},
    {u"BKSP", "BackSpace"},
    {u"BREAK", "Break"},
    {u"CAPSLOCK", "Caps_Lock"},
    {u"DELETE", "Delete"},
    {u"DEL", "Delete"},
    {u"DOWN", "Down"},
    {u"END", "End"},
    {u"ENTER", "Return"},
    {u"ESC", "Escape"},
    {u"HELP", "Help"},
    {u"HOME", "Home"},
    {u"INSERT", "Insert"},
    {u"INS", "Insert"},
    {u"LEFT", "Left"},
    {u"NUMLOCK", "Num_Lock"},
    {u"PGDN", "Next"},
    {u"PGUP", "Prior"},
    {u"PRTSC", "Print"},
    {u"RIGHT", "Right"},
    {u"SCROLLLOCK", "Scroll_Lock"},
    {u"TAB", "Tab"},
    {u"UP", "Up"},
    {u"F1", "F1"},
    {u"F2", "F2"},
    {u"F3", "F3"},
    {u"F4", "F4"},
    {u"F5", "F5"},
    {u"F6", "F6"},
    {u"F7", "F7"},
    {u"F8", "F8"},
    {u"F9", "F9"},
    {u"F10", "F10"},
    {u"F11", "F11"},
    {u"F12", "F12"},
    {u"F13", "F13"},
    {u"F14", "F14"},
    {u"F15", "F15"},
    {u"F16", "F16"},
};

struct CharacterKey {
    char32_t character;
    std::string_view key;
};

// Polish keyboards have these letters under their own names and not under their numbers.
inline constexpr CharacterKey character_keys[] = {
    {U'\b', "BackSpace"}, {U'\t', "Tab"},    {U'\n', "Return"},   {U'\r', "Return"},
    {0x1B, "Escape"},     {U'~', "Return"},  {U'Ą', "Aogonek"},   {U'ą', "aogonek"},
    {U'Ć', "Cacute"},     {U'ć', "cacute"},  {U'Ę', "Eogonek"},   {U'ę', "eogonek"},
    {U'Ł', "Lstroke"},    {U'ł', "lstroke"}, {U'Ń', "Nacute"},    {U'ń', "nacute"},
    {U'Ó', "Oacute"},     {U'ó', "oacute"},  {U'Ś', "Sacute"},    {U'ś', "sacute"},
    {U'Ź', "Zacute"},     {U'ź', "zacute"},  {U'Ż', "Zabovedot"}, {U'ż', "zabovedot"},
};

}  // namespace kvarta16::posix
