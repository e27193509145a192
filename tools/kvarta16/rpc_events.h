// The events of a JSON-RPC session's objects: each one is remembered for the answer, and its
// handler does what the client has prepared.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <kvarta16/frame/catalogue.h>

#include "json_input.h"
#include "rpc_objects.h"

namespace kvarta16::tool {

class EventDesk {
  public:
    struct Raised {
        StringView name;
        std::vector<Variant> arguments;  // as the library gave them
    };

    // Hears the events of an object from now on, with nothing prepared for them.
    void listen(const ClassInfo& info, void* self);

    // Prepares what the handler of an event does at its call number `call`, counted from now on, or
    // at each call with 0:
    //
    //   {"args":[null,{"Long":250}],"put":{"Connected":false}}
    //
    // writes arguments (null leaves one alone) and then properties of the object. Throws Refusal
    // for an event or a property that there is not and for another shape; Failure for a value that
    // cannot be coerced to the type that it is for.
    void prepare(const ClassObject& object, StringView event, Long call, const Json& reaction,
                 const ObjectTable& objects);

    std::vector<Raised> raised;

  private:
    struct Put {
        const MemberInfo* property = nullptr;
        Variant value;
    };
    struct Reaction {
        const EventInfo* event = nullptr;
        Long call = 0;
        Long calls_so_far = 0;
        std::vector<std::optional<Variant>> arguments;
        std::vector<Put> puts;
    };
    using Reactions = std::vector<Reaction>;

    void handle(const EventInfo& event, void* self, Reactions& reactions, Arguments& arguments);

    // By object. A new object at an old one's address begins anew.
    std::map<const void*, std::shared_ptr<Reactions>> reactions_;
};

}  // namespace kvarta16::tool
