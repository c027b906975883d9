#pragma once

#include "platform/simulated/element_state.h"

#include <string_view>

/// How a text area answers and changes.
namespace lomaris::simulated {

/// Whether the range lies inside of a text of this length.
[[nodiscard]] bool isInside(TextRange range, TextView text);

[[nodiscard]] AttributeAnswer readText(const TextState& state, std::string_view attribute);
[[nodiscard]] bool isTextSettable(std::string_view attribute);
/// Sets one of the settable attributes. Anything but the right kind of value is an illegal argument.
[[nodiscard]] AXError setText(TextState& state, std::string_view attribute, const AttributeValue& value);

}  // namespace lomaris::simulated
