#pragma once

#include "platform/linux/x11/clipboard/clipboard_atoms.h"
#include "platform/linux/x11/x11_connection.h"
#include "platform/scheduling.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace lomaris {

/// The atoms that the clipboard needs.
struct ClipboardNames {
    /// ATOM_PAIR
    xcb_atom_t atomPair = XCB_ATOM_NONE;
    /// CLIPBOARD
    xcb_atom_t clipboard = XCB_ATOM_NONE;
    /// INCR
    xcb_atom_t incremental = XCB_ATOM_NONE;
    /// _LOMARIS_CLIPBOARD_KEEPER
    xcb_atom_t keeper = XCB_ATOM_NONE;
    /// MULTIPLE
    xcb_atom_t multiple = XCB_ATOM_NONE;
    /// _LOMARIS_CLIPBOARD_OPERATION
    xcb_atom_t operation = XCB_ATOM_NONE;
    /// TARGETS
    xcb_atom_t targets = XCB_ATOM_NONE;
    /// TIMESTAMP
    xcb_atom_t timestamp = XCB_ATOM_NONE;
    /// LOMARIS_TRANSFER, the property of the requestor windows.
    xcb_atom_t transfer = XCB_ATOM_NONE;
};

/// A connection to the X server with an event loop, for the clipboard only, and the window that owns the selection.
/// Passes every event to one handler. All waits have the timeouts of the connection; a server that misses one, or that
/// disconnects, counts as gone. Main thread. Never throws.
class ClipboardSession {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    explicit ClipboardSession(X11Connection::Waiting waiting = X11Connection::Waiting::withDeadline)
        : connection_(waiting) {}

    /// Connects. Returns false if there is no X server with XFIXES. All other functions may be called only after it has
    /// returned true. `handler` must not call functions that handle events (`pump`, `flush`, `settle`, `waitUntil`,
    /// `serverTime`).
    [[nodiscard]] bool open(Handler handler);

    /// True if the server is not known to be gone. If it is, requests have no effect and waits end at once.
    [[nodiscard]] bool isAlive();

    [[nodiscard]] const XcbFunctions& xcb() const { return connection_.xcb(); }
    [[nodiscard]] xcb_connection_t* handle() const { return connection_.handle(); }
    [[nodiscard]] X11Connection& connection() { return connection_; }
    [[nodiscard]] ClipboardAtoms& atoms() { return atoms_; }
    [[nodiscard]] const ClipboardNames& names() const { return names_; }
    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// The window that owns the selection.
    [[nodiscard]] xcb_window_t window() const { return window_; }

    /// Creates an invisible window with PropertyNotify events.
    [[nodiscard]] xcb_window_t createWindow();

    /// True if this client created the window.
    [[nodiscard]] bool isOwnWindow(xcb_window_t window) const;

    /// The client that created a window or another resource: a number that is equal for all resources of a client.
    [[nodiscard]] std::uint32_t clientOf(xcb_window_t window) const;

    /// True if the event is an XFIXES SelectionNotify, which reports a new owner of a selection.
    [[nodiscard]] bool isOwnerChange(const xcb_generic_event_t& event) const;

    /// Handles the events that have arrived. Does not block.
    void pump();

    /// Sends all buffered requests. libxcb may receive events while it sends, which a later wait for the socket would
    /// miss. Handles those and returns true if there were any; their handlers may have queued more requests.
    [[nodiscard]] bool flush();

    /// Handles all events that the server has sent so far, with one round trip.
    void settle();

    /// Handles events as they arrive until `isReached` returns true. Returns false if that does not happen before
    /// `deadline`, or if the server is gone.
    [[nodiscard]] bool waitUntil(const std::function<bool()>& isReached, Moment deadline);

    /// The current server time, from the PropertyNotify event of a property of our own window (ICCCM 2.1). nullopt if
    /// the server is gone.
    [[nodiscard]] std::optional<xcb_timestamp_t> serverTime();

    /// The most bytes for one ChangeProperty request: limited by the maximum request length of the server and the
    /// buffer of the socket.
    [[nodiscard]] std::size_t longestPiece() const { return longestPiece_; }

    /// Sets a property of another client's window. `format` is 8, 16 or 32. `bytes` has a whole number of such units
    /// and at most `longestPiece` bytes.
    void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                     std::string_view bytes);

private:
    [[nodiscard]] bool prepareOwnerChanges();
    [[nodiscard]] bool internNames();
    [[nodiscard]] bool awaitRoom();
    void handle(const xcb_generic_event_t& event);
    void giveUp();

    X11Connection connection_;
    ClipboardAtoms atoms_{connection_};
    ClipboardNames names_;
    Handler handler_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_atom_t clockProperty_ = XCB_ATOM_NONE;
    std::optional<xcb_timestamp_t> clockReading_;
    std::uint8_t firstFixesEvent_ = 0;
    std::size_t longestPiece_ = 0;
    int descriptor_ = -1;
    bool isGivenUp_ = false;
};

}  // namespace lomaris
