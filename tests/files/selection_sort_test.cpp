// The fast working-out of the selection sort beside the plain sort, swap by swap.
#include <chrono>
#include <numeric>

#include <kvarta16/files/selection_sort.h>

#include "files_support.h"

namespace kvarta16::files_tests {
namespace {

constexpr std::size_t fixed_length = 260;

String padded(const String& name) {
    return name + String(fixed_length - std::min(name.size(), fixed_length), u' ');
}

// The sort as its steps tell it, over whole fixed texts.
SelectionResult plainly_sorted(const std::vector<String>& names) {
    SelectionResult result;
    result.order.resize(names.size());
    std::iota(result.order.begin(), result.order.end(), std::size_t{0});
    std::vector<String> slots;
    slots.reserve(names.size());
    for (const String& name : names) {
        slots.push_back(padded(name));
    }
    for (std::ptrdiff_t i = static_cast<std::ptrdiff_t>(names.size()) - 2; i >= 0; --i) {
        StringView best;
        std::size_t best_index = 0;
        for (std::size_t j = 0; j <= static_cast<std::size_t>(i); ++j) {
            if (slots[j] > best) {
                best = slots[j];
                best_index = j;
            }
        }
        if (best_index != static_cast<std::size_t>(i)) {
            std::swap(slots[best_index], slots[static_cast<std::size_t>(i)]);
            std::swap(result.order[best_index], result.order[static_cast<std::size_t>(i)]);
            result.last_moved = result.order[static_cast<std::size_t>(i)];
        }
    }
    return result;
}

SelectionResult quickly_sorted(const std::vector<String>& names) {
    const std::vector<StringView> views(names.begin(), names.end());
    return selection_sorted(views);
}

void expect_same(const std::vector<String>& names) {
    const SelectionResult plain = plainly_sorted(names);
    const SelectionResult quick = quickly_sorted(names);
    std::string shown;
    if (quick.order != plain.order || quick.last_moved != plain.last_moved) {
        for (const String& name : names) {
            shown += show(name) + " ";
        }
    }
    ASSERT_EQ(quick.order, plain.order) << shown;
    ASSERT_EQ(quick.last_moved, plain.last_moved) << shown;
}

TEST(SelectionSort, FewEntries) {
    expect_same({});
    expect_same({u"a"});
    expect_same({u"b", u"a"});
    EXPECT_EQ(quickly_sorted({u"b", u"c", u"a"}).order, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(quickly_sorted({u"c", u"b", u"a"}).order, (std::vector<std::size_t>{1, 0, 2}));
    EXPECT_EQ(quickly_sorted({u"b", u"c", u"a"}).last_moved, SelectionResult::none);
}

// Of equal names the first is taken to the end: their order turns about.
TEST(SelectionSort, EqualNamesAreNotKeptInOrder) {
    EXPECT_EQ(quickly_sorted({u"a", u"a", u"z"}).order, (std::vector<std::size_t>{1, 0, 2}));
    EXPECT_EQ(quickly_sorted({u"a", u"a", u"a", u"z"}).order,
              (std::vector<std::size_t>{1, 2, 0, 3}));
}

TEST(SelectionSort, EveryListOfUpToSevenOfThreeNames) {
    int visited = 0;
    for_all_texts({u"a", u"b", u"c"}, 7, [&](const String& letters) {
        std::vector<String> names;
        for (const char16_t letter : letters) {
            names.emplace_back(1, letter);
        }
        expect_same(names);
        ++visited;
    });
    EXPECT_EQ(visited, 3280);
}

TEST(SelectionSort, RandomNames) {
    Random random(830);
    for (int round = 0; round < 1500; ++round) {
        const auto count = static_cast<std::size_t>(random.between(0, 40));
        const std::int64_t letters = random.between(1, 6);
        const std::int64_t longest = random.between(0, 12);
        const String prefix(static_cast<std::size_t>(random.between(0, 9)), u'p');
        std::vector<String> names;
        for (std::size_t i = 0; i < count; ++i) {
            String name = prefix;
            for (std::int64_t left = random.between(0, longest); left > 0; --left) {
                constexpr char16_t alphabet[] = {u'a', 1, u'Z', u' ', u'~', 0xD800};
                name += alphabet[static_cast<std::size_t>(random.between(0, letters - 1))];
            }
            names.push_back(name);
        }
        expect_same(names);
    }
}

TEST(SelectionSort, ManyNamesFewOfThemDifferent) {
    Random random(831);
    for (const std::int64_t different : {1, 2, 10, 300}) {
        std::vector<String> names;
        for (int i = 0; i < 600; ++i) {
            names.push_back(u"plik" + wide(std::to_string(random.between(1, different))));
        }
        expect_same(names);
    }
}

TEST(SelectionSort, PaddingIsBlanks) {
    Random random(832);
    for (int i = 0; i < 20'000; ++i) {
        std::array<String, 2> names;
        for (String& name : names) {
            for (std::int64_t left = random.between(0, 4); left > 0; --left) {
                name += u"a \u0001\u001F!"[random.between(0, 4)];
            }
        }
        ASSERT_EQ(is_less_padded(names[0], names[1]), padded(names[0]) < padded(names[1]))
            << show(names[0]) << show(names[1]);
    }
    EXPECT_TRUE(is_less_padded(u"a\u0001", u"a"));
    EXPECT_FALSE(is_less_padded(u"a", u"a\u0001"));
    EXPECT_TRUE(is_less_padded(u"a", u"a!"));
    EXPECT_FALSE(is_less_padded(u"a", u"a "));
    EXPECT_FALSE(is_less_padded(u"a ", u"a"));
}

// The plain sort would take some five thousand million comparisons.
TEST(SelectionSort, HundredThousandNamesInNoQuadraticTime) {
    for (const std::int64_t different : {1, 1000, 100'000'000}) {
        Random random(833);
        std::vector<String> names;
        for (int i = 0; i < 100'000; ++i) {
            names.push_back(u"plik_" + wide(std::to_string(random.between(1, different))) +
                            u".txt");
        }
        const auto begin = std::chrono::steady_clock::now();
        const SelectionResult result = quickly_sorted(names);
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        EXPECT_LT(seconds.count(), 5.0);
        for (std::size_t i = 1; i + 1 < names.size(); ++i) {
            ASSERT_LE(names[result.order[i - 1]], names[result.order[i]]);
        }
        EXPECT_EQ(result.order.back(), names.size() - 1);
    }
}

}  // namespace
}  // namespace kvarta16::files_tests
