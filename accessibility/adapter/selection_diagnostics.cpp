#include "accessibility/adapter/selection_diagnostics.h"

#include "accessibility/adapter/attribute_access.h"
#include "accessibility/adapter/scan_roots.h"
#include "accessibility/adapter/walk_queue.h"
#include "accessibility/model/bridge_error.h"
#include "platform/attributes.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace lomaris {

namespace {

/// Elements per batch: enough to save requests, few enough to limit the memory for the texts of one batch.
constexpr std::size_t batchSize = 256;

constexpr std::array<std::string_view, 8> batchedAttributes = {
    attribute::children, attribute::selectedText, attribute::selectedTextRange, attribute::role,
    attribute::subrole,  attribute::identifier,   attribute::focused,           attribute::value,
};

/// The copied attributes of one element, in the order of `batchedAttributes`. The non-const ones may be moved from.
struct NodeAnswers {
    const AttributeAnswer& children;
    const AttributeAnswer& selectedText;
    const AttributeAnswer& selectedTextRange;
    AttributeAnswer& role;
    AttributeAnswer& subrole;
    AttributeAnswer& identifier;
    const AttributeAnswer& focused;
    const AttributeAnswer& value;

    explicit NodeAnswers(std::vector<AttributeAnswer>& answers)
        : children(answers.at(0)),
          selectedText(answers.at(1)),
          selectedTextRange(answers.at(2)),
          role(answers.at(3)),
          subrole(answers.at(4)),
          identifier(answers.at(5)),
          focused(answers.at(6)),
          value(answers.at(7)) {}

    [[nodiscard]] std::span<const Element> childElements() const {
        const auto* const elements = valueIn<std::vector<Element>>(children);
        return elements == nullptr ? std::span<const Element>() : *elements;
    }
};

constexpr std::array<TextView, 4> textRoles = {u"AXTextArea", u"AXTextField", u"AXWebArea", u"AXStaticText"};

std::optional<Text> takeText(AttributeAnswer& answer) {
    return valueIn<Text>(answer) == nullptr ? std::nullopt : std::optional(std::get<Text>(std::move(answer.value)));
}

/// In UTF-16 units.
std::optional<std::int64_t> textLength(const AttributeAnswer& answer) {
    const Text* const text = valueIn<Text>(answer);
    return text == nullptr ? std::nullopt : std::optional(static_cast<std::int64_t>(text->size()));
}

Text pathText(std::span<const std::size_t> indices) {
    Text path;
    std::array<char, 24> digits{};
    for (const std::size_t index : indices) {
        if (!path.empty()) {
            path.push_back(u'.');
        }
        const auto* const end = std::to_chars(digits.begin(), digits.end(), index).ptr;
        path.append(digits.cbegin(), end);
    }
    return path;
}

/// Builds the diagnostic of one element, without its path and `selectedTextSettable`. Moves the texts out of `answers`.
AccessibilityNodeDiagnostic nodeFrom(const NodeAnswers& answers, int depth) {
    AccessibilityNodeDiagnostic node;
    node.depth = depth;
    node.role = takeText(answers.role);
    node.subrole = takeText(answers.subrole);
    node.identifier = takeText(answers.identifier);
    const bool* const focused = valueIn<bool>(answers.focused);
    node.focused = focused != nullptr && *focused;
    node.selectedTextStatus = codeOf(answers.selectedText.error);
    node.selectedTextLength = textLength(answers.selectedText);
    if (const auto* const range = valueIn<TextRange>(answers.selectedTextRange)) {
        node.selectedRange = *range;
    }
    node.valueLength = textLength(answers.value);
    node.childCount = static_cast<std::int64_t>(answers.childElements().size());
    return node;
}

bool isRelevantDiagnostic(Accessibility& accessibility, const AccessibilityNodeDiagnostic& node) {
    if (node.focused || node.selectedTextStatus == codeOf(AXError::success) || node.selectedRange) {
        return true;
    }
    if (node.role && std::find(textRoles.begin(), textRoles.end(), *node.role) != textRoles.end()) {
        return true;
    }
    return node.identifier && accessibility.containsIgnoringCase(*node.identifier, u"editor");
}

/// Examines the batch that begins at `start`: appends the relevant elements to `nodes` and all children to the queue.
/// Returns the number of examined elements.
std::size_t examineBatch(Accessibility& accessibility, WalkQueue& queue, std::size_t start,
                         std::vector<AccessibilityNodeDiagnostic>& nodes) {
    auto answers = accessibility.copyAttributes(queue.batchFrom(start, batchSize), batchedAttributes);
    const std::size_t firstOfBatch = nodes.size();
    std::vector<Element> relevant;
    for (std::size_t index = 0; index < answers.size(); ++index) {
        const std::size_t position = start + index;
        const NodeAnswers nodeAnswers(answers[index]);
        auto node = nodeFrom(nodeAnswers, queue.depth(position));
        if (isRelevantDiagnostic(accessibility, node)) {
            node.path = pathText(queue.path(position));
            nodes.push_back(std::move(node));
            relevant.push_back(queue.element(position));
        }
        queue.appendChildren(position, nodeAnswers.childElements());
    }
    // Only relevant elements are reported, so only they are checked.
    if (!relevant.empty()) {
        const auto settable = accessibility.areAttributesSettable(relevant, attribute::selectedText);
        for (std::size_t index = 0; index < relevant.size(); ++index) {
            nodes[firstOfBatch + index].selectedTextSettable =
                settable[index].error == AXError::success && settable[index].settable;
        }
    }
    return answers.size();
}

}  // namespace

AccessibilityDiagnosticPayload diagnoseSelection(Platform& platform) {
    Accessibility& accessibility = platform.accessibility();
    if (!accessibility.isProcessTrusted(TrustPrompt::none)) {
        throw BridgeError::accessibilityPermissionRequired();
    }
    auto application = platform.workspace().frontmostApplication();
    if (!application) {
        throw BridgeError::focusedApplicationUnavailable(AXError::noValue);
    }
    AccessibilityDiagnosticPayload payload;
    payload.applicationName = std::move(application->localizedName);
    payload.bundleIdentifier = std::move(application->bundleIdentifier);
    payload.processIdentifier = application->processIdentifier;

    WalkQueue queue(scanRoots(accessibility, accessibility.applicationElement(payload.processIdentifier)));
    for (std::size_t examined = 0; examined < queue.size();) {
        examined += examineBatch(accessibility, queue, examined, payload.relevantNodes);
    }
    payload.scannedNodeCount = static_cast<std::int64_t>(queue.size());
    payload.truncated = queue.overflowed();
    return payload;
}

}  // namespace lomaris
