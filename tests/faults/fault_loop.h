// The loop over every fault of every call. A scenario calls one member of a class on a platform in
// memory; the loop has the n-th call of the platform fail, once and from then on, for n = 1, 2, 3
// and so on until nothing fails any more, each time on a fresh platform, and compares what comes
// out with what the scenario's data say. See check().
//
//   check({.name = "aIO.FileCopy_Fun",
//          .discipline = Discipline::Guarded,
//          .good = "-1",
//          .prepared = "0",
//          .prepare = [](FaultBench& b) { b.fake.disk.add(u"C:\\a.txt", "A"); },
//          .run = [](FaultBench& b) { return told(b.subjects.io.FileCopy_Fun(...)); }});
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include <support/fake_platform.h>

#include <kvarta16/database/Baza.h>
#include <kvarta16/database/ClsCzyscBazeDAO.h>
#include <kvarta16/files/CFileFind.h>
#include <kvarta16/files/aIO.h>
#include <kvarta16/frame/utf8.h>
#include <kvarta16/ftp/clsFTP.h>
#include <kvarta16/platform/forwarding.h>
#include <kvarta16/registry/aregistry.h>

namespace kvarta16::fault_tests {

using namespace testing_support;

// The number of every fault. It has no text of its own.
inline constexpr Long fault_number = 31337;
inline constexpr const char* fault_text = "Application-defined or object-defined error";

// The objects with state whose members are called. They outlive the platform of a faulty run, to
// be used again without faults.
struct Subjects {
    aIO io;
    CFileFind finder;
    clsFTP ftp;
    aregistry registry;
    Baza baza;
    ClsCzyśćBazęDAO cleaner;
};

// A wait that nobody ends would never end while a fault lasts: after a few pauses the fault is
// mended, as somebody would.
class PatientSleeper final : public ForwardingSleeper {
  public:
    PatientSleeper(Sleeper& target, FaultPlan& plan) noexcept
        : ForwardingSleeper(target), plan_(&plan) {}
    void Sleep(Long milliseconds) override {
        constexpr int patience = 5;
        if (++pauses == patience) {
            plan_->clear();
        }
        ForwardingSleeper::Sleep(milliseconds);
        if (on_pause) {
            on_pause();
        }
    }

    int pauses = 0;
    std::function<void()> on_pause;

  private:
    FaultPlan* plan_;
};

// A platform in memory with the faults of one plan before every seam, in force on the test's
// thread as long as this lives.
struct FaultBench {
    explicit FaultBench(Subjects& objects) : subjects(objects) {}

    Subjects& subjects;
    FakePlatform fake;
    std::shared_ptr<FaultPlan> plan = std::make_shared<FaultPlan>();
    std::shared_ptr<MemoryConnection> rows = std::make_shared<MemoryConnection>();
    std::shared_ptr<ado::Connection> db = faulting(rows, plan);

    // Arguments that a member writes to, where they can be read after a failure.
    String first;
    String second;
    Boolean flag;
    std::shared_ptr<ado::Recordset> recordset;
    std::vector<std::string> events;

