// The platform of a JSON-RPC session: nobody sees its boxes, its clock can be set, its pauses can
// be recorded instead of slept, and a fault plan stands before every operation.
#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include <kvarta16/platform/forwarding.h>
#include <kvarta16/platform/platform.h>

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

// In force on the thread that makes it, for as long as it lives.
class RpcPlatform {
  public:
    RpcPlatform();

    // Forgets the boxes and the pauses of the call before.
    void begin_call();

    RecordingBoxes boxes;
    SettableClock clock;
    RecordingSleeper sleeper;
    std::shared_ptr<FaultPlan> plan;

  private:
    std::unique_ptr<MessageBoxes> faulting_boxes_;
    std::unique_ptr<Clock> faulting_clock_;
    std::unique_ptr<Sleeper> faulting_sleeper_;
    std::unique_ptr<Files> faulting_files_;
    std::unique_ptr<dao::DBEngine> faulting_engine_;
    Platform operations_;
    ScopedPlatform scope_;
};

}  // namespace kvarta16::tool
