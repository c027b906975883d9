#pragma once

#include "platform/linux/x11/window_identity.h"
#include "platform/linux/x11/x11_connection.h"
#include "platform/workspace.h"

namespace lomaris {

/// The applications of an X11 session, as the window manager and the windows themselves describe them.
///
/// The bundle identifier is the one that the application gives itself through its toolkit, else the one that the class
/// of its windows is known to stand for. The name is that of its desktop entry in the user's language, else the class
/// of its windows. All windows of a process are looked at, so that a dialog in front tells no less than the document
/// behind it. A live process without a window has the short name of its program and no bundle identifier.
class LinuxWorkspace final : public Workspace {
public:
    /// `connection` outlives the workspace.
    explicit LinuxWorkspace(X11Connection& connection) : connection_(connection) {}

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
    [[nodiscard]] std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) override;

private:
    /// The identity of each window of the session that the window manager keeps, oldest first, `additional` last.
    [[nodiscard]] std::vector<WindowIdentity> identities(std::optional<xcb_window_t> additional);

    X11Connection& connection_;
};

}  // namespace lomaris
