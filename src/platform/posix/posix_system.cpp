#include <sys/stat.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_status.h>
#include <kvarta16/platform/posix/posix_system.h>
#include <kvarta16/platform/posix/text_buffer.h>

namespace kvarta16::posix {

Long PosixSystemInformation::GetVersionExA(OSVERSIONINFO& /*version*/) {
    return 0;
}

Long PosixSystemInformation::GetWindowsDirectoryA(String& buffer, Long length) {
    Long answer = 0;
    guarded([&] {
        const std::string native = native_path(u"C:\\Windows");
        struct stat status {};
        if (::stat(native.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
            answer = hand_out(u"C:\\" + from_utf8(last_name(native)), length, buffer);
        }
    });
    return answer;
}

}  // namespace kvarta16::posix
