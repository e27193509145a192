// What the tests of this room share: a platform in memory with a fault plan before it, a real
// folder, texts for comparing.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <stdlib.h>

#include <kvarta16/files/aIO.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/frame/value.h>
#include <kvarta16/platform/forwarding.h>

#include "frame/frame_support.h"
#include "support/fake_platform.h"

namespace kvarta16::files_tests {

using frame_tests::for_all_texts;
using frame_tests::notation;
using frame_tests::outcome;
using frame_tests::parse_value;
using frame_tests::Random;
using frame_tests::show;
using frame_tests::wide;
using testing_support::FakePlatform;

inline const aIO& io() {
    return instance<aIO>();
}

struct Fault {
    const char* operation;
    Long n;
    FaultSpan span;
};
using Faults = std::vector<Fault>;

inline constexpr Long fault_number = 57;

// The fakes, with a plan that makes chosen calls fail.
struct FaultyPlatform {
    FaultyPlatform() = default;
    explicit FaultyPlatform(const Faults& faults) {
        for (const Fault& fault : faults) {
            plan->fail_at(fault.operation, fault.n, fault.span, fault_number);
        }
    }

    FakePlatform fake;
    std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
    std::unique_ptr<Files> files = faulting(fake.files, plan);
    std::unique_ptr<FindFiles> find_files = faulting(fake.find_files, plan);
    std::unique_ptr<FileTable> file_table = faulting(fake.file_table, plan);
    std::unique_ptr<Processes> processes = faulting(fake.processes, plan);
    std::unique_ptr<Messages> messages = faulting(fake.messages, plan);
    std::unique_ptr<SystemInformation> system = faulting(fake.system_information, plan);
    std::unique_ptr<FolderDialogs> dialogs = faulting(fake.folder_dialogs, plan);
    std::unique_ptr<Sleeper> sleeper = faulting(fake.sleeper, plan);
    Platform operations = behind_plan();
    ScopedPlatform scope{operations};

  private:
    Platform behind_plan() {
        Platform operations_with_faults = fake.operations;
        operations_with_faults.files = files.get();
        operations_with_faults.find_files = find_files.get();
        operations_with_faults.file_table = file_table.get();
        operations_with_faults.processes = processes.get();
        operations_with_faults.messages = messages.get();
        operations_with_faults.system_information = system.get();
        operations_with_faults.folder_dialogs = dialogs.get();
        operations_with_faults.sleeper = sleeper.get();
        return operations_with_faults;
    }
};

// The boxes that were shown: "text|style|title", with "-" for the host's own title.
inline std::vector<std::string> boxes_of(const FakePlatform& fake) {
    std::vector<std::string> boxes;
    boxes.reserve(fake.boxes.shown.size());
    for (const auto& box : fake.boxes.shown) {
        boxes.push_back(to_utf8(box.text) + "|" + std::to_string(box.style) + "|" +
                        (box.title ? to_utf8(*box.title) : "-"));
    }
    return boxes;
}
using Lines = std::vector<std::string>;

// The member of that name of a class's table.
template <class C>
const MemberInfo& member_of(StringView name) {
    for (const MemberInfo& member : ClassTable<C>::members) {
        if (member.name == name) {
            return member;
        }
    }
    throw std::invalid_argument("no member " + to_utf8(name));
}

// ---- Real folders ---------------------------------------------------------------------------

class RealFolder {
  public:
    RealFolder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "kvarta16-files-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder " + name);
        }
        path = name;
    }
    ~RealFolder() {
        std::error_code ignored;  // what cannot be removed stays, and the test has its result
        std::filesystem::remove_all(path, ignored);
    }
    RealFolder(const RealFolder&) = delete;
    RealFolder& operator=(const RealFolder&) = delete;
    RealFolder(RealFolder&&) = delete;
    RealFolder& operator=(RealFolder&&) = delete;

    // "Z:\tmp\x\name" for a name in the folder, the folder itself for "".
    [[nodiscard]] String windows(StringView name = {}) const {
        String windows = u"Z:" + replace_all(from_utf8(path.string()), u"/", u"\\");
        return name.empty() ? windows : windows.append(u"\\").append(name);
    }
    void write(const std::string& name, const std::string& contents) const {
        std::ofstream(path / name, std::ios::binary) << contents;
    }
    [[nodiscard]] std::string read(const std::string& name) const {
        std::ifstream file(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    [[nodiscard]] bool has(const std::string& name) const {
        return std::filesystem::exists(std::filesystem::symlink_status(path / name));
    }

    std::filesystem::path path;
};

// How many descriptors the process has open.
inline std::size_t open_descriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

}  // namespace kvarta16::files_tests
