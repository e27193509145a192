// Names of connections: a data source, or attributes as "DRIVER={...};SERVER=...;PWD=...".
#pragma once

#include <vector>

#include <kvarta16/frame/types.h>

namespace kvarta16::odbc {

struct ConnectionName {
    String attributes;            // as the driver manager takes it
    String shown;                 // of the attributes those that say where it leads, and no others
    std::vector<String> secrets;  // the values of those that nobody is to see
};

[[nodiscard]] ConnectionName read_connection_name(StringView name);

}  // namespace kvarta16::odbc
