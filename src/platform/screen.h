// The screen of the application.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

inline constexpr Long default_mouse_pointer = 0;

class KVARTA16_EXPORT Screen {
  public:
    virtual ~Screen() = default;

    // The shape of the mouse pointer over all windows of the application. Never fails.
    virtual void PutMousePointer(Long pointer) = 0;
};

}  // namespace kvarta16
