// The members that show an amount: VarR0Str to VarR4Str, VarR1GStr, the aligned, clamped and
// summed ones, NoSign and Num2Dot.
#include "numbers_support.h"

namespace kvarta16::numbers_tests {
namespace {

using ZeroTextMember = String (*)(const Variant&, StringView);

template <auto member>
String text_by(const Variant& value, StringView zero_text) {
    return (numbers().*member)(value, zero_text);
}

constexpr Currency none{};

// ---- Masked text ----------------------------------------------------------------------------

TEST(AmountText, EveryMemberForEverySubtype) {
    struct Case {
        const char* value;
        std::array<StringView, 6> expected;  // VarR0Str, VarR1Str, VarR2Str, VarR3Str, VarR4Str,
                                             // VarR1GStr
    };
    constexpr std::array<StringView, 6> zeros = {u"0",     u"0,0",    u"0,00",
                                                 u"0,000", u"0,0000", u"0,0"};
    constexpr std::array<StringView, 6> two_and_a_half = {u"3",     u"2,5",    u"2,50",
                                                          u"2,500", u"2,5000", u"2,5"};
    constexpr std::array<StringView, 6> minus_one = {u"-1",     u"-1,0",    u"-1,00",
                                                     u"-1,000", u"-1,0000", u"-1,0"};
    const std::vector<Case> cases = {
        {"Empty", zeros},
        {"Null", zeros},
        {"Missing", zeros},
        {"Error 5", zeros},
        {"Nothing", zeros},
        {"Object", zeros},
        {"UnknownObject", zeros},
        {"Boolean -1", minus_one},
        {"Boolean 0", zeros},
        {"Integer -1", minus_one},
        {"Long -1", minus_one},
        {"Byte 0", zeros},
        {"Single 2.5", two_and_a_half},
        {"Double 2.5", two_and_a_half},
        {"Currency 2.5", two_and_a_half},
        {"String \"2,5\"", two_and_a_half},
        {"String \"2.5\"", two_and_a_half},
        {"Decimal 2.5", {u"2", u"2,5", u"2,50", u"2,500", u"2,5000", u"2,5"}},
        // VarR1GStr alone goes by the text of a Date.
        {"Date 2.5", {u"3", u"2,5", u"2,50", u"2,500", u"2,5000", u"1900,0"}},
        {"String \"\"", zeros},
        {"String \"abc\"", zeros},
        {"Currency 1.2345", {u"1", u"1,2", u"1,23", u"1,235", u"1,2345", u"1,3"}},
        {"String \"-1,2345\"", {u"-1", u"-1,2", u"-1,23", u"-1,233", u"-1,2345", u"-1,2"}},
        // A core that fails counts as 0.
        {"Double 1e15", zeros},
        {"Double -1e300", zeros},
        {"Double nan", zeros},
        {"Decimal 79228162514264337593543950335", zeros},
        {"String \"1E400\"", zeros},
    };
    const aLiczby& all = numbers();
    for (const Case& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            const std::array<String, 6> shown = {all.VarR0Str(*value), all.VarR1Str(*value),
                                                 all.VarR2Str(*value), all.VarR3Str(*value),
                                                 all.VarR4Str(*value), all.VarR1GStr(*value)};
            for (std::size_t i = 0; i < shown.size(); ++i) {
                EXPECT_EQ(show(shown[i]), show(row.expected[i]))
                    << row.value << ", member " << i << ", " << form;
            }
        }
    }
}

TEST(AmountText, ZeroText) {
    struct Case {
        ZeroTextMember member;
        const char* value;
        StringView zero_text;
        StringView expected;
    };
    const std::vector<Case> cases = {
        {text_by<&aLiczby::VarR2Str>, "Integer 0", u"", u"0,00"},
        {text_by<&aLiczby::VarR2Str>, "Integer 0", u"-", u"-"},
        {text_by<&aLiczby::VarR2Str>, "Integer 0", u" brak danych ", u" brak danych "},
        {text_by<&aLiczby::VarR2Str>, "Double 12.5", u"", u"12,50"},
        {text_by<&aLiczby::VarR2Str>, "Double 12.5", u"-", u"12,50"},
        {text_by<&aLiczby::VarR2Str>, "Null", u"-", u"-"},
        {text_by<&aLiczby::VarR2Str>, "String \"abc\"", u"-", u"-"},
        {text_by<&aLiczby::VarR2Str>, "Object", u"-", u"-"},
        // What rounds to 0 is 0, and so is what cannot be rounded.
        {text_by<&aLiczby::VarR2Str>, "Currency 0.004", u"-", u"-"},
        {text_by<&aLiczby::VarR2Str>, "Currency 0.006", u"-", u"0,01"},
        {text_by<&aLiczby::VarR2Str>, "Double 1e15", u"-", u"-"},
        {text_by<&aLiczby::VarR1Str>, "Currency 0.04", u"-", u"-"},
        {text_by<&aLiczby::VarR1Str>, "Currency 0.05", u"-", u"0,1"},
        {text_by<&aLiczby::VarR1Str>, "Integer 0", u"", u"0,0"},
        {text_by<&aLiczby::VarR1Str>, "Double 1e15", u"-", u"-"},
        {text_by<&aLiczby::VarR1GStr>, "Currency 0.0001", u"-", u"0,1"},
        {text_by<&aLiczby::VarR1GStr>, "Currency -0.0001", u"-", u"-"},
        {text_by<&aLiczby::VarR1GStr>, "Integer 0", u"", u"0,0"},
        {text_by<&aLiczby::VarR1GStr>, "Double 1e15", u"-", u"-"},
        {text_by<&aLiczby::VarR3Str>, "Currency 0.0004", u"-", u"-"},
        {text_by<&aLiczby::VarR3Str>, "Currency 0.0005", u"-", u"0,001"},
        {text_by<&aLiczby::VarR3Str>, "Integer 0", u"", u"0,000"},
        {text_by<&aLiczby::VarR3Str>, "Double 1e15", u"-", u"-"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(show(row.member(parse_value(row.value), row.zero_text)), show(row.expected))
            << row.value << " with " << show(row.zero_text);
    }
}

TEST(AmountText, TheTextHasTheSeparatorOfTheLocale) {
    const Locale dot = dot_locale();
    const ScopedLocale scope(dot);
    EXPECT_EQ(show(numbers().VarR2Str(12.5)), show(u"12.50"));
    EXPECT_EQ(show(numbers().VarR2Str(Currency::raw(125000))), show(u"12.50"));
    // A text that this locale's route cannot read counts as 0.
    EXPECT_EQ(show(numbers().VarR1Str(u"12.5")), show(u"0.0"));
    EXPECT_EQ(show(numbers().VarR1Str(u"12.5", u"-")), show(u"-"));
}

// Long-hand: sign, whole part, separator, as many decimals as asked for.
std::string written(std::int64_t count, std::size_t decimals) {
    std::string text = show(Currency::raw(count));
    text.resize(text.size() - (4 - decimals));
    if (decimals == 0) {
        text.pop_back();
        return text;
    }
    text[text.size() - decimals - 1] = ',';
    return text;
}

TEST(AmountText, MoneyAgainstLongHand) {
    const aLiczby& all = numbers();
    Random random(9);
    for (int i = 0; i < frame_tests::random_cases; ++i) {
        const Currency value = Currency::raw(random.count() / 4);
        ASSERT_EQ(all.VarR0Str(value), wide(written(all.VarR0Si(value).count, 0)));
        ASSERT_EQ(all.VarR1Str(value), wide(written(all.VarR1Si(value).count, 1)));
        ASSERT_EQ(all.VarR3Str(value), wide(written(all.VarR3Si(value).count, 3)));
        ASSERT_EQ(all.VarR4Str(value), wide(written(value.count, 4)));
        // With two decimals large amounts keep what Double leaves of them, until they are shown.
        const Currency small = Currency::raw(value.count % 1'000'000'000'000);
        ASSERT_EQ(all.VarR2Str(small), wide(written(all.VarR2Si(small).count, 2)));
    }
}

// ---- Aligned text ---------------------------------------------------------------------------

TEST(AlignedText, TheCommasStandBelowEachOther) {
    struct Case {
        const char* value;
        StringView two_decimals;
        StringView three_decimals;
    };
    const std::vector<Case> cases = {
        {"Integer 12", u"12   ", u"12    "},
        {"Double 12.5", u"12,5 ", u"12,5  "},
        {"Double 12.55", u"12,55", u"12,55 "},
        {"Double 12.555", u"12,56", u"12,555"},
        {"Currency -12.5", u"-12,5 ", u"-12,5  "},
        {"Currency 12.999", u"13   ", u"12,999"},
        {"Currency 0", u"0   ", u"0    "},
        {"Null", u"0   ", u"0    "},
        {"Empty", u"0   ", u"0    "},
        {"Object", u"0   ", u"0    "},
        {"Missing", u"0   ", u"0    "},
        {"Boolean -1", u"-1   ", u"-1    "},
        {"String \"12,5\"", u"12,5 ", u"12,5  "},
        {"String \"abc\"", u"0   ", u"0    "},
        // In Double four decimals remain of this amount, and none is lacking.
        {"Decimal 922337203685477", u"922337203685476,9664", u"922337203685477    "},
    };
    for (const Case& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            EXPECT_EQ(show(numbers().VarR2StrA(*value)), show(row.two_decimals))
                << row.value << ", " << form;
            EXPECT_EQ(show(numbers().VarR3StrA(*value)), show(row.three_decimals))
                << row.value << ", " << form;
        }
    }
    for (const char* beyond : {"Double 1e15", "String \"1E400\"", "Decimal 1000000000000000"}) {
        EXPECT_EQ(failure_of([&] { return numbers().VarR2StrA(parse_value(beyond)); }), 6);
        EXPECT_EQ(failure_of([&] { return numbers().VarR3StrA(parse_value(beyond)); }), 6);
    }
}

TEST(AlignedText, WithoutACommaTheBlanksOfAWholeNumber) {
    const Locale dot = dot_locale();
    const ScopedLocale scope(dot);
    EXPECT_EQ(show(numbers().VarR2StrA(12.5)), show(u"12.5   "));
    EXPECT_EQ(show(numbers().VarR3StrA(12.5)), show(u"12.5    "));
}

// ---- Clamped text ---------------------------------------------------------------------------

TEST(ClampedText, EachBoundStandsByItself) {
    struct Case {
        const char* value;
        const char* min;
        const char* max;
        StringView two_decimals;
        StringView one_decimal;
    };
    const std::vector<Case> cases = {
        {"Integer 5", "0", "0", u"5,00", u"5,0"},
        {"Integer -5", "0", "0", u"-5,00", u"-5,0"},
        {"Integer 5", "1", "0", u"0,00", u"0,0"},  // no maximum: 0 is one
        {"Integer 5", "10", "20", u"10,00", u"10,0"},
        {"Integer 15", "10", "20", u"15,00", u"15,0"},
        {"Integer 25", "10", "20", u"20,00", u"20,0"},
        {"Integer 10", "10", "20", u"10,00", u"10,0"},
        {"Integer 20", "10", "20", u"20,00", u"20,0"},
        {"Integer -5", "0", "20", u"0,00", u"0,0"},  // no minimum: 0 is one
        {"Integer 5", "0", "20", u"5,00", u"5,0"},
        {"Integer -10", "-5", "0", u"-5,00", u"-5,0"},
        {"Integer -3", "-5", "0", u"-3,00", u"-3,0"},
        {"Integer 3", "-5", "0", u"0,00", u"0,0"},
        {"Integer -10", "0", "-5", u"-5,00", u"-5,0"},  // up to 0, and then down to the maximum
        {"Integer 5", "20", "10", u"10,00", u"10,0"},   // up to the minimum, down to the maximum
        {"Integer 30", "20", "10", u"10,00", u"10,0"},
        {"Null", "10", "20", u"10,00", u"10,0"},
        {"Null", "0", "0", u"0,00", u"0,0"},
        {"Missing", "10", "20", u"10,00", u"10,0"},
        {"Object", "10", "20", u"10,00", u"10,0"},
        {"Boolean -1", "-5", "5", u"-1,00", u"-1,0"},
        {"String \"12abc\"", "10", "20", u"12,00", u"12,0"},
        // A bound is rounded when it takes the amount's place, and not before.
        {"Integer 1", "1.0260", "5", u"1,03", u"1,0"},
        {"Currency 1.0049", "1.0001", "5", u"1,00", u"1,0"},
        {"Integer 9", "0", "8.456", u"8,46", u"8,5"},
        // A core that fails leaves 0, which the minimum lifts.
        {"Double 1e15", "10", "20", u"10,00", u"10,0"},
        {"Double 1e15", "0", "20", u"0,00", u"0,0"},
        {"String \"1E400\"", "0", "0", u"0,00", u"0,0"},
        // A bound that cannot be rounded leaves the amount as it was.
        {"Integer 5", "922337203685477.5807", "922337203685477.5807", u"5,00", u"5,0"},
        {"Integer 5", "-922337203685477.5807", "-922337203685477.5807", u"-922337203685477,58",
         u"5,0"},
    };
    for (const Case& row : cases) {
        const Currency min = parse_currency(row.min);
        const Currency max = parse_currency(row.max);
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            EXPECT_EQ(show(numbers().VarMMR2Str(*value, min, max)), show(row.two_decimals))
                << row.value << " from " << row.min << " to " << row.max << ", " << form;
            EXPECT_EQ(show(numbers().VarMMR1Str(*value, min, max)), show(row.one_decimal))
                << row.value << " from " << row.min << " to " << row.max << ", " << form;
        }
    }
}

