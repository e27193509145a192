// The print spooler. Handles are numbers; 0 is none.
//
// None of these raises a failure: they answer 0 where they cannot serve.
#pragma once

#include <span>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

struct DOC_INFO_1 {
    String pDocName;     // the job's name in the spooler's list
    String pOutputFile;  // empty: to the printer
    String pDatatype;    // "RAW": the data is in the printer's own language
};

struct DEVMODE {
    Integer dmSize = 0;
};

inline constexpr Long PRINTER_ACCESS_USE = 8;

struct PRINTER_DEFAULTS {
    String pDatatype;
    DEVMODE pDevMode;
    Long DesiredAccess = 0;
};

class KVARTA16_EXPORT Spooler {
  public:
    virtual ~Spooler() = default;

    // Opens the printer with exactly this name; `handle` is not written where there is none.
    [[nodiscard]] virtual Long OpenPrinterA(StringView name, Long& handle,
                                            const PRINTER_DEFAULTS& defaults) = 0;

    // Begins a document; the number of its job.
    virtual Long StartDocPrinterA(Long handle, Long level, const DOC_INFO_1& document) = 0;
    virtual Long StartPagePrinter(Long handle) = 0;

    // Sends bytes as they are; `written` is the count that the spooler has taken.
    virtual Long WritePrinter(Long handle, std::span<const Byte> data, Long& written) = 0;

    virtual Long EndPagePrinter(Long handle) = 0;

    // Ends the document, which is printed from now on.
    virtual Long EndDocPrinter(Long handle) = 0;

    // A document that has not been ended is dropped.
    virtual Long ClosePrinter(Long handle) = 0;
};

}  // namespace kvarta16
