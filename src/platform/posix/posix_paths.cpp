#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include <dirent.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <kvarta16/frame/failure.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/files.h>
#include <kvarta16/platform/posix/posix_paths.h>

namespace kvarta16::posix {
namespace {

constexpr char16_t root_drive = u'Z';

bool is_separator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

// 'A' to 'Z' for a drive letter in either case, 0 for anything else.
char16_t drive_letter(char16_t unit) {
    if (unit >= u'a' && unit <= u'z') {
        return static_cast<char16_t>(unit - u'a' + u'A');
    }
    return unit >= u'A' && unit <= u'Z' ? unit : u'\0';
}

// ---- Names in folders -----------------------------------------------------------------------

bool exists(const std::string& path) {
    struct stat ignored {};
    return ::lstat(path.c_str(), &ignored) == 0;
}

// The name in `folder`, which ends with a separator, that is `wanted` but for its case; nothing if
// there is none or the folder cannot be read.
std::optional<std::string> name_without_case(const std::string& folder, StringView wanted) {
    struct Close {
        void operator()(DIR* directory) const { ::closedir(directory); }
    };
    const std::unique_ptr<DIR, Close> directory(::opendir(folder.c_str()));
    if (directory == nullptr) {
        return std::nullopt;
    }
    const String upper = upper_case(wanted);
    std::optional<std::string> found;
    while (const dirent* entry = ::readdir(directory.get())) {
        const std::string name = entry->d_name;
        if (upper_case(from_utf8(name)) == upper && (!found || name < *found)) {
            found = name;
        }
    }
    return found;
}

// `folder`, which ends with a separator, with the parts of a path behind it, each by the name that
// the file system has for it.
std::string looked_up(std::string folder, const std::vector<String>& parts) {
    bool is_there = true;
    for (const String& part : parts) {
        std::string name = to_utf8(part);
        if (is_there && !exists(folder + name)) {
            const std::optional<std::string> other = name_without_case(folder, part);
            is_there = other.has_value();
            name = other.value_or(name);
        }
        folder += name + '/';
    }
    return folder;
}

// ---- Drives ---------------------------------------------------------------------------------

// The folders that a host has mapped drives to, from A; "" for a drive that it has not.
std::array<std::string, 26>& mapped_folders() {
    static std::array<std::string, 26> folders;
    return folders;
}

std::string& mapped_folder(char16_t letter) {
    return mapped_folders()[static_cast<std::size_t>(letter - u'A')];
}

std::optional<std::string> environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::string>(value);
}

std::optional<std::string> home_folder() {
    if (std::optional<std::string> home = environment("HOME")) {
        return home;
    }
    const passwd* user = ::getpwuid(::getuid());
    return user == nullptr ? std::nullopt : std::optional<std::string>(user->pw_dir);
}

// As it is where there is no current directory to count from.
std::string absolute(const std::string& path) {
    std::error_code error;
    const std::filesystem::path found = std::filesystem::absolute(path, error);
    return error ? path : found.string();
}

std::optional<std::string> drives_folder() {
    if (const std::optional<std::string> told = environment("KVARTA16_DRIVES")) {
        return absolute(*told);
    }
    const std::optional<std::string> data = environment("XDG_DATA_HOME");
    if (data && data->front() == '/') {  // a relative one counts as not set
        return *data + "/kvarta16/drives";
    }
    const std::optional<std::string> home = home_folder();
    return home ? std::optional(*home + "/.local/share/kvarta16/drives") : std::nullopt;
}

bool is_folder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The folder of a drive, with a separator at its end.
std::string root_of(char16_t letter) {
    if (letter == root_drive) {
        return "/";
    }
    std::string root;
    if (!mapped_folder(letter).empty()) {
        root = mapped_folder(letter) + '/';
    } else if (const std::optional<std::string> drives = drives_folder()) {
        root = looked_up(*drives + '/', {String(1, letter)});
    }
    if (!is_folder(root)) {
        throw Failure(error::path_not_found,
                      u"Path not found: there is no drive " + String(1, letter));
    }
    return root;
}

// ---- Paths ----------------------------------------------------------------------------------

// Half of a surrogate pair has no bytes of its own: it would lead to another file.
bool has_half_pair(StringView path) {
    const auto is_high = [](char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
    const auto is_low = [](char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; };
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (is_high(path[i]) && i + 1 < path.size() && is_low(path[i + 1])) {
            ++i;
        } else if (is_high(path[i]) || is_low(path[i])) {
            return true;
        }
    }
    return false;
}

// What a path names from the folder where it begins.
struct Way {
    int upward = 0;  // how many folders above that one
    std::vector<String> names;
};

Way way_of(StringView path) {
    Way way;
    while (!path.empty()) {
        const auto* end = std::find_if(path.begin(), path.end(), is_separator);
        const String name(path.begin(), end);
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        if (name == u".." && way.names.empty()) {
            ++way.upward;
        } else if (name == u"..") {
            way.names.pop_back();
        } else if (!name.empty() && name != u".") {
            way.names.push_back(name);
        }
    }
    return way;
}

// The current directory or a folder above it, with a separator at its end.
std::string current_directory(int upward) {
    std::error_code error;
    std::filesystem::path path = std::filesystem::current_path(error);
    if (error) {
        throw Failure(error::path_not_found, u"Path not found: the current directory is gone");
    }
    for (; upward > 0; --upward) {
        path = path.parent_path();  // of the root the root itself
    }
    return path == "/" ? "/" : path.string() + '/';
}

}  // namespace

bool map_drive(char16_t letter, const std::string& folder) {
    const char16_t drive = drive_letter(letter);
    if (drive == u'\0' || drive == root_drive) {
        return false;
    }
    mapped_folder(drive) = absolute(folder);
    return true;
}

std::string native_path(StringView path) {
    if (path.empty() || path.find(u'\0') != StringView::npos || has_half_pair(path)) {
        throw Failure(error::bad_file_name, u"Bad file name: \"" + String(path) + u"\"");
    }
    if (path.size() >= 2 && is_separator(path[0]) && is_separator(path[1])) {
        throw Failure(error::path_not_found,
                      u"Path not found: there are no network drives: " + String(path));
    }
    const bool has_drive = path.size() >= 2 && path[1] == u':' && drive_letter(path[0]) != u'\0';
    const char16_t drive = has_drive ? drive_letter(path[0]) : root_drive;
    const StringView names = path.substr(has_drive ? 2 : 0);
    const bool begins_with_separator = !names.empty() && is_separator(names.front());
    const bool ends_with_separator = !names.empty() && is_separator(names.back());

    const Way way = way_of(names);
    // The current directory of another drive than Z: is its root.
    const bool is_from_root = begins_with_separator || drive != root_drive;
    std::string native =
        looked_up(is_from_root ? root_of(drive) : current_directory(way.upward), way.names);
    if (!ends_with_separator && native.size() > 1) {
        native.pop_back();
    }
    return native;
}

}  // namespace kvarta16::posix
