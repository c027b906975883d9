#include "platform/linux/x11/clipboard/clipboard_exclusion.h"

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
    // A process that retries tests without a server grab first.
    if (std::exchange(wasBusy_, false) && !isFree(keeper)) {
        wasBusy_ = true;
        return false;
    }
    session_.xcb().grab_server(session_.handle());
    isTaken_ = isFree(keeper);
    if (isTaken_) {
        setOwner(session_.names().operation, session_.window());
    }
    session_.xcb().ungrab_server(session_.handle());
    static_cast<void>(session_.flush());
    wasBusy_ = !isTaken_;
    return isTaken_;
}

void ClipboardExclusion::release() {
    if (std::exchange(isTaken_, false)) {
        setOwner(session_.names().operation, XCB_WINDOW_NONE);
        static_cast<void>(session_.flush());
    }
}

void ClipboardExclusion::setKept(bool isKept) {
    if (isKept_ == isKept) {
        return;
    }
    // If the partner died early, another process may have taken the lock by now, and its keeper may own this selection.
    const xcb_atom_t selection = session_.names().keeper;
    constexpr xcb_window_t none = XCB_WINDOW_NONE;
    session_.xcb().grab_server(session_.handle());
    const bool mayChange = ownerOf(selection) == (isKept ? none : session_.window());
    if (mayChange) {
        setOwner(selection, isKept ? session_.window() : none);
    }
    session_.xcb().ungrab_server(session_.handle());
    static_cast<void>(session_.flush());
    isKept_ = isKept && mayChange;
}

std::optional<xcb_window_t> ClipboardExclusion::ownerOf(xcb_atom_t selection) {
    const auto reply = session_.connection().wait<xcb_get_selection_owner_reply_t>(
        session_.xcb().get_selection_owner(session_.handle(), selection));
    return reply ? std::optional(reply->owner) : std::nullopt;
}

void ClipboardExclusion::setOwner(xcb_atom_t selection, xcb_window_t owner) {
    session_.xcb().set_selection_owner(session_.handle(), owner, selection, XCB_CURRENT_TIME);
}

}  // namespace lomaris
