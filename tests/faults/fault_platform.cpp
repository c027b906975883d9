#include "tests/faults/fault_platform.h"

#include "accessibility/fallback/key_strokes.h"

#include <algorithm>
#include <utility>

namespace lomaris::test {
namespace {

using Kind = CallGate::Kind;

std::string nameOf(KeyStroke keyStroke) {
    if (keyStroke == key_stroke::copy) {
        return "copy";
    }
    if (keyStroke == key_stroke::paste) {
        return "paste";
    }
    return keyStroke == key_stroke::collapseSelection ? "delete" : "key " + std::to_string(keyStroke.keyCode);
}

class FaultAccessibility final : public Accessibility {
public:
    FaultAccessibility(Accessibility& accessibility, CallGate& gate) : accessibility_(accessibility), gate_(gate) {}

    bool isProcessTrusted(TrustPrompt prompt) override {
        return gate_.pass(Kind::plain, "isProcessTrusted") == Fate::answered && accessibility_.isProcessTrusted(prompt);
    }

    Element applicationElement(ProcessIdentifier processIdentifier) override {
        gate_.pass(Kind::safe, "applicationElement");
        return accessibility_.applicationElement(processIdentifier);
    }

    Element systemWideElement() override {
        gate_.pass(Kind::safe, "systemWideElement");
        return accessibility_.systemWideElement();
    }

    AttributeAnswer copyAttribute(const Element& element, std::string_view attribute) override {
        if (gate_.pass(Kind::copy, "copyAttribute", attribute) != Fate::answered) {
            return {gate_.errorCode(), NullValue{}};
        }
        AttributeAnswer answer = accessibility_.copyAttribute(element, attribute);
        if (answer.error != AXError::success) {
            gate_.noteNoValue();
        }
        return answer;
    }

    ElementAnswer copyElementAttribute(const Element& element, std::string_view attribute) override {
        if (gate_.pass(Kind::copy, "copyElementAttribute", attribute) == Fate::answered) {
            return accessibility_.copyElementAttribute(element, attribute);
        }
        return {gate_.errorCode(), std::nullopt};
    }

    std::vector<std::vector<AttributeAnswer>> copyAttributes(std::span<const Element> elements,
                                                             std::span<const std::string_view> attributes) override {
        if (gate_.pass(Kind::copy, "copyAttributes") == Fate::answered) {
            return accessibility_.copyAttributes(elements, attributes);
        }
        const AttributeAnswer failed{gate_.errorCode(), NullValue{}};
        return std::vector(elements.size(), std::vector(attributes.size(), failed));
    }

    AXError setAttribute(const Element& element, std::string_view attribute, const AttributeValue& value) override {
        return write("setAttribute", attribute, [&] { return accessibility_.setAttribute(element, attribute, value); });
    }

    SettableAnswer isAttributeSettable(const Element& element, std::string_view attribute) override {
        if (gate_.pass(Kind::copy, "isAttributeSettable", attribute) == Fate::answered) {
            return accessibility_.isAttributeSettable(element, attribute);
        }
        return {gate_.errorCode(), false};
    }

    std::vector<SettableAnswer> areAttributesSettable(std::span<const Element> elements,
                                                      std::string_view attribute) override {
        if (gate_.pass(Kind::copy, "areAttributesSettable", attribute) == Fate::answered) {
            return accessibility_.areAttributesSettable(elements, attribute);
        }
        return std::vector(elements.size(), SettableAnswer{gate_.errorCode(), false});
    }

    AXError performAction(const Element& element, std::string_view action) override {
        return write("performAction", action, [&] { return accessibility_.performAction(element, action); });
    }

    std::optional<ProcessIdentifier> processIdentifier(const Element& element) override {
        if (gate_.pass(Kind::plain, "processIdentifier") == Fate::answered) {
            return accessibility_.processIdentifier(element);
        }
        return std::nullopt;
    }

    bool containsIgnoringCase(TextView text, TextView word) override {
        gate_.pass(Kind::safe, "containsIgnoringCase");
        return accessibility_.containsIgnoringCase(text, word);
    }

private:
    template <typename Call>
    AXError write(std::string_view what, std::string_view about, const Call& call) {
        const Fate fate = gate_.pass(Kind::write, what, about);
        if (fate == Fate::refused) {
            return gate_.errorCode();
        }
        const AXError answer = call();
        return fate == Fate::answered ? answer : gate_.errorCode();
    }

