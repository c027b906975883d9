#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/applications.h"
#include "platform/simulated/call_latency.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/reactor.h"
#include "text/case_insensitive_search.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace lomaris::simulated {

/// The accessibility service of the simulated desktop: the scripted elements of the applications.
class SimulatedAccessibility final : public Accessibility {
public:
    SimulatedAccessibility(Journal& journal, CallLatency& latency, Applications& applications, Reactor& reactor)
        : journal_(journal), latency_(latency), applications_(applications), reactor_(reactor) {}

    void setTrusted(bool trusted) { isTrusted_ = trusted; }
    void setPromptAnswer(bool trusted) { promptAnswer_ = trusted; }
    void setLanguage(std::string_view language) { caseRules_ = caseRulesOf(language); }

    bool isProcessTrusted(TrustPrompt prompt) override;
    Element applicationElement(ProcessIdentifier processIdentifier) override;
    Element systemWideElement() override;
    AttributeAnswer copyAttribute(const Element& element, std::string_view attribute) override;
    ElementAnswer copyElementAttribute(const Element& element, std::string_view attribute) override;
    std::vector<std::vector<AttributeAnswer>> copyAttributes(std::span<const Element> elements,
                                                             std::span<const std::string_view> attributes) override;
    AXError setAttribute(const Element& element, std::string_view attribute, const AttributeValue& value) override;
    SettableAnswer isAttributeSettable(const Element& element, std::string_view attribute) override;
    std::vector<SettableAnswer> areAttributesSettable(std::span<const Element> elements,
                                                      std::string_view attribute) override;
    AXError performAction(const Element& element, std::string_view action) override;
    std::optional<ProcessIdentifier> processIdentifier(const Element& element) override;
    bool containsIgnoringCase(TextView text, TextView word) override;

private:
    /// The state of an element, or the error that every operation on the element returns.
    struct Target {
        AXError error = AXError::success;
        ElementState* state = nullptr;
    };

    [[nodiscard]] Target targetOf(const Element& element);
    /// Like `targetOf`, but ignores whether the application hangs.
    [[nodiscard]] Target find(const Element& element);
    [[nodiscard]] AttributeAnswer read(const Element& element, std::string_view attribute);
    [[nodiscard]] SettableAnswer askSettable(const Element& element, std::string_view attribute);
    std::size_t beginWithElement(std::string_view call, const Element& element, std::string_view name);

    Journal& journal_;
    CallLatency& latency_;
    Applications& applications_;
    Reactor& reactor_;
    bool isTrusted_ = true;
    std::optional<bool> promptAnswer_;
    CaseRules caseRules_ = CaseRules::common;
};

}  // namespace lomaris::simulated
