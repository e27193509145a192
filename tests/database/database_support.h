// What the tests of this room share: a platform in memory with a fault plan before its files, its
// engine, its boxes and its pauses.
#pragma once

#include <gtest/gtest.h>
#include <support/fake_platform.h>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/forwarding.h>

namespace kvarta16::database_tests {

using testing_support::FakePlatform;
using testing_support::MemoryDisk;
using testing_support::MemoryMdb;

struct FaultyPlatform {
    FakePlatform fake;
    std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
    std::unique_ptr<MessageBoxes> boxes = faulting(fake.boxes, plan);
    std::unique_ptr<Sleeper> sleeper = faulting(fake.sleeper, plan);
    std::unique_ptr<Files> files = faulting(fake.files, plan);
    std::unique_ptr<dao::DBEngine> engine = faulting(fake.engine, plan);
    Platform operations{boxes.get(), &fake.clock, sleeper.get(), files.get(), engine.get()};
    ScopedPlatform scope{operations};

    [[nodiscard]] MemoryDisk& disk() { return fake.disk; }
};

// The number of the failure that a call ends with, 0 if it does not fail.
template <class Call>
Long failure_of(Call&& call) {
    try {
        call();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

[[nodiscard]] inline std::vector<std::string> utf8(const std::vector<String>& texts) {
    std::vector<std::string> result;
    for (const String& text : texts) {
        result.push_back(to_utf8(text));
    }
    return result;
}

using Lines = std::vector<std::string>;

}  // namespace kvarta16::database_tests
