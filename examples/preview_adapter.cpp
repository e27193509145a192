// An adapter of one's own: a host without a screen and without a printer, a web server say, that
// keeps the library's boxes for its log and shows a document instead of printing it.
//
//   preview_adapter        writes the file etykieta.txt into the current directory and prints it
//
// All other operations stay those of the system. How it came about, step by step, is told in
// docs/adapter.md, which quotes the sections of this file.
#include <iostream>
#include <map>
#include <optional>
#include <vector>

#include <kvarta16/files/aIO.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/hr/Class1.h>
#include <kvarta16/platform/named_spoolers.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/ui/ClsPrint.h>

namespace {

using namespace kvarta16;

// [boxes]
// Message boxes of a program that nobody watches: each is kept for the log and answered as one that
// no person sees.
class LoggedBoxes final : public MessageBoxes {
  public:
    struct Shown {
        String title;
        String text;
        MsgBoxResult answer;
    };

    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override {
        const MsgBoxResult answer = unattended_answer(style);
        shown_.push_back({String(title.value_or(u"kvarta16")), String(text), answer});
        return answer;
    }

    [[nodiscard]] const std::vector<Shown>& shown() const { return shown_; }

  private:
    std::vector<Shown> shown_;
};
// [/boxes]

// [spooler]
// Printers whose documents stay in memory, each under its job number. They have no queue and no
// driver: what a caller writes is what a preview shows.
class PreviewSpooler final : public Spooler {
  public:
    struct Document {
        String name;
        std::vector<Byte> data;
    };

    Long OpenPrinterA(StringView /*name*/, Long& handle,
                      const PRINTER_DEFAULTS& /*defaults*/) override {
        handle = ++last_handle_;
        open_[handle];
        return 1;
    }

    // A second document on a handle waits for the end of the first, as with a real printer.
    Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) override {
        const auto printer = open_.find(handle);
        if (printer == open_.end() || printer->second || level != 1 || !accepts(document)) {
            return 0;
        }
        printer->second = Document{document.pDocName, {}};
        return static_cast<Long>(ended_.size()) + 1;
    }

    Long StartPagePrinter(Long handle) override { return document_of(handle) == nullptr ? 0 : 1; }

    Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) override {
        Document* const document = document_of(handle);
        if (document == nullptr) {
            return 0;
        }
        document->data.insert(document->data.end(), data.begin(), data.end());
        written = static_cast<Long>(data.size());
        return 1;
    }

    Long EndPagePrinter(Long handle) override { return document_of(handle) == nullptr ? 0 : 1; }

    Long EndDocPrinter(Long handle) override {
        Document* const document = document_of(handle);
        if (document == nullptr) {
            return 0;
        }
        ended_.push_back(std::move(*document));
        open_[handle].reset();
        return 1;
    }

    // What has not been ended goes with the handle.
    Long ClosePrinter(Long handle) override { return open_.erase(handle) == 0 ? 0 : 1; }

    [[nodiscard]] const std::vector<Document>& documents() const { return ended_; }

  private:
    static bool accepts(const DOC_INFO_1& document) {
        return document.pDatatype == u"RAW" && document.pOutputFile.empty();
    }

    // The document that is being written, or nullptr.
    [[nodiscard]] Document* document_of(Long handle) {
        const auto printer = open_.find(handle);
        return printer == open_.end() || !printer->second ? nullptr : &*printer->second;
    }

    Long last_handle_ = 0;
    std::map<Long, std::optional<Document>> open_;  // by handle; empty between documents
    std::vector<Document> ended_;
};
// [/spooler]

// [work]
// What a program of the suite does, knowing nothing of adapters.
void work() {
    std::cout << "NIP 525-000: " << static_cast<bool>(Class1().Spr_NIP(u"525-000")) << '\n';
    const bool is_written =
        static_cast<bool>(aIO().Zapisz_do_pliku(u"etykieta.txt", u"^XA^FDKawa^XZ"));
    const ClsPrint printing;
    std::cout << "label written: " << is_written << ", printed: "
              << static_cast<bool>(printing.SpoolFile(u"etykieta.txt", u"podgląd:magazyn", u"WZ"))
              << '\n';
    std::cout << "printed to nobody: "
              << static_cast<bool>(printing.SpoolFile(u"etykieta.txt", u"Drukarka")) << '\n';
}
// [/work]

}  // namespace

// [main]
int main() {
    static LoggedBoxes boxes;
    static PreviewSpooler previews;
    default_platform().message_boxes = &boxes;
    named_spoolers().serve_prefix(u"podgląd:", previews);

    std::cout << std::boolalpha;
    work();
    for (const LoggedBoxes::Shown& box : boxes.shown()) {
        std::cout << "box \"" << to_utf8(box.title) << "\": " << to_utf8(box.text) << '\n';
    }
    for (const PreviewSpooler::Document& document : previews.documents()) {
        std::cout << "document \"" << to_utf8(document.name) << "\": " << document.data.size()
                  << " bytes\n";
    }
    return 0;
}
// [/main]
