#include <iostream>

#include <kvarta16/frame/catalogue.h>
#include <kvarta16/frame/utf8.h>

#include "catalogue_json.h"
#include "commands.h"
#include "signature.h"
#include "similar_names.h"
#include "usage_error.h"

namespace kvarta16::tool {
namespace {

void print_members(std::span<const MemberInfo> members) {
    for (const MemberInfo& member : members) {
        std::cout << "    " << signature_of(member) << '\n';
    }
}

void print_events(const EventInterface& events) {
    std::cout << "    events of " << to_utf8(events.name) << ":\n";
    for (const EventInfo& event : events.events) {
        std::cout << "        " << signature_of(event) << '\n';
    }
}

void print_class(const ClassInfo& info) {
    const ClassHeader& header = info.header;
    std::cout << to_utf8(header.name) << " (" << to_utf8(name_of(header.instancing))
              << (info.is_built() ? ")\n" : ", not built)\n");
    if (header.instancing != Instancing::Private) {
        std::cout << "    class     {" << header.class_id << "}\n"
                  << "    interface {" << header.interface_id << "} "
                  << to_utf8(info.interface_name()) << '\n';
    }
    print_members(info.members);
    if (info.events != nullptr) {
        print_events(*info.events);
    }
    std::cout << '\n';
}

void print_primitives() {
    std::cout << "value (functions of the value layer)\n";
    print_members(value_primitives());
}

}  // namespace

int catalogue_command(const std::optional<std::string>& class_name, bool as_json) {
    if (class_name == "value") {
        if (as_json) {
            throw UsageError("value is no class: --json lists the classes alone");
        }
        print_primitives();
        return 0;
    }
    const std::span<const ClassInfo> classes =
        class_name ? std::span(&listed_class(from_utf8(*class_name)), 1) : public_classes();
    if (as_json) {
        std::cout << catalogue_json(classes) << '\n';
        return 0;
    }
    for (const ClassInfo& info : classes) {
        print_class(info);
    }
    if (!class_name) {
        print_primitives();
    }
    return 0;
}

}  // namespace kvarta16::tool
