#pragma once

#include "platform/linux/atspi/atspi.h"

#include <cstdint>
#include <string_view>

namespace lomaris {

/// AT-SPI role numbers that code other than the table of roles uses.
namespace atspi_role {
inline constexpr std::uint32_t menu = 33;
inline constexpr std::uint32_t menuBar = 34;
inline constexpr std::uint32_t menuItem = 35;
inline constexpr std::uint32_t popupMenu = 41;
inline constexpr std::uint32_t terminal = 60;
inline constexpr std::uint32_t text = 61;
inline constexpr std::uint32_t paragraph = 73;
inline constexpr std::uint32_t entry = 79;
}  // namespace atspi_role

/// The accessibility role ("AXButton") for an AT-SPI role; "AXUnknown" if there is none.
[[nodiscard]] std::string_view roleName(std::uint32_t role);

/// The accessibility subrole ("AXSecureTextField"); empty if there is none.
[[nodiscard]] std::string_view subroleName(std::uint32_t role);

/// True if the accessibility role also depends on the states of the object: a multi-line entry is a text area.
[[nodiscard]] bool roleDependsOnStates(std::uint32_t role);

/// The accessibility role of an object with such an AT-SPI role.
[[nodiscard]] std::string_view roleName(std::uint32_t role, atspi::States states);

/// True if the accessibility role also depends on the parent: a menu or menu item in a menu bar is a menu bar item.
[[nodiscard]] bool roleDependsOnParent(std::uint32_t role);

/// The accessibility role of an object with such an AT-SPI role whose parent has the AT-SPI role `parentRole`.
[[nodiscard]] std::string_view roleName(std::uint32_t role, std::uint32_t parentRole);

}  // namespace lomaris
