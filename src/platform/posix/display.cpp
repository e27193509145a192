#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <kvarta16/platform/posix/display.h>

namespace kvarta16::posix {
namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// Whether somebody listens at a local address; one that begins with a NUL is no file.
bool is_answered(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() > sizeof address.sun_path) {
        return false;
    }
    path.copy(address.sun_path, path.size());
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (socket < 0) {
        return false;
    }
    const bool answered = ::connect(socket, reinterpret_cast<sockaddr*>(&address), size) == 0;
    ::close(socket);
    return answered;
}

}  // namespace

bool has_x_display() {
    const std::string display = environment("DISPLAY");
    const std::size_t colon = display.rfind(':');
    if (colon == std::string::npos) {
        return false;
    }
    const std::string_view host = std::string_view(display).substr(0, colon);
    if (!host.empty() && host != "unix") {
        return true;
    }
    const std::string number = display.substr(colon + 1, display.find('.', colon) - colon - 1);
    const std::string path = "/tmp/.X11-unix/X" + number;
    return is_answered(std::string(1, '\0') + path) || is_answered(path);
}

bool has_display() {
    const std::string name = environment("WAYLAND_DISPLAY");
    if (!name.empty()) {
        const bool is_path = name.front() == '/';
        if (is_answered(is_path ? name : environment("XDG_RUNTIME_DIR") + '/' + name)) {
            return true;
        }
    }
    return has_x_display();
}

}  // namespace kvarta16::posix
