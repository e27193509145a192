#include "catalogue_json.h"

#include <kvarta16/frame/utf8.h>

#include "json_output.h"
#include "json_values.h"

namespace kvarta16::tool {
namespace {

std::string_view name_of(MemberKind kind) {
    switch (kind) {
        case MemberKind::PropertyGet:
            return "property get";
        case MemberKind::PropertyLet:
            return "property let";
        default:
            return "method";
    }
}

void write_parameters(JsonWriter& json, std::span<const Parameter> parameters) {
    ObjectTable none;
    json.key("parameters").begin_array();
    for (const Parameter& parameter : parameters) {
        const bool by_reference = parameter.passing == Passing::ByReference;
        json.begin_object().key("name").text(parameter.name);
        json.key("type").text(kvarta16::name_of(parameter.type));
        json.key("passing").plain(by_reference ? "reference" : "value");
        json.key("optional").truth(parameter.is_optional);
        if (parameter.is_optional) {
            json.key("default");
            write_value(json, default_value_of(parameter), none);
        }
        json.end_object();
    }
    json.end_array();
}

void write_member(JsonWriter& json, const MemberInfo& member) {
    json.begin_object().key("name").text(member.name);
    json.key("kind").plain(name_of(member.kind)).key("built").truth(member.is_built());
    if (member.is_built()) {
        write_parameters(json, member.parameters());
        json.key("result");
        if (member.result == TypeName::None) {
            json.null();
        } else {
            json.text(kvarta16::name_of(member.result));
        }
    }
    json.end_object();
}

void write_events(JsonWriter& json, const EventInterface& events) {
    json.key("events").begin_object().key("interface").text(events.name);
    json.key("events").begin_array();
    for (const EventInfo& event : events.events) {
        json.begin_object().key("name").text(event.name);
        write_parameters(json, event.parameters());
        json.end_object();
    }
    json.end_array().end_object();
}

void write_class(JsonWriter& json, const ClassInfo& info) {
    json.begin_object().key("name").text(info.header.name);
    json.key("instancing").text(kvarta16::name_of(info.header.instancing));
    json.key("interface").text(info.interface_name());
    json.key("interface_id").plain(info.header.interface_id);
    json.key("class_id").plain(info.header.class_id);
    json.key("built").truth(info.is_built());
    json.key("members").begin_array();
    for (const MemberInfo& member : info.members) {
        write_member(json, member);
    }
    json.end_array();
    if (info.events != nullptr) {
        write_events(json, *info.events);
    }
    json.end_object();
}

}  // namespace

Variant default_value_of(const Parameter& parameter) {
    if (const auto* text = std::get_if<StringView>(&parameter.default_value)) {
        return *text;
    }
    const auto* told = std::get_if<Long>(&parameter.default_value);
    const Variant number = told == nullptr ? Variant() : Variant(*told);
    switch (parameter.type) {
        case TypeName::Byte:
            return to_byte(number);
        case TypeName::Integer:
            return ToInteger16(number);
        case TypeName::Long:
            return ToLong(number);
        case TypeName::Single:
            return to_single(number);
        case TypeName::Double:
            return to_double(number);
        case TypeName::Currency:
            return ToCurrency(number);
        case TypeName::Date:
            return ToDate(number);
        case TypeName::Boolean:
            return to_boolean(number);
        case TypeName::String:
            return ToText(number);
        case TypeName::Object:
            return ObjectPointer();
        default:
            return told == nullptr ? Variant::missing() : number;
    }
}

std::string catalogue_json(std::span<const ClassInfo> classes) {
    JsonWriter json;
    json.begin_object().key("library").begin_object();
    json.key("name").text(type_library::name);
    json.key("version").plain(std::to_string(type_library::major_version) + '.' +
                              std::to_string(type_library::minor_version));
    json.key("id").plain(type_library::library_id);
    json.key("locale").whole(type_library::locale_id).end_object();
    json.key("classes").begin_array();
    for (const ClassInfo& info : classes) {
        write_class(json, info);
    }
    json.end_array().end_object();
    return json.take();
}

}  // namespace kvarta16::tool
