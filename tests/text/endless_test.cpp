// The calls that do not return. Each runs in a process of its own, which a signal ends when it has
// used up its time on the processor; one that ends by itself before has returned.

#include <csignal>

#include <gtest/gtest.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <kvarta16/text/aChar.h>

namespace kvarta16 {
namespace {

enum class Outcome { Returned, StillRunning, Other };

// Lets a call run for 300 ms of processor time.
template <class Call>
Outcome outcome_of(Call&& call) {
    const pid_t child = fork();
    if (child == 0) {
        const itimerval allowed{{0, 0}, {0, 300'000}};
        if (setitimer(ITIMER_PROF, &allowed, nullptr) != 0) {
            _exit(2);
        }
        alarm(120);  // should the call wait instead of running
        call();
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) {
        return Outcome::Other;
    }
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        return Outcome::Returned;
    }
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGPROF ? Outcome::StillRunning
                                                              : Outcome::Other;
}

struct Apostrof3Case {
    StringView a;
    Outcome outcome;
};

TEST(Endless, Apostrof3WithAQuoteInFirstPlace) {
    constexpr Apostrof3Case cases[] = {
        {u"'", Outcome::StillRunning},     {u"''", Outcome::StillRunning},
        {u"'a", Outcome::StillRunning},    {u"'abc'd", Outcome::StillRunning},
        {u"\"", Outcome::StillRunning},    {u"\"abc", Outcome::StillRunning},
        {u"\"a'b", Outcome::StillRunning}, {u"'\"", Outcome::StillRunning},
        {u"a'\"", Outcome::Returned},      {u" 'a", Outcome::Returned},
        {u"", Outcome::Returned},
    };
    for (const Apostrof3Case& test : cases) {
        const Outcome outcome = outcome_of([&test] {
            String a(test.a);
            aChar().apostrof3(a);
        });
        EXPECT_EQ(outcome, test.outcome) << testing::PrintToString(String(test.a));
    }
}

struct Replace2Case {
    StringView a;
    StringView z;
    StringView doo;
    Outcome outcome;
};

TEST(Endless, Replace2ThatBringsItsMatchBack) {
    constexpr Replace2Case cases[] = {
        {u"abc", u"b", u"b", Outcome::StillRunning},
        {u"abc", u"b", u"B", Outcome::StillRunning},
        {u"abc", u"b", u"bx", Outcome::StillRunning},
        {u"abc", u"B", u"xb", Outcome::Returned},  // wanders to the end of the text
        {u"abc", u"c", u"C", Outcome::StillRunning},
        {u"a łoś", u"ŁO", u"ło", Outcome::StillRunning},
        {u"abcabc", u"bc", u"bcabc", Outcome::StillRunning},
        {u"abcabc", u"bc", u"abc", Outcome::Returned},
        {u"abc", u"", u"", Outcome::StillRunning},
        {u"abc", u"", u"x", Outcome::StillRunning},
        {u"a", u"", u"longer than a", Outcome::StillRunning},
        {u"a b", u" ", u"", Outcome::StillRunning},  // the blank that fills up is the match
        {u"abb", u"b ", u"b", Outcome::Returned},    // "b " is not in a
        {u"ab cd", u"b ", u"b", Outcome::StillRunning},
        {u"", u"", u"x", Outcome::Returned},
        {u"abc", u"b", u"x", Outcome::Returned},
        {u"xyz", u"b", u"b", Outcome::Returned},   // nothing to overwrite
        {u"xyb", u"b", u"ab", Outcome::Returned},  // the end of the text cuts the match off
    };
    for (const Replace2Case& test : cases) {
        const Outcome outcome = outcome_of([&test] {
            String a(test.a);
            aChar().Replace2(a, test.z, test.doo);
        });
        EXPECT_EQ(outcome, test.outcome) << testing::PrintToString(String(test.a)) << " "
                                         << testing::PrintToString(String(test.z)) << " "
                                         << testing::PrintToString(String(test.doo));
    }
}

}  // namespace
}  // namespace kvarta16
