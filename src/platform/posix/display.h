// The displays of a person's session, as the environment names them.
#pragma once

namespace kvarta16::posix {

// Whether an X server listens at DISPLAY. One that is reached over the network is believed to.
[[nodiscard]] bool has_x_display();

// Whether there is a display for programs that show windows: X, or WAYLAND_DISPLAY.
[[nodiscard]] bool has_display();

}  // namespace kvarta16::posix
