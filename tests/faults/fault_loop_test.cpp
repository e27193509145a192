// The loop itself, and that it sees what it is there for.
#include "fault_loop.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

namespace kvarta16::fault_tests {
namespace {

// ---- One run --------------------------------------------------------------------------------

// What is open on a platform, by kind: how many, or which handles.
using Open = std::map<std::string, std::multiset<Long>>;

std::multiset<Long> counted(std::size_t count) {
    std::multiset<Long> handles;
    for (std::size_t i = 1; i <= count; ++i) {
        handles.insert(static_cast<Long>(i));
    }
    return handles;
}

// The printers that have been opened and not closed, by the calls.
std::size_t open_printers(const FaultBench& bench) {
    std::size_t opened = 0;
    for (const std::string& call : bench.fake.spooler.calls) {
        if (call.starts_with("OpenPrinterA(")) {
            const std::string name = call.substr(13, call.find(';') - 13);
            opened += bench.fake.spooler.printers.contains(from_utf8(name)) ? 1 : 0;
        } else if (call == "ClosePrinter(" + std::to_string(RecordingSpooler::handle) + ")") {
            --opened;
        }
    }
    return opened;
}

Open open_on(const FaultBench& bench) {
    Open open;
    for (const Integer number : bench.fake.file_table.open_numbers()) {
        open["file"].insert(number);
    }
    for (const Long handle : bench.fake.internet.open_handles()) {
        open["internet"].insert(handle);
    }
    open["searches"] = counted(bench.fake.find_files.open.size());
    open["keys"] = counted(bench.fake.registry.handles.size());
    open["printers"] = counted(open_printers(bench));
    open["databases"] = counted(static_cast<std::size_t>(bench.fake.disk.open_databases()));
    open["recordsets"] = counted(static_cast<std::size_t>(bench.rows->recordsets_alive));
    return open;
}

// " | open: file 1, internet 3 4" of what has come since `before`; "" if nothing has.
std::string opened_since(const Open& before, const Open& now) {
    std::string text;
    for (const auto& [kind, handles] : now) {
        std::string list;
        for (const Long handle : handles) {
            const auto earlier = before.find(kind);
            if (earlier == before.end() || !earlier->second.contains(handle)) {
                list += " " + std::to_string(handle);
            }
        }
        if (!list.empty()) {
            text += (text.empty() ? " | open: " : ", ") + kind + list;
        }
    }
    return text;
}

using Calls = std::vector<std::string>;

// What has reached the platform behind the faults, in the logs that it is written down in.
std::vector<Calls> calls_of(const FaultBench& bench) {
    std::vector<Calls> logs = {bench.fake.disk.log, bench.rows->log, bench.fake.menus.calls,
                               bench.fake.spooler.calls, bench.fake.registry.calls};
    for (Calls& log : logs) {
        std::erase(log, "release");
    }
    return logs;
}

std::string outcome_of(const Scenario& scenario, FaultBench& bench, const Open& before) {
    std::string outcome;
    try {
        outcome = scenario.run(bench);
    } catch (const Failure& failure) {
        outcome = "failure " + std::to_string(failure.number());
    } catch (const std::exception& other) {
        outcome = std::string("another exception: ") + other.what();
    }
    if (scenario.written) {
        outcome += " / " + scenario.written(bench);
    }
    return outcome + opened_since(before, open_on(bench));
}

struct Faulty {
    std::string outcome;
    std::string afterwards;  // the outcome of the second run
    std::string failed;      // the operation that failed last
    Long failed_calls = 0;
    std::vector<Calls> calls;
};

// With the n-th call failing; with n = 0 no call fails.
Faulty run_once(const Scenario& scenario, Long n, FaultSpan span) {
    Subjects subjects;
    Faulty result;
    const auto start = [&](FaultBench& bench) {
        scenario.prepare(bench);
        bench.fake.disk.log.clear();
        bench.rows->log.clear();
        return open_on(bench);
    };
    {
        FaultBench bench(subjects);
        const Open before = start(bench);
        if (n > 0) {
            bench.plan->fail_at(n, span, fault_number);
        }
        result.outcome = outcome_of(scenario, bench, before);
        result.failed = bench.plan->last_failed();
        result.failed_calls = bench.plan->failed_calls();
        result.calls = calls_of(bench);
        bench.plan->clear();
        if (scenario.resumes) {
            result.afterwards = outcome_of(scenario, bench, before);
        }
    }
    if (!scenario.resumes) {
        FaultBench bench(subjects);
        const Open before = start(bench);
        result.afterwards = outcome_of(scenario, bench, before);
    }
    return result;
}

// ---- What has to come out -------------------------------------------------------------------

std::string filled_in(const Scenario& scenario, std::string outcome) {
    const std::pair<const std::string&, std::string> words[] = {
        {good, scenario.good},
        {prepared, scenario.prepared},
        {passes, "failure " + std::to_string(fault_number)}};
    for (const auto& [word, meaning] : words) {
        if (outcome.starts_with(word)) {
            return meaning + outcome.substr(word.size());
        }
    }
    return outcome;
}

std::string by_discipline(const Scenario& scenario) {
    switch (scenario.discipline) {
        case Discipline::Strict:
            return passes;
        case Discipline::Guarded:
            return prepared;
        default:
            return good;
    }
}

// The exceptions that were met are struck off `unused`.
std::string expected_of(const Scenario& scenario, const std::string& operation, Long ordinal,
                        FaultSpan span, std::set<std::size_t>& unused) {
    const std::string numbered = operation + "#" + std::to_string(ordinal);
    for (std::size_t i = 0; i < scenario.exceptions.size(); ++i) {
        const Exception& exception = scenario.exceptions[i];
        const bool is_here = exception.place == operation || exception.place == numbered;
        if (is_here && exception.span.value_or(span) == span) {
            unused.erase(i);
            return filled_in(scenario, exception.outcome);
        }
    }
    return filled_in(scenario, by_discipline(scenario));
}

bool are_beginnings_of(const std::vector<Calls>& calls, const std::vector<Calls>& whole) {
    return std::ranges::equal(calls, whole, [](const Calls& some, const Calls& all) {
        return some.size() <= all.size() && std::equal(some.begin(), some.end(), all.begin());
    });
}

constexpr Long endless = 200'000;  // calls; no member makes as many

// How often each operation has been called before, by the runs in which one call fails once.
class Places {
  public:
    Long next(const std::string& operation) { return ++calls_[operation]; }

