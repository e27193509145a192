// The menu system in memory: the answers of the platform for good and bad handles and positions,
// what becomes of the tree, windows and their redraws, and the menu class on top of it.
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/menus_in_memory.h>
#include <kvarta16/ui/amenu.h>

#include "support/server_process.h"

namespace kvarta16::ui_tests {
namespace {

using posix::MenuItem;
using posix::MenusInMemory;

// "Plik[Nowy|-|Otwórz]|Pomoc": items parted by "|", what a popup holds in brackets.
std::string tree(const MenusInMemory& menus, Long menu) {
    const auto items = menus.items(menu);
    if (!items) {
        return "none";
    }
    std::string text;
    for (const MenuItem& item : *items) {
        text += text.empty() ? "" : "|";
        text += (item.flags & MF_SEPARATOR) != 0 ? "-" : to_utf8(item.text);
        text += (item.flags & MF_POPUP) != 0 ? "[" + tree(menus, item.id) + "]" : "";
    }
    return text;
}

class InMemory : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(menus.SetMenu(window, bar), 1); }

    Long add(Long menu, StringView text) { return menus.AppendMenuA(menu, MF_STRING, 0, text); }
    Long popup(Long menu, StringView text) {
        const Long handle = menus.CreatePopupMenu();
        EXPECT_EQ(menus.AppendMenuA(menu, MF_POPUP, handle, text), 1);
        return handle;
    }

    MenusInMemory menus;
    std::vector<Long> drawn;
    Long window = menus.make_window([this](Long which) { drawn.push_back(which); });
    Long bar = menus.CreateMenu();
};

TEST_F(InMemory, HandlesAreAllDifferentAndNeverGivenAgain) {
    std::set<Long> handles{window, bar};
    for (int i = 0; i < 100; ++i) {
        const Long menu = menus.CreateMenu();
        EXPECT_GT(menu, 0);
        EXPECT_TRUE(handles.insert(menu).second);
        EXPECT_TRUE(handles.insert(menus.CreatePopupMenu()).second);
        EXPECT_EQ(menus.DestroyMenu(menu), 1);
    }
}

TEST_F(InMemory, ItemsStandWhereTheyArePut) {
    EXPECT_EQ(add(bar, u"B"), 1);
    EXPECT_EQ(menus.InsertMenuA(bar, 0, MF_BYPOSITION, 0, u"A"), 1);
    EXPECT_EQ(menus.InsertMenuA(bar, 2, MF_BYPOSITION, 0, u"D"), 1);
    EXPECT_EQ(menus.InsertMenuA(bar, 2, MF_BYPOSITION, 0, u"C"), 1);
    EXPECT_EQ(menus.InsertMenuA(bar, 99, MF_BYPOSITION, 0, u"E"), 1);
    EXPECT_EQ(menus.InsertMenuA(bar, -1, MF_BYPOSITION, 0, u"F"), 1);
    EXPECT_EQ(menus.InsertMenuA(bar, -2147483647 - 1, MF_BYPOSITION, 0, u"G"), 1);
    EXPECT_EQ(tree(menus, bar), "A|B|C|D|E|F|G");
}

TEST_F(InMemory, KeepsWhatAnItemWasMadeWith) {
    const Long submenu = menus.CreatePopupMenu();
    menus.AppendMenuA(bar, 8, 42, u"&Zażółć\tCtrl+Z");
    menus.InsertMenuA(bar, 1, MF_BYPOSITION | MF_SEPARATOR, 7, u"-");
    menus.InsertMenuA(bar, 2, MF_BYPOSITION | MF_POPUP, submenu, StringView(u"a\0b", 3));
    const auto items = *menus.items(bar);
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0].text, u"&Zażółć\tCtrl+Z");
    EXPECT_EQ(items[0].flags, 8);
    EXPECT_EQ(items[0].id, 42);
    EXPECT_EQ(items[1].text, u"-");
    EXPECT_EQ(items[1].flags, MF_SEPARATOR);
    EXPECT_EQ(items[1].id, 0);
    EXPECT_EQ(items[2].text, u"a");
    EXPECT_EQ(items[2].flags, MF_POPUP);
    EXPECT_EQ(items[2].id, submenu);
    EXPECT_EQ(menus.GetSubMenu(bar, 0), 0);
    EXPECT_EQ(menus.GetSubMenu(bar, 1), 0);
    EXPECT_EQ(menus.GetSubMenu(bar, 2), submenu);
}

