#include <algorithm>
#include <cerrno>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/file_times.h>
#include <kvarta16/platform/posix/folder_listing.h>
#include <kvarta16/platform/posix/name_pattern.h>
#include <kvarta16/platform/posix/posix_find.h>
#include <kvarta16/platform/posix/posix_paths.h>
#include <kvarta16/platform/posix/posix_status.h>
#include <kvarta16/platform/posix/text_buffer.h>

namespace kvarta16::posix {
namespace {

// ---- One entry ------------------------------------------------------------------------------

std::int64_t units_of_status(const struct statx_timestamp& time) {
    return units_since_1601(time.tv_sec, time.tv_nsec);
}

std::int64_t creation_of(const struct statx& status) {
    if ((status.stx_mask & STATX_BTIME) != 0) {
        return units_of_status(status.stx_btime);
    }
    return std::min({units_of_status(status.stx_mtime), units_of_status(status.stx_ctime),
                     units_of_status(status.stx_atime)});
}

// The system's status of what a name in a folder leads to, else of the link that it is.
std::optional<struct statx> status_of(int folder, const char* name) {
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
    struct statx status {};
    if (::statx(folder, name, 0, wanted, &status) == 0) {
        return status;
    }
    if (::statx(folder, name, AT_SYMLINK_NOFOLLOW, wanted, &status) == 0) {
        return status;
    }
    return std::nullopt;
}

void put_name(WIN32_FIND_DATA& data, StringView name) {
    std::copy_n(name.begin(), std::min(name.size(), data.cFileName.size()), data.cFileName.begin());
}

WIN32_FIND_DATA record_of(const struct statx& status, const Caller& caller,
                          std::string_view native_name, StringView name) {
    constexpr int low_bits = 32;
    const auto size = static_cast<std::int64_t>(S_ISREG(status.stx_mode) ? status.stx_size : 0);
    WIN32_FIND_DATA data;
    data.dwFileAttributes =
        caller.attributes(status.stx_mode, status.stx_uid, status.stx_gid, native_name);
    data.ftCreationTime = file_time(creation_of(status));
    data.ftLastAccessTime = file_time(units_of_status(status.stx_atime));
    data.ftLastWriteTime = file_time(units_of_status(status.stx_mtime));
    data.nFileSizeHigh = wrap32(size >> low_bits);
    data.nFileSizeLow = wrap32(size);
    put_name(data, name);
    return data;
}

// What the listing alone tells of an entry that may not be looked at.
WIN32_FIND_DATA record_of_unseen(const dirent& entry, StringView name) {
    WIN32_FIND_DATA data;
    data.dwFileAttributes =
        entry.d_type == DT_DIR ? file_attribute::directory : file_attribute::archive;
    put_name(data, name);
    return data;
}

// ---- Searches -------------------------------------------------------------------------------

// The entries of a folder that match a pattern.
class Search {
  public:
    // Without a folder there is nothing to be found.
    Search() : pattern_(u"*") {}
    Search(const Location& folder, StringView pattern)
        : folder_(folder.native), pattern_(pattern), is_root_(folder.is_root) {}

    [[nodiscard]] bool find_next(WIN32_FIND_DATA& data) {
        const dirent* entry = nullptr;
        while (folder_.is_open() && (entry = folder_.next()) != nullptr) {
            const char* const native = entry->d_name;
            const String name = from_utf8(native);
            if (!is_wanted(name)) {
                continue;
            }
            if (const auto status = status_of(folder_.descriptor(), native)) {
                data = record_of(*status, caller_, native, name);
                return true;
            }
            if (errno != ENOENT) {  // one that has gone in between is none
                data = record_of_unseen(*entry, name);
                return true;
            }
        }
        return false;
    }

  private:
    [[nodiscard]] bool is_wanted(StringView name) const {
        const bool is_dots = name == u"." || name == u"..";
        return !(is_dots && is_root_) && pattern_.matches(name);
    }

