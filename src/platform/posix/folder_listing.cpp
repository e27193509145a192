#include <cerrno>

#include <kvarta16/platform/posix/folder_listing.h>

namespace kvarta16::posix {

FolderListing::FolderListing(const std::string& native)
    : folder_(::opendir(native.c_str())), error_(folder_ == nullptr ? errno : 0) {}

int FolderListing::descriptor() const noexcept {
    return ::dirfd(folder_.get());
}

const dirent* FolderListing::next() noexcept {
    return ::readdir(folder_.get());
}

}  // namespace kvarta16::posix
