#include "platform/linux/clipboard_ownership.h"

namespace lomaris {

bool ClipboardOwnership::acquire() {
    const std::optional<xcb_timestamp_t> now = session_.serverTime();
    if (!now) {
        return false;
    }
    session_.xcb().set_selection_owner(session_.handle(), session_.window(), session_.names().clipboard, *now);
    // The server refuses silently; where it did not, its notification has arrived after this.
    session_.settle();
    if (!isOwner_ || !session_.isAlive()) {
        return false;
    }
    ++changeCount_;
    return true;
}

void ClipboardOwnership::handle(const xcb_generic_event_t& event) {
    if (!session_.isOwnerChange(event)) {
        return;
    }
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (change.selection != session_.names().clipboard) {
        return;
    }
    const bool isKeeper = keeper_ != XCB_WINDOW_NONE && change.owner == keeper_;
    if (change.owner == session_.window() || isKeeper) {
        // Counted when it was acquired.
        isOwner_ = true;
        acquiredAt_ = change.selection_timestamp;
        return;
    }
    isOwner_ = false;
    ++changeCount_;
    whenLost_();
}

}  // namespace lomaris
