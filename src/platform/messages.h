// The messages that wait for the calling thread: keys and mouse.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

struct MSG {
    Long hwnd = 0;
    Long message = 0;  // WM_KEYDOWN is 256, the first of the keys
    Long wParam = 0;   // of a key its code: 27 is Esc
    Long lParam = 0;
    Long time = 0;  // milliseconds of the system's clock
    Long x = 0;
    Long y = 0;

    friend constexpr bool operator==(const MSG&, const MSG&) noexcept = default;
};

inline constexpr Long WM_KEYFIRST = 256;
inline constexpr Long PM_REMOVE = 1;

// None of these fails.
class KVARTA16_EXPORT Messages {
  public:
    virtual ~Messages() = default;

    // Non-zero if a key or mouse input waits.
    [[nodiscard]] virtual Long GetInputState() = 0;

    // The first waiting message of the window (0: of any) with a number from `first` to `last`;
    // with PM_REMOVE it is taken out of the queue. 0, and `message` stays, if there is none.
    virtual Long PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) = 0;

    // The event pump: lets the work that waits for this thread run, then returns.
    virtual void DoEvents() = 0;
};

}  // namespace kvarta16
