// The words of ClsSłownie. Private to the class.
#pragma once

#include <kvarta16/frame/types.h>

namespace kvarta16::amount_words {

// The words of one digit in each role. A word that depends on the whole amount is not here but
// below the table.
struct DigitWords {
    StringView teen;       // of the units behind a 1
    StringView units;      // 0: see zero
    StringView tens;       //
    StringView hundreds;   //
    StringView thousands;  // 0 and 1: see thousand
    StringView millions;   // 1: see million
};

inline constexpr DigitWords digit_words[] = {
    // clang-format off
    {u"Dziesięć",       u"",         u"",                 u"",            u"",        u""},
    {u"Jedenaście",     u"Jeden",    u"Dziesięć",         u"Sto",         u"",        u""},
    {u"Dwanaście",      u"Dwa",      u"Dwadzieścia",      u"Dwieście",    u"Tysiące", u"Miliony"},
    {u"Trzynaście",     u"Trzy",     u"Trzydzieści",      u"Trzysta",     u"Tysiące", u"Miliony"},
    {u"Czternaście",    u"Cztery",   u"Czterdzieści",     u"Czterysta",   u"Tysiące", u"Miliony"},
    {u"Piętnaście",     u"Pięć",     u"Pięćdziesiąt",     u"Pięćset",     u"Tysięcy", u"Milionów"},
    {u"Szesnaście",     u"Sześć",    u"Sześćdziesiąt",    u"Sześćset",    u"Tysięcy", u"Milionów"},
    {u"Siedemnaście",   u"Siedem",   u"Siedemdziesiąt",   u"Siedemset",   u"Tysięcy", u"Milionów"},
    {u"Osiemnaście",    u"Osiem",    u"Osiemdziesiąt",    u"Osiemset",    u"Tysięcy", u"Milionów"},
    {u"Dziewiętnaście", u"Dziewięć", u"Dziewięćdziesiąt", u"Dziewięćset", u"Tysięcy", u"Milionów"},
    // clang-format on
};

// The units of an amount that is 0, with a blank of its own.
inline constexpr StringView zero = u"zero ";

// The thousands for the digits 0 and 1, of an amount of at most four digits and of a longer one.
inline constexpr StringView thousand = u"Tysiąc";
inline constexpr StringView longer_thousand = u"Tysięcy";

// The millions for the digit 1, of an amount of at most seven digits and of a longer one.
inline constexpr StringView million = u"Milion";
inline constexpr StringView longer_million = u"Milionów";

}  // namespace kvarta16::amount_words
