#include <kvarta16/frame/class_table.h>
#include <kvarta16/frame/late_bound.h>

namespace kvarta16 {
namespace {

// The value 0, or another whole number, in a type.
Variant number_of_type(TypeName type, Long number) {
    switch (type) {
        case TypeName::Byte:
            return static_cast<Byte>(number);
        case TypeName::Integer:
            return wrap16(number);
        case TypeName::Single:
            return static_cast<Single>(number);
        case TypeName::Double:
            return static_cast<Double>(number);
        case TypeName::Currency:
            return Currency::raw(std::int64_t{number} * 10000);
        case TypeName::Date:
            return Date{static_cast<Double>(number)};
        case TypeName::Boolean:
            return Boolean(number != 0);
        default:
            return number;
    }
}

// An optional argument that the caller left out holds the zero value of its type, or the default
// that the entry tells, in that type; an optional Variant stays missing.
Variant default_of(const Parameter& parameter) {
    if (const auto* text = std::get_if<StringView>(&parameter.default_value)) {
        return *text;
    }
    if (const auto* number = std::get_if<Long>(&parameter.default_value)) {
        return number_of_type(parameter.type, *number);
    }
    switch (parameter.type) {
        case TypeName::Variant:
            return Variant::missing();
        case TypeName::Object:
            return ObjectPointer();
        case TypeName::String:
            return String();
        default:
            return number_of_type(parameter.type, 0);
    }
}

}  // namespace

namespace detail {

ObjectPointer object_argument(const Variant& argument) {
    if (const auto* object = argument.get_if<ObjectPointer>()) {
        return *object;
    }
    if (const auto* unknown = argument.get_if<UnknownObject>()) {
        return unknown->object;
    }
    fail(argument.is(Subtype::Null) ? error::invalid_null : error::type_mismatch);
}

}  // namespace detail

Variant invoke(const MemberInfo& member, void* self, Arguments& arguments) {
    const std::span<const Parameter> parameters = member.parameters();
    if (arguments.size() > parameters.size()) {
        throw WrongArgumentCount();
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const bool left_out = i >= arguments.size();
        if (left_out && !parameters[i].is_optional) {
            throw WrongArgumentCount();
        }
        if (left_out) {
            arguments.push_back(default_of(parameters[i]));
        } else if (parameters[i].is_optional && arguments[i].is_missing()) {
            arguments[i] = default_of(parameters[i]);
        }
    }
    return member.call(self, arguments);
}

StringView name_of(TypeName type) noexcept {
    constexpr StringView names[] = {u"None", u"Variant", u"Byte",    u"Integer",
                                    u"Long", u"Single",  u"Double",  u"Currency",
                                    u"Date", u"String",  u"Boolean", u"Object"};
    return names[static_cast<std::size_t>(type)];
}

StringView name_of(Instancing instancing) noexcept {
    constexpr StringView names[] = {u"global", u"creatable", u"private"};
    return names[static_cast<std::size_t>(instancing)];
}

}  // namespace kvarta16
