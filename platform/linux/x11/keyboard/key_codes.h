#pragma once

#include <cstdint>
#include <optional>

namespace lomaris {

/// An X11 keysym: the number of a symbol on a key.
using Keysym = std::uint32_t;

/// The keysym of a macOS virtual key code on the US keyboard layout. nullopt for keys that the tool never presses.
[[nodiscard]] std::optional<Keysym> keysymOfKeyCode(std::uint16_t keyCode);

}  // namespace lomaris
