// The members that coerce to something other than money: NullXUStr, VarLong, VarValVar, StrValVar,
// VarVar and VarObcinajStr.
#include "numbers_support.h"

namespace kvarta16::numbers_tests {
namespace {

// ---- NullXUStr ------------------------------------------------------------------------------

TEST(NullXUStr, RightJustifiedUpperCase) {
    struct Case {
        const char* value;
        Integer width;
        StringView expected;
    };
    const std::vector<Case> cases = {
        {"String \"abc\"", 5, u"  ABC"},
        {"String \"abc\"", 3, u"ABC"},
        {"String \"abcdef\"", 3, u"ABC"},
        {"String \"abc\"", 0, u""},
        {"String \"\"", 0, u""},
        {"String \"\"", 3, u"   "},
        {"String \" a \"", 5, u"   A "},
        {"String \"za\u017C\u00F3\u0142\u0107\"", 7, u" ZAŻÓŁĆ"},
        {"Null", 2, u"  "},
        {"Null", 0, u""},
        {"Empty", 2, u"  "},
        {"Integer -12", 5, u"  -12"},
        {"Long 123456", 3, u"123"},
        {"Byte 7", 2, u" 7"},
        {"Double 12.5", 6, u"  12,5"},
        {"Double 1e20", 6, u" 1E+20"},
        {"Single 12.5", 6, u"  12,5"},
        {"Currency 12.5", 6, u"  12,5"},
        {"Decimal 12.50", 6, u"  12,5"},
        {"Boolean -1", 7, u" PRAWDA"},
        {"Boolean 0", 7, u"  FAŁSZ"},
        {"Date 2024-05-17", 11, u" 2024-05-17"},
        {"Date 2024-05-17 12:00:00", 10, u"2024-05-17"},
        // What has no text counts as none.
        {"Missing", 2, u"  "},
        {"Error 5", 2, u"  "},
        {"Nothing", 2, u"  "},
        {"Object", 2, u"  "},
        {"UnknownObject", 2, u"  "},
        // A width below 0 can neither be cut to nor filled.
        {"String \"abc\"", -1, u""},
        {"String \"\"", -1, u""},
        {"Null", -1, u""},
        {"String \"abc\"", -32768, u""},
    };
    for (const Case& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            EXPECT_EQ(show(numbers().NullXUStr(*value, row.width)), show(row.expected))
                << row.value << ", " << row.width << ", " << form;
        }
    }
}

TEST(NullXUStr, LongTexts) {
    // Lengths whose low 16 bits are negative, 0 and small.
    for (const std::size_t length : {32768U, 40000U, 65536U, 65539U, 100000U}) {
        const Variant text = String(length, u'a');
        EXPECT_EQ(numbers().NullXUStr(text, 5), u"AAAAA") << length;
        EXPECT_EQ(numbers().NullXUStr(text, 32767), String(32767, u'A')) << length;
        EXPECT_EQ(numbers().NullXUStr(text, -1), u"") << length;
    }
    EXPECT_EQ(numbers().NullXUStr(Variant::null(), 32767), String(32767, u' '));
}

// ---- VarLong --------------------------------------------------------------------------------

TEST(VarLong, ByTheTextOfTheValue) {
    struct Case {
        const char* value;
        Long expected;
    };
    const std::vector<Case> cases = {
        {"Empty", 0},
        {"Null", 0},
        {"Missing", 0},
        {"Error 5", 0},
        {"Nothing", 0},
        {"Object", 0},
        {"UnknownObject", 0},
        {"Boolean -1", 0},  // "Prawda"
        {"Boolean 0", 0},
        {"Byte 255", 255},
        {"Integer -32768", -32768},
        {"Long 2147483647", 2147483647},
        {"Long -2147483648", -2147483647 - 1},
        {"Single 2.5", 2},
        {"Single 3.5", 4},
        {"Double 2.5", 2},
        {"Double 3.5", 4},
        {"Double -2.5", -2},
        {"Double -3.5", -4},
        {"Double 1e9", 1000000000},
        {"Double 1e10", 0},
        {"Double 1e300", 0},
        {"Double inf", 0},
        {"Double 2.4999999999999996", 2},
        {"Currency 12.5", 12},
        {"Currency 13.5", 14},
        {"Currency 922337203685477.5807", 0},
        {"Decimal 13.5", 14},
        {"Decimal 79228162514264337593543950335", 0},
        {"Date 2024-05-17", 2024},
        {"Date 2024-05-17 12:30:00", 2024},
        {"Date 0", 1899},
        {"String \"\"", 0},
        {"String \"   \"", 0},
        {"String \" 12 \"", 12},
        {"String \"12,5\"", 12},
        {"String \"13,5\"", 14},
        {"String \"12,50001\"", 13},
        {"String \"-13,5\"", -14},
        {"String \"(13,5)\"", -14},
        {"String \"12abc\"", 12},
        {"String \"12.5\"", 12},  // no number under the comma: ValPrefix and its half
        {"String \"13.5\"", 14},
        {"String \"12.5abc\"", 12},
        {"String \"13.5abc\"", 14},
        {"String \"abc\"", 0},
        {"String \"&H10\"", 16},
        {"String \"2147483647\"", 2147483647},
        {"String \"2147483647,4\"", 2147483647},
        {"String \"2147483647,5\"", 0},
        {"String \"2147483648\"", 0},
        {"String \"-2147483648\"", -2147483647 - 1},
        {"String \"-2147483649\"", 0},
        {"String \"2147483648abc\"", 0},
        {"String \"1E400\"", 0},
        {"String \"1E400abc\"", 0},
        // Trimmed of blanks alone, but white space is no obstacle to a number.
        {"String \"\\t12\"", 12},
        {"String \" \\t12abc\"", 12},
    };
    for (const Case& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            EXPECT_EQ(numbers().VarLong(*value), row.expected) << row.value << ", " << form;
            EXPECT_EQ(notation(*value), notation(parse_value(row.value)));
        }
    }
}

