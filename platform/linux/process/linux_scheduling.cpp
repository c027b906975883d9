#include "platform/linux/process/linux_scheduling.h"

#include "platform/linux/process/monotonic_clock.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <utility>
#include <vector>

namespace lomaris {

class LinuxScheduling::WakeUp {
public:
    WakeUp() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
    WakeUp(const WakeUp&) = delete;
    WakeUp& operator=(const WakeUp&) = delete;
    ~WakeUp() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    [[nodiscard]] int descriptor() const { return descriptor_; }

    void raise() const {
        const std::uint64_t one = 1;
        // Fails only if it has been raised already.
        static_cast<void>(!write(descriptor_, &one, sizeof one));
    }

    void clear() const {
        std::uint64_t count = 0;
        static_cast<void>(!read(descriptor_, &count, sizeof count));
    }

private:
    int descriptor_;
};

namespace {

/// Waits for one of the descriptors; negative ones are ignored. Returns true if one is ready.
bool waitUntil(Moment deadline, pollfd* descriptors, nfds_t count) {
    const Duration left = std::max(deadline - monotonicNow(), Duration::zero());
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    const timespec timeout{.tv_sec = seconds.count(), .tv_nsec = (left - seconds).count()};
    return ppoll(descriptors, count, &timeout, nullptr) > 0;
}

}  // namespace

LinuxScheduling::LinuxScheduling(std::function<void()> endServices) : termination_(std::move(endServices)) {}

LinuxScheduling::~LinuxScheduling() = default;

void LinuxScheduling::sleep(Duration duration) {
    const Moment deadline = later(now(), std::max(duration, Duration::zero()));
    if (std::this_thread::get_id() == mainThread_) {
        sleepOnMainThread(deadline);
    } else {
        background_.sleepUntil(deadline);
    }
}

void LinuxScheduling::sleepOnMainThread(Moment deadline) {
    for (;;) {
        termination_.endIfAsked();
        if (now() >= deadline) {
            return;
        }
        pollfd request{.fd = termination_.descriptor(), .events = POLLIN, .revents = 0};
        waitUntil(deadline, &request, 1);
    }
}

void LinuxScheduling::runLoopSlice(Duration duration) {
    const Moment deadline = later(now(), std::max(duration, Duration::zero()));
    for (;;) {
        termination_.endIfAsked();
        serveReaders();
        serveMainQueue(deadline);
        if (now() >= deadline) {
            return;
        }
        waitForInput(deadline);
    }
}

void LinuxScheduling::runOnMainQueue(std::function<void()> block) {
    const std::lock_guard lock(mainQueueMutex_);
    mainQueue_.push_back(std::move(block));
    if (wakeUp_) {
        wakeUp_->raise();
    }
}

void LinuxScheduling::addReader(int descriptor, std::function<void()> serve) {
    readers_[descriptor] = std::make_shared<const std::function<void()>>(std::move(serve));
}

void LinuxScheduling::removeReader(int descriptor) { readers_.erase(descriptor); }

void LinuxScheduling::serveReaders() {
    // Iterate over a copy: a reader may remove itself or another one, which then must not run.
    const std::map<int, Reader> readers = readers_;
    for (const auto& [descriptor, serve] : readers) {
        const auto current = readers_.find(descriptor);
        if (current != readers_.end() && current->second == serve) {
            (*serve)();
        }
    }
}

void LinuxScheduling::serveMainQueue(Moment deadline) {
    std::size_t waiting = 0;
    {
        const std::lock_guard lock(mainQueueMutex_);
        waiting = mainQueue_.size();
    }
    // Blocks that are queued already run even if the slice has no length; those that they queue, until the deadline.
    for (std::size_t served = 0; served < waiting || now() < deadline; ++served) {
        const auto block = takeBlock();
        if (!block) {
            return;
        }
        block();
    }
}

std::function<void()> LinuxScheduling::takeBlock() {
    const std::lock_guard lock(mainQueueMutex_);
    if (mainQueue_.empty()) {
        return nullptr;
    }
    auto block = std::move(mainQueue_.front());
    mainQueue_.pop_front();
    return block;
}

void LinuxScheduling::waitForInput(Moment deadline) {
    {
        const std::lock_guard lock(mainQueueMutex_);
        if (!wakeUp_) {
            wakeUp_ = std::make_unique<WakeUp>();
        }
        if (!mainQueue_.empty()) {
            return;
        }
    }
    std::vector<pollfd> descriptors{{.fd = wakeUp_->descriptor(), .events = POLLIN, .revents = 0}};
    descriptors.push_back({.fd = termination_.descriptor(), .events = POLLIN, .revents = 0});
    for (const auto& [descriptor, serve] : readers_) {
        descriptors.push_back({.fd = descriptor, .events = POLLIN, .revents = 0});
    }
    if (!waitUntil(deadline, descriptors.data(), descriptors.size())) {
        return;
    }
    wakeUp_->clear();
    for (const pollfd& answered : descriptors) {
        if ((answered.revents & POLLNVAL) != 0) {
            // The descriptor was closed without `removeReader`. Polling it again would make this a busy loop.
            readers_.erase(answered.fd);
        }
    }
}

}  // namespace lomaris
