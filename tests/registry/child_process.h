// Work done in a process of its own, which may have less rights, or be killed.
#pragma once

#include <cerrno>
#include <csignal>
#include <stdexcept>

#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kvarta16::registry_tests {

// The child's number; in it `work` is done and nothing else.
template <class Work>
pid_t start_child(Work work) {
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("no process for the test");
    }
    if (child == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);  // also where the parent's test has given up
        int status = 2;
        try {
            status = work() ? 0 : 1;
        } catch (...) {  // told by the status: nothing of the parent may run here
        }
        ::_exit(status);
    }
    return child;
}

// The status as waitpid gives it.
inline int wait_for(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

// Whether `work` answers true in a child.
template <class Work>
bool succeeds_in_child(Work work) {
    const int status = wait_for(start_child(work));
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// As a disk that is full: no file grows beyond it.
inline void limit_file_size(rlim_t bytes) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

}  // namespace kvarta16::registry_tests
