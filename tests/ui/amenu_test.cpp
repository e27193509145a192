// Every member with the exact calls that it makes, their order and their flags; what comes back for
// each answer of the platform; positions that are no numbers; faults.
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/globals.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/ui/amenu.h>

#include "support/fake_platform.h"

namespace kvarta16::ui_tests {
namespace {

using testing_support::FakePlatform;
using Calls = std::vector<std::string>;

struct Case {
    const char* name;
    std::function<Boolean(const amenu&)> run;
    Calls calls;
    const char* decides;  // the call whose answer is the result
};

const std::vector<Case>& cases() {
    static const std::vector<Case> all = {
        {"a picture before an item",
         [](const amenu& menus) { return menus.SetMenuBmp(7, u"c:\\ikona.bmp", 2, Long{3}); },
         {"LoadImageA(0; c:\\ikona.bmp; 0; 0; 0; 4144)", "GetMenu(7)", "GetSubMenu(100; 2)",
          "SetMenuItemBitmaps(200; 3; 1024; 500; 500)"},
         "SetMenuItemBitmaps"},
        {"a picture before the first item of the first menu",
         [](const amenu& menus) { return menus.SetMenuBmp(7, u""); },
         {"LoadImageA(0; ; 0; 0; 0; 4144)", "GetMenu(7)", "GetSubMenu(100; 0)",
          "SetMenuItemBitmaps(200; 0; 1024; 500; 500)"},
         "SetMenuItemBitmaps"},
        {"an item taken out",
         [](const amenu& menus) { return menus.DeleteMenu(7, 1, u"2"); },
         {"GetMenu(7)", "GetSubMenu(100; 1)", "RemoveMenu(200; 2; 1024)"},
         "RemoveMenu"},
        {"the first item of the first menu taken out",
         [](const amenu& menus) { return menus.DeleteMenu(-1); },
         {"GetMenu(-1)", "GetSubMenu(100; 0)", "RemoveMenu(200; 0; 1024)"},
         "RemoveMenu"},
        {"an item at the end of the bar",
         [](const amenu& menus) { return menus.AddNewMenu(7, u"Pomoc"); },
         {"GetMenu(7)", "AppendMenuA(100; 0; 0; Pomoc)", "DrawMenuBar(7)"},
         "AppendMenuA"},
        {"a popup at the end of the bar",
         [](const amenu& menus) { return menus.AddNewMenu(7, u"Narzędzia", true); },
         {"GetMenu(7)", "CreatePopupMenu()", "AppendMenuA(100; 16; 300; Narzędzia)",
          "DrawMenuBar(7)"},
         "AppendMenuA"},
        {"no separator in the bar",
         [](const amenu& menus) { return menus.AddNewMenu(7, u"-"); },
         {"GetMenu(7)", "AppendMenuA(100; 0; 0; -)", "DrawMenuBar(7)"},
         "AppendMenuA"},
        {"an item in a menu",
         [](const amenu& menus) { return menus.InsertNewSubMenu(7, 1, 4, u"Drukuj"); },
         {"GetMenu(7)", "GetSubMenu(100; 1)", "InsertMenuA(200; 4; 1024; 0; Drukuj)",
          "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"a popup in a menu",
         [](const amenu& menus) { return menus.InsertNewSubMenu(7, 1, 4, u"Drukuj", true); },
         {"GetMenu(7)", "GetSubMenu(100; 1)", "CreatePopupMenu()",
          "InsertMenuA(200; 4; 1040; 300; Drukuj)", "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"any bits of PopUp",
         [](const amenu& menus) {
             return menus.InsertNewSubMenu(7, 1, 4, u"Drukuj", Boolean::from_raw(1));
         },
         {"GetMenu(7)", "GetSubMenu(100; 1)", "CreatePopupMenu()",
          "InsertMenuA(200; 4; 1040; 300; Drukuj)", "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"a separator",
         [](const amenu& menus) { return menus.InsertNewSubMenu(7, 0, 0, u"-"); },
         {"GetMenu(7)", "GetSubMenu(100; 0)", "InsertMenuA(200; 0; 3072; 0; -)", "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"a separator and no popup",
         [](const amenu& menus) { return menus.InsertNewSubMenu(7, 0, 0, u"-", true); },
         {"GetMenu(7)", "GetSubMenu(100; 0)", "InsertMenuA(200; 0; 3072; 0; -)", "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"no separator for other dashes",
         [](const amenu& menus) { return menus.InsertNewSubMenu(7, 0, 0, u"- "); },
         {"GetMenu(7)", "GetSubMenu(100; 0)", "InsertMenuA(200; 0; 1024; 0; - )", "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"an item in the bar",
         [](const amenu& menus) { return menus.InsertNewMenu(7, 2, u"Okno"); },
         {"GetMenu(7)", "InsertMenuA(100; 2; 1024; 0; Okno)", "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"a dash in the bar",
         [](const amenu& menus) { return menus.InsertNewMenu(7, 0, u"-"); },
         {"GetMenu(7)", "InsertMenuA(100; 0; 1024; 0; -)", "DrawMenuBar(7)"},
         "InsertMenuA"},
        {"the bar destroyed",
         [](const amenu& menus) { return menus.DelMenu(7); },
         {"GetMenu(7)", "DestroyMenu(100)", "DrawMenuBar(7)"},
         "DestroyMenu"},
        {"a menu that nobody gets",
         [](const amenu& menus) { return menus.CreateNewMenu(); },
         {"CreateMenu()"},
         "CreateMenu"},
    };
    return all;
}

TEST(Amenu, MakesTheCallsInTheirOrder) {
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        FakePlatform fake;
        EXPECT_EQ(test.run(amenu()).raw, -1);
        EXPECT_EQ(fake.menus.calls, test.calls);
        EXPECT_TRUE(fake.boxes.shown.empty());
    }
}

TEST(Amenu, TheResultIsThatOfTheOneCallThatDecides) {
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        for (const Long answer : {0, 1, -1, 2, 65536}) {
            FakePlatform fake;
            fake.menus.answers[test.decides] = answer;
            EXPECT_EQ(test.run(amenu()).raw, answer != 0 ? -1 : 0) << answer;
            EXPECT_EQ(fake.menus.calls, test.calls);
        }
    }
}

TEST(Amenu, OtherAnswersDecideNothing) {
    for (const Case& test : cases()) {
        SCOPED_TRACE(test.name);
        FakePlatform fake;
        for (auto& [operation, answer] : fake.menus.answers) {
            answer = operation == test.decides ? 1 : 0;
        }
        EXPECT_EQ(test.run(amenu()).raw, -1);
        EXPECT_EQ(fake.menus.calls.size(), test.calls.size());
    }
}

TEST(Amenu, AWindowWithoutAMenuIsDrawnAllTheSame) {
    FakePlatform fake;
    fake.menus.answers["GetMenu"] = 0;
    fake.menus.answers["DestroyMenu"] = 0;
    EXPECT_EQ(amenu().DelMenu(7).raw, 0);
    EXPECT_EQ(fake.menus.calls, (Calls{"GetMenu(7)", "DestroyMenu(0)", "DrawMenuBar(7)"}));
}

TEST(Amenu, AMissingPictureTakesTheItemsPictureAway) {
    FakePlatform fake;
    fake.menus.answers["LoadImageA"] = 0;
    EXPECT_EQ(amenu().SetMenuBmp(7, u"nic.bmp", 1, Long{1}).raw, -1);
    EXPECT_EQ(fake.menus.calls.back(), "SetMenuItemBitmaps(200; 1; 1024; 0; 0)");
}

TEST(Amenu, ABitmapsHandleComesBackAsItIs) {
    FakePlatform fake;
    for (const Long handle : {0, 1, -5, 0x12345678}) {
        fake.menus.answers["LoadImageA"] = handle;
        EXPECT_EQ(amenu().LoadBmp(u"Z:\\żółć.bmp"), handle);
    }
    EXPECT_EQ(fake.menus.calls.front(), "LoadImageA(0; Z:\\żółć.bmp; 0; 0; 0; 4144)");
}

// ---- The position that is a Variant ---------------------------------------------------------

TEST(Amenu, TheItemsPositionIsTakenByToLong) {
    struct Taken {
        Variant given;
        const char* position;
    };
    const Taken taken[] = {{Variant(), "0"},
                           {Integer{3}, "3"},
                           {2.5, "2"},
                           {3.5, "4"},
                           {u"12", "12"},
                           {u"1,5", "2"},
                           {Boolean(true), "-1"},
                           {Long{-7}, "-7"},
                           {Currency::raw(25000), "2"}};
    for (const Taken& test : taken) {
        FakePlatform fake;
        EXPECT_EQ(amenu().DeleteMenu(7, 1, test.given).raw, -1);
        EXPECT_EQ(amenu().SetMenuBmp(7, u"a.bmp", 1, test.given).raw, -1);
        EXPECT_EQ(fake.menus.calls[2], std::string("RemoveMenu(200; ") + test.position + "; 1024)");
        EXPECT_EQ(fake.menus.calls[6],
                  std::string("SetMenuItemBitmaps(200; ") + test.position + "; 1024; 500; 500)");
    }
}

TEST(Amenu, APositionThatIsNoneLeavesTheItemAloneAndRaisesNothing) {
    const Variant wrong[] = {Variant::null(),         u"", u"trzy", 1e10, Variant::missing(),
                             Variant(ObjectPointer())};
    for (const Variant& position : wrong) {
        FakePlatform fake;
        EXPECT_EQ(amenu().DeleteMenu(7, 1, position).raw, 0);
        EXPECT_EQ(fake.menus.calls, (Calls{"GetMenu(7)", "GetSubMenu(100; 1)"}));
        fake.menus.calls.clear();
        EXPECT_EQ(amenu().SetMenuBmp(7, u"a.bmp", 1, position).raw, 0);
        EXPECT_EQ(fake.menus.calls, (Calls{"LoadImageA(0; a.bmp; 0; 0; 0; 4144)", "GetMenu(7)",
                                           "GetSubMenu(100; 1)"}));
        EXPECT_TRUE(fake.boxes.shown.empty());
    }
}

// ---- Late-bound and bare calls --------------------------------------------------------------

Variant called(StringView member, Arguments& arguments) {
    const ClassInfo* const info = find_class(u"amenu");
    return invoke(*info->find(member, MemberKind::Method), info->thread_instance(), arguments);
}

TEST(Amenu, IsCalledByName) {
    FakePlatform fake;
    Arguments window{Long{7}};
    EXPECT_EQ(called(u"DeleteMenu", window).get_if<Boolean>()->raw, -1);
    EXPECT_EQ(fake.menus.calls.back(), "RemoveMenu(200; 0; 1024)");
    ASSERT_EQ(window.size(), 3u);
    EXPECT_EQ(*window[1].get_if<Long>(), 0);
    EXPECT_EQ(*window[2].get_if<Long>(), 0);

    Arguments with_gap{u"7", u"a.bmp", Variant::missing(), u"4"};
    EXPECT_EQ(called(u"SetMenuBmp", with_gap).get_if<Boolean>()->raw, -1);
    EXPECT_EQ(fake.menus.calls.back(), "SetMenuItemBitmaps(200; 4; 1024; 500; 500)");
    EXPECT_EQ(*with_gap[3].get_if<String>(), u"4");  // a Variant stays what it is

    Arguments text{u"x.bmp"};
    EXPECT_EQ(*called(u"LoadBmp", text).get_if<Long>(), 500);
    Arguments none;
    EXPECT_EQ(called(u"CreateNewMenu", none).get_if<Boolean>()->raw, -1);
}

TEST(Amenu, ArgumentsOfTheWrongTypeFailBeforeTheCall) {
    FakePlatform fake;
    Arguments window{u"okno"};
    EXPECT_THROW(called(u"DelMenu", window), Failure);
    EXPECT_TRUE(fake.menus.calls.empty());
}

TEST(Amenu, HasBareNames) {
    FakePlatform fake;
    EXPECT_EQ(bare::LoadBmp(u"a.bmp"), 500);
    EXPECT_EQ(bare::SetMenuBmp(7, u"a.bmp", 0, Long{0}).raw, -1);
    EXPECT_EQ(bare::DeleteMenu(7).raw, -1);
    EXPECT_EQ(bare::AddNewMenu(7, u"a").raw, -1);
    EXPECT_EQ(bare::InsertNewSubMenu(7, 0, 0, u"a").raw, -1);
    EXPECT_EQ(bare::InsertNewMenu(7, 0, u"a").raw, -1);
    EXPECT_EQ(bare::DelMenu(7).raw, -1);
    EXPECT_EQ(bare::CreateNewMenu().raw, -1);
    EXPECT_EQ(fake.menus.calls.size(), 22u);
}

// ---- Faults ---------------------------------------------------------------------------------

// The platform's names of the calls that a case makes, each with how often.
std::map<std::string, int> operations_of(const Case& test) {
    std::map<std::string, int> counts;
    for (const std::string& call : test.calls) {
        ++counts[call.substr(0, call.find('('))];
    }
    return counts;
}

TEST(Amenu, NoFaultRaisesAnything) {
    for (const Case& test : cases()) {
        for (const auto& [operation, count] : operations_of(test)) {
            for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
                SCOPED_TRACE(std::string(test.name) + ": " + operation);
                FakePlatform fake;
                const auto plan = std::make_shared<FaultPlan>();
                const auto faulty = faulting(fake.menus, plan);
                fake.operations.menus = faulty.get();
                plan->fail_at("Menus." + operation, 1, span, 5);
                EXPECT_EQ(test.run(amenu()).raw, operation == test.decides ? 0 : -1);
                EXPECT_EQ(plan->failed_calls(), count);
                // All the other calls are made, each with what it has.
                EXPECT_EQ(fake.menus.calls.size(), test.calls.size() - 1);
                EXPECT_EQ(test.run(amenu()).raw,
                          operation == test.decides && span == FaultSpan::FromThenOn ? 0 : -1);
            }
        }
    }
}

TEST(Amenu, WithoutMenusNothingCanBeDone) {
    Platform bare_platform = platform();
    bare_platform.menus = &unavailable_menus();
    const ScopedPlatform scope(bare_platform);
    for (const Case& test : cases()) {
        EXPECT_EQ(test.run(amenu()).raw, 0) << test.name;
    }
    EXPECT_EQ(amenu().LoadBmp(u"a.bmp"), 0);
}

}  // namespace
}  // namespace kvarta16::ui_tests
