#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace lomaris::simulator {

/// The shape of a generated tree. The number of elements includes the root, which has depth 0.
struct TreeShape {
    std::size_t elements = 1;
    /// The maximum number of children of an element.
    std::size_t branching = 10;
    /// The depth of the deepest elements. If absent, the tree is as shallow as its branching allows.
    std::optional<std::size_t> depth;
};

/// The minimum and maximum number of elements of a tree with a given branching and depth.
struct TreeRoom {
    std::size_t least = 1;
    /// Absent if it is more than a billion.
    std::optional<std::size_t> most;
};

[[nodiscard]] TreeRoom roomOf(const TreeShape& shape);

/// Returns the children of each element, as positions in breadth-first order; the root is 0. If a depth is given, one
/// branch leads down to it, and the other elements fill the tree level by level. Returns nullopt if the number of
/// elements is outside `roomOf`.
[[nodiscard]] std::optional<std::vector<std::vector<std::size_t>>> layOut(const TreeShape& shape);

}  // namespace lomaris::simulator
