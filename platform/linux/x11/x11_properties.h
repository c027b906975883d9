#pragma once

#include "platform/linux/x11/x11_connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {

// Properties are set by other programs and may hold anything: a wrong type or format is an absent property, and what is
// longer than a bound is cut. The connection must be usable; a window that is gone has no properties.

/// A request for one property that was sent and not waited for.
using PropertyRequest = xcb_get_property_cookie_t;

/// Asks for up to 16 KiB of a property of any type.
[[nodiscard]] PropertyRequest requestProperty(X11Connection& connection, xcb_window_t window, xcb_atom_t property);

/// The first 32-bit number of a property of type CARDINAL.
[[nodiscard]] std::optional<std::uint32_t> receiveNumber(X11Connection& connection, PropertyRequest request);

/// The windows of a property of type WINDOW, in order; empty where there are none.
[[nodiscard]] std::vector<xcb_window_t> receiveWindows(X11Connection& connection, PropertyRequest request);

/// The bytes of a property of 8-bit format, zero bytes included; empty where there are none.
[[nodiscard]] std::string receiveBytes(X11Connection& connection, PropertyRequest request);

/// Whether the property exists, whatever it holds.
[[nodiscard]] bool receivePresence(X11Connection& connection, PropertyRequest request);

}  // namespace lomaris
