#include "accessibility/adapter/focused_element.h"
#include "accessibility/adapter/selection_diagnostics.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lomaris {
namespace {

constexpr std::size_t elementCount = 3000;
constexpr std::size_t childrenPerElement = 10;

/// A window with a tree of `elementCount` elements in all, the last of which is a text element without a selection: the
/// walk has to look at every one. Answers the elements.
std::vector<SimulatedElement> buildTree(SimulatedDesktop& desktop) {
    const auto application = desktop.addApplication(812, u"com.example.notes", u"Notes");
    std::vector<SimulatedElement> elements;
    for (std::size_t index = 0; index < elementCount; ++index) {
        elements.push_back(application.addElement());
    }
    for (std::size_t parent = 0; parent * childrenPerElement + 1 < elementCount; ++parent) {
        std::vector<Element> children;
        for (std::size_t child = 0; child < childrenPerElement; ++child) {
            const std::size_t index = parent * childrenPerElement + child + 1;
            if (index < elementCount) {
                children.push_back(elements[index].element());
            }
        }
        elements[parent].answers(attribute::children, children);
    }
    elements.back().answers(attribute::selectedText, Text());
    application.element().answers(attribute::focusedWindow, elements.front().element());
    return elements;
}

void walkOver3000Elements(benchmark::State& state) {
    SimulatedDesktop desktop;
    buildTree(desktop);
    const Element application = desktop.accessibility().applicationElement(812);
    for (auto _ : state) {
        if (!findFocusedTextDescendant(desktop.accessibility(), application)) {
            state.SkipWithError("the text element was not found");
        }
    }
}
BENCHMARK(walkOver3000Elements)->Unit(benchmark::kMillisecond);

void diagnoseTree(benchmark::State& state, SimulatedDesktop& desktop, std::size_t relevantCount) {
    desktop.bringToFront(812);
    for (auto _ : state) {
        const auto diagnosis = diagnoseSelection(desktop);
        if (diagnosis.scannedNodeCount != std::int64_t{elementCount} ||
            diagnosis.relevantNodes.size() != relevantCount) {
            state.SkipWithError("the diagnosis is another");
        }
    }
}

void diagnose3000Elements(benchmark::State& state) {
    SimulatedDesktop desktop;
    buildTree(desktop);
    diagnoseTree(state, desktop, 1);
}
BENCHMARK(diagnose3000Elements)->Unit(benchmark::kMillisecond);

/// Where every element is kept.
void diagnose3000RelevantElements(benchmark::State& state) {
    SimulatedDesktop desktop;
    for (SimulatedElement element : buildTree(desktop)) {
        element.answers(attribute::role, Text(u"AXStaticText"));
    }
    diagnoseTree(state, desktop, elementCount);
}
BENCHMARK(diagnose3000RelevantElements)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lomaris
