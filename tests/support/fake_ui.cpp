#include <support/fake_ui.h>

#include <kvarta16/frame/utf8.h>

namespace kvarta16::testing_support {

std::string call_text(const std::string& name, const std::vector<std::string>& arguments) {
    std::string text = name + "(";
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        text += (i > 0 ? "; " : "") + arguments[i];
    }
    return text + ")";
}

std::string call_argument(Long number) {
    return std::to_string(number);
}

std::string call_argument(StringView text) {
    return to_utf8(text);
}

RecordingMenus::RecordingMenus() = default;

RecordingMenus::~RecordingMenus() = default;

Long RecordingMenus::GetMenu(Long window) {
    return told("GetMenu", window);
}

Long RecordingMenus::GetSubMenu(Long menu, Long position) {
    return told("GetSubMenu", menu, position);
}

Long RecordingMenus::SetMenuItemBitmaps(Long menu, Long position, Long flags, Long unchecked,
                                        Long checked) {
    return told("SetMenuItemBitmaps", menu, position, flags, unchecked, checked);
}

Long RecordingMenus::RemoveMenu(Long menu, Long position, Long flags) {
    return told("RemoveMenu", menu, position, flags);
}

Long RecordingMenus::CreatePopupMenu() {
    return told("CreatePopupMenu");
}

Long RecordingMenus::CreateMenu() {
    return told("CreateMenu");
}

Long RecordingMenus::AppendMenuA(Long menu, Long flags, Long item, StringView text) {
    return told("AppendMenuA", menu, flags, item, text);
}

Long RecordingMenus::InsertMenuA(Long menu, Long position, Long flags, Long item, StringView text) {
    return told("InsertMenuA", menu, position, flags, item, text);
}

Long RecordingMenus::DestroyMenu(Long menu) {
    return told("DestroyMenu", menu);
}

Long RecordingMenus::DrawMenuBar(Long window) {
    return told("DrawMenuBar", window);
}

Long RecordingMenus::LoadImageA(Long instance, StringView name, Long type, Long width, Long height,
                                Long flags) {
    return told("LoadImageA", instance, name, type, width, height, flags);
}

Long RecordingMenus::told(const std::string& name, const auto&... arguments) {
    calls.push_back(call_text(name, {call_argument(arguments)...}));
    return answers.at(name);
}

RecordingSpooler::RecordingSpooler() = default;

RecordingSpooler::~RecordingSpooler() = default;

Long RecordingSpooler::OpenPrinterA(StringView name, Long& result,
                                    const PRINTER_DEFAULTS& defaults) {
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

Long RecordingSpooler::StartDocPrinterA(Long printer, Long level, const DOC_INFO_1& document) {
    return told("StartDocPrinterA", printer, level, document.pDocName,
                u'"' + document.pOutputFile + u'"', document.pDatatype);
}

Long RecordingSpooler::StartPagePrinter(Long printer) {
    return told("StartPagePrinter", printer);
}

Long RecordingSpooler::WritePrinter(Long printer, std::span<const Byte> data, Long& written) {
    sent.append(data.begin(), data.end());
    const Long size = static_cast<Long>(data.size());
    const Long before = written;
    written = size;
    return told("WritePrinter", printer, size, before);
}

Long RecordingSpooler::EndPagePrinter(Long printer) {
    return told("EndPagePrinter", printer);
}

Long RecordingSpooler::EndDocPrinter(Long printer) {
    return told("EndDocPrinter", printer);
}

Long RecordingSpooler::ClosePrinter(Long printer) {
    return told("ClosePrinter", printer);
}

Long RecordingSpooler::told(const std::string& name, const auto&... arguments) {
    calls.push_back(call_text(name, {call_argument(arguments)...}));
    return answer;
}

}  // namespace kvarta16::testing_support