  private:
    std::map<std::string, Long> calls_;
};

}  // namespace

void check(const Scenario& scenario) {
    SCOPED_TRACE(scenario.name);
    const Faulty whole = run_once(scenario, 0, FaultSpan::Once);
    EXPECT_EQ(whole.outcome, scenario.good);
    EXPECT_EQ(whole.afterwards, scenario.good);

    std::set<std::size_t> unused;
    for (std::size_t i = 0; i < scenario.exceptions.size(); ++i) {
        unused.insert(i);
    }
    Places places;
    Long n = 1;
    for (bool has_failed = true; has_failed; n += n < scenario.dense ? 1 : scenario.stride) {
        ASSERT_LT(n, endless) << "there is no end to it";
        has_failed = false;
        std::string operation;
        Long ordinal = 0;
        for (const FaultSpan span : {FaultSpan::Once, FaultSpan::FromThenOn}) {
            const Faulty faulty = run_once(scenario, n, span);
            const bool is_once = span == FaultSpan::Once;
            if (is_once) {
                has_failed = faulty.failed_calls > 0;
                operation = faulty.failed;
                ordinal = has_failed ? places.next(operation) : 0;
            }
            EXPECT_EQ(faulty.failed_calls > 0, has_failed);
            const std::string at = "call " + std::to_string(n) + ", " + operation + "#" +
                                   std::to_string(ordinal) +
                                   (is_once ? ", once" : ", from then on");
            EXPECT_EQ(faulty.outcome, has_failed
                                          ? expected_of(scenario, operation, ordinal, span, unused)
                                          : scenario.good)
                << at;
            EXPECT_EQ(faulty.afterwards, scenario.good) << "in use again after " << at;
            if (faulty.outcome.starts_with(filled_in(scenario, passes))) {
                EXPECT_TRUE(are_beginnings_of(faulty.calls, whole.calls))
                    << "work goes on behind a failure that passes: " << at;
            }
        }
    }
    EXPECT_GT(n, 2) << "no operation of the platform is called";
    for (const std::size_t i : unused) {
        ADD_FAILURE() << "not met: " << scenario.exceptions[i].place << " "
                      << scenario.exceptions[i].outcome;
    }
}

namespace {

// ---- What the loop sees ---------------------------------------------------------------------

// Reads the first line of a file; closes it also behind a failure.
std::string careful(FaultBench& bench) {
    FileTable& table = *bench.operations.file_table;
    table.Open(u"C:\\a.txt", 1, OpenMode::Input, Sharing::Shared);
    std::string letter = "-";
    guarded([&] { letter = static_cast<char>(table.InputCharacter(1)); });
    table.Close(1);
    return letter;
}

Scenario reading() {
    return {.name = "reading",
            .discipline = Discipline::Strict,
            .good = "A",
            .prepared = "",
            .prepare = [](FaultBench& b) { b.fake.disk.add(u"C:\\a.txt", "A"); },
            .run = careful,
            .exceptions = {{"FileTable.InputCharacter", "-", FaultSpan::Once},
                           {"FileTable.InputCharacter", passes + " | open: file 1"},
                           {"FileTable.Close", passes + " | open: file 1"}}};
}

// What the loop says against a scenario.
std::vector<std::string> complaints(const Scenario& scenario) {
    testing::TestPartResultArray failures;
    {
        const testing::ScopedFakeTestPartResultReporter reporter(
            testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
        check(scenario);
    }
    std::vector<std::string> messages;
    for (int i = 0; i < failures.size(); ++i) {
        messages.emplace_back(failures.GetTestPartResult(i).message());
    }
    return messages;
}

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(FaultLoop, IsContentWithWhatTheDataSay) {
    EXPECT_THAT(complaints(reading()), IsEmpty());
}

TEST(FaultLoop, SeesAnotherOutcome) {
    Scenario scenario = reading();
    scenario.exceptions[0].outcome = "A";
    EXPECT_THAT(complaints(scenario),
                ElementsAre(HasSubstr("call 2, FileTable.InputCharacter#1, once")));
}

TEST(FaultLoop, SeesWhatStaysOpen) {
    Scenario scenario = reading();
    scenario.exceptions[1].outcome = passes;
    EXPECT_THAT(complaints(scenario), ElementsAre(HasSubstr("| open: file 1")));
}

TEST(FaultLoop, SeesAnExceptionThatIsNeverMet) {
    Scenario scenario = reading();
    scenario.exceptions.push_back({"FileTable.Close#2", good});
    EXPECT_THAT(complaints(scenario), ElementsAre(HasSubstr("not met: FileTable.Close#2 {good}")));
}

TEST(FaultLoop, SeesAnExceptionThatIsNoFailure) {
    Scenario scenario = reading();
    scenario.run = [](FaultBench& b) {
        try {
            return careful(b);
        } catch (const Failure&) {
            throw std::runtime_error("not a failure");
        }
    };
    EXPECT_THAT(complaints(scenario), Contains(HasSubstr("another exception: not a failure")));
}

TEST(FaultLoop, SeesWorkBehindAFailureThatPasses) {
    Scenario scenario = reading();
    scenario.run = [](FaultBench& b) {
        try {
            return careful(b);
        } catch (const Failure&) {
            static_cast<void>(b.fake.file_table.FreeFile());
            throw;
        }
    };
    EXPECT_THAT(complaints(scenario), Contains(HasSubstr("work goes on behind")));
}

TEST(FaultLoop, SeesAnObjectThatIsNoLongerOfUse) {
    bool is_broken = false;
    Scenario scenario = reading();
    scenario.run = [&](FaultBench& b) {
        if (std::exchange(is_broken, false)) {
            return std::string("broken");
        }
        try {
            return careful(b);
        } catch (const Failure&) {
            is_broken = true;
            throw;
        }
    };
    EXPECT_THAT(complaints(scenario), Contains(HasSubstr("in use again after call 1")));
}

TEST(FaultLoop, SeesThatThereIsNothingToFail) {
    const Scenario scenario{
        .name = "nothing", .good = "1", .run = [](FaultBench&) { return std::string("1"); }};
    EXPECT_THAT(complaints(scenario),
                ElementsAre(HasSubstr("no operation of the platform is called")));
}

TEST(FaultLoop, EndsAWaitThatNobodyEnds) {
    check({.name = "waiting",
           .discipline = Discipline::Tolerant,
           .good = "there",
           .run =
               [](FaultBench& b) {
                   std::string found;
                   while (found.empty()) {
                       step([&] {
                           static_cast<void>(b.operations.files->CurDir());
                           found = "there";
                       });
                       b.operations.sleeper->Sleep(1);
                   }
                   return found;
               },
           .exceptions = {{"Files.CurDir", passes, FaultSpan::FromThenOn},
                          {"Sleeper.Sleep", passes}}});
}

}  // namespace
}  // namespace kvarta16::fault_tests