TEST(ClampedText, BoundsLeftOut) {
    EXPECT_EQ(show(numbers().VarMMR2Str(Integer{5})), show(u"5,00"));
    EXPECT_EQ(show(numbers().VarMMR2Str(Integer{5}, Currency::raw(10000))), show(u"0,00"));
    EXPECT_EQ(show(numbers().VarMMR2Str(Integer{-5}, none, Currency::raw(10000))), show(u"0,00"));
    EXPECT_EQ(show(numbers().VarMMR1Str(Integer{5})), show(u"5,0"));
}

// ---- Sums -----------------------------------------------------------------------------------

TEST(Sums, EachOperandIsRoundedFirst) {
    EXPECT_EQ(show(numbers().SumStrValR2Str(u"1,005", u"1,005")), show(u"2,00"));
    EXPECT_EQ(show(numbers().SumStrValR2Str(u"1,125", u"1,125")), show(u"2,26"));
    EXPECT_EQ(show(numbers().SumStrValR2Str(u"1,5", u"-2,25")), show(u"-0,75"));
    EXPECT_EQ(show(numbers().SumStrValR2Str(u"12.34 zł", u"abc")), show(u"12,00"));
    EXPECT_EQ(show(numbers().SumStrValR2Str(u"", u"")), show(u"0,00"));
    EXPECT_EQ(show(numbers().SumStrValR3Str(u"1,0005", u"1,0005")), show(u"2,002"));
    EXPECT_EQ(show(numbers().SumStrValR3Str(u"1,0005", u"1,0005", u"-1,2345")), show(u"0,769"));
    EXPECT_EQ(show(numbers().SumStrValR3Str(u"1", u"2", u"")), show(u"3,000"));
    EXPECT_EQ(show(numbers().SumStrValR3Str(u"1", u"2", u"3.5")), show(u"6,500"));
    EXPECT_EQ(numbers().SumStrValR3Si(u"1,0005", u"-1,2345"), Currency::raw(10010 - 12330));
    EXPECT_EQ(numbers().SumStrValR2Si(u"1,125", Currency::raw(11250)), Currency::raw(22600));
    EXPECT_EQ(numbers().SumStrValR2Si(1.005, u"1,005"), Currency::raw(20100));
}

