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

/// A reply of the X server, owned. Null if the request failed.
template <typename Reply>
using XReply = std::unique_ptr<Reply, FreeDeleter>;

/// The atoms that this folder uses.
struct X11Atoms {
    /// _NET_ACTIVE_WINDOW
    xcb_atom_t activeWindow = XCB_ATOM_NONE;
    /// _NET_CLIENT_LIST
    xcb_atom_t clientList = XCB_ATOM_NONE;
    /// _GTK_APPLICATION_ID
    xcb_atom_t gtkApplicationId = XCB_ATOM_NONE;
    /// WM_STATE
    xcb_atom_t windowState = XCB_ATOM_NONE;
    /// _NET_WM_PID
    xcb_atom_t windowProcess = XCB_ATOM_NONE;
};

/// The connection to the X server of the session, opened at the first use.
///
/// This folder has the X11 connection, atoms and properties, and what it takes to find, identify and activate windows
/// (`front_window.h`, `window_identity.h`, `window_activation.h`, `linux_workspace.h`). `keyboard/` and `clipboard/`
/// and `native_platform.cpp` use it. It may use `process/` and `applications/`, and libxcb, which it opens at run time.
/// One connection is shared by the workspace, the keyboard and the window activation; the clipboard has its own.
///
/// Invariants:
/// 1. Nothing connects before the first `isUsable`, and no request is sent before it has returned true once.
/// 2. Every wait has a timeout (`replyDeadline`), so that the tool does not hang if the X server does. The only
///    exception is the clipboard keeper, which has no purpose without the server: `Waiting::withoutDeadline`.
/// 3. After a missed deadline or a lost connection, the server counts as gone for the rest of the run: requests may
///    still be sent, and every reply is null.
/// 4. Properties and windows belong to other programs: any of them may be wrong, or may no longer exist.
///
/// The program must ignore SIGPIPE. Main thread only. Never throws.
class X11Connection {
public:
    /// Whether waits have a timeout. Without one, connecting needs no thread of its own.
    enum class Waiting : std::uint8_t { withDeadline, withoutDeadline };

    explicit X11Connection(Waiting waiting = Waiting::withDeadline) : waiting_(waiting) {}
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;
    ~X11Connection();

    /// Opens the connection at the first call. Returns true if there is one and the server is not given up. Must return
    /// true once before any other operation is called.
    [[nodiscard]] bool isUsable();

    [[nodiscard]] const XcbFunctions& xcb() const { return *xcb_; }
    [[nodiscard]] xcb_connection_t* handle() const { return connection_; }
    [[nodiscard]] xcb_window_t root() const { return root_; }
    [[nodiscard]] const X11Atoms& atoms() const { return atoms_; }

    /// Blocks until the reply to a request arrives. Null after an error, a lost connection or a missed deadline.
    /// Several requests may be sent before the first wait. The caller owns the reply.
    template <typename Reply, typename Cookie>
    [[nodiscard]] XReply<Reply> wait(Cookie cookie) {
        return XReply<Reply>(static_cast<Reply*>(waitForReply(cookie.sequence)));
    }

    /// The deadline for a reply to a request sent now, on the monotonic clock; `Moment::max()` if there is none.
    [[nodiscard]] Moment replyDeadline() const;

    /// True if the server has the extension with this name ("XTEST").
    [[nodiscard]] bool hasExtension(std::string_view name);

    /// Requests the data of an extension, with a timeout. Returns true if the server replied. Must be called once
    /// before the first request of the extension, as libxcb would otherwise wait for that data without a timeout.
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
