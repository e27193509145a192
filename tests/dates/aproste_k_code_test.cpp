// K codes: texts of up to four segments joined by hyphens.
#include <array>

#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

using Segments = std::array<String, 4>;

std::string show(const Segments& segments) {
    std::string text;
    for (const String& segment : segments) {
        text += (text.empty() ? "" : ", ") + frame_tests::show(segment);
    }
    return text;
}
using frame_tests::show;

// What the segments held before makes no difference.
Segments split(StringView code) {
    Segments k = {u"x", u"yy", u"z-z", u"-"};
    simple().Make_K1234(code, k[0], k[1], k[2], k[3]);
    return k;
}

TEST(KCode, TakenApart) {
    const struct {
        StringView code;
        Segments expected;
    } cases[] = {
        {u"1234-56-78-90", {u"1234", u"56", u"78", u"90"}},
        {u"12345-6", {u"1234", u"6", u"", u""}},
        {u"1--2", {u"1", u"2", u"", u""}},
        {u"1-2-3-4-5", {u"1", u"2", u"3", u"4-5"}},
        {u"1-2-3-4--5-", {u"1", u"2", u"3", u"4--5"}},
        {u"", {u"", u"", u"", u""}},
        {u"-", {u"", u"", u"", u""}},
        {u" - - ", {u"", u"", u"", u""}},
        {u"- 12 - 3 -", {u"12", u"3", u"", u""}},
        {u"12345678", {u"1234", u"", u"", u""}},
        {u"a b c-1", {u"a b ", u"1", u"", u""}},  // the cut may leave a blank
        {u"1-22222-33333-44444", {u"1", u"22222", u"33333", u"44444"}},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(show(split(row.code)), show(row.expected)) << show(row.code);
    }
}

TEST(KCode, TheFirstSegmentMayBeTheCodeItself) {
    String code = u"1234-56";
    String k2, k3, k4;
    simple().Make_K1234(code, code, k2, k3, k4);
    EXPECT_EQ(show(Segments{code, k2, k3, k4}), show(Segments{u"1234", u"56", u"", u""}));
}

TEST(KCode, Joined) {
    const struct {
        Segments segments;
        Segments cleaned;
        StringView code;
    } cases[] = {
        {{u"1", u"", u"3", u""}, {u"1", u"", u"3", u""}, u"1-3"},
        {{u"", u"5", u"", u""}, {u"", u"5", u"", u""}, u"-5"},
        {{u"", u"", u"", u""}, {u"", u"", u"", u""}, u""},
        {{u"- 1 -", u" 2", u"-3", u"4- "}, {u"1", u"2", u"3", u"4"}, u"1-2-3-4"},
        {{u"12345", u"-", u" ", u"a-b"}, {u"12345", u"", u"", u"a-b"}, u"12345-a-b"},
    };
    for (const auto& row : cases) {
        Segments k = row.segments;
        EXPECT_EQ(notation(simple().Make_1234K(k[0], k[1], k[2], k[3])),
                  "String " + show(row.code));
        EXPECT_EQ(show(k), show(row.cleaned));
    }
}

TEST(KCode, Trimmed) {
    const struct {
        StringView text;
        StringView expected;
    } cases[] = {
        {u"- -a-b- -", u"a-b"},
        {u"", u""},
        {u"-", u""},
        {u" - ", u""},
        {u"  a  ", u"a"},
        {u"--a", u"a"},
        {u"a - - b", u"a - - b"},
        {u"\t-a", u"\t-a"},
    };
    for (const auto& row : cases) {
        String text(row.text);
        EXPECT_EQ(notation(simple().TrimMinus(text)), "String " + show(row.expected));
        EXPECT_EQ(show(text), show(row.expected));
    }
}

// ---- By another way -------------------------------------------------------------------------

// Blanks and hyphens at the ends go in whatever order they stand.
String stripped(const String& text) {
    const std::size_t first = text.find_first_not_of(u" -");
    return first == String::npos ? String()
                                 : text.substr(first, text.find_last_not_of(u" -") - first + 1);
}

// One pass from the left: what has been taken apart once does not change when it is joined and
// taken apart again.
Segments expected_segments(const String& code) {
    Segments k;
    String rest = stripped(code);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t at = rest.find(u'-');
        k[i] = stripped(rest.substr(0, at));
        rest = at == String::npos ? String() : stripped(rest.substr(at));
    }
    k[3] = rest;
    k[0].resize(std::min<std::size_t>(k[0].size(), 4));
    return k;
}

void expect_as_by_another_way(const String& text) {
    ASSERT_EQ(split(text), expected_segments(text)) << show(text);
    String trimmed = text;
    ASSERT_EQ(simple().TrimMinus(trimmed), Variant(stripped(text))) << show(text);
    ASSERT_EQ(trimmed, stripped(text));
}

TEST(KCode, AllShortTexts) {
    for_all_texts({u"-", u" ", u"a", u"bcdef"}, 8, expect_as_by_another_way);
}

String random_text(Random& random, std::int64_t longest) {
    static constexpr StringView letters = u"--  --ab1234\tł";
    String text;
    for (std::int64_t i = random.between(0, longest); i > 0; --i) {
        text += letters[static_cast<std::size_t>(random.between(0, 13))];
    }
    return text;
}

TEST(KCode, RandomTexts) {
    Random random(43);
    for (int i = 0; i < frame_tests::random_cases && !HasFatalFailure(); ++i) {
        expect_as_by_another_way(random_text(random, 40));
    }
}

TEST(KCode, RandomSegmentsJoined) {
    Random random(44);
    for (int i = 0; i < frame_tests::random_cases; ++i) {
        Segments k;
        for (String& segment : k) {
            segment = random_text(random, 6);
        }
        Segments cleaned;
        String code;
        for (std::size_t j = 0; j < 4; ++j) {
            cleaned[j] = stripped(k[j]);
            code += (j > 0 && !cleaned[j].empty() ? u"-" : u"") + cleaned[j];
        }
        const std::string before = show(k);
        ASSERT_EQ(simple().Make_1234K(k[0], k[1], k[2], k[3]), Variant(code)) << before;
        ASSERT_EQ(k, cleaned) << before;
    }
}

}  // namespace
}  // namespace kvarta16::dates_tests
