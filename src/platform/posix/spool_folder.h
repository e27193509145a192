// A spooler whose printers are folders, for tests and for machines where another program fetches
// what is to be printed: the printer "spool:FOLDER" is the folder of that path, of Windows or of
// the system.
//
//   spool:Z:\var\etykiety     a folder that is there and may be written
//   spool:/var/etykiety       the same
//
// Each document becomes two files: 0001-NAME.prn with its bytes, and 0001-NAME.job, a few lines
// that tell its name, its printer and its size. The number is the next after those in the folder,
// also where several programs print at once; NAME is the document's without what a file name cannot
// bear. Both appear when the document is ended, the bytes last and whole: until then they lie in a
// hidden file ".0001.part". A document that could not be written whole is dropped and EndDocPrinter
// says 0.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include <kvarta16/platform/spooler.h>

namespace kvarta16::posix {

inline constexpr StringView spool_folder_prefix = u"spool:";

class SpoolFolder final : public Spooler {
  public:
    SpoolFolder();
    ~SpoolFolder() override;
    SpoolFolder(const SpoolFolder&) = delete;
    SpoolFolder& operator=(const SpoolFolder&) = delete;
    SpoolFolder(SpoolFolder&&) = delete;
    SpoolFolder& operator=(SpoolFolder&&) = delete;

    Long OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS& defaults) override;

    // The number of the document in its folder. 0 for another level than 1, another data type than
    // "RAW", an output file, and while the document before has not been ended.
    Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) override;
    Long StartPagePrinter(Long handle) override;
    Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) override;
    Long EndPagePrinter(Long handle) override;
    Long EndDocPrinter(Long handle) override;
    Long ClosePrinter(Long handle) override;

  private:
    class Document;
    struct Printer {
        String name;
        std::string folder;
        std::unique_ptr<Document> document;
    };

    [[nodiscard]] Printer* printer_of(Long handle);
    [[nodiscard]] bool has_document(Long handle);

    std::mutex mutex_;
    Long last_handle_ = 0;
    std::map<Long, Printer> printers_;
};

}  // namespace kvarta16::posix
