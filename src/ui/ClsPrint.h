// Raw printing: a file that is in the printer's own language goes to the printer as it is.
//
//   const ClsPrint printing;
//   printing.SpoolFile(u"Z:\\dane\\wydruk.prn", u"Etykiety", u"Faktury");
//
// The spooler's list then has the job "Faktury: wydruk.prn". Whatever the file holds, the job is
// one document of one page, of the data type "RAW", which no driver touches.
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

class KVARTA16_EXPORT ClsPrint {
  public:
    // Sends the file `sFile`, byte by byte, to the printer of the name `PrnName`, which is tried as
    // it stands, in lower case and in capitals. The job bears the name behind the last "\" of
    // `sFile`, after `AppName` and ": " where that is given.
    //
    // The result says no more than that a printer was there. False: it was found under none of the
    // three names, and a box has said so. True: everything else, also where the file is missing or
    // cannot be read; a box then tells the failure's text, the printer is closed with its document
    // unfinished, and the file, if it was open, stays open under its number. A write that the
    // spooler refuses is not noticed at all. An empty file makes a job with an empty page. Of a
    // file of 2 GiB and more the length wraps below 0: what it has over whole blocks is failure 9.
    //
    // Guarded: no failure reaches the caller. Blocks until the spooler has taken all.
    Boolean SpoolFile(StringView sFile, StringView PrnName, StringView AppName = {}) const;
};

template <>
struct ClassTable<ClsPrint> {
    static constexpr ClassHeader header{u"ClsPrint", Instancing::Creatable,
                                        "5D64C964-C4AE-4E0D-BDE9-4606E9607042",
                                        "79EE7936-7692-4DB0-ADB6-747CDFB2C5E7"};
    static constexpr auto members = std::to_array<MemberInfo>({
        method<&ClsPrint::SpoolFile>(u"SpoolFile", by_reference(u"sFile"), by_reference(u"PrnName"),
                                     optional(by_reference(u"AppName"))),
    });
};

}  // namespace kvarta16
