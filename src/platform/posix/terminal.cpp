#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include <kvarta16/platform/posix/terminal.h>

namespace kvarta16::posix {

TerminalScreen::TerminalScreen() {
    if (::isatty(STDIN_FILENO) == 0) {
        return;
    }
    if (::isatty(STDERR_FILENO) != 0) {
        file_ = STDERR_FILENO;
    } else {
        file_ = ::open("/dev/tty", O_WRONLY | O_NOCTTY | O_CLOEXEC);
        is_own_ = file_ >= 0;
    }
}

TerminalScreen::~TerminalScreen() {
    if (is_own_) {
        ::close(file_);
    }
}

void write_all(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(file, text.data(), text.size());
        if (written >= 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return;
        }
    }
}

bool read_line(int file, std::string& line) {
    line.clear();
    for (;;) {
        char byte = 0;
        const ssize_t count = ::read(file, &byte, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        if (byte == '\n') {
            return true;
        }
        line += byte;
    }
}

}  // namespace kvarta16::posix
