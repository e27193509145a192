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

#include <functional>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/late_bound.h>

namespace kvarta16 {

// A global class has an instance per thread, made at its first use, whose members callers know by
// their bare names. A creatable one exists when a caller creates it. A private one is in no type
// library.
enum class Instancing : std::uint8_t { Global, Creatable, Private };
[[nodiscard]] KVARTA16_EXPORT StringView name_of(Instancing instancing) noexcept;

struct ClassHeader {
    StringView name;
    Instancing instancing = Instancing::Creatable;
    std::string_view interface_id;
    std::string_view class_id;
};

// What a late-bound host does at an event of an object. The arguments refer to the variables that
// the object has raised it with: assigning to one changes what the object goes on with.
using EventHandler = std::function<void(Arguments& arguments)>;

// The outgoing interface of a class that raises events.
struct EventInfo {
    StringView name;
    std::size_t parameter_count = 0;
    std::array<Parameter, 4> parameter_array{};
    // Has `handler` called at each such event of the object, in the place of the handler before; an
    // empty one ends that.
    void (*connect)(void* self, EventHandler handler) = nullptr;

    [[nodiscard]] constexpr std::span<const Parameter> parameters() const {
        return {parameter_array.data(), parameter_count};
    }
};
struct EventInterface {
    StringView name;
    std::span<const EventInfo> events;
};

namespace detail {

// The handler that a class keeps for an event, as a member of its objects.
template <class Pointer>
struct EventSignature;
template <class C, class... P>
struct EventSignature<std::function<void(P...)> C::*> {
    static constexpr std::size_t count = sizeof...(P);
    static constexpr std::array<TypeName, count> types{type_name_of<std::remove_cvref_t<P>>()...};

    template <std::function<void(P...)> C::*member>
    static void connect(void* self, EventHandler handler) {
        std::function<void(P...)>& target = static_cast<C*>(self)->*member;
        if (!handler) {
            target = nullptr;
            return;
        }
        target = [handler = std::move(handler)](P... argument) {
            Arguments arguments{Variant::reference(argument)...};
            handler(arguments);
        };
    }
};

}  // namespace detail

// An event that a class raises through a handler of its objects, with the names and passing of its
// parameters in order:
//
//   event<&clsFTP::FileTransferProgress>(u"FileTransferProgress", by_reference(u"lCurrentBytes"),
//                                        by_reference(u"lTotalBytes"))
template <auto member, std::same_as<Parameter>... N>
[[nodiscard]] constexpr EventInfo event(StringView name, N... parameters) {
    using S = detail::EventSignature<decltype(member)>;
    static_assert(S::count == sizeof...(N), "one name for each parameter");
    EventInfo info;
    info.name = name;
    info.parameter_count = S::count;
    info.parameter_array = {parameters...};
    for (std::size_t i = 0; i < S::count; ++i) {
        info.parameter_array[i].type = S::types[i];
    }
    info.connect = &S::template connect<member>;
    return info;
}

template <class C>
struct ClassTable;

// The calling thread's own instance of a global class; made at first use, dropped when the
// thread ends.
template <class C>
requires(ClassTable<C>::header.instancing == Instancing::Global)
    [[nodiscard]] KVARTA16_EXPORT C& instance() {
    thread_local C object;
    return object;
}

}  // namespace kvarta16
