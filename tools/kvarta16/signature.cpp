#include "signature.h"

#include <kvarta16/frame/utf8.h>

namespace kvarta16::tool {
namespace {

std::string default_text(const DefaultValue& value) {
    if (const auto* text = std::get_if<StringView>(&value)) {
        return " = \"" + to_utf8(*text) + '"';
    }
    if (const auto* number = std::get_if<Long>(&value)) {
        return " = " + std::to_string(*number);
    }
    return {};
}

std::string parameter_text(const Parameter& parameter) {
    std::string text = parameter.is_optional ? "optional " : "";
    text += parameter.passing == Passing::ByReference ? "by reference " : "";
    text += to_utf8(parameter.name) + ": " + to_utf8(name_of(parameter.type));
    return text + default_text(parameter.default_value);
}

std::string parameter_list(std::span<const Parameter> parameters) {
    std::string list;
    for (const Parameter& parameter : parameters) {
        list += (list.empty() ? "" : ", ") + parameter_text(parameter);
    }
    return '(' + list + ')';
}

}  // namespace

std::string signature_of(const MemberInfo& member) {
    const std::string name = to_utf8(member.name);
    if (!member.is_built()) {
        return name + " (not built)";
    }
    const std::string result = ": " + to_utf8(name_of(member.result));
    switch (member.kind) {
        case MemberKind::PropertyGet:
            return name + result + " (property, read)";
        case MemberKind::PropertyLet:
            return name + '=' + parameter_list(member.parameters()) + " (property, write)";
        default:
            return name + parameter_list(member.parameters()) +
                   (member.result == TypeName::None ? "" : result);
    }
}

std::string signature_of(const EventInfo& event) {
    return to_utf8(event.name) + parameter_list(event.parameters());
}

}  // namespace kvarta16::tool
