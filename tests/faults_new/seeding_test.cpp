// A seeding run of Akt while allocations fail: rows that were stored stay, no recordset does.
#include <memory>

#include <gtest/gtest.h>
#include <support/memory_ado.h>

#include <kvarta16/statutory/Akt.h>

#include "failing_new.h"

namespace kvarta16::failing_new_tests {
namespace {

using testing_support::MemoryConnection;

constexpr std::size_t all_rows = 12;

Work seeding() {
    const auto db = std::make_shared<MemoryConnection>();
    db->log.reserve(1000);  // a recordset that is dropped is written down, which cannot fail then
    return {[db] {
                Akt().Ustaw_stawki_ryczałtu(db, false, false);
                return ToText(static_cast<Long>(db->row_count()));
            },
            [db] {
                EXPECT_EQ(db->recordsets_alive, 0);
                EXPECT_LE(db->row_count(), all_rows);
                return std::vector<String>();
            }};
}

TEST(SeedingOutOfMemory, LosesNothing) {
    check({"Akt.Ustaw_stawki_ryczałtu", seeding});
}

// Run again on the same connection it completes the table.
TEST(SeedingOutOfMemory, IsCompletedByTheNextRun) {
    for (const long n : {5L, 50L, 150L, 400L}) {
        const auto db = std::make_shared<MemoryConnection>();
        db->log.reserve(1000);
        bool has_thrown = false;
        try {
            const FailingNew failing(n, FaultSpan::Once);
            Akt().Ustaw_stawki_ryczałtu(db, false, false);
        } catch (const std::bad_alloc&) {
            has_thrown = true;
        }
        EXPECT_TRUE(has_thrown) << n;
        EXPECT_LT(db->row_count(), all_rows) << n;
        Akt().Ustaw_stawki_ryczałtu(db, false, false);
        EXPECT_EQ(db->row_count(), all_rows) << n;
    }
}

}  // namespace
}  // namespace kvarta16::failing_new_tests
