#pragma once

#include "platform/accessibility.h"

namespace lomaris::macos {

/// The accessibility service of macOS. Elements, attribute names and result codes are the platform's own, unchanged.
///
/// Returns `AXError::failure` if a Core Foundation object cannot be created because memory runs out, as the platform's
/// calls do, or if the platform throws an exception. Returns `AXError::illegalArgument`, without calling the platform,
/// if an `Element` does not hold an AXUIElement. Each operation drains its own autorelease pool, a batch one for each
/// element.
///
/// A request to another process times out after the platform's own timeout of some seconds, with
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
