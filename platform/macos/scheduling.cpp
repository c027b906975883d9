#include "platform/macos/scheduling.h"

#include "platform/macos/monotonic_clock.h"
#include "platform/macos/shielded_call.h"

#include <CoreFoundation/CFRunLoop.h>
#include <poll.h>

#include <algorithm>

namespace lomaris::macos {

namespace {

using std::chrono::milliseconds;

/// How long a request to end the process may go unnoticed by a run loop that turns.
constexpr Duration longestTurn = milliseconds(50);
/// A run loop with nothing to watch does not wait; this is how often it is looked at then.
constexpr Duration restBetweenTurns = milliseconds(1);
/// More than can be waiting at once; an application that never stops sending, or a program that embeds this and always
/// stops its run loop, must not hold this process.
constexpr int mostWaiting = 100;

/// When a turn of the run loop ends before its time is over.
enum class Until { timeIsOver, somethingWasHandled };

/// Turns the run loop of this thread for at most `duration` and says why that ended; an exception of what was handled
/// counts as having been stopped.
CFRunLoopRunResult turn(Duration duration, Until until) {
    CFRunLoopRunResult result = kCFRunLoopRunStopped;
    runShielded([&] {
        const double seconds = std::chrono::duration<double>(duration).count();
        result = CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, until == Until::somethingWasHandled);
    });
    return result;
}

/// Waits for a signal to be caught for at most `duration`, which is rounded down to milliseconds.
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
    // A slice of no length still serves what waits.
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
        // Whoever else stops this run loop means a turn of their own.
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
