// Menus and a spooler that write down how they are called, each call with all its arguments, and
// answer as the test has prepared them.
//
//   RecordingMenus menus;
//   menus.answers["GetMenu"] = 0;            // the window has none
//   amenu().DelMenu(7);
//   EXPECT_EQ(menus.calls, (std::vector<std::string>{"GetMenu(7)", "DestroyMenu(0)",
//                                                    "DrawMenuBar(7)"}));
//
// To have calls fail, put a fault plan before them (kvarta16/platform/forwarding.h).
#pragma once

#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

#include <kvarta16/frame/types.h>
#include <kvarta16/platform/menus.h>
#include <kvarta16/platform/spooler.h>

namespace kvarta16::testing_support {

// "Name(1; text; 2)".
std::string call_text(const std::string& name, const std::vector<std::string>& arguments);
std::string call_argument(Long number);
std::string call_argument(StringView text);

class RecordingMenus final : public Menus {
  public:
    RecordingMenus();
    ~RecordingMenus() override;

    Long GetMenu(Long window) override;
    Long GetSubMenu(Long menu, Long position) override;
    Long SetMenuItemBitmaps(Long menu, Long position, Long flags, Long unchecked,
                            Long checked) override;
    Long RemoveMenu(Long menu, Long position, Long flags) override;
    Long CreatePopupMenu() override;
    Long CreateMenu() override;
    Long AppendMenuA(Long menu, Long flags, Long item, StringView text) override;
    Long InsertMenuA(Long menu, Long position, Long flags, Long item, StringView text) override;
    Long DestroyMenu(Long menu) override;
    Long DrawMenuBar(Long window) override;
    Long LoadImageA(Long instance, StringView name, Long type, Long width, Long height,
                    Long flags) override;

    // By the name of the operation; no two of them the same, so that a test sees what goes where.
    std::map<std::string, Long> answers{
        {"GetMenu", 100},    {"GetSubMenu", 200}, {"CreatePopupMenu", 300},
        {"CreateMenu", 400}, {"LoadImageA", 500}, {"SetMenuItemBitmaps", 1},
        {"RemoveMenu", 2},   {"AppendMenuA", 3},  {"InsertMenuA", 4},
        {"DestroyMenu", 5},  {"DrawMenuBar", 6}};
    std::vector<std::string> calls;

  private:
    Long told(const std::string& name, const auto&... arguments);
};

class RecordingSpooler final : public Spooler {
  public:
    static constexpr Long handle = 77;

    RecordingSpooler();
    ~RecordingSpooler() override;

    Long OpenPrinterA(StringView name, Long& result, const PRINTER_DEFAULTS& defaults) override;
    Long StartDocPrinterA(Long printer, Long level, const DOC_INFO_1& document) override;
    Long StartPagePrinter(Long printer) override;
    Long WritePrinter(Long printer, std::span<const Byte> data, Long& written) override;
    Long EndPagePrinter(Long printer) override;
    Long EndDocPrinter(Long printer) override;
    Long ClosePrinter(Long printer) override;

    std::set<String> printers;  // by their exact names
    Long answer = 1;            // of every operation; an unknown printer is 0 all the same
    std::vector<std::string> calls;
    std::string sent;  // the bytes of all writes

  private:
    Long told(const std::string& name, const auto&... arguments);
};

}  // namespace kvarta16::testing_support
