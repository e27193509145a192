// The printers of the print server that the tool is linked with.
#pragma once

#include <string>
#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16::tool {

struct PrintQueue {
    String name;
    String description;
    bool is_default = false;
    bool accepts_jobs = false;
};

[[nodiscard]] std::vector<PrintQueue> print_queues();

// Why there are none, and what can be done.
[[nodiscard]] std::string why_no_queues();

}  // namespace kvarta16::tool
