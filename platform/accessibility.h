#pragma once

#include "platform/attribute_value.h"
#include "platform/ax_error.h"
#include "platform/element.h"
#include "text/text.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace lomaris {

/// Process identifier of an application, as the platform reports it.
using ProcessIdentifier = std::int32_t;

/// The result of copying one attribute. With an error code `value` is always `NullValue`; with a success code it may
/// be.
struct AttributeAnswer {
    AXError error = AXError::success;
    AttributeValue value = NullValue{};

    friend bool operator==(const AttributeAnswer&, const AttributeAnswer&) = default;
};

/// The result of copying one attribute as an element. With an error code `element` is always absent; with a success
/// code it is absent if the attribute's value is null.
struct ElementAnswer {
    AXError error = AXError::success;
    std::optional<Element> element;
};

/// Whether an attribute can be set. `settable` is meaningful only with a success code.
struct SettableAnswer {
    AXError error = AXError::success;
    bool settable = false;

    friend bool operator==(const SettableAnswer&, const SettableAnswer&) = default;
};

/// Whether the trust check may show the system's permission prompt.
enum class TrustPrompt { none, ask };

/// The accessibility service of the platform: elements of other processes, their attributes and actions.
///
/// An operation on an element may send a request to another process and block until it replies or the platform's
/// timeout expires. Operations report failures as an `AXError` and never throw. Attribute and action names are the
/// platform's own ("AXSelectedText", "AXRaise"), in ASCII. Main thread only.
class Accessibility {
public:
    Accessibility() = default;
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;
    virtual ~Accessibility() = default;

    /// True if this process may use accessibility; false if that cannot be determined. With `TrustPrompt::ask` the
    /// system also shows its permission prompt if the permission is missing; the result is the state before the user
    /// decides. Never fails.
    [[nodiscard]] virtual bool isProcessTrusted(TrustPrompt prompt) = 0;

    /// The root element of the application with this process identifier. Never fails: if no such process exists,
    /// operations on the element return an error. The caller owns the result.
    [[nodiscard]] virtual Element applicationElement(ProcessIdentifier processIdentifier) = 0;

    /// The system-wide element, whose focused element is that of the frontmost application. Never fails. The caller
    /// owns the result.
    [[nodiscard]] virtual Element systemWideElement() = 0;

    /// Copies one attribute. Texts are in UTF-16 units and may contain half a surrogate pair.
    [[nodiscard]] virtual AttributeAnswer copyAttribute(const Element& element, std::string_view attribute) = 0;

    /// Copies one attribute as an element, without checking the kind of its value. If the value is no element,
    /// operations on the result return errors. The caller owns the element.
    [[nodiscard]] virtual ElementAnswer copyElementAttribute(const Element& element, std::string_view attribute) = 0;

    /// Copies several attributes of several elements. `result[i][j]` is the result, including the error code, of
    /// copying `attributes[j]` of `elements[i]` alone. Exists to save requests to other processes; the order of the
    /// copies is unspecified.
    [[nodiscard]] virtual std::vector<std::vector<AttributeAnswer>> copyAttributes(
        std::span<const Element> elements, std::span<const std::string_view> attributes) = 0;

    /// Sets one attribute and returns the result code. A success code means that the write arrived, as far as the
    /// platform can determine.
    [[nodiscard]] virtual AXError setAttribute(const Element& element, std::string_view attribute,
                                               const AttributeValue& value) = 0;

    /// Returns whether one attribute of one element can be set.
    [[nodiscard]] virtual SettableAnswer isAttributeSettable(const Element& element, std::string_view attribute) = 0;

    /// Calls `isAttributeSettable` for several elements at once; one result for each element, in their order.
    [[nodiscard]] virtual std::vector<SettableAnswer> areAttributesSettable(std::span<const Element> elements,
                                                                            std::string_view attribute) = 0;

    /// Performs an action and returns the result code.
    [[nodiscard]] virtual AXError performAction(const Element& element, std::string_view action) = 0;

    /// The process that owns the element; nullopt if it cannot be determined.
    [[nodiscard]] virtual std::optional<ProcessIdentifier> processIdentifier(const Element& element) = 0;

    /// True if `text` contains `word`, ignoring case by the rules of the user's locale. Never fails; sends no request.
    [[nodiscard]] virtual bool containsIgnoringCase(TextView text, TextView word) = 0;
};

}  // namespace lomaris
