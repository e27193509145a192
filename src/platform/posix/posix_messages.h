// Keys on a terminal as the messages of a thread. Other input there is not: a terminal has no
// windows and its mouse is not asked for.
//
// A key is read where standard input is a terminal and this process in its foreground; a job in
// the background gets none and is not stopped. A terminal gives keys line by line: it is asked for
// single keys for the moment of a call and is as it was when the call ends, with the keys that were
// not taken still in it. Signals wait for that moment, so that none ends or stops this thread in
// the middle of it. What remains: another thread that takes a fatal signal just then, or SIGKILL.
//
// Two things a person may notice: keys that wait when a call ends are a line of their own to the
// program's own reading, which the backspace key does not go back into; and two keys behind an Esc
// that were typed before the call may be taken for one key of the keyboard that sends the same.
//
// A message is that of a key going down; there are none of a key going up. Its code is the
// platform's: the capital of a letter, 13 Enter, 37 the left arrow, 112 F1. Esc (27) is told from a
// key that begins with the same character by what follows it within 25 milliseconds; a call takes
// that long at most.
//
// The event pump has nothing to run: no window of this system waits for the calling thread.
#pragma once

#include <mutex>
#include <optional>
#include <string>

#include <kvarta16/platform/messages.h>

namespace kvarta16::posix {

class PosixMessages final : public Messages {
  public:
    [[nodiscard]] Long GetInputState() override;
    Long PeekMessageA(MSG& message, Long hwnd, Long first, Long last, Long remove) override;
    void DoEvents() override;

  private:
    [[nodiscard]] bool read_key();

    std::mutex mutex_;            // one terminal for all threads
    std::optional<MSG> waiting_;  // a key that has been looked at and not taken
    std::string read_ahead_;      // what has been read behind an Esc and belongs to other keys
};

}  // namespace kvarta16::posix
