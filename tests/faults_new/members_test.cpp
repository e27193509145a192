// Every member of the classes and every primitive, by a late-bound call, while allocations fail.
// The arguments are references to the caller's variables.
#include <algorithm>
#include <map>
#include <memory>

#include <gtest/gtest.h>
#include <support/fake_platform.h>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>

#include "failing_new.h"

namespace kvarta16::failing_new_tests {
namespace {

using testing_support::FakePlatform;

// Arguments of a type, long enough that a copy of a text allocates.
Variant usual(TypeName type) {
    switch (type) {
        case TypeName::Byte:
            return Byte{3};
        case TypeName::Integer:
            return Integer{3};
        case TypeName::Long:
            return Long{3};
        case TypeName::Single:
            return 12.5F;
        case TypeName::Double:
            return 12.75;
        case TypeName::Currency:
            return Currency::raw(123456789);
        case TypeName::Date:
            return Date{45429.5};
        case TypeName::Boolean:
            return Boolean(true);
        case TypeName::Object:
            return ObjectPointer();
        case TypeName::Variant:
            return u"1234567,891";
        default:
            return u"C:\\dane\\plik.txt";
    }
}

// Where the usual ones would lead nowhere, or into a call that never ends.
const std::map<std::string, std::vector<Variant>>& own_arguments() {
    static const std::map<std::string, std::vector<Variant>> arguments = {
        {"aChar.Replace2", {u"tekst do zmiany, do", u"do", u"na"}},
        {"aChar.apostrof2", {u"to 'jest' \"tekst\""}},
        {"aChar.apostrof3", {u"to 'jest' \"tekst\""}},
        {"aChar.Cudzysłów_Ameryk", {u"to 'jest' \"tekst\""}},
        {"aChar.Bez_Cudzysłowów", {u"to 'jest' \"tekst\""}},
        {"aChar.CutCudzysłowy", {u"\"to 'jest' tekst\""}},
        {"aChar.Cut1310Chars", {u"wiersz\r\nwiersz\r\n"}},
        {"aChar.KonwertLitery", {u"Zażółć gęślą jaźń", u"MAZOVIA"}},
        {"aChar.KonwertNaMaz", {u"Zażółć gęślą jaźń"}},
        {"aChar.KonwertPlatnik", {u"Zażółć gęślą jaźń"}},
        {"aChar.KonwertNaWin", {u"Zażółć gęślą jaźń"}},
        {"aChar.konwertNaBPL", {u"Zażółć gęślą jaźń"}},
        {"aChar.Konwert_lan", {u"Zażółć gęślą jaźń"}},
        {"aChar.A_DOK", {u"FV/2024/05/000123"}},
        {"aChar.B_DOK", {u"FV/2024/05/000123"}},
        {"aLiczby.PoliczWyrażenie", {u"2*(3+4)-1,5/3+12345678"}},
        {"aLiczby.NoSign", {u"-1234567,891"}},
        {"aLiczby.VarValRMStr", {u"1234567,891", u"0.00"}},
        {"ClsSłownie.slownie", {u"1234567,89"}},
        {"aDaty.DzieńDoDnia", {Date{45429}, u"poniedziałek"}},
        {"aDaty.DzieńDoDnia2", {Date{45429}, u"poniedziałek"}},
        {"aproste.Str2Date", {u"2024-05-17"}},
        {"aproste.FlexStr2Date", {u"2024-05-17"}},
        {"aproste.Flex2DateStr", {u"2024-05-17", u"dd-MM-yyyy, dddd"}},
        {"aproste.FormatSD", {u"2024-05-17", u"yyyy-MM-dd", Boolean(false)}},
        {"aproste.FormatSDS", {u"2024-05-17", u"yyyy-MM-dd", u""}},
        {"aproste.FormatDS", {Date{45429}, u"dd-MM-yyyy, dddd"}},
        {"aproste.Zamień", {u"pierwszy tekst", u"drugi, dłuższy tekst"}},
        {"aproste.Bez_1310", {u"wiersz\r\nwiersz\r\n"}},
        {"aproste.Bez_1310_spc", {u"wiersz\r\nwiersz\r\n"}},
        {"aproste.Make_K1234", {u"ABCDEFGH-IJKLMNOPQR-STUVWXYZABC-DEFGHIJKLM", u"", u"", u"", u""}},
        {"aproste.Make_1234K", {u"ABCDEFGH", u"IJKLMNOPQR", u"STUVWXYZABC", u"DEFGHIJKLM"}},
        {"aproste.TrimMinus", {u"ABCDEFGHIJKL-MNO---"}},
        {"aproste.HGodzToLicz", {u"    1234:45    "}},
        {"aproste.HGodzToLiczRCP", {u"    1234:45    "}},
        {"Class3.Myslnik_Usun", {u"80-123-45-67-890"}},
        {"Class3.Spacje_Usun", {u"80 123 45 67 890"}},
        {"Class1.Spr_PESEL", {u"44051401359"}},
        {"Class1.Spr_NIP", {u"1234563218"}},
        {"primitives.ValPrefix", {u"  1234567.891 zł"}},
        {"primitives.FormatMask", {1234567.891, u"# ##0.00 \"złotych\""}},
        {"primitives.ToDate", {u"2024-05-17 12:34:56"}},
        {"primitives.IsDateValue", {u"2024-05-17 12:34:56"}},
        {"primitives.MakeDate", {Integer{2024}, Integer{5}, Integer{17}}},
    };
    return arguments;
}

String shown(const Variant& value) {
    switch (value.subtype()) {
        case Subtype::Empty:
            return u"Empty";
        case Subtype::Null:
            return u"Null";
        case Subtype::Object:
            return u"an object";
        case Subtype::Error:
            return u"left out";
        default:
            return ToText(value);
    }
}

// A call of a member, on a platform in memory of its own.
struct MemberCall {
    FakePlatform fake;
    std::shared_ptr<void> object;  // nullptr for a primitive
    const MemberInfo* member;
    std::vector<Variant> variables;
    Arguments arguments;

