#include "platform/macos/scheduling.h"

#include "platform/macos/monotonic_clock.h"
#include "platform/macos/shielded_call.h"

#include <CoreFoundation/CFRunLoop.h>
#include <poll.h>

#include <algorithm>

namespace lomaris::macos {

namespace {

using std::chrono::milliseconds;

/// The longest time for which a running run loop does not notice a request to end the process.
constexpr Duration longestTurn = milliseconds(50);
/// A run loop without sources returns at once; this is the pause before it runs again.
constexpr Duration restBetweenTurns = milliseconds(1);
/// More than can be pending at once. Limits the loop if an application never stops sending, or if the host always stops
/// the run loop.
constexpr int mostWaiting = 100;

/// When `turn` returns before its time is over.
enum class Until { timeIsOver, somethingWasHandled };

/// Runs the run loop of this thread for at most `duration` and returns the reason why it returned;
/// `kCFRunLoopRunStopped` if a handler threw an exception.
CFRunLoopRunResult turn(Duration duration, Until until) {
    CFRunLoopRunResult result = kCFRunLoopRunStopped;
    runShielded([&] {
        const double seconds = std::chrono::duration<double>(duration).count();
        result = CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, until == Until::somethingWasHandled);
    });
    return result;
}

/// Waits until a signal is caught, for at most `duration`, rounded down to milliseconds.
void waitForSignal(int descriptor, Duration duration) {
    constexpr milliseconds longest = std::chrono::hours(1);
    const auto timeout = std::min(std::chrono::floor<milliseconds>(duration), longest);
    pollfd request{};
    request.fd = descriptor;
    request.events = POLLIN;
    static_cast<void>(poll(&request, 1, static_cast<int>(timeout.count())));
}

}  // namespace

void MacOSScheduling::sleep(Duration duration) {
    if (std::this_thread::get_id() == mainThread_) {
        sleepOnMainThread(later(monotonicNow(), duration));
    } else {
        background_.sleepUntil(later(now(), duration));
    }
}

void MacOSScheduling::sleepOnMainThread(Moment deadline) {
    for (;;) {
        termination_.endIfAsked();
        const Duration left = deadline - monotonicNow();
        if (left <= Duration::zero()) {
            return;
        }
        if (left >= milliseconds(1) && termination_.descriptor() >= 0) {
            waitForSignal(termination_.descriptor(), left);
        } else {
            sleepUntil(deadline);
        }
    }
}

void MacOSScheduling::runLoopSlice(Duration duration) {
    const Moment deadline = later(monotonicNow(), duration);
    // A slice of zero length still serves what is pending.
    do {
        termination_.endIfAsked();
        const Duration left = std::clamp(deadline - monotonicNow(), Duration::zero(), longestTurn);
        const CFRunLoopRunResult result = turn(left, Until::timeIsOver);
        if (result == kCFRunLoopRunFinished || result == kCFRunLoopRunStopped) {
            sleepUntil(std::min(deadline, later(monotonicNow(), restBetweenTurns)));
        }
    } while (monotonicNow() < deadline);
    termination_.endIfAsked();
}

void MacOSScheduling::serveWaiting(Duration patience) {
    const MainQueue::Pause pause(mainQueue_);
    const Moment deadline = later(monotonicNow(), patience);
    for (int turns = 0; turns < mostWaiting; ++turns) {
        const Duration left = std::max(deadline - monotonicNow(), Duration::zero());
        const CFRunLoopRunResult result = turn(left, Until::somethingWasHandled);
        // A stop by other code was meant for that code's own run of the run loop.
        if (result == kCFRunLoopRunFinished || result == kCFRunLoopRunTimedOut) {
            return;
        }
    }
}

void MacOSScheduling::finish() {
    background_.finish();
    mainQueue_.close();
}

}  // namespace lomaris::macos
