// The modal message box of the platform.
#pragma once

#include <optional>

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// The style of a box: the sum of its buttons, its icon and its default button.
namespace msg_box {
inline constexpr Long ok_only = 0;
inline constexpr Long yes_no = 4;
inline constexpr Long critical = 16;
inline constexpr Long question = 32;
inline constexpr Long exclamation = 48;
inline constexpr Long information = 64;
inline constexpr Long button_mask = 7;  // the bits of the style that say which buttons stand
}  // namespace msg_box

enum class MsgBoxResult : Long { Ok = 1, Cancel = 2, Yes = 6, No = 7 };

class KVARTA16_EXPORT MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;

    // Shows a box and waits for the answer: Ok for msg_box::ok_only, Yes or No for
    // msg_box::yes_no. Without a title the host's own stands there. Runs on the calling thread,
    // which is blocked until the user has answered. Never fails: where nobody can answer, the
    // answer is that of unattended_answer().
    virtual MsgBoxResult MsgBox(StringView text, Long style, std::optional<StringView> title) = 0;
};

// The answer of a box that no person sees: No where it asks Yes or No, so that nothing is done
// that nobody has agreed to; otherwise Ok.
[[nodiscard]] constexpr MsgBoxResult unattended_answer(Long style) noexcept {
    return (style & msg_box::button_mask) == msg_box::yes_no ? MsgBoxResult::No : MsgBoxResult::Ok;
}

}  // namespace kvarta16