    MemberCall(const ClassInfo* info, const MemberInfo& entry, const std::string& name)
        : object(info == nullptr ? nullptr : info->create()), member(&entry) {
        fake.disk.add_folder(u"C:\\dane");
        fake.disk.add(u"C:\\dane\\plik.txt", "A text of some length");
        fake.disk.add(u"C:\\dane\\plik.txt_", "M");
        fake.find_files.add(u"a name of some length.txt");
        fake.find_files.add(u"another name of some length.txt");
        fake.system_information.windows_directory = u"C:\\WINDOWS";
        const auto own = own_arguments().find(name);
        for (const Parameter& parameter : entry.parameters()) {
            const std::size_t i = variables.size();
            variables.push_back(own != own_arguments().end() && i < own->second.size()
                                    ? own->second[i]
                                    : usual(parameter.type));
        }
        for (Variant& variable : variables) {
            arguments.push_back(Variant::reference(variable));
        }
    }
};

Case case_of(const ClassInfo* info, const MemberInfo& member) {
    std::string name =
        (info == nullptr ? "primitives" : to_utf8(info->header.name)) + "." + to_utf8(member.name);
    auto prepare = [info, &member, name] {
        const auto call = std::make_shared<MemberCall>(info, member, name);
        return Work{
            [call] {
                try {
                    return shown(invoke(*call->member, call->object.get(), call->arguments));
                } catch (const Failure& failure) {
                    return u"failure " + ToText(failure.number());
                }
            },
            [call] {
                std::vector<String> texts;
                for (const Variant& variable : call->variables) {
                    texts.push_back(shown(variable));
                }
                return texts;
            }};
    };
    return {std::move(name), std::move(prepare)};
}

// Baza, clsFTP and Akt need a server or a database behind them; the last has a test of its own.
bool is_left_out(StringView name) {
    return name == u"Baza" || name == u"clsFTP" || name == u"Akt";
}

std::vector<Case> all_members() {
    std::vector<Case> cases;
    for (const MemberInfo& primitive : value_primitives()) {
        cases.push_back(case_of(nullptr, primitive));
    }
    for (const ClassInfo& info : public_classes()) {
        for (const MemberInfo& member : info.members) {
            if (!is_left_out(info.header.name) && member.is_built()) {
                cases.push_back(case_of(&info, member));
            }
        }
    }
    return cases;
}

class Members : public testing::TestWithParam<Case> {};

TEST_P(Members, OutOfMemory) {
    check(GetParam());
}

INSTANTIATE_TEST_SUITE_P(FailingNew, Members, testing::ValuesIn(all_members()));

// Arguments of its own for a member that does not exist are a slip of the table.
TEST(MembersOutOfMemory, ArgumentsAreThoseOfMembers) {
    const std::vector<Case> cases = all_members();
    for (const auto& [name, arguments] : own_arguments()) {
        EXPECT_TRUE(std::ranges::any_of(cases, [&own = name](const Case& c) {
            return c.name == own;
        })) << name;
    }
}

}  // namespace
}  // namespace kvarta16::failing_new_tests
