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

/// The names that every exchange over the clipboard needs.
struct ClipboardNames {
    xcb_atom_t atomPair = XCB_ATOM_NONE;
    xcb_atom_t clipboard = XCB_ATOM_NONE;
    xcb_atom_t incremental = XCB_ATOM_NONE;
    xcb_atom_t keeper = XCB_ATOM_NONE;
    xcb_atom_t multiple = XCB_ATOM_NONE;
    xcb_atom_t operation = XCB_ATOM_NONE;
    xcb_atom_t targets = XCB_ATOM_NONE;
    xcb_atom_t timestamp = XCB_ATOM_NONE;
    xcb_atom_t transfer = XCB_ATOM_NONE;
};

/// The clipboard's own connection to the X server, with an event queue that nobody else reads, and a window that owns
/// the selection. Hands every event to one handler. The waits have the deadlines of the connection; a server that
/// missed one, or that went away, is given up. Main thread; never throws.
class ClipboardSession {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    explicit ClipboardSession(X11Connection::Waiting waiting = X11Connection::Waiting::withDeadline)
        : connection_(waiting) {}

    /// Connects; whether there is an X server with everything that is needed. Everything else may be called only
    /// after it answered yes. `handler` may not call back into anything that hands out events.
    [[nodiscard]] bool open(Handler handler);

    /// Whether the server is still there. Where it is not, requests do nothing and waits end at once.
    [[nodiscard]] bool isAlive();

    [[nodiscard]] const XcbFunctions& xcb() const { return connection_.xcb(); }
    [[nodiscard]] xcb_connection_t* handle() const { return connection_.handle(); }
    [[nodiscard]] X11Connection& connection() { return connection_; }
    [[nodiscard]] ClipboardAtoms& atoms() { return atoms_; }
    [[nodiscard]] const ClipboardNames& names() const { return names_; }
    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// The window that owns the selection.
    [[nodiscard]] xcb_window_t window() const { return window_; }

    /// A new window that nobody sees, with property events.
    [[nodiscard]] xcb_window_t createWindow();

    /// Whether this connection made the window.
    [[nodiscard]] bool isOwnWindow(xcb_window_t window) const;

    /// The connection that made a window or any other resource; the same number for all of its resources.
    [[nodiscard]] std::uint32_t clientOf(xcb_window_t window) const;

    /// Whether the server tells of a new owner of a selection.
    [[nodiscard]] bool isOwnerChange(const xcb_generic_event_t& event) const;

    /// Hands out the events that have arrived. Does not wait.
    void pump();

    /// Sends what the handler and others wanted to send. Sending may receive events, and a wait for the socket would
    /// not see those: whether some were handed out now, which may have left more to send.
    [[nodiscard]] bool flush();

    /// Hands out all events that the server has caused so far: one exchange with the server.
    void settle();

    /// Hands out events as they arrive until `isReached` answers yes; whether it did before `deadline`.
    [[nodiscard]] bool waitUntil(const std::function<bool()>& isReached, Moment deadline);

    /// The server's time now, or nothing where the server is gone.
    [[nodiscard]] std::optional<xcb_timestamp_t> serverTime();

    /// The most bytes to be put into a property at once: what the server takes, and what fits into the socket at once.
    [[nodiscard]] std::size_t longestPiece() const { return longestPiece_; }

    /// Sets a property of another program's window. `format` is 8, 16 or 32, and the bytes are whole units, not more
    /// than `longestPiece`.
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
