#pragma once

#include "platform/linux/window_raising.h"
#include "platform/linux/x11_connection.h"

namespace lomaris {

/// Raises windows by asking the window manager.
class X11WindowRaiser final : public WindowRaiser {
public:
    /// `connection` outlives the raiser.
    explicit X11WindowRaiser(X11Connection& connection) : connection_(connection) {}

    [[nodiscard]] bool raise(ProcessIdentifier processIdentifier, TextView title) override;

private:
    X11Connection& connection_;
};

}  // namespace lomaris
