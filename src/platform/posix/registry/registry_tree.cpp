#include <algorithm>

#include <kvarta16/frame/text.h>
#include <kvarta16/platform/posix/registry/registry_tree.h>

namespace kvarta16::posix::registry {
namespace {

// Where an entry of that name stands or would stand.
template <class Entries>
auto place_in(Entries& entries, StringView name) {
    return std::ranges::lower_bound(
        entries, name, [](StringView a, StringView b) { return compare_names(a, b) < 0; },
        [](const auto& entry) { return StringView(entry.name); });
}

template <class Entries>
auto find_in(Entries& entries, StringView name) -> decltype(entries.data()) {
    const auto place = place_in(entries, name);
    return place != entries.end() && compare_names(place->name, name) == 0 ? &*place : nullptr;
}

template <class Entries>
bool erase_in(Entries& entries, StringView name) {
    const auto place = place_in(entries, name);
    if (place == entries.end() || compare_names(place->name, name) != 0) {
        return false;
    }
    entries.erase(place);
    return true;
}

template <class K>
K* find_from(K& key, std::span<const String> path) {
    K* found = &key;
    for (const String& name : path) {
        found = find_in(found->keys, name);
        if (found == nullptr) {
            return nullptr;
        }
    }
    return found;
}

constexpr unsigned byte_bits = 8;

}  // namespace

bool is_text_type(Long type) noexcept {
    return type == REG_SZ || type == REG_EXPAND_SZ || type == REG_MULTI_SZ;
}

std::string data_of(StringView text) {
    std::string data;
    data.reserve(text.size() * 2);
    for (const char16_t unit : text) {
        data += static_cast<char>(static_cast<unsigned char>(unit & 0xFF));
        data += static_cast<char>(static_cast<unsigned char>(unit >> byte_bits));
    }
    return data;
}

String text_of(std::string_view data) {
    String text;
    text.reserve(data.size() / 2);
    for (std::size_t i = 0; i + 1 < data.size(); i += 2) {
        const unsigned low = static_cast<unsigned char>(data[i]);
        const unsigned high = static_cast<unsigned char>(data[i + 1]);
        text += static_cast<char16_t>(low | (high << byte_bits));
    }
    return text;
}

int compare_names(StringView a, StringView b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = int{upper_case(a[i])} - int{upper_case(b[i])};
        if (difference != 0) {
            return difference;
        }
    }
    return a.size() < b.size() ? -1 : static_cast<int>(a.size() > b.size());
}

const Key* find_key(const Key& key, std::span<const String> path) {
    return find_from(key, path);
}

Key* find_key(Key& key, std::span<const String> path) {
    return find_from(key, path);
}

const Value* find_value(const Key& key, StringView name) {
    return find_in(key.values, name);
}

Key& made_key(Key& key, std::span<const String> path) {
    Key* made = &key;
    for (const String& name : path) {
        Key* next = find_in(made->keys, name);
        if (next == nullptr) {
            next = &*made->keys.insert(place_in(made->keys, name), Key{name, {}, {}});
        }
        made = next;
    }
    return *made;
}

void set_value(Key& key, Value value) {
    if (Value* present = find_in(key.values, value.name)) {
        present->type = value.type;
        present->data = std::move(value.data);
    } else {
        key.values.insert(place_in(key.values, value.name), std::move(value));
    }
}

bool erase_value(Key& key, StringView name) {
    return erase_in(key.values, name);
}

bool erase_key(Key& key, StringView name) {
    return erase_in(key.keys, name);
}

}  // namespace kvarta16::posix::registry
