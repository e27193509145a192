// The spooler behind a print server that speaks CUPS. Its printers are the server's queues, by
// exactly the names that the server has for them.
//
// A document goes to its queue as it is, as the format application/vnd.cups-raw: no filter of the
// server touches it. The server keeps 255 bytes of its name. The job is made when the document
// begins, and prints when it ends. The server is that of CUPS_SERVER in the environment, of
// client.conf, or of this machine; the jobs belong to the user of the program.
//
// A printer that is closed before its document has been ended takes the job back. So does
// EndDocPrinter, answering 0, where the server has not got all of the document or refuses it; one
// without a byte is refused always.
#pragma once

#include <map>
#include <memory>
#include <mutex>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/spooler.h>

namespace kvarta16::cups {

class KVARTA16_EXPORT CupsSpooler final : public Spooler {
  public:
    CupsSpooler();
    ~CupsSpooler() override;
    CupsSpooler(const CupsSpooler&) = delete;
    CupsSpooler& operator=(const CupsSpooler&) = delete;
    CupsSpooler(CupsSpooler&&) = delete;
    CupsSpooler& operator=(CupsSpooler&&) = delete;

    Long OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS& defaults) override;

    // The server's number of the job. 0 for another level than 1, another data type than "RAW", an
    // output file, while the document before has not been ended, and where the server refuses.
    Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) override;
    Long StartPagePrinter(Long handle) override;
    Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) override;
    Long EndPagePrinter(Long handle) override;
    Long EndDocPrinter(Long handle) override;
    Long ClosePrinter(Long handle) override;

  private:
    class Document;
    struct Printer {
        std::string name;
        std::unique_ptr<Document> document;
    };

    // What a handle stands for stays while somebody works with it. Empty for no handle.
    [[nodiscard]] std::shared_ptr<Printer> printer_of(Long handle);

    std::mutex mutex_;
    Long last_handle_ = 0;
    std::map<Long, std::shared_ptr<Printer>> printers_;
};

// That of this process.
[[nodiscard]] KVARTA16_EXPORT CupsSpooler& spooler() noexcept;

}  // namespace kvarta16::cups
