#include <kvarta16/platform/posix/posix_platform.h>

namespace kvarta16 {
namespace {

[[maybe_unused]] const bool is_registered = [] {
    Platform& operations = default_platform();
    operations.message_boxes = posix_platform().message_boxes;
    operations.clock = posix_platform().clock;
    operations.sleeper = posix_platform().sleeper;
    operations.files = posix_platform().files;
    return true;
}();

}  // namespace
}  // namespace kvarta16
