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

/// Elements that wait to be examined, and their depths. Never longer than what may be examined, however many children
/// an application claims to have.
class WalkQueue {
public:
    void append(std::span<const Element> elements, int depth) {
        const std::size_t count = std::min(elements.size(), maximumExamined - elements_.size());
        elements_.insert(elements_.end(), elements.begin(), elements.begin() + static_cast<std::ptrdiff_t>(count));
        depths_.resize(elements_.size(), depth);
    }

    [[nodiscard]] std::size_t size() const { return elements_.size(); }
    /// A copy, as the queue may grow while the element is looked at.
    [[nodiscard]] Element element(std::size_t position) const { return elements_[position]; }
    [[nodiscard]] int depth(std::size_t position) const { return depths_[position]; }
    [[nodiscard]] std::span<const Element> batchFrom(std::size_t position) const {
        return std::span(elements_).subspan(position, std::min(batchSize, elements_.size() - position));
    }

private:
    std::vector<Element> elements_;
    std::vector<int> depths_;
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
    WalkQueue queue;
    queue.append(scanRoots(accessibility, application), 0);
    std::optional<Element> firstFocused;
    std::optional<Element> first;

    for (std::size_t batchStart = 0; batchStart < queue.size();) {
        const auto answers = accessibility.copyAttributes(queue.batchFrom(batchStart), batchedAttributes);
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
            if (children != nullptr && queue.depth(position) <= deepestExpanded) {
                queue.append(*children, queue.depth(position) + 1);
            }
        }
        batchStart += answers.size();
    }
    return firstFocused ? firstFocused : first;
}

}  // namespace lomaris
