// The platform of a JSON-RPC session: nobody sees its boxes, its clock can be set, its pauses can
// be recorded instead of slept, and a fault plan stands before every operation.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/platform.h>

#include "rpc_events.h"

namespace kvarta16::tool {

// Answers each box from a queue, and as nobody would where the queue is empty; remembers it.
class RecordingBoxes final : public MessageBoxes {
  public:
    struct Shown {
        String text;
        Long style;
        std::optional<String> title;
        MsgBoxResult answer;
    };

    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) override;

    std::deque<MsgBoxResult> answers;
    std::vector<Shown> shown;
};

// The moment that is set, or the clock behind.
class SettableClock final : public ForwardingClock {
  public:
    using ForwardingClock::ForwardingClock;
    Date Now() override { return moment ? *moment : ForwardingClock::Now(); }

    std::optional<Date> moment;
};

// Pauses as the sleeper behind, or remembers the milliseconds asked for.
class RecordingSleeper final : public ForwardingSleeper {
  public:
    using ForwardingSleeper::ForwardingSleeper;
    void Sleep(Long milliseconds) override;

    bool records = false;
    std::vector<Long> recorded;
};

// A version record that is set, or none; the system behind where nothing has been set.
class SettableVersion final : public ForwardingSystemInformation {
  public:
    struct Version {
        Long platform;
        Long major;
        Long minor;
    };

    using ForwardingSystemInformation::ForwardingSystemInformation;
    Long GetVersionExA(OSVERSIONINFO& record) override;

    bool is_set = false;
    std::optional<Version> version;  // nothing: the call fails
};

// Keys and mouse messages that are queued; nobody sits in front of a session.
class QueuedMessages final : public ForwardingMessages {
  public:
    using ForwardingMessages::ForwardingMessages;
    Long GetInputState() override { return queue.empty() ? 0 : 1; }
    Long PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) override;

    void add_key(Long code);
    void add_mouse_move();

    std::deque<MSG> queue;
};

// Answers each folder dialog from a queue, and by a cancel where it is empty; remembers it.
class RecordingDialogs final : public FolderDialogs {
  public:
    struct Shown {
        Long owner;
        String prompt;
        Long flags;
        String selection;  // what it was told to open at
        std::optional<String> answer;
    };

    Long SHBrowseForFolder(const BROWSEINFO& info) override;
    Long SHGetPathFromIDList(Long item_list, String& buffer) override;
    Long SendMessageA(Long hwnd, Long message, Long wParam, StringView text) override;
    void Beep() override {}

    std::deque<std::optional<String>> answers;  // nothing: a cancel
    std::vector<Shown> shown;

  private:
    std::vector<String> item_lists_;  // from number 1
};

// In force on the thread that makes it, for as long as it lives.
class RpcPlatform {
  public:
    RpcPlatform();

    // Forgets what the call before has shown and asked for.
    void begin_call();

    RecordingBoxes boxes;
    SettableClock clock;
    RecordingSleeper sleeper;
    SettableVersion version;
    QueuedMessages messages;
    RecordingDialogs dialogs;
    EventDesk events;
    std::shared_ptr<FaultPlan> plan;

  private:
    std::unique_ptr<MessageBoxes> faulting_boxes_;
    std::unique_ptr<Clock> faulting_clock_;
    std::unique_ptr<Sleeper> faulting_sleeper_;
    std::unique_ptr<Files> faulting_files_;
    std::unique_ptr<dao::DBEngine> faulting_engine_;
    std::unique_ptr<FindFiles> faulting_find_files_;
    std::unique_ptr<FileTable> faulting_file_table_;
    std::unique_ptr<Processes> faulting_processes_;
    std::unique_ptr<Messages> faulting_messages_;
    std::unique_ptr<SystemInformation> faulting_version_;
    std::unique_ptr<Screen> faulting_screen_;
    std::unique_ptr<FolderDialogs> faulting_dialogs_;
    std::unique_ptr<Internet> faulting_internet_;
    std::unique_ptr<Registry> faulting_registry_;
    std::unique_ptr<Menus> faulting_menus_;
    std::unique_ptr<Spooler> faulting_spooler_;
    Platform operations_;
    ScopedPlatform scope_;
};

}  // namespace kvarta16::tool
