// The settings of the suite's programs in the registry: read, put and delete one, write and read
// whole keys as text.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>

#include <kvarta16/frame/ansi.h>
#include <kvarta16/frame/text.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/posix/registry/posix_registry.h>

#include "commands.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

namespace status = registry_status;
using posix::registry::Change;

struct StatusWords {
    Long status = 0;
    StringView words;
};
constexpr StatusWords status_words[] = {
    {status::file_not_found, u"there is no such key or value"},
    {status::access_denied, u"no right to do this"},
    {status::write_fault, u"the registry cannot be written"},
    {status::read_fault, u"the registry cannot be read"},
    {status::invalid_parameter, u"a name that the registry cannot keep"},
    {status::bad_path_name, u"a key does not begin with a backslash"},
    {status::corrupt, u"the file of the registry is damaged"},
};

void require(Long answer) {
    if (answer == status::success) {
        return;
    }
    const auto* const found = std::ranges::find(status_words, answer, &StatusWords::status);
    throw Failure(answer,
                  String(found == std::end(status_words) ? StringView(u"refused") : found->words));
}

struct KeyName {
    Long root = 0;
    String path;
};

KeyName key_name(const std::string& text) {
    const String name = from_utf8(text);
    const std::size_t end = std::min(name.find(u'\\'), name.size());
    const StringView full_name = posix::registry::root_name(StringView(name).substr(0, end));
    const std::optional<Long> root = posix::handle_of_root(full_name);
    if (!root) {
        throw UsageError(R"(a key begins with HKCU, HKLM or HKCR, as HKCU\Software\ZEVO; ")" +
                         text + R"(" does not)");
    }
    return {*root, name.substr(std::min(end + 1, name.size()))};
}

// The registry's calls would put "?" in the place of what the code page has not got.
String text_of_code_page(const std::string& text) {
    String wide = from_utf8(text);
    if (from_ansi(to_ansi(wide)) != wide) {
        throw UsageError("\"" + text + "\" holds characters that are not in Windows-1250");
    }
    return wide;
}

std::size_t count_of(const std::vector<Change>& changes, Change::Kind kind) {
    return static_cast<std::size_t>(std::ranges::count(changes, kind, &Change::kind));
}

std::string bytes_of_file(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file) {
        throw std::runtime_error(name + " cannot be read");
    }
    return bytes;
}

std::vector<Change> changes_of_file(const std::string& name) {
    std::vector<Change> changes;
    try {
        changes = posix::registry::read_text(bytes_of_file(name));
    } catch (const posix::registry::TextError& error) {
        throw std::runtime_error(name + ", " + error.what() + "; nothing was imported");
    }
    const auto has_no_file = [](const Change& change) {
        return !posix::handle_of_root(change.path.front());
    };
    const auto wrong = std::ranges::find_if(changes, has_no_file);
    if (wrong != changes.end()) {
        throw std::runtime_error(name + ", line " + std::to_string(wrong->line) + ": " +
                                 to_utf8(wrong->path.front()) + " cannot be imported; nothing was");
    }
    return changes;
}

}  // namespace

int registry_get_command(const std::string& key, const std::string& name) {
    const KeyName place = key_name(key);
    posix::PosixRegistry store;
    Long opened = 0;
    require(store.RegOpenKeyA(place.root, place.path, opened));
    Long type = 0;
    Long size = 0;
    require(store.RegQueryValueExA(opened, text_of_code_page(name), type, nullptr, size));
    if (type != REG_SZ) {
        throw std::runtime_error("the value is of type " + std::to_string(type) +
                                 " and no text; see kvarta16 registry export");
    }
    String text = blanks(size);
    require(store.RegQueryValueExA(opened, text_of_code_page(name), type, &text, size));
    std::cout << to_utf8(text.substr(0, text.find(u'\0'))) << '\n';
    return 0;
}

int registry_set_command(const std::string& key, const std::string& name, const std::string& text) {
    const KeyName place = key_name(key);
    static_cast<void>(text_of_code_page(key));
    const String value_name = text_of_code_page(name);
    const String data = text_of_code_page(text);
    posix::PosixRegistry store;
    Long opened = 0;
    require(store.RegCreateKeyA(place.root, place.path, opened));
    require(store.RegSetValueExA(opened, value_name, 0, REG_SZ, data, length(data)));
    return 0;
}

int registry_delete_command(const std::string& key, const std::optional<std::string>& name) {
    const KeyName place = key_name(key);
    posix::PosixRegistry store;
    Long opened = 0;
    require(store.RegOpenKeyA(place.root, place.path, opened));
    if (name) {
        require(store.RegDeleteValueA(opened, text_of_code_page(*name)));
        return 0;
    }
    const Long answer = store.RegDeleteKeyA(place.root, place.path);
    if (answer == status::access_denied) {
        throw Failure(answer, u"the key has sub-keys, which go first, or there is no right to it");
    }
    require(answer);
    return 0;
}

int registry_export_command(const std::string& key, bool as_utf16) {
    const KeyName place = key_name(key);
    posix::PosixRegistry store;
    std::string text;
    require(store.export_key(place.root, place.path, text));
    std::cout << (as_utf16 ? posix::registry::as_utf16(text) : text);
    return 0;
}

int registry_import_command(const std::string& file) {
    const std::vector<Change> changes = changes_of_file(file);
    posix::PosixRegistry store;
    require(store.import_changes(changes));
    using enum Change::Kind;
    std::cout << file << ": " << count_of(changes, SetValue) << " values set, "
              << count_of(changes, DeleteValue) << " deleted, " << count_of(changes, DeleteKey)
              << " keys deleted\n";
    return 0;
}

}  // namespace kvarta16::tool
