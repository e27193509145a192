#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>
#include <utility>

#include <kvarta16/files/selection_sort.h>

namespace kvarta16 {
namespace {

constexpr char16_t padding = u' ';

// Some characters of a name in one number each, so that most comparisons are one of numbers.
using Prefix = std::array<std::uint64_t, 2>;
constexpr std::size_t units_a_number = 4;
constexpr unsigned bits_a_unit = 16;

struct Sorted {
    Prefix prefix;
    std::size_t slot;
};

Prefix prefix_of(StringView name, std::size_t from) {
    Prefix prefix{};
    for (std::uint64_t& number : prefix) {
        for (std::size_t i = 0; i < units_a_number; ++i, ++from) {
            number = number << bits_a_unit | (from < name.size() ? name[from] : padding);
        }
    }
    return prefix;
}

// How many characters all names begin with.
std::size_t common_length(std::span<const StringView> names) {
    StringView common = names.front();
    for (const StringView name : names) {
        const auto mismatch = std::ranges::mismatch(common, name);
        common = common.substr(0, static_cast<std::size_t>(mismatch.in1 - common.begin()));
    }
    return common.size();
}

// The slots in the order of their names; among equal names in any order.
std::vector<Sorted> sorted_by_name(std::span<const StringView> names) {
    const std::size_t from = common_length(names);
    std::vector<Sorted> sorted;
    sorted.reserve(names.size());
    for (std::size_t slot = 0; slot < names.size(); ++slot) {
        sorted.push_back({prefix_of(names[slot], from), slot});
    }
    std::ranges::sort(sorted, [names](const Sorted& a, const Sorted& b) {
        return a.prefix != b.prefix ? a.prefix < b.prefix
                                    : is_less_padded(names[a.slot], names[b.slot]);
    });
    return sorted;
}

// The list while it is being sorted.
class Swaps {
  public:
    explicit Swaps(std::size_t count) : place_of_(count) {
        result_.order.resize(count);
        std::iota(result_.order.begin(), result_.order.end(), std::size_t{0});
        std::iota(place_of_.begin(), place_of_.end(), std::size_t{0});
    }

    [[nodiscard]] std::size_t place_of(std::size_t slot) const { return place_of_[slot]; }

    void swap(std::size_t best, std::size_t i) {
        std::swap(result_.order[best], result_.order[i]);
        place_of_[result_.order[best]] = best;
        place_of_[result_.order[i]] = i;
        result_.last_moved = result_.order[i];
    }

    [[nodiscard]] SelectionResult take() { return std::move(result_); }

  private:
    SelectionResult result_;
    std::vector<std::size_t> place_of_;  // of each old slot
};

// The steps of the sort in which the greatest name left is that of one group of equal names.
// `places` are those of the group in the list, ascending; `i` is the slot that the next step
// fills, and behind the last step the slot before the filled ones.
//
// Each step takes the lowest place of the group, best, and swaps it with slot i. All places left
// are at or below i. If the highest of them is i itself, the entry there is of the group too: it
// goes to place best, and what the group loses is the place i. Otherwise an entry of another group
// goes to place best, and that place is what the group loses. So the places left stay ascending,
// and either end of them is dropped; no search is needed.
void place_group(std::span<const std::size_t> places, std::size_t& i, Swaps& swaps) {
    while (!places.empty()) {
        const std::size_t best = places.front();
        const bool loses_last = places.back() == i;
        if (best != i) {
            swaps.swap(best, i);
        }
        places = loses_last ? places.first(places.size() - 1) : places.subspan(1);
        --i;
    }
}

}  // namespace

bool is_less_padded(StringView a, StringView b) noexcept {
    const std::size_t shared = std::min(a.size(), b.size());
    const int order = a.substr(0, shared).compare(b.substr(0, shared));
    if (order != 0) {
        return order < 0;
    }
    const bool is_b_longer = b.size() > shared;
    for (const char16_t unit : (is_b_longer ? b : a).substr(shared)) {
        if (unit != padding) {
            return (unit > padding) == is_b_longer;
        }
    }
    return false;
}

// The steps take the names from the greatest down, so that they fall into runs, one for each group
// of equal names, and a run begins with the list as the run before has left it.
SelectionResult selection_sorted(std::span<const StringView> names) {
    Swaps swaps(names.size());
    if (names.size() < 2) {
        return swaps.take();
    }
    const std::span<const StringView> taking_part = names.first(names.size() - 1);
    const std::vector<Sorted> sorted = sorted_by_name(taking_part);
    std::vector<std::size_t> places;
    std::size_t i = taking_part.size() - 1;
    for (std::size_t end = sorted.size(); end > 0;) {
        const Sorted& greatest = sorted[end - 1];
        const StringView name = names[greatest.slot];
        places.clear();
        while (end > 0 && sorted[end - 1].prefix == greatest.prefix &&
               !is_less_padded(names[sorted[end - 1].slot], name)) {
            places.push_back(swaps.place_of(sorted[end - 1].slot));
            --end;
        }
        std::ranges::sort(places);
        place_group(places, i, swaps);
    }
    return swaps.take();
}

}  // namespace kvarta16
