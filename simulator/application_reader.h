#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <utility>
#include <vector>

namespace lomaris::simulator {

/// Adds the applications of a desktop file to the stage: first the applications, then all elements, so that every part
/// of the file can name them, then the attribute values and reactions.
class ApplicationReader {
public:
    explicit ApplicationReader(Stage& stage) : stage_(stage) {}

    /// Adds an application to the desktop.
    void add(const JsonNode& node);

    /// Creates the elements of the added applications in the order of the file, and then their menu bars.
    void make();

    /// Applies the scripts of everything that was created. Afterwards, applications with "runs": false count as not
    /// started.
    void script();

private:
    void makeElement(const JsonNode& node, SimulatedApplication application, std::vector<Element>& siblings);
    void makeTree(const JsonNode& node, SimulatedApplication application, SimulatedElement top);
    void makeMenuBar(const JsonNode& node, SimulatedApplication application);
    /// Gives an element its name and text, and stores its script to be applied later.
    void take(const JsonNode& node, const SimulatedElement& element);
    void scriptApplication(const JsonNode& node, SimulatedApplication application);

    Stage& stage_;
    std::vector<std::pair<JsonNode, SimulatedElement>> elements_;
    std::vector<std::pair<JsonNode, std::vector<SimulatedElement>>> alike_;
    std::vector<std::pair<JsonNode, SimulatedApplication>> applications_;
};

}  // namespace lomaris::simulator
