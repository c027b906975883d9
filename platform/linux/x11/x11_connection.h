#pragma once

#include "platform/linux/x11/x11_library.h"
#include "platform/scheduling.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace lomaris {

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply of the X server, or null where the request failed.
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeDeleter>;

/// The names that this platform asks the X server for.
struct X11Atoms {
    xcb_atom_t activeWindow = XCB_ATOM_NONE;
    xcb_atom_t clientList = XCB_ATOM_NONE;
    xcb_atom_t gtkApplicationId = XCB_ATOM_NONE;
    xcb_atom_t windowState = XCB_ATOM_NONE;
    xcb_atom_t windowProcess = XCB_ATOM_NONE;
};

/// The connection to the X server of the session, opened at the first use and shared by the services of the platform.
///
/// An X server may hang, and this tool must not hang with it: every wait has a deadline, except in a process that is of
/// no use without the server. A server that missed one is given up for the rest of the run, as nothing tells whether it
/// will answer later; so is one that went away. From then on requests may still be sent, but every reply is null. The
/// program must ignore SIGPIPE. Main thread only; never throws.
class X11Connection {
public:
    /// Without a deadline, every wait for the server takes as long as the server does, and connecting needs no thread
    /// of its own.
    enum class Waiting : std::uint8_t { withDeadline, withoutDeadline };

    explicit X11Connection(Waiting waiting = Waiting::withDeadline) : waiting_(waiting) {}
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;
    ~X11Connection();

    /// Opens the connection where that was not tried before; whether there is one to use. No other operation may be
    /// called before this one answered yes.
    [[nodiscard]] bool isUsable();

    [[nodiscard]] const XcbFunctions& xcb() const { return *xcb_; }
    [[nodiscard]] xcb_connection_t* handle() const { return connection_; }
    [[nodiscard]] xcb_window_t root() const { return root_; }
    [[nodiscard]] const X11Atoms& atoms() const { return atoms_; }

    /// Waits for the reply to a request that was sent, or answers null: the server refused, went away, or missed the
    /// deadline. Several requests may be sent before the first wait. The caller owns the reply.
    template <typename Reply, typename Cookie>
    [[nodiscard]] XReply<Reply> wait(Cookie cookie) {
        return XReply<Reply>(static_cast<Reply*>(waitForReply(cookie.sequence)));
    }

    /// The deadline for whatever the server is to do next, as a moment of the monotonic clock; `Moment::max()` if there
    /// is none.
    [[nodiscard]] Moment replyDeadline() const;

    /// Whether the server has the extension of this name ("XTEST").
    [[nodiscard]] bool hasExtension(std::string_view name);

    /// Learns about an extension under the deadline, so that its functions do not wait for the server without one;
    /// whether the server answered. Needed once before the first request of the extension.
    [[nodiscard]] bool prepareExtension(xcb_extension_t* extension);

private:
    [[nodiscard]] bool open();
    [[nodiscard]] bool chooseScreen(int number);
    [[nodiscard]] bool internAtoms();
    [[nodiscard]] void* waitForReply(unsigned int sequence);
    void giveUp();

    enum class State : std::uint8_t { unopened, open, unusable };

    Waiting waiting_;
    State state_ = State::unopened;
    const XcbFunctions* xcb_ = nullptr;
    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    X11Atoms atoms_;
};

}  // namespace lomaris
