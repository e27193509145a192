// What stands in the place of operations that a program has no adapter for. They refuse as the
// platform does where it has not got them.
#pragma once

#include <kvarta16/platform/dao.h>
#include <kvarta16/platform/files.h>

namespace kvarta16 {

// Every operation fails as for a missing file (53).
[[nodiscard]] Files& unavailable_files() noexcept;

// No engine is installed (429).
[[nodiscard]] dao::DBEngine& unavailable_db_engine() noexcept;

}  // namespace kvarta16
