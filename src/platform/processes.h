// Starting programs, and keys for those that run.
#pragma once

#include <kvarta16/frame/export.h>
#include <kvarta16/frame/types.h>

namespace kvarta16 {

// How the window of a program that is started comes up.
namespace window_style {
inline constexpr Integer hidden = 0;
inline constexpr Integer maximized_focus = 3;
}  // namespace window_style

class KVARTA16_EXPORT Processes {
  public:
    virtual ~Processes() = default;

    // Starts a program by a command line: its name, in quotes where it holds blanks, then its
    // arguments. Returns at once; the program runs on by itself and leaves nothing behind in this
    // process when it ends. The task number, never 0. Fails: 53 where there is no such program, 5
    // for a command line without one, 75 or 70 where the system refuses.
    [[nodiscard]] virtual Double Shell(StringView command_line, Integer style) = 0;

    // Brings the application with this window title to the front: the exact title, or else the
    // first one that begins with it, letters in any case. With `wait` it waits first until the
    // caller has the focus. Fails: 5 where there is no such window.
    virtual void AppActivate(StringView title, bool wait) = 0;

    // Sends keys to the window in front, by the platform's notation: a character is itself;
    // "{ENTER}", "{F4}", "{LEFT 5}", "{{}" name or repeat keys; "+", "^" and "%" before a key or a
    // group in parentheses hold Shift, Ctrl and Alt; "~" is Enter. With `wait` it waits until they
    // have been processed. Fails: 5 for a text that is not in this notation, before any key is
    // sent, and where there is nothing that takes keys; 70 where the system refuses.
    virtual void SendKeys(StringView keys, bool wait) = 0;
};

}  // namespace kvarta16
