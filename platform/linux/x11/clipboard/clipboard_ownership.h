#pragma once

#include "platform/linux/x11/clipboard/clipboard_session.h"

#include <cstdint>
#include <functional>

namespace lomaris {

/// The owner of the clipboard as far as this process is concerned, and how often that changed.
///
/// The notifications of the server are the only source: they come for every new owner, this process included, in the
/// order in which the server saw them. An event that says that the selection was lost comes only sometimes, and may be
/// older than the latest acquisition. Main thread.
class ClipboardOwnership {
public:
    /// `whenLost` is called when another program became the owner, or there is none. `session` outlives this.
    ClipboardOwnership(ClipboardSession& session, std::function<void()> whenLost)
        : session_(session), whenLost_(std::move(whenLost)) {}

    /// The keeper of this process owns the clipboard with this window, on behalf of this process.
    void setKeeper(xcb_window_t keeper) { keeper_ = keeper; }

    /// That window; none before the keeper has owned the clipboard, or if it is known to be gone.
    [[nodiscard]] xcb_window_t keeper() const { return keeper_; }

    /// Counts new contents of this process that the keeper is about to own.
    void countContents() { ++changeCount_; }

    /// Makes this process the owner, once more where it is already; whether it became it.
    [[nodiscard]] bool acquire();

    /// If the keeper has ended while it owned the clipboard, makes this process the owner of the same contents, which
    /// does not count as a change. To be called after events were handed out, and not by their handler.
    void replaceKeeper();

    [[nodiscard]] bool isOwner() const { return isOwner_; }

    /// The server's time of the last acquisition.
    [[nodiscard]] xcb_timestamp_t acquiredAt() const { return acquiredAt_; }

    /// How often the clipboard got other contents since this process looks.
    [[nodiscard]] std::int64_t changeCount() const { return changeCount_; }

    void handle(const xcb_generic_event_t& event);

private:
    [[nodiscard]] bool becomeOwner();

    ClipboardSession& session_;
    std::function<void()> whenLost_;
    xcb_window_t keeper_ = XCB_WINDOW_NONE;
    /// This process or its keeper.
    bool isOwner_ = false;
    bool isKeeperOwner_ = false;
    /// The keeper has ended as the owner, and there is no new owner yet.
    bool isOrphaned_ = false;
    xcb_timestamp_t acquiredAt_ = XCB_CURRENT_TIME;
    std::int64_t changeCount_ = 0;
};

}  // namespace lomaris
