// From the names that a caller uses to the members that they mean, for `rpc` and `call` alike.
#pragma once

#include <kvarta16/frame/catalogue.h>

namespace kvarta16::tool {

// The class that a caller may name: a public one, or a private one that the tool offers a way in
// to. nullptr if there is none.
[[nodiscard]] const ClassInfo* find_offered_class(StringView name);

// The built member that a class offers under a name: a method, a property to be read, or with a
// "=" behind the name a property to be written. nullptr if there is none.
[[nodiscard]] const MemberInfo* find_called(const ClassInfo& info, StringView name);

// The entry of that name, nullptr if there is none.
[[nodiscard]] const MemberInfo* find_entry(std::span<const MemberInfo> entries, StringView name);

// What the members of a built class are called on: the thread's own instance of a global class, a
// new object of any other, which lives as long as this.
struct Receiver {
    void* self = nullptr;
    std::shared_ptr<void> object;
};
[[nodiscard]] Receiver receiver_of(const ClassInfo& info);

}  // namespace kvarta16::tool
