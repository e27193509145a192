// The set of platform operations that a thread uses. The default is the operating system's where
// its adapter is linked (kvarta16_posix); a program without an adapter gets one made of the
// standard library, whose boxes nobody sees. A test or a host puts its own in force for a scope:
//
//   RecordingBoxes boxes;
//   Platform mine = platform();
//   mine.message_boxes = &boxes;
//   const ScopedPlatform scope(mine);
#pragma once

#include <kvarta16/platform/clock.h>
#include <kvarta16/platform/message_box.h>

namespace kvarta16 {

// None of the pointers is ever null; what they point to outlives the Platform's use.
struct Platform {
    MessageBoxes* message_boxes;
    Clock* clock;
    Sleeper* sleeper;
};

// The set in force on the calling thread.
[[nodiscard]] const Platform& platform() noexcept;

// What threads without a scope of their own use. Called by an adapter before main, or by a host
// before its first thread uses the library. `operations` must live to the end of the program.
void set_default_platform(const Platform& operations) noexcept;

// Puts another set in force on the calling thread until the scope ends.
class ScopedPlatform {
  public:
    explicit ScopedPlatform(const Platform& operations) noexcept;
    ~ScopedPlatform();
    ScopedPlatform(const ScopedPlatform&) = delete;
    ScopedPlatform& operator=(const ScopedPlatform&) = delete;
    ScopedPlatform(ScopedPlatform&&) = delete;
    ScopedPlatform& operator=(ScopedPlatform&&) = delete;

  private:
    const Platform* previous_;
};

}  // namespace kvarta16
