#include "platform/linux/atspi/linux_accessibility.h"

#include "platform/attributes.h"
#include "platform/linux/atspi/accessibility_bus.h"
#include "platform/linux/atspi/application_attributes.h"
#include "platform/linux/atspi/application_directory.h"
#include "platform/linux/atspi/atspi.h"
#include "platform/linux/atspi/atspi_element.h"
#include "platform/linux/atspi/focus_search.h"
#include "platform/linux/atspi/menu_attributes.h"
#include "platform/linux/atspi/object_attributes.h"
#include "platform/linux/atspi/object_snapshot.h"
#include "platform/linux/atspi/object_source.h"
#include "platform/linux/atspi/roles.h"
#include "platform/linux/atspi/settable_attributes.h"
#include "platform/linux/atspi/text_writing.h"
#include "platform/linux/process/process_locale.h"
#include "text/case_insensitive_search.h"
#include "text/utf8.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace lomaris {

namespace {

class LinuxAccessibility final : public TerminalAwareAccessibility {
public:
    LinuxAccessibility(Workspace& workspace, WindowRaiser raiser) : workspace_(workspace), raiser_(std::move(raiser)) {}

    [[nodiscard]] bool isProcessTrusted(TrustPrompt prompt) override {
        AccessibilityStatus status = bus_.status();
        if (prompt == TrustPrompt::ask && status == AccessibilityStatus::disabled) {
            bus_.enable();
            status = bus_.status();
        }
        return status == AccessibilityStatus::enabled;
    }

    [[nodiscard]] Element applicationElement(ProcessIdentifier processIdentifier) override {
        return makeElement(ApplicationOf{processIdentifier});
    }

    [[nodiscard]] Element systemWideElement() override { return makeElement(SystemWide{}); }

    [[nodiscard]] AttributeAnswer copyAttribute(const Element& element, std::string_view attribute) override {
        AttributeAnswer answer;
        if (BusConnection* const bus = freshConnection()) {
            queueCopy(*bus, element, attribute, answer);
            bus->finish();
            return answer;
        }
        return {AXError::apiDisabled, NullValue{}};
    }

    [[nodiscard]] ElementAnswer copyElementAttribute(const Element& element, std::string_view attribute) override {
        const AttributeAnswer answer = copyAttribute(element, attribute);
        if (answer.error != AXError::success || std::holds_alternative<NullValue>(answer.value)) {
            return {answer.error, std::nullopt};
        }
        const auto* const value = std::get_if<Element>(&answer.value);
        return {answer.error, value == nullptr ? makeElement(NoElement{}) : *value};
    }

    [[nodiscard]] std::vector<std::vector<AttributeAnswer>> copyAttributes(
        std::span<const Element> elements, std::span<const std::string_view> attributes) override {
        std::vector<std::vector<AttributeAnswer>> answers(
            elements.size(), std::vector<AttributeAnswer>(attributes.size(), {AXError::apiDisabled, NullValue{}}));
        BusConnection* const bus = connection();
        if (bus == nullptr) {
            return answers;
        }
        if (std::find(attributes.begin(), attributes.end(), attribute::children) != attributes.end()) {
            takeSnapshotsFor(elements);
        }
        for (std::size_t i = 0; i < elements.size(); ++i) {
            if (const auto* const object = std::get_if<ObjectReference>(&targetOf(elements[i]))) {
                queueAttributes(sourceOf(*object), *object, attributes, answers[i]);
                continue;
            }
            for (std::size_t j = 0; j < attributes.size(); ++j) {
                queueCopy(*bus, elements[i], attributes[j], answers[i][j]);
            }
        }
        bus->finish();
        return answers;
    }

    [[nodiscard]] AXError setAttribute(const Element& element, std::string_view attribute,
                                       const AttributeValue& value) override {
        if (attribute == attribute::main || attribute == attribute::focused) {
            return setFocus(element, attribute, value);
        }
        const SettableAnswer settable = isAttributeSettable(element, attribute);
        if (settable.error != AXError::success) {
            return settable.error;
        }
        if (!settable.settable) {
            return AXError::attributeUnsupported;
        }
        // Only the selected text is settable here.
        const auto* const text = std::get_if<Text>(&value);
        const Target target = objectOf(element);
        if (text == nullptr || !target.object) {
            return text == nullptr ? AXError::illegalArgument : target.error;
        }
        return writeSelectedText(*connection(), *target.object, *text);
    }

