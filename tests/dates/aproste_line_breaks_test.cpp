// Where long texts are broken for a line of a given width.
#include <algorithm>

#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

constexpr Long lowest_long = std::numeric_limits<Long>::min();
constexpr Long highest_long = std::numeric_limits<Long>::max();

// The count and the width as it stands afterwards: "4 5"; "!5 1" for a failure.
template <class Call>
std::string outcome_with(Long dl, const Call& call) {
    try {
        const Long count = call(dl);
        return std::to_string(count) + " " + std::to_string(dl);
    } catch (const Failure& failure) {
        return "!" + std::to_string(failure.number()) + " " + std::to_string(dl);
    }
}

std::string plain(StringView text, Long dl, Long pocz) {
    return outcome_with(dl, [&](Long& width) { return simple().Obcinaj(text, width, pocz); });
}
std::string to_comma(StringView text, Long dl, Long pocz) {
    return outcome_with(
        dl, [&](Long& width) { return simple().obcinaj_do_Przecinka(text, width, pocz); });
}
std::string of_variant(const Variant& text, Long dl, Long pocz) {
    return outcome_with(dl, [&](Long& width) { return simple().obcinaj_v(text, width, pocz); });
}

struct BreakCase {
    StringView text;
    Long width;
    Long from;
    const char* plain;
    const char* to_comma;
    const char* of_variant;
};

TEST(LineBreaks, Cases) {
    const BreakCase cases[] = {
        {u"abc def ghi", 5, 1, "4 5", "5 5", "4 5"},
        {u"abc def ghi", 5, 5, "4 5", "5 5", "4 5"},
        {u"abc def ghi", 5, 9, "3 5", "3 5", "3 5"},
        {u"abcdefgh", 3, 1, "3 3", "3 3", "3 3"},
        {u"ab", 5, 1, "2 5", "2 5", "5 5"},
        {u"ab", 5, 2, "1 5", "1 5", "1 5"},
        {u"ab", 5, 10, "-7 5", "-7 5", "-7 5"},
        {u"", 5, 1, "0 5", "0 5", "5 5"},
        // A text that ends exactly at the line's end is broken too.
        {u"ab cd", 5, 1, "3 5", "5 5", "3 5"},
        {u"ab cd", 6, 1, "5 6", "5 6", "6 6"},
        // Each of the characters at which a line may break.
        {u"ab-cd", 4, 1, "3 4", "4 4", "4 4"},
        {u"ab_cd", 4, 1, "3 4", "4 4", "4 4"},
        {u"ab.cd", 4, 1, "3 4", "4 4", "4 4"},
        {u"ab,cd", 4, 1, "3 4", "3 4", "4 4"},
        {u"ab&cd", 4, 1, "3 4", "4 4", "4 4"},
        {u"ab;cd", 4, 1, "4 4", "4 4", "4 4"},
        {u"a-b,c d-e", 8, 1, "8 8", "4 8", "6 8"},
        // Line ends go before all break characters, up to the return; a return alone is none.
        {u"ab\r\nc d e", 8, 1, "3 8", "3 8", "8 8"},
        {u"ab\r\ncd\r\ne fgh", 11, 1, "7 11", "7 11", "10 11"},
        {u"abc\rd efg", 8, 1, "6 8", "8 8", "6 8"},
        {u"abcd\r\nef", 5, 1, "5 5", "5 5", "5 5"},  // the feed stands behind the line
        {u"abcd\r", 5, 1, "5 5", "5 5", "5 5"},      // a blank counts as standing behind it
        // A width below 1 is 1, for the caller as well.
        {u"abc", 0, 1, "1 1", "1 1", "1 1"},
        {u"abc", -5, 2, "1 1", "1 1", "1 1"},
        {u"", 0, 1, "0 1", "0 1", "1 1"},
        {u"abc", lowest_long, 9, "-5 1", "-5 1", "-5 1"},
        // A search that runs below position 1 fails, one that finds its break before does not.
        {u"abc", 2, 0, "!5 2", "!5 2", "!5 2"},
        {u"a c", 4, 0, "!5 4", "!5 4", "3 4"},  // the look for line ends has failed already
        {u"\r\nabc", 4, 0, "2 4", "2 4", "!5 4"},
        {u"\r\nabc", 1, -3, "5 1", "5 1", "!5 1"},  // looked for from position 1 at least
        {u" \r\nabc", 1, -3, "!5 1", "!5 1", "!5 1"},
        {u"", 1, 0, "!5 1", "!5 1", "!5 1"},
        {u"abc", 0, 0, "!5 1", "!5 1", "!5 1"},
        // What remains of a text that fits has no lower bound.
        {u"ab", 100, -5, "8 100", "8 100", "8 100"},
        {u"ab", 100, 0, "3 100", "3 100", "3 100"},
        // The numbers wrap.
        {u"ab", 2, highest_long, "2 2", "2 2", "2 2"},
        {u"ab", 1, highest_long, "-2147483644 1", "-2147483644 1", "-2147483644 1"},
        {u"ab", highest_long, highest_long, "2147483647 2147483647", "2147483647 2147483647",
         "2147483647 2147483647"},
        {u"ab", 1, lowest_long, "!5 1", "!5 1", "!5 1"},
        {u"ab", highest_long, lowest_long, "!5 2147483647", "!5 2147483647", "!5 2147483647"},
    };
    for (const BreakCase& row : cases) {
        const std::string place =
            show(row.text) + ", " + std::to_string(row.width) + ", " + std::to_string(row.from);
        EXPECT_EQ(plain(row.text, row.width, row.from), row.plain) << place;
        EXPECT_EQ(to_comma(row.text, row.width, row.from), row.to_comma) << place;
        EXPECT_EQ(of_variant(row.text, row.width, row.from), row.of_variant) << place;
    }
}