    PatientSleeper patient{fake.sleeper, *plan};
    std::unique_ptr<MessageBoxes> boxes = faulting(fake.boxes, plan);
    std::unique_ptr<Clock> clock = faulting(fake.clock, plan);
    std::unique_ptr<Sleeper> sleeper = faulting(patient, plan);
    std::unique_ptr<Files> files = faulting(fake.files, plan);
    std::unique_ptr<dao::DBEngine> engine = faulting(fake.engine, plan);
    std::unique_ptr<FindFiles> find_files = faulting(fake.find_files, plan);
    std::unique_ptr<FileTable> file_table = faulting(fake.file_table, plan);
    std::unique_ptr<Processes> processes = faulting(fake.processes, plan);
    std::unique_ptr<Messages> messages = faulting(fake.messages, plan);
    std::unique_ptr<SystemInformation> system_information = faulting(fake.system_information, plan);
    std::unique_ptr<Screen> screen = faulting(fake.screen, plan);
    std::unique_ptr<FolderDialogs> folder_dialogs = faulting(fake.folder_dialogs, plan);
    std::unique_ptr<Internet> internet = faulting(fake.internet, plan);
    std::unique_ptr<Registry> registry = faulting(fake.registry, plan);
    std::unique_ptr<Menus> menus = faulting(fake.menus, plan);
    std::unique_ptr<Spooler> spooler = faulting(fake.spooler, plan);
    Platform operations{boxes.get(),      clock.get(),
                        sleeper.get(),    files.get(),
                        engine.get(),     find_files.get(),
                        file_table.get(), processes.get(),
                        messages.get(),   system_information.get(),
                        screen.get(),     folder_dialogs.get(),
                        internet.get(),   registry.get(),
                        menus.get(),      spooler.get()};
    ScopedPlatform scope{operations};
};

enum class Discipline : std::uint8_t {
    Strict,    // the failure passes with its number, and nothing is done behind it
    Guarded,   // the result is what was prepared
    Tolerant,  // the result is the good one
};

// What comes out where it is not what the discipline says. In `outcome` these stand for the good
// outcome, for the prepared one and for a failure that passes; more may follow.
inline const std::string good = "{good}";
inline const std::string prepared = "{prepared}";
inline const std::string passes = "{passes}";

struct Exception {
    std::string place;  // "Files.GetAttr", each call of it in the good run, or the second: "...#2"
    std::string outcome;
    std::optional<FaultSpan> span = std::nullopt;  // none: both
};

struct Scenario {
    std::string name = {};
    Discipline discipline = Discipline::Strict;
    std::string good = {};      // the outcome without a fault
    std::string prepared = {};  // of a guarded member alone
    std::function<void(FaultBench&)> prepare = [](FaultBench&) {};
    std::function<std::string(FaultBench&)> run = {};
    // What the member has written to, read also after a failure.
    std::function<std::string(FaultBench&)> written = {};
    std::vector<Exception> exceptions = {};  // the first that fits
    // Seeding goes on where it stopped: the second run is made on the same platform.
    bool resumes = false;
    Long dense = 100'000;  // every call as far as this one, then every `stride`-th
    Long stride = 1;
};

inline void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.name;
}

// Runs the loop. An outcome is the result, or "failure 31337"; behind " / " what was written, and
// behind " | open: " what has been opened by the run and not closed. Each run must end as the
// discipline and the exceptions say, without another exception than Failure, and the objects must
// do their work afterwards on a platform without faults.
void check(const Scenario& scenario);

// ---- Outcomes -------------------------------------------------------------------------------

inline std::string told(const std::string& text) {
    return text;
}
inline std::string told(StringView text) {
    return to_utf8(text);
}
inline std::string told(const String& text) {
    return to_utf8(text);
}
inline std::string told(const char16_t* text) {
    return to_utf8(text);
}
inline std::string told(Boolean value) {
    return std::to_string(value.raw);
}
inline std::string told(Long value) {
    return std::to_string(value);
}
inline std::string told(Integer value) {
    return std::to_string(value);
}
inline std::string told(Date value) {
    return told(FormatMask(value, u"yyyy-MM-dd hh:nn"));
}
inline std::string told(Currency value) {
    return told(ToText(value));
}
inline std::string told(const Variant& value) {
    return value.subtype() == Subtype::Empty ? "Empty" : told(ToText(value));
}

// The text of a file on the disk in memory; "-" if it is not there.
inline std::string contents(const FaultBench& bench, StringView path) {
    const MemoryDisk::Entry* const entry = bench.fake.disk.find(path);
    return entry == nullptr ? "-" : entry->contents;
}

// The texts of the boxes that were shown, " box: " before each.
inline std::string boxes_of(const FaultBench& bench) {
    std::string texts;
    for (const auto& box : bench.fake.boxes.shown) {
        texts += " box: " + to_utf8(box.text);
    }
    return texts;
}

}  // namespace kvarta16::fault_tests