    [[nodiscard]] SettableAnswer isAttributeSettable(const Element& element, std::string_view attribute) override {
        return freshConnection() == nullptr ? SettableAnswer{AXError::apiDisabled, false}
                                            : areAttributesSettable(std::span(&element, 1), attribute).front();
    }

    [[nodiscard]] std::vector<SettableAnswer> areAttributesSettable(std::span<const Element> elements,
                                                                    std::string_view attribute) override {
        std::vector<SettableAnswer> answers(elements.size(), {AXError::apiDisabled, false});
        BusConnection* const bus = connection();
        if (bus == nullptr) {
            return answers;
        }
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const Target target = objectOf(elements[i]);
            if (target.object) {
                queueSettable(sourceOf(*target.object), *target.object, attribute, answers[i]);
            } else {
                answers[i] = {target.error, false};
            }
        }
        bus->finish();
        return answers;
    }

    [[nodiscard]] AXError performAction(const Element& element, std::string_view action) override {
        BusConnection* const bus = freshConnection();
        if (bus == nullptr) {
            return AXError::apiDisabled;
        }
        const Target target = objectOf(element);
        if (!target.object) {
            return target.error;
        }
        if (action == action::raise) {
            return raiseWindowOf(*bus, *target.object).value_or(AXError::actionUnsupported);
        }
        return performObjectAction(*bus, *target.object, action);
    }

    [[nodiscard]] std::optional<ProcessIdentifier> processIdentifier(const Element& element) override {
        const ElementTarget& target = targetOf(element);
        if (const auto* const application = std::get_if<ApplicationOf>(&target)) {
            return application->processIdentifier;
        }
        const ObjectReference* const object = shownObject(target);
        if (object == nullptr || connection() == nullptr) {
            return std::nullopt;
        }
        return directory_->processOf(object->name);
    }

    [[nodiscard]] bool containsIgnoringCase(TextView text, TextView word) override {
        return lomaris::containsIgnoringCase(text, word, caseRulesOf(characterLanguageOfProcess()));
    }

    [[nodiscard]] bool isTerminalFocused(ProcessIdentifier processIdentifier) override {
        BusConnection* const bus = freshConnection();
        const Target root = bus == nullptr ? Target() : rootOf(processIdentifier);
        if (!root.object) {
            return false;
        }
        const FoundObject focused = findFocusedObject(*bus, *root.object);
        bool isTerminal = false;
        if (focused.object) {
            bus->ask(*focused.object, atspi::accessible, "GetRole", {}, [&isTerminal](const BusReply& reply) {
                isTerminal = reply.readUnsigned() == atspi_role::terminal;
            });
            bus->finish();
        }
        return isTerminal;
    }

private:
    /// The AT-SPI object of an element, or the code if there is none.
    struct Target {
        AXError error = AXError::success;
        std::optional<ObjectReference> object;
    };

    static const ObjectReference* shownObject(const ElementTarget& target) {
        const auto* const part = std::get_if<MenuPart>(&target);
        return part != nullptr ? &part->object : std::get_if<ObjectReference>(&target);
    }

    BusConnection* connection() {
        BusConnection* const bus = bus_.connection();
        if (bus != nullptr && !directory_) {
            directory_.emplace(*bus);
            snapshots_.emplace(*bus);
        }
        return bus;
    }

    /// The connection for operations on one element. Drops the snapshots, so that later batches do not read data from
    /// before such an operation.
    BusConnection* freshConnection() {
        BusConnection* const bus = connection();
        if (bus != nullptr) {
            snapshots_->drop();
        }
        return bus;
    }

    /// Takes a snapshot of each element's application. Called for batches with the attribute `AXChildren`: these are
    /// steps of a walk, which reads most objects of an application.
    void takeSnapshotsFor(std::span<const Element> elements) {
        std::unordered_set<std::string_view> peers;
        for (const Element& element : elements) {
            const auto* const object = std::get_if<ObjectReference>(&targetOf(element));
            if (object != nullptr && peers.insert(object->name).second) {
                snapshots_->take(object->name);
            }
        }
    }

