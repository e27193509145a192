// The text primitives: tables, and all short texts against plain loops.

#include <limits>
#include <optional>

#include <gtest/gtest.h>

#include <kvarta16/frame/text.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

constexpr Long most = std::numeric_limits<Long>::max();
constexpr Long least = std::numeric_limits<Long>::min();

// The lengths and positions that are worth a try beside a text of a few characters.
constexpr Long numbers[] = {least, -2, -1, 0, 1, 2, 3, 4, 5, 6, most - 1, most};

std::vector<String> short_texts(const std::vector<String>& alphabet, int longest) {
    std::vector<String> texts;
    for_all_texts(alphabet, longest, [&texts](const String& text) { texts.push_back(text); });
    return texts;
}

// What a call gives, or the number of its failure.
template <class Call>
std::string text_of(const Call& call) {
    try {
        return show(call());
    } catch (const Failure& failure) {
        return "!" + std::to_string(failure.number());
    }
}

// ---- Parts ------------------------------------------------------------------------------------

std::string plain_substring(const String& text, std::int64_t start, std::int64_t count) {
    if (start < 1 || count < 0) {
        return "!5";
    }
    String part;
    for (std::int64_t i = start; i < start + count && i <= std::ssize(text); ++i) {
        part += text[static_cast<std::size_t>(i - 1)];
    }
    return show(part);
}

TEST(TextParts, AgreeWithPlainLoops) {
    for (const String& text : short_texts({u"a", u"b", u"\u0105", u" "}, 4)) {
        const auto size = static_cast<Long>(text.size());
        ASSERT_EQ(length(text), size);
        for (const Long start : numbers) {
            ASSERT_EQ(text_of([&] { return substring(text, start); }),
                      plain_substring(text, start, most))
                << show(text) << ", " << start;
            for (const Long count : numbers) {
                ASSERT_EQ(text_of([&] { return substring(text, start, count); }),
                          plain_substring(text, start, count))
                    << show(text) << ", " << start << ", " << count;
            }
        }
        for (const Long count : numbers) {
            ASSERT_EQ(text_of([&] { return left_part(text, count); }),
                      plain_substring(text, 1, count))
                << show(text) << ", " << count;
            const std::int64_t start = std::max<std::int64_t>(1, std::int64_t{size} - count + 1);
            ASSERT_EQ(text_of([&] { return right_part(text, count); }),
                      count < 0 ? "!5" : plain_substring(text, start, size))
                << show(text) << ", " << count;
        }
    }
}

TEST(TextParts, HoldAnyCodeUnit) {
    const String text = {u'a', u'\0', u'b', char16_t{0xD800}, u'c'};
    EXPECT_EQ(length(text), 5);
    EXPECT_EQ(substring(text, 2, 3), String({u'\0', u'b', char16_t{0xD800}}));
    EXPECT_EQ(right_part(text, 4), String({u'\0', u'b', char16_t{0xD800}, u'c'}));
    EXPECT_EQ(position_of(text, String(1, u'\0')), 2);
}

TEST(TextBlanks, AreAsManyAsAskedFor) {
    EXPECT_EQ(blanks(0), u"");
    EXPECT_EQ(blanks(1), u" ");
    EXPECT_EQ(blanks(5), u"     ");
    EXPECT_EQ(blanks(100'000), String(100'000, u' '));
    EXPECT_EQ(failure_of([] { return blanks(-1); }), 5);
    EXPECT_EQ(failure_of([] { return blanks(least); }), 5);
}

// ---- Overwriting ------------------------------------------------------------------------------

// The text after the call, or the failure.
std::string overwritten(const String& text, Long start, Long count, const String& replacement) {
    String target = text;
    const int failure = failure_of([&] {
        overwrite(target, start, count, replacement);
        return 0;
    });
    if (failure != 0) {
        EXPECT_EQ(target, text) << "a failed call has written";
        return "!" + std::to_string(failure);
    }
    return show(target);
}

std::string plain_overwrite(String text, std::int64_t start, std::int64_t count,
                            const String& replacement) {
    if (start < 1 || start > std::ssize(text) || count < 0) {
        return "!5";
    }
    for (std::int64_t i = 0; i < count && i < std::ssize(replacement); ++i) {
        if (start + i <= std::ssize(text)) {
            text[static_cast<std::size_t>(start + i - 1)] =
                replacement[static_cast<std::size_t>(i)];
        }
    }
    return show(text);
}

TEST(TextOverwrite, AgreesWithAPlainLoop) {
    const std::vector<String> replacements = short_texts({u"x", u"\u0105"}, is_sanitized ? 2 : 4);
    for (const String& text : short_texts({u"a", u"b"}, 4)) {
        for (const String& replacement : replacements) {
            for (const Long start : numbers) {
                for (const Long count : numbers) {
                    ASSERT_EQ(overwritten(text, start, count, replacement),
                              plain_overwrite(text, start, count, replacement))
                        << show(text) << ", " << start << ", " << count << ", "
                        << show(replacement);
                }
            }
        }
    }
}

