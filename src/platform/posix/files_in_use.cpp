#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <sys/sysmacros.h>

#include <kvarta16/platform/posix/files_in_use.h>

namespace kvarta16::posix {

FilesInUse::FilesInUse() {
    close_kept_aside();
    std::error_code ignored;  // a descriptor may go while it is looked at
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", ignored)) {
        struct stat open {};
        if (::stat(entry.path().c_str(), &open) == 0) {
            open_here_.insert(identity_of(open));
        }
    }
    // A line is "1: POSIX  ADVISORY  WRITE 3568 08:01:2867 0 EOF".
    std::ifstream locks("/proc/locks");
    for (std::string word; locks >> word;) {
        if (word.find(':') != std::string::npos) {
            locked_.insert(word);
        }
    }
}

bool FilesInUse::contains(const struct stat& file) const {
    std::array<char, 64> name{};
    std::snprintf(name.data(), name.size(), "%02x:%02x:%llu", major(file.st_dev),
                  minor(file.st_dev), static_cast<unsigned long long>(file.st_ino));
    return open_here_.contains(identity_of(file)) || locked_.contains(name.data());
}

}  // namespace kvarta16::posix
