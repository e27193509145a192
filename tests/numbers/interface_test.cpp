// The interface of aLiczby as late-bound callers see it: order, types, passing, optional
// arguments; and the members that only tell that they are no longer used.
#include "numbers_support.h"
#include "support/fake_platform.h"

namespace kvarta16::numbers_tests {
namespace {

using Table = ClassTable<aLiczby>;
using testing_support::FakePlatform;

// "[ref Zerostr String]": optional ones in brackets, by-reference ones marked.
std::string signature_of(const MemberInfo& member) {
    std::string text;
    for (const Parameter& parameter : member.parameters()) {
        std::string shown = parameter.passing == Passing::ByReference ? "ref " : "";
        shown += to_utf8(parameter.name) + " " + to_utf8(name_of(parameter.type));
        text += text.empty() ? "" : ", ";
        text += parameter.is_optional ? "[" + shown + "]" : shown;
    }
    return to_utf8(member.name) + "(" + text + ") " + to_utf8(name_of(member.result));
}

TEST(Interface, MembersStandInTheirOrder) {
    const std::vector<std::string> expected = {
        "NullXUStr(ds Variant, x Integer) String",
        "VarR0GSi(ds Variant) Currency",
        "VarR1GSi(ds Variant) Currency",
        "VarR3Si(ds Variant) Currency",
        "VarR2Si(ds Variant) Currency",
        "VarR2Si1(ds Variant) Currency",
        "VarR4Si(ds Variant) Currency",
        "VarLong(ds Variant) Long",
        "VarMMR2Str(ds Variant, [min Currency], [max Currency]) String",
        "VarR2Str(ds Variant, [ref Zerostr String]) String",
        "VarR1Si(ds Variant) Currency",
        "VarR0Si(ds Variant) Currency",
        "VarR1Str(ds Variant, [ref Zerostr String]) String",
        "VarR1GStr(ds Variant, [ref Zerostr String]) String",
        "VarR4Str(ds Variant) String",
        "VarR3Str(ds Variant, [ref Zerostr String]) String",
        "VarR2StrA(ds Variant) String",
        "VarR3StrA(ds Variant) String",
        "VarMMR1Str(ds Variant, [min Currency], [max Currency]) String",
        "VarR0Str(ds Variant) String",
        "Var2Val18Str(ds Variant) String",
        "VarValVar(ds Variant) Variant",
        "StrValVar(ds String) Variant",
        "VarVar(ds Variant) Variant",
        "SumStrValR2Str(ds1 String, ds2 String) String",
        "SumStrValR3Str(ds1 String, ds2 String, [ds3 String]) String",
        "SumStrValR2Si(ds1 Variant, ds2 Variant) Currency",
        "SumStrValR3Si(ds1 String, ds2 String) Currency",
        "VarObcinajStr(ds Variant) String",
        "VarValR0Str(ds Variant) String",
        "VarR0TnijStr(ds Variant) String",
        "VarValRMStr(ds Variant, Maska String) String",
        "Zaokr(ds Variant, [il Integer]) Currency",
        "NoSign(ref a String) Currency",
        "Num2Dot(ref a String) String",
        "PoliczWyrażenie(ref st String) String",
        "VarR2SiPL(ref ds Variant) Currency",
    };
    std::vector<std::string> members;
    for (const MemberInfo& member : Table::members) {
        members.push_back(signature_of(member));
        EXPECT_TRUE(member.is_built());
        EXPECT_EQ(member.kind, MemberKind::Method);
        for (const Parameter& parameter : member.parameters()) {
            // Left out, each holds the zero value of its type.
            EXPECT_TRUE(std::holds_alternative<std::monostate>(parameter.default_value));
        }
    }
    EXPECT_EQ(members, expected);
    EXPECT_EQ(show(Table::header.name), show(u"aLiczby"));
    EXPECT_EQ(Table::header.instancing, Instancing::Global);
    EXPECT_EQ(Table::header.interface_id, "88E68FAA-AFFF-4D6A-891F-6EA5C7BB923C");
    EXPECT_EQ(Table::header.class_id, "97EF1FC7-7732-4694-8E8F-9DE7692985D4");
}

Variant call(StringView name, Arguments& arguments) {
    for (const MemberInfo& member : Table::members) {
        if (member.name == name) {
            return invoke(member, &instance<aLiczby>(), arguments);
        }
    }
    throw std::invalid_argument("no such member");
}

TEST(Interface, LateBoundCalls) {
    Arguments zero = {Integer{0}};
    EXPECT_EQ(notation(call(u"VarR2Str", zero)), "String \"0,00\"");
    ASSERT_EQ(zero.size(), 2u);
    EXPECT_EQ(notation(zero[1]), "String \"\"");
    Arguments dashed = {Integer{0}, u"-"};
    EXPECT_EQ(notation(call(u"VarR2Str", dashed)), "String \"-\"");
    Arguments lower_bound = {Integer{5}, Integer{1}};
    EXPECT_EQ(notation(call(u"VarMMR2Str", lower_bound)), "String \"0,00\"");
    ASSERT_EQ(lower_bound.size(), 3u);
    EXPECT_EQ(notation(lower_bound[1]), "Currency 1.0000");
    EXPECT_EQ(notation(lower_bound[2]), "Currency 0.0000");
    Arguments upper_bound = {Integer{-5}, Variant::missing(), Integer{1}};
    EXPECT_EQ(notation(call(u"VarMMR2Str", upper_bound)), "String \"0,00\"");
    Arguments sum = {u"1", u"2"};
    EXPECT_EQ(notation(call(u"SumStrValR3Str", sum)), "String \"3,000\"");
    Arguments missing = {Variant::missing()};
    EXPECT_EQ(notation(call(u"VarR2Si", missing)), "Currency 0.0000");
    // An argument that cannot be coerced fails before the tolerant member begins.
    Arguments no_number = {u"abc", u"abc"};
    EXPECT_EQ(failure_of([&] { return call(u"NullXUStr", no_number); }), 13);
    Arguments null_text = {Variant::null()};
    EXPECT_EQ(failure_of([&] { return call(u"NoSign", null_text); }), 94);
}

TEST(Interface, NoArgumentIsWritten) {
    String text = u"-3,456";
    Arguments by_reference = {Variant::reference(text)};
    EXPECT_EQ(notation(call(u"NoSign", by_reference)), "Currency 3.4600");
    EXPECT_EQ(notation(call(u"Num2Dot", by_reference)), "String \"-3,46\"");
    EXPECT_EQ(notation(call(u"VarR2SiPL", by_reference)), "Currency -3.4600");
    EXPECT_EQ(notation(call(u"VarLong", by_reference)), "Long -3");
    EXPECT_EQ(show(text), show(u"-3,456"));
    String zero_text = u"-";
    Arguments with_zero_text = {Integer{0}, Variant::reference(zero_text)};
    EXPECT_EQ(notation(call(u"VarR2Str", with_zero_text)), "String \"-\"");
    EXPECT_EQ(show(zero_text), show(u"-"));
}

// ---- Withdrawn members ----------------------------------------------------------------------

TEST(Withdrawn, EachShowsItsBoxAndReturnsNothing) {
    FakePlatform fake;
    const aLiczby& all = numbers();
    for (const Variant& value : one_of_each_subtype()) {
        fake.boxes.shown.clear();
        EXPECT_EQ(all.Var2Val18Str(value), u"");
        EXPECT_EQ(all.VarValR0Str(value), u"");
        EXPECT_EQ(all.VarR0TnijStr(value), u"");
        EXPECT_EQ(all.VarValRMStr(value, u"0.00"), u"");
        EXPECT_EQ(all.Zaokr(value), Currency{});
        EXPECT_EQ(all.Zaokr(value, -7), Currency{});
        const std::vector<StringView> expected = {
            u"Var2Val18Str Nie używana", u"VarValR0Str nie używana", u"VarR0TnijStr nie używana",
            u"VarValRMStr nIE UŻYWANA",  u"Zaokr nie używana",       u"Zaokr nie używana"};
        ASSERT_EQ(fake.boxes.shown.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(show(fake.boxes.shown[i].text), show(expected[i]));
            EXPECT_EQ(fake.boxes.shown[i].style, 0);
            EXPECT_FALSE(fake.boxes.shown[i].title.has_value());
        }
    }
}

TEST(Withdrawn, TheAnswerMakesNoDifference) {
    FakePlatform fake;
    fake.boxes.answers = {MsgBoxResult::Cancel, MsgBoxResult::No};
    EXPECT_EQ(numbers().Var2Val18Str(Integer{5}), u"");
    EXPECT_EQ(numbers().Zaokr(Integer{5}, 2), Currency{});
    EXPECT_EQ(fake.boxes.shown.size(), 2u);
}

TEST(Withdrawn, NoOtherMemberShowsABox) {
    FakePlatform fake;
    for (const MemberInfo& member : Table::members) {
        const bool is_withdrawn =
            StringView(u"Var2Val18Str VarValR0Str VarR0TnijStr VarValRMStr Zaokr")
                .find(member.name) != StringView::npos;
        if (is_withdrawn) {
            continue;
        }
        Arguments arguments;
        for (const Parameter& parameter : member.parameters()) {
            arguments.push_back(parameter.type == TypeName::String ? Variant(u"12,5")
                                                                   : Variant(Integer{12}));
        }
        EXPECT_NO_THROW(static_cast<void>(call(member.name, arguments))) << to_utf8(member.name);
    }
    EXPECT_TRUE(fake.boxes.shown.empty());
}

}  // namespace
}  // namespace kvarta16::numbers_tests