    Accessibility& accessibility_;
    CallGate& gate_;
};

/// An item of the pasteboard that records the data read from it in `told`, which must outlive this object.
class FaultItem final : public PasteboardItem {
public:
    FaultItem(std::unique_ptr<PasteboardItem> item, CallGate& gate, std::vector<ToldItems>& told, std::size_t number)
        : item_(std::move(item)), gate_(gate), told_(told), asking_(told.size() - 1), number_(number) {}

    std::vector<PasteboardType> types() override {
        if (gate_.pass(Kind::plain, "types") == Fate::answered) {
            return item_->types();
        }
        return {};
    }

    std::optional<Bytes> data(const PasteboardType& type) override {
        if (gate_.pass(Kind::plain, "data", type) != Fate::answered) {
            return std::nullopt;
        }
        auto bytes = item_->data(type);
        if (bytes) {
            told_[asking_][number_].data.emplace_back(type, *bytes);
        }
        return bytes;
    }

private:
    std::unique_ptr<PasteboardItem> item_;
    CallGate& gate_;
    std::vector<ToldItems>& told_;
    std::size_t asking_;
    std::size_t number_;
};

class FaultPasteboard final : public Pasteboard {
public:
    FaultPasteboard(Pasteboard& pasteboard, CallGate& gate) : pasteboard_(pasteboard), gate_(gate) {}

    std::vector<std::unique_ptr<PasteboardItem>> items() override {
        told_.emplace_back();
        if (gate_.pass(Kind::plain, "items") != Fate::answered) {
            return {};
        }
        auto items = pasteboard_.items();
        told_.back().resize(items.size());
        for (std::size_t number = 0; number < items.size(); ++number) {
            items[number] = std::make_unique<FaultItem>(std::move(items[number]), gate_, told_, number);
        }
        return items;
    }

    std::optional<Text> string() override {
        if (gate_.pass(Kind::plain, "string") == Fate::answered) {
            return pasteboard_.string();
        }
        return std::nullopt;
    }

    std::int64_t changeCount() override {
        gate_.pass(Kind::safe, "changeCount");
        return pasteboard_.changeCount();
    }

    void clearContents() override {
        gate_.pass(Kind::safe, "clearContents");
        pasteboard_.clearContents();
    }

    bool writeItems(std::vector<NewPasteboardItem> items) override {
        const bool isStaging = !items.empty() && items.front().provider != nullptr;
        return gate_.pass(Kind::plain, "writeItems", isStaging ? "private text" : "the user's items") ==
                   Fate::answered &&
               pasteboard_.writeItems(std::move(items));
    }

    [[nodiscard]] const std::vector<ToldItems>& told() const { return told_; }

    // Never fails here; scenarios with contention use another process that holds the pasteboard.
    std::unique_ptr<PasteboardHold> tryHold() override { return pasteboard_.tryHold(); }

private:
    Pasteboard& pasteboard_;
    CallGate& gate_;
    std::vector<ToldItems> told_;
};

/// Stores the name of the key, for the happenings.
class NamedKeyStroke final : public KeyStrokeEvents {
public:
    NamedKeyStroke(std::unique_ptr<KeyStrokeEvents> createdEvents, std::string keyName)
        : events(std::move(createdEvents)), name(std::move(keyName)) {}

    std::unique_ptr<KeyStrokeEvents> events;
    std::string name;
};

class FaultEvents final : public EventServices {
public:
    FaultEvents(EventServices& events, CallGate& gate) : events_(events), gate_(gate) {}

    bool preflightPostEventAccess() override {
        return gate_.pass(Kind::plain, "preflightPostEventAccess") == Fate::answered &&
               events_.preflightPostEventAccess();
    }

    bool requestPostEventAccess() override {
        return gate_.pass(Kind::plain, "requestPostEventAccess") == Fate::answered && events_.requestPostEventAccess();
    }

    std::unique_ptr<KeyStrokeEvents> createKeyStroke(KeyStroke keyStroke) override {
        const std::string name = nameOf(keyStroke);
        if (gate_.pass(Kind::plain, "createKeyStroke", name) != Fate::answered) {
            return nullptr;
        }
        auto events = events_.createKeyStroke(keyStroke);
        return events ? std::make_unique<NamedKeyStroke>(std::move(events), name) : nullptr;
    }

    void postToSession(const KeyStrokeEvents& events) override {
        const auto& named = static_cast<const NamedKeyStroke&>(events);
        gate_.pass(Kind::safe, "postToSession", named.name);
        events_.postToSession(*named.events);
    }

