// The terminal on which a person is asked and told things.
#pragma once

#include <string>
#include <string_view>

namespace kvarta16::posix {

// Where a person who can answer sees what is written: standard error or, where that has been
// redirected, the controlling terminal. Nowhere if standard input is no terminal.
class TerminalScreen {
  public:
    TerminalScreen();
    ~TerminalScreen();
    TerminalScreen(const TerminalScreen&) = delete;
    TerminalScreen& operator=(const TerminalScreen&) = delete;
    TerminalScreen(TerminalScreen&&) = delete;
    TerminalScreen& operator=(TerminalScreen&&) = delete;

    [[nodiscard]] bool is_there() const { return file_ >= 0; }
    [[nodiscard]] int file() const { return file_; }

  private:
    int file_ = -1;
    bool is_own_ = false;
};

// Nothing can be done for a text that cannot be shown; what it asks is asked all the same.
void write_all(int file, std::string_view text);

// The next line without its end. Read byte by byte, so that what stands behind it is left to the
// program. False at the end of the input, a line without an end included.
[[nodiscard]] bool read_line(int file, std::string& line);

}  // namespace kvarta16::posix
