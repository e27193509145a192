// Late-bound calls: how a member that is known by a table entry is called with Variants.
//
// A table entry (MemberInfo) is made from a member pointer and the names of its parameters; the
// types are deduced and never written a second time:
//
//   method<&aChar::Str2Str>(u"Str2Str", by_value(u"ds"), optional(by_reference(u"leng")))
//   property_get<&aChar::c_aaa>(u"c_aaa")
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/value.h>

namespace kvarta16 {

// ---- What a table entry tells ---------------------------------------------------------------

enum class MemberKind : std::uint8_t { Method, PropertyGet, PropertyLet };
enum class Passing : std::uint8_t { ByValue, ByReference };
// GCC takes an enumerator of a scoped enum for a shadow of the type of its name.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
enum class TypeName : std::uint8_t {
    None,  // a method without a result
    Variant,
    Byte,
    Integer,
    Long,
    Single,
    Double,
    Currency,
    Date,
    String,
    Boolean,
    Object,
};
#pragma GCC diagnostic pop
[[nodiscard]] KVARTA16_EXPORT StringView name_of(TypeName type) noexcept;

// The default of an optional parameter: the zero value of its type, or what the entry says.
using DefaultValue = std::variant<std::monostate, Long, StringView>;

struct Parameter {
    StringView name;
    Passing passing = Passing::ByValue;
    bool is_optional = false;
    DefaultValue default_value;
    TypeName type = TypeName::Variant;  // filled in from the member pointer
};

[[nodiscard]] constexpr Parameter by_value(StringView name) {
    return {name, Passing::ByValue, false, {}, {}};
}
[[nodiscard]] constexpr Parameter by_reference(StringView name) {
    return {name, Passing::ByReference, false, {}, {}};
}
[[nodiscard]] constexpr Parameter optional(Parameter parameter, DefaultValue default_value = {}) {
    parameter.is_optional = true;
    parameter.default_value = default_value;
    return parameter;
}

using Arguments = std::vector<Variant>;
inline constexpr std::size_t most_parameters = 10;

struct MemberInfo {
    StringView name;
    MemberKind kind = MemberKind::Method;
    TypeName result = TypeName::None;
    std::size_t parameter_count = 0;
    std::array<Parameter, most_parameters> parameter_array{};
    // Coerces the arguments, calls, writes the arguments back. nullptr for a member that has its
    // place in the interface order and is not built.
    Variant (*call)(void* self, Arguments& arguments) = nullptr;

    [[nodiscard]] constexpr std::span<const Parameter> parameters() const {
        return {parameter_array.data(), parameter_count};
    }
    [[nodiscard]] constexpr bool is_built() const { return call != nullptr; }
};

// ---- Calling --------------------------------------------------------------------------------

// A call whose number of arguments is not the member's: the caller's fault, and no Failure.
class KVARTA16_EXPORT WrongArgumentCount : public std::exception {
  public:
    [[nodiscard]] const char* what() const noexcept override { return "wrong number of arguments"; }
};

// Calls a member that is built. Optional arguments left out at the end, or given as
// Variant::missing(), are put in with their defaults. All arguments are coerced to the types of
// their parameters before the member starts, so that their failure reaches the caller whatever
// the member's discipline; `arguments` is then as it was but for the defaults. After the call, also
// after one that fails, it holds every argument as it stands, in the declared type; a reference
// stays one, and its variable has been assigned if the member writes the argument.
// Throws WrongArgumentCount, Failure.
KVARTA16_EXPORT Variant invoke(const MemberInfo& member, void* self, Arguments& arguments);

// ---- Making entries -------------------------------------------------------------------------

namespace detail {

template <class T>
inline constexpr bool is_object_pointer = false;
template <class T>
inline constexpr bool is_object_pointer<std::shared_ptr<T>> = std::derived_from<T, Object>;

template <class T>
consteval TypeName type_name_of() {
    if constexpr (std::is_void_v<T>) {
        return TypeName::None;
    } else if constexpr (std::is_same_v<T, Variant>) {
        return TypeName::Variant;
    } else if constexpr (std::is_same_v<T, Byte>) {
        return TypeName::Byte;
    } else if constexpr (std::is_same_v<T, Integer>) {
        return TypeName::Integer;
    } else if constexpr (std::is_same_v<T, Long>) {
        return TypeName::Long;
    } else if constexpr (std::is_same_v<T, Single>) {
        return TypeName::Single;
    } else if constexpr (std::is_same_v<T, Double>) {
        return TypeName::Double;
    } else if constexpr (std::is_same_v<T, Currency>) {
        return TypeName::Currency;
    } else if constexpr (std::is_same_v<T, Date>) {
        return TypeName::Date;
    } else if constexpr (std::is_same_v<T, String> || std::is_same_v<T, StringView>) {
        return TypeName::String;
    } else if constexpr (std::is_same_v<T, Boolean>) {
        return TypeName::Boolean;
    } else {
        static_assert(is_object_pointer<T>, "a type that crosses no interface");
        return TypeName::Object;
    }
}

// The argument as an object of the parameter's type. Fails: 13 on anything else, 94 on Null.
KVARTA16_EXPORT ObjectPointer object_argument(const Variant& argument);

// One argument on its way through a call: coerced before it, written back after it.
template <class P>
class Passed {
    using Type = std::conditional_t<std::is_same_v<std::remove_cvref_t<P>, StringView>, String,
                                    std::remove_cvref_t<P>>;
    static constexpr bool is_written =
        std::is_lvalue_reference_v<P> && !std::is_const_v<std::remove_reference_t<P>>;

