#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <grp.h>
#include <netinet/in.h>
#include <pwd.h>
#include <support/server_process.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kvarta16::testing_support {

ServerUser::ServerUser(const std::vector<const char*>& names) {
    for (const char* name : names) {
        const passwd* found = ::geteuid() == 0 ? ::getpwnam(name) : nullptr;
        if (found != nullptr) {
            user_ = found->pw_uid;
            group_ = found->pw_gid;
            is_other_ = true;
            return;
        }
    }
}

void ServerUser::own(const std::filesystem::path& path) const {
    if (is_other_ && ::chown(path.c_str(), user_, group_) != 0) {
        throw std::runtime_error("cannot give away " + path.string());
    }
}

bool ServerUser::become() const {
    return !is_other_ ||
           (::setgroups(0, nullptr) == 0 && ::setgid(group_) == 0 && ::setuid(user_) == 0);
}

Process::Process(const Command& command, const std::string& output, const ServerUser& user,
                 int stop_signal)
    : stop_signal_(stop_signal) {
    const pid_t parent = ::getpid();
    const int file = ::open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    id_ = ::fork();
    if (id_ == 0) {
        run(command, file, user, parent);
    }
    ::close(file);
    if (id_ < 0) {
        throw std::runtime_error("no process for " + command.front());
    }
}

Process::~Process() {
    stop();
}

bool Process::is_running() {
    if (id_ > 0 && ::waitpid(id_, &status_, WNOHANG) == id_) {
        id_ = -1;
    }
    return id_ > 0;
}

int Process::wait() {
    while (id_ > 0 && ::waitpid(id_, &status_, 0) < 0 && errno == EINTR) {
    }
    id_ = -1;
    return status_;
}

void Process::kill() {
    if (is_running()) {
        ::kill(id_, SIGKILL);
        wait();
    }
}

void Process::stop() {
    using namespace std::chrono_literals;
    if (is_running()) {
        ::kill(id_, stop_signal_);
    }
    for (int i = 0; i < 200 && is_running(); ++i) {
        std::this_thread::sleep_for(50ms);
    }
    kill();
}

void Process::run(const Command& command, int file, const ServerUser& user, pid_t parent) const {
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(file, STDOUT_FILENO);
    ::dup2(file, STDERR_FILENO);
    // Asked for under the user that it stays: changing the user forgets it.
    if (!user.become() || ::prctl(PR_SET_PDEATHSIG, stop_signal_) != 0 || ::getppid() != parent ||
        ::chdir("/") != 0) {
        ::_exit(126);
    }
    std::vector<char*> arguments;
    for (const std::string& word : command) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    ::execv(arguments.front(), arguments.data());
    ::_exit(127);
}

std::string text_of_file(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string output_of(const Command& command, const std::string& scratch, const ServerUser& user) {
    std::filesystem::remove(scratch);
    Process process(command, scratch, user, SIGTERM);
    const int status = process.wait();
    std::string text = text_of_file(scratch);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw std::runtime_error(command.front() + " failed: " + text);
    }
    return text;
}

ServerFolder::ServerFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kvarta16-server-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder " + name);
    }
    path_ = name;
    std::filesystem::permissions(path_, std::filesystem::perms(0755));
}

ServerFolder::~ServerFolder() {
    std::error_code ignored;  // what cannot be removed stays, and the test has its result
    std::filesystem::remove_all(path_, ignored);
}

std::string ServerFolder::operator/(const std::string& name) const {
    return (path_ / name).string();
}

namespace {

bool can_listen(const sockaddr* address, socklen_t size) {
    const int socket = ::socket(address->sa_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) {
        return errno == EAFNOSUPPORT;  // nobody else listens there either
    }
    const bool is_bound = ::bind(socket, address, size) == 0 || errno == EADDRNOTAVAIL;
    ::close(socket);
    return is_bound;
}

bool is_free(int port) {
    sockaddr_in v4{};
    v4.sin_family = AF_INET;
    v4.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    v4.sin_port = htons(static_cast<std::uint16_t>(port));
    sockaddr_in6 v6{};
    v6.sin6_family = AF_INET6;
    v6.sin6_addr = in6addr_loopback;
    v6.sin6_port = v4.sin_port;
    return can_listen(reinterpret_cast<const sockaddr*>(&v4), sizeof v4) &&
           can_listen(reinterpret_cast<const sockaddr*>(&v6), sizeof v6);
}

}  // namespace

int free_port() {
    // Below the ports that the system itself hands out for connections: until the server listens,
    // nobody gets this one by chance. Programs that run at the same time start at places of their
    // own, by their numbers; the step and the count of the ports have no common divisor.
    constexpr int first = 15000;
    constexpr int count = 17768;
    constexpr int ports_a_program = 13;
    static int asked = 0;
    const int start = static_cast<int>(std::int64_t{::getpid()} * ports_a_program % count);
    for (int tries = 0; tries < count; ++tries) {
        const int port = first + (start + asked++) % count;
        if (is_free(port)) {
            return port;
        }
    }
    throw std::runtime_error("no free port");
}

std::string program_at(const std::vector<std::string>& paths) {
    namespace fs = std::filesystem;
    for (const std::string& path : paths) {
        const std::size_t star = path.find('*');
        if (star == std::string::npos) {
            if (fs::exists(path)) {
                return path;
            }
            continue;
        }
        std::error_code none;
        std::string best;
        for (const auto& entry : fs::directory_iterator(path.substr(0, star), none)) {
            const std::string candidate = entry.path().string() + path.substr(star + 1);
            best = fs::exists(candidate) ? std::max(best, candidate) : best;
        }
        if (!best.empty()) {
            return best;
        }
    }
    return "";
}

}  // namespace kvarta16::testing_support