    void postToProcess(const KeyStrokeEvents& events, ProcessIdentifier processIdentifier) override {
        const auto& named = static_cast<const NamedKeyStroke&>(events);
        gate_.pass(Kind::safe, "postToProcess", named.name);
        events_.postToProcess(*named.events, processIdentifier);
    }

    std::uint32_t inputCounter(InputEventType type) override {
        const bool isAnswered = gate_.pass(Kind::plain, "inputCounter", test::nameOf(type)) == Fate::answered;
        return isAnswered ? events_.inputCounter(type) : 0;
    }

private:
    EventServices& events_;
    CallGate& gate_;
};

class FaultWorkspace final : public Workspace {
public:
    FaultWorkspace(Workspace& workspace, CallGate& gate) : workspace_(workspace), gate_(gate) {}

    std::optional<RunningApplication> frontmostApplication() override {
        if (gate_.pass(Kind::plain, "frontmostApplication") == Fate::answered) {
            return workspace_.frontmostApplication();
        }
        return std::nullopt;
    }

    std::optional<RunningApplication> runningApplication(ProcessIdentifier processIdentifier) override {
        if (gate_.pass(Kind::plain, "runningApplication") == Fate::answered) {
            return workspace_.runningApplication(processIdentifier);
        }
        return std::nullopt;
    }

private:
    Workspace& workspace_;
    CallGate& gate_;
};

}  // namespace

std::string_view nameOf(InputEventType counter) {
    switch (counter) {
        case InputEventType::keyDown:
            return "key down";
        case InputEventType::leftMouseDown:
            return "left mouse down";
        case InputEventType::rightMouseDown:
            return "right mouse down";
        case InputEventType::otherMouseDown:
            return "other mouse down";
    }
    return "";
}

CallGate::CallGate(Happenings& happenings, Observe observe, std::optional<Fault> fault,
                   std::optional<Interruption> interruption)
    : happenings_(happenings), observe_(std::move(observe)), fault_(fault), interruption_(std::move(interruption)) {}

Fate CallGate::pass(Kind kind, std::string_view what, std::string_view about) {
    ++calls_;
    if (interruption_ && interruption_->number == calls_) {
        interruption_->act();
    }
    Fate fate = Fate::answered;
    if (fault_ && knowsFailure(kind)) {
        ++failures_;
        const bool fails =
            fault_->persistence == Persistence::once ? failures_ == fault_->number : failures_ >= fault_->number;
        if (fails) {
            fate = fault_->failure == Failure::answerLost ? Fate::answerLost : Fate::refused;
        }
    }
    Happening happening{.who = Who::tool, .what = std::string(what), .about = std::string(about), .fate = fate};
    observe_(happening);
    happenings_.push_back(std::move(happening));
    return fate;
}

AXError CallGate::errorCode() const {
    switch (fault_->failure) {
        case Failure::elementGone:
            return AXError::invalidUIElement;
        case Failure::noValue:
            return AXError::success;
        case Failure::noAnswer:
        case Failure::answerLost:
            break;
    }
    return AXError::cannotComplete;
}

bool CallGate::knowsFailure(Kind kind) const {
    switch (fault_->failure) {
        case Failure::noAnswer:
            return kind != Kind::safe;
        case Failure::elementGone:
            return kind == Kind::copy || kind == Kind::write;
        case Failure::noValue:
            return kind == Kind::copy;
        case Failure::answerLost:
            return kind == Kind::write;
    }
    return false;
}

class FaultPlatform::Services {
public:
    Services(Platform& platform, CallGate& gate)
        : accessibility(platform.accessibility(), gate),
          pasteboard(platform.pasteboard(), gate),
          events(platform.events(), gate),
          workspace(platform.workspace(), gate) {}

    FaultAccessibility accessibility;
    FaultPasteboard pasteboard;
    FaultEvents events;
    FaultWorkspace workspace;
};

FaultPlatform::FaultPlatform(Platform& platform, CallGate& gate)
    : services_(std::make_unique<Services>(platform, gate)), platform_(platform) {}
FaultPlatform::~FaultPlatform() = default;

Accessibility& FaultPlatform::accessibility() { return services_->accessibility; }
Pasteboard& FaultPlatform::pasteboard() { return services_->pasteboard; }
EventServices& FaultPlatform::events() { return services_->events; }
Workspace& FaultPlatform::workspace() { return services_->workspace; }
Scheduling& FaultPlatform::scheduling() { return platform_.scheduling(); }
const std::vector<ToldItems>& FaultPlatform::told() const { return services_->pasteboard.told(); }

}  // namespace lomaris::test