  public:
    explicit Passed(const Variant& argument) : value_(coerced(argument)) {}

    decltype(auto) get() {
        if constexpr (is_written) {
            return static_cast<Type&>(value_);
        } else {
            return static_cast<const Type&>(value_);
        }
    }

    void write_back(Variant& argument) {
        if (!argument.is_reference()) {
            argument = Variant(value_);
        } else if constexpr (is_written) {
            argument.assign(Variant(value_));
        }
    }

  private:
    static Type coerced(const Variant& argument) {
        if constexpr (std::is_same_v<Type, Variant>) {
            return argument.is_reference() ? argument.value() : argument;
        } else if constexpr (std::is_same_v<Type, Byte>) {
            return to_byte(argument);
        } else if constexpr (std::is_same_v<Type, Integer>) {
            return ToInteger16(argument);
        } else if constexpr (std::is_same_v<Type, Long>) {
            return ToLong(argument);
        } else if constexpr (std::is_same_v<Type, Single>) {
            return to_single(argument);
        } else if constexpr (std::is_same_v<Type, Double>) {
            return to_double(argument);
        } else if constexpr (std::is_same_v<Type, Currency>) {
            return ToCurrency(argument);
        } else if constexpr (std::is_same_v<Type, Date>) {
            return ToDate(argument);
        } else if constexpr (std::is_same_v<Type, String>) {
            return ToText(argument);
        } else if constexpr (std::is_same_v<Type, Boolean>) {
            return to_boolean(argument);
        } else {
            const ObjectPointer object = object_argument(argument);
            Type wanted = std::dynamic_pointer_cast<typename Type::element_type>(object);
            if (object != nullptr && wanted == nullptr) {
                fail(error::type_mismatch);
            }
            return wanted;
        }
    }

