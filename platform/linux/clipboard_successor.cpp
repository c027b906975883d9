#include "platform/linux/clipboard_successor.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace lomaris {

namespace {

void closeRange(unsigned first, unsigned last) {
    if (first > last) {
        return;
    }
#ifdef SYS_close_range
    if (syscall(SYS_close_range, first, last, 0U) == 0) {
        return;
    }
#endif
    const long limit = sysconf(_SC_OPEN_MAX);
    for (long number = first; number < limit && number <= static_cast<long>(last); ++number) {
        close(static_cast<int>(number));
    }
}

/// Closes every file but `kept`. The numbers of the standard streams stay taken, so that nothing else gets them.
void closeOthers(int kept) {
    const int nothing = open("/dev/null", O_RDWR);
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        if (stream != kept && stream != nothing && dup2(nothing, stream) < 0) {
            close(stream);
        }
    }
    const auto number = static_cast<unsigned>(kept);
    constexpr unsigned firstOther = STDERR_FILENO + 1;
    if (number > firstOther) {
        closeRange(firstOther, number - 1);
    }
    closeRange(number < firstOther ? firstOther : number + 1, ~0U);
}

void resetSignals() {
    for (int signal = 1; signal < NSIG; ++signal) {
        // Some numbers cannot be set; those are at their default.
        static_cast<void>(std::signal(signal, SIG_DFL));
    }
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

/// Ends a process without running anything that belongs to the one it was copied from.
[[noreturn]] void runSuccessor(int descriptor, const std::function<void()>& serve) {
    // What is sent to the process group meanwhile is meant for the process that ends.
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        static_cast<void>(std::signal(signal, SIG_IGN));
    }
    setsid();
    resetSignals();
    // A second copy, as the first one is a child whose end this process would have to wait for.
    if (fork() != 0) {
        _exit(0);
    }
    closeOthers(descriptor);
    // A directory that is in use cannot be unmounted.
    static_cast<void>(!chdir("/"));
    serve();
    _exit(0);
}

void waitForEnd(pid_t child) {
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace

bool leaveSuccessor(int descriptor, const std::function<void()>& serve) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0) {
        return false;
    }
    // No handler of this process runs in the copy.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = fork();
    if (child == 0) {
        runSuccessor(descriptor, serve);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (child > 0) {
        waitForEnd(child);
        dup3(nothing, descriptor, O_CLOEXEC);
    }
    close(nothing);
    return child > 0;
}

}  // namespace lomaris
