// The registry as text: what is read is written so that it reads the same again, in both encodings;
// what is written does not change any more; and the tree keeps its order. An input is such a text;
// one without the first line gets it.
#include <kvarta16/platform/posix/registry/registry_text.h>

#include "fuzz_support.h"

namespace kvarta16 {
namespace {

using fuzz::expect;
using fuzz::expect_same;
using fuzz::show;
using namespace posix::registry;

std::optional<Key> tree_of(std::string_view bytes) {
    try {
        return read_tree(bytes);
    } catch (const TextError& error) {
        const auto lines = static_cast<std::size_t>(std::ranges::count(bytes, '\n')) + 1;
        expect(error.line() >= 1 && error.line() <= lines, "An error on a line of", show(bytes));
        return std::nullopt;
    }
}

template <class Entries>
void check_order(const Entries& entries, const std::string& shown) {
    for (std::size_t i = 1; i < entries.size(); ++i) {
        expect(compare_names(entries[i - 1].name, entries[i].name) < 0,
               "Names in their order, no two alike, in", shown);
    }
}

void check_key(const Key& key, std::size_t depth, const std::string& shown) {
    check_order(key.keys, shown);
    check_order(key.values, shown);
    expect(depth <= deepest_key, "No key too deep in", shown);
    for (const Key& below : key.keys) {
        expect(!below.name.empty() && below.name.size() <= longest_key_name, "The name of a key in",
               shown);
        expect(depth > 0 || root_name(below.name) == below.name, "A root by its full name in",
               shown);
        check_key(below, depth + 1, shown);
    }
    for (const Value& value : key.values) {
        expect(depth > 0 && value.name.size() <= longest_value_name, "The name of a value in",
               shown);
        const Value* const found = find_value(key, upper_case(value.name));
        expect(found == &value, "A value found in any case in", shown);
    }
}

// The changes one by one, as the text asks for them.
Key tree_by_changes(std::string_view bytes) {
    Key tree;
    for (const Change& change : read_text(bytes)) {
        const std::span<const String> path(change.path);
        apply(tree, change);
        const Key* const key = find_key(tree, path);
        const Value* const value = key == nullptr ? nullptr : find_value(*key, change.value.name);
        const std::string shown = show(bytes);
        switch (change.kind) {
            case Change::Kind::MakeKey:
                expect(key != nullptr, "A key that has been made by", shown);
                break;
            case Change::Kind::DeleteKey:
                expect(key == nullptr, "A key that has been deleted by", shown);
                break;
            case Change::Kind::SetValue:
                expect(value != nullptr && value->data == change.value.data &&
                           value->type == change.value.type,
                       "A value that has been set by", shown);
                break;
            case Change::Kind::DeleteValue:
                expect(value == nullptr, "A value that has been deleted by", shown);
                break;
        }
    }
    return tree;
}

void check(std::string_view bytes) {
    const std::optional<Key> tree = tree_of(bytes);
    if (!tree) {
        return;
    }
    const std::string shown = show(bytes);
    check_key(*tree, 0, shown);
    expect(tree_by_changes(bytes) == *tree, "The tree by its changes of", shown);
    const std::string written = write_tree(*tree);
    const std::optional<Key> again = tree_of(written);
    expect(again.has_value(), "What is written, " + show(written) + ", reads again of", shown);
    expect(*again == *tree, "The tree of what is written, " + show(written) + ", of", shown);
    expect_same("What is written of what was written of", shown, write_tree(*again), written);
    const std::optional<Key> wide = tree_of(as_utf16(written));
    expect(wide && *wide == *tree, "The tree of what is written in UTF-16 of", shown);
}

}  // namespace
}  // namespace kvarta16

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kvarta16;
    const std::string bytes(fuzz::Input(data, size).rest());
    check(bytes);
    check(posix::registry::text_header() + bytes);
    return 0;
}
