// What the system tells of itself.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// What dwOSVersionInfoSize is set to before the call: the bytes of the platform's record.
inline constexpr Long version_record_size = 148;

struct OSVERSIONINFO {
    Long dwOSVersionInfoSize = 0;
    Long dwMajorVersion = 0;
    Long dwMinorVersion = 0;
    Long dwBuildNumber = 0;
    Long dwPlatformId = 0;
    String szCSDVersion;  // up to 128 characters

    friend bool operator==(const OSVERSIONINFO&, const OSVERSIONINFO&) noexcept = default;
};

// None of these raises a failure: they answer 0 where they cannot serve.
class KVARTA16_EXPORT SystemInformation {
  public:
    virtual ~SystemInformation() = default;

    // Fills the version record; 0, and the record stays, where the system has none.
    [[nodiscard]] virtual Long GetVersionExA(OSVERSIONINFO& version) = 0;

    // The system directory, without a separator at its end unless it is a root. With room for it
    // and an ending zero in `length` characters it is written with the zero over the beginning of
    // `buffer`, and the answer is its length without the zero; otherwise the length that is needed.
    // 0 where the system has none.
    [[nodiscard]] virtual Long GetWindowsDirectoryA(String& buffer, Long length) = 0;
};

}  // namespace kvarta16
