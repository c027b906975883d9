#pragma once

#include "platform/platform.h"

#include <optional>
#include <string_view>
#include <vector>

/// Typed readers of single attributes. They do not report errors: the result is absent if there is an error code, a
/// null value or a value of another type. Callers that need the error code use `Accessibility` directly. Each call may
/// block until the target application replies or a timeout expires. Main thread.
namespace lomaris {

/// Returns the value if it is an element.
[[nodiscard]] std::optional<Element> copyOptionalElementAttribute(Accessibility& accessibility, const Element& from,
                                                                  std::string_view attribute);

/// Returns the value if it is an array of elements; otherwise, or if a member is not an element, an empty array.
[[nodiscard]] std::vector<Element> copyOptionalElementArrayAttribute(Accessibility& accessibility, const Element& from,
                                                                     std::string_view attribute);

/// Returns the value if it is a text, which may be empty.
[[nodiscard]] std::optional<Text> copyOptionalStringAttribute(Accessibility& accessibility, const Element& from,
                                                              std::string_view attribute);

/// Returns the value if it is a boolean.
[[nodiscard]] std::optional<bool> copyOptionalBoolAttribute(Accessibility& accessibility, const Element& from,
                                                            std::string_view attribute);

/// Returns the selected range in UTF-16 units, which may have length 0.
[[nodiscard]] std::optional<TextRange> copySelectedRange(Accessibility& accessibility, const Element& from);

/// True if the element reports that it has the keyboard focus.
[[nodiscard]] bool isFocused(Accessibility& accessibility, const Element& element);

/// Raises the application's focused window, or its main window if it has none focused, and waits 0.1 s for the window
/// server. Does nothing if there is neither window. Ignores errors of the application.
void raiseFocusedWindow(Platform& platform, ProcessIdentifier processIdentifier);

/// Returns the value of `answer` if the copy succeeded and the value is a `Value`, otherwise nullptr. For attributes
/// that were copied in a batch. The pointer is valid as long as `answer`.
template <typename Value>
[[nodiscard]] const Value* valueIn(const AttributeAnswer& answer) {
    return answer.error == AXError::success ? std::get_if<Value>(&answer.value) : nullptr;
}

}  // namespace lomaris
