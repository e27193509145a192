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

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <netinet/in.h>

namespace kvarta16::testing_support {

// A socket of the test's own making. Whatever fails ends the script.
class TestSocket {
  public:
    TestSocket() = default;
    explicit TestSocket(int file);
    ~TestSocket();
    TestSocket(TestSocket&& other) noexcept;
    TestSocket& operator=(TestSocket&& other) noexcept;
    TestSocket(const TestSocket&) = delete;
    TestSocket& operator=(const TestSocket&) = delete;

    // On a free port of the address.
    static TestSocket listening(in_addr_t host = INADDR_LOOPBACK);
    // From `from` to a port of this machine.
    static TestSocket connected(int port, in_addr_t from = INADDR_LOOPBACK);

    [[nodiscard]] int port() const;
    // Whether something arrives within the time: data, a connection, the end.
    [[nodiscard]] bool is_ready(int milliseconds = 5000) const;
    [[nodiscard]] TestSocket accept() const;
    // False when the other side has gone.
    bool send(std::string_view bytes) const;
    // "" at the end of the connection.
    [[nodiscard]] std::string receive(std::size_t most) const;
    [[nodiscard]] std::string receive_all() const;
    void reset();
    void close();

  private:
    static sockaddr_in address_of(in_addr_t host, int port);

    int file_ = -1;
};

// The server's end of the control connection.
class FtpPeer {
  public:
    explicit FtpPeer(TestSocket control);

    TestSocket& control() { return control_; }
    void say(std::string_view line);

    // The next command; "" when the client has gone.
    std::string hear();
    // Hears a command that begins like this, and nothing else.
    std::string expect(const std::string& beginning);
    void answer(const std::string& beginning, std::string_view reply);

    void log_in(std::string_view features = "502 No features");

    // Answers EPSV with a port of its own. The connection waits until accept_data().
    void open_passive();
    TestSocket accept_data();

    // A whole answer to a command that fetches.
    void serve_data(const std::string& command, std::string_view bytes,
                    std::string_view last_word = "226 Done");

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

    explicit ScriptedFtpServer(Script script);
    ~ScriptedFtpServer();
    ScriptedFtpServer(const ScriptedFtpServer&) = delete;
    ScriptedFtpServer& operator=(const ScriptedFtpServer&) = delete;
    ScriptedFtpServer(ScriptedFtpServer&&) = delete;
    ScriptedFtpServer& operator=(ScriptedFtpServer&&) = delete;

    [[nodiscard]] int port() const { return port_; }

    // Both wait for the end of the script.
    const std::vector<std::string>& heard();
    const std::string& problems();

  private:
    void wait();
    void serve(const Script& script);

    TestSocket listener_;
    int port_;
    std::vector<std::string> heard_;
    std::string problems_;
    std::thread thread_;
};

}  // namespace kvarta16::testing_support
