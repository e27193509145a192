// The two classes as a late-bound caller sees them: the members in interface order, how each
// argument is passed, and which of them come back changed.

#include <cstddef>
#include <initializer_list>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/text/Class3.h>
#include <kvarta16/text/aChar.h>

namespace kvarta16 {
namespace {

// ---- The tables ---------------------------------------------------------------------------------

struct ExpectedParameter {
    StringView name;
    TypeName type;
    Passing passing;
    bool is_optional = false;
};

struct ExpectedMember {
    StringView name;
    MemberKind kind;
    TypeName result;
    std::vector<ExpectedParameter> parameters;
};

constexpr auto value = Passing::ByValue;
constexpr auto reference = Passing::ByReference;

ExpectedMember text_method(StringView name, std::vector<ExpectedParameter> parameters,
                           TypeName result = TypeName::String) {
    return {name, MemberKind::Method, result, std::move(parameters)};
}

void expect_members(std::span<const MemberInfo> members,
                    const std::vector<ExpectedMember>& expected) {
    ASSERT_EQ(members.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(testing::PrintToString(String(expected[i].name)));
        EXPECT_EQ(members[i].name, expected[i].name);
        EXPECT_EQ(members[i].kind, expected[i].kind);
        EXPECT_EQ(members[i].result, expected[i].result);
        EXPECT_TRUE(members[i].is_built());
        const std::span<const Parameter> parameters = members[i].parameters();
        ASSERT_EQ(parameters.size(), expected[i].parameters.size());
        for (std::size_t j = 0; j < parameters.size(); ++j) {
            EXPECT_EQ(parameters[j].name, expected[i].parameters[j].name);
            EXPECT_EQ(parameters[j].type, expected[i].parameters[j].type);
            EXPECT_EQ(parameters[j].passing, expected[i].parameters[j].passing);
            EXPECT_EQ(parameters[j].is_optional, expected[i].parameters[j].is_optional);
        }
    }
}

TEST(TextMembers, OfAChar) {
    const ExpectedParameter ds{u"ds", TypeName::Variant, value};
    const ExpectedParameter aas{u"aas", TypeName::Variant, value};
    const ExpectedParameter slowo{u"Slowo", TypeName::String, value};
    const ExpectedParameter a{u"a", TypeName::String, reference};
    const ExpectedParameter s{u"s", TypeName::String, reference};
    const ExpectedParameter start{u"Start", TypeName::Long, reference};
    const ExpectedParameter l{u"l", TypeName::Long, reference, true};
    const std::vector<ExpectedMember> expected = {
        {u"c_aaa", MemberKind::PropertyGet, TypeName::String, {}},
        {u"c_aaa", MemberKind::PropertyLet, TypeName::None, {{u"value", TypeName::String, value}}},
        text_method(u"NullStr", {ds}),
        text_method(u"Str2Str", {ds, {u"leng", TypeName::Integer, reference, true}}),
        text_method(u"NullSPCStr", {ds}),
        text_method(u"Replace2",
                    {a, {u"z", TypeName::String, reference}, {u"doo", TypeName::String, reference}},
                    TypeName::Variant),
        text_method(u"apostrof2", {a}),
        text_method(u"apostrof3", {a}),
        text_method(u"Cudzysłów_Ameryk", {s}),
        text_method(u"Bez_Cudzysłowów", {s}),
        text_method(u"Przecinek_Kropka", {s}),
        text_method(u"Cut1310Chars", {s}),
        text_method(u"MidUZ", {s, start, l}),
        text_method(u"UzMid", {s, start, l}, TypeName::Variant),
        text_method(u"KonwertLitery",
                    {slowo, {u"Set_Strona_kodowa_wydruku_łańcuch", TypeName::Variant, reference}}),
        text_method(u"KonwertNaMaz", {slowo}),
        text_method(u"KonwertPlatnik", {slowo}),
        text_method(u"KonwertNaWin", {slowo}),
        text_method(u"konwertNaBPL", {slowo}),
        text_method(u"Konwert_lan", {slowo}),
        text_method(u"A_DOK", {aas}),
        text_method(u"B_DOK", {aas}),
        text_method(u"CutCudzysłowy", {{u"a", TypeName::String, value}}),
        text_method(u"StrDoPrawej", {s, {u"MAXi", TypeName::Long, reference}}),
    };
    expect_members(ClassTable<aChar>::members, expected);
    EXPECT_EQ(ClassTable<aChar>::header.name, u"aChar");
    EXPECT_EQ(ClassTable<aChar>::header.instancing, Instancing::Global);
    EXPECT_EQ(ClassTable<aChar>::header.interface_id, "4470CE82-AAD0-48FB-BAC3-37F6B279E0F9");
    EXPECT_EQ(ClassTable<aChar>::header.class_id, "C35A910A-69BB-4D37-BB5A-3EBE61941A6A");
}

TEST(TextMembers, OfClass3) {
    const ExpectedParameter s{u"s", TypeName::String, reference};
    expect_members(ClassTable<Class3>::members,
                   {text_method(u"Myslnik_Usun", {s}), text_method(u"Spacje_Usun", {s})});
    EXPECT_EQ(ClassTable<Class3>::header.name, u"Class3");
    EXPECT_EQ(ClassTable<Class3>::header.instancing, Instancing::Global);
    EXPECT_EQ(ClassTable<Class3>::header.interface_id, "28FB1BA7-D229-4719-8CC0-ED1C38174AAB");
    EXPECT_EQ(ClassTable<Class3>::header.class_id, "FDF89AC9-567D-498D-A321-A19131FDBD88");
}

// ---- Calls --------------------------------------------------------------------------------------

template <class C>
Variant call(StringView name, Arguments& arguments, MemberKind kind = MemberKind::Method) {
    for (const MemberInfo& member : ClassTable<C>::members) {
        if (member.name == name && member.kind == kind) {
            return invoke(member, &instance<C>(), arguments);
        }
    }
    ADD_FAILURE() << "no such member";
    return {};
}

struct CallCase {
    StringView name;
    Arguments before;
    Variant result;
    Arguments after;  // in the declared types, left-out arguments put in
};

const std::vector<CallCase>& char_calls() {
    static const std::vector<CallCase> calls = {
        {u"NullStr", {Integer{12}}, u"12", {Integer{12}}},
        {u"NullStr", {Variant::null()}, u"", {Variant::null()}},
        {u"Str2Str", {u"abcdef", Integer{2}}, u"ab", {u"abcdef", Integer{2}}},
        {u"Str2Str", {u"abcdef", Integer{-2}}, u"", {u"abcdef", Integer{-2}}},
        {u"NullSPCStr", {u""}, u" ", {u""}},
        {u"Replace2", {u"Kot", u"kot", u"pies"}, u"pie", {u"pie", u"kot", u"pies"}},
        {u"apostrof2", {u"a'b"}, u"a\"b", {u"a'b"}},
        {u"apostrof3", {u"d'Arc"}, u"dArc", {u"dArc"}},
        {u"Cudzysłów_Ameryk", {u"\"a\""}, u"'a'", {u"\"a\""}},
        {u"Bez_Cudzysłowów", {u"\"a'"}, u" a ", {u"\"a'"}},
        {u"Przecinek_Kropka", {u"1,5,6"}, u"1.5,6", {u"1,5,6"}},
        {u"Cut1310Chars", {u"a\r\nb"}, u"a  b", {u"a\r\nb"}},
        {u"MidUZ", {u"\tb", Long{1}, Long{4}}, u" b  ", {u" b", Long{1}, Long{4}}},
        {u"MidUZ", {u"\tb", Long{2}, Long{0}}, u"b", {u" b", Long{2}, Long{0}}},
        {u"UzMid", {u"\tb ", Long{1}, Long{4}}, u"   b", {u"b", Long{1}, Long{4}}},
        {u"UzMid", {u"\tb ", Long{1}, Long{0}}, u" b ", {u" b ", Long{1}, Long{0}}},
        {u"A_DOK", {u"XX\\ 12 / 2009"}, u"12 ", {u"XX\\ 12 / 2009"}},
        {u"B_DOK", {u"XX\\ 12 / 2009"}, u"2009", {u"XX\\ 12 / 2009"}},
        {u"CutCudzysłowy", {u"\"a\""}, u"a", {u"\"a\""}},
        {u"StrDoPrawej", {u"abc", Long{5}}, u"  abc", {u"abc", Long{5}}},
    };
    return calls;
}

const std::vector<CallCase>& separator_calls() {
    static const std::vector<CallCase> calls = {
        {u"Myslnik_Usun", {u"a-b"}, u"ab", {u"a-b"}},
        {u"Spacje_Usun", {u"a b"}, u"ab", {u"a b"}},
    };
    return calls;
}

template <class C>
void expect_calls(const std::vector<CallCase>& calls) {
    for (const CallCase& test : calls) {
        SCOPED_TRACE(testing::PrintToString(String(test.name)));
        Arguments arguments = test.before;
        EXPECT_EQ(call<C>(test.name, arguments), test.result);
        EXPECT_EQ(arguments, test.after);

        // The same with a variable of the caller's for each argument.
        Arguments variables = test.before;
        Arguments references;
        for (Variant& variable : variables) {
            references.push_back(Variant::reference(variable));
        }
        EXPECT_EQ(call<C>(test.name, references), test.result);
        EXPECT_EQ(variables, test.after);
    }
}

TEST(TextCalls, ChangeTheArgumentsThatAreWrittenAndNoOthers) {
    expect_calls<aChar>(char_calls());
    expect_calls<Class3>(separator_calls());
}

TEST(TextCalls, PutInWhatIsLeftOut) {
    const std::vector<CallCase> calls = {
        {u"Str2Str", {u"abcdef"}, u"abcdef", {u"abcdef", Integer{0}}},
        {u"Str2Str", {u"abcdef", Variant::missing()}, u"abcdef", {u"abcdef", Integer{0}}},
        {u"MidUZ", {u"abc", Long{2}}, u"bc", {u"abc", Long{2}, Long{0}}},
        {u"UzMid", {u" abc ", Long{2}}, u"abc ", {u" abc ", Long{2}, Long{0}}},
    };
    for (const CallCase& test : calls) {
        Arguments arguments = test.before;
        EXPECT_EQ(call<aChar>(test.name, arguments), test.result);
        EXPECT_EQ(arguments, test.after);
    }
}

TEST(TextCalls, CoerceTheirArguments) {
    Arguments arguments{Long{12345}, u"2", Double{2.5}};
    EXPECT_EQ(call<aChar>(u"MidUZ", arguments), Variant(u"23"));
    EXPECT_EQ(arguments, (Arguments{u"12345", Long{2}, Long{2}}));
}

struct FailingCall {
    StringView name;
    Arguments before;
    std::int32_t failure;
    Arguments after;
};

TEST(TextCalls, FailWithTheArgumentsAsTheyStand) {
    const std::vector<FailingCall> calls = {
        {u"MidUZ", {u" a\tb", Long{0}, Long{3}}, 5, {u" a b", Long{0}, Long{3}}},
        {u"UzMid", {u" a\tb", Long{1}, Long{-3}}, 5, {u"a b", Long{1}, Long{-3}}},
        {u"StrDoPrawej", {u"a", Long{-1}}, 5, {u"a", Long{-1}}},
        {u"A_DOK", {Variant::null()}, 94, {Variant::null()}},
        {u"B_DOK", {Variant::null()}, 94, {Variant::null()}},
        // An argument that cannot be coerced fails the call of a tolerant member as well.
        {u"apostrof2", {Variant::null()}, 94, {Variant::null()}},
        {u"Str2Str", {u"a", u"b"}, 13, {u"a", u"b"}},
        {u"Str2Str", {u"a", Long{40'000}}, 6, {u"a", Long{40'000}}},
    };
    for (const FailingCall& test : calls) {
        SCOPED_TRACE(testing::PrintToString(String(test.name)));
        Arguments arguments = test.before;
        try {
            call<aChar>(test.name, arguments);
            ADD_FAILURE() << "the call succeeded";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.number(), test.failure);
        }
        EXPECT_EQ(arguments, test.after);
    }
}

TEST(TextCalls, ReadAndWriteTheProperty) {
    Arguments none;
    Arguments text{u"żółw"};
    EXPECT_EQ(call<aChar>(u"c_aaa", none, MemberKind::PropertyGet), Variant(u""));
    call<aChar>(u"c_aaa", text, MemberKind::PropertyLet);
    EXPECT_EQ(instance<aChar>().c_aaa, u"żółw");
    EXPECT_EQ(call<aChar>(u"c_aaa", none, MemberKind::PropertyGet), Variant(u"żółw"));
    instance<aChar>().c_aaa.clear();
}

}  // namespace
}  // namespace kvarta16
