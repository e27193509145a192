// Akt: the three seeding runs at every fault. Each is strict: the failure passes with its number,
// nothing is asked of the database behind it, no recordset stays, and what was stored stays, so
// that the next run completes the table.
#include <gtest/gtest.h>

#include <kvarta16/statutory/Akt.h>

#include "fault_loop.h"

namespace kvarta16::fault_tests {
namespace {

class StatutoryFaults : public testing::TestWithParam<Scenario> {};

TEST_P(StatutoryFaults, EndAsDocumented) {
    check(GetParam());
}

using Run = void (Akt::*)(const std::shared_ptr<ado::Connection>&, Boolean, Boolean) const;

// `run`, which asks and leaves so many rows behind. The second run is on the same table.
Scenario seeding(const char* name, Run run, std::size_t rows) {
    return {.name = name,
            .discipline = Discipline::Strict,
            .good = std::to_string(rows) + " rows",
            .prepare =
                [](FaultBench& b) {
                    b.fake.boxes.answers = {MsgBoxResult::Yes, MsgBoxResult::Yes};
                },
            .run =
                [run](FaultBench& b) {
                    (Akt().*run)(b.db, true, true);
                    return std::to_string(b.rows->row_count()) + " rows";
                },
            .resumes = true};
}

// A long run: its first row call by call, the rest in steps that fall on every call of a row.
Scenario in_steps(Scenario scenario, Long stride) {
    scenario.dense = 32;
    scenario.stride = stride;
    return scenario;
}

INSTANTIATE_TEST_SUITE_P(
    Runs, StatutoryFaults,
    testing::Values(
        seeding("Akt.Ustaw_stawki_ryczałtu", &Akt::Ustaw_stawki_ryczałtu, 12),
        in_steps(seeding("Akt.Ustaw_oDSETKI_uSTAWOWE", &Akt::Ustaw_oDSETKI_uSTAWOWE, 86), 13),
        in_steps(seeding("Akt.Ustaw_Parametry_płacowe", &Akt::Ustaw_Parametry_płacowe, 722),
                 2999)));

// A question that is declined asks the database for nothing, so that only the box can fail.
TEST(StatutoryFaults, OfAQuestionThatIsDeclined) {
    check({.name = "Akt, declined",
           .good = "0 rows",
           .prepare = [](FaultBench& b) { b.fake.boxes.answers = {MsgBoxResult::No}; },
           .run =
               [](FaultBench& b) {
                   Akt().Ustaw_oDSETKI_uSTAWOWE(b.db, true, true);
                   return std::to_string(b.rows->row_count()) + " rows";
               }});
}

// Rows that stand already: nothing is stored, or only the rate.
TEST(StatutoryFaults, OnATableThatIsComplete) {
    check({.name = "Akt.Ustaw_stawki_ryczałtu, again",
           .good = "12 rows",
           .prepare = [](FaultBench& b) { Akt().Ustaw_stawki_ryczałtu(b.rows, false, false); },
           .run =
               [](FaultBench& b) {
                   Akt().Ustaw_stawki_ryczałtu(b.db, false, false);
                   return std::to_string(b.rows->row_count()) + " rows";
               },
           .resumes = true});
}

}  // namespace
}  // namespace kvarta16::fault_tests
