#include <kvarta16/platform/platform.h>
#include <kvarta16/platform/sqlite/sqlite_engine.h>

namespace kvarta16 {
namespace {

[[maybe_unused]] const bool is_registered = [] {
    default_platform().db_engine = &sqlite::db_engine();
    return true;
}();

}  // namespace
}  // namespace kvarta16
