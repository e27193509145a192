#include <kvarta16/files/B_WinWer.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

using namespace literals;

// Families of systems, dwPlatformId.
constexpr Long win32s = 0;
constexpr Long win32_windows = 1;
constexpr Long win32_nt = 2;

Currency nt_code(const OSVERSIONINFO& version) {
    constexpr std::int64_t one = 10000;
    constexpr std::int64_t tenth = 1000;
    switch (version.dwMajorVersion) {
        case 3:
            return 3.5_cur;
        case 4:
            return 4_cur;
        default:
            return Currency::raw(version.dwMajorVersion * one + version.dwMinorVersion * tenth);
    }
}

}  // namespace

Currency B_WinWer::GetWindowsVersion() const {
    OSVERSIONINFO version;
    version.dwOSVersionInfoSize = version_record_size;
    if (platform().system_information->GetVersionExA(version) != 1) {
        return {};
    }
    switch (version.dwPlatformId) {
        case win32s:
            return 3.1_cur;
        case win32_windows:
            return version.dwMinorVersion == 0 ? 2.1_cur : 2.2_cur;
        case win32_nt:
            return nt_code(version);
        default:
            return {};
    }
}

}  // namespace kvarta16
