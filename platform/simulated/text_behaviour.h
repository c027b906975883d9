#pragma once

#include "platform/simulated/element_state.h"

#include <string_view>

/// How the attributes of a text area are read and set.
namespace lomaris::simulated {

/// True if the range is inside the text.
[[nodiscard]] bool isInside(TextRange range, TextView text);

[[nodiscard]] AttributeAnswer readText(const TextState& state, std::string_view attribute);
[[nodiscard]] bool isTextSettable(std::string_view attribute);
/// Sets one of the settable attributes. Returns `illegalArgument` for a value of the wrong kind or a range outside the
/// text.
[[nodiscard]] AXError setText(TextState& state, std::string_view attribute, const AttributeValue& value);

}  // namespace lomaris::simulated
