// The Konwert members of aChar.
#include <algorithm>
#include <array>
#include <functional>
#include <iterator>

#include <kvarta16/text/aChar.h>
#include <kvarta16/text/code_pages.h>

namespace kvarta16 {
namespace {

using code_pages::character_of;
using code_pages::polish_letters;
using code_pages::PolishLetter;

constexpr std::size_t letter_count = std::size(polish_letters);
using Eighteen = std::array<char16_t, letter_count>;

template <class Column>
consteval Eighteen each_letter(Column column) {
    Eighteen characters{};
    std::ranges::transform(polish_letters, characters.begin(), column);
    return characters;
}

constexpr Eighteen letters = each_letter([](const PolishLetter& row) { return row.letter; });
constexpr Eighteen plain = each_letter([](const PolishLetter& row) { return row.plain; });
constexpr Eighteen mazovia =
    each_letter([](const PolishLetter& row) { return character_of(row.mazovia); });
constexpr Eighteen platnik =
    each_letter([](const PolishLetter& row) { return character_of(row.platnik); });
constexpr Eighteen cp852 =
    each_letter([](const PolishLetter& row) { return character_of(row.cp852); });

// Eighteen characters, each of which has another one to take its place. A character is looked up
// by its low byte; a place without one holds code 0, which stands for itself.
class Substitution {
  public:
    constexpr Substitution(const Eighteen& from, const Eighteen& to) {
        for (std::size_t k = 0; k < letter_count; ++k) {
            places_[from[k] % places_.size()] = {from[k], to[k]};
        }
    }

    [[nodiscard]] constexpr char16_t operator()(char16_t unit) const {
        const Place& place = places_[unit % places_.size()];
        return place.from == unit ? place.to : unit;
    }

  private:
    struct Place {
        char16_t from = 0;
        char16_t to = 0;
    };
    std::array<Place, 256> places_{};
};

// Whether each of the characters has a place of its own in a Substitution.
consteval bool low_bytes_differ(Eighteen characters) {
    for (char16_t& unit : characters) {
        unit &= 0xFF;
    }
    std::ranges::sort(characters);
    return std::ranges::adjacent_find(characters) == characters.end();
}
static_assert(low_bytes_differ(letters) && low_bytes_differ(cp852));

// Where each of `from` ends when one round after the other puts `to` for `from`, the later rounds
// also for what the earlier ones have put.
consteval Eighteen in_rounds(const Eighteen& from, const Eighteen& to) {
    Eighteen ends = from;
    for (char16_t& unit : ends) {
        for (std::size_t k = 0; k < letter_count; ++k) {
            unit = unit == from[k] ? to[k] : unit;
        }
    }
    return ends;
}

constexpr Substitution to_mazovia(letters, mazovia);
constexpr Substitution to_platnik(letters, platnik);
constexpr Substitution to_plain(letters, plain);
constexpr Substitution from_cp852(cp852, letters);
// A round replaces single characters by single ones, so that the rounds over a text are the rounds
// over each of its characters. ą goes through Ą, and Ć through Ź.
constexpr Substitution to_cp852_in_rounds(letters, in_rounds(letters, cp852));

// A copy of the text with the first `count` characters substituted.
String substituted(StringView text, const Substitution& substitution, std::size_t count) {
    String result(text);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(count), result.begin(),
                   std::cref(substitution));
    return result;
}

}  // namespace

String aChar::KonwertLitery(StringView Slowo,
                            const Variant& Set_Strona_kodowa_wydruku_łańcuch) const {
    // Taken once: what fails for one letter (Null, an object) fails for each, and they all stay.
    String set;
    step([&] { set = ToText(Set_Strona_kodowa_wydruku_łańcuch); });
    Eighteen targets = letters;
    std::copy_n(set.begin(), std::min(set.size(), letter_count), targets.begin());
    return substituted(Slowo, Substitution(letters, targets), reach_of_16_bits(Slowo));
}

String aChar::KonwertNaMaz(StringView Slowo) const {
    return substituted(Slowo, to_mazovia, reach_of_16_bits(Slowo));
}

String aChar::KonwertPlatnik(StringView Slowo) const {
    return substituted(Slowo, to_platnik, reach_of_16_bits(Slowo));
}

String aChar::KonwertNaWin(StringView Slowo) const {
    // One substitution for a whole round over the list in each position: a letter put for the j-th
    // character does not stand behind the j-th place of the list itself.
    return substituted(Slowo, from_cp852, reach_of_16_bits(Slowo));
}

String aChar::konwertNaBPL(StringView Slowo) const {
    return substituted(Slowo, to_plain, reach_of_16_bits(Slowo));
}

String aChar::Konwert_lan(StringView Slowo) const {
    return IsNumericText(Slowo) ? String(Slowo)
                                : substituted(Slowo, to_cp852_in_rounds, Slowo.size());
}

}  // namespace kvarta16