    /// The current snapshot if it lists the object, otherwise the bus. There must be a connection.
    [[nodiscard]] ObjectSource sourceOf(const ObjectReference& object) {
        return ObjectSource(*connection(), snapshots_->current(object.name));
    }

    /// The object of a menu part or of an ordinary element, or the root object of an application. The system-wide
    /// element has none.
    Target objectOf(const Element& element) {
        const ElementTarget& target = targetOf(element);
        if (const ObjectReference* const object = shownObject(target)) {
            return {AXError::success, *object};
        }
        if (const auto* const application = std::get_if<ApplicationOf>(&target)) {
            return rootOf(application->processIdentifier);
        }
        return {std::holds_alternative<SystemWide>(target) ? AXError::attributeUnsupported : AXError::invalidUIElement,
                std::nullopt};
    }

    Target rootOf(ProcessIdentifier processIdentifier) {
        ApplicationRoot root = directory_->rootOf(processIdentifier);
        if (root.error != AXError::success) {
            return {root.error, std::nullopt};
        }
        return {AXError::success, std::move(root.object)};
    }

    void queueCopy(BusConnection& bus, const Element& element, std::string_view attribute, AttributeAnswer& answer) {
        const ElementTarget& target = targetOf(element);
        if (std::holds_alternative<SystemWide>(target)) {
            answer = copyOfSystemWide(bus, attribute);
            return;
        }
        if (const auto* const part = std::get_if<MenuPart>(&target)) {
            queueMenuAttribute(bus, *part, attribute, answer);
            return;
        }
        const Target found = objectOf(element);
        if (!found.object) {
            answer = {found.error, NullValue{}};
        } else if (std::holds_alternative<ApplicationOf>(target) && isApplicationAttribute(attribute)) {
            answer = copyApplicationAttribute(bus, *found.object, attribute);
        } else {
            queueAttribute(ObjectSource(bus), *found.object, attribute, answer);
        }
    }

    /// Only true can be set: an element loses the focus when another one gets it.
    AXError setFocus(const Element& element, std::string_view attribute, const AttributeValue& value) {
        BusConnection* const bus = freshConnection();
        if (bus == nullptr) {
            return AXError::apiDisabled;
        }
        const Target target = objectOf(element);
        if (!target.object) {
            return target.error;
        }
        if (value != AttributeValue(true)) {
            return AXError::illegalArgument;
        }
        if (const auto raised = raiseWindowOf(*bus, *target.object)) {
            return *raised;
        }
        return attribute == attribute::main ? AXError::attributeUnsupported : grabFocus(*bus, *target.object);
    }

    /// Raises a window. nullopt if the object is not a window or there is no raiser.
    std::optional<AXError> raiseWindowOf(BusConnection& bus, const ObjectReference& object) {
        if (!raiser_ || !isWindow(bus, object)) {
            return std::nullopt;
        }
        const auto process = directory_->processOf(object.name);
        return process ? raiseWindow(bus, object, *process, raiser_) : AXError::invalidUIElement;
    }

    AttributeAnswer copyOfSystemWide(BusConnection& bus, std::string_view attribute) {
        if (attribute == attribute::role) {
            return {AXError::success, Text(u"AXSystemWide")};
        }
        if (attribute != attribute::focusedUIElement) {
            return {AXError::attributeUnsupported, NullValue{}};
        }
        const auto application = workspace_.frontmostApplication();
        if (!application) {
            return {AXError::noValue, NullValue{}};
        }
        const Target root = rootOf(application->processIdentifier);
        if (!root.object) {
            return {root.error, NullValue{}};
        }
        return copyApplicationAttribute(bus, *root.object, attribute);
    }

    Workspace& workspace_;
    WindowRaiser raiser_;
    AccessibilityBus bus_;
    std::optional<ApplicationDirectory> directory_;
    std::optional<ObjectSnapshots> snapshots_;
};

}  // namespace

std::unique_ptr<TerminalAwareAccessibility> makeLinuxAccessibility(Workspace& workspace, WindowRaiser raiser) {
    return std::make_unique<LinuxAccessibility>(workspace, std::move(raiser));
}

}  // namespace lomaris
