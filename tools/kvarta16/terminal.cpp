#include "terminal.h"

#include <csignal>
#include <iostream>
#include <utility>

#include <unistd.h>

namespace kvarta16::tool {
namespace {

volatile std::sig_atomic_t is_interrupted = 0;

constexpr int watched_signals[] = {SIGINT, SIGTERM};

// Back to a fresh line, and what stands there gone.
constexpr const char* clear_line = "\r\033[K";

}  // namespace

ProgressBar::ProgressBar(std::string title, std::size_t total)
    : title_(std::move(title)), total_(total), is_visible_(::isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar() {
    if (is_visible_) {
        std::cerr << clear_line << std::flush;
    }
}

void ProgressBar::show(std::size_t done) {
    constexpr std::size_t width = 40;
    const std::size_t percent = done * 100 / total_;
    if (!is_visible_ || percent == percent_) {
        return;
    }
    percent_ = percent;
    const std::size_t full = percent * width / 100;
    std::cerr << clear_line << title_ << " [" << std::string(full, '#')
              << std::string(width - full, '.') << "] " << percent << " %" << std::flush;
}

InterruptWatch::InterruptWatch() {
    struct sigaction action {};
    action.sa_handler = [](int) { is_interrupted = 1; };
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int signal : watched_signals) {
        ::sigaction(signal, &action, nullptr);
    }
}

InterruptWatch::~InterruptWatch() {
    for (const int signal : watched_signals) {
        std::signal(signal, SIG_DFL);
    }
}

void InterruptWatch::check() {
    if (is_interrupted != 0) {
        throw Interrupted();
    }
}

}  // namespace kvarta16::tool