TEST_F(InMemory, BadHandlesAndPositionsAreRefused) {
    add(bar, u"A");
    const Long gone = menus.CreateMenu();
    EXPECT_EQ(menus.DestroyMenu(gone), 1);
    for (const Long wrong : {0, -1, gone, window, 999999}) {
        SCOPED_TRACE(wrong);
        EXPECT_EQ(menus.GetSubMenu(wrong, 0), 0);
        EXPECT_EQ(menus.SetMenuItemBitmaps(wrong, 0, MF_BYPOSITION, 0, 0), 0);
        EXPECT_EQ(menus.RemoveMenu(wrong, 0, MF_BYPOSITION), 0);
        EXPECT_EQ(menus.AppendMenuA(wrong, MF_STRING, 0, u"x"), 0);
        EXPECT_EQ(menus.InsertMenuA(wrong, 0, MF_BYPOSITION, 0, u"x"), 0);
        EXPECT_EQ(menus.DestroyMenu(wrong), 0);
        EXPECT_EQ(menus.AppendMenuA(bar, MF_POPUP, wrong, u"x"), 0);
        EXPECT_EQ(menus.InsertMenuA(bar, 0, MF_BYPOSITION | MF_POPUP, wrong, u"x"), 0);
        EXPECT_EQ(menus.items(wrong), std::nullopt);
        EXPECT_EQ(menus.bitmap(wrong), std::nullopt);
    }
    for (const Long wrong : {0, -1, bar, 999999}) {
        SCOPED_TRACE(wrong);
        EXPECT_EQ(menus.GetMenu(wrong), 0);
        EXPECT_EQ(menus.DrawMenuBar(wrong), 0);
        EXPECT_EQ(menus.SetMenu(wrong, bar), 0);
        EXPECT_EQ(menus.redraws(wrong), std::nullopt);
        EXPECT_FALSE(menus.close_window(wrong));
    }
    EXPECT_EQ(menus.SetMenu(window, gone), 0);
    for (const Long position : {-1, 1, 2, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(menus.GetSubMenu(bar, position), 0);
        EXPECT_EQ(menus.SetMenuItemBitmaps(bar, position, MF_BYPOSITION, 0, 0), 0);
        EXPECT_EQ(menus.RemoveMenu(bar, position, MF_BYPOSITION), 0);
    }
    EXPECT_EQ(tree(menus, bar), "A");
    EXPECT_EQ(menus.GetMenu(window), bar);
    EXPECT_TRUE(drawn.empty());
}

TEST_F(InMemory, WithoutByPositionACallIsRefused) {
    add(bar, u"A");
    EXPECT_EQ(menus.RemoveMenu(bar, 0, 0), 0);
    EXPECT_EQ(menus.SetMenuItemBitmaps(bar, 0, 0, 1, 1), 0);
    EXPECT_EQ(menus.InsertMenuA(bar, 0, MF_STRING, 0, u"B"), 0);
    EXPECT_EQ(tree(menus, bar), "A");
}

TEST_F(InMemory, BitmapsOfAnItem) {
    add(bar, u"A");
    EXPECT_EQ(menus.SetMenuItemBitmaps(bar, 0, MF_BYPOSITION, 5, 6), 1);
    EXPECT_EQ(menus.items(bar)->at(0).unchecked, 5);
    EXPECT_EQ(menus.items(bar)->at(0).checked, 6);
    EXPECT_EQ(menus.SetMenuItemBitmaps(bar, 0, MF_BYPOSITION, 0, 0), 1);
    EXPECT_EQ(menus.items(bar)->at(0).unchecked, 0);
    EXPECT_EQ(menus.items(bar)->at(0).checked, 0);
}

TEST_F(InMemory, ARemovedPopupLivesOn) {
    const Long file = popup(bar, u"Plik");
    add(file, u"Nowy");
    EXPECT_EQ(menus.RemoveMenu(bar, 0, MF_BYPOSITION), 1);
    EXPECT_EQ(tree(menus, bar), "");
    EXPECT_EQ(tree(menus, file), "Nowy");
    EXPECT_EQ(menus.AppendMenuA(bar, MF_POPUP, file, u"Znowu"), 1);
    EXPECT_EQ(tree(menus, bar), "Znowu[Nowy]");
}

TEST_F(InMemory, DestroyingTakesAllThatHangsOnIt) {
    const Long file = popup(bar, u"Plik");
    const Long last = popup(file, u"Ostatnie");
    add(last, u"a.txt");
    const Long other = menus.CreatePopupMenu();
    EXPECT_EQ(menus.DestroyMenu(bar), 1);
    for (const Long menu : {bar, file, last}) {
        EXPECT_EQ(menus.items(menu), std::nullopt);
        EXPECT_EQ(menus.DestroyMenu(menu), 0);
    }
    EXPECT_NE(menus.items(other), std::nullopt);
    EXPECT_EQ(menus.GetMenu(window), 0);
    EXPECT_EQ(menus.DrawMenuBar(window), 1);
}

TEST_F(InMemory, APopupOnTwoItemsIsDestroyedOnce) {
    const Long shared = popup(bar, u"A");
    EXPECT_EQ(menus.AppendMenuA(bar, MF_POPUP, shared, u"B"), 1);
    const Long other = menus.CreateMenu();
    EXPECT_EQ(menus.AppendMenuA(other, MF_POPUP, shared, u"C"), 1);
    add(shared, u"x");
    EXPECT_EQ(tree(menus, bar), "A[x]|B[x]");
    EXPECT_EQ(menus.DestroyMenu(bar), 1);
    EXPECT_EQ(tree(menus, other), "C[none]");  // it opens nothing any more
    EXPECT_EQ(menus.GetSubMenu(other, 0), 0);
}

TEST_F(InMemory, NoMenuOpensItself) {
    const Long a = popup(bar, u"a");
    const Long b = popup(a, u"b");
    const Long c = popup(b, u"c");
    for (const Long above : {bar, a, b, c}) {
        EXPECT_EQ(menus.AppendMenuA(c, MF_POPUP, above, u"x"), 0);
        EXPECT_EQ(menus.InsertMenuA(c, 0, MF_BYPOSITION | MF_POPUP, above, u"x"), 0);
    }
    EXPECT_EQ(menus.AppendMenuA(bar, MF_POPUP, c, u"c"), 1);
    EXPECT_EQ(tree(menus, bar), "a[b[c[]]]|c[]");
    EXPECT_EQ(menus.DestroyMenu(bar), 1);
}

// Each of 60 levels hangs twice on the one above: 2 to the 60 ways down.
TEST_F(InMemory, ManyWaysToOneMenuTakeNoTime) {
    Long above = bar;
    for (int level = 0; level < 60; ++level) {
        const Long below = popup(above, u"x");
        EXPECT_EQ(menus.AppendMenuA(above, MF_POPUP, below, u"y"), 1);
        above = below;
    }
    EXPECT_EQ(menus.AppendMenuA(above, MF_POPUP, bar, u"z"), 0);
    EXPECT_EQ(menus.DestroyMenu(bar), 1);
    EXPECT_EQ(menus.items(above), std::nullopt);
}

TEST_F(InMemory, RedrawsAreCountedAndTold) {
    const Long quiet = menus.make_window();
    EXPECT_EQ(menus.DrawMenuBar(window), 1);
    EXPECT_EQ(menus.DrawMenuBar(quiet), 1);
    EXPECT_EQ(menus.DrawMenuBar(window), 1);
    EXPECT_EQ(drawn, (std::vector<Long>{window, window}));
    EXPECT_EQ(menus.redraws(window), 2);
    EXPECT_EQ(menus.redraws(quiet), 1);
    EXPECT_EQ(menus.SetMenu(window, 0), 1);
    EXPECT_EQ(menus.redraws(window), 2);
}

TEST(MenusInMemoryAlone, AnObserverMayCallBack) {
    MenusInMemory menus;
    std::string seen;
    const Long window = menus.make_window([&](Long which) {
        seen = tree(menus, menus.GetMenu(which));
        menus.close_window(which);
    });
    const Long bar = menus.CreateMenu();
    menus.SetMenu(window, bar);
    menus.AppendMenuA(bar, MF_STRING, 0, u"A");
    EXPECT_EQ(menus.DrawMenuBar(window), 1);
    EXPECT_EQ(seen, "A");
    EXPECT_EQ(menus.items(bar), std::nullopt);
    EXPECT_EQ(menus.DrawMenuBar(window), 0);
}

TEST_F(InMemory, AClosedWindowTakesItsBarAlong) {
    const Long file = popup(bar, u"Plik");
    const Long other = menus.make_window();
    EXPECT_EQ(menus.SetMenu(other, bar), 1);
    EXPECT_TRUE(menus.close_window(window));
    EXPECT_FALSE(menus.close_window(window));
    EXPECT_EQ(menus.items(file), std::nullopt);
    EXPECT_EQ(menus.GetMenu(other), 0);
    EXPECT_TRUE(menus.close_window(other));
}

TEST_F(InMemory, WhatIsDroppedRunsOutAsOnThePlatform) {
    int made = 1;  // the bar
    while (menus.CreateMenu() != 0 && made < 20000) {
        ++made;
    }
    EXPECT_EQ(made, 10000);
    EXPECT_EQ(menus.CreatePopupMenu(), 0);
    EXPECT_EQ(menus.DestroyMenu(bar), 1);
    EXPECT_NE(menus.CreatePopupMenu(), 0);
    int windows = 1;
    while (menus.make_window() != 0 && windows < 20000) {
        ++windows;
    }
    EXPECT_EQ(windows, 10000);
}

TEST_F(InMemory, ServesThreadsAtOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] {
            for (int n = 0; n < 200; ++n) {
                menus.AppendMenuA(bar, MF_POPUP, menus.CreatePopupMenu(), u"x");
                menus.GetSubMenu(bar, n);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(menus.items(bar)->size(), 800u);
}

// ---- The menu class on it -------------------------------------------------------------------

TEST(MenusOfTheProgram, AreThoseOfItsPlatform) {
    EXPECT_EQ(platform().menus, &posix::menus());
}

TEST(MenusOfTheProgram, AWindowsBarFromTheFirstMenuToTheLast) {
    MenusInMemory& menus = posix::menus();
    const Long form = menus.make_window();
    const amenu calls;
    EXPECT_EQ(calls.AddNewMenu(form, u"Plik").raw, 0);  // no bar yet
    EXPECT_EQ(calls.DelMenu(form).raw, 0);
    EXPECT_EQ(menus.redraws(form), 2);

    menus.SetMenu(form, menus.CreateMenu());
    const Long bar = menus.GetMenu(form);
    EXPECT_EQ(calls.AddNewMenu(form, u"Plik", true).raw, -1);
    EXPECT_EQ(calls.AddNewMenu(form, u"Pomoc").raw, -1);
    EXPECT_EQ(calls.InsertNewMenu(form, 1, u"Okno").raw, -1);
    EXPECT_EQ(calls.InsertNewSubMenu(form, 0, 0, u"Nowy").raw, -1);
    EXPECT_EQ(calls.InsertNewSubMenu(form, 0, 5, u"-", true).raw, -1);
    EXPECT_EQ(calls.InsertNewSubMenu(form, 0, 2, u"Ostatnie", true).raw, -1);
    EXPECT_EQ(calls.InsertNewSubMenu(form, 1, 0, u"x").raw, 0);  // "Okno" opens nothing
    EXPECT_EQ(tree(menus, bar), "Plik[Nowy|-|Ostatnie[]]|Okno|Pomoc");
    EXPECT_EQ(menus.redraws(form), 9);

    const Long file = menus.GetSubMenu(bar, 0);
    const Long recent = menus.GetSubMenu(file, 2);
    EXPECT_EQ(calls.DeleteMenu(form, 0, Long{2}).raw, -1);
    EXPECT_EQ(calls.DeleteMenu(form, 0, Long{2}).raw, 0);
    EXPECT_EQ(tree(menus, bar), "Plik[Nowy|-]|Okno|Pomoc");
    EXPECT_NE(menus.items(recent), std::nullopt);

    EXPECT_EQ(calls.SetMenuBmp(form, u"Z:\\nie\\ma.bmp", 0, Long{0}).raw, -1);
    EXPECT_EQ(menus.items(file)->at(0).unchecked, 0);
    EXPECT_EQ(menus.redraws(form), 9);

    EXPECT_EQ(calls.DelMenu(form).raw, -1);
    EXPECT_EQ(menus.GetMenu(form), 0);
    EXPECT_EQ(menus.redraws(form), 10);
    EXPECT_EQ(calls.CreateNewMenu().raw, -1);
    EXPECT_TRUE(menus.close_window(form));
}

}  // namespace
}  // namespace kvarta16::ui_tests
