// The two classes as late-bound callers see them: order, types, passing, optional arguments, and
// which arguments come back changed.
#include "dates_support.h"

namespace kvarta16::dates_tests {
namespace {

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

template <class C>
void expect_members(const std::vector<std::string>& expected) {
    std::vector<std::string> members;
    for (const MemberInfo& member : ClassTable<C>::members) {
        members.push_back(signature_of(member));
        EXPECT_TRUE(member.is_built()) << to_utf8(member.name);
        EXPECT_EQ(member.kind, MemberKind::Method);
    }
    EXPECT_EQ(members, expected);
    EXPECT_EQ(ClassTable<C>::header.instancing, Instancing::Global);
}

TEST(Interface, OfADaty) {
    expect_members<aDaty>({
        "RóżnicaDat(ref da1 Date, ref da2 Date) Long",
        "BOWeek(ref Rok Integer, ref Tydzień Integer) Date",
        "EOWeek(ref Rok Integer, ref Tydzień Integer) Date",
        "BOYear(ref da Date) Date",
        "EOYear(ref da Date) Date",
        "BOMonth(ref da Date) Date",
        "EOMonth(ref da Date) Date",
        "ToDayMonth() Date",
        "BOWeek2(ref da Date) Date",
        "DzieńDoDnia(dzień1 Date, dzień2 String) Long",
        "DzieńDoDnia2(dzień1 Date, dzień2 String) Long",
        "YearN(ref da Variant) Long",
        "MonthN(ref da Variant) Long",
    });
    EXPECT_EQ(show(ClassTable<aDaty>::header.name), show(u"aDaty"));
    EXPECT_EQ(ClassTable<aDaty>::header.interface_id, "A8F04341-6047-45DD-845D-E3DA7934D58C");
    EXPECT_EQ(ClassTable<aDaty>::header.class_id, "641E72E5-9269-4AE4-B2BB-3D367169AB5C");
}

TEST(Interface, OfAproste) {
    expect_members<aproste>({
        "DateSerialSpr(ref Rok Long, ref Miesiąc Long, ref Dzień Long, "
        "[ref IFFailSetNow Boolean]) Date",
        "ObetnijGodz(ref da Date) Date",
        "Str2Date(ref s String) Date",
        "Date2Str(ref d Date) Date",
        "FlexStr2DateNOW(ref s String) Date",
        "FlexStr2Date(ref s String) Date",
        "Flex2DateStr(ref s String, [ref MaskaDocelowa String]) String",
        "FormatSD(ref da String, ref MaskaDaŻrółowa String, [ref SetNow Boolean]) Date",
        "FormatSDS(ref da String, ref MaskaDaŻrółowa String, [ref MaskaDocelowa String]) "
        "String",
        "FormatDS(ref da Date, ref MaskaDocelowa String) String",
        "NazwaMiesiąca(ref MiesiącKPIR Date) String",
        "CzekajSek(Sekundy Long) None",
        "MinMax(ref x Long, ref min Long, ref max Long) Long",
        "MinMaxi(ref x Integer, ref min Integer, ref max Integer) Integer",
        "max(ref x Long, ref y Long) Long",
        "MAXi(ref x Integer, ref y Integer) Integer",
        "TrueFalseStr(ref a Boolean) String",
        "AnyBool2Int(B Variant) Integer",
        "Bool2Str(B Boolean) String",
        "Check2Str(ref CH Integer) String",
        "Bool2Int(ref CH Boolean) Integer",
        "Str2Bool(ref StrA String) Boolean",
        "Zamień(ref aas String, ref bbs String) None",
        "Bez_1310(ref s String) String",
        "Bez_1310_spc(ref s String) String",
        "Nazwa_pliu_z____(ref s String) String",
        "Obcinaj(ref lanc String, ref dl Long, ref pocz Long) Long",
        "obcinaj_do_Przecinka(ref lanc String, ref dl Long, ref pocz Long) Long",
        "obcinaj_v(ref lanc Variant, ref dl Long, ref pocz Long) Long",
        "TrimMinus(ref a String) Variant",
        "Make_K1234(k String, ref K1 String, ref k2 String, ref k3 String, ref k4 String) "
        "None",
        "Make_1234K(ref K1 String, ref k2 String, ref k3 String, ref k4 String) Variant",
        "Chk2Bool(ref c Integer) Integer",
        "Bool2INTBool(ref c Boolean) Integer",
        "HLiczToGodz(ref LICZ Double) String",
        "HLiczToStr(ref LICZ Double) String",
        "HGodzToLicz(ref LICZ String) Double",
        "HGodzToLiczRCP(ref LICZ String) Single",
        "DbCloseSEL(ref Pr Object) None",
    });
    EXPECT_EQ(show(ClassTable<aproste>::header.name), show(u"aproste"));
    EXPECT_EQ(ClassTable<aproste>::header.interface_id, "B0CD1AC5-3C94-431F-A082-BEFB495696CB");
    EXPECT_EQ(ClassTable<aproste>::header.class_id, "30FCABA2-5DB2-4997-9FF5-09DDD3C10681");
}

TEST(Interface, OneDefaultIsNotZero) {
    for (const MemberInfo& member : ClassTable<aproste>::members) {
        for (const Parameter& parameter : member.parameters()) {
            const auto* text = std::get_if<StringView>(&parameter.default_value);
            if (member.name == u"Flex2DateStr" && parameter.name == u"MaskaDocelowa") {
                ASSERT_NE(text, nullptr);
                EXPECT_EQ(show(*text), show(u"dd-MM-yyyy"));
            } else {
                EXPECT_TRUE(std::holds_alternative<std::monostate>(parameter.default_value))
                    << to_utf8(member.name);
            }
        }
    }
}

// ---- Calls ----------------------------------------------------------------------------------

// A call in the notation of values, and the arguments afterwards; none where they stay as they are.
struct ExampleCase {
    StringView member;
    std::vector<const char*> arguments;
    const char* outcome;
    std::vector<const char*> afterwards;
};

template <class C>
void expect_examples(std::span<const ExampleCase> examples) {
    for (const ExampleCase& example : examples) {
        SCOPED_TRACE(to_utf8(example.member));
        FakePlatform fake;
        Arguments arguments;
        for (const char* argument : example.arguments) {
            arguments.push_back(parse_value(argument));
        }
        const std::string expected_outcome = example.outcome;
        EXPECT_EQ(outcome([&] { return call<C>(example.member, arguments); }),
                  expected_outcome.starts_with('!') ? expected_outcome
                                                    : notation(parse_value(expected_outcome)));
        const auto& expected = example.afterwards.empty() ? example.arguments : example.afterwards;
        ASSERT_EQ(arguments.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_EQ(notation(arguments[i]), notation(parse_value(expected[i])));
        }
        EXPECT_TRUE(fake.boxes.shown.empty());
    }
}

const ExampleCase examples_of_aDaty[] = {
    {u"BOWeek", {"Integer 2023", "Integer 1"}, "Date 44927", {}},
    {u"BOWeek", {"Integer 2023", "Integer 2"}, "Date 44928", {}},
    {u"EOWeek", {"Integer 2023", "Integer 1"}, "Date 44927", {}},
    {u"EOWeek", {"Integer 2023", "Integer 53"}, "Date 45291", {}},
    {u"EOMonth", {"Date 45323"}, "Date 45351", {}},
    {u"EOMonth", {"Date 45324"}, "Date 45351", {}},
    {u"BOWeek2", {"Date 45294.416666666664"}, "Date 45291.416666666664", {}},
    {u"DzieńDoDnia", {"Date 45428", "String \"wtorek\""}, "Long 2", {}},
    {u"DzieńDoDnia", {"Date 45428", "String \"czwartek\""}, "Long 0", {}},
    {u"DzieńDoDnia2", {"Date 45428", "String \"wtorek\""}, "Long 5", {}},
    {u"DzieńDoDnia2", {"Date 45428", "String \"czwartek\""}, "Long 0", {}},
    {u"RóżnicaDat", {"Date 45429.958333333336", "Date 45429.041666666664"}, "Long 0", {}},
};

const ExampleCase examples_of_aproste[] = {
    {u"Str2Date", {"String \"2024-05-17\""}, "Date 45429", {}},
    {u"Str2Date", {"String \"2024-05-17 13:45:00\""}, "Date 45429", {}},
    {u"FlexStr2Date", {"String \"\""}, "Date 0", {}},
    {u"FlexStr2Date", {"String \"abc\""}, "Date 0", {}},
    {u"Flex2DateStr",
     {"String \"2024-05-17\""},
     "String \"17-05-2024\"",
     {"String \"2024-05-17\"", "String \"dd-MM-yyyy\""}},
    {u"Flex2DateStr",
     {"String \"\""},
     "String \"31-12-1899\"",
     {"String \"\"", "String \"dd-MM-yyyy\""}},
    {u"FormatSDS",
     {"String \"2024-05-17\"", "String \"yyyy-MM-dd\""},
     "String \"2024-05-17\"",
     {"String \"2024-05-17\"", "String \"yyyy-MM-dd\"", "String \"yyyy-MM-dd\""}},
    {u"FormatSDS",
     {"String \"2024-05-17\"", "String \"dd-MM-yyyy\""},
     "String \"17-05-2024\"",
     {"String \"2024-05-17\"", "String \"dd-MM-yyyy\"", "String \"dd-MM-yyyy\""}},
    {u"FormatSD", {"String \"2024-05-17\"", "String \"yyyyMMdd\"", "Boolean 0"}, "!13", {}},
    {u"FormatSD", {"String \"2024-05-17\"", "String \"yyyyMMdd\"", "Boolean -1"}, "!13", {}},
    {u"Date2Str", {"Date 45429.572916666664"}, "Date 45429", {}},
    {u"ObetnijGodz", {"Date 45429.572916666664"}, "Date 45429", {}},
    {u"Make_K1234",
     {"String \"1234-56-78-90\"", "String \"x\"", "String \"yy\"", "String \"z-z\"",
      "String \"-\""},
     "Empty",
     {"String \"1234-56-78-90\"", "String \"1234\"", "String \"56\"", "String \"78\"",
      "String \"90\""}},
    {u"Make_K1234",
     {"String \"12345-6\"", "String \"x\"", "String \"yy\"", "String \"z-z\"", "String \"-\""},
     "Empty",
     {"String \"12345-6\"", "String \"1234\"", "String \"6\"", "String \"\"", "String \"\""}},
    {u"Make_1234K",
     {"String \"1\"", "String \"\"", "String \"3\"", "String \"\""},
     "String \"1-3\"",
     {}},
    {u"TrimMinus", {"String \"- -a-b- -\""}, "String \"a-b\"", {"String \"a-b\""}},
    {u"HLiczToGodz", {"Double 7.75"}, "String \"7:45\"", {}},
    {u"HLiczToGodz", {"Double 0.25"}, "String \"0:15\"", {}},
    {u"HLiczToStr", {"Double 7.75"}, "String \"7:75\"", {}},
    {u"HLiczToStr", {"Double 7.05"}, "String \"7:05\"", {}},
    {u"HGodzToLicz", {"String \"\""}, "Double 0", {"String \"0:00\""}},
    {u"HGodzToLicz", {"String \"8\""}, "Double 8", {}},
    {u"HGodzToLiczRCP", {"String \"8:15\""}, "Single 8.25", {}},
    {u"Obcinaj", {"String \"abc def ghi\"", "Long 5", "Long 1"}, "Long 4", {}},
};

const ExampleCase more_of_aproste[] = {
    {u"FormatSDS",
     {"String \"2024-05-17\"", "String \"yyyyMMdd\""},
     "!13",
     {"String \"2024-05-17\"", "String \"yyyyMMdd\"", "String \"yyyyMMdd\""}},
    {u"Flex2DateStr",
     {"String \"2024-05-17\"", "String \"\""},
     "String \"2024-05-17\"",
     {"String \"2024-05-17\"", "String \"yyyy-MM-dd\""}},
    {u"FormatSD",
     {"String \"abc\"", "String \"yyyy-MM-dd\""},
     "Date 0",
     {"String \"abc\"", "String \"yyyy-MM-dd\"", "Boolean 0"}},
    {u"DateSerialSpr",
     {"Long 2024", "Long 2", "Long 30"},
     "Date 2024-03-01",
     {"Long 2024", "Long 2", "Long 30", "Boolean 0"}},
    {u"DateSerialSpr", {"Long 10000", "Long 5", "Long 1", "Boolean 0"}, "!5", {}},
    {u"DateSerialSpr", {"Long 10000", "Long 5", "Long 1", "Boolean -1"}, "Date 2024-05-31", {}},
    {u"HLiczToGodz", {"Double -0.5"}, "String \"-0:30\"", {"Double 0.5"}},
    {u"HLiczToStr", {"Double -0.5"}, "String \"0:0-50\"", {}},
    {u"HGodzToLiczRCP", {"String \"8\""}, "!5", {}},
    {u"Obcinaj",
     {"String \"abc\"", "Long 0", "Long 0"},
     "!5",
     {"String \"abc\"", "Long 1", "Long 0"}},
    {u"obcinaj_v", {"Null", "Long 5", "Long 1"}, "Long 5", {}},
    {u"Zamień", {"String \"a\"", "String \"b\""}, "Empty", {"String \"b\"", "String \"a\""}},
    {u"Make_1234K",
     {"String \"-1\"", "String \" 2 \"", "String \"\"", "String \"3-\""},
     "String \"1-2-3\"",
     {"String \"1\"", "String \"2\"", "String \"\"", "String \"3\""}},
    {u"CzekajSek", {"Long 1"}, "Empty", {}},
    {u"AnyBool2Int", {"String \"abc\""}, "Integer 1", {}},
    // An argument that cannot be coerced fails before the member begins, tolerant or not.
    {u"TrimMinus", {"Null"}, "!94", {}},
    {u"TrueFalseStr", {"String \"abc\""}, "!13", {}},
    {u"max", {"Double 1e10", "Long 1"}, "!6", {}},
};

TEST(LateBound, Examples) {
    expect_examples<aDaty>(examples_of_aDaty);
    expect_examples<aproste>(examples_of_aproste);
    expect_examples<aproste>(more_of_aproste);
}

TEST(LateBound, VariablesOfTheCaller) {
    String k1, k2, k3, k4;
    Arguments segments = {u"12345-6", Variant::reference(k1), Variant::reference(k2),
                          Variant::reference(k3), Variant::reference(k4)};
    EXPECT_EQ(notation(call<aproste>(u"Make_K1234", segments)), "Empty");
    EXPECT_EQ(k1, u"1234");
    EXPECT_EQ(k2, u"6");
    Double hours = -0.5;
    Arguments number = {Variant::reference(hours)};
    EXPECT_EQ(notation(call<aproste>(u"HLiczToGodz", number)), "String \"-0:30\"");
    EXPECT_EQ(hours, 0.5);
    String mask;
    Arguments masks = {u"2024-05-17", u"yyyyMMdd", Variant::reference(mask)};
    EXPECT_EQ(failure_of([&] { return call<aproste>(u"FormatSDS", masks); }), 13);
    EXPECT_EQ(mask, u"yyyyMMdd");
    Integer year = 2023;
    Arguments week = {Variant::reference(year), Integer{2}};
    EXPECT_EQ(notation(call<aDaty>(u"BOWeek", week)), "Date 44928");
    EXPECT_EQ(year, 2023);
}

}  // namespace
}  // namespace kvarta16::dates_tests
