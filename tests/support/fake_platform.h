// A platform that nobody sits in front of: boxes with answers prepared by the test, a clock that
// stands where it is set, pauses that are only written down, files and databases in memory, and the
// system around the files as the test has prepared it.
//
//   FakePlatform fake;
//   fake.boxes.answers = {MsgBoxResult::Yes};
//   Akt().Ustaw_stawki_ryczałtu(db, true, true);
//   EXPECT_EQ(fake.boxes.shown.size(), 1);
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include <support/fake_dao.h>
#include <support/fake_files.h>
#include <support/fake_internet.h>
#include <support/fake_registry.h>
#include <support/fake_ui.h>

#include <kvarta16/platform/platform.h>

namespace kvarta16::testing_support {

class RecordingBoxes final : public MessageBoxes {
  public:
    struct Box {
        String text;
        Long style;
        std::optional<String> title;
        MsgBoxResult answer;
    };

    RecordingBoxes();
    ~RecordingBoxes() override;

    // Answers from the front of the queue; as nobody would when it is empty.
    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override;

    std::deque<MsgBoxResult> answers;
    std::vector<Box> shown;
};

class SettableClock final : public Clock {
  public:
    Date Now() override;

    Date now{45429.5};  // 2024-05-17 12:00
    int reads = 0;
};

class RecordingSleeper final : public Sleeper {
  public:
    void Sleep(Long milliseconds) override;

    std::vector<Long> sleeps;  // milliseconds
};

// All of them, in force on the test's thread as long as this lives.
struct FakePlatform {
    FakePlatform();
    ~FakePlatform();
    FakePlatform(const FakePlatform&) = delete;
    FakePlatform& operator=(const FakePlatform&) = delete;

    RecordingBoxes boxes;
    SettableClock clock;
    RecordingSleeper sleeper;
    MemoryDisk disk;
    MemoryFiles files{disk};
    MemoryEngine engine{disk};
    MemoryFindFiles find_files;
    MemoryFileTable file_table{disk};
    FakeProcesses processes;
    FakeMessages messages;
    FakeSystemInformation system_information;
    FakeScreen screen;
    FakeFolderDialogs folder_dialogs;
    FakeInternet internet{disk};
    FakeRegistry registry;
    RecordingMenus menus;
    RecordingSpooler spooler;
    Platform operations{&boxes,      &clock,          &sleeper,   &files,    &engine,
                        &find_files, &file_table,     &processes, &messages, &system_information,
                        &screen,     &folder_dialogs, &internet,  &registry, &menus,
                        &spooler};
    ScopedPlatform scope{operations};
};

}  // namespace kvarta16::testing_support
