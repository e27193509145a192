// amenu and ClsPrint: every member at every fault.
#include <algorithm>

#include <gtest/gtest.h>

#include <kvarta16/ui/ClsPrint.h>
#include <kvarta16/ui/amenu.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

constexpr FaultSpan once = FaultSpan::Once;
constexpr FaultSpan for_good = FaultSpan::FromThenOn;

class UiFaults : public testing::TestWithParam<Scenario> {};

TEST_P(UiFaults, EndAsDocumented) {
    check(GetParam());
}

// ---- Menus ----------------------------------------------------------------------------------

// The platform answers by a number and raises nothing. The result is that of one call of the
// member's, `deciding`; the others are made whatever came of those before, with handle 0 where
// there is none. With a fault that lasts the deciding call is reached only by a later one.
Scenario menu(const char* name, const std::string& deciding, const std::vector<std::string>& later,
              std::function<Boolean(const amenu&)> call) {
    std::vector<Exception> exceptions = {{deciding, "0"}};
    for (const std::string& operation : later) {
        exceptions.push_back({operation, good});
    }
    // All that comes before the deciding one: it fails too then.
    exceptions.push_back({"Menus.GetMenu", "0", for_good});
    return {.name = name,
            .discipline = Discipline::Tolerant,
            .good = "-1",
            .run = [call = std::move(call)](FaultBench&) { return told(call(amenu())); },
            .exceptions = std::move(exceptions)};
}

Scenario with(Scenario scenario, const std::vector<std::string>& before) {
    for (const std::string& operation : before) {
        scenario.exceptions.push_back({operation, "0", for_good});
    }
    return scenario;
}

const Scenario menus[] = {
    {.name = "amenu.LoadBmp",
     .discipline = Discipline::Guarded,
     .good = "500",
     .prepared = "0",
     .run = [](FaultBench&) { return told(amenu().LoadBmp(u"a.bmp")); }},
    with(menu("amenu.SetMenuBmp", "Menus.SetMenuItemBitmaps", {},
              [](const amenu& menus) { return menus.SetMenuBmp(7, u"a.bmp"); }),
         {"Menus.LoadImageA", "Menus.GetSubMenu"}),
    with(menu("amenu.DeleteMenu", "Menus.RemoveMenu", {},
              [](const amenu& menus) { return menus.DeleteMenu(7); }),
         {"Menus.GetSubMenu"}),
    menu("amenu.AddNewMenu", "Menus.AppendMenuA", {"Menus.DrawMenuBar"},
         [](const amenu& menus) { return menus.AddNewMenu(7, u"Plik"); }),
    with(menu("amenu.AddNewMenu, a popup", "Menus.AppendMenuA", {"Menus.DrawMenuBar"},
              [](const amenu& menus) { return menus.AddNewMenu(7, u"Plik", true); }),
         {"Menus.CreatePopupMenu"}),
    with(menu("amenu.InsertNewSubMenu", "Menus.InsertMenuA", {"Menus.DrawMenuBar"},
              [](const amenu& menus) { return menus.InsertNewSubMenu(7, 0, 0, u"Nowy"); }),
         {"Menus.GetSubMenu"}),
    with(menu("amenu.InsertNewSubMenu, a popup", "Menus.InsertMenuA", {"Menus.DrawMenuBar"},
              [](const amenu& menus) { return menus.InsertNewSubMenu(7, 0, 0, u"Nowy", true); }),
         {"Menus.GetSubMenu", "Menus.CreatePopupMenu"}),
    menu("amenu.InsertNewMenu", "Menus.InsertMenuA", {"Menus.DrawMenuBar"},
         [](const amenu& menus) { return menus.InsertNewMenu(7, 0, u"Nowy"); }),
    menu("amenu.DelMenu", "Menus.DestroyMenu", {"Menus.DrawMenuBar"},
         [](const amenu& menus) { return menus.DelMenu(7); }),
    {.name = "amenu.CreateNewMenu",
     .discipline = Discipline::Guarded,
     .good = "-1",
     .prepared = "0",
     .run = [](FaultBench&) { return told(amenu().CreateNewMenu()); }},
};

