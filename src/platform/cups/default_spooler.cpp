#include <kvarta16/platform/cups/cups_spooler.h>
#include <kvarta16/platform/named_spoolers.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

[[maybe_unused]] const bool is_registered = [] {
    named_spoolers().serve_others(cups::spooler());
    default_platform().spooler = &named_spoolers();
    return true;
}();

}  // namespace
}  // namespace kvarta16
