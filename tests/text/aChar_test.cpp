// aChar, member by member: the edges that callers are written around.

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/text/aChar.h>

namespace kvarta16 {
namespace {

constexpr Long long_max = std::numeric_limits<Long>::max();
constexpr Long long_min = std::numeric_limits<Long>::min();
constexpr Integer integer_max = std::numeric_limits<Integer>::max();
constexpr Integer integer_min = std::numeric_limits<Integer>::min();

// The number of the failure that a call ends with, 0 if it ends without one.
template <class Call>
std::int32_t failure_of(Call&& call) {
    try {
        static_cast<void>(call());
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

// ---- c_aaa --------------------------------------------------------------------------------------

TEST(CAaa, BelongsToItsObjectAndIsEmptyAtTheStart) {
    aChar first;
    const aChar second;
    EXPECT_EQ(first.c_aaa, u"");
    first.c_aaa = u"zażółć";
    EXPECT_EQ(first.c_aaa, u"zażółć");
    EXPECT_EQ(second.c_aaa, u"");
}

TEST(CAaa, OfTheInstanceBelongsToTheThread) {
    instance<aChar>().c_aaa = u"mine";
    String seen = u"nothing yet";
    std::thread([&seen] { seen = instance<aChar>().c_aaa; }).join();
    EXPECT_EQ(seen, u"");
    EXPECT_EQ(instance<aChar>().c_aaa, u"mine");
    instance<aChar>().c_aaa.clear();
}

TEST(CAaa, IsNotTouchedByTheMembers) {
    aChar object;
    object.c_aaa = u"kept";
    String text = u"a'b";
    EXPECT_EQ(object.apostrof3(text), u"ab");
    EXPECT_EQ(object.NullStr(Variant(u"x")), u"x");
    EXPECT_EQ(object.c_aaa, u"kept");
}

// ---- The members that take any value ------------------------------------------------------------

class Thing final : public Object {};

// A value with its text, or with the failure of taking its text.
struct Sample {
    const char* name;
    Variant value;
    std::optional<String> text;
    std::int32_t failure = 0;
};

// The variables that the by-reference samples refer to.
struct Variables {
    Integer integer = 321;
    Long number = -70000;
    Double fraction = -0.5;
    Currency money = Currency::raw(-12345600);
    Date day{45429};
    Boolean truth = true;
    String text = u"zmienna";
    String empty_text;
    ObjectPointer nothing;
    Variant null = Variant::null();
    Variant empty;
    Variant variant_text = u"w wariancie";
};

std::vector<Sample> samples(Variables& variables) {
    const auto thing = std::make_shared<Thing>();
    return {
        {"Empty", Variant(), u""},
        {"Null", Variant::null(), {}, error::invalid_null},
        {"Integer", Integer{-12}, u"-12"},
        {"Integer 12", Integer{12}, u"12"},
        {"Integer 0", Integer{0}, u"0"},
        {"Long", Long{123456}, u"123456"},
        {"Single", Single{1.5F}, u"1,5"},
        {"Double", Double{0.25}, u"0,25"},
        {"Double 0", Double{0}, u"0"},
        {"Currency", Currency::raw(125000), u"12,5"},
        {"Date", Date{45429}, u"2024-05-17"},
        {"Date and time", Date{45429.5}, u"2024-05-17 12:00:00"},
        {"String", Variant(u"Żółw"), u"Żółw"},
        {"String \"\"", Variant(u""), u""},
        {"String of blanks", Variant(u"  "), u"  "},
        {"String with code 0", Variant(String(u"a\0b", 3)), String(u"a\0b", 3)},
        {"object", Variant(ObjectPointer(thing)), {}, error::type_mismatch},
        {"Nothing", Variant(ObjectPointer()), {}, error::type_mismatch},
        {"error code", Variant::error(13), {}, error::type_mismatch},
        {"missing", Variant::missing(), {}, error::type_mismatch},
        {"Boolean true", Variant(true), u"Prawda"},
        {"Boolean false", Variant(false), u"Fałsz"},
        {"Boolean 1", Boolean::from_raw(1), u"Prawda"},
        {"unknown object", UnknownObject{thing}, {}, error::type_mismatch},
        {"decimal", Decimal{0, 0, 1005, 3, true}, u"-1,005"},
        {"byte", Byte{200}, u"200"},
        {"Integer variable", Variant::reference(variables.integer), u"321"},
        {"Long variable", Variant::reference(variables.number), u"-70000"},
        {"Double variable", Variant::reference(variables.fraction), u"-0,5"},
        {"Currency variable", Variant::reference(variables.money), u"-1234,56"},
        {"Date variable", Variant::reference(variables.day), u"2024-05-17"},
        {"Boolean variable", Variant::reference(variables.truth), u"Prawda"},
        {"String variable", Variant::reference(variables.text), u"zmienna"},
        {"String variable \"\"", Variant::reference(variables.empty_text), u""},
        {"object variable", Variant::reference(variables.nothing), {}, error::type_mismatch},
        {"Variant variable Null", Variant::reference(variables.null), {}, error::invalid_null},
        {"Variant variable Empty", Variant::reference(variables.empty), u""},
        {"Variant variable", Variant::reference(variables.variant_text), u"w wariancie"},
    };
}

TEST(AnyValue, NullStrGivesTheTextOrNothing) {
    Variables variables;
    for (const Sample& sample : samples(variables)) {
        SCOPED_TRACE(sample.name);
        EXPECT_EQ(aChar().NullStr(sample.value), sample.text.value_or(u""));
    }
}

TEST(AnyValue, Str2StrWithoutALengthGivesTheTextOrNothing) {
    Variables variables;
    for (const Sample& sample : samples(variables)) {
        SCOPED_TRACE(sample.name);
        EXPECT_EQ(aChar().Str2Str(sample.value), sample.text.value_or(u""));
        EXPECT_EQ(aChar().Str2Str(sample.value, 0), sample.text.value_or(u""));
    }
}

TEST(AnyValue, Str2StrCutsTheTextOfAnyValue) {
    Variables variables;
    for (const Sample& sample : samples(variables)) {
        SCOPED_TRACE(sample.name);
        const String text = sample.text.value_or(u"");
        EXPECT_EQ(aChar().Str2Str(sample.value, 3), text.substr(0, 3));
        EXPECT_EQ(aChar().Str2Str(sample.value, integer_max), text);
        EXPECT_EQ(aChar().Str2Str(sample.value, -1), u"");
        EXPECT_EQ(aChar().Str2Str(sample.value, integer_min), u"");
    }
}

TEST(AnyValue, Str2StrOfLengths) {
    struct Case {
        Variant ds;
        Integer leng;
        StringView result;
    };
    const Case cases[] = {
        {u"abcdef", 0, u"abcdef"},   {u"abcdef", 1, u"a"},       {u"abcdef", 2, u"ab"},
        {u"abcdef", 5, u"abcde"},    {u"abcdef", 6, u"abcdef"},  {u"abcdef", 10, u"abcdef"},
        {Long{123456}, 3, u"123"},   {Double{-1.25}, 3, u"-1,"}, {Variant(true), 4, u"Praw"},
        {Variant::null(), 3, u""},   {Variant(), 3, u""},        {u"", 3, u""},
        {Date{45429.5}, 4, u"2024"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(aChar().Str2Str(test.ds, test.leng), test.result) << test.leng;
    }
}

TEST(AnyValue, NullSPCStrGivesABlankForNullEmptyAndTheEmptyText) {
    Variables variables;
    for (const Sample& sample : samples(variables)) {
        SCOPED_TRACE(sample.name);
        String expected = sample.text.value_or(u"");
        const bool is_nothing = sample.failure == error::invalid_null ||
                                (sample.text.has_value() && sample.text->empty());
        if (is_nothing) {
            expected = u" ";
        }
        EXPECT_EQ(aChar().NullSPCStr(sample.value), expected);
    }
}

TEST(AnyValue, NullSPCStrByExample) {
    EXPECT_EQ(aChar().NullSPCStr(Variant::null()), u" ");
    EXPECT_EQ(aChar().NullSPCStr(Variant()), u" ");
    EXPECT_EQ(aChar().NullSPCStr(u""), u" ");
    EXPECT_EQ(aChar().NullSPCStr(u"a"), u"a");
    EXPECT_EQ(aChar().NullSPCStr(Integer{0}), u"0");
    EXPECT_EQ(aChar().NullSPCStr(Variant::error(5)), u"");
}

TEST(AnyValue, DocumentPartsFailAsTakingTheTextFails) {
    Variables variables;
    for (const Sample& sample : samples(variables)) {
        SCOPED_TRACE(sample.name);
        EXPECT_EQ(failure_of([&] { return aChar().A_DOK(sample.value); }), sample.failure);
        EXPECT_EQ(failure_of([&] { return aChar().B_DOK(sample.value); }), sample.failure);
        if (sample.text.has_value()) {  // none of the samples has a slash or a backslash
            EXPECT_EQ(aChar().A_DOK(sample.value), *sample.text);
            EXPECT_EQ(aChar().B_DOK(sample.value), u"");
        }
    }
}

// ---- Quotes and commas --------------------------------------------------------------------------

TEST(Replace2, Overwrites) {
    struct Case {
        StringView a;
        StringView z;
        StringView doo;
        StringView after;
    };
    constexpr Case cases[] = {
        {u"Kot", u"kot", u"pies", u"pie"},
        {u"a-b", u"-", u"", u"a b"},
        {u"abcdefghij", u"bcdefghi", u"x", u"ax     hij"},
        {u"", u"x", u"y", u""},
        {u"", u"", u"y", u""},
        {u"", u"", u"", u""},
        {u"abc", u"x", u"y", u"abc"},
        {u"abc", u"abcd", u"y", u"abc"},
        {u"abc", u"x", u"axb", u"abc"},  // doo holds z, but z is not in a
        {u"ab", u"b", u"xb", u"ax"},     // doo holds z, but the end of a cuts it off
        {u"abc", u"B", u"xb", u"axx"},   // ... in the second round
        {u"abcabc", u"bc", u"abc", u"aaaaab"},
        {u"aXbxc", u"x", u"-", u"a-b-c"},
        {u"aXbxc", u"X", u"-", u"a-b-c"},
        {u"ŁÓDŹ łódź", u"łóDź", u"Kutn", u"Kutn Kutn"},
        {u"ŻÓŁW", u"ół", u"ab", u"ŻabW"},
        {u"kotek", u"kot", u"pies", u"piesk"},           // a longer doo goes over what follows
        {u"kotkotkot", u"kot", u"psina", u"psinatpsi"},  // ... also into the next match
        {u"xyz", u"z", u"abc", u"xya"},
        {u"1234567", u"123456", u"a", u"a     7"},   // five characters longer: all blanks
        {u"1234567", u"1234567", u"a", u"a     7"},  // six longer: the last one stays
        {u"12345", u"12345", u"", u"     "},         //
        {u"123456", u"123456", u"", u"     6"},      //
        {u"1234567890", u"1234567890", u"", u"     67890"},
        {u"aab", u"ab", u"ba", u"baa"},  // what is put makes a match that begins before it
        {u"aaab", u"ab", u"ba", u"baaa"},
        {u"aa a ", u"a ", u"", u"     "},  // a blank that fills up makes a match
        {u"AbAb", u"b", u"C", u"ACAC"},    // what is put keeps its case
        {u"abab", u"ab", u"B", u"B B "},
        {u"a.b", u".", u",", u"a,b"},
    };
    for (const Case& test : cases) {
        String a(test.a);
        SCOPED_TRACE(testing::Message() << testing::PrintToString(String(test.a)) << " "
                                        << testing::PrintToString(String(test.z)) << " "
                                        << testing::PrintToString(String(test.doo)));
        const Variant result = aChar().Replace2(a, test.z, test.doo);
        ASSERT_EQ(result.subtype(), Subtype::String);
        EXPECT_FALSE(result.is_reference());
        EXPECT_EQ(*result.get_if<String>(), test.after);
        EXPECT_EQ(a, test.after);
        EXPECT_EQ(a.size(), test.a.size());
    }
}

TEST(Replace2, WorksThroughCodeZero) {
    String a(u"a\0b\0", 4);
    EXPECT_EQ(aChar().Replace2(a, StringView(u"\0", 1), u"-"), Variant(u"a-b-"));
}

// Work in proportion to the text, where starting anew after each match would take minutes.
TEST(Replace2, HandlesALongText) {
    constexpr std::size_t count = 300'000;
    String a(count, u'-');
    EXPECT_EQ(aChar().Replace2(a, u"-", u"."), Variant(String(count, u'.')));
    EXPECT_EQ(a, String(count, u'.'));
}

TEST(Quotes, Apostrof2TurnsApostrophesIntoDoubleQuotes) {
    struct Case {
        StringView a;
        StringView result;
    };
    constexpr Case cases[] = {
        {u"", u""},
        {u"abc", u"abc"},
        {u"'", u"\""},
        {u"'a''b'", u"\"a\"\"b\""},
        {u"a\"b'", u"a\"b\""},
        {u"\u2019a\u2032", u"\u2019a\u2032"},  // only code 39 is an apostrophe
    };
    for (const Case& test : cases) {
        EXPECT_EQ(aChar().apostrof2(test.a), test.result);
    }
    const String all(70'000, u'\'');
    EXPECT_EQ(aChar().apostrof2(all), String(70'000, u'"'));
}

TEST(Quotes, Apostrof3TakesThemOutInPlace) {
    struct Case {
        StringView a;
        StringView after;
    };
    constexpr Case cases[] = {
        {u"", u""},         {u"a", u"a"},         {u"d'Arc", u"dArc"}, {u"d\"Arc", u"dArc"},
        {u"a'", u"a"},      {u"a\"", u"a"},       {u"a''\"\"", u"a"},  {u"a'b\"c'd\"e", u"abcde"},
        {u" 'a' ", u" a "}, {u"a\"'\"'b", u"ab"},
    };
    for (const Case& test : cases) {
        String a(test.a);
        EXPECT_EQ(aChar().apostrof3(a), test.after);
        EXPECT_EQ(a, test.after);
    }
    String longest = u"a" + String(300'000, u'\'') + String(300'000, u'"');
    EXPECT_EQ(aChar().apostrof3(longest), u"a");
}

TEST(Quotes, TurnedIntoApostrophesAndBlanks) {
    struct Case {
        StringView s;
        StringView american;
        StringView without;
    };
    constexpr Case cases[] = {
        {u"", u"", u""},
        {u"a", u"a", u"a"},
        {u"\"", u"'", u" "},
        {u"'", u"'", u" "},
        {u"\"a\"b'c\"", u"'a'b'c'", u" a b c "},
        {u"\u201Ea\u201D", u"\u201Ea\u201D", u"\u201Ea\u201D"},  // Polish quotes are none of these
    };
    for (const Case& test : cases) {
        EXPECT_EQ(aChar().Cudzysłów_Ameryk(test.s), test.american);
        EXPECT_EQ(aChar().Bez_Cudzysłowów(test.s), test.without);
    }
}

TEST(Commas, OnlyTheFirstBecomesADot) {
    struct Case {
        StringView s;
        StringView result;
    };
    constexpr Case cases[] = {
        {u"", u"0"},  {u"7", u"7"},       {u"1,5", u"1.5"}, {u"1,5,6", u"1.5,6"},
        {u",", u"."}, {u",,", u".,"},     {u"1.5", u"1.5"}, {u"1.5,6", u"1.5.6"},
        {u" ", u" "}, {u"abc,", u"abc."},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(aChar().Przecinek_Kropka(test.s), test.result);
    }
}

TEST(ControlCharacters, BecomeBlanks) {
    EXPECT_EQ(aChar().Cut1310Chars(u"a\r\nb"), u"a  b");
    EXPECT_EQ(aChar().Cut1310Chars(u"\ta\t"), u" a ");
    EXPECT_EQ(aChar().Cut1310Chars(StringView(u"a\0", 2)), u"a ");
    EXPECT_EQ(aChar().Cut1310Chars(u""), u"");
}

// č ends in the byte 13 and Ā in the byte 0, but neither is that byte in Windows-1250.
TEST(ControlCharacters, AreFourOfAllCodeUnits) {
    for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
        const String text(1, static_cast<char16_t>(code));
        const bool is_cut = code == 13 || code == 10 || code == 9 || code == 0;
        ASSERT_EQ(aChar().Cut1310Chars(text), is_cut ? String(u" ") : text) << code;
        const bool is_quote = code == 34;
        ASSERT_EQ(aChar().Cudzysłów_Ameryk(text), is_quote ? String(u"'") : text) << code;
        const bool is_any_quote = code == 34 || code == 39;
        ASSERT_EQ(aChar().Bez_Cudzysłowów(text), is_any_quote ? String(u" ") : text) << code;
    }
}

TEST(SixteenBitLoops, ReachAsFarAsTheLengthCutTo16Bits) {
    struct Case {
        std::size_t length;
        std::size_t reached;
    };
    constexpr Case cases[] = {
        {0, 0},     {1, 1},      {2, 2},      {32766, 32766}, {32767, 32767}, {32768, 0},
        {32769, 0}, {65535, 0},  {65536, 0},  {65537, 1},     {65546, 10},    {98303, 32767},
        {98304, 0}, {131071, 0}, {131072, 0}, {131075, 3},
    };
    const aChar object;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.length);
        const std::size_t rest = test.length - test.reached;
        const String quotes(test.length, u'"');
        EXPECT_EQ(object.Cudzysłów_Ameryk(quotes),
                  String(test.reached, u'\'') + String(rest, u'"'));
        EXPECT_EQ(object.Bez_Cudzysłowów(quotes), String(test.reached, u' ') + String(rest, u'"'));
        EXPECT_EQ(object.Cut1310Chars(String(test.length, u'\n')), String(test.reached, u' '));
        EXPECT_EQ(object.Cut1310Chars(String(test.length, u'ą')), String(test.reached, u'ą'));
    }
}

// ---- Columns ------------------------------------------------------------------------------------

struct ColumnCase {
    StringView s;
    Long start;
    Long l;
    StringView result;
    StringView after;
};

struct ColumnFailure {
    StringView s;
    Long start;
    Long l;
    StringView after;
};

TEST(MidUZ, CutsAndPadsAtTheRight) {
    constexpr ColumnCase cases[] = {
        {u"ab", 1, 4, u"ab  ", u"ab"},
        {u"ab", 2, 4, u"b   ", u"ab"},
        {u"ab", 3, 4, u"    ", u"ab"},
        {u"ab", 4, 4, u"   ", u"ab"},
        {u"ab", 5, 4, u"  ", u"ab"},
        {u"ab", 6, 4, u" ", u"ab"},
        {u"ab", 7, 4, u"", u"ab"},
        {u"ab", 8, 4, u"", u"ab"},
        {u"ab", long_max, 4, u"", u"ab"},
        {u"abcdef", 1, 3, u"abc", u"abcdef"},
        {u"abcdef", 4, 3, u"def", u"abcdef"},
        {u"abcdef", 5, 3, u"ef ", u"abcdef"},
        {u"abcdef", 1, 6, u"abcdef", u"abcdef"},
        {u"", 1, 3, u"   ", u""},
        {u"", 3, 3, u" ", u""},
        {u"", 4, 3, u"", u""},
        {u"abc", 1, 0, u"abc", u"abc"},
        {u"abc", 2, 0, u"bc", u"abc"},
        {u"abc", 3, 0, u"c", u"abc"},
        {u"abc", 4, 0, u"", u"abc"},
        {u"abc", long_max, 0, u"", u"abc"},
        {u"", 1, 0, u"", u""},
        {u" ab ", 1, 6, u" ab   ", u" ab "},  // no trim
        {u" ab ", 1, 3, u" ab", u" ab "},
        {u"a\r\nb\t", 1, 7, u"a  b   ", u"a  b "},
        {u"a\r\nb\t", 2, 0, u"  b ", u"a  b "},
    };
    for (const ColumnCase& test : cases) {
        SCOPED_TRACE(testing::Message() << testing::PrintToString(String(test.s)) << " "
                                        << test.start << " " << test.l);
        String s(test.s);
        EXPECT_EQ(aChar().MidUZ(s, test.start, test.l), test.result);
        EXPECT_EQ(s, test.after);
        if (test.l == 0) {
            s = test.s;
            EXPECT_EQ(aChar().MidUZ(s, test.start), test.result);
            EXPECT_EQ(s, test.after);
        }
    }
}

TEST(MidUZ, ChangesItsTextBeforeItFails) {
    constexpr ColumnFailure cases[] = {
        {u" a\tb ", 0, 0, u" a b "},
        {u" a\tb ", -1, 0, u" a b "},
        {u" a\tb ", long_min, 0, u" a b "},
        {u" a\tb ", 0, 3, u" a b "},
        {u" a\tb ", -7, 3, u" a b "},
        {u" a\tb ", 1, -1, u" a b "},
        {u" a\tb ", 0, -1, u" a b "},
        {u" a\tb ", 1, long_min, u" a b "},
        {u"", 0, 0, u""},
        {u"", 1, -1, u""},
    };
    for (const ColumnFailure& test : cases) {
        SCOPED_TRACE(testing::Message() << test.start << " " << test.l);
        String s(test.s);
        EXPECT_EQ(failure_of([&] { return aChar().MidUZ(s, test.start, test.l); }),
                  error::invalid_call);
        EXPECT_EQ(s, test.after);
    }
}

TEST(UzMid, CutsAndPadsAtTheLeft) {
    constexpr ColumnCase cases[] = {
        {u" ab ", 1, 4, u"  ab", u"ab"},
        {u" ab ", 1, 0, u" ab ", u" ab "},
        {u" ab ", 2, 0, u"ab ", u" ab "},
        {u" a\tb ", 2, 0, u"a b ", u" a b "},
        {u"ab", 1, 3, u" ab", u"ab"},
        {u"ab", 2, 4, u" ab", u"ab"},
        {u"ab", 3, 4, u"ab", u"ab"},
        {u"ab", 4, 4, u"b", u"ab"},
        {u"ab", 5, 4, u"", u"ab"},
        {u"ab", long_max, 4, u"", u"ab"},
        {u"abcd", 1, 4, u"abcd", u"abcd"},
        {u"abcd", 2, 4, u"bcd", u"abcd"},
        {u"  abcdef ", 1, 3, u"abc", u"abcdef"},
        {u"  abcdef ", 2, 3, u"bcd", u"abcdef"},
        {u"abcdef", 5, 3, u"ef", u"abcdef"},
        {u"abcdef", 6, 3, u"f", u"abcdef"},
        {u"abcdef", 7, 3, u"", u"abcdef"},
        {u"", 1, 3, u"   ", u""},
        {u"   ", 1, 2, u"  ", u""},
        {u"   ", 2, 2, u" ", u""},
        {u"   ", 1, 0, u"   ", u"   "},
        {u"", 1, 0, u"", u""},
        {u"abc", 4, 0, u"", u"abc"},
        {u"abc", long_max, 0, u"", u"abc"},
        {u"\r\nab\t", 1, 4, u"  ab", u"ab"},  // blanks by then
        {u"\r\nab\t", 1, 0, u"  ab ", u"  ab "},
        {u"\u00A0ab", 1, 4, u" \u00A0ab", u"\u00A0ab"},  // the no-break space is no blank
    };
    for (const ColumnCase& test : cases) {
        SCOPED_TRACE(testing::Message() << testing::PrintToString(String(test.s)) << " "
                                        << test.start << " " << test.l);
        String s(test.s);
        const Variant result = aChar().UzMid(s, test.start, test.l);
        ASSERT_EQ(result.subtype(), Subtype::String);
        EXPECT_EQ(*result.get_if<String>(), test.result);
        EXPECT_EQ(s, test.after);
        if (test.l == 0) {
            s = test.s;
            EXPECT_EQ(aChar().UzMid(s, test.start), Variant(test.result));
            EXPECT_EQ(s, test.after);
        }
    }
}

TEST(UzMid, ChangesItsTextBeforeItFails) {
    constexpr ColumnFailure cases[] = {
        {u" a\tb ", 0, 0, u" a b "},
        {u" a\tb ", -1, 0, u" a b "},
        {u" a\tb ", long_min, 0, u" a b "},
        {u" a\tb ", 0, 2, u"a b"},
        {u" a\tb ", 0, 3, u"a b"},
        {u" a\tb ", 0, 9, u"a b"},
        {u" a\tb ", 1, -1, u"a b"},
        {u" a\tb ", 0, -1, u"a b"},
        {u" a\tb ", 1, long_min, u"a b"},
        {u"", 0, 0, u""},
        {u"", 0, 2, u""},
        {u"  ", 1, -1, u""},
    };
    for (const ColumnFailure& test : cases) {
        SCOPED_TRACE(testing::Message() << test.start << " " << test.l);
        String s(test.s);
        EXPECT_EQ(failure_of([&] { return aChar().UzMid(s, test.start, test.l); }),
                  error::invalid_call);
        EXPECT_EQ(s, test.after);
    }
}

// The cut of the control characters drops what its 16-bit counter does not reach.
TEST(Columns, LoseTheTextThatIsTooLong) {
    struct Case {
        std::size_t length;
        std::size_t kept;
    };
    constexpr Case cases[] = {{32767, 32767}, {32768, 0}, {65535, 0},     {65536, 0},
                              {65537, 1},     {65540, 4}, {98303, 32767}, {98304, 0}};
    for (const Case& test : cases) {
        SCOPED_TRACE(test.length);
        const String kept(test.kept, u'x');
        const String pad(test.kept < 4 ? 4 - test.kept : 0, u' ');
        const String original(test.length, u'x');
        String s = original;
        EXPECT_EQ(aChar().MidUZ(s, 1, 4), kept.substr(0, 4) + pad);
        EXPECT_EQ(s, kept);
        s = original;
        EXPECT_EQ(aChar().UzMid(s, 1, 4), Variant(pad + kept.substr(0, 4)));
        EXPECT_EQ(s, kept);
        s = original;
        EXPECT_EQ(aChar().MidUZ(s, 1), kept);
        EXPECT_EQ(s, kept);
        s = original;
        EXPECT_EQ(aChar().UzMid(s, 1), Variant(kept));
        EXPECT_EQ(s, kept);
    }
}

TEST(Columns, MayBeWiderThanA16BitNumber) {
    String s = u"ab";
    EXPECT_EQ(aChar().MidUZ(s, 1, 70'000), u"ab" + String(69'998, u' '));
    EXPECT_EQ(aChar().UzMid(s, 1, 70'000), Variant(String(69'998, u' ') + u"ab"));
    EXPECT_EQ(aChar().StrDoPrawej(s, 70'000), String(69'998, u' ') + u"ab");
}

TEST(StrDoPrawej, FitsATextIntoAColumn) {
    struct Case {
        StringView s;
        Long columns;
        StringView result;
    };
    constexpr Case cases[] = {
        {u"abc", 5, u"  abc"}, {u"abc", 4, u" abc"}, {u"abc", 3, u"abc"},    {u"abc", 2, u"ab"},
        {u"abc", 1, u"a"},     {u"abc", 0, u""},     {u"", 2, u"  "},        {u"", 0, u""},
        {u" a ", 4, u"  a "},  {u" a ", 2, u" a"},   {u"a\tb", 4, u" a\tb"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(aChar().StrDoPrawej(test.s, test.columns), test.result) << test.columns;
    }
    for (const StringView s : {u"", u"abc"}) {
        for (const Long columns : {Long{-1}, Long{-2}, long_min}) {
            EXPECT_EQ(failure_of([&] { return aChar().StrDoPrawej(s, columns); }),
                      error::invalid_call);
        }
    }
}

// ---- Document numbers ---------------------------------------------------------------------------

TEST(DocumentNumbers, AreSplit) {
    struct Case {
        StringView number;
        StringView a_part;
        StringView b_part;
    };
    constexpr Case cases[] = {
        {u"XX\\ 12 / 2009", u"12 ", u"2009"},
        {u"12/2009", u"12", u"2009"},
        {u"ABC", u"ABC", u""},
        {u"", u"", u""},
        {u" ABC", u" ABC", u""},              // without a slash nothing is trimmed
        {u"  12/2009", u"12", u"2009"},       // with one it is
        {u" XX\\12", u"12", u""},             //
        {u"XX\\  12 ", u"12 ", u""},          // behind a backslash always
        {u"X\\Y\\12/1/2", u"Y\\12", u"1/2"},  // the first of each counts
        {u"a/b\\c", u"a", u"b\\c"},           // a backslash behind the slash is not looked at
        {u"/", u"", u""},
        {u"/5", u"", u"5"},
        {u"5/", u"5", u""},
        {u" /5", u"", u"5"},
        {u"5/   ", u"5", u""},
        {u"5/ 6 ", u"5", u"6 "},
        {u"\\", u"", u""},
        {u"\\/", u"", u""},
        {u"X\\   /1", u"", u"1"},
        {u"\t12/\t1", u"\t12", u"\t1"},  // a tab is no blank
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(testing::PrintToString(String(test.number)));
        EXPECT_EQ(aChar().A_DOK(test.number), test.a_part);
        EXPECT_EQ(aChar().B_DOK(test.number), test.b_part);
        String variable(test.number);
        EXPECT_EQ(aChar().A_DOK(Variant::reference(variable)), test.a_part);
        EXPECT_EQ(aChar().B_DOK(Variant::reference(variable)), test.b_part);
        EXPECT_EQ(variable, test.number);
    }
}

TEST(DocumentNumbers, AreNotMadeOfNull) {
    EXPECT_EQ(failure_of([] { return aChar().A_DOK(Variant::null()); }), error::invalid_null);
    EXPECT_EQ(failure_of([] { return aChar().B_DOK(Variant::null()); }), error::invalid_null);
}

// A date as the machine writes it may have the slash that a document number has.
TEST(DocumentNumbers, AreTakenFromTheTextOfAnyValue) {
    Locale words = locale();
    words.true_word = u"P\\ tak/nie";
    const ScopedLocale scope(words);
    EXPECT_EQ(aChar().A_DOK(Variant(true)), u"tak");
    EXPECT_EQ(aChar().B_DOK(Variant(true)), u"nie");
}

// ---- Both ends ----------------------------------------------------------------------------------

TEST(CutCudzysłowy, TakesQuotesOffBothEnds) {
    struct Case {
        StringView a;
        StringView result;
    };
    constexpr Case cases[] = {
        {u"", u""},
        {u"   ", u"   "},
        {u"a", u"a"},
        {u"\"a\"", u"a"},
        {u"\"\"\"a\"\"", u"a"},
        {u"\"a", u"a"},
        {u"a\"", u"a"},
        {u"a\"b", u"a\"b"},
        {u" \"a\"", u" \"a"},      // a blank shields the quote behind it
        {u"\"a\" ", u"a\" "},      //
        {u" \"a\" ", u" \"a\" "},  //
        {u"\"", u""},
        {u"\"\"\"", u""},
        {u"\" \"", u" "},
        {u"\" ", u" "},
        {u" \"", u" "},
        {u"\"\" \"\" \"\"", u" \"\" "},
        {u"'a'", u"'a'"},
        {u"\t\"", u"\t"},
        {u"\"\t", u"\t"},
    };
    for (const Case& test : cases) {
        EXPECT_EQ(aChar().CutCudzysłowy(test.a), test.result)
            << testing::PrintToString(String(test.a));
    }
    const String ends(50'000, u'"');
    EXPECT_EQ(aChar().CutCudzysłowy(ends + u"a\"a" + ends), u"a\"a");
}

}  // namespace
}  // namespace kvarta16
