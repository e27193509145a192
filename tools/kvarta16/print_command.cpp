// Sending a file to a printer as it is, and the printers there are.
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/ui/ClsPrint.h>

#include "commands.h"
#include "print_queues.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

// The class tells its caller next to nothing, so this looks at what it does: which job the spooler
// has made, what has been sent, and which call it has refused first.
class WatchedSpooler final : public ForwardingSpooler {
  public:
    using ForwardingSpooler::ForwardingSpooler;

    Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) override {
        name = document.pDocName;
        job = ForwardingSpooler::StartDocPrinterA(handle, level, document);
        return told("StartDocPrinterA", job);
    }
    Long StartPagePrinter(Long handle) override {
        return told("StartPagePrinter", ForwardingSpooler::StartPagePrinter(handle));
    }
    Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) override {
        const Long answer = ForwardingSpooler::WritePrinter(handle, data, written);
        bytes += answer != 0 ? data.size() : 0;
        return told("WritePrinter", answer);
    }
    Long EndPagePrinter(Long handle) override {
        return told("EndPagePrinter", ForwardingSpooler::EndPagePrinter(handle));
    }
    Long EndDocPrinter(Long handle) override {
        return told("EndDocPrinter", ForwardingSpooler::EndDocPrinter(handle));
    }

    String name;
    Long job = 0;
    std::size_t bytes = 0;
    std::string refused;  // the first call that was; "" for none

  private:
    Long told(const char* operation, Long answer) {
        if (answer == 0 && refused.empty()) {
            refused = operation;
        }
        return answer;
    }
};

// What goes wrong is told as the tool tells it, and nobody is asked to press a key.
class KeptBoxes final : public MessageBoxes {
  public:
    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView>) override {
        texts.emplace_back(text);
        return unattended_answer(style);
    }

    std::vector<String> texts;
};

}  // namespace

int print_command(const PrintOptions& options) {
    WatchedSpooler spooler(*platform().spooler);
    KeptBoxes boxes;
    Platform operations = platform();
    operations.spooler = &spooler;
    operations.message_boxes = &boxes;
    const ScopedPlatform scope(operations);

    const String path = posix::full_path(from_utf8(options.file));  // the job bears its last name
    ClsPrint().SpoolFile(path, from_utf8(options.printer), from_utf8(options.application));
    for (const String& text : boxes.texts) {
        std::cerr << "kvarta16: " << to_utf8(text) << '\n';
    }
    if (!boxes.texts.empty()) {
        return exit_failure;
    }
    if (!spooler.refused.empty()) {
        std::cerr << "kvarta16: the printer \"" << options.printer << "\" does not take \""
                  << to_utf8(spooler.name) << "\" (" << spooler.refused << ")\n";
        return exit_failure;
    }
    std::cout << "job " << spooler.job << " on " << options.printer << ": " << to_utf8(spooler.name)
              << " (" << spooler.bytes << " bytes)\n";
    return 0;
}

int printers_command() {
    const std::vector<PrintQueue> queues = print_queues();
    if (queues.empty()) {
        std::cerr << "kvarta16: " << why_no_queues()
                  << ". A folder is a printer by the name spool:FOLDER\n";
        return exit_failure;
    }
    for (const PrintQueue& queue : queues) {
        std::cout << to_utf8(queue.name) << (queue.is_default ? "  (default)" : "")
                  << (queue.accepts_jobs ? "" : "  (takes no jobs)")
                  << (queue.description.empty() ? "" : "  ") << to_utf8(queue.description) << '\n';
    }
    return 0;
}

}  // namespace kvarta16::tool
