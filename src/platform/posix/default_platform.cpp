#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

[[maybe_unused]] const bool is_registered = [] {
    Platform& operations = default_platform();
    dao::DBEngine* const engine = operations.db_engine;  // another adapter's, if one is linked
    operations = posix_platform();
    operations.db_engine = engine;
    return true;
}();

}  // namespace
}  // namespace kvarta16
