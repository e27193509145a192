#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/platform/posix/child_programs.h>

namespace kvarta16::posix {
namespace {

constexpr int first_own_file = 3;  // behind standard input, output and error

// What the helper process and the program tell, each in one write.
struct Report {
    pid_t process = 0;
    int error = 0;
    int status = -1;  // as waitpid gives it; -1 until the program has ended
};

// ---- Descriptors ----------------------------------------------------------------------------

// A descriptor that is closed with its owner, and in every program that is started.
class File {
  public:
    File() = default;
    // Takes `file` over. It is never a standard one: where the host has closed those, a new file
    // gets their numbers, and the program's own would be put over it.
    explicit File(int file) : file_(file) {
        if (file >= 0 && file < first_own_file) {
            file_ = ::fcntl(file, F_DUPFD_CLOEXEC, first_own_file);
            const int error = errno;
            ::close(file);
            errno = error;
        }
    }
    ~File() { close(); }
    File(File&& other) noexcept : file_(std::exchange(other.file_, -1)) {}
    File& operator=(File&& other) noexcept {
        close();
        file_ = std::exchange(other.file_, -1);
        return *this;
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void close() {
        if (file_ >= 0) {
            ::close(std::exchange(file_, -1));
        }
    }
    [[nodiscard]] int number() const { return file_; }
    [[nodiscard]] bool is_open() const { return file_ >= 0; }

  private:
    int file_ = -1;
};

struct Pipe {
    File out;
    File in;
};

// Closed ends, and errno, if there is none to be had.
Pipe make_pipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    File out(ends[0]);
    return {std::move(out), File(ends[1])};
}

// Reads to the end what the other side writes.
std::string all_of(const File& file) {
    std::string text;
    std::array<char, 4096> bytes{};
    for (;;) {
        const ssize_t count = ::read(file.number(), bytes.data(), bytes.size());
        if (count > 0) {
            text.append(bytes.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

// What all the reports of a run say: a failed step, and how the program has ended.
Report read_reports(const File& file) {
    const std::string bytes = all_of(file);
    Report sum;
    sum.error = bytes.size() < sizeof sum ? ECANCELED : 0;  // the helper process has been killed
    for (std::size_t at = 0; at + sizeof sum <= bytes.size(); at += sizeof sum) {
        Report report;
        bytes.copy(reinterpret_cast<char*>(&report), sizeof report, at);
        sum = {report.process, sum.error != 0 ? sum.error : report.error, report.status};
    }
    return sum;
}

// ---- Behind the fork ------------------------------------------------------------------------
//
// Other threads of the host may have held any lock when it forked: from here on there are only
// calls that a signal handler may make, and no memory is allocated.

struct Plan {
    const char* path = nullptr;
    char* const* arguments = nullptr;
    int nothing = -1;  // /dev/null
    int output = -1;
    int report = -1;
    bool is_left = false;             // runs on by itself
    const timespec* limit = nullptr;  // none if null
};

void tell(int file, const Report& report) {
    // A host that has gone hears nothing any more.
    static_cast<void>(::write(file, &report, sizeof report) == sizeof report);
}

void reset_signals() {
    struct sigaction action {};
    action.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number) {
        ::sigaction(number, &action, nullptr);  // fails for those that cannot be set
    }
}

// Closes every file but `kept`, which becomes the first own one. The number of that.
int close_files_but(int kept) {
    if (kept != first_own_file) {
        ::dup3(kept, first_own_file, O_CLOEXEC);
    }
    ::closefrom(first_own_file + 1);
    return first_own_file;
}

[[noreturn]] void become_program(const Plan& plan) {
    if (plan.is_left) {
        ::setsid();
    }
    ::dup2(plan.nothing, STDIN_FILENO);
    ::dup2(plan.output, STDOUT_FILENO);
    ::dup2(plan.nothing, STDERR_FILENO);
    const int report = close_files_but(plan.report);
    tell(report, {::getpid(), 0, -1});
    sigset_t none;
    ::sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    ::execve(plan.path, plan.arguments, environ);
    tell(report, {::getpid(), errno, -1});
    ::_exit(127);
}

// Waits for the program, and kills it when its time is over.
int status_of(pid_t process, const timespec* limit) {
    sigset_t child_ended;
    ::sigemptyset(&child_ended);
    ::sigaddset(&child_ended, SIGCHLD);
    ::sigprocmask(SIG_SETMASK, &child_ended, nullptr);
    if (limit != nullptr && ::sigtimedwait(&child_ended, nullptr, limit) < 0) {
        ::kill(process, SIGKILL);
    }
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

// The helper process. All signals are blocked, so that no handler of the host runs in it.
[[noreturn]] void start_and_report(const Plan& plan) {
    reset_signals();
    const pid_t process = ::_Fork();
    if (process == 0) {
        become_program(plan);
    }
    if (process < 0) {
        tell(plan.report, {0, errno, -1});
    } else if (!plan.is_left) {
        const int report = close_files_but(plan.report);
        for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            ::close(file);
        }
        tell(report, {process, 0, status_of(process, plan.limit)});
    }
    ::_exit(0);
}

// ---- Before it ------------------------------------------------------------------------------

// Forks the helper process. Its number, or -1 and errno.
pid_t fork_helper(const Plan& plan) {
    sigset_t all;
    sigset_t before;
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t helper = ::fork();
    if (helper == 0) {
        start_and_report(plan);
    }
    const int error = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return helper;
}

void wait_for_helper(pid_t helper) {
    // A host that ignores SIGCHLD or waits for any child may have been quicker.
    while (::waitpid(helper, nullptr, 0) < 0 && errno == EINTR) {
    }
}

struct Run {
    Report report;
    std::string output;
};

Run failed(int error) {
    return {{0, error, -1}, {}};
}

Run run(Program program, bool is_left, const timespec* limit) {
    std::vector<char*> arguments;
    arguments.reserve(program.arguments.size() + 1);
    for (std::string& argument : program.arguments) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    const File nothing(::open("/dev/null", O_RDWR | O_CLOEXEC));
    Pipe report = make_pipe();
    Pipe output = is_left ? Pipe() : make_pipe();
    if (!nothing.is_open() || !report.in.is_open() || !(is_left || output.in.is_open())) {
        return failed(errno);
    }
    const int output_file = is_left ? nothing.number() : output.in.number();
    const pid_t helper = fork_helper({program.path.c_str(), arguments.data(), nothing.number(),
                                      output_file, report.in.number(), is_left, limit});
    if (helper < 0) {
        return failed(errno);
    }
    report.in.close();
    output.in.close();
    Run done;
    done.output = is_left ? "" : all_of(output.out);
    done.report = read_reports(report.out);
    wait_for_helper(helper);
    return done;
}

timespec timespec_of(std::chrono::milliseconds time) {
    constexpr int milliseconds = 1000;
    return {static_cast<std::time_t>(time.count() / milliseconds),
            static_cast<long>(time.count() % milliseconds * 1'000'000)};
}

std::string search_path() {
    const char* path = std::getenv("PATH");
    return path != nullptr ? path : "/usr/local/bin:/usr/bin:/bin";
}

}  // namespace

bool is_program_file(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
}

std::optional<std::string> program_on_path(const std::string& name) {
    std::optional<std::string> unusable;
    const std::string folders = search_path();
    for (std::size_t begin = 0; begin <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', begin), folders.size());
        const std::string file = folders.substr(begin, end - begin) + '/' + name;
        if (end > begin && is_program_file(file)) {
            if (::access(file.c_str(), X_OK) == 0) {
                return file;
            }
            unusable = unusable.value_or(file);
        }
        begin = end + 1;
    }
    return unusable;
}

Started start_program(Program program) {
    const Report report = run(std::move(program), true, nullptr).report;
    return report.error == 0 ? Started{report.process, 0} : Started{0, report.error};
}

std::optional<Ended> run_program(const std::vector<std::string>& words,
                                 std::optional<std::chrono::milliseconds> limit) {
    const std::optional<std::string> path = program_on_path(words.front());
    if (!path) {
        return std::nullopt;
    }
    const timespec time = timespec_of(limit.value_or(std::chrono::milliseconds(0)));
    Run done = run({*path, words}, false, limit ? &time : nullptr);
    const Report& report = done.report;
    if (report.error != 0) {
        return std::nullopt;
    }
    constexpr int signal_status = 128;
    const int status = WIFEXITED(report.status) ? WEXITSTATUS(report.status)
                                                : signal_status + WTERMSIG(report.status);
    return Ended{status, std::move(done.output)};
}

}  // namespace kvarta16::posix
