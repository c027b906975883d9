#pragma once

#include "platform/linux/x11/clipboard/clipboard_session.h"

#include <optional>

namespace lomaris {

/// A lock on the clipboard among the processes of a display, made of two private selections. The process that performs
/// an operation owns `_LOMARIS_CLIPBOARD_OPERATION`, and its keeper `_LOMARIS_CLIPBOARD_KEEPER`; the clipboard is free
/// if neither has an owner. The server releases the selections of a client that disconnects, so no stale lock can
/// remain. Main thread.
class ClipboardExclusion {
public:
    /// `session` must outlive this object.
    explicit ClipboardExclusion(ClipboardSession& session) : session_(session) {}

    /// Takes the lock for an operation of this process. Returns true if it was free or this process has it already.
    /// `keeper`, unless it is XCB_WINDOW_NONE, is the window of this process's own keeper, whose share does not count.
    /// Tests and takes inside one server grab of one round trip.
    [[nodiscard]] bool take(xcb_window_t keeper);

    /// Releases the lock. No effect if this process does not have it.
    void release();

    /// For the keeper: if `isKept`, takes the keeper's share unless another keeper has it; otherwise releases it. Does
    /// nothing if the state is already the wanted one; an attempt that failed is repeated by the next call. Tests and
    /// changes inside one server grab of one round trip.
    void setKept(bool isKept);

private:
    [[nodiscard]] bool isFree(xcb_window_t keeper);
    [[nodiscard]] std::optional<xcb_window_t> ownerOf(xcb_atom_t selection);
    void setOwner(xcb_atom_t selection, xcb_window_t owner);

    ClipboardSession& session_;
    bool isTaken_ = false;
    bool isKept_ = false;
    bool wasBusy_ = false;
};

}  // namespace lomaris
