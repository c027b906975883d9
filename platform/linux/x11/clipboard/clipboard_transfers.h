#pragma once

#include "platform/linux/x11/clipboard/clipboard_session.h"
#include "platform/linux/x11/clipboard/served_contents.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

namespace lomaris {

/// Incremental transfers (ICCCM 2.7.2, INCR) of contents that are too long for one property, to any number of readers
/// at once: a reader deletes the property to request the next piece. A transfer continues with the bytes that it began
/// with, even if the clipboard has new contents, and ends if the reader's window is destroyed. Main thread.
class ClipboardTransfers {
public:
    /// `session` must outlive this object.
    explicit ClipboardTransfers(ClipboardSession& session) : session_(session) {}

    /// Sets the property of the reader's window to INCR with the size of the contents. Pieces follow in `handle`.
    void start(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format, SharedBytes bytes);

    void handle(const xcb_generic_event_t& event);

    [[nodiscard]] bool isEmpty() const { return transfers_.empty(); }

    /// Drops the transfers whose readers have requested no piece for 10 s.
    void dropStalled();

private:
    using Place = std::pair<xcb_window_t, xcb_atom_t>;
    struct Transfer {
        xcb_atom_t type = XCB_ATOM_NONE;
        std::uint8_t format = 8;
        SharedBytes bytes;
        std::size_t offset = 0;
        Moment lastProgress{};
    };
    using Transfers = std::map<Place, Transfer>;

    void sendNextPiece(const Place& place);
    void dropWindow(xcb_window_t window);
    Transfers::iterator drop(Transfers::iterator transfer);
    void watch(xcb_window_t window, std::uint32_t events);

    ClipboardSession& session_;
    Transfers transfers_;
};

}  // namespace lomaris
