#include "platform/posix/termination_signals.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <functional>
#include <optional>
#include <set>

namespace lomaris::test {
namespace {

constexpr std::array<int, 3> endingSignals{SIGTERM, SIGINT, SIGHUP};

/// Runs `body` in a child process in which the signals have their default actions. Returns its exit status, or the
/// negated number of the signal that ended it.
int statusOf(const std::function<int()>& body) {
    const pid_t process = fork();
    if (process == 0) {
        // The program may have been started with signals ignored.
        for (const int signal : endingSignals) {
            std::signal(signal, SIG_DFL);
        }
        _exit(body());
    }
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

bool isReadable(int descriptor) {
    pollfd request{.fd = descriptor, .events = POLLIN, .revents = 0};
    return poll(&request, 1, 0) == 1 && (request.revents & POLLIN) != 0;
}

std::set<int> openDescriptors() {
    std::set<int> descriptors;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) != -1) {
            descriptors.insert(descriptor);
        }
    }
    return descriptors;
}

TEST(TerminationSignals, EndTheProcessWhenItIsReady) {
    for (const int signal : endingSignals) {
        const int status = statusOf([signal] {
            TerminationSignals signals;
            if (signals.pending() || isReadable(signals.descriptor())) {
                return 1;
            }
            std::raise(signal);
            if (signals.pending() != signal || !isReadable(signals.descriptor())) {
                return 2;
            }
            signals.endProcess();
        });
        EXPECT_EQ(status, -signal);
    }
}

TEST(TerminationSignals, EndTheProcessAtOnceTheSecondTimeIfAllowed) {
    const int status = statusOf([] {
        TerminationSignals signals;
        signals.setSecondSignalEnds(true);
        std::raise(SIGINT);
        if (signals.pending() != SIGINT) {
            return 1;
        }
        std::raise(SIGTERM);
        return 2;
    });
    EXPECT_EQ(status, -SIGTERM);
}

TEST(TerminationSignals, AreIgnoredTheSecondTimeUnlessAllowed) {
    const int status = statusOf([] {
        TerminationSignals signals;
        signals.setSecondSignalEnds(true);
        signals.setSecondSignalEnds(false);
        std::raise(SIGINT);
        std::raise(SIGINT);
        return 0;
    });
    EXPECT_EQ(status, 0);
}

TEST(TerminationSignals, EndTheProcessWithTheFirstSignal) {
    const int status = statusOf([] {
        TerminationSignals signals;
        std::raise(SIGINT);
        std::raise(SIGTERM);
        std::raise(SIGINT);
        if (signals.pending() != SIGINT) {
            return 1;
        }
        signals.endProcess();
    });
    EXPECT_EQ(status, -SIGINT);
}

TEST(TerminationSignals, StayIgnoredIfTheyWere) {
    const int status = statusOf([] {
        std::signal(SIGHUP, SIG_IGN);
        const TerminationSignals signals;
        std::raise(SIGHUP);
        return signals.pending() || isReadable(signals.descriptor()) ? 1 : 0;
    });
    EXPECT_EQ(status, 0);
}

TEST(TerminationSignals, EndTheProcessIfTheyAreBlocked) {
    const int status = statusOf([]() -> int {
        TerminationSignals signals;
        std::raise(SIGTERM);
        sigset_t all;
        sigfillset(&all);
        sigprocmask(SIG_BLOCK, &all, nullptr);
        signals.endProcess();
    });
    EXPECT_EQ(status, -SIGTERM);
}

TEST(TerminationSignals, EndTheFirstProcessOfAContainer) {
    constexpr int impossible = 77;
    const int status = statusOf([] {
        if (unshare(CLONE_NEWPID) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWPID) != 0) {
            return impossible;
        }
        return statusOf([]() -> int {
            TerminationSignals signals;
            std::raise(SIGTERM);
            signals.endProcess();
        });
    });
    if (status == impossible) {
        GTEST_SKIP() << "this system does not allow a process to create a PID namespace";
    }
    EXPECT_EQ(status, 128 + SIGTERM);
}

TEST(TerminationSignals, InterruptAWait) {
    const int status = statusOf([] {
        const TerminationSignals signals;
        const pid_t parent = getpid();
        const pid_t sender = fork();
        if (sender == 0) {
            kill(parent, SIGTERM);
            _exit(0);
        }
        pollfd request{.fd = signals.descriptor(), .events = POLLIN, .revents = 0};
        while (poll(&request, 1, -1) != 1) {
        }
        return signals.pending() == SIGTERM ? 0 : 1;
    });
    EXPECT_EQ(status, 0);
}

TEST(TerminationSignals, HaveCloseOnExecDescriptors) {
    const std::set<int> before = openDescriptors();
    {
        const TerminationSignals signals;
        std::set<int> opened = openDescriptors();
        for (const int descriptor : before) {
            opened.erase(descriptor);
        }
        EXPECT_EQ(opened.size(), 2U);
        EXPECT_TRUE(opened.contains(signals.descriptor()));
        EXPECT_EQ(terminationDescriptor(), signals.descriptor());
        for (const int descriptor : opened) {
            EXPECT_NE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC, 0) << "programs that are started do not inherit it";
            EXPECT_NE(fcntl(descriptor, F_GETFL) & O_NONBLOCK, 0) << "a signal handler does not block on it";
        }
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_EQ(terminationDescriptor(), -1);
}

TEST(TerminationSignalsDeathTest, WorkWithoutADescriptor) {
    // The death test runs in a new process, in which no signals have been caught.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto body = [] {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_NONBLOCK) != 0 || dup2(ends[1], STDIN_FILENO) != STDIN_FILENO) {
            return 3;
        }
        const rlimit none{.rlim_cur = 0, .rlim_max = 0};
        setrlimit(RLIMIT_NOFILE, &none);
        const TerminationSignals signals;
        errno = EDOM;
        std::raise(SIGTERM);
        if (errno != EDOM) {
            return 1;
        }
        char byte = 0;
        if (read(ends[0], &byte, 1) == 1) {
            return 4;  // The byte was written to file descriptor 0.
        }
        return signals.descriptor() == -1 && signals.pending() == SIGTERM ? 0 : 2;
    };
    EXPECT_EXIT(_exit(body()), testing::ExitedWithCode(0), "");
}

TEST(TerminationSignals, AreRestoredAtTheEnd) {
    EXPECT_EQ(statusOf([] {
                  { const TerminationSignals signals; }
                  std::raise(SIGTERM);
                  return 0;
              }),
              -SIGTERM);
    EXPECT_EQ(statusOf([] {
                  static volatile std::sig_atomic_t seen = 0;
                  std::signal(SIGINT, [](int) { seen = 1; });
                  {
                      const TerminationSignals signals;
                      std::raise(SIGINT);
                      if (seen != 0 || signals.pending() != SIGINT) {
                          return 1;
                      }
                  }
                  std::raise(SIGINT);
                  const TerminationSignals again;
                  return seen == 1 && !again.pending() ? 0 : 2;
              }),
              0);
}

}  // namespace
}  // namespace lomaris::test