    Type value_;
};

// Writes one argument back. A variable of the caller that refuses its value keeps none of the
// others from theirs: the first refusal is kept.
template <class P>
void write_back(Passed<P>& passed, Variant& argument, std::optional<Failure>& refusal) {
    try {
        passed.write_back(argument);
    } catch (const Failure& failure) {
        if (!refusal) {
            refusal = failure;
        }
    }
}

// Calls `target` with the arguments, all of them coerced first and written back on every way out.
// The target's own failure goes before that of a variable that refuses its value.
template <class Result, class... P, class Target, std::size_t... I>
Variant call_with(Target&& target, Arguments& arguments, std::index_sequence<I...>) {
    // Braces, so that the arguments are coerced from the first to the last.
    std::tuple<Passed<P>...> passed{Passed<P>(arguments[I])...};
    std::optional<Failure> refusal;
    const auto write_all_back = [&] {
        (write_back(std::get<I>(passed), arguments[I], refusal), ...);
    };
    Variant result;
    try {
        if constexpr (std::is_void_v<Result>) {
            target(std::get<I>(passed).get()...);
        } else {
            result = Variant(std::remove_cvref_t<Result>(target(std::get<I>(passed).get()...)));
        }
    } catch (const Failure&) {
        write_all_back();
        throw;
    }
    write_all_back();
    if (refusal) {
        throw Failure(*refusal);
    }
    return result;
}

// What a member pointer, or a plain function, is made of.
template <class Pointer>
struct Signature;
template <class C, class R, class... P>
struct Signature<R (C::*)(P...)> {
    using Class = C;
    using Result = R;
    using Types = std::tuple<P...>;
};
template <class C, class R, class... P>
struct Signature<R (C::*)(P...) const> : Signature<R (C::*)(P...)> {};
template <class C, class R>
struct Signature<R C::*> {
    using Class = C;
    using Result = R;
    using Types = std::tuple<>;
};
template <class R, class... P>
struct Signature<R (*)(P...)> {
    using Class = void;
    using Result = R;
    using Types = std::tuple<P...>;
};

template <auto member, class... P>
Variant call_member(void* self, Arguments& arguments) {
    using S = Signature<decltype(member)>;
    const auto target = [self]<class... A>(A&&... argument) -> typename S::Result {
        if constexpr (std::is_void_v<typename S::Class>) {
            static_cast<void>(self);
            return member(std::forward<A>(argument)...);
        } else {
            return (static_cast<typename S::Class*>(self)->*member)(std::forward<A>(argument)...);
        }
    };
    return call_with<typename S::Result, P...>(target, arguments, std::index_sequence_for<P...>{});
}

template <auto member, class... P>
constexpr MemberInfo method_entry(StringView name, std::span<const Parameter> parameters,
                                  std::tuple<P...>*) {
    using S = Signature<decltype(member)>;
    static_assert(sizeof...(P) <= most_parameters);
    MemberInfo info;
    info.name = name;
    info.result = type_name_of<std::remove_cvref_t<typename S::Result>>();
    info.parameter_count = sizeof...(P);
    const std::array<TypeName, sizeof...(P)> types{type_name_of<std::remove_cvref_t<P>>()...};
    for (std::size_t i = 0; i < sizeof...(P); ++i) {
        info.parameter_array[i] = parameters[i];
        info.parameter_array[i].type = types[i];
    }
    info.call = &call_member<member, P...>;
    return info;
}

}  // namespace detail

// A method, or a plain function, with the names and passing of its parameters in order.
template <auto member, std::same_as<Parameter>... N>
[[nodiscard]] constexpr MemberInfo method(StringView name, N... parameters) {
    using Types = typename detail::Signature<decltype(member)>::Types;
    static_assert(std::tuple_size_v<Types> == sizeof...(N), "one name for each parameter");
    const std::array<Parameter, sizeof...(N)> list{parameters...};
    return detail::method_entry<member>(name, list, static_cast<Types*>(nullptr));
}

// The reading of a property that is a data member.
template <auto member>
[[nodiscard]] constexpr MemberInfo property_get(StringView name) {
    using S = detail::Signature<decltype(member)>;
    MemberInfo info;
    info.name = name;
    info.kind = MemberKind::PropertyGet;
    info.result = detail::type_name_of<typename S::Result>();
    info.call = [](void* self, Arguments&) {
        return Variant(static_cast<typename S::Class*>(self)->*member);
    };
    return info;
}

// The writing of the same: one argument, by value.
template <auto member>
[[nodiscard]] constexpr MemberInfo property_let(StringView name) {
    using S = detail::Signature<decltype(member)>;
    using Value = typename S::Result;
    MemberInfo info;
    info.name = name;
    info.kind = MemberKind::PropertyLet;
    info.parameter_count = 1;
    info.parameter_array[0] = by_value(u"value");
    info.parameter_array[0].type = detail::type_name_of<Value>();
    info.call = [](void* self, Arguments& arguments) {
        const auto put = [self](const Value& value) {
            static_cast<typename S::Class*>(self)->*member = value;
        };
        return detail::call_with<void, const Value&>(put, arguments, std::index_sequence<0>{});
    };
    return info;
}

// A member that has its place in the interface order and is not built yet.
[[nodiscard]] constexpr MemberInfo not_built(StringView name) {
    MemberInfo info;
    info.name = name;
    return info;
}

}  // namespace kvarta16
