#include "platform/linux/x11/x11_connect.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>

namespace lomaris {

namespace {

/// The state shared by the waiting thread and the connecting thread, which both own it.
struct Handshake {
    std::mutex mutex;
    std::condition_variable changed;
    X11Connected result;
    bool done = false;
    bool abandoned = false;
};

void shakeHands(const XcbFunctions& xcb, const std::shared_ptr<Handshake>& handshake) {
    const X11Connected result = connectWithoutDeadline(xcb);
    const std::lock_guard lock(handshake->mutex);
    handshake->done = true;
    if (!handshake->abandoned) {
        handshake->result = result;
        handshake->changed.notify_one();
    } else if (result.connection != nullptr) {
        xcb.disconnect(result.connection);
    }
}

/// Returns true if the abandoned handshake is still in progress; releases it otherwise. Main thread.
bool isGoingOn(std::shared_ptr<Handshake>& abandoned) {
    if (!abandoned) {
        return false;
    }
    {
        const std::lock_guard lock(abandoned->mutex);
        if (!abandoned->done) {
            return true;
        }
    }
    abandoned.reset();
    return false;
}

}  // namespace

X11Connected connectWithoutDeadline(const XcbFunctions& xcb) {
    X11Connected result;
    result.connection = xcb.connect(nullptr, &result.screen);
    if (xcb.connection_has_error(result.connection) != 0) {
        xcb.disconnect(result.connection);
        result.connection = nullptr;
    }
    return result;
}

X11Connected connectToDisplay(const XcbFunctions& xcb, std::chrono::milliseconds deadline) {
    // At most one thread is abandoned, no matter how often a hung server is tried.
    static std::shared_ptr<Handshake> abandoned;
    if (isGoingOn(abandoned)) {
        return {};
    }
    const auto handshake = std::make_shared<Handshake>();
    try {
        std::thread([&xcb, handshake] { shakeHands(xcb, handshake); }).detach();
    } catch (const std::system_error&) {
        return {};
    }
    std::unique_lock lock(handshake->mutex);
    if (!handshake->changed.wait_for(lock, deadline, [&] { return handshake->done; })) {
        handshake->abandoned = true;
        abandoned = handshake;
    }
    return handshake->result;
}

}  // namespace lomaris
