// The replaced operator new, the loop, and that the loop sees what it is there for.
#include "failing_new.h"

#include <array>
#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include <kvarta16/frame/utf8.h>

namespace {

std::atomic<long> live = 0;

thread_local long allocations_left = 0;  // 1: the next one fails; 0: none does
thread_local bool fails_for_good = false;
thread_local bool has_failed = false;

bool is_due() noexcept {
    if (allocations_left == 0) {
        return false;
    }
    if (allocations_left > 1) {
        --allocations_left;
        return false;
    }
    allocations_left = fails_for_good ? 1 : 0;
    has_failed = true;
    return true;
}

void* allocated(std::size_t size) noexcept {
    if (is_due()) {
        return nullptr;
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    live += memory == nullptr ? 0 : 1;
    return memory;
}

void* allocated_or_thrown(std::size_t size) {
    void* const memory = allocated(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void given_back(void* memory) noexcept {
    live -= memory == nullptr ? 0 : 1;
    std::free(memory);
}

}  // namespace

// The whole set, so that what one of them gives no foreign one takes back.
void* operator new(std::size_t size) {
    return allocated_or_thrown(size);
}
void* operator new[](std::size_t size) {
    return allocated_or_thrown(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return allocated(size);
}
void operator delete(void* memory) noexcept {
    given_back(memory);
}
void operator delete[](void* memory) noexcept {
    given_back(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    given_back(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    given_back(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
    given_back(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept {
    given_back(memory);
}

namespace kvarta16::failing_new_tests {

long live_allocations() noexcept {
    return live;
}

FailingNew::FailingNew(long n, FaultSpan span) noexcept {
    allocations_left = n;
    fails_for_good = span == FaultSpan::FromThenOn;
    ::has_failed = false;
}

FailingNew::~FailingNew() {
    allocations_left = 0;
}

bool FailingNew::has_failed() noexcept {
    return ::has_failed;
}

void PrintTo(const Case& one, std::ostream* out) {
    *out << one.name;
}

namespace {

struct Outcome {
    std::optional<String> result;  // none: std::bad_alloc came out
    std::vector<String> before;
    std::vector<String> after;
    std::optional<String> next;  // the result of the next call
    bool has_failed = false;
};

Outcome outcome_of(const Case& one, long n, FaultSpan span) {
    Outcome outcome;
    {
        const Work work = one.prepare();
        outcome.before = work.written();
        try {
            const FailingNew failing(n, span);
            outcome.result = work.call();
        } catch (const std::bad_alloc&) {  // the loop looks at the result
        }
        outcome.has_failed = n > 0 && FailingNew::has_failed();
        outcome.after = work.written();
    }
    outcome.next = one.prepare().call();
    return outcome;
}

constexpr long endless = 100'000;  // allocations; no call makes as many

// One round of the loop; whether an allocation failed.
bool holds_at(const Case& one, const Outcome& whole, long n, FaultSpan span) {
    const std::string at =
        "allocation " + std::to_string(n) + (span == FaultSpan::Once ? ", once" : ", from then on");
    const Outcome outcome = outcome_of(one, n, span);
    EXPECT_TRUE(outcome.has_failed || outcome.result.has_value()) << at;
    if (outcome.result) {
        EXPECT_EQ(to_utf8(*outcome.result), to_utf8(*whole.result)) << at;
    }
    EXPECT_EQ(to_utf8(outcome.next.value_or(u"none")), to_utf8(*whole.result)) << "after " << at;
    for (std::size_t i = 0; i < outcome.after.size(); ++i) {
        EXPECT_TRUE(outcome.after[i] == outcome.before[i] || outcome.after[i] == whole.after[i])
            << "written thing " << i << " is '" << to_utf8(outcome.after[i]) << "' after " << at;
    }
    return outcome.has_failed;
}

}  // namespace

void check(const Case& one) {
    SCOPED_TRACE(one.name);
    // Twice: what a thread sets up once is there then.
    static_cast<void>(outcome_of(one, 0, FaultSpan::Once));
    const Outcome whole = outcome_of(one, 0, FaultSpan::Once);
    ASSERT_TRUE(whole.result.has_value());
    bool has_failed = true;
    for (long n = 1; has_failed; ++n) {
        ASSERT_LT(n, endless) << "there is no end to it";
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            const long before = live_allocations();
            has_failed = holds_at(one, whole, n, span);
            EXPECT_EQ(live_allocations() - before, 0)
                << "lost behind allocation " << n
                << (span == FaultSpan::Once ? ", once" : ", from then on");
        }
    }
}

namespace {

// ---- What the loop sees ---------------------------------------------------------------------

// What the loop says against a case.
std::vector<std::string> complaints(const Case& one) {
    testing::TestPartResultArray failures;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
        check(one);
    }
    std::vector<std::string> messages;
    for (int i = 0; i < failures.size(); ++i) {
        messages.emplace_back(failures.GetTestPartResult(i).message());
    }
    return messages;
}

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(FailingNew, FailsAtTheAllocationAskedFor) {
    const auto allocates = [] { return std::make_unique<long>(1) != nullptr; };
    {
        const FailingNew failing(2, FaultSpan::Once);
        EXPECT_TRUE(allocates());
        EXPECT_FALSE(FailingNew::has_failed());
        EXPECT_THROW(allocates(), std::bad_alloc);
        EXPECT_TRUE(FailingNew::has_failed());
        EXPECT_TRUE(allocates());
    }
    bool has_thrown_twice = false;
    {
        const FailingNew failing(1, FaultSpan::FromThenOn);
        try {
            static_cast<void>(allocates());
        } catch (const std::bad_alloc&) {
            has_thrown_twice = new (std::nothrow) long(1) == nullptr;
        }
    }
    EXPECT_TRUE(has_thrown_twice);
    EXPECT_TRUE(allocates());
}

TEST(FailingNew, CountsWhatStands) {
    const long before = live_allocations();
    {
        const auto one = std::make_unique<long>(1);
        const std::vector<long> other(5);
        EXPECT_EQ(live_allocations() - before, 2);
    }
    EXPECT_EQ(live_allocations(), before);
}

TEST(FailingNewLoop, IsContentWithACallThatIsRight) {
    EXPECT_THAT(complaints({"right", [] { return Work{[] { return blanks(20) + blanks(30); }}; }}),
                IsEmpty());
}

TEST(FailingNewLoop, SeesAResultThatIsNotTheGoodOne) {
    EXPECT_THAT(complaints({"swallowed",
                            [] {
                                return Work{[] {
                                    try {
                                        return blanks(20);
                                    } catch (const std::bad_alloc&) {
                                        return String();
                                    }
                                }};
                            }}),
                Contains(HasSubstr("allocation 1, once")));
}

TEST(FailingNewLoop, SeesWhatIsLost) {
    // Where the test finds again what the call loses.
    static std::array<long*, 8> standing{};
    static std::size_t count = 0;
    EXPECT_THAT(complaints({"lost",
                            [] {
                                return Work{[] {
                                    standing.at(count++) = new long(1);
                                    String text = blanks(20);
                                    delete standing.at(--count);
                                    return text;
                                }};
                            }}),
                Contains(HasSubstr("lost behind allocation 2")));
    EXPECT_EQ(count, 2U);  // once, and from then on
    while (count > 0) {
        delete standing.at(--count);
    }
}

TEST(FailingNewLoop, SeesAnArgumentThatIsHalfWritten) {
    EXPECT_THAT(complaints({"torn",
                            [] {
                                const auto text = std::make_shared<String>(u"a");
                                return Work{[text] {
                                                *text = u"b";
                                                *text += blanks(20);
                                                return String();
                                            },
                                            [text] { return std::vector<String>{*text}; }};
                            }}),
                Contains(HasSubstr("written thing 0 is 'b'")));
}

TEST(FailingNewLoop, SeesThatTheNextCallIsNotGood) {
    static bool is_broken = false;
    EXPECT_THAT(complaints({"broken",
                            [] {
                                return Work{[] {
                                    if (std::exchange(is_broken, false)) {
                                        return String(u"broken");
                                    }
                                    is_broken = true;
                                    String text = blanks(20);
                                    is_broken = false;
                                    return text;
                                }};
                            }}),
                Contains(HasSubstr("after allocation 1")));
}

}  // namespace
}  // namespace kvarta16::failing_new_tests
