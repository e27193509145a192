#include <utility>

#include <support/fake_registry.h>

#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>

namespace kvarta16::testing_support {

bool operator<(const FakeRegistry::Place& a, const FakeRegistry::Place& b) {
    return std::pair(a.root, upper_case(a.path)) < std::pair(b.root, upper_case(b.path));
}

FakeRegistry::FakeRegistry() {
    for (const Long root : {HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        keys[{root, u""}];
    }
}

FakeRegistry::~FakeRegistry() = default;

Long FakeRegistry::RegOpenKeyA(Long key, StringView path, Long& result) {
    Place place;
    Long status = prepared("RegOpenKeyA").value_or(located(key, path, place));
    if (status == registry_status::success && !keys.contains(place)) {
        status = registry_status::file_not_found;
    }
    if (status == registry_status::success) {
        result = opened(place);
    }
    return told("RegOpenKeyA(" + name_of(key) + ", " + shown(path) + ")", status);
}

Long FakeRegistry::RegCreateKeyA(Long key, StringView path, Long& result) {
    Place place;
    const Long status = prepared("RegCreateKeyA").value_or(located(key, path, place));
    if (status == registry_status::success) {
        keys[place];
        result = opened(place);
    }
    return told("RegCreateKeyA(" + name_of(key) + ", " + shown(path) + ")", status);
}

Long FakeRegistry::RegQueryValueExA(Long key, StringView name, Long& type, String* data,
                                    Long& size) {
    const std::string call = "RegQueryValueExA(" + name_of(key) + ", " + shown(name) + ", " +
                             (data == nullptr ? "no buffer" : shown(*data)) + ", " +
                             std::to_string(size) + ")";
    const std::optional<Long> status = prepared("RegQueryValueExA");
    return told(call, status ? *status : query(key, name, type, data, size));
}

Long FakeRegistry::RegSetValueExA(Long key, StringView name, Long reserved, Long type,
                                  StringView data, Long size) {
    Long status = prepared("RegSetValueExA").value_or(status_of_handle(key));
    if (status == registry_status::success) {
        keys[handles.at(key)][String(name)] = {type, String(data.substr(0, std::size_t(size)))};
    }
    return told("RegSetValueExA(" + name_of(key) + ", " + shown(name) + ", " +
                    std::to_string(reserved) + ", " + std::to_string(type) + ", " + shown(data) +
                    ", " + std::to_string(size) + ")",
                status);
}

Long FakeRegistry::RegCloseKey(Long key) {
    const Long status = prepared("RegCloseKey").value_or(status_of_handle(key));
    if (status == registry_status::success) {
        handles.erase(key);
    }
    return told("RegCloseKey(" + name_of(key) + ")", status);
}

Long FakeRegistry::RegDeleteKeyA(Long key, StringView path) {
    Place place;
    Long status = prepared("RegDeleteKeyA").value_or(located(key, path, place));
    if (status == registry_status::success && keys.erase(place) == 0) {
        status = registry_status::file_not_found;
    }
    return told("RegDeleteKeyA(" + name_of(key) + ", " + shown(path) + ")", status);
}

Long FakeRegistry::RegDeleteValueA(Long key, StringView name) {
    Long status = prepared("RegDeleteValueA").value_or(status_of_handle(key));
    if (status == registry_status::success && keys[handles.at(key)].erase(String(name)) == 0) {
        status = registry_status::file_not_found;
    }
    return told("RegDeleteValueA(" + name_of(key) + ", " + shown(name) + ")", status);
}

std::optional<Long> FakeRegistry::prepared(const std::string& operation) {
    std::deque<Long>& queue = answers[operation];
    if (queue.empty()) {
        return std::nullopt;
    }
    const Long status = queue.front();
    queue.pop_front();
    return status;
}

Long FakeRegistry::told(std::string call, Long status) {
    calls.push_back(std::move(call) + " = " + std::to_string(status));
    return status;
}

std::string FakeRegistry::shown(StringView text) {
    return "'" + to_utf8(text) + "'";
}

std::string FakeRegistry::name_of(Long key) {
    switch (key) {
        case HKEY_CLASSES_ROOT:
            return "HKCR";
        case HKEY_CURRENT_USER:
            return "HKCU";
        case HKEY_LOCAL_MACHINE:
            return "HKLM";
        default:
            return std::to_string(key);
    }
}

bool FakeRegistry::is_root(Long key) {
    return key == HKEY_CLASSES_ROOT || key == HKEY_CURRENT_USER || key == HKEY_LOCAL_MACHINE;
}

Long FakeRegistry::status_of_handle(Long key) const {
    return handles.contains(key) ? registry_status::success : registry_status::invalid_handle;
}

Long FakeRegistry::located(Long key, StringView path, Place& place) const {
    if (!is_root(key)) {
        return registry_status::invalid_handle;
    }
    if (path.starts_with(u'\\')) {
        return registry_status::bad_path_name;
    }
    place = {key, String(path)};
    return registry_status::success;
}

Long FakeRegistry::opened(const Place& place) {
    handles.emplace(++last_handle_, place);
    return last_handle_;
}

Long FakeRegistry::query(Long key, StringView name, Long& type, String* data, Long& size) {
    if (!handles.contains(key)) {
        return registry_status::invalid_handle;
    }
    const Values& values = keys[handles.at(key)];
    const auto value = values.find(String(name));
    if (value == values.end()) {
        return registry_status::file_not_found;
    }
    const Long room = size;
    type = value->second.type;
    size = length(value->second.data);
    if (data == nullptr) {
        return registry_status::success;
    }
    if (size > room || size > length(*data)) {
        return registry_status::more_data;
    }
    data->replace(0, value->second.data.size(), value->second.data);
    return registry_status::success;
}

}  // namespace kvarta16::testing_support
