#include <chrono>
#include <ctime>
#include <iostream>
#include <thread>

#include <kvarta16/frame/utf8.h>
#include <kvarta16/platform/platform.h>

namespace kvarta16 {
namespace {

// What the standard library alone can do: the words of a box go to standard error, and it is
// answered as nobody would.
class UnattendedBoxes final : public MessageBoxes {
  public:
    MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView>) override {
        std::cerr << to_utf8(text) << '\n';
        return unattended_answer(style);
    }
};

class StandardClock final : public Clock {
  public:
    Date Now() override {
        const std::time_t moment = std::time(nullptr);
        const std::tm local = *std::localtime(&moment);
        const Long day = day_number(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
        const int seconds = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
        return {day + seconds / 86400.0};
    }
};

class StandardSleeper final : public Sleeper {
  public:
    void Sleep(Long milliseconds) override {
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    }
};

constinit thread_local const Platform* scoped_operations = nullptr;

}  // namespace

const Platform& platform() noexcept {
    return scoped_operations != nullptr ? *scoped_operations : default_platform();
}

Platform& default_platform() noexcept {
    static UnattendedBoxes boxes;
    static StandardClock clock;
    static StandardSleeper sleeper;
    static Platform operations{&boxes, &clock, &sleeper};
    return operations;
}

ScopedPlatform::ScopedPlatform(const Platform& operations) noexcept : previous_(scoped_operations) {
    scoped_operations = &operations;
}

ScopedPlatform::~ScopedPlatform() {
    scoped_operations = previous_;
}

}  // namespace kvarta16
