#pragma once

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <vector>

namespace lomaris::test {

/// From now on `parent` answers these as its "AXChildren".
inline void setChildren(SimulatedElement parent, const std::vector<SimulatedElement>& children) {
    std::vector<Element> elements;
    elements.reserve(children.size());
    for (const SimulatedElement& child : children) {
        elements.push_back(child.element());
    }
    parent.answers(attribute::children, elements);
}

/// Hangs `leaf` below `root` so that it stands at this depth, at least 1, the root being at depth 0.
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
