// Allocations that fail, one after another. operator new is replaced in this program, so that the
// n-th allocation of a call throws std::bad_alloc, once and from then on, for n = 1, 2, 3 and so on
// until none fails any more. See check().
#pragma once

#include <functional>
#include <string>
#include <vector>

#include <kvarta16/frame/value.h>
#include <kvarta16/platform/forwarding.h>

namespace kvarta16::failing_new_tests {

// How many allocations stand that have not been given back.
[[nodiscard]] long live_allocations() noexcept;

// As long as this lives the n-th allocation from now fails; n = 0: none.
class FailingNew {
  public:
    FailingNew(long n, FaultSpan span) noexcept;
    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;
    FailingNew(FailingNew&&) = delete;
    FailingNew& operator=(FailingNew&&) = delete;

    [[nodiscard]] static bool has_failed() noexcept;
};

// A call with what it works on.
struct Work {
    std::function<String()> call;
    // What the call writes to, as it stands.
    std::function<std::vector<String>()> written = [] { return std::vector<String>(); };
};

struct Case {
    std::string name;
    std::function<Work()> prepare;  // nothing fails here
};

void PrintTo(const Case& one, std::ostream* out);

// Runs the loop. Behind each failed allocation: std::bad_alloc comes out, or the call has done
// without the memory and its result is the good one; each thing that the call writes to holds its
// value from before or the one that it has after a good call; nothing that was allocated is lost;
// and the next call is good.
void check(const Case& one);

}  // namespace kvarta16::failing_new_tests
