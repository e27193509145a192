// An FTP server that says what a test tells it to say, however wrong: a thread that serves one
// control connection on a free port of this machine.
//
//   ScriptedFtpServer server([](FtpPeer& peer) {
//       peer.log_in();
//       peer.answer("PWD", "257 \"/\"");
//   });
//   ... a client on server.port() ...
//   EXPECT_EQ(server.heard(), (std::vector<std::string>{"USER ola", ...}));
//
// Nothing in the script waits longer than a few seconds; what the client did not do as the script
// expects is in problems().
#pragma once

#include <array>
#include <cerrno>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kvarta16::testing_support {

// A socket of the test's own making. Whatever fails ends the script.
class TestSocket {
  public:
    TestSocket() = default;
    explicit TestSocket(int file) : file_(file) {}
    ~TestSocket() { close(); }
    TestSocket(TestSocket&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
    TestSocket& operator=(TestSocket&& other) noexcept {
        std::swap(file_, other.file_);
        return *this;
    }
    TestSocket(const TestSocket&) = delete;
    TestSocket& operator=(const TestSocket&) = delete;

    // On a free port of the address.
    static TestSocket listening(in_addr_t host = INADDR_LOOPBACK) {
        TestSocket socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in address = address_of(host, 0);
        if (::bind(socket.file_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(socket.file_, 8) != 0) {
            throw std::runtime_error("cannot listen");
        }
        return socket;
    }
    // From `from` to a port of this machine.
    static TestSocket connected(int port, in_addr_t from = INADDR_LOOPBACK) {
        TestSocket socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
        sockaddr_in own = address_of(from, 0);
        sockaddr_in other = address_of(INADDR_LOOPBACK, port);
        if (::bind(socket.file_, reinterpret_cast<sockaddr*>(&own), sizeof own) != 0 ||
            ::connect(socket.file_, reinterpret_cast<sockaddr*>(&other), sizeof other) != 0) {
            throw std::runtime_error("cannot connect");
        }
        return socket;
    }

    [[nodiscard]] int port() const {
        sockaddr_in address{};
        socklen_t size = sizeof address;
        ::getsockname(file_, reinterpret_cast<sockaddr*>(&address), &size);
        return ntohs(address.sin_port);
    }
    // Whether something arrives within the time: data, a connection, the end.
    [[nodiscard]] bool is_ready(int milliseconds = 5000) const {
        pollfd file{file_, POLLIN, 0};
        return ::poll(&file, 1, milliseconds) > 0;
    }
    [[nodiscard]] TestSocket accept() const {
        if (!is_ready()) {
            throw std::runtime_error("nobody connects");
        }
        return TestSocket(::accept4(file_, nullptr, nullptr, SOCK_CLOEXEC));
    }
    // False when the other side has gone.
    bool send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = ::send(file_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
        return true;
    }
    // "" at the end of the connection.
    [[nodiscard]] std::string receive(std::size_t most) const {
        std::string bytes(most, '\0');
        const ssize_t count = is_ready() ? ::recv(file_, bytes.data(), bytes.size(), 0) : -1;
        bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        return bytes;
    }
    [[nodiscard]] std::string receive_all() const {
        std::string all;
        for (std::string part = receive(65536); !part.empty(); part = receive(65536)) {
            all += part;
        }
        return all;
    }
    void reset() {
        const linger at_once{1, 0};
        ::setsockopt(file_, SOL_SOCKET, SO_LINGER, &at_once, sizeof at_once);
        close();
    }
    void close() {
        if (file_ >= 0) {
            ::close(std::exchange(file_, -1));
        }
    }

  private:
    static sockaddr_in address_of(in_addr_t host, int port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(host);
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        return address;
    }

    int file_ = -1;
};

// The server's end of the control connection.
class FtpPeer {
  public:
    explicit FtpPeer(TestSocket control) : control_(std::move(control)) {}

    TestSocket& control() { return control_; }
    void say(std::string_view line) { control_.send(std::string(line) + "\r\n"); }

    // The next command; "" when the client has gone.
    std::string hear() {
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
    // Hears a command that begins like this, and nothing else.
    std::string expect(const std::string& beginning) {
        std::string line = hear();
        if (!line.starts_with(beginning)) {
            problems_ += "expected " + beginning + ", heard " + line + "\n";
        }
        return line;
    }
    void answer(const std::string& beginning, std::string_view reply) {
        expect(beginning);
        say(reply);
    }

    void log_in(std::string_view features = "502 No features") {
        say("220 Ready");
        answer("USER", "331 Password");
        answer("PASS", "230 In");
        answer("FEAT", features);
        if (features.find("UTF8") != std::string_view::npos) {
            answer("OPTS", "200 On");
        }
        answer("TYPE I", "200 Binary");
    }

    // Answers EPSV with a port of its own. The connection waits until accept_data().
    void open_passive() {
        listener_ = TestSocket::listening();
        answer("EPSV", "229 Passive (|||" + std::to_string(listener_.port()) + "|)");
    }
    TestSocket accept_data() { return listener_.accept(); }

    // A whole answer to a command that fetches.
    void serve_data(const std::string& command, std::string_view bytes,
                    std::string_view last_word = "226 Done") {
        open_passive();
        answer(command, "150 Here it comes");
        TestSocket data = accept_data();
        data.send(bytes);
        data.close();
        say(last_word);
    }

    [[nodiscard]] const std::vector<std::string>& heard() const { return heard_; }
    [[nodiscard]] const std::string& problems() const { return problems_; }

  private:
    TestSocket control_;
    TestSocket listener_;
    std::string input_;
    std::vector<std::string> heard_;
    std::string problems_;
};

class ScriptedFtpServer {
  public:
    using Script = std::function<void(FtpPeer&)>;

    explicit ScriptedFtpServer(Script script)
        : listener_(TestSocket::listening()),
          port_(listener_.port()),
          thread_([this, script = std::move(script)] { serve(script); }) {}
    ~ScriptedFtpServer() { wait(); }
    ScriptedFtpServer(const ScriptedFtpServer&) = delete;
    ScriptedFtpServer& operator=(const ScriptedFtpServer&) = delete;
    ScriptedFtpServer(ScriptedFtpServer&&) = delete;
    ScriptedFtpServer& operator=(ScriptedFtpServer&&) = delete;

    [[nodiscard]] int port() const { return port_; }

    // Both wait for the end of the script.
    const std::vector<std::string>& heard() {
        wait();
        return heard_;
    }
    const std::string& problems() {
        wait();
        return problems_;
    }

  private:
    void wait() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }
    void serve(const Script& script) {
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

    TestSocket listener_;
    int port_;
    std::vector<std::string> heard_;
    std::string problems_;
    std::thread thread_;
};

}  // namespace kvarta16::testing_support
