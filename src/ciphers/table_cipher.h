// What the two ciphers have in common: the table, and the key as it is used. Private to them.
#pragma once

#include <algorithm>
#include <array>
#include <vector>

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16::ciphers {

// A place in the alphabet, from 0; `absent` for a character that is not in it.
using Place = Byte;
inline constexpr Place absent = 255;

// The square table of an alphabet: row 0 is the alphabet, and each row begins one character further
// along it and runs on from its end to its beginning. So the character in row r and column c has
// the place r + c, round the alphabet, and the row that holds k in column c is number k - c: the
// table need not be there to be looked up.
class KVARTA16_EXPORT CipherTable {
  public:
    static constexpr std::size_t size = 115;

    consteval CipherTable(StringView first, StringView order, StringView last) {
        places_.fill(absent);
        for (const StringView part : {first, order, last}) {
            for (const char16_t unit : part) {
                if (places_[unit] != absent) {
                    throw "a character stands twice in the alphabet";  // stops the compilation
                }
                places_[unit] = static_cast<Place>(count_);
                characters_[count_++] = unit;
            }
        }
        if (count_ != size) {
            throw "no alphabet of 115 characters";  // stops the compilation
        }
    }

    [[nodiscard]] constexpr Place place_of(char16_t unit) const {
        return unit < places_.size() ? places_[unit] : absent;
    }

    // The first character of the row that holds the character at `key` in column `column`.
    [[nodiscard]] constexpr char16_t row_start(Place key, Place column) const {
        return characters_[key >= column ? key - column : key + size - column];
    }

    // The places of the characters that a key gives in turn, at least one.
    [[nodiscard]] std::vector<Place> places_of_key(StringView key) const {
        if (key.empty()) {
            return {absent};
        }
        // The length of a key is kept in 16 bits. One that wraps to 0 or below is passed with the
        // first character already, so that the key is that character.
        const Integer length = wrap16(static_cast<std::int64_t>(key.size()));
        key = key.substr(0, static_cast<std::size_t>(std::max<Integer>(length, 1)));
        std::vector<Place> places(key.size());
        std::ranges::transform(key, places.begin(),
                               [this](char16_t unit) { return place_of(unit); });
        return places;
    }

  private:
    // Up to the last letter of the Latin Extended-A block, where the Polish letters stand.
    static constexpr std::size_t unit_count = 0x180;

    std::size_t count_ = 0;
    std::array<char16_t, size> characters_{};
    std::array<Place, unit_count> places_{};
};

// The place that stands behind `turn` in a key of so many places.
[[nodiscard]] constexpr std::size_t next_turn(std::size_t turn, std::size_t key_size) {
    return turn + 1 < key_size ? turn + 1 : 0;
}

// The entry of a property that can be written and not read.
[[nodiscard]] constexpr MemberInfo write_only(MemberInfo setter) {
    setter.kind = MemberKind::PropertyLet;
    return setter;
}

}  // namespace kvarta16::ciphers
