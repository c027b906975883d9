#include "accessibility/adapter/attribute_access.h"
#include "accessibility/adapter/focused_element.h"
#include "accessibility/adapter/scan_roots.h"
#include "platform/attributes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace lomaris {

namespace {

constexpr std::size_t maximumExamined = 3000;
constexpr int deepestExpanded = 29;

/// Elements read ahead in one batch: enough to make the crossings cheap, few enough to waste little when the first of
/// them ends the walk.
constexpr std::size_t batchSize = 32;

constexpr std::array<std::string_view, 4> batchedAttributes = {
    attribute::selectedText,
    attribute::selectedTextRange,
    attribute::focused,
    attribute::children,
};

/// The answers for one element, in the order of `batchedAttributes`.
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

/// Whether a text element holds a selection now. The batch only told that it is a text element; what counts is a fresh
/// look.
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
    std::vector<Element> queue = scanRoots(accessibility, application);
    std::vector<int> depths(queue.size(), 0);
    std::optional<Element> firstFocused;
    std::optional<Element> first;

    std::size_t position = 0;
    while (position < std::min(queue.size(), maximumExamined)) {
        const std::size_t end = std::min({queue.size(), maximumExamined, position + batchSize});
        const auto answers =
            accessibility.copyAttributes(std::span(queue).subspan(position, end - position), batchedAttributes);
        for (const auto& elementAnswers : answers) {
            const NodeAnswers node(elementAnswers);
            // A copy, as the queue grows below.
            const Element element = queue[position];
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
            if (children != nullptr && depths[position] <= deepestExpanded) {
                queue.insert(queue.end(), children->begin(), children->end());
                depths.resize(queue.size(), depths[position] + 1);
            }
            ++position;
        }
    }
    return firstFocused ? firstFocused : first;
}

}  // namespace lomaris
