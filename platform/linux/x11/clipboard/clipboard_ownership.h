#pragma once

#include "platform/linux/x11/clipboard/clipboard_session.h"

#include <cstdint>
#include <functional>

namespace lomaris {

/// Tracks whether this process or its keeper owns the clipboard, and counts the changes of its contents.
///
/// Uses only the SelectionNotify events of XFIXES: the server sends one for every new owner, including this process, in
/// order. SelectionClear is not used, as it is not sent in all cases and may be older than the latest acquisition. Main
/// thread.
class ClipboardOwnership {
public:
    /// `whenLost` is called when another program has become the owner, or the clipboard has no owner any more.
    /// `session` must outlive this object.
    ClipboardOwnership(ClipboardSession& session, std::function<void()> whenLost)
        : session_(session), whenLost_(std::move(whenLost)) {}

    /// Sets the window with which the keeper owns the clipboard on behalf of this process.
    void setKeeper(xcb_window_t keeper) { keeper_ = keeper; }

    /// The window of the keeper. XCB_WINDOW_NONE before `setKeeper`, or if the window is known to be gone.
    [[nodiscard]] xcb_window_t keeper() const { return keeper_; }

    /// Increments the change count for new contents that the keeper will own.
    void countContents() { ++changeCount_; }

    /// Makes this process the owner with new contents, also if it is the owner already (ICCCM 2.1). Returns false if
    /// the server refused or another program has become the owner since.
    [[nodiscard]] bool acquire();

    /// If the keeper has ended while it owned the clipboard, makes this process the owner of the same contents, without
    /// a new change count. To be called after events were handled, but not by an event handler.
    void replaceKeeper();

    [[nodiscard]] bool isOwner() const { return isOwner_; }

    /// The server time of the last acquisition.
    [[nodiscard]] xcb_timestamp_t acquiredAt() const { return acquiredAt_; }

    /// The number of changes of the contents since the session was opened.
    [[nodiscard]] std::int64_t changeCount() const { return changeCount_; }

    void handle(const xcb_generic_event_t& event);

private:
    [[nodiscard]] bool becomeOwner();

    ClipboardSession& session_;
    std::function<void()> whenLost_;
    xcb_window_t keeper_ = XCB_WINDOW_NONE;
    /// True if this process or its keeper is the owner.
    bool isOwner_ = false;
    bool isKeeperOwner_ = false;
    /// True if the keeper has ended as the owner and there is no new owner yet.
    bool isOrphaned_ = false;
    xcb_timestamp_t acquiredAt_ = XCB_CURRENT_TIME;
    std::int64_t changeCount_ = 0;
};

}  // namespace lomaris
