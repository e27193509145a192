#include "rpc_events.h"

#include <algorithm>
#include <array>

#include <kvarta16/frame/utf8.h>

#include "json_values.h"
#include "refusal.h"

namespace kvarta16::tool {
namespace {

[[noreturn]] void refuse(const std::string& message) {
    throw Refusal(RefusalCode::BadParams, message);
}

// Fails as the assignment to a variable of the type fails.
template <class T>
void try_assignment(const Variant& value) {
    T variable{};
    Variant::reference(variable).assign(value);
}

using Trial = void (*)(const Variant& value);
constexpr std::array<Trial, 12> trials = {
    nullptr,  // no type
    &try_assignment<Variant>,
    &try_assignment<Byte>,
    &try_assignment<Integer>,
    &try_assignment<Long>,
    &try_assignment<Single>,
    &try_assignment<Double>,
    &try_assignment<Currency>,
    &try_assignment<Date>,
    &try_assignment<String>,
    &try_assignment<Boolean>,
    &try_assignment<ObjectPointer>,
};

// The value, tried out on a variable of the parameter's type.
Variant value_for(const Parameter& parameter, const Json& json, const ObjectTable& objects) {
    Variant value = variant_of(json, objects);
    trials.at(static_cast<std::size_t>(parameter.type))(value);
    return value;
}

const EventInfo& find_event(const ClassInfo& info, StringView name) {
    if (info.events != nullptr) {
        for (const EventInfo& event : info.events->events) {
            if (event.name == name) {
                return event;
            }
        }
    }
    throw Refusal(RefusalCode::UnknownMethod,
                  to_utf8(info.header.name) + " has no event " + to_utf8(name));
}

}  // namespace

void EventDesk::listen(const ClassInfo& info, void* self) {
    if (info.events == nullptr) {
        return;
    }
    const auto reactions = std::make_shared<Reactions>();
    reactions_[self] = reactions;
    for (const EventInfo& event : info.events->events) {
        event.connect(self, [this, &event, self, reactions](Arguments& arguments) {
            handle(event, self, *reactions, arguments);
        });
    }
}

void EventDesk::handle(const EventInfo& event, void* self, Reactions& reactions,
                       Arguments& arguments) {
    Raised& call = raised.emplace_back();
    call.name = event.name;
    std::ranges::transform(arguments, std::back_inserter(call.arguments),
                           [](const Variant& argument) { return argument.value(); });
    for (Reaction& reaction : reactions) {
        if (reaction.event != &event) {
            continue;
        }
        ++reaction.calls_so_far;
        if (reaction.call != 0 && reaction.call != reaction.calls_so_far) {
            continue;
        }
        for (std::size_t i = 0; i < reaction.arguments.size(); ++i) {
            if (reaction.arguments[i]) {
                arguments[i].assign(*reaction.arguments[i]);
            }
        }
        for (const Put& put : reaction.puts) {
            Arguments value{put.value};
            invoke(*put.property, self, value);
        }
    }
}

void EventDesk::prepare(const ClassObject& object, StringView event_name, Long call,
                        const Json& reaction, const ObjectTable& objects) {
    const ClassInfo& info = object.info();
    Reaction prepared;
    prepared.event = &find_event(info, event_name);
    prepared.call = call;
    if (call < 0 || !reaction.is_object()) {
        refuse(R"(a call number or 0, and {"args":[...],"put":{...}} are wanted)");
    }
    const auto parameters = prepared.event->parameters();
    for (const auto& [key, value] : reaction.items()) {
        if (key == "args" && value.is_array() && value.size() <= parameters.size()) {
            for (std::size_t i = 0; i < value.size(); ++i) {
                prepared.arguments.push_back(
                    value[i].is_null()
                        ? std::nullopt
                        : std::optional(value_for(parameters[i], value[i], objects)));
            }
        } else if (key == "put" && value.is_object()) {
            for (const auto& [name, written] : value.items()) {
                const MemberInfo* property = info.find(from_utf8(name), MemberKind::PropertyLet);
                if (property == nullptr) {
                    throw Refusal(RefusalCode::UnknownMethod, "no property " + name);
                }
                prepared.puts.push_back(
                    {property, value_for(property->parameters()[0], written, objects)});
            }
        } else {
            refuse(R"("args" is a list no longer than the event's, "put" an object)");
        }
    }
    reactions_.at(object.self())->push_back(std::move(prepared));
}

}  // namespace kvarta16::tool
