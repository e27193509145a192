// The displays of a person's session, as the environment names them.
#pragma once

#include <kvarta16/frame/export.h>

namespace kvarta16::posix {

// Whether an X server listens at DISPLAY. One that is reached over the network is believed to.
[[nodiscard]] KVARTA16_EXPORT bool has_x_display();

// Whether there is a display for programs that show windows: X, or WAYLAND_DISPLAY.
[[nodiscard]] KVARTA16_EXPORT bool has_display();

}  // namespace kvarta16::posix
