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

/// Process identifier of an application, as the platform gives it.
using ProcessIdentifier = std::int32_t;

/// What a copy of one attribute answered. A success code may come with a `NullValue`; an error code always does.
struct AttributeAnswer {
    AXError error = AXError::success;
    AttributeValue value = NullValue{};

    friend bool operator==(const AttributeAnswer&, const AttributeAnswer&) = default;
};

/// What a copy of one attribute, taken as an element, answered. A success code may come without an element (the value
/// was null); an error code always does.
struct ElementAnswer {
    AXError error = AXError::success;
    std::optional<Element> element;
};

/// Whether an attribute can be set. `settable` means something only beside a success code.
struct SettableAnswer {
    AXError error = AXError::success;
    bool settable = false;

    friend bool operator==(const SettableAnswer&, const SettableAnswer&) = default;
};

/// Whether the trust check may show the system's permission prompt.
enum class TrustPrompt { none, ask };

/// The accessibility service of the platform: elements of other processes, their attributes and actions.
///
/// Every operation on an element may cross into another process and block until that process answers or a deadline of
/// the platform passes; what failed is said by an `AXError`, never by an exception. Attribute and action names are the
/// platform's own ("AXSelectedText", "AXRaise"), ASCII. All operations are called on the main thread.
class Accessibility {
public:
    Accessibility() = default;
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;
    virtual ~Accessibility() = default;

    /// Whether this process may use accessibility. With `TrustPrompt::ask` the system asks the user where it may not;
    /// the answer is the state before the user decides. Never fails: where nothing can be asked, the answer is no.
    [[nodiscard]] virtual bool isProcessTrusted(TrustPrompt prompt) = 0;

    /// The root element of the application with this process identifier. Never fails, not even for a process that does
    /// not exist: operations on the element then answer an error. The caller owns the result.
    [[nodiscard]] virtual Element applicationElement(ProcessIdentifier processIdentifier) = 0;

    /// The element that stands for the whole system, whose focused element is that of the application in front. Never
    /// fails. The caller owns the result.
    [[nodiscard]] virtual Element systemWideElement() = 0;

    /// Copies one attribute. The value is the caller's; texts come in UTF-16 units and may hold half a surrogate pair.
    [[nodiscard]] virtual AttributeAnswer copyAttribute(const Element& element, std::string_view attribute) = 0;

    /// Copies one attribute whose value the caller takes as an element without looking at its kind: whatever stands
    /// there comes back as an element, and a value that is none answers errors when it is used as one. The element is
    /// the caller's.
    [[nodiscard]] virtual ElementAnswer copyElementAttribute(const Element& element, std::string_view attribute) = 0;

    /// Copies several attributes of several elements: `result[i][j]` is what copying `attributes[j]` of `elements[i]`
    /// alone would have answered, error code included. It exists because each crossing into another process costs;
    /// nothing is promised about the order of the copies. The values are the caller's.
    [[nodiscard]] virtual std::vector<std::vector<AttributeAnswer>> copyAttributes(
        std::span<const Element> elements, std::span<const std::string_view> attributes) = 0;

    /// Sets one attribute and answers the result code. A success code means that the platform saw the write arrive as
    /// far as it can tell. `value` stays the caller's.
    [[nodiscard]] virtual AXError setAttribute(const Element& element, std::string_view attribute,
                                               const AttributeValue& value) = 0;

    /// Whether one attribute of one element can be set.
    [[nodiscard]] virtual SettableAnswer isAttributeSettable(const Element& element, std::string_view attribute) = 0;

    /// `isAttributeSettable` for several elements at once, answer by answer the same.
    [[nodiscard]] virtual std::vector<SettableAnswer> areAttributesSettable(std::span<const Element> elements,
                                                                            std::string_view attribute) = 0;

    /// Performs an action and answers its result code.
    [[nodiscard]] virtual AXError performAction(const Element& element, std::string_view action) = 0;

    /// The process that owns the element, or nothing where asking failed.
    [[nodiscard]] virtual std::optional<ProcessIdentifier> processIdentifier(const Element& element) = 0;

    /// Whether `text` contains `word`, regardless of letter case, under the user's locale. Pure; never fails.
    [[nodiscard]] virtual bool containsIgnoringCase(TextView text, TextView word) = 0;
};

}  // namespace lomaris
