#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <pwd.h>
#include <unistd.h>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/posix/registry/posix_registry.h>

namespace kvarta16::posix {
namespace {

namespace status = registry_status;
using registry::Change;
using registry::Key;
using registry::Path;
using registry::Value;

// ---- Where the files are --------------------------------------------------------------------

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

// The same for all calls with one path, so that a program may change its directory.
std::string absolute_at_first(const std::string& path) {
    static std::mutex mutex;
    static std::map<std::string, std::string> known;
    const std::scoped_lock lock(mutex);
    const auto [place, is_new] = known.try_emplace(path, path);
    if (is_new) {
        std::error_code error;
        const std::filesystem::path found = std::filesystem::absolute(path, error);
        place->second = error ? path : found.string();
    }
    return place->second;
}

std::string configuration_folder() {
    std::string told = environment("XDG_CONFIG_HOME");
    if (told.starts_with('/')) {  // a relative one counts as not set
        return told;
    }
    std::string home = environment("HOME");
    if (home.empty()) {
        const passwd* user = ::getpwuid(::getuid());
        home = user == nullptr ? "" : user->pw_dir;
    }
    return home.empty() ? "" : home + "/.config";
}

std::string user_place() {
    const std::string told = environment("KVARTA16_REGISTRY");
    if (!told.empty()) {
        return absolute_at_first(told);
    }
    const std::string folder = configuration_folder();
    return folder.empty() ? "" : folder + "/kvarta16/registry.reg";
}

std::string machine_place() {
    const std::string told = environment("KVARTA16_REGISTRY_MACHINE");
    return told.empty() ? "/etc/kvarta16/registry.reg" : absolute_at_first(told);
}

// ---- Roots, names and paths -----------------------------------------------------------------

struct Root {
    Long handle = 0;
    StringView name;
    bool is_of_machine = false;
};
constexpr Root roots[] = {
    {HKEY_CLASSES_ROOT, u"HKEY_CLASSES_ROOT", true},
    {HKEY_CURRENT_USER, u"HKEY_CURRENT_USER", false},
    {HKEY_LOCAL_MACHINE, u"HKEY_LOCAL_MACHINE", true},
};

const Root* root_of(Long handle) {
    const auto* const found = std::ranges::find(roots, handle, &Root::handle);
    return found == std::end(roots) ? nullptr : found;
}

// A name as it arrives behind a call of the platform.
String passed_name(StringView name) {
    return from_ansi(to_ansi(name.substr(0, name.find(u'\0'))));
}

// A key stands in one line of the file, and so does a value's name.
bool can_be_kept(StringView name, std::size_t longest) {
    return name.size() <= longest && name.find_first_of(u"\r\n") == StringView::npos;
}

Long split(StringView path, Path& names) {
    const String passed = passed_name(path);
    if (passed.starts_with(u'\\')) {
        return status::bad_path_name;
    }
    for (std::size_t start = 0; start < passed.size();) {
        const std::size_t end = std::min(passed.find(u'\\', start), passed.size());
        if (end > start) {
            names.push_back(passed.substr(start, end - start));
        }
        start = end + 1;
    }
    const bool are_good =
        names.size() < registry::deepest_key && std::ranges::all_of(names, [](const String& name) {
            return can_be_kept(name, registry::longest_key_name);
        });
    return are_good ? status::success : status::invalid_parameter;
}

Path full_path(Long root, const Path& below) {
    Path path{String(root_of(root)->name)};
    path.insert(path.end(), below.begin(), below.end());
    return path;
}

String joined(const Path& path) {
    String text = path.front();
    for (const String& name : std::span(path).subspan(1)) {
        text.append(u"\\").append(name);
    }
    return text;
}

// ---- Data as the ANSI calls show it ---------------------------------------------------------

std::string ansi_data(const Value& value) {
    return registry::is_text_type(value.type) ? to_ansi(registry::text_of(value.data)) : value.data;
}

Value value_of_ansi(StringView name, Long type, std::string bytes) {
    return {passed_name(name), type,
            registry::is_text_type(type) ? registry::data_of(from_ansi(bytes)) : std::move(bytes)};
}

}  // namespace

RegistryPlaces registry_places() {
    return {user_place(), machine_place()};
}

std::optional<Long> handle_of_root(StringView full_name) {
    const auto* const found = std::ranges::find(roots, full_name, &Root::name);
    return found == std::end(roots) ? std::nullopt : std::optional<Long>(found->handle);
}

// ---- Handles --------------------------------------------------------------------------------

Long PosixRegistry::opened_place(Long handle, Place& place) const {
    if (root_of(handle) != nullptr) {
        place = {handle, {}};
        return status::success;
    }
    const std::scoped_lock lock(handles_mutex_);
    const auto opened = opened_.find(handle);
    if (opened == opened_.end()) {
        return status::invalid_handle;
    }
    place = opened->second.place;
    return status::success;
}

Long PosixRegistry::locate(Long key, StringView path, Place& place) const {
    const Long answer = opened_place(key, place);
    return answer == status::success ? split(path, place.path) : answer;
}

Long PosixRegistry::handle_of(const Place& place) {
    if (place.path.empty()) {
        return place.root;
    }
    const std::scoped_lock lock(handles_mutex_);
    const String place_key = upper_case(joined(full_path(place.root, place.path)));
    if (const auto known = handles_.find(place_key); known != handles_.end()) {
        ++opened_.at(known->second).count;
        return known->second;
    }
    if (opened_.size() >= sweep_at_) {
        drop_handles_of_gone_keys();
    }
    constexpr Long handle_step = 4;  // as the platform's handles are
    Long handle = wrap32(handle_step * (static_cast<std::int64_t>(opened_.size()) + 1));
    if (!free_handles_.empty()) {
        handle = free_handles_.back();
        free_handles_.pop_back();
    }
    opened_.emplace(handle, Opened{place, place_key, 1});
    handles_.emplace(place_key, handle);
    return handle;
}

bool PosixRegistry::has_gone(const Place& place) {
    std::shared_ptr<const Key> tree;
    const Key* key = nullptr;
    return found_key(place, tree, key) == status::file_not_found;
}

void PosixRegistry::drop_handles_of_gone_keys() {
    constexpr std::size_t growth = 2;
    for (auto opened = opened_.begin(); opened != opened_.end();) {
        const auto next = std::next(opened);
        if (has_gone(opened->second.place)) {
            drop(opened);
        }
        opened = next;
    }
    sweep_at_ = std::max(sweep_at_, growth * opened_.size());
}

void PosixRegistry::drop(std::map<Long, Opened>::iterator opened) {
    handles_.erase(opened->second.place_key);
    free_handles_.push_back(opened->first);
    opened_.erase(opened);
}

std::size_t PosixRegistry::open_keys() const {
    const std::scoped_lock lock(handles_mutex_);
    return opened_.size();
}

// ---- Files ----------------------------------------------------------------------------------

registry::RegistryFile& PosixRegistry::file_of(Long root) {
    const RegistryPlaces places = places_();
    const bool is_of_machine = root_of(root)->is_of_machine;
    const std::string& path = is_of_machine ? places.machine : places.user;
    const std::scoped_lock lock(files_mutex_);
    std::unique_ptr<registry::RegistryFile>& file = files_[path];
    if (file == nullptr) {
        file = std::make_unique<registry::RegistryFile>(
            path, is_of_machine ? registry::shared_modes : registry::own_modes);
    }
    return *file;
}

// A root is there also where the file has nothing of it.
Long PosixRegistry::found_key(const Place& place, std::shared_ptr<const Key>& tree,
                              const Key*& key) {
    static const Key empty_root;
    if (const Long answer = file_of(place.root).read(tree); answer != status::success) {
        return answer;
    }
    key = registry::find_key(*tree, full_path(place.root, place.path));
    if (key == nullptr && place.path.empty()) {
        key = &empty_root;
    }
    return key == nullptr ? status::file_not_found : status::success;
}

// ---- The operations -------------------------------------------------------------------------

Long PosixRegistry::RegOpenKeyA(Long key, StringView path, Long& result) {
    Place place;
    std::shared_ptr<const Key> tree;
    const Key* found = nullptr;
    Long answer = locate(key, path, place);
    if (answer == status::success) {
        answer = found_key(place, tree, found);
    }
    if (answer == status::success) {
        result = handle_of(place);
    }
    return answer;
}

Long PosixRegistry::RegCreateKeyA(Long key, StringView path, Long& result) {
    Place place;
    std::shared_ptr<const Key> tree;
    const Key* found = nullptr;
    Long answer = locate(key, path, place);
    if (answer == status::success) {
        answer = found_key(place, tree, found);
        if (answer == status::file_not_found) {
            answer = file_of(place.root).change([&](Key& changed) {
                registry::made_key(changed, full_path(place.root, place.path));
                return status::success;
            });
        }
    }
    if (answer == status::success) {
        result = handle_of(place);
    }
    return answer;
}

Long PosixRegistry::RegQueryValueExA(Long key, StringView name, Long& type, String* data,
                                     Long& size) {
    Place place;
    if (const Long answer = opened_place(key, place); answer != status::success) {
        return answer;
    }
    std::shared_ptr<const Key> tree;
    const Key* found = nullptr;
    if (const Long answer = found_key(place, tree, found); answer != status::success) {
        return answer == status::file_not_found ? status::key_deleted : answer;
    }
    const Value* value = registry::find_value(*found, passed_name(name));
    if (value == nullptr) {
        return status::file_not_found;
    }
    const std::string bytes = ansi_data(*value);
    const auto room = static_cast<std::size_t>(std::max(size, 0));
    type = value->type;
    size = wrap32(static_cast<std::int64_t>(bytes.size()));
    if (data == nullptr) {
        return status::success;
    }
    if (bytes.size() > room || bytes.size() > data->size()) {
        return status::more_data;
    }
    data->replace(0, bytes.size(), from_ansi(bytes));
    return status::success;
}

Long PosixRegistry::RegSetValueExA(Long key, StringView name, Long reserved, Long type,
                                   StringView data, Long size) {
    Place place;
    if (const Long answer = opened_place(key, place); answer != status::success) {
        return answer;
    }
    const String with_zero = String(data) + u'\0';
    if (reserved != 0 || size < 0 || static_cast<std::size_t>(size) > with_zero.size() ||
        !can_be_kept(passed_name(name), registry::longest_value_name)) {
        return status::invalid_parameter;
    }
    const Value value =
        value_of_ansi(name, type, to_ansi(with_zero.substr(0, static_cast<std::size_t>(size))));
    return file_of(place.root).change([&](Key& tree) {
        const Path path = full_path(place.root, place.path);
        if (!place.path.empty() && registry::find_key(tree, path) == nullptr) {
            return status::key_deleted;
        }
        registry::set_value(registry::made_key(tree, path), value);
        return status::success;
    });
}

Long PosixRegistry::RegCloseKey(Long key) {
    if (root_of(key) != nullptr) {
        return status::success;
    }
    const std::scoped_lock lock(handles_mutex_);
    const auto opened = opened_.find(key);
    if (opened == opened_.end()) {
        return status::invalid_handle;
    }
    if (--opened->second.count == 0) {
        drop(opened);
    }
    return status::success;
}

Long PosixRegistry::RegDeleteKeyA(Long key, StringView path) {
    Place place;
    if (const Long answer = locate(key, path, place); answer != status::success) {
        return answer;
    }
    if (place.path.empty()) {
        return status::access_denied;
    }
    return file_of(place.root).change([&](Key& tree) {
        const Path full = full_path(place.root, place.path);
        const Key* found = registry::find_key(tree, full);
        if (found == nullptr) {
            return status::file_not_found;
        }
        if (!found->keys.empty()) {
            return status::access_denied;
        }
        registry::erase_key(*registry::find_key(tree, std::span(full).first(full.size() - 1)),
                            full.back());
        return status::success;
    });
}

Long PosixRegistry::RegDeleteValueA(Long key, StringView name) {
    Place place;
    if (const Long answer = opened_place(key, place); answer != status::success) {
        return answer;
    }
    return file_of(place.root).change([&](Key& tree) {
        Key* found = registry::find_key(tree, full_path(place.root, place.path));
        if (found == nullptr) {
            return place.path.empty() ? status::file_not_found : status::key_deleted;
        }
        return registry::erase_value(*found, passed_name(name)) ? status::success
                                                                : status::file_not_found;
    });
}

// ---- Whole keys -----------------------------------------------------------------------------

Long PosixRegistry::export_key(Long key, StringView path, std::string& text) {
    Place place;
    std::shared_ptr<const Key> tree;
    const Key* found = nullptr;
    Long answer = locate(key, path, place);
    if (answer == status::success) {
        answer = found_key(place, tree, found);
    }
    if (answer == status::success) {
        text = registry::text_header();
        registry::write_key(text, joined(full_path(place.root, place.path)), *found);
    }
    return answer;
}

Long PosixRegistry::import_changes(const std::vector<Change>& changes) {
    const auto has_no_file = [](const Change& change) {
        return !handle_of_root(change.path.front()).has_value();
    };
    if (std::ranges::any_of(changes, has_no_file)) {
        return status::invalid_parameter;
    }
    for (const bool is_of_machine : {true, false}) {
        const auto is_meant = [&](const Change& change) {
            return root_of(*handle_of_root(change.path.front()))->is_of_machine == is_of_machine;
        };
        if (std::ranges::none_of(changes, is_meant)) {
            continue;
        }
        const Long root = is_of_machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
        const Long answer = file_of(root).change([&](Key& tree) {
            std::ranges::for_each(changes, [&](const Change& change) {
                if (is_meant(change)) {
                    registry::apply(tree, change);
                }
            });
            return status::success;
        });
        if (answer != status::success) {
            return answer;
        }
    }
    return status::success;
}

}  // namespace kvarta16::posix