// ---- Printing -------------------------------------------------------------------------------

// The bytes that went to the printer, whether the job was ended, and what was shown.
std::string printed(FaultBench& b) {
    const auto has = [&](const char* call) {
        return std::ranges::any_of(b.fake.spooler.calls, [call](const std::string& made) {
            return made.starts_with(call);
        });
    };
    return b.fake.spooler.sent + (has("EndPagePrinter(") ? " page" : "") +
           (has("EndDocPrinter(") ? " job" : "") + boxes_of(b);
}

const std::string failure_box = std::string(" box: ") + fault_text;
const std::string no_printer =
    " box: Mam problem ze znalezieniem drukarki systemowej. Prosze sprawdzić czy wszystko jest "
    "prawidłowo podłączone (a także uprawnienia użytkownika systemu WINDOWS do drukarki).";
const std::string file_open = " | open: file 1";
const std::string printer_open = " | open: printers 1";
const std::string file_and_printer = " | open: file 1, printers 1";

std::string spool(FaultBench&) {
    return told(ClsPrint().SpoolFile(u"C:\\druk.prn", u"Biuro"));
}

// A failure gives true, with the job left open, and so is the data file once it was opened. What
// the spooler answers is looked at in the opening alone.
const Scenario printing = {
    .name = "ClsPrint.SpoolFile",
    .discipline = Discipline::Tolerant,
    .good = "-1 / abc page job",
    .prepare =
        [](FaultBench& b) {
            b.fake.disk.add(u"C:\\druk.prn", "abc");
            b.fake.spooler.printers = {u"Biuro", u"biuro", u"BIURO"};
        },
    .run = spool,
    .written = printed,
    .exceptions = {
        // The box of a printer that is not found fails: a failure as any other, and true.
        {"Spooler.OpenPrinterA", "-1 / ", for_good},
        {"Spooler.StartDocPrinterA", "-1 / " + printer_open, for_good},
        {"Spooler.StartPagePrinter", "-1 / " + printer_open, for_good},
        {"FileTable.FreeFile", "-1 / " + failure_box, once},
        {"FileTable.FreeFile", "-1 / " + printer_open, for_good},
        {"FileTable.Open", "-1 / " + failure_box, once},
        {"FileTable.Open", "-1 / " + printer_open, for_good},
        {"FileTable.LOF", "-1 / " + failure_box + file_open, once},
        {"FileTable.LOF", "-1 / " + file_and_printer, for_good},
        {"FileTable.InputCharacter", "-1 / " + failure_box + file_open, once},
        {"FileTable.InputCharacter", "-1 / " + file_and_printer, for_good},
        {"Spooler.WritePrinter", "-1 /  page job", once},
        {"Spooler.WritePrinter", "-1 / " + file_and_printer, for_good},
        {"FileTable.Close", "-1 / abc" + failure_box + file_open, once},
        {"FileTable.Close", "-1 / abc" + file_and_printer, for_good},
        {"Spooler.EndPagePrinter", "-1 / abc job", once},
        {"Spooler.EndPagePrinter", "-1 / abc" + printer_open, for_good},
        {"Spooler.EndDocPrinter", "-1 / abc page", once},
        {"Spooler.EndDocPrinter", "-1 / abc page" + printer_open, for_good},
        {"Spooler.ClosePrinter", good + printer_open}}};

const Scenario no_such_printer = {
    .name = "ClsPrint.SpoolFile, without the printer",
    .discipline = Discipline::Tolerant,
    .good = "0 / " + no_printer,
    .run = spool,
    .written = printed,
    .exceptions = {{"Spooler.OpenPrinterA", "-1 / ", for_good},
                   {"MessageBoxes.MsgBox", "-1 / " + failure_box, once},
                   {"MessageBoxes.MsgBox", "-1 / ", for_good}}};

INSTANTIATE_TEST_SUITE_P(Menus, UiFaults, testing::ValuesIn(menus));
INSTANTIATE_TEST_SUITE_P(Printing, UiFaults, testing::Values(printing, no_such_printer));

}  // namespace
}  // namespace kvarta16::fault_tests