TEST(TextOverwrite, NeverChangesTheLength) {
    EXPECT_EQ(overwritten(u"Kot", 1, 4, u"pies"), "\"pie\"");
    EXPECT_EQ(overwritten(u"abcdef", 2, 3, u"xyz"), "\"axyzef\"");
    EXPECT_EQ(overwritten(u"abcdef", 2, 1, u"xyz"), "\"axcdef\"");
    EXPECT_EQ(overwritten(u"abcdef", 2, 5, u"xy"), "\"axydef\"");
    EXPECT_EQ(overwritten(u"abcdef", 6, 3, u"xyz"), "\"abcdex\"");
    EXPECT_EQ(overwritten(u"abcdef", 7, 1, u"x"), "!5");
    EXPECT_EQ(overwritten(u"abcdef", 0, 1, u"x"), "!5");
    EXPECT_EQ(overwritten(u"", 1, 1, u"x"), "!5");
}

TEST(TextOverwrite, MayTakeItsTextFromTheTarget) {
    String target = u"abcdef";
    overwrite(target, 3, 4, target);
    EXPECT_EQ(target, u"ababcd");
    target = u"abcdef";
    overwrite(target, 1, 4, StringView(target).substr(2));
    EXPECT_EQ(target, u"cdefef");
}

// ---- Searching, replacing ---------------------------------------------------------------------

Long plain_find(const String& text, const String& wanted, std::int64_t start) {
    for (std::int64_t at = start; at + std::ssize(wanted) <= std::ssize(text) + 1; ++at) {
        bool is_here = true;
        for (std::int64_t i = 0; i < std::ssize(wanted); ++i) {
            is_here = is_here && text[static_cast<std::size_t>(at - 1 + i)] ==
                                     wanted[static_cast<std::size_t>(i)];
        }
        if (is_here) {
            return static_cast<Long>(at);
        }
    }
    return 0;
}

TEST(TextFind, AgreesWithAPlainLoop) {
    const std::vector<String> wanted_texts = short_texts({u"a", u"b"}, 3);
    for (const String& text : short_texts({u"a", u"b", u"\u0105"}, 5)) {
        for (const String& wanted : wanted_texts) {
            if (wanted.empty()) {
                continue;
            }
            ASSERT_EQ(position_of(text, wanted), plain_find(text, wanted, 1))
                << show(text) << ", " << show(wanted);
            for (const Long start : {1, 2, 3, 4, 5, 6, 7, most - 1, most}) {
                ASSERT_EQ(position_of(text, wanted, start), plain_find(text, wanted, start))
                    << show(text) << ", " << show(wanted) << ", " << start;
            }
        }
    }
}

TEST(TextFind, AnswersTheStartForNothingAndZeroInNothing) {
    EXPECT_EQ(position_of(u"abc", u""), 1);
    EXPECT_EQ(position_of(u"abc", u"", 1), 1);
    EXPECT_EQ(position_of(u"abc", u"", 3), 3);
    EXPECT_EQ(position_of(u"", u"a"), 0);
    EXPECT_EQ(position_of(u"", u""), 0);
    EXPECT_EQ(position_of(u"", u"a", 5), 0);
    for (const Long start : {0, -1, least}) {
        EXPECT_EQ(failure_of([start] { return position_of(u"abc", u"a", start); }), 5);
        EXPECT_EQ(failure_of([start] { return position_of(u"abc", u"", start); }), 5);
    }
}

TEST(TextFind, ComparesCodeUnits) {
    EXPECT_EQ(position_of(u"abc", u"B"), 0);
    EXPECT_EQ(position_of(u"\u0104", u"\u0105"), 0);
    EXPECT_EQ(position_of(u"a\u0301", u"\u00E1"), 0);
}

String plain_replace(String text, const String& wanted, const String& replacement) {
    String result;
    while (!text.empty()) {
        if (!wanted.empty() && text.starts_with(wanted)) {
            result += replacement;
            text.erase(0, wanted.size());
        } else {
            result += text.front();
            text.erase(0, 1);
        }
    }
    return result;
}

TEST(TextReplace, AgreesWithAPlainLoop) {
    const std::vector<String> wanted_texts = short_texts({u"a", u"b"}, 3);
    for (const String& text : short_texts({u"a", u"b"}, 6)) {
        for (const String& wanted : wanted_texts) {
            for (const char16_t* replacement : {u"", u"a", u"ab", u"aab", u"xyz\u0105"}) {
                ASSERT_EQ(replace_all(text, wanted, replacement),
                          plain_replace(text, wanted, replacement))
                    << show(text) << ", " << show(wanted) << ", " << show(replacement);
            }
        }
    }
}

// ---- Trimming ---------------------------------------------------------------------------------

