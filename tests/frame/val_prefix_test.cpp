// ValPrefix: a table, and all short texts against a plain reading of the rule.

#include <bit>

#include <gtest/gtest.h>

#include <kvarta16/frame/value.h>

#include "frame_support.h"

namespace kvarta16 {
namespace {

using namespace frame_tests;

TEST(ValPrefix, GivesWhatTheTableTells) {
    for (const Row& row : rows_of("val_prefix.tsv", 3)) {
        SCOPED_TRACE(row.place + " " + row.cells[0]);
        const Variant text = parse_value("String " + row.cells[0]);
        EXPECT_EQ(outcome([&] { return ValPrefix(*text.get_if<String>()); }),
                  notation(std::strtod(row.cells[1].c_str(), nullptr)));
    }
}

// ---- A plain reading of the rule --------------------------------------------------------------

std::string without_white_space(StringView text) {
    std::string kept;
    for (const char16_t unit : text) {
        if (unit != u' ' && unit != u'\t' && unit != u'\n') {
            kept += unit < 0x80 ? static_cast<char>(unit) : '?';
        }
    }
    return kept;
}

std::string run_of(std::string_view text, std::string_view set) {
    return std::string(text.substr(0, text.find_first_not_of(set)));
}

double in_radix(const std::string& digits, int radix) {
    double value = 0;
    for (const char digit : digits) {
        value = value * radix + std::stoi(std::string(1, digit), nullptr, 16);
    }
    return value;
}

double plain_prefix(StringView text) {
    const std::string kept = without_white_space(text);
    const std::string_view prefix = std::string_view(kept).substr(0, 2);
    if (prefix == "&H" || prefix == "&O") {
        const bool is_octal = prefix == "&O";
        return in_radix(run_of(kept.substr(2), is_octal ? "01234567" : "0123456789ABCDEFabcdef"),
                        is_octal ? 8 : 16);
    }
    const bool has_sign = !kept.empty() && (kept[0] == '-' || kept[0] == '+');
    std::string number = has_sign ? kept.substr(0, 1) : "";
    std::string_view rest = std::string_view(kept).substr(number.size());
    const std::string whole = run_of(rest, "0123456789");
    rest.remove_prefix(whole.size());
    std::string decimals;
    if (rest.starts_with('.')) {
        decimals = run_of(rest.substr(1), "0123456789");
        rest.remove_prefix(1 + decimals.size());
    }
    if (whole.empty() && decimals.empty()) {
        return 0;
    }
    number += whole + "." + decimals;
    if (!rest.empty() && std::string_view("EeDd").find(rest[0]) != std::string_view::npos) {
        rest.remove_prefix(1);
        std::string exponent = "e";
        if (rest.starts_with('-') || rest.starts_with('+')) {
            exponent += rest[0];
            rest.remove_prefix(1);
        }
        const std::string digits = run_of(rest, "0123456789");
        if (!digits.empty()) {
            number += exponent + digits;
        }
    }
    return std::strtod(number.c_str(), nullptr);
}

void expect_all(const std::vector<String>& alphabet, int longest) {
    for_all_texts(alphabet, longest, [](const String& text) {
        ASSERT_EQ(ValPrefix(text), plain_prefix(text)) << show(text);
    });
}

TEST(ValPrefix, AgreesWithThePlainReadingOnAllShortTexts) {
    expect_all({u"0", u"5", u".", u",", u"-", u"+", u" ", u"E", u"d", u"z"}, 5);
    expect_all({u"0", u"5", u".", u"-", u"E", u"\t"}, 7);
}

// A "&" behind anything but white space is settled by nothing.
TEST(ValPrefix, AgreesWithThePlainReadingOnOtherRadices) {
    for_all_texts({u"0", u"7", u"8", u"A", u"f", u"G", u" ", u"."}, 4, [](const String& digits) {
        for (const char16_t* prefix : {u"&H", u"&O", u" & H", u"\t&O\n"}) {
            const String text = prefix + digits;
            ASSERT_EQ(ValPrefix(text), plain_prefix(text)) << show(text);
        }
    });
}

TEST(ValPrefix, IsTheNearestDouble) {
    Random random(11);
    for (int i = 0; i < random_cases; ++i) {
        std::string text = random.digits(random.between(1, 25));
        if (random.chance(70)) {
            text += "." + random.digits(random.between(0, 25));
        }
        if (random.chance(40)) {
            text += "e" + std::to_string(random.between(-330, 330));
        }
        const double expected = std::strtod(text.c_str(), nullptr);
        ASSERT_EQ(ValPrefix(wide(text)), expected) << text;
        ASSERT_EQ(ValPrefix(wide("-" + text)), -expected) << text;
        ASSERT_EQ(ValPrefix(wide(text + "zl")), expected) << text;
        const double value = random.any_double();
        ASSERT_EQ(ValPrefix(wide(show_number("%.17g", value))), value) << value;
    }
}

TEST(ValPrefix, NeverFails) {
    Random random(12);
    for (int i = 0; i < random_cases; ++i) {
        String text;
        for (std::int64_t left = random.between(0, 12); left > 0; --left) {
            text += static_cast<char16_t>(random.chance(60) ? random.between(32, 126)
                                                            : random.between(0, 0xFFFF));
        }
        ASSERT_EQ(failure_of([&] { return ValPrefix(text); }), 0) << show(text);
    }
}

TEST(ValPrefix, TakesLongTexts) {
    const String zeros(1'000'000, u'0');
    EXPECT_EQ(ValPrefix(zeros + u"5"), 5);
    EXPECT_EQ(ValPrefix(u"5." + zeros + u"5"), 5);
    EXPECT_EQ(ValPrefix(u"." + zeros + u"5e1000000"), 0.5);
    EXPECT_EQ(ValPrefix(u"0e" + String(1'000'000, u'9')), 0);
    EXPECT_EQ(ValPrefix(u"5e-" + String(1'000'000, u'9')), 0);
    EXPECT_EQ(ValPrefix(String(1'000'000, u' ') + u"5"), 5);
    EXPECT_TRUE(std::isinf(ValPrefix(u"5" + zeros)));
    EXPECT_TRUE(std::isinf(ValPrefix(u"5e" + String(1'000'000, u'9'))));
}

}  // namespace
}  // namespace kvarta16
