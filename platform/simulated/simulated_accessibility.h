#pragma once

#include "platform/accessibility.h"
#include "platform/simulated/applications.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/reactor.h"
#include "platform/simulated/scheduler.h"
#include "platform/simulated/this_process.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace lomaris::simulated {

class SimulatedAccessibility final : public Accessibility {
public:
    SimulatedAccessibility(Scheduler& scheduler, ThisProcess& process, Journal& journal, Applications& applications,
                           Reactor& reactor)
        : scheduler_(scheduler), process_(process), journal_(journal), applications_(applications), reactor_(reactor) {}

    void setTrusted(bool trusted) { isTrusted_ = trusted; }
    void setPromptAnswer(bool trusted) { promptAnswer_ = trusted; }
    void setLatency(Duration latency) { latency_ = latency; }
    void setLatencyOf(std::string_view call, Duration latency) { latencies_[std::string(call)] = latency; }

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
    /// The state of an element that can be asked, or the error that every operation on it answers.
    struct Target {
        AXError error = AXError::success;
        ElementState* state = nullptr;
    };

    [[nodiscard]] Target targetOf(const Element& element);
    /// The same, whether or not the application hangs.
    [[nodiscard]] Target find(const Element& element);
    [[nodiscard]] AttributeAnswer read(const Element& element, std::string_view attribute);
    [[nodiscard]] SettableAnswer askSettable(const Element& element, std::string_view attribute);
    std::size_t beginWithElement(std::string_view call, const Element& element, std::string_view name);
    void passLatency(std::string_view call);

    Scheduler& scheduler_;
    ThisProcess& process_;
    Journal& journal_;
    Applications& applications_;
    Reactor& reactor_;
    bool isTrusted_ = true;
    std::optional<bool> promptAnswer_;
    Duration latency_{0};
    std::map<std::string, Duration, std::less<>> latencies_;
};

}  // namespace lomaris::simulated
