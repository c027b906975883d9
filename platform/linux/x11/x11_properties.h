#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {

// Reads properties of windows in two steps, so that several requests can be sent before the first wait. Other programs
// set these properties: one with an unexpected type or format counts as absent, and its value is truncated to 16 KiB. A
// window that does not exist has no properties. The connection must be usable.

/// A GetProperty request that was sent. Pass it to exactly one of the functions that receive the reply.
using PropertyRequest = xcb_get_property_cookie_t;

/// Sends a GetProperty request for up to 16 KiB of a property of any type.
[[nodiscard]] PropertyRequest requestProperty(X11Connection& connection, xcb_window_t window, xcb_atom_t property);

/// The first 32-bit number of a property of type CARDINAL. nullopt if there is none.
[[nodiscard]] std::optional<std::uint32_t> receiveNumber(X11Connection& connection, PropertyRequest request);

/// The windows of a property of type WINDOW, in order. Empty if there is none.
[[nodiscard]] std::vector<xcb_window_t> receiveWindows(X11Connection& connection, PropertyRequest request);

/// The bytes of a property of format 8, including zero bytes. Empty if there is none.
[[nodiscard]] std::string receiveBytes(X11Connection& connection, PropertyRequest request);

/// True if the property exists, with any type.
[[nodiscard]] bool receivePresence(X11Connection& connection, PropertyRequest request);

}  // namespace lomaris
