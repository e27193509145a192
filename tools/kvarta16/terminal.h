// What the tool does with the terminal that it runs on, where there is one.
#pragma once

#include <cstddef>
#include <exception>
#include <string>

namespace kvarta16::tool {

// A bar on standard error while long work runs; nothing where that is no terminal.
class ProgressBar {
  public:
    ProgressBar(std::string title, std::size_t total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ProgressBar(ProgressBar&&) = delete;
    ProgressBar& operator=(ProgressBar&&) = delete;

    // `done` of the total are done. Drawn when the percentage moves.
    void show(std::size_t done);

  private:
    std::string title_;
    std::size_t total_;
    std::size_t percent_ = 101;  // of what is drawn; none so far
    bool is_visible_;
};

// The person has asked to stop.
class Interrupted final : public std::exception {
  public:
    [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

// While one lives, Ctrl-C and the request to end do not end the process but are kept, so that the
// work in hand can be taken back in order. A second one ends it.
class InterruptWatch {
  public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    InterruptWatch(InterruptWatch&&) = delete;
    InterruptWatch& operator=(InterruptWatch&&) = delete;

    // Throws Interrupted if one has come, under this watch or an earlier one.
    static void check();
};

}  // namespace kvarta16::tool
