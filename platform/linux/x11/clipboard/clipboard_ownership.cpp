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
        // If another program had become the owner, its event would have been handled by now.
        static_cast<void>(becomeOwner());
    }
}

bool ClipboardOwnership::becomeOwner() {
    const std::optional<xcb_timestamp_t> now = session_.serverTime();
    if (!now) {
        return false;
    }
    session_.xcb().set_selection_owner(session_.handle(), session_.window(), session_.names().clipboard, *now);
    // SetSelectionOwner has no reply. If the server has accepted it, the event is handled in this call.
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
        // `acquire` or `countContents` has counted this change.
        isOwner_ = true;
        acquiredAt_ = change.selection_timestamp;
        return;
    }
    isOwner_ = false;
    if (wasKeeperOwner && change.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER) {
        // The window or its client is gone. The server may reuse the identifier for another client.
        keeper_ = XCB_WINDOW_NONE;
        isOrphaned_ = true;
        return;
    }
    ++changeCount_;
    whenLost_();
}

}  // namespace lomaris
