#pragma once

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <vector>

namespace lomaris::test {

/// Makes these elements the "AXChildren" of `parent`.
inline void setChildren(SimulatedElement parent, const std::vector<SimulatedElement>& children) {
    std::vector<Element> elements;
    elements.reserve(children.size());
    for (const SimulatedElement& child : children) {
        elements.push_back(child.element());
    }
    parent.answers(attribute::children, elements);
}

/// Connects `root` and `leaf` by groups, so that `leaf` is at `depth`, which is at least 1; the root has depth 0.
inline void hangAtDepth(const SimulatedApplication& application, const SimulatedElement& root,
                        const SimulatedElement& leaf, int depth) {
    SimulatedElement parent = root;
    for (int level = 1; level < depth; ++level) {
        const SimulatedElement group = application.addElement();
        setChildren(parent, {group});
        parent = group;
    }
    setChildren(parent, {leaf});
}

}  // namespace lomaris::test
