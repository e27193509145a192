#include "rpc_platform.h"

namespace kvarta16::tool {

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
      faulting_files_(faulting(*platform().files, plan)),
      faulting_engine_(faulting(*platform().db_engine, plan)),
      operations_(platform()),
      scope_(operations_) {
    operations_.message_boxes = faulting_boxes_.get();
    operations_.clock = faulting_clock_.get();
    operations_.sleeper = faulting_sleeper_.get();
    operations_.files = faulting_files_.get();
    operations_.db_engine = faulting_engine_.get();
}

void RpcPlatform::begin_call() {
    boxes.shown.clear();
    sleeper.recorded.clear();
}

}  // namespace kvarta16::tool
