#pragma once

#include "platform/linux/x11/clipboard/clipboard_session.h"

#include <optional>

namespace lomaris {

/// The exclusive use of the clipboard among the processes of a display: two selections of our own. The process that
/// performs an operation owns one of them and its keeper the other; the clipboard is free when neither has an owner.
/// The server takes a selection away from a client that dies, so that no stale lock can remain. Main thread.
class ClipboardExclusion {
public:
    /// `session` outlives this.
    explicit ClipboardExclusion(ClipboardSession& session) : session_(session) {}

    /// Takes the clipboard for an operation of this process; whether it was free or taken already. `keeper`, if it is a
    /// window, is that of this process's own keeper, which does not count. The test and the taking are one server grab
    /// of one round trip.
    [[nodiscard]] bool take(xcb_window_t keeper);

    /// Ends what `take` began. Harmless if nothing was taken.
    void release();

    /// For the keeper: takes its share unless another keeper owns it, or releases it if this one does. Tries again when
    /// called again. The test and the change are one server grab of one round trip.
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
