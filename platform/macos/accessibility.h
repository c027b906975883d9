#pragma once

#include "platform/accessibility.h"

namespace lomaris::macos {

/// The accessibility service of macOS: the platform's own elements, attribute names and result codes, handed through as
/// they are. A text, array or box that cannot be made for want of memory answers `AXError::failure`, as the platform's
/// calls do then, and so does an operation that an exception of the platform ended. What is no element answers
/// `AXError::illegalArgument` and never reaches the platform. What the platform leaves to an autorelease pool goes with
/// the operation, in a batch with each element.
///
/// Calls that cross into another process end after the platform's own deadline, some seconds, with
/// `AXError::cannotComplete`.
class MacOSAccessibility final : public Accessibility {
public:
    [[nodiscard]] bool isProcessTrusted(TrustPrompt prompt) override;
    [[nodiscard]] Element applicationElement(ProcessIdentifier processIdentifier) override;
    [[nodiscard]] Element systemWideElement() override;
    [[nodiscard]] AttributeAnswer copyAttribute(const Element& element, std::string_view attribute) override;
    [[nodiscard]] ElementAnswer copyElementAttribute(const Element& element, std::string_view attribute) override;
    [[nodiscard]] std::vector<std::vector<AttributeAnswer>> copyAttributes(
        std::span<const Element> elements, std::span<const std::string_view> attributes) override;
    [[nodiscard]] AXError setAttribute(const Element& element, std::string_view attribute,
                                       const AttributeValue& value) override;
    [[nodiscard]] SettableAnswer isAttributeSettable(const Element& element, std::string_view attribute) override;
    [[nodiscard]] std::vector<SettableAnswer> areAttributesSettable(std::span<const Element> elements,
                                                                    std::string_view attribute) override;
    [[nodiscard]] AXError performAction(const Element& element, std::string_view action) override;
    [[nodiscard]] std::optional<ProcessIdentifier> processIdentifier(const Element& element) override;
    [[nodiscard]] bool containsIgnoringCase(TextView text, TextView word) override;
};

}  // namespace lomaris::macos
