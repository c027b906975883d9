#pragma once

#include "platform/element.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace lomaris {

/// The work list of a breadth-first walk over elements, the scan roots first, then children behind those that wait
/// already. It bounds the walk: no more than `maximumExamined` elements are examined, and none below depth 30. Entries
/// are never removed; a walk goes through them by position.
class WalkQueue {
public:
    static constexpr std::size_t maximumExamined = 3000;

    explicit WalkQueue(std::span<const Element> roots) { append(roots, noParent, 0); }

    /// Appends the children of the entry at `parent`, unless it stands too deep. Those that could never be examined are
    /// counted but not kept, however many children an application claims to have.
    void appendChildren(std::size_t parent, std::span<const Element> children) {
        if (depth(parent) <= deepestExpanded) {
            append(children, parent, depth(parent) + 1);
        }
    }

    /// How many entries are to be examined, as far as it is known.
    [[nodiscard]] std::size_t size() const { return elements_.size(); }
    /// Whether there are entries beyond those.
    [[nodiscard]] bool overflowed() const { return overflowed_; }

    /// A copy, as the queue may grow while the element is looked at.
    [[nodiscard]] Element element(std::size_t position) const { return elements_[position]; }
    /// 0 for a scan root.
    [[nodiscard]] int depth(std::size_t position) const { return places_[position].depth; }
    /// The indices that lead to an entry, its own last: the root's among the roots, then those among siblings.
    [[nodiscard]] std::vector<std::size_t> path(std::size_t position) const {
        std::vector<std::size_t> indices;
        for (std::size_t at = position; at != noParent; at = places_[at].parent) {
            indices.push_back(places_[at].index);
        }
        std::reverse(indices.begin(), indices.end());
        return indices;
    }
    /// The elements that wait from `position` on, at most `limit`; valid until the queue grows.
    [[nodiscard]] std::span<const Element> batchFrom(std::size_t position, std::size_t limit) const {
        return std::span(elements_).subspan(position, std::min(limit, elements_.size() - position));
    }

private:
    static constexpr int deepestExpanded = 29;
    static constexpr std::size_t noParent = maximumExamined;

    struct Place {
        std::size_t parent = noParent;
        std::size_t index = 0;
        int depth = 0;
    };

    void append(std::span<const Element> elements, std::size_t parent, int depth) {
        const std::size_t count = std::min(elements.size(), maximumExamined - elements_.size());
        overflowed_ = overflowed_ || count < elements.size();
        for (std::size_t index = 0; index < count; ++index) {
            elements_.push_back(elements[index]);
            places_.push_back({parent, index, depth});
        }
    }

    std::vector<Element> elements_;
    std::vector<Place> places_;
    bool overflowed_ = false;
};

}  // namespace lomaris
