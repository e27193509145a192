#include <support/fake_platform.h>

namespace kvarta16::testing_support {

RecordingBoxes::RecordingBoxes() = default;

RecordingBoxes::~RecordingBoxes() = default;

MsgBoxResult RecordingBoxes::MsgBox(StringView text, Long style, std::optional<StringView> title) {
    MsgBoxResult answer = unattended_answer(style);
    if (!answers.empty()) {
        answer = answers.front();
        answers.pop_front();
    }
    shown.push_back({String(text), style, std::optional<String>(title), answer});
    return answer;
}

Date SettableClock::Now() {
    ++reads;
    return now;
}

void RecordingSleeper::Sleep(Long milliseconds) {
    sleeps.push_back(milliseconds);
}

FakePlatform::FakePlatform() = default;

FakePlatform::~FakePlatform() = default;

}  // namespace kvarta16::testing_support
