// Variants as JSON: every subtype has a form of one key, `{"Currency":"1.1300"}`, and the common
// ones a bare form besides that is read: null, true, 5, 1.5, "text".
#pragma once

#include <kvarta16/frame/variant.h>

#include "json_input.h"
#include "json_output.h"
#include "rpc_objects.h"

namespace kvarta16::tool {

// Throws Refusal: BadParams for a form that there is not, a number outside its subtype, and an
// object that `objects` does not hold.
[[nodiscard]] Variant variant_of(const Json& value, const ObjectTable& objects);

// Always the form of one key. An object that `objects` does not hold yet gets its number there.
void write_value(JsonWriter& json, const Variant& value, ObjectTable& objects);

}  // namespace kvarta16::tool
