// What a POSIX system tells of itself in the platform's terms.
#pragma once

#include <kvarta16/platform/system_information.h>

namespace kvarta16::posix {

class PosixSystemInformation final : public SystemInformation {
  public:
    // There is no such record: 0.
    Long GetVersionExA(OSVERSIONINFO& version) override;

    // The folder Windows of drive C:, spelled as it is found; 0 where there is no such drive or
    // folder.
    Long GetWindowsDirectoryA(String& buffer, Long length) override;
};

}  // namespace kvarta16::posix
