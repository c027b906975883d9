#include "platform/posix/termination_signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>

namespace lomaris {

namespace {

constexpr std::array<int, 3> signals{SIGTERM, SIGINT, SIGHUP};

// Accessed by the signal handler, and therefore lock-free.
std::atomic<int> firstSignal{0};
std::atomic<int> writeEnd{-1};
std::atomic<bool> secondSignalEnds{false};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

std::array<struct sigaction, signals.size()> earlierActions;
int readEnd = -1;

/// Ends the process by a signal as if it had not been caught. Safe to call in a handler.
[[noreturn]] void endBy(int signal) {
    struct sigaction byDefault {};
    byDefault.sa_handler = SIG_DFL;
    sigemptyset(&byDefault.sa_mask);
    sigaction(signal, &byDefault, nullptr);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    static_cast<void>(raise(signal));
    // A process that signals cannot end (the first one of a container) survives `raise`.
    constexpr int endedBySignal = 128;
    std::_Exit(endedBySignal + signal);
}

extern "C" void noteSignal(int signal) {
    const int savedError = errno;
    int none = 0;
    if (firstSignal.compare_exchange_strong(none, signal)) {
        const char byte = 0;
        static_cast<void>(!write(writeEnd.load(), &byte, 1));
    } else if (secondSignalEnds) {
        endBy(signal);
    }
    errno = savedError;
}

bool isIgnored(const struct sigaction& action) {
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_IGN;
}

void openPipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return;
    }
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    readEnd = ends[0];
    writeEnd = ends[1];
}

void closeEnd(int end) {
    if (end >= 0) {
        close(end);
    }
}

}  // namespace

TerminationSignals::TerminationSignals() {
    firstSignal = 0;
    secondSignalEnds = false;
    openPipe();
    struct sigaction note {};
    note.sa_handler = noteSignal;
    sigemptyset(&note.sa_mask);
    for (std::size_t index = 0; index < signals.size(); ++index) {
        sigaction(signals[index], nullptr, &earlierActions[index]);
        if (!isIgnored(earlierActions[index])) {
            sigaction(signals[index], &note, nullptr);
        }
    }
}

TerminationSignals::~TerminationSignals() {
    for (std::size_t index = 0; index < signals.size(); ++index) {
        sigaction(signals[index], &earlierActions[index], nullptr);
    }
    closeEnd(writeEnd.exchange(-1));
    closeEnd(readEnd);
    readEnd = -1;
}

int TerminationSignals::descriptor() const { return readEnd; }

std::optional<int> TerminationSignals::pending() const {
    const int signal = firstSignal;
    return signal == 0 ? std::nullopt : std::optional(signal);
}

void TerminationSignals::setSecondSignalEnds(bool ends) { secondSignalEnds = ends; }

void TerminationSignals::endProcess() { endBy(firstSignal); }

int terminationDescriptor() { return readEnd; }

TerminationSignalsBlock::TerminationSignalsBlock() : before_() {
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int signal : signals) {
        sigaddset(&blocked, signal);
    }
    pthread_sigmask(SIG_BLOCK, &blocked, &before_);
}

TerminationSignalsBlock::~TerminationSignalsBlock() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

}  // namespace lomaris
