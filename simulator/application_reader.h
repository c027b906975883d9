#pragma once

#include "simulator/json_node.h"
#include "simulator/stage.h"

#include <utility>
#include <vector>

namespace lomaris::simulator {

/// Puts the applications of a desktop file on the stage: first they themselves, then all elements, so that each can be
/// named anywhere in the file, then what they answer and how the applications react.
class ApplicationReader {
public:
    explicit ApplicationReader(Stage& stage) : stage_(stage) {}

    /// Puts an application on the desktop.
    void add(const JsonNode& node);

    /// Makes the elements of the applications that were added, in the order of the file, and their menu bars.
    void make();

    /// Scripts everything that was made. Applications that start later do not run from then on.
    void script();

private:
    void makeElement(const JsonNode& node, SimulatedApplication application, std::vector<Element>& siblings);
    void makeTree(const JsonNode& node, SimulatedApplication application, SimulatedElement top);
    void makeMenuBar(const JsonNode& node, SimulatedApplication application);
    /// Gives an element its name and its text, and keeps its script for later.
    void take(const JsonNode& node, const SimulatedElement& element);
    void scriptApplication(const JsonNode& node, SimulatedApplication application);

    Stage& stage_;
    std::vector<std::pair<JsonNode, SimulatedElement>> elements_;
    std::vector<std::pair<JsonNode, std::vector<SimulatedElement>>> alike_;
    std::vector<std::pair<JsonNode, SimulatedApplication>> applications_;
};

}  // namespace lomaris::simulator
