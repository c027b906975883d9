#include "platform/linux/clipboard_exclusion.h"

#include <utility>

namespace lomaris {

bool ClipboardExclusion::isFree(xcb_window_t keeper) {
    const XcbFunctions& xcb = session_.xcb();
    const auto operation = xcb.get_selection_owner(session_.handle(), session_.names().operation);
    const auto kept = xcb.get_selection_owner(session_.handle(), session_.names().keeper);
    const auto operationOwner = session_.connection().wait<xcb_get_selection_owner_reply_t>(operation);
    const auto keeperOwner = session_.connection().wait<xcb_get_selection_owner_reply_t>(kept);
    return operationOwner && keeperOwner && operationOwner->owner == XCB_WINDOW_NONE &&
           (keeperOwner->owner == XCB_WINDOW_NONE || keeperOwner->owner == keeper);
}

bool ClipboardExclusion::take(xcb_window_t keeper) {
    if (isTaken_) {
        return true;
    }
    // A process that waits looks without stopping the server each time.
    if (std::exchange(wasBusy_, false) && !isFree(keeper)) {
        wasBusy_ = true;
        return false;
    }
    session_.xcb().grab_server(session_.handle());
    isTaken_ = isFree(keeper);
    if (isTaken_) {
        own(session_.names().operation);
    }
    session_.xcb().ungrab_server(session_.handle());
    static_cast<void>(session_.flush());
    wasBusy_ = !isTaken_;
    return isTaken_;
}

void ClipboardExclusion::release() {
    if (std::exchange(isTaken_, false)) {
        disown(session_.names().operation);
    }
}

void ClipboardExclusion::setKept(bool isKept) {
    if (std::exchange(isKept_, isKept) == isKept) {
        return;
    }
    if (isKept) {
        own(session_.names().keeper);
    } else {
        disown(session_.names().keeper);
    }
}

void ClipboardExclusion::own(xcb_atom_t selection) {
    session_.xcb().set_selection_owner(session_.handle(), session_.window(), selection, XCB_CURRENT_TIME);
}

void ClipboardExclusion::disown(xcb_atom_t selection) {
    session_.xcb().set_selection_owner(session_.handle(), XCB_WINDOW_NONE, selection, XCB_CURRENT_TIME);
    static_cast<void>(session_.flush());
}

}  // namespace lomaris
