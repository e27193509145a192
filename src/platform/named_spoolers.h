// Which spooler has a printer, by the printer's name: several spoolers stand beside each other,
// each for the names that begin with a prefix of its own, and at most one for all other names.
//
// Adapters enter theirs before main, a host before its first thread prints; they must live to the
// end of the program. A name that nobody serves is that of no printer.
#pragma once

#include <map>
#include <mutex>
#include <vector>

#include <kvarta16/frame/export.h>
#include <kvarta16/platform/spooler.h>

namespace kvarta16 {

class KVARTA16_EXPORT NamedSpoolers final : public Spooler {
  public:
    // Names that begin with exactly this go to `spooler`, which gets them whole; the first prefix
    // that fits decides.
    void serve_prefix(StringView prefix, Spooler& spooler);

    // All other names.
    void serve_others(Spooler& spooler);

    Long OpenPrinterA(StringView name, Long& handle, const PRINTER_DEFAULTS& defaults) override;
    Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) override;
    Long StartPagePrinter(Long handle) override;
    Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) override;
    Long EndPagePrinter(Long handle) override;
    Long EndDocPrinter(Long handle) override;
    Long ClosePrinter(Long handle) override;

  private:
    struct Served {
        String prefix;
        Spooler* spooler;
    };
    struct Opened {
        Spooler* spooler = nullptr;
        Long handle = 0;  // the spooler's own
    };

    [[nodiscard]] Spooler* spooler_of(StringView name) const;
    // Nothing for a handle that is not open.
    [[nodiscard]] Opened opened(Long handle) const;

    std::vector<Served> served_;
    Spooler* others_ = nullptr;
    mutable std::mutex mutex_;  // of what follows
    Long last_handle_ = 0;
    std::map<Long, Opened> open_;
};

// Those of this process, which its default platform uses.
[[nodiscard]] KVARTA16_EXPORT NamedSpoolers& named_spoolers() noexcept;

}  // namespace kvarta16
