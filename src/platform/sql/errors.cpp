#include <utility>

#include <kvarta16/platform/sql/errors.h>

namespace kvarta16::sql {

void fail_about(Long number, StringView text, StringView name) {
    String description(text);
    throw Failure(number, std::move(description.append(u": ").append(name)));
}

}  // namespace kvarta16::sql
