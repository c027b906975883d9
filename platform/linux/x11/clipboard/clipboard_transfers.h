#pragma once

#include "platform/linux/x11/clipboard/clipboard_session.h"
#include "platform/linux/x11/clipboard/served_contents.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

namespace lomaris {

/// Transfers of contents that are too long for one property, to any number of readers at once: a reader asks for the
/// next piece by deleting the property that held the last one. A transfer goes on with the bytes that it began with,
/// whatever becomes of the clipboard meanwhile; it ends with its reader. Main thread.
class ClipboardTransfers {
public:
    /// `session` outlives the transfers.
    explicit ClipboardTransfers(ClipboardSession& session) : session_(session) {}

    /// Announces the contents in a property of the reader's window; the pieces follow as the reader takes them.
    void start(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format, SharedBytes bytes);

    void handle(const xcb_generic_event_t& event);

    [[nodiscard]] bool isEmpty() const { return transfers_.empty(); }

    /// Ends the transfers whose readers have not taken anything for long.
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
