#include "platform/linux/x11/clipboard/clipboard_ownership.h"

#include <utility>

namespace lomaris {

bool ClipboardOwnership::acquire() {
    if (!becomeOwner()) {
        return false;
    }
    ++changeCount_;
    return true;
}

void ClipboardOwnership::replaceKeeper() {
    if (std::exchange(isOrphaned_, false)) {
        // If another program was faster, its notification has been handled by now.
        static_cast<void>(becomeOwner());
    }
}

bool ClipboardOwnership::becomeOwner() {
    const std::optional<xcb_timestamp_t> now = session_.serverTime();
    if (!now) {
        return false;
    }
    session_.xcb().set_selection_owner(session_.handle(), session_.window(), session_.names().clipboard, *now);
    // The server refuses silently; where it did not, its notification has arrived after this.
    session_.settle();
    return isOwner_ && session_.isAlive();
}

void ClipboardOwnership::handle(const xcb_generic_event_t& event) {
    if (!session_.isOwnerChange(event)) {
        return;
    }
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection != session_.names().clipboard) {
        return;
    }
    const bool wasKeeperOwner = isKeeperOwner_;
    isKeeperOwner_ = keeper_ != XCB_WINDOW_NONE && change.owner == keeper_;
    isOrphaned_ = false;
    if (change.owner == session_.window() || isKeeperOwner_) {
        // Counted when it was acquired.
        isOwner_ = true;
        acquiredAt_ = change.selection_timestamp;
        return;
    }
    isOwner_ = false;
    if (wasKeeperOwner && change.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) {
        // The window or its connection is gone; another client may get the same number.
        keeper_ = XCB_WINDOW_NONE;
        isOrphaned_ = true;
        return;
    }
    ++changeCount_;
    whenLost_();
}

}  // namespace lomaris
