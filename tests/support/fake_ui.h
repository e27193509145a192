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
#include <string>
#include <vector>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/menus.h>
#include <kvarta16/platform/spooler.h>

namespace kvarta16::testing_support {

// "Name(1; text; 2)".
inline std::string call_text(const std::string& name, const std::vector<std::string>& arguments) {
    std::string text = name + "(";
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        text += (i > 0 ? "; " : "") + arguments[i];
    }
    return text + ")";
}
inline std::string call_argument(Long number) {
    return std::to_string(number);
}
inline std::string call_argument(StringView text) {
    return to_utf8(text);
}

class RecordingMenus final : public Menus {
  public:
    Long GetMenu(Long window) override { return told("GetMenu", window); }
    Long GetSubMenu(Long menu, Long position) override {
        return told("GetSubMenu", menu, position);
    }
    Long SetMenuItemBitmaps(Long menu, Long position, Long flags, Long unchecked,
                            Long checked) override {
        return told("SetMenuItemBitmaps", menu, position, flags, unchecked, checked);
    }
    Long RemoveMenu(Long menu, Long position, Long flags) override {
        return told("RemoveMenu", menu, position, flags);
    }
    Long CreatePopupMenu() override { return told("CreatePopupMenu"); }
    Long CreateMenu() override { return told("CreateMenu"); }
    Long AppendMenuA(Long menu, Long flags, Long item, StringView text) override {
        return told("AppendMenuA", menu, flags, item, text);
    }
    Long InsertMenuA(Long menu, Long position, Long flags, Long item, StringView text) override {
        return told("InsertMenuA", menu, position, flags, item, text);
    }
    Long DestroyMenu(Long menu) override { return told("DestroyMenu", menu); }
    Long DrawMenuBar(Long window) override { return told("DrawMenuBar", window); }
    Long LoadImageA(Long instance, StringView name, Long type, Long width, Long height,
                    Long flags) override {
        return told("LoadImageA", instance, name, type, width, height, flags);
    }

    // By the name of the operation; no two of them the same, so that a test sees what goes where.
    std::map<std::string, Long> answers{
        {"GetMenu", 100},    {"GetSubMenu", 200}, {"CreatePopupMenu", 300},
        {"CreateMenu", 400}, {"LoadImageA", 500}, {"SetMenuItemBitmaps", 1},
        {"RemoveMenu", 2},   {"AppendMenuA", 3},  {"InsertMenuA", 4},
        {"DestroyMenu", 5},  {"DrawMenuBar", 6}};
    std::vector<std::string> calls;

  private:
    Long told(const std::string& name, const auto&... arguments) {
        calls.push_back(call_text(name, {call_argument(arguments)...}));
        return answers.at(name);
    }
};

class RecordingSpooler final : public Spooler {
  public:
    static constexpr Long handle = 77;

    Long OpenPrinterA(StringView name, Long& result, const PRINTER_DEFAULTS& defaults) override {
        calls.push_back(call_text(
            "OpenPrinterA",
            {to_utf8(name), std::to_string(result), '"' + to_utf8(defaults.pDatatype) + '"',
             std::to_string(defaults.pDevMode.dmSize), std::to_string(defaults.DesiredAccess)}));
        if (!printers.contains(String(name))) {
            return 0;
        }
        result = handle;
        return answer;
    }
    Long StartDocPrinterA(Long printer, Long level, const DOC_INFO_1& document) override {
        return told("StartDocPrinterA", printer, level, document.pDocName,
                    u'"' + document.pOutputFile + u'"', document.pDatatype);
    }
    Long StartPagePrinter(Long printer) override { return told("StartPagePrinter", printer); }
    Long WritePrinter(Long printer, std::span<const Byte> data, Long& written) override {
        sent.append(data.begin(), data.end());
        const Long size = static_cast<Long>(data.size());
        const Long before = written;
        written = size;
        return told("WritePrinter", printer, size, before);
    }
    Long EndPagePrinter(Long printer) override { return told("EndPagePrinter", printer); }
    Long EndDocPrinter(Long printer) override { return told("EndDocPrinter", printer); }
    Long ClosePrinter(Long printer) override { return told("ClosePrinter", printer); }

    std::set<String> printers;  // by their exact names
    Long answer = 1;            // of every operation; an unknown printer is 0 all the same
    std::vector<std::string> calls;
    std::string sent;  // the bytes of all writes

  private:
    Long told(const std::string& name, const auto&... arguments) {
        calls.push_back(call_text(name, {call_argument(arguments)...}));
        return answer;
    }
};

}  // namespace kvarta16::testing_support
