// The printers of the print server.
#pragma once

#include <string>
#include <vector>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::cups {

struct Printer {
    String name;         // by which it is opened
    String description;  // what people call it; may be ""
    bool is_default = false;
    bool accepts_jobs = false;
};

// In the server's order. Nothing where there is no server.
[[nodiscard]] KVARTA16_EXPORT std::vector<Printer> printers();

// The server that is asked, as a person would name it.
[[nodiscard]] KVARTA16_EXPORT std::string server_name();

}  // namespace kvarta16::cups
