#include <algorithm>
#include <exception>
#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <poll.h>
#include <support/scripted_ftp_server.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kvarta16::testing_support {

TestSocket::TestSocket(int file) : file_(file) {}

TestSocket::~TestSocket() {
    close();
}

TestSocket::TestSocket(TestSocket&& other) noexcept : file_(std::exchange(other.file_, -1)) {}

TestSocket& TestSocket::operator=(TestSocket&& other) noexcept {
    std::swap(file_, other.file_);
    return *this;
}

TestSocket TestSocket::listening(in_addr_t host) {
    TestSocket socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = address_of(host, 0);
    if (::bind(socket.file_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::listen(socket.file_, 8) != 0) {
        throw std::runtime_error("cannot listen");
    }
    return socket;
}

TestSocket TestSocket::connected(int port, in_addr_t from) {
    TestSocket socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in own = address_of(from, 0);
    sockaddr_in other = address_of(INADDR_LOOPBACK, port);
    if (::bind(socket.file_, reinterpret_cast<sockaddr*>(&own), sizeof own) != 0 ||
        ::connect(socket.file_, reinterpret_cast<sockaddr*>(&other), sizeof other) != 0) {
        throw std::runtime_error("cannot connect");
    }
    return socket;
}

int TestSocket::port() const {
    sockaddr_in address{};
    socklen_t size = sizeof address;
    ::getsockname(file_, reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

bool TestSocket::is_ready(int milliseconds) const {
    pollfd file{file_, POLLIN, 0};
    return ::poll(&file, 1, milliseconds) > 0;
}

TestSocket TestSocket::accept() const {
    if (!is_ready()) {
        throw std::runtime_error("nobody connects");
    }
    return TestSocket(::accept4(file_, nullptr, nullptr, SOCK_CLOEXEC));
}

bool TestSocket::send(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::send(file_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::string TestSocket::receive(std::size_t most) const {
    std::string bytes(most, '\0');
    const ssize_t count = is_ready() ? ::recv(file_, bytes.data(), bytes.size(), 0) : -1;
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return bytes;
}

std::string TestSocket::receive_all() const {
    std::string all;
    for (std::string part = receive(65536); !part.empty(); part = receive(65536)) {
        all += part;
    }
    return all;
}

void TestSocket::reset() {
    const linger at_once{1, 0};
    ::setsockopt(file_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
    close();
}

void TestSocket::close() {
    if (file_ >= 0) {
        ::close(std::exchange(file_, -1));
    }
}

sockaddr_in TestSocket::address_of(in_addr_t host, int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(host);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

FtpPeer::FtpPeer(TestSocket control) : control_(std::move(control)) {}

void FtpPeer::say(std::string_view line) {
    control_.send(std::string(line) + "\r\n");
}

std::string FtpPeer::hear() {
    for (;;) {
        const std::size_t end = input_.find("\r\n");
        if (end != std::string::npos) {
            const std::string line = input_.substr(0, end);
            input_.erase(0, end + 2);
            heard_.push_back(line);
            return line;
        }
        const std::string part = control_.receive(4096);
        if (part.empty()) {
            return "";
        }
        input_ += part;
    }
}

std::string FtpPeer::expect(const std::string& beginning) {
    std::string line = hear();
    if (!line.starts_with(beginning)) {
        problems_ += "expected " + beginning + ", heard " + line + "\n";
    }
    return line;
}

void FtpPeer::answer(const std::string& beginning, std::string_view reply) {
    expect(beginning);
    say(reply);
}

void FtpPeer::log_in(std::string_view features) {
    say("220 Ready");
    answer("USER", "331 Password");
    answer("PASS", "230 In");
    answer("FEAT", features);
    if (features.find("UTF8") != std::string_view::npos) {
        answer("OPTS", "200 On");
    }
    answer("TYPE I", "200 Binary");
}

void FtpPeer::open_passive() {
    listener_ = TestSocket::listening();
    answer("EPSV", "229 Passive (|||" + std::to_string(listener_.port()) + "|)");
}

TestSocket FtpPeer::accept_data() {
    return listener_.accept();
}

void FtpPeer::serve_data(const std::string& command, std::string_view bytes,
                         std::string_view last_word) {
    open_passive();
    answer(command, "150 Here it comes");
    TestSocket data = accept_data();
    data.send(bytes);
    data.close();
    say(last_word);
}

ScriptedFtpServer::ScriptedFtpServer(Script script)
    : listener_(TestSocket::listening()),
      port_(listener_.port()),
      thread_([this, script = std::move(script)] { serve(script); }) {}

ScriptedFtpServer::~ScriptedFtpServer() {
    wait();
}

const std::vector<std::string>& ScriptedFtpServer::heard() {
    wait();
    return heard_;
}

const std::string& ScriptedFtpServer::problems() {
    wait();
    return problems_;
}

void ScriptedFtpServer::wait() {
    if (thread_.joinable()) {
        thread_.join();
    }
}

void ScriptedFtpServer::serve(const Script& script) {
    try {
        FtpPeer peer(listener_.accept());
        try {
            script(peer);
        } catch (const std::exception& failure) {
            problems_ = std::string(failure.what()) + "\n";
        }
        problems_ += peer.problems();
        heard_ = peer.heard();
    } catch (const std::exception& failure) {
        problems_ = failure.what();
    }
}

}  // namespace kvarta16::testing_support
