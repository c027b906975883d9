#include "simulator/element_tree.h"

#include <utility>

namespace lomaris::simulator {
namespace {

struct Node {
    std::size_t depth = 0;
    std::vector<std::size_t> children;
};

void addChild(std::vector<Node>& nodes, std::size_t parent) {
    nodes[parent].children.push_back(nodes.size());
    nodes.push_back({nodes[parent].depth + 1, {}});
}

/// Orders the nodes breadth-first. Returns the children of each node, as positions in that order.
std::vector<std::vector<std::size_t>> inBreadthFirstOrder(const std::vector<Node>& nodes) {
    std::vector<std::size_t> order{0};
    std::vector<std::vector<std::size_t>> children;
    for (std::size_t position = 0; position < order.size(); ++position) {
        std::vector<std::size_t>& own = children.emplace_back();
        for (const std::size_t child : nodes[order[position]].children) {
            own.push_back(order.size());
            order.push_back(child);
        }
    }
    return children;
}

}  // namespace

TreeRoom roomOf(const TreeShape& shape) {
    if (!shape.depth) {
        return {};
    }
    constexpr std::size_t bound = 1'000'000'000;
    TreeRoom room{*shape.depth + 1, 1};
    std::size_t level = 1;
    for (std::size_t depth = 0; depth < *shape.depth; ++depth) {
        level *= shape.branching;
        room.most = *room.most + level;
        if (*room.most > bound) {
            room.most.reset();
            break;
        }
    }
    return room;
}

std::optional<std::vector<std::vector<std::size_t>>> layOut(const TreeShape& shape) {
    std::vector<Node> nodes(1);
    while (shape.depth && nodes.size() <= *shape.depth) {
        addChild(nodes, nodes.size() - 1);
    }
    if (nodes.size() > shape.elements || (nodes.size() > 1 && shape.branching == 0)) {
        return std::nullopt;
    }
    std::vector<std::size_t> level{0};
    while (nodes.size() < shape.elements) {
        std::vector<std::size_t> next;
        for (const std::size_t node : level) {
            const bool mayHaveChildren = !shape.depth || nodes[node].depth < *shape.depth;
            while (mayHaveChildren && nodes.size() < shape.elements && nodes[node].children.size() < shape.branching) {
                addChild(nodes, node);
            }
            next.insert(next.end(), nodes[node].children.begin(), nodes[node].children.end());
        }
        if (next.empty()) {
            return std::nullopt;
        }
        level = std::move(next);
    }
    return inBreadthFirstOrder(nodes);
}

}  // namespace lomaris::simulator
