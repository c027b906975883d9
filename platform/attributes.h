#pragma once

#include <string_view>

/// Names of the accessibility attributes and actions that this project uses, as the platform spells them.
namespace lomaris::attribute {

inline constexpr std::string_view children = "AXChildren";
inline constexpr std::string_view enabled = "AXEnabled";
inline constexpr std::string_view focused = "AXFocused";
inline constexpr std::string_view focusedUIElement = "AXFocusedUIElement";
inline constexpr std::string_view focusedWindow = "AXFocusedWindow";
inline constexpr std::string_view identifier = "AXIdentifier";
inline constexpr std::string_view main = "AXMain";
inline constexpr std::string_view mainWindow = "AXMainWindow";
inline constexpr std::string_view menuBar = "AXMenuBar";
inline constexpr std::string_view menuItemCommandCharacter = "AXMenuItemCmdChar";
inline constexpr std::string_view menuItemCommandModifiers = "AXMenuItemCmdModifiers";
inline constexpr std::string_view role = "AXRole";
inline constexpr std::string_view selectedText = "AXSelectedText";
inline constexpr std::string_view selectedTextRange = "AXSelectedTextRange";
inline constexpr std::string_view subrole = "AXSubrole";
inline constexpr std::string_view title = "AXTitle";
inline constexpr std::string_view value = "AXValue";
inline constexpr std::string_view windows = "AXWindows";

}  // namespace lomaris::attribute

namespace lomaris::action {

inline constexpr std::string_view press = "AXPress";
inline constexpr std::string_view raise = "AXRaise";

}  // namespace lomaris::action
