#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

[[maybe_unused]] const bool is_registered = [] {
    set_default_platform(posix_platform());
    return true;
}();

}  // namespace
}  // namespace kvarta16
