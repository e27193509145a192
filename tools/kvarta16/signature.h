// How a member is called, in one line.
#pragma once

#include <string>

#include <kvarta16/frame/class_table.h>

namespace kvarta16::tool {

// "Str2Str(ds: Variant, optional by reference leng: Integer): String"; "(not built)" behind the
// name of a member that has only its place.
[[nodiscard]] std::string signature_of(const MemberInfo& member);

// The same for an event.
[[nodiscard]] std::string signature_of(const EventInfo& event);

}  // namespace kvarta16::tool
