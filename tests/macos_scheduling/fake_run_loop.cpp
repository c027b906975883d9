#include "tests/macos_scheduling/fake_run_loop.h"

#include <CoreFoundation/CFRunLoop.h>
#include <dispatch/dispatch.h>
#include <pthread.h>
#include <time.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

// The contents of these types are irrelevant; only their addresses are compared.
struct dispatch_queue_s {};
struct __CFString {};

namespace lomaris::test::fake_run_loop {

namespace {

using Work = std::function<void()>;
using Clock = std::chrono::steady_clock;

dispatch_queue_s mainQueue;
dispatch_queue_s utilityQueue;
const __CFString defaultMode;
const std::thread::id mainThread = std::this_thread::get_id();

std::mutex mutex;
std::condition_variable changed;
std::deque<Work> sources;
std::deque<Work> mainWork;
std::vector<Work> heldWork;
bool isHeld = false;
bool watchesNothing = false;
bool isInMainWork = false;
std::size_t turnCount = 0;
std::size_t turnsToStop = 0;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Removes the first work item and runs it without the lock.
void doFirst(std::deque<Work>& works, std::unique_lock<std::mutex>& lock) {
    const Work work = std::move(works.front());
    works.pop_front();
    lock.unlock();
    work();
    lock.lock();
}

/// Handles pending work once; true if there was any. Work of the main queue does not nest.
bool handleWhatWaits(std::unique_lock<std::mutex>& lock) {
    if (!sources.empty()) {
        doFirst(sources, lock);
        return true;
    }
    if (mainWork.empty() || isInMainWork) {
        return false;
    }
    isInMainWork = true;
    for (std::size_t left = mainWork.size(); left > 0; --left) {
        doFirst(mainWork, lock);
    }
    isInMainWork = false;
    return true;
}

CFRunLoopRunResult turn(std::chrono::duration<double> duration, bool returnAfterSource) {
    const auto deadline = Clock::now() + std::chrono::ceil<Clock::duration>(duration);
    std::unique_lock lock(mutex);
    ++turnCount;
    if (turnsToStop > 0) {
        --turnsToStop;
        return kCFRunLoopRunStopped;
    }
    do {
        if (handleWhatWaits(lock)) {
            if (returnAfterSource) {
                return kCFRunLoopRunHandledSource;
            }
            continue;
        }
        if (watchesNothing) {
            return kCFRunLoopRunFinished;
        }
        changed.wait_until(lock, deadline, [] { return !sources.empty() || (!mainWork.empty() && !isInMainWork); });
    } while (Clock::now() < deadline);
    return kCFRunLoopRunTimedOut;
}

}  // namespace

void post(std::function<void()> source) {
    const std::lock_guard lock(mutex);
    sources.push_back(std::move(source));
    changed.notify_all();
}

void setWatchesNothing(bool nothing) {
    const std::lock_guard lock(mutex);
    watchesNothing = nothing;
}

void stopTurns(std::size_t count) {
    const std::lock_guard lock(mutex);
    turnsToStop = count;
}

std::size_t turns() {
    const std::lock_guard lock(mutex);
    return turnCount;
}

void holdGlobalQueue() {
    const std::lock_guard lock(mutex);
    isHeld = true;
}

void releaseGlobalQueue() {
    std::vector<Work> works;
    {
        const std::lock_guard lock(mutex);
        isHeld = false;
        works.swap(heldWork);
    }
    for (const Work& work : works) {
        std::thread(work).join();
    }
}

void reset() {
    releaseGlobalQueue();
    const std::lock_guard lock(mutex);
    sources.clear();
    // A work item of the main queue owns its context, so it is run instead of dropped; otherwise the context would
    // leak.
    while (!mainWork.empty()) {
        const Work work = std::move(mainWork.front());
        mainWork.pop_front();
        work();
    }
    watchesNothing = false;
    turnsToStop = 0;
}

}  // namespace lomaris::test::fake_run_loop

namespace fake = lomaris::test::fake_run_loop;

extern "C" {

const CFRunLoopMode kCFRunLoopDefaultMode = &fake::defaultMode;

CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds, Boolean returnAfterSourceHandled) {
    fake::require(mode == kCFRunLoopDefaultMode && std::this_thread::get_id() == fake::mainThread);
    return fake::turn(std::chrono::duration<double>(seconds), returnAfterSourceHandled != 0);
}

dispatch_queue_t dispatch_get_main_queue(void) { return &fake::mainQueue; }

dispatch_queue_t dispatch_get_global_queue(intptr_t identifier, uintptr_t flags) {
    fake::require(identifier == QOS_CLASS_UTILITY && flags == 0);
    return &fake::utilityQueue;
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
    const std::lock_guard lock(fake::mutex);
    if (queue == &fake::mainQueue) {
        fake::mainWork.emplace_back([context, work] { work(context); });
        fake::changed.notify_all();
    } else if (fake::isHeld) {
        fake::heldWork.emplace_back([context, work] { work(context); });
    } else {
        std::thread(work, context).detach();
    }
}

int pthread_cond_timedwait_relative_np(pthread_cond_t* condition, pthread_mutex_t* mutex, const timespec* duration) {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const auto deadline =
        std::chrono::seconds(now.tv_sec + duration->tv_sec) + std::chrono::nanoseconds(now.tv_nsec + duration->tv_nsec);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(deadline);
    const timespec time{.tv_sec = seconds.count(), .tv_nsec = (deadline - seconds).count()};
    return pthread_cond_clockwait(condition, mutex, CLOCK_MONOTONIC, &time);
}

uint64_t clock_gettime_nsec_np(clockid_t clock) {
    fake::require(clock == CLOCK_UPTIME_RAW);
    const auto now = fake::Clock::now().time_since_epoch();
    return static_cast<uint64_t>(std::chrono::nanoseconds(now).count());
}
}
