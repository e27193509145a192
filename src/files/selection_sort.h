// The swaps of the finder's selection sort, worked out in n log n steps.
#pragma once

#include <span>
#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16 {

// What the sort makes of a list: which old slot stands in each new one, and which old slot was the
// last to be moved to its place by a swap, if there was a swap at all.
struct SelectionResult {
    static constexpr std::size_t none = static_cast<std::size_t>(-1);

    std::vector<std::size_t> order;
    std::size_t last_moved = none;
};

// Greater or less as texts of one fixed length, the shorter one padded with blanks, by code units:
// a control character comes before the end of a name.
[[nodiscard]] bool is_less_padded(StringView a, StringView b) noexcept;

// The result of this sort, exactly, equal names included:
//
//   for i from the last slot but one down to 0:
//       best = the slot from 0 to i with the greatest name, the lowest of those that are equal
//       if best is not i: swap the slots best and i
//
// The very last slot takes no part. The sort is not stable, so that sorting by name alone would
// not tell the order of equal names.
[[nodiscard]] SelectionResult selection_sorted(std::span<const StringView> names);

}  // namespace kvarta16
