// The Windows path of a file of the system: the way back from posix_paths.h.
#pragma once

#include <string>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16::posix {

// For an absolute path of the system without a separator at its end (but the root): the path on the
// drive whose folder it lies deepest in, else on drive Z:. A drive's own folder is "C:\". "" for a
// file that does not exist, and for one that no Windows path leads back to.
[[nodiscard]] KVARTA16_EXPORT String windows_path(const std::string& native);

}  // namespace kvarta16::posix
