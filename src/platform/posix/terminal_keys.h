// The keys of a terminal by the platform's key codes: what the terminal sends for a key, and the
// code that the platform's message of a key going down bears.
#pragma once

#include <iterator>
#include <string_view>

#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

namespace key_code {
inline constexpr Long backspace = 8;
inline constexpr Long tab = 9;
inline constexpr Long enter = 13;
inline constexpr Long escape = 27;
inline constexpr Long blank = 32;
inline constexpr Long packet = 231;   // a character that no key of its own gives
inline constexpr Long unknown = 255;  // a key that has no code here
}  // namespace key_code

struct KeySequence {
    std::string_view bytes;  // behind the escape character
    Long code;
};

// A parameter in the middle, of Shift and the like, is cut out before the comparison: "[1;5D" is
// looked up as "[D", "[3;2~" as "[3~".
inline constexpr KeySequence key_sequences[] = {
    {"[A", 38},    {"OA", 38},    {"[B", 40},    {"OB", 40},   // up, down
    {"[C", 39},    {"OC", 39},    {"[D", 37},    {"OD", 37},   // right, left
    {"[H", 36},    {"OH", 36},    {"[1~", 36},   {"[7~", 36},  // home
    {"[F", 35},    {"OF", 35},    {"[4~", 35},   {"[8~", 35},  // end
    {"[5~", 33},   {"[6~", 34},   {"[2~", 45},   {"[3~", 46},  // page up and down, insert, delete
    {"[Z", 9},     {"OM", 13},    {"[E", 12},    {"OE", 12},   // Shift+Tab, keypad Enter, keypad 5
    {"OP", 112},   {"OQ", 113},   {"OR", 114},   {"OS", 115},  // F1 to F4 ...
    {"[P", 112},   {"[Q", 113},   {"[R", 114},   {"[S", 115},  // ... with Shift and the like
    {"[11~", 112}, {"[12~", 113}, {"[13~", 114}, {"[14~", 115},  // ... of older terminals
    {"[[A", 112},  {"[[B", 113},  {"[[C", 114},  {"[[D", 115},   // ... of the system's own console
    {"[[E", 116},  {"[15~", 116}, {"[17~", 117}, {"[18~", 118},  // F5 to F16
    {"[19~", 119}, {"[20~", 120}, {"[21~", 121}, {"[23~", 122}, {"[24~", 123},
    {"[25~", 124}, {"[26~", 125}, {"[28~", 126}, {"[29~", 127},
};

// Of the characters 32 to 126, on the keyboard that Polish programs are used
// with.
inline constexpr Long character_codes[] = {
    // clang-format off
    32, 49, 222, 51, 52, 53, 55, 222, 57, 48, 56, 187, 188, 189, 190, 191,  //  !"#$%&'()*+,-./
    48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 186, 186, 188, 187, 190, 191,   // 0123456789:;<=>?
    50, 65, 66, 67, 68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78, 79,         // @ABCDEFGHIJKLMNO
    80, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90, 219, 220, 221, 54, 189,     // PQRSTUVWXYZ[\]^_
    192, 65, 66, 67, 68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78, 79,        // `abcdefghijklmno
    80, 81, 82, 83, 84, 85, 86, 87, 88, 89, 90, 219, 220, 221, 192,         // pqrstuvwxyz{|}~
    // clang-format on
};
static_assert(std::size(character_codes) == 126 - 32 + 1);

struct LetterCode {
    char16_t letter;
    Long code;
};

// The Polish letters lie on the keys of these Latin ones.
inline constexpr LetterCode polish_letter_codes[] = {
    {u'Ą', 'A'}, {u'Ć', 'C'}, {u'Ę', 'E'}, {u'Ł', 'L'}, {u'Ń', 'N'},
    {u'Ó', 'O'}, {u'Ś', 'S'}, {u'Ź', 'X'}, {u'Ż', 'Z'},
};

}  // namespace kvarta16::posix
