#pragma once

#include "platform/element.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace lomaris {

/// The queue of a breadth-first search of elements: the scan roots, followed by the children of examined elements.
/// Limits the search to `maximumExamined` elements and to depth 30. Entries are never removed; the search visits them
/// by position.
class WalkQueue {
public:
    static constexpr std::size_t maximumExamined = 3000;

    explicit WalkQueue(std::span<const Element> roots) { append(roots, noParent, 0); }

    /// Appends the children of the entry at `parent`, unless it is at depth 30. Children beyond the limit are not
    /// stored and only set `overflowed`.
    void appendChildren(std::size_t parent, std::span<const Element> children) {
        if (depth(parent) <= deepestExpanded) {
            append(children, parent, depth(parent) + 1);
        }
    }

    /// The number of entries to examine, so far.
    [[nodiscard]] std::size_t size() const { return elements_.size(); }
    /// True if entries beyond the limit were dropped.
    [[nodiscard]] bool overflowed() const { return overflowed_; }

    /// Returns a copy, because the queue may grow while the caller uses the element.
    [[nodiscard]] Element element(std::size_t position) const { return elements_[position]; }
    /// 0 for a scan root.
    [[nodiscard]] int depth(std::size_t position) const { return places_[position].depth; }
    /// Returns the path to an entry: the index of its scan root, then the index among its siblings at each level.
    [[nodiscard]] std::vector<std::size_t> path(std::size_t position) const {
        std::vector<std::size_t> indices;
        for (std::size_t at = position; at != noParent; at = places_[at].parent) {
            indices.push_back(places_[at].index);
        }
        std::reverse(indices.begin(), indices.end());
        return indices;
    }
    /// Returns the elements from `position` on, at most `limit`. Valid until the queue grows.
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
