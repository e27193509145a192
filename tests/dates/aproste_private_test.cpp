// The two operations of aproste that no caller sees.
#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

String bool_to_sql(StringView condition);
Long any_to_long(const Variant& value);

// The arguments of an explicit instantiation may name private members.
template <auto to_sql, auto to_long>
struct PrivateMembers {
    friend String bool_to_sql(StringView condition) { return (simple().*to_sql)(condition); }
    friend Long any_to_long(const Variant& value) { return (simple().*to_long)(value); }
};
template struct PrivateMembers<&aproste::Bool2Sql, &aproste::AnyToLong>;

TEST(TruthWords, InAConditionBecomeNumbers) {
    const struct {
        StringView condition;
        StringView expected;
    } cases[] = {
        {u"", u""},
        {u"a = FAŁSZ", u"a =0"},
        {u"a=FAŁSZ", u"a=0"},
        {u"a = FALSE", u"a =0"},
        {u"a=FALSE", u"a=0"},
        {u"a = PRAWDA", u"a =-1"},
        {u"a=PRAWDA", u"a=-1"},
        {u"a = TRUE", u"a =-1"},
        {u"a=TRUE", u"a=-1"},
        {u"a=TRUE and b = FAŁSZ or c=TRUE", u"a=-1 and b =0 or c=-1"},
        {u"a=FALSEFALSE", u"a=0FALSE"},
        {u"a= FAŁSZYWY", u"a=0YWY"},
        // Exact case, one blank at the most, and only behind an equals sign.
        {u"a=true", u"a=true"},
        {u"a=False", u"a=False"},
        {u"a=fałsz", u"a=fałsz"},
        {u"a=  TRUE", u"a=  TRUE"},
        {u"a<>TRUE", u"a<>TRUE"},
        {u"a TRUE", u"a TRUE"},
        {u"a>=TRUE", u"a>=-1"},
        {u"==TRUE", u"==-1"},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(show(bool_to_sql(row.condition)), show(row.expected));
    }
}

TEST(WholeNumber, OfAnything) {
    const struct {
        const char* value;
        Long expected;
    } cases[] = {
        {"Null", 0},
        {"Empty", 0},
        {"String \"\"", 0},
        {"String \"  \"", 0},
        {"String \" 12 \"", 12},
        {"String \"12abc\"", 12},
        {"String \"abc\"", 0},
        {"String \"2,5\"", 2},
        {"String \"3,5\"", 4},
        {"String \"-2,5\"", -2},
        {"String \"2.5\"", 2},
        {"String \"3.5\"", 4},
        {"String \"2147483648\"", 0},
        {"String \"2147483648x\"", 0},
        {"String \"1E999\"", 0},
        {"Double 1.4999999999999947", 2},  // 1.499999999999995 at sixteen digits
        {"Double 1.4999999999999940", 1},
        {"Double -1.4999999999999947", -2},
        {"Double 0.49999999999999956", 0},
        {"Double 2.4999999999999947", 2},  // the tie goes to the even one
        {"Double inf", 0},
        {"Double 1.49999999999999978", 2},
        {"Double 2.5", 2},
        {"Double 3.5", 4},
        {"Double 59.999999999999994", 60},
        {"Double 4e-17", 0},
        {"Double 1e300", 0},
        {"Long -7", -7},
        {"Currency 2.5", 2},
        {"Boolean -1", 0},
        {"Date 2024-05-17", 2024},
        {"Object", 0},
        {"Nothing", 0},
        {"Error 5", 0},
        {"Missing", 0},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(any_to_long(parse_value(row.value)), row.expected) << row.value;
    }
}

}  // namespace
}  // namespace kvarta16::dates_tests