TEST(Sums, EverySubtype) {
    for (const Variant& value : one_of_each_subtype()) {
        const Forms forms(value);
        for (const auto& [form, operand] : forms.all()) {
            const Currency alone = numbers().VarR2Si(*operand);
            EXPECT_EQ(numbers().SumStrValR2Si(*operand, Integer{2}), alone + Currency::raw(20000))
                << notation(value) << ", " << form;
            EXPECT_EQ(numbers().SumStrValR2Si(Integer{2}, *operand), alone + Currency::raw(20000))
                << notation(value) << ", " << form;
        }
    }
}

TEST(Sums, WrapButTheOperandsDoNot) {
    const Variant large = parse_value("Currency 900000000000000");
    EXPECT_EQ(amount([&] { return numbers().SumStrValR2Si(large, large); }),
              "-44674407370955.1616");
    constexpr StringView large_text = u"900000000000000";
    EXPECT_EQ(show(numbers().SumStrValR2Str(large_text, large_text)), show(u"-44674407370955,16"));
    EXPECT_EQ(show(numbers().SumStrValR3Str(large_text, large_text)), show(u"-44674407370955,162"));
    EXPECT_EQ(amount([&] { return numbers().SumStrValR3Si(large_text, large_text); }),
              "-44674407370955.1616");
    for (const StringView beyond : {StringView(u"1E15"), StringView(u"-1E400")}) {
        EXPECT_EQ(failure_of([&] { return numbers().SumStrValR2Str(beyond, u"1"); }), 6);
        EXPECT_EQ(failure_of([&] { return numbers().SumStrValR2Str(u"1", beyond); }), 6);
        EXPECT_EQ(failure_of([&] { return numbers().SumStrValR3Str(u"1", u"1", beyond); }), 6);
        EXPECT_EQ(failure_of([&] { return numbers().SumStrValR2Si(beyond, Integer{1}); }), 6);
        EXPECT_EQ(failure_of([&] { return numbers().SumStrValR3Si(u"1", beyond); }), 6);
    }
}