TEST(VarLong, TheLocaleDecidesWhatIsNumeric) {
    const Locale dot = dot_locale();
    const ScopedLocale scope(dot);
    EXPECT_EQ(numbers().VarLong(u"13.5"), 14);
    EXPECT_EQ(numbers().VarLong(u"13,5"), 13);
    EXPECT_EQ(numbers().VarLong(13.5), 14);
}

// ---- VarValVar, StrValVar, VarVar -------------------------------------------------------------

TEST(VariantMembers, EverySubtype) {
    struct Case {
        const char* value;
        const char* prefixed;  // VarValVar
        const char* checked;   // VarVar
    };
    const std::vector<Case> cases = {
        {"Empty", "Empty", "Empty"},
        {"Null", "Integer 0", "Integer 0"},
        {"Integer 5", "Integer 5", "Integer 5"},
        {"Long 5", "Long 5", "Long 5"},
        {"Single 0.5", "Single 0.5", "Single 0.5"},
        {"Double 0.5", "Double 0.5", "Double 0.5"},
        {"Currency 0.5", "Currency 0.5", "Currency 0.5"},
        {"Decimal 0.5", "Decimal 0.5", "Decimal 0.5"},
        {"Byte 5", "Byte 5", "Byte 5"},
        {"Boolean -1", "Boolean -1", "Boolean -1"},
        {"Boolean 1", "Boolean 1", "Boolean 1"},
        {"Date 2024-05-17", "Double 2024", "Integer 0"},
        // Without a text the step fails, and the result has not been set.
        {"Missing", "Empty", "Integer 0"},
        {"Error 5", "Empty", "Integer 0"},
        {"Nothing", "Empty", "Integer 0"},
        {"Object", "Empty", "Integer 0"},
        {"UnknownObject", "Empty", "Integer 0"},
        {"String \"12,5\"", "String \"12,5\"", "String \"12,5\""},
        {"String \" 12 \"", "String \" 12 \"", "String \" 12 \""},
        {"String \"(5)\"", "String \"(5)\"", "String \"(5)\""},
        {"String \"1E400\"", "String \"1E400\"", "String \"1E400\""},
        {"String \"12.5\"", "Double 12.5", "Integer 0"},
        {"String \"12abc\"", "Double 12", "Integer 0"},
        {"String \"12,5 z\u0142\"", "Double 12", "Integer 0"},
        {"String \"abc\"", "Double 0", "Integer 0"},
        {"String \"\"", "Double 0", "Integer 0"},
    };
    for (const Case& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            const Variant prefixed = numbers().VarValVar(*value);
            const Variant checked = numbers().VarVar(*value);
            EXPECT_EQ(notation(prefixed), notation(parse_value(row.prefixed)))
                << row.value << ", " << form;
            EXPECT_EQ(notation(checked), notation(parse_value(row.checked)))
                << row.value << ", " << form;
            EXPECT_FALSE(prefixed.is_reference());
            EXPECT_FALSE(checked.is_reference());
        }
    }
}

