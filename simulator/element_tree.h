#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace lomaris::simulator {

/// What a generated tree is like. Elements are counted with the topmost one, which has depth 0.
struct TreeShape {
    std::size_t elements = 1;
    /// Children that an element has at most.
    std::size_t branching = 10;
    /// Depth of the deepest elements. Where it is absent, the tree is as shallow as its branching lets it be.
    std::optional<std::size_t> depth;
};

/// How many elements a tree of this branching and depth has at least and at most.
struct TreeRoom {
    std::size_t least = 1;
    /// Absent where it is more than a billion.
    std::optional<std::size_t> most;
};

[[nodiscard]] TreeRoom roomOf(const TreeShape& shape);

/// The children of each element, by positions in breadth-first order, the topmost element being 0. With a depth, one
/// branch leads down to it and the other elements fill the tree from above. Nothing where `roomOf` leaves no room.
[[nodiscard]] std::optional<std::vector<std::vector<std::size_t>>> layOut(const TreeShape& shape);

}  // namespace lomaris::simulator
