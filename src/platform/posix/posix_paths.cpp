#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
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
        throw Failure(error::path_not_found);
    }
    return root;
}

// ---- Current directories --------------------------------------------------------------------

// The names that lead to a folder from the root of its drive, as the file system has them.
using FolderNames = std::vector<std::string>;

FolderNames split(std::string_view native) {
    FolderNames names;
    while (!native.empty()) {
        const std::size_t end = std::min(native.find('/'), native.size());
        if (end > 0) {
            names.emplace_back(native.substr(0, end));
        }
        native.remove_prefix(std::min(end + 1, native.size()));
    }
    return names;
}

// `root` ends with a separator, and so does the result.
std::string joined(std::string root, const FolderNames& names) {
    for (const std::string& name : names) {
        root += name + '/';
    }
    return root;
}

// Fails: 76 where the process's directory has gone.
FolderNames real_directory() {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::current_path(error);
    if (error) {
        throw Failure(error::path_not_found);
    }
    return split(path.native());
}

// The current drive and the directory of each. That of drive Z: is the process's real directory
// while Z: is the current drive; what is kept here counts while another is.
class CurrentPlaces {
  public:
    [[nodiscard]] char16_t drive() {
        const std::scoped_lock lock(mutex_);
        return drive_;
    }

    [[nodiscard]] FolderNames directory_of(char16_t drive) {
        const std::scoped_lock lock(mutex_);
        return drive == root_drive && drive_ == root_drive ? real_directory() : kept(drive);
    }

    void enter_drive(char16_t drive, const std::string& root) {
        const std::scoped_lock lock(mutex_);
        if (drive == drive_) {
            return;
        }
        FolderNames left;
        try {
            left = drive_ == root_drive ? real_directory() : kept(drive_);
        } catch (const Failure&) {  // a directory that has gone: the root stands for it
        }
        if (::chdir(joined(root, kept(drive)).c_str()) != 0) {
            if (::chdir(root.c_str()) != 0) {
                throw Failure(error::device_unavailable);
            }
            kept(drive).clear();
        }
        kept(drive_) = std::move(left);
        drive_ = drive;
    }

    void enter_directory(char16_t drive, const std::string& root, const std::string& native) {
        const std::scoped_lock lock(mutex_);
        const bool can_enter = drive == drive_
                                   ? ::chdir(native.c_str()) == 0
                                   : is_folder(native) && ::access(native.c_str(), X_OK) == 0;
        if (!can_enter) {
            throw Failure(error::path_not_found);
        }
        kept(drive) = split(std::string_view(native).substr(std::min(root.size(), native.size())));
    }

  private:
    FolderNames& kept(char16_t drive) { return folders_[static_cast<std::size_t>(drive - u'A')]; }

    std::mutex mutex_;
    char16_t drive_ = root_drive;
    std::array<FolderNames, 26> folders_;
};

CurrentPlaces& current_places() {
    static CurrentPlaces places;
    return places;
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

// A text taken apart: the drive, the folder of it from which the names lead on, and the names.
struct Route {
    char16_t drive = u'\0';
    char16_t letter = u'\0';  // the drive's as it stands in the text
    FolderNames start;
    std::vector<String> names;
    bool ends_with_separator = false;
};

void require_path(StringView path) {
    if (path.empty() || path.find(u'\0') != StringView::npos || has_half_pair(path)) {
        throw Failure(error::bad_file_name);
    }
    const bool is_network = path.size() >= 2 && is_separator(path[0]) && is_separator(path[1]);
    if (is_network) {
        throw Failure(error::path_not_found);
    }
}

void require_no_wildcards(const std::vector<String>& names) {
    for (const String& name : names) {
        if (name.find_first_of(u"*?") != String::npos) {
            throw Failure(error::bad_file_name);
        }
    }
}

Route route_of(StringView path) {
    require_path(path);
    const bool has_drive = path.size() >= 2 && path[1] == u':' && drive_letter(path[0]) != u'\0';
    Route route;
    route.letter = has_drive ? path[0] : current_places().drive();
    route.drive = drive_letter(route.letter);
    const StringView names = path.substr(has_drive ? 2 : 0);
    route.ends_with_separator = !names.empty() && is_separator(names.back());
    const bool is_from_root = !names.empty() && is_separator(names.front());

    Way way = way_of(names);
    if (!is_from_root) {
        route.start = current_places().directory_of(route.drive);
        const auto upward = static_cast<std::size_t>(way.upward);
        route.start.resize(route.start.size() - std::min(upward, route.start.size()));
    }
    route.names = std::move(way.names);
    return route;
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

SplitPath split_last_name(StringView path) {
    const bool has_drive = path.size() >= 2 && path[1] == u':' && drive_letter(path[0]) != u'\0';
    const auto last = std::find_if(path.rbegin(), path.rend(), is_separator);
    const auto behind_separator = static_cast<std::size_t>(path.rend() - last);
    const std::size_t cut = std::max<std::size_t>(behind_separator, has_drive ? 2 : 0);
    return {cut == 0 ? String(u".") : String(path.substr(0, cut)), String(path.substr(cut))};
}

Location located(StringView path) {
    const Route route = route_of(path);
    require_no_wildcards(route.names);
    Location location;
    location.drive = route.drive;
    location.is_root = route.start.empty() && route.names.empty();
    location.native = looked_up(joined(root_of(route.drive), route.start), route.names);
    if (!route.ends_with_separator && location.native.size() > 1) {
        location.native.pop_back();
    }
    location.native_as_new = location.native;
    if (!route.names.empty()) {
        std::string& given = location.native_as_new;
        given.resize(given.find_last_not_of('/') + 1);
        given.resize(given.rfind('/') + 1);
        given += to_utf8(route.names.back());
    }
    return location;
}

std::string native_path(StringView path) {
    return located(path).native;
}

void require_new_name(StringView path) {
    const Route route = route_of(path);
    if (!route.names.empty() && route.names.back().find_first_of(u"*?<>|\":") != String::npos) {
        throw Failure(error::bad_file_name);
    }
}

String full_path(StringView path) {
    const Route route = route_of(path);
    String text = String(1, route.letter) + u":\\";
    for (const std::string& name : route.start) {
        text += from_utf8(name) + u'\\';
    }
    for (const String& name : route.names) {
        text += name + u'\\';
    }
    const bool is_root = route.start.empty() && route.names.empty();
    if (!route.ends_with_separator && !is_root) {
        text.pop_back();
    }
    return text;
}

void change_drive(char16_t letter) {
    const char16_t drive = drive_letter(letter);
    if (drive == u'\0') {
        throw Failure(error::invalid_call);
    }
    std::string root;
    try {
        root = root_of(drive);
    } catch (const Failure&) {  // by another number here
        throw Failure(error::device_unavailable);
    }
    current_places().enter_drive(drive, root);
}

void change_directory(StringView path) {
    const Location location = located(path);
    current_places().enter_directory(location.drive, root_of(location.drive), location.native);
}

String current_directory() {
    const char16_t drive = current_places().drive();
    const FolderNames names = current_places().directory_of(drive);
    if (!is_folder(joined(root_of(drive), names))) {
        throw Failure(error::path_not_found);
    }
    String text = String(1, drive) + u":";
    for (const std::string& name : names) {
        text += u'\\' + from_utf8(name);
    }
    return names.empty() ? text + u'\\' : text;
}

}  // namespace kvarta16::posix
