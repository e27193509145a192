// Keys and values as the registry holds them: a tree in memory, ordered by name without case.
#pragma once

#include <span>
#include <string>
#include <vector>

#include <kvarta16/platform/registry.h>

namespace kvarta16::posix::registry {

// What a name may have, as on the platform.
inline constexpr std::size_t longest_key_name = 255;      // characters
inline constexpr std::size_t longest_value_name = 16383;  // characters
inline constexpr std::size_t deepest_key = 512;           // names in a path, the root included

struct Value {
    String name;  // "" for the default value
    Long type = REG_SZ;
    std::string data;  // as it is stored; a text has two bytes a character, the low one first

    friend bool operator==(const Value&, const Value&) = default;
};

struct Key {
    String name;
    std::vector<Value> values;  // by name without case, no two alike
    std::vector<Key> keys;      // the same

    friend bool operator==(const Key&, const Key&) = default;
};

// The names that lead to a key, from below the key that the search begins at.
using Path = std::vector<String>;

// Whether the values of a type are texts.
[[nodiscard]] bool is_text_type(Long type) noexcept;

// A text as its data and back; the odd byte at the end of data that is no whole text is dropped.
[[nodiscard]] std::string data_of(StringView text);
[[nodiscard]] String text_of(std::string_view data);

// Below 0, 0 or above it, without case.
[[nodiscard]] int compare_names(StringView a, StringView b) noexcept;

// nullptr where there is none; an empty path is `key` itself.
[[nodiscard]] const Key* find_key(const Key& key, std::span<const String> path);
[[nodiscard]] Key* find_key(Key& key, std::span<const String> path);
[[nodiscard]] const Value* find_value(const Key& key, StringView name);

// The key at the path, made with those above it where they are missing.
Key& made_key(Key& key, std::span<const String> path);

// Puts a value; one that is there keeps the spelling of its name.
void set_value(Key& key, Value value);

// Whether there was one.
bool erase_value(Key& key, StringView name);

// Erases the sub-key of that name with all below it. Whether there was one.
bool erase_key(Key& key, StringView name);

}  // namespace kvarta16::posix::registry
