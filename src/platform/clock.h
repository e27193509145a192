// The clock and the pause of the platform.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

class KVARTA16_EXPORT Clock {
  public:
    virtual ~Clock() = default;

    // The present moment in local time, to the second. Never fails.
    virtual Date Now() = 0;
};

class KVARTA16_EXPORT Sleeper {
  public:
    virtual ~Sleeper() = default;

    // Blocks the calling thread for that many milliseconds; 0 or less returns at once.
    virtual void Sleep(Long milliseconds) = 0;
};

}  // namespace kvarta16
