#pragma once

#include <cstdint>
#include <optional>

namespace lomaris {

/// What a key means, as the X protocol numbers it.
using Keysym = std::uint32_t;

/// The meaning of a virtual key code of the platform the tool is written for, on its standard keyboard; nothing for the
/// keys that the tool never presses.
[[nodiscard]] std::optional<Keysym> keysymOfKeyCode(std::uint16_t keyCode);

}  // namespace lomaris
