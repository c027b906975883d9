#pragma once

#include "accessibility/adapter/selection_diagnostics.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/diagnostics_printer.h"
#include "tests/support/element_tree.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace lomaris {

using Texts = std::vector<Text>;

/// A frontmost application whose focused window has no attributes.
class SelectionDiagnosticsTest : public testing::Test {
protected:
    SelectionDiagnosticsTest() {
        desktop.bringToFront(812);
        notes.element().answers(attribute::focusedWindow, window.element());
    }

    AccessibilityDiagnosticPayload diagnose() { return diagnoseSelection(desktop); }

    /// Returns the paths of the relevant elements.
    Texts relevantPaths() {
        Texts paths;
        for (auto& node : diagnose().relevantNodes) {
            paths.push_back(std::move(node.path));
        }
        return paths;
    }

    SimulatedElement addWithRole(TextView role) {
        auto element = notes.addElement();
        element.answers(attribute::role, Text(role));
        return element;
    }
    SimulatedElement addStaticText() { return addWithRole(u"AXStaticText"); }

    /// Adds elements without attributes.
    std::vector<SimulatedElement> addBareElements(std::size_t count) {
        std::vector<SimulatedElement> elements;
        for (std::size_t index = 0; index < count; ++index) {
            elements.push_back(notes.addElement());
        }
        return elements;
    }

    /// Returns the record of an element at `path` that has no attribute but the role "AXStaticText".
    static AccessibilityNodeDiagnostic staticText(TextView path, std::int64_t depth) {
        AccessibilityNodeDiagnostic node;
        node.path = path;
        node.depth = depth;
        node.role = u"AXStaticText";
        node.selectedTextStatus = -25205;
        return node;
    }

    /// Returns the payload of the frontmost application with these numbers and elements.
    static AccessibilityDiagnosticPayload payload(std::int64_t scanned, bool truncated,
                                                  std::vector<AccessibilityNodeDiagnostic> nodes) {
        AccessibilityDiagnosticPayload payload;
        payload.applicationName = u"Notes";
        payload.bundleIdentifier = u"com.example.notes";
        payload.processIdentifier = 812;
        payload.scannedNodeCount = scanned;
        payload.truncated = truncated;
        payload.relevantNodes = std::move(nodes);
        return payload;
    }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedElement window = notes.addElement();
};

}  // namespace lomaris
