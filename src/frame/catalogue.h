// The catalogue: every class of the library with its identifiers and its members, gathered from
// the tables at the ends of the class headers. Late-bound calls, the listing of the tool, and the
// reference pages all come from it.
//
//   const ClassInfo* found = find_class(u"aLiczby");
//   Arguments arguments{Variant(u"12,5")};
//   invoke(*found->find(u"VarR2Str", MemberKind::Method), found->thread_instance(), arguments);
#pragma once

#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/export.h>

namespace kvarta16 {

// The type library that the public classes make up.
namespace type_library {
inline constexpr StringView name = u"KVARTALIBS";
inline constexpr Integer major_version = 1;
inline constexpr Integer minor_version = 1;
inline constexpr std::string_view library_id = "1537F93F-0C12-4BC6-8ADA-97638342E513";
inline constexpr Long locale_id = 0x409;
}  // namespace type_library

struct KVARTA16_EXPORT ClassInfo {
    ClassHeader header;
    std::span<const MemberInfo> members;     // in interface order; empty if not built
    const EventInterface* events = nullptr;  // nullptr for a class without events
    std::shared_ptr<void> (*create)() = nullptr;
    void* (*thread_instance)() = nullptr;  // nullptr but for a global class

    [[nodiscard]] bool is_built() const { return create != nullptr; }
    // The class's default interface bears its name with a leading underscore.
    [[nodiscard]] String interface_name() const { return u"_" + String(header.name); }
    // The member of that name and kind that is built, or nullptr.
    [[nodiscard]] const MemberInfo* find(StringView name, MemberKind kind) const;
};

// The twenty public classes in the order of the type library.
[[nodiscard]] KVARTA16_EXPORT std::span<const ClassInfo> public_classes();

// The classes that stand in no type library and have no identifiers. Hosts may offer a way in to
// them; they are created like a creatable class.
[[nodiscard]] KVARTA16_EXPORT std::span<const ClassInfo> private_classes();

// The public class of that name, or nullptr.
[[nodiscard]] KVARTA16_EXPORT const ClassInfo* find_class(StringView name);

// The value primitives, by the same kind of entries; their `self` is not looked at.
[[nodiscard]] KVARTA16_EXPORT std::span<const MemberInfo> value_primitives();

// An object of the library in the hands of a late-bound caller.
class KVARTA16_EXPORT ClassObject final : public Object {
  public:
    explicit ClassObject(const ClassInfo& info) : info_(&info), self_(info.create()) {}

    [[nodiscard]] const ClassInfo& info() const { return *info_; }
    [[nodiscard]] void* self() const { return self_.get(); }

  private:
    const ClassInfo* info_;
    std::shared_ptr<void> self_;
};

}  // namespace kvarta16
