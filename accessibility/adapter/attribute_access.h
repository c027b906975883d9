#pragma once

#include "platform/platform.h"

#include <optional>
#include <string_view>
#include <vector>

/// Typed readers of single attributes. They never fail: an error code, a null value and a value of another kind are
/// simply absent. Operations that must report a code make the copy themselves. Each call crosses into the target
/// application; main thread.
namespace lomaris {

/// The value as an element, or nothing.
[[nodiscard]] std::optional<Element> copyOptionalElementAttribute(Accessibility& accessibility, const Element& from,
                                                                  std::string_view attribute);

/// The value as an array of elements; empty where it is no array, or one with a member that is no element.
[[nodiscard]] std::vector<Element> copyOptionalElementArrayAttribute(Accessibility& accessibility, const Element& from,
                                                                     std::string_view attribute);

/// The value as a text, or nothing. An empty text is present.
[[nodiscard]] std::optional<Text> copyOptionalStringAttribute(Accessibility& accessibility, const Element& from,
                                                              std::string_view attribute);

/// The value as a boolean, or nothing.
[[nodiscard]] std::optional<bool> copyOptionalBoolAttribute(Accessibility& accessibility, const Element& from,
                                                            std::string_view attribute);

/// The selected range in UTF-16 units, or nothing. A range of length 0 is present.
[[nodiscard]] std::optional<TextRange> copySelectedRange(Accessibility& accessibility, const Element& from);

/// Whether the element says that it has the keyboard focus; no where it does not say so as a boolean.
[[nodiscard]] bool isFocused(Accessibility& accessibility, const Element& element);

/// Brings the focused window of an application, else its main window, to the front and gives the window server 0.1 s to
/// settle. Without either window nothing is done and no time passes. What the application answers does not matter.
void raiseFocusedWindow(Platform& platform, ProcessIdentifier processIdentifier);

/// The value inside an answer as a `Value`, or nothing where the copy failed or the kind is another: how the readers
/// above look at an answer, for walks that copy in batches. The pointer is into `answer`.
template <typename Value>
[[nodiscard]] const Value* valueIn(const AttributeAnswer& answer) {
    return answer.error == AXError::success ? std::get_if<Value>(&answer.value) : nullptr;
}

}  // namespace lomaris
