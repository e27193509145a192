#include <algorithm>
#include <iostream>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>

#include "commands.h"
#include "databases.h"
#include "human_values.h"
#include "lookup.h"
#include "signature.h"
#include "similar_names.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

struct Target {
    const MemberInfo* member = nullptr;
    Receiver receiver;
};

Target find_target(const std::string& word) {
    const String name = from_utf8(word);
    const std::size_t dot = name.find(u'.');
    if (dot == String::npos) {
        throw UsageError("\"" + word + "\" is no CLASS.MEMBER, such as aLiczby.VarR2Str");
    }
    const StringView owner = StringView(name).substr(0, dot);
    const StringView member = StringView(name).substr(dot + 1);
    if (owner == u"value") {
        const MemberInfo* primitive = find_entry(value_primitives(), member);
        if (primitive == nullptr) {
            fail_unknown_member(owner, member, value_primitives());
        }
        return {primitive, {}};
    }
    const ClassInfo& info = listed_class(owner);
    if (!info.is_built()) {
        throw UsageError("the class " + to_utf8(owner) + " is not built yet");
    }
    const MemberInfo* found = find_called(info, member);
    if (found == nullptr) {
        fail_unknown_member(owner, member, info.members);
    }
    return {found, receiver_of(info)};
}

Arguments read_arguments(const MemberInfo& member, const std::vector<std::string>& words) {
    const std::span<const Parameter> parameters = member.parameters();
    const auto required = std::count_if(parameters.begin(), parameters.end(),
                                        [](const Parameter& p) { return !p.is_optional; });
    if (words.size() > parameters.size() || std::ssize(words) < required) {
        throw UsageError("wrong number of arguments\nIt is called " + signature_of(member) + '.');
    }
    Arguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (parameters[i].type == TypeName::Object && names_database(words[i])) {
            arguments.push_back(open_database(words[i], Use::Calling)->connection());
        } else {
            arguments.push_back(human_value(words[i]));
        }
    }
    return arguments;
}

// Whether the call has changed an argument: what was given, taken to the type that stands there
// now, is another value.
bool has_changed(const Parameter& parameter, const Variant& given, const Variant& now) {
    if (parameter.type == TypeName::Variant) {
        return !(given == now);
    }
    return now.visit([&]<class T>(const T& value) {
        T before{};
        Variant::reference(before).assign(given);
        return !(before == value);
    });
}

void print_changes(const MemberInfo& member, const Arguments& given, const Arguments& now) {
    for (std::size_t i = 0; i < given.size(); ++i) {
        const Parameter& parameter = member.parameters()[i];
        const bool left_out = parameter.is_optional && given[i].is_missing();
        if (!left_out && has_changed(parameter, given[i], now[i])) {
            std::cout << to_utf8(parameter.name) << " = " << human_text(now[i]) << '\n';
        }
    }
}

}  // namespace

int call_command(const std::vector<std::string>& words) {
    if (words.empty()) {
        throw UsageError("call wants CLASS.MEMBER and its arguments; see kvarta16 call --help");
    }
    const Target target = find_target(words.front());
    const Arguments given =
        read_arguments(*target.member, std::vector(words.begin() + 1, words.end()));
    Arguments arguments = given;
    const Variant result = invoke(*target.member, target.receiver.self, arguments);
    if (target.member->result != TypeName::None) {
        std::cout << human_text(result) << '\n';
    }
    print_changes(*target.member, given, arguments);
    return 0;
}

}  // namespace kvarta16::tool
