// The Polish letters in other character sets: the maps of the Konwert members of aChar. Private to
// the class.
#pragma once

#include <kvarta16/frame/ansi.h>

namespace kvarta16::code_pages {

// One letter and its code in each set. The form for Płatnik takes the ISO 8859-2 code of the
// capital for both cases; the last column is the letter in plain ASCII.
struct PolishLetter {
    char16_t letter;
    Byte mazovia;
    Byte platnik;
    Byte cp852;
    char16_t plain;
};

// In the order that callers of KonwertLitery count by.
inline constexpr PolishLetter polish_letters[] = {
    // clang-format off
    // letter Mazovia Płatnik  852  plain
    {u'ą',    134,    161,    165,  u'a'},
    {u'ć',    141,    198,    134,  u'c'},
    {u'ę',    145,    202,    169,  u'e'},
    {u'ł',    146,    163,    136,  u'l'},
    {u'ń',    164,    209,    228,  u'n'},
    {u'ó',    162,    211,    162,  u'o'},
    {u'ś',    158,    166,    152,  u's'},
    {u'ź',    166,    172,    171,  u'z'},
    {u'ż',    167,    175,    190,  u'z'},
    {u'Ą',    143,    161,    164,  u'A'},
    {u'Ć',    149,    198,    143,  u'C'},
    {u'Ę',    144,    202,    168,  u'E'},
    {u'Ł',    156,    163,    157,  u'L'},
    {u'Ń',    165,    209,    227,  u'N'},
    {u'Ó',    163,    211,    224,  u'O'},
    {u'Ś',    152,    166,    151,  u'S'},
    {u'Ź',    160,    172,    141,  u'Z'},
    {u'Ż',    161,    175,    189,  u'Z'},
    // clang-format on
};

// A code of another set as it stands in a text: the character that this byte is in Windows-1250,
// on every system, so that a text written out under that code page has the other set's bytes.
[[nodiscard]] constexpr char16_t character_of(Byte code) {
    return ansi_unit(code);
}

}  // namespace kvarta16::code_pages
