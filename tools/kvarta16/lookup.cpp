#include "lookup.h"

#include <algorithm>

namespace kvarta16::tool {

const ClassInfo* find_offered_class(StringView name) {
    if (const ClassInfo* found = find_class(name)) {
        return found;
    }
    const std::span<const ClassInfo> classes = private_classes();
    const auto found = std::find_if(classes.begin(), classes.end(), [&](const ClassInfo& info) {
        return info.header.name == name;
    });
    return found == classes.end() ? nullptr : &*found;
}

const MemberInfo* find_called(const ClassInfo& info, StringView name) {
    if (name.ends_with(u'=')) {
        return info.find(name.substr(0, name.size() - 1), MemberKind::PropertyLet);
    }
    const MemberInfo* found = info.find(name, MemberKind::Method);
    return found != nullptr ? found : info.find(name, MemberKind::PropertyGet);
}

const MemberInfo* find_entry(std::span<const MemberInfo> entries, StringView name) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const MemberInfo& entry) { return entry.name == name; });
    return found == entries.end() ? nullptr : &*found;
}

Receiver receiver_of(const ClassInfo& info) {
    if (info.header.instancing == Instancing::Global) {
        return {info.thread_instance(), nullptr};
    }
    const std::shared_ptr<void> object = info.create();
    return {object.get(), object};
}

}  // namespace kvarta16::tool
