#include <algorithm>
#include <cstdlib>
#include <memory>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/windows_paths.h>

namespace kvarta16::posix {
namespace {

// native_path(); "" where that fails.
std::string native_or_none(StringView path) {
    try {
        return native_path(path);
    } catch (const Failure&) {
        return "";
    }
}

// Through all symbolic links; "" for what does not exist.
std::string resolved(const std::string& path) {
    struct Free {
        void operator()(char* text) const { std::free(text); }  // NOLINT(*-no-malloc): realpath's
    };
    const std::unique_ptr<char, Free> found(::realpath(path.c_str(), nullptr));
    return found != nullptr ? found.get() : "";
}

// Whether `path` is `folder` or lies in it.
bool is_within(const std::string& path, const std::string& folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

struct Drive {
    char16_t letter = u'Z';
    std::string folder;  // "" for the root of the system
};

Drive deepest_drive(const std::string& path) {
    Drive best;
    for (char16_t letter = u'A'; letter < u'Z'; ++letter) {
        const std::string folder = native_or_none(String(1, letter) + u":\\");
        for (std::string candidate : {folder, resolved(folder)}) {
            while (candidate.ends_with('/')) {
                candidate.pop_back();
            }
            if (candidate.size() > best.folder.size() && is_within(path, candidate)) {
                best = {letter, candidate};
            }
        }
    }
    return best;
}

}  // namespace

String windows_path(const std::string& native) {
    const Drive drive = deepest_drive(native);
    String path = String(1, drive.letter) + u':' + from_utf8(native.substr(drive.folder.size()));
    std::ranges::replace(path, u'/', u'\\');
    if (path.size() == 2) {
        path += u'\\';
    }
    // A name that means something else to Windows leads elsewhere or nowhere.
    const std::string back = resolved(native_or_none(path));
    return !back.empty() && back == resolved(native) ? path : u"";
}

}  // namespace kvarta16::posix