    FolderListing folder_;
    NamePattern pattern_;
    Caller caller_;
    bool is_root_ = false;
};

// The searches that are open, by their handles from 1.
class Searches {
  public:
    Long add(std::shared_ptr<Search> search) {
        const std::scoped_lock lock(mutex_);
        const auto free = std::ranges::find(searches_, nullptr);
        const auto index = free - searches_.begin();
        if (free == searches_.end()) {
            searches_.push_back(std::move(search));
        } else {
            *free = std::move(search);
        }
        return static_cast<Long>(index + 1);
    }

    // nullptr for a handle that is none.
    std::shared_ptr<Search> find(Long handle) {
        const std::scoped_lock lock(mutex_);
        return is_handle(handle) ? searches_[index_of(handle)] : nullptr;
    }

    std::shared_ptr<Search> remove(Long handle) {
        const std::scoped_lock lock(mutex_);
        return is_handle(handle) ? std::exchange(searches_[index_of(handle)], nullptr) : nullptr;
    }

  private:
    [[nodiscard]] bool is_handle(Long handle) const {
        return handle >= 1 && static_cast<std::size_t>(handle) <= searches_.size();
    }
    static std::size_t index_of(Long handle) { return static_cast<std::size_t>(handle) - 1; }

    std::mutex mutex_;
    std::vector<std::shared_ptr<Search>> searches_;
};

Searches& searches() {
    static Searches all;
    return all;
}

Long search_for_matching(const SplitPath& parts, WIN32_FIND_DATA& data) {
    auto search = std::make_shared<Search>(located(parts.folder), parts.name);
    return search->find_next(data) ? searches().add(std::move(search)) : INVALID_HANDLE_VALUE;
}

Long search_for_one(StringView path, WIN32_FIND_DATA& data) {
    const Location location = located(path);
    if (location.is_root || location.native.ends_with('/')) {
        return INVALID_HANDLE_VALUE;
    }
    const auto status = status_of(AT_FDCWD, location.native.c_str());
    if (!status) {
        return INVALID_HANDLE_VALUE;
    }
    const std::string name = last_name(location.native);
    data = record_of(*status, Caller(), name, from_utf8(name));
    return searches().add(std::make_shared<Search>());
}

}  // namespace

Long PosixFindFiles::FindFirstFileA(StringView name, WIN32_FIND_DATA& data) {
    Long handle = INVALID_HANDLE_VALUE;
    guarded([&] {
        const SplitPath parts = split_last_name(name);
        handle = NamePattern::has_wildcards(parts.name) ? search_for_matching(parts, data)
                                                        : search_for_one(name, data);
    });
    return handle;
}

Long PosixFindFiles::FindNextFileA(Long handle, WIN32_FIND_DATA& data) {
    const std::shared_ptr<Search> search = searches().find(handle);
    return search != nullptr && search->find_next(data) ? 1 : 0;
}

Long PosixFindFiles::FindClose(Long handle) {
    return searches().remove(handle) != nullptr ? 1 : 0;
}

Long PosixFindFiles::GetFullPathNameA(StringView name, Long length, String& buffer) {
    Long answer = 0;
    guarded([&] { answer = hand_out(full_path(name), length, buffer); });
    return answer;
}

Long PosixFindFiles::GetShortPathNameA(StringView name, Long length, String& buffer) {
    Long answer = 0;
    guarded([&] {
        struct stat status {};
        if (::lstat(native_path(name).c_str(), &status) == 0) {
            answer = hand_out(name, length, buffer);
        }
    });
    return answer;
}

Long PosixFindFiles::FileTimeToLocalFileTime(const FILETIME& time, FILETIME& local) {
    const std::optional<std::int64_t> units = local_units(units_of(time));
    if (!units) {
        return 0;
    }
    local = file_time(*units);
    return 1;
}

Long PosixFindFiles::FileTimeToSystemTime(const FILETIME& time, SYSTEMTIME& parts) {
    const std::optional<SYSTEMTIME> found = calendar_parts(units_of(time));
    if (!found) {
        return 0;
    }
    parts = *found;
    return 1;
}

}  // namespace kvarta16::posix
