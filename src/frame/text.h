// The text primitives. Positions are 1-based and in UTF-16 code units.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// A length as the platform counts it, in 32 bits.
[[nodiscard]] KVARTA16_EXPORT Long length(StringView text) noexcept;

// How many characters of a text a 16-bit counter walks over: none from 32768 to 65536 characters,
// what the wrapped length counts beyond.
[[nodiscard]] KVARTA16_EXPORT std::size_t reach_of_16_bits(StringView text) noexcept;

// The part of a text from `start`, `count` characters long or to the end. A start past the end
// gives ""; a count that reaches past the end is clipped. Fails: 5 for a start below 1 or a
// negative count.
[[nodiscard]] KVARTA16_EXPORT String substring(StringView text, Long start, Long count);
[[nodiscard]] KVARTA16_EXPORT String substring(StringView text, Long start);

// The first or last `count` characters, all if there are fewer. Fails: 5 for a negative count.
[[nodiscard]] KVARTA16_EXPORT String left_part(StringView text, Long count);
[[nodiscard]] KVARTA16_EXPORT String right_part(StringView text, Long count);

// A text of `count` blanks. Fails: 5 for a negative count.
[[nodiscard]] KVARTA16_EXPORT String blanks(Long count);

// Writes `replacement` over `target` from `start` without changing the target's length: at most
// `count` characters, at most as many as the replacement holds, at most as many as remain.
// Fails: 5 for a start below 1 or past the end, or a negative count.
KVARTA16_EXPORT void overwrite(String& target, Long start, Long count, StringView replacement);

// The first position at or behind `start` at which `wanted` stands, 0 if nowhere. Searching for
// "" answers `start`; searching in "" answers 0. Fails: 5 for a start below 1.
[[nodiscard]] KVARTA16_EXPORT Long position_of(StringView text, StringView wanted, Long start = 1);

// The text with every `wanted` replaced, left to right, not looking at what it has put. An empty
// `wanted` leaves the text as it is.
[[nodiscard]] KVARTA16_EXPORT String replace_all(StringView text, StringView wanted,
                                                 StringView replacement);

// Without blanks (code 32, no tabs or line ends) at both ends, the left or the right one.
[[nodiscard]] KVARTA16_EXPORT StringView trim(StringView text) noexcept;
[[nodiscard]] KVARTA16_EXPORT StringView trim_left(StringView text) noexcept;
[[nodiscard]] KVARTA16_EXPORT StringView trim_right(StringView text) noexcept;

// Letter by letter, so that the length stays: Latin with the Polish and the other accented
// letters, Greek and Cyrillic.
[[nodiscard]] KVARTA16_EXPORT char16_t upper_case(char16_t letter) noexcept;
[[nodiscard]] KVARTA16_EXPORT char16_t lower_case(char16_t letter) noexcept;
[[nodiscard]] KVARTA16_EXPORT String upper_case(StringView text);
[[nodiscard]] KVARTA16_EXPORT String lower_case(StringView text);

// Some texts make a method run for ever, and callers rely on nothing else of them. Called in such
// a loop this keeps a compiler from taking it for granted that the loop ends.
KVARTA16_EXPORT void endless_step() noexcept;

}  // namespace kvarta16
