// How names of tables and columns compare.
#pragma once

#include <algorithm>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::sql {

// Names compare without case, Polish letters included.
[[nodiscard]] inline bool same_name(StringView a, StringView b) noexcept {
    return std::ranges::equal(
        a, b, [](char16_t x, char16_t y) { return x == y || lower_case(x) == lower_case(y); });
}

// The element of `list` whose member `name` is spelled like this, else the one that differs in
// case alone, else the end.
template <class List>
[[nodiscard]] auto find_name(const List& list, StringView name) {
    for (auto at = list.begin(); at != list.end(); ++at) {
        if (at->name == name) {
            return at;
        }
    }
    for (auto at = list.begin(); at != list.end(); ++at) {
        if (same_name(at->name, name)) {
            return at;
        }
    }
    return list.end();
}

}  // namespace kvarta16::sql
