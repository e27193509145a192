// A program that links one adapter, asks for nothing of it, and has it in its default platform all
// the same:
//
//   links_one ADAPTER
#include <iostream>
#include <string_view>

#include <kvarta16/platform/platform.h>

namespace {

bool is_served(std::string_view adapter) {
    const kvarta16::Platform& operations = kvarta16::platform();
    if (adapter == "posix") {
        return operations.files != &kvarta16::unavailable_files();
    }
    if (adapter == "sqlite") {
        return operations.db_engine != &kvarta16::unavailable_db_engine();
    }
    if (adapter == "cups") {
        return operations.spooler != &kvarta16::unavailable_spooler();
    }
    return adapter == "odbc";  // connections to servers have no place there
}

}  // namespace

int main(int count, char** words) {
    if (count != 2 || !is_served(words[1])) {
        std::cerr << "links_one: the adapter is not in the default platform\n";
        return 1;
    }
}
