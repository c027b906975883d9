#pragma once

#include "platform/linux/x11/window_identity.h"
#include "platform/linux/x11/x11_connection.h"
#include "platform/workspace.h"

namespace lomaris {

/// The workspace service of an X11 session: the front application and the applications of processes, from the
/// properties of windows.
///
/// The bundle identifier is `_GTK_APPLICATION_ID` of a window, otherwise the one that the application table has for the
/// class name of `WM_CLASS`. The localized name is that of the desktop entry in the user's language, otherwise the
/// class name. The properties of all windows of the process are combined, as a dialog may lack what the main window
/// has. A running process without a window has the short name of its program and no bundle identifier.
class LinuxWorkspace final : public Workspace {
public:
    /// `connection` must outlive the workspace.
    explicit LinuxWorkspace(X11Connection& connection) : connection_(connection) {}

    [[nodiscard]] std::optional<RunningApplication> frontmostApplication() override;
    [[nodiscard]] std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) override;

private:
    /// The identity of each window in `_NET_CLIENT_LIST` of the root window (EWMH), oldest first, then of `additional`.
    [[nodiscard]] std::vector<WindowIdentity> identities(std::optional<xcb_window_t> additional);

    X11Connection& connection_;
};

}  // namespace lomaris