TEST(TextTrim, TakesBlanksAlone) {
    for (const String& text : short_texts({u" ", u"a", u"\t", u"\u00A0", u"\n"}, 5)) {
        String left = text;
        while (left.starts_with(u' ')) {
            left.erase(0, 1);
        }
        String right = text;
        while (right.ends_with(u' ')) {
            right.pop_back();
        }
        String both = left;
        while (both.ends_with(u' ')) {
            both.pop_back();
        }
        ASSERT_EQ(trim_left(text), left) << show(text);
        ASSERT_EQ(trim_right(text), right) << show(text);
        ASSERT_EQ(trim(text), both) << show(text);
    }
}

// ---- Case -------------------------------------------------------------------------------------

// The capital letter of a small one, where it is certain; nothing for any other code unit.
std::optional<char16_t> capital_of(int unit) {
    const auto code = [](int value) { return static_cast<char16_t>(value); };
    if ((unit >= 'a' && unit <= 'z') || (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7)) {
        return code(unit - 0x20);
    }
    // Latin Extended-A stands in pairs, the capital first; the dotless i and its neighbours do not.
    const bool has_odd_small = (unit >= 0x100 && unit <= 0x12F) ||
                               (unit >= 0x132 && unit <= 0x137) || (unit >= 0x14A && unit <= 0x177);
    const bool has_even_small =
        (unit >= 0x139 && unit <= 0x148) || (unit >= 0x179 && unit <= 0x17E);
    if ((has_odd_small && unit % 2 == 1) || (has_even_small && unit % 2 == 0)) {
        return code(unit - 1);
    }
    if (unit >= 0x3B1 && unit <= 0x3C9 && unit != 0x3C2) {  // Greek without the final sigma
        return code(unit - 0x20);
    }
    if (unit >= 0x430 && unit <= 0x44F) {
        return code(unit - 0x20);
    }
    if (unit >= 0x450 && unit <= 0x45F) {
        return code(unit - 0x50);
    }
    return std::nullopt;
}

TEST(TextCase, ChangesEveryLetterOfTheKnownAlphabets) {
    int letters = 0;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const auto small = static_cast<char16_t>(unit);
        const auto capital = capital_of(unit);
        if (capital) {
            ++letters;
            ASSERT_EQ(upper_case(small), *capital) << std::hex << unit;
            ASSERT_EQ(upper_case(*capital), *capital) << std::hex << unit;
            ASSERT_EQ(lower_case(*capital), small) << std::hex << unit;
            ASSERT_EQ(lower_case(small), small) << std::hex << unit;
        }
    }
    EXPECT_GT(letters, 180);
}

TEST(TextCase, ChangesThePolishLetters) {
    constexpr StringView small =
        u"a\u0105bc\u0107de\u0119fghijkl\u0142mn\u0144o\u00F3pqrs\u015B"
        u"tuvwxyz\u017A\u017C";
    constexpr StringView capital =
        u"A\u0104BC\u0106DE\u0118FGHIJKL\u0141MN\u0143O\u00D3PQRS\u015A"
        u"TUVWXYZ\u0179\u017B";
    EXPECT_EQ(upper_case(small), capital);
    EXPECT_EQ(lower_case(capital), small);
    EXPECT_EQ(upper_case(capital), capital);
    EXPECT_EQ(lower_case(small), small);
}

TEST(TextCase, LeavesWhatIsNoLetter) {
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const bool is_ascii_sign =
            unit < 0x80 && !(unit >= 'a' && unit <= 'z') && !(unit >= 'A' && unit <= 'Z');
        const bool is_latin_sign =
            (unit >= 0x80 && unit < 0xC0 && unit != 0xAA && unit != 0xB5 && unit != 0xBA) ||
            unit == 0xD7 || unit == 0xF7;
        const bool is_surrogate_or_private = unit >= 0xD800 && unit <= 0xF8FF;
        const bool is_ideograph = unit >= 0x3000 && unit <= 0x9FFF;
        if (is_ascii_sign || is_latin_sign || is_surrogate_or_private || is_ideograph) {
            const auto letter = static_cast<char16_t>(unit);
            ASSERT_EQ(upper_case(letter), letter) << std::hex << unit;
            ASSERT_EQ(lower_case(letter), letter) << std::hex << unit;
        }
    }
}

TEST(TextCase, KeepsTheLengthAndSettlesAtOnce) {
    String all;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        all += static_cast<char16_t>(unit);
    }
    const String upper = upper_case(all);
    const String lower = lower_case(all);
    ASSERT_EQ(upper.size(), all.size());
    ASSERT_EQ(lower.size(), all.size());
    EXPECT_EQ(upper_case(upper), upper);
    EXPECT_EQ(lower_case(lower), lower);
    for (std::size_t i = 0; i < all.size(); ++i) {
        ASSERT_EQ(upper[i], upper_case(all[i]));
        ASSERT_EQ(lower[i], lower_case(all[i]));
    }
}

}  // namespace
}  // namespace kvarta16
