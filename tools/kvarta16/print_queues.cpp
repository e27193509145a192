#include "print_queues.h"

#include <kvarta16/platform/cups/cups_printers.h>

namespace kvarta16::tool {

std::vector<PrintQueue> print_queues() {
    std::vector<PrintQueue> queues;
    for (const cups::Printer& printer : cups::printers()) {
        queues.push_back(
            {printer.name, printer.description, printer.is_default, printer.accepts_jobs});
    }
    return queues;
}

std::string why_no_queues() {
    return "the print server " + cups::server_name() +
           " does not answer or has no printer; CUPS_SERVER names another";
}

}  // namespace kvarta16::tool
