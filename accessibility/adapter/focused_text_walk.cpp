#include "accessibility/adapter/attribute_access.h"
#include "accessibility/adapter/focused_element.h"
#include "accessibility/adapter/scan_roots.h"
#include "accessibility/adapter/walk_queue.h"
#include "platform/attributes.h"

#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace lomaris {

namespace {

/// Elements per batch: enough to save requests, few enough to waste little if the first element ends the search.
constexpr std::size_t batchSize = 32;

constexpr std::array<std::string_view, 4> batchedAttributes = {
    attribute::selectedText,
    attribute::selectedTextRange,
    attribute::focused,
    attribute::children,
};

/// The copied attributes of one element, in the order of `batchedAttributes`.
struct NodeAnswers {
    const AttributeAnswer& selectedText;
    const AttributeAnswer& selectedTextRange;
    const AttributeAnswer& focused;
    const AttributeAnswer& children;

    explicit NodeAnswers(const std::vector<AttributeAnswer>& answers)
        : selectedText(answers.at(0)),
          selectedTextRange(answers.at(1)),
          focused(answers.at(2)),
          children(answers.at(3)) {}

    [[nodiscard]] bool isTextCapable() const {
        return valueIn<Text>(selectedText) != nullptr || valueIn<TextRange>(selectedTextRange) != nullptr;
    }
};

/// True if a text element has a selection now. Reads it again, because the batch may be outdated.
bool hasSelection(Accessibility& accessibility, const Element& element) {
    const auto text = copyOptionalStringAttribute(accessibility, element, attribute::selectedText);
    if (text && !text->empty()) {
        return true;
    }
    const auto range = copySelectedRange(accessibility, element);
    return range && range->length >= 1;
}

}  // namespace

std::optional<Element> findFocusedTextDescendant(Accessibility& accessibility, const Element& application) {
    WalkQueue queue(scanRoots(accessibility, application));
    std::optional<Element> firstFocused;
    std::optional<Element> first;

    for (std::size_t batchStart = 0; batchStart < queue.size();) {
        const auto answers = accessibility.copyAttributes(queue.batchFrom(batchStart, batchSize), batchedAttributes);
        for (std::size_t index = 0; index < answers.size(); ++index) {
            const std::size_t position = batchStart + index;
            const NodeAnswers node(answers[index]);
            const Element element = queue.element(position);
            if (node.isTextCapable()) {
                if (hasSelection(accessibility, element)) {
                    return element;
                }
                const bool* const focused = valueIn<bool>(node.focused);
                if (focused != nullptr && *focused && !firstFocused) {
                    firstFocused = element;
                }
                if (!first) {
                    first = element;
                }
            }
            const auto* const children = valueIn<std::vector<Element>>(node.children);
            if (children != nullptr) {
                queue.appendChildren(position, *children);
            }
        }
        batchStart += answers.size();
    }
    return firstFocused ? firstFocused : first;
}

}  // namespace lomaris
