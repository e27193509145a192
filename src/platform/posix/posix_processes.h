// Programs and keys on a POSIX system.
//
// Shell: the command line is taken apart as in command_line.h, and the program is
//
//   a name with a separator or a drive    a Windows path, as in posix_paths.h
//   any other name                        in the folders of PATH, by exactly this name; the
//                                         current directory is not searched
//
// The program is started by itself: no shell reads the line, and what is no program that the
// system can run (75) is not given to one either. It gets the environment and the current
// directory, nothing to read, and what it writes goes nowhere: a program of the platform would have
// a window of its own for that. It is in a session of its own, so no Ctrl-C at the caller's
// terminal ends it; its task number is its process number and that of its process group. The
// style says nothing here: a program of this system brings up its windows as it likes.
//
// AppActivate and SendKeys: through the program xdotool on an X display (DISPLAY), windows of an
// XWayland included; 5 where either is missing. Windows on the screen come before others. This
// process has no window that could wait for the focus: `wait` of AppActivate does nothing. Keys
// have been taken by the display when SendKeys returns, with `wait` and without; whether a program
// has worked on them no one can tell. Characters beyond ASCII go slowly, five a second: one that
// the keyboard layout of the display lacks is put on it for that time, and a program that is busy
// for longer may miss it.
#pragma once

#include <kvarta16/platform/processes.h>

namespace kvarta16::posix {

class PosixProcesses final : public Processes {
  public:
    [[nodiscard]] Double Shell(StringView command_line, Integer style) override;
    void AppActivate(StringView title, bool wait) override;
    void SendKeys(StringView keys, bool wait) override;
};

}  // namespace kvarta16::posix
