#include "platform/linux/x11/clipboard/keeper_link.h"

#include "platform/linux/process/monotonic_clock.h"

#include <chrono>
#include <utility>

namespace lomaris {

namespace {

using Kind = KeeperMessage::Kind;

/// The timeout for the confirmation of a request.
constexpr Duration patience = std::chrono::milliseconds(1500);

/// The same for the first request, before which the keeper must start and connect to the X server.
constexpr Duration startPatience = std::chrono::seconds(5);

}  // namespace

bool KeeperLink::isThere() {
    if (!std::exchange(wasTried_, true)) {
        started_ = start_();
        channel_ = KeeperChannel(std::move(started_.socket));
    }
    return channel_.isOpen();
}

void KeeperLink::begin() {
    if (isThere() && !channel_.send({.kind = Kind::began})) {
        channel_.close();
    }
}

bool KeeperLink::protect(std::span<const KeptTarget> saved) {
    return request({.kind = Kind::protect}, saved).has_value();
}

void KeeperLink::expectCopy(std::optional<std::int32_t> process, Duration wait) {
    channel_.send({.kind = Kind::copyExpected, .process = process.value_or(0), .firstWait = wait.count()});
}

void KeeperLink::expectPaste(Duration minimumWait, Duration graceWait) {
    channel_.send({.kind = Kind::pasteExpected, .firstWait = minimumWait.count(), .secondWait = graceWait.count()});
}

void KeeperLink::end() { channel_.send({.kind = Kind::ended}); }

std::optional<xcb_window_t> KeeperLink::publish(std::span<const KeptTarget> contents) {
    wasTextRead_ = false;
    publishedSerial_ = serial_ + 1;
    const auto confirmed = request({.kind = Kind::publish}, contents);
    return confirmed ? std::optional(confirmed->window) : std::nullopt;
}

bool KeeperLink::textWasRead() {
    while (const auto received = channel_.receive()) {
        note(received->message);
    }
    return std::exchange(wasTextRead_, false);
}

void KeeperLink::finish() {
    wasTried_ = true;
    end();
    channel_.close();
    reapKeeper(started_);
}

std::optional<KeeperMessage> KeeperLink::request(KeeperMessage message, std::span<const KeptTarget> targets) {
    if (!isThere()) {
        return std::nullopt;
    }
    const FileDescriptor file = writeKeptTargets(targets);
    message.serial = ++serial_;
    const Moment deadline = later(monotonicNow(), hasConfirmed_ ? patience : startPatience);
    message.deadline = deadline.count();
    if (!file) {
        return std::nullopt;
    }
    if (!channel_.send(message, file.number())) {
        channel_.close();
        return std::nullopt;
    }
    while (const auto received = channel_.receive(deadline)) {
        reapKeeper(started_);
        if (received->message.kind == Kind::confirmed && received->message.serial == message.serial) {
            hasConfirmed_ = true;
            const bool isDone = received->message.window != XCB_WINDOW_NONE;
            return isDone ? std::optional(received->message) : std::nullopt;
        }
        note(received->message);
    }
    // A late keeper then restores the clipboard as if this process had died, unless this process owns it by then.
    channel_.close();
    return std::nullopt;
}

void KeeperLink::note(const KeeperMessage& message) {
    if (message.kind == Kind::textRead && message.serial == publishedSerial_) {
        wasTextRead_ = true;
    }
}

}  // namespace lomaris