// ---- Without sign, and the dot for zero -------------------------------------------------------

TEST(NoSignAndNum2Dot, Texts) {
    struct Case {
        StringView text;
        const char* without_sign;
        StringView dotted;
    };
    const std::vector<Case> cases = {
        {u"0", "0", u"."},
        {u"", "0", u"."},
        {u"abc", "0", u"."},
        {u"0,004", "0", u"."},
        {u"-0,004", "0", u"."},
        {u"3,5", "3.5", u"3,50"},
        {u"3.5", "3.5", u"3,50"},
        {u"-3,456", "3.46", u"-3,46"},
        {u"3,456-", "3.46", u"-3,46"},
        {u"(3,456)", "3.46", u"-3,46"},
        {u"-1,005", "1", u"-1,00"},
        {u"12.34 zł", "12", u"12,00"},
        {u"1E15", "0", u"."},  // beyond Currency
        {u"-1E400", "0", u"."},
        // In Double this is the lowest amount, which has no opposite.
        {u"-922337203685477,5808", "0", u"-922337203685477,58"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(amount([&] { return numbers().NoSign(row.text); }), row.without_sign)
            << show(row.text);
        EXPECT_EQ(show(numbers().Num2Dot(row.text)), show(row.dotted)) << show(row.text);
    }
}

TEST(NoSignAndNum2Dot, TheDotStandsForZeroAlone) {
    const Locale dot = dot_locale();
    const ScopedLocale scope(dot);
    EXPECT_EQ(show(numbers().Num2Dot(u"3")), show(u"3.00"));
    EXPECT_EQ(show(numbers().Num2Dot(u"0")), show(u"."));
}

}  // namespace
}  // namespace kvarta16::numbers_tests
