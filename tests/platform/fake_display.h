// A display that answers and does nothing else: a socket under the name of one that no X server
// has, for as long as it lives. It leaves no file.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "program_files.h"

namespace kvarta16::posix {

class FakeDisplay {
  public:
    FakeDisplay() : variable_("DISPLAY", ":" + listen()), wayland_("WAYLAND_DISPLAY", {}) {}
    ~FakeDisplay() { ::close(socket_); }
    FakeDisplay(const FakeDisplay&) = delete;
    FakeDisplay& operator=(const FakeDisplay&) = delete;
    FakeDisplay(FakeDisplay&&) = delete;
    FakeDisplay& operator=(FakeDisplay&&) = delete;

  private:
    // The number of the display, which the process's own makes free.
    std::string listen() {
        std::string number = std::to_string(100'000 + ::getpid());
        const std::string path = std::string(1, '\0') + "/tmp/.X11-unix/X" + number;
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, path.size());
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size());
        socket_ = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::bind(socket_, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
            ::listen(socket_, 128) != 0) {
            throw std::runtime_error("no socket for a display");
        }
        return number;
    }

    int socket_ = -1;
    ScopedVariable variable_;
    ScopedVariable wayland_;
};

}  // namespace kvarta16::posix
