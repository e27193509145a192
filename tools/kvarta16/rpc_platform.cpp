#include "rpc_platform.h"

namespace kvarta16::tool {
namespace {

// The set in force, with these three in the place of its own.
Platform with(MessageBoxes& boxes, Clock& clock, Sleeper& sleeper) {
    Platform operations = platform();
    operations.message_boxes = &boxes;
    operations.clock = &clock;
    operations.sleeper = &sleeper;
    return operations;
}

}  // namespace

MsgBoxResult RecordingBoxes::MsgBox(StringView text, Long style, std::optional<StringView> title) {
    MsgBoxResult answer = unattended_answer(style);
    if (!answers.empty()) {
        answer = answers.front();
        answers.pop_front();
    }
    shown.push_back({String(text), style, std::optional<String>(title), answer});
    return answer;
}

void RecordingSleeper::Sleep(Long milliseconds) {
    if (records) {
        recorded.push_back(milliseconds);
    } else {
        ForwardingSleeper::Sleep(milliseconds);
    }
}

RpcPlatform::RpcPlatform()
    : clock(*platform().clock),
      sleeper(*platform().sleeper),
      plan(std::make_shared<FaultPlan>()),
      faulting_boxes_(faulting(boxes, plan)),
      faulting_clock_(faulting(clock, plan)),
      faulting_sleeper_(faulting(sleeper, plan)),
      operations_(with(*faulting_boxes_, *faulting_clock_, *faulting_sleeper_)),
      scope_(operations_) {}

void RpcPlatform::begin_call() {
    boxes.shown.clear();
    sleeper.recorded.clear();
}

}  // namespace kvarta16::tool
