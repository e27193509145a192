// What the table at the end of a class's header is made of. Each public class specialises
// ClassTable there:
//
//   template <>
//   struct ClassTable<Class3> {
//       static constexpr ClassHeader header{u"Class3", Instancing::Global,
//                                           "28FB1BA7-...", "FDF89AC9-..."};
//       static constexpr auto members = std::to_array<MemberInfo>({
//           method<&Class3::Myslnik_Usun>(u"Myslnik_Usun", by_reference(u"s")),
//           method<&Class3::Spacje_Usun>(u"Spacje_Usun", by_reference(u"s")),
//       });
//   };
//
// The members stand in interface order, which is part of the binary contract; reading and writing
// of a property are entries of their own.
#pragma once

#include <kvarta16/frame/late_bound.h>

namespace kvarta16 {

// A global class has an instance per thread, made at its first use, whose members callers know by
// their bare names. A creatable one exists when a caller creates it. A private one is in no type
// library.
enum class Instancing : std::uint8_t { Global, Creatable, Private };
[[nodiscard]] StringView name_of(Instancing instancing) noexcept;

struct ClassHeader {
    StringView name;
    Instancing instancing = Instancing::Creatable;
    std::string_view interface_id;
    std::string_view class_id;
};

// The outgoing interface of a class that raises events.
struct EventInfo {
    StringView name;
    std::size_t parameter_count = 0;
    std::array<Parameter, 4> parameter_array{};

    [[nodiscard]] constexpr std::span<const Parameter> parameters() const {
        return {parameter_array.data(), parameter_count};
    }
};
struct EventInterface {
    StringView name;
    std::span<const EventInfo> events;
};

template <class C>
struct ClassTable;

// The calling thread's own instance of a global class; made at first use, dropped when the
// thread ends.
template <class C>
requires(ClassTable<C>::header.instancing == Instancing::Global) [[nodiscard]] C& instance() {
    thread_local C object;
    return object;
}

}  // namespace kvarta16
