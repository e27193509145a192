// What a person may have meant by a name that there is not.
#pragma once

#include <string>
#include <vector>

#include <kvarta16/frame/catalogue.h>

namespace kvarta16::tool {

// Those of `names` that differ from `wanted` in little beside case and Polish letters, or that
// hold it; the nearest first, five at the most.
[[nodiscard]] std::vector<StringView> similar_names(StringView wanted,
                                                    const std::vector<StringView>& names);

// The public class of that name. Throws UsageError, which tells the names that are similar.
[[nodiscard]] const ClassInfo& listed_class(StringView name);

// UsageError: `owner` has no built entry of that name; those of `entries` that are similar, and
// where to see them all.
[[noreturn]] void fail_unknown_member(StringView owner, StringView name,
                                      std::span<const MemberInfo> entries);

}  // namespace kvarta16::tool