TEST(LineBreaks, OfAnyVariant) {
    EXPECT_EQ(of_variant(Variant::null(), 5, 1), "5 5");
    EXPECT_EQ(of_variant(Variant::null(), 0, 7), "1 1");
    EXPECT_EQ(of_variant(Variant(), 5, 1), "5 5");
    EXPECT_EQ(of_variant(Variant(), 5, 3), "-2 5");
    EXPECT_EQ(of_variant(Long{123456}, 4, 1), "4 4");
    EXPECT_EQ(of_variant(Long{123456}, 4, 4), "3 4");
    EXPECT_EQ(of_variant(day("2024-05-17 12:00:00"), 15, 1), "11 15");
    EXPECT_EQ(of_variant(parse_value("Object"), 0, 1), "!13 1");
    EXPECT_EQ(of_variant(Variant::missing(), 5, 1), "!13 5");
    const Forms forms(u"abc def");
    for (const auto& [form, value] : forms.all()) {
        EXPECT_EQ(of_variant(*value, 5, 1), "4 5") << form;
    }
    String nothing;
    EXPECT_EQ(of_variant(Variant::reference(nothing), 0, 1), "1 1");
}

// ---- By another way -------------------------------------------------------------------------

// Looks forward for the last of the positions from `low` to `high` that fits, and fails where the
// way down to `low` would have led below 1 before it.
template <class Fits>
Long last_of(Long low, Long high, const Fits& fits) {
    Long found = 0;
    for (Long i = std::max<Long>(low, 1); i <= high; ++i) {
        found = fits(static_cast<std::size_t>(i - 1)) ? i : found;
    }
    if (found == 0 && low < 1) {
        fail(error::invalid_call);
    }
    return found;
}

struct Rules {
    StringView breaks;
    bool looks_for_line_ends;
    bool short_text_is_width;
};

Long expected_count(const Rules& rules, const String& text, Long& width, Long from) {
    width = width < 1 ? 1 : width;
    const Long end = from + width - 1;
    const Long size = static_cast<Long>(text.size());
    if (size < end) {
        return rules.short_text_is_width && from == 1 ? width : size - from + 1;
    }
    Long at = 0;
    if (rules.looks_for_line_ends) {
        at = last_of(from, std::max<Long>(end, 1),
                     [&](std::size_t i) { return (text + u"  ").substr(i, 2) == u"\r\n"; });
    }
    if (at == 0) {
        at = last_of(from, end,
                     [&](std::size_t i) { return rules.breaks.find(text[i]) != StringView::npos; });
    }
    return at == 0 ? width : at - from + 1;
}

constexpr Rules rules_plain{u" -_.,&", true, false};
constexpr Rules rules_to_comma{u",", true, false};
constexpr Rules rules_of_variant{u" ", false, true};

std::string expected(const Rules& rules, const String& text, Long dl, Long pocz) {
    return outcome_with(dl, [&](Long& width) { return expected_count(rules, text, width, pocz); });
}

void expect_as_by_another_way(const String& text, Long dl, Long pocz) {
    const std::string place = show(text) + ", " + std::to_string(dl) + ", " + std::to_string(pocz);
    ASSERT_EQ(plain(text, dl, pocz), expected(rules_plain, text, dl, pocz)) << place;
    ASSERT_EQ(to_comma(text, dl, pocz), expected(rules_to_comma, text, dl, pocz)) << place;
    ASSERT_EQ(of_variant(text, dl, pocz), expected(rules_of_variant, text, dl, pocz)) << place;
}

TEST(LineBreaks, AllShortTexts) {
    for_all_texts({u"a", u" ", u",", u"\r", u"\n"}, 4, [](const String& text) {
        for (Long dl = -1; dl <= 6; ++dl) {
            for (Long pocz = -2; pocz <= 6; ++pocz) {
                expect_as_by_another_way(text, dl, pocz);
            }
        }
    });
}

String random_text(Random& random) {
    static constexpr StringView letters = u"abcdefghijklmnopqrstuvwxyz  ,,-_.&\r\n";
    String text;
    for (std::int64_t i = random.between(0, 60); i > 0; --i) {
        text += letters[static_cast<std::size_t>(random.between(0, 35))];
        text += random.chance(5) ? u"\r\n" : u"";
    }
    return text;
}

TEST(LineBreaks, RandomTexts) {
    Random random(45);
    for (int i = 0; i < 100'000 && !HasFatalFailure(); ++i) {
        expect_as_by_another_way(random_text(random), wrap32(random.between(-2, 40)),
                                 wrap32(random.between(-1, 50)));
    }
}

// The way callers use it: line by line to the end, and nothing lost.
TEST(LineBreaks, AWholeTextInLines) {
    const String text = u"Ala ma kota, a kot ma\r\nAlę. Dalej-nic_tu&tam.";
    String joined;
    Long width = 10;
    Long at = 1;
    int lines = 0;
    while (at <= length(text)) {
        const Long count = simple().Obcinaj(text, width, at);
        ASSERT_GE(count, 1);
        ASSERT_LE(count, width);
        joined += substring(text, at, count);
        at += count;
        ++lines;
    }
    EXPECT_EQ(joined, text);
    EXPECT_EQ(lines, 6);
}

}  // namespace
}  // namespace kvarta16::dates_tests
