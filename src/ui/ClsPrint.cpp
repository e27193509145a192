#include <vector>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/ui/ClsPrint.h>

namespace kvarta16 {
namespace {

constexpr Long block_size = 16384;
constexpr Integer devmode_size = 124;  // of the record on the platform; nothing else in it is set
constexpr Long document_level = 1;     // a DOC_INFO_1

constexpr StringView no_printer_text =
    u"Mam problem ze znalezieniem drukarki systemowej. Prosze sprawdzić czy wszystko jest "
    u"prawidłowo podłączone (a także uprawnienia użytkownika systemu WINDOWS do drukarki).";

Spooler& spooler() {
    return *platform().spooler;
}

void show(StringView text, Long style) {
    platform().message_boxes->MsgBox(text, style, std::nullopt);
}

String document_name(StringView file, StringView application) {
    String name(file.substr(file.rfind(u'\\') + 1));  // without one npos + 1 is 0: all of it
    return application.empty() ? name : String(application) + u": " + name;
}

bool is_opened(StringView printer, Long& handle) {
    const PRINTER_DEFAULTS defaults{u"", {devmode_size}, PRINTER_ACCESS_USE};
    return spooler().OpenPrinterA(printer, handle, defaults) != 0 ||
           spooler().OpenPrinterA(lower_case(printer), handle, defaults) != 0 ||
           spooler().OpenPrinterA(upper_case(printer), handle, defaults) != 0;
}

// One write of as many characters of the open file as the buffer has bytes.
void send(Long handle, Integer file, std::vector<Byte>& buffer) {
    for (Byte& byte : buffer) {
        byte = ansi_byte(platform().file_table->InputCharacter(file));
    }
    Long written = 0;
    static_cast<void>(spooler().WritePrinter(handle, buffer, written));
}

void send_file(Long handle, StringView path) {
    FileTable& files = *platform().file_table;
    const Integer file = files.FreeFile();
    files.Open(path, file, OpenMode::Input, Sharing::Default);
    std::vector<Byte> buffer(block_size);
    const Long size = files.LOF(file);
    for (Long block = 0; block < size / block_size; ++block) {
        send(handle, file, buffer);
    }
    const Long rest = size % block_size;
    if (rest < 0) {
        fail(error::subscript);  // no buffer has so many bytes
    }
    if (rest > 0) {
        buffer.resize(static_cast<std::size_t>(rest));
        send(handle, file, buffer);
    }
    files.Close(file);
}

}  // namespace

Boolean ClsPrint::SpoolFile(StringView sFile, StringView PrnName, StringView AppName) const {
    Long handle = 0;
    try {
        const DOC_INFO_1 document{document_name(sFile, AppName), u"", u"RAW"};
        if (!is_opened(PrnName, handle)) {
            show(no_printer_text, msg_box::critical);
            return false;
        }
        spooler().StartDocPrinterA(handle, document_level, document);
        spooler().StartPagePrinter(handle);
        send_file(handle, sFile);
        spooler().EndPagePrinter(handle);
        spooler().EndDocPrinter(handle);
    } catch (const Failure& failure) {
        guarded([&] { show(failure.description(), msg_box::ok_only); });
    }
    spooler().ClosePrinter(handle);
    return true;
}

}  // namespace kvarta16
