#pragma once

#include "platform/linux/atspi/atspi.h"

#include <cstdint>
#include <string_view>

namespace lomaris {

/// Numbers of the roles that need more than a look into the table.
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

/// The platform's name for an AT-SPI role ("AXButton"); "AXUnknown" where it has none.
[[nodiscard]] std::string_view roleName(std::uint32_t role);

/// The platform's name for the finer kind ("AXSecureTextField"), empty where there is none.
[[nodiscard]] std::string_view subroleName(std::uint32_t role);

/// Whether the name depends on the states of the object: an entry of several lines is an area.
[[nodiscard]] bool roleDependsOnStates(std::uint32_t role);

/// The name of such a role.
[[nodiscard]] std::string_view roleName(std::uint32_t role, atspi::States states);

/// Whether the name depends on the role of the parent: what stands in a menu bar is a menu bar item.
[[nodiscard]] bool roleDependsOnParent(std::uint32_t role);

/// The name of such a role below a parent of role `parentRole`.
[[nodiscard]] std::string_view roleName(std::uint32_t role, std::uint32_t parentRole);

}  // namespace lomaris