TEST(VariantMembers, StrValVarTestsByTheLocaleAndReadsByThePrefix) {
    struct Case {
        StringView text;
        const char* expected;
    };
    const std::vector<Case> cases = {
        {u"12,5", "Double 12"},      {u"12", "Double 12"},   {u" -12 ", "Double -12"},
        {u"12-", "Double 12"},       {u"(5)", "Double 0"},   {u"&H10", "Double 16"},
        {u"1E3", "Double 1000"},     {u"zł 5", "Double 0"},  {u"5 zł", "Double 5"},
        {u"1\u00A0234", "Double 1"}, {u"12.5", "Integer 0"}, {u"12abc", "Integer 0"},
        {u"abc", "Integer 0"},       {u"", "Integer 0"},     {u"1 2", "Integer 0"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(notation(numbers().StrValVar(row.text)), row.expected) << show(row.text);
    }
    const Locale dot = dot_locale();
    const ScopedLocale scope(dot);
    EXPECT_EQ(notation(numbers().StrValVar(u"12.5")), "Double 12.5");
    EXPECT_EQ(notation(numbers().StrValVar(u"12,5")), "Integer 0");
}

// ---- VarObcinajStr --------------------------------------------------------------------------

TEST(VarObcinajStr, TowardsZeroBySubtype) {
    struct Case {
        const char* value;
        StringView expected;
    };
    const std::vector<Case> cases = {
        {"Empty", u"0"},
        {"Null", u"0"},
        {"Missing", u"0"},
        {"Error 5", u"0"},
        {"Nothing", u"0"},
        {"Object", u"0"},
        {"UnknownObject", u"0"},
        {"Boolean -1", u"-1"},
        {"Boolean 1", u"-1"},
        {"Boolean 0", u"0"},
        {"Byte 255", u"255"},
        {"Integer -32768", u"-32768"},
        {"Long -2147483648", u"-2147483648"},
        {"Single 12.75", u"12"},
        {"Single -12.75", u"-12"},
        {"Single 16777216", u"16777216"},  // all digits of it as a Double
        {"Double 12.999", u"12"},
        {"Double -12.999", u"-12"},
        {"Double -0.5", u"0"},
        {"Double 123456789012345.6", u"123456789012345"},
        {"Double 1e20", u"1E+20"},
        {"Date 45429.99", u"45429"},
        {"Date -1.25", u"-1"},
        {"Currency 12.9999", u"12"},
        {"Currency -12.9999", u"-12"},
        {"Currency -0.9999", u"0"},
        {"Currency 922337203685477.5807", u"922337203685477"},
        {"Currency -922337203685477.5808", u"-922337203685477"},
        {"Decimal 12.999", u"12"},
        {"Decimal -12.999", u"-12"},
        {"Decimal -0.5", u"0"},
        {"Decimal 0", u"0"},
        {"Decimal 79228162514264337593543950335", u"79228162514264337593543950335"},
        {"Decimal 7.9228162514264337593543950335", u"7"},
        {"Decimal 7922816251426433759354395033.5", u"7922816251426433759354395033"},
        {"Decimal -79228162514264.337593543950335", u"-79228162514264"},
        {"Decimal 18446744073709551615.9", u"18446744073709551615"},
        {"Decimal 42949672960.9", u"42949672960"},
        {"String \"12,9\"", u"12"},
        {"String \"12.9\"", u"12"},
        {"String \"-12.9\"", u"-12"},
        {"String \"-0.9\"", u"0"},
        {"String \"12.9abc\"", u"12"},
        {"String \"(5)\"", u"0"},
        {"String \"abc\"", u"0"},
        {"String \"\"", u"0"},
        {"String \"1E20\"", u"1E+20"},
    };
    for (const Case& row : cases) {
        const Forms forms(parse_value(row.value));
        for (const auto& [form, value] : forms.all()) {
            EXPECT_EQ(show(numbers().VarObcinajStr(*value)), show(row.expected))
                << row.value << ", " << form;
        }
    }
}

TEST(VarObcinajStr, WhatIsInfiniteHasNoDigits) {
    for (const char* value : {"Double inf", "Double nan", "String \"1E400\""}) {
        EXPECT_EQ(failure_of([&] { return numbers().VarObcinajStr(parse_value(value)); }), 6)
            << value;
    }
}

TEST(VarObcinajStr, AgainstTheDigitsBeforeThePoint) {
    Random random(10);
    for (int i = 0; i < 50'000; ++i) {
        const std::string sign = random.chance(50) ? "-" : "";
        const std::string whole = std::to_string(random.between(1, 999'999'999'999));
        const std::string decimals = random.digits(random.between(1, 12));
        const std::string shown = sign + whole;
        const Variant exact = parse_value("Decimal " + shown + "." + decimals);
        ASSERT_EQ(show(numbers().VarObcinajStr(exact)), show(wide(shown))) << decimals;
        const Variant money = parse_value("Currency " + shown + "." + decimals.substr(0, 4));
        ASSERT_EQ(show(numbers().VarObcinajStr(money)), show(wide(shown))) << decimals;
        const Variant binary = parse_value("Double " + shown + "." + decimals.substr(0, 2));
        ASSERT_EQ(show(numbers().VarObcinajStr(binary)), show(wide(shown))) << decimals;
        const Variant text = wide(shown + "." + decimals.substr(0, 2) + "abc");
        ASSERT_EQ(show(numbers().VarObcinajStr(text)), show(wide(shown))) << decimals;
    }
}

}  // namespace
}  // namespace kvarta16::numbers_tests
