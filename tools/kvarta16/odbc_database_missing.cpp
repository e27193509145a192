// For a build without the adapter to database servers.
#include "databases.h"
#include "usage_error.h"

namespace kvarta16::tool {

bool opens_odbc() noexcept {
    return false;
}

std::shared_ptr<Database> open_odbc(std::string_view) {
    throw UsageError("this kvarta16 was built without unixODBC and opens sqlite:FILE alone");
}

std::string shown_odbc(std::string_view connection_name) {
    return std::string(connection_name.substr(0, connection_name.find_first_of("=;")));
}

}  // namespace kvarta16::tool
