#include "accessibility/adapter/selection_diagnostics.h"

#include "accessibility/model/bridge_error.h"
#include "tests/adapter/selection_diagnostics_fixture.h"
#include "tests/support/journal.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using test::setChildren;

using SelectionDiagnostics = SelectionDiagnosticsTest;

TEST_F(SelectionDiagnostics, ReadsNothingWithoutPermission) {
    desktop.setTrusted(false);
    EXPECT_EQ(test::thrownBy([&] { return diagnose(); }), BridgeError::accessibilityPermissionRequired());
    EXPECT_EQ(desktop.journal(), std::vector<std::string>{"0.000000000 isProcessTrusted(none) -> false"});
}

TEST_F(SelectionDiagnostics, FailsWithNoValueIfNoApplicationIsFrontmost) {
    desktop.leaveNothingInFront();
    EXPECT_EQ(test::thrownBy([&] { return diagnose(); }),
              BridgeError::focusedApplicationUnavailable(static_cast<AXError>(-25212)));
    EXPECT_EQ(desktop.journal().size(), 2U);
}

TEST_F(SelectionDiagnostics, RecordsEveryAttributeOfATextField) {
    auto field = notes.addElement();
    field.answers(attribute::role, Text(u"AXTextField"))
        .answers(attribute::subrole, Text(u"AXSearchField"))
        .answers(attribute::identifier, Text(u"search"))
        .answers(attribute::focused, true)
        .answers(attribute::selectedText, Text(u"brown"))
        .answers(attribute::selectedTextRange, TextRange{10, 5})
        .answers(attribute::value, Text(u"The quick brown fox"))
        .answersSettable(attribute::selectedText, {AXError::success, true});
    setChildren(field, addBareElements(2));
    setChildren(window, {field});

    AccessibilityNodeDiagnostic expected;
    expected.path = u"0.0";
    expected.depth = 1;
    expected.role = u"AXTextField";
    expected.subrole = u"AXSearchField";
    expected.identifier = u"search";
    expected.focused = true;
    expected.selectedTextStatus = 0;
    expected.selectedTextLength = 5;
    expected.selectedRange = SelectionRangePayload{10, 5};
    expected.valueLength = 19;
    expected.selectedTextSettable = true;
    expected.childCount = 2;
    EXPECT_EQ(diagnose(), payload(4, false, {expected}));
}

TEST_F(SelectionDiagnostics, WritesNothingAndPerformsNoAction) {
    setChildren(window, {notes.addTextElement(u"The quick brown fox", {4, 5})});
    EXPECT_EQ(diagnose().relevantNodes.size(), 1U);
    EXPECT_EQ(test::callsWith(desktop, "setAttribute("), 0U);
    EXPECT_EQ(test::callsWith(desktop, "performAction("), 0U);
}

TEST_F(SelectionDiagnostics, LeavesOutMissingApplicationNames) {
    desktop.addApplication(99, std::nullopt, std::nullopt);
    desktop.bringToFront(99);
    AccessibilityDiagnosticPayload expected;
    expected.processIdentifier = 99;
    expected.scannedNodeCount = 1;
    EXPECT_EQ(diagnose(), expected);
}

// The start of the scan.

TEST_F(SelectionDiagnostics, ScansTheApplicationIfItHasNoWindows) {
    notes.element().answers(attribute::focusedWindow, AXError::noValue);
    notes.element().answers(attribute::role, Text(u"AXStaticText"));
    EXPECT_EQ(diagnose(), payload(1, false, {staticText(u"0", 0)}));
}

TEST_F(SelectionDiagnostics, NumbersTheWindowsIfNoneIsFocused) {
    notes.element().answers(attribute::focusedWindow, AXError::noValue);
    const auto first = addStaticText();
    const auto second = addStaticText();
    const auto third = addStaticText();
    notes.element().answers(attribute::windows,
                            std::vector<Element>{third.element(), first.element(), second.element()});
    const auto inThird = addStaticText();
    setChildren(third, {inThird});

    auto root = staticText(u"0", 0);
    root.childCount = 1;
    EXPECT_EQ(diagnose(), payload(4, false, {root, staticText(u"1", 0), staticText(u"2", 0), staticText(u"0.0", 1)}));
}

TEST_F(SelectionDiagnostics, ScansOnlyTheFocusedWindow) {
    const auto other = addStaticText();
    notes.element().answers(attribute::windows, std::vector<Element>{other.element(), window.element()});
    EXPECT_EQ(diagnose(), payload(1, false, {}));
}

// The order and the bounds of the scan.

TEST_F(SelectionDiagnostics, BuildsPathsOfIndicesFromTheRoot) {
    auto inner = addBareElements(1);
    inner.push_back(addStaticText());
    auto outer = addBareElements(4);
    setChildren(outer[3], inner);
    setChildren(window, outer);
    EXPECT_EQ(diagnose(), payload(7, false, {staticText(u"0.3.1", 2)}));
}

TEST_F(SelectionDiagnostics, SupportsIndicesWithSeveralDigits) {
    auto children = addBareElements(112);
    children.push_back(addStaticText());
    setChildren(window, children);
    EXPECT_EQ(relevantPaths(), Texts{u"0.112"});
}

TEST_F(SelectionDiagnostics, KeepsTheOrderOfABreadthFirstScan) {
    const auto first = addStaticText();
    const auto second = addStaticText();
    setChildren(first, {addStaticText(), addStaticText()});
    setChildren(second, {addStaticText()});
    setChildren(window, {first, second});
    EXPECT_EQ(relevantPaths(), (Texts{u"0.0", u"0.1", u"0.0.0", u"0.0.1", u"0.1.0"}));
}

TEST_F(SelectionDiagnostics, ScansAnElementOncePerOccurrence) {
    const auto text = addStaticText();
    setChildren(window, {text, text});
    EXPECT_EQ(diagnose(), payload(3, false, {staticText(u"0.0", 1), staticText(u"0.1", 1)}));
}

TEST_F(SelectionDiagnostics, IsNotTruncatedAfterExactly3000Elements) {
    auto children = addBareElements(2998);
    children.push_back(addStaticText());
    setChildren(window, children);
    EXPECT_EQ(diagnose(), payload(3000, false, {staticText(u"0.2998", 1)}));
}

TEST_F(SelectionDiagnostics, StopsAfter3000ElementsOf3001) {
    auto children = addBareElements(2999);
    children.push_back(addStaticText());
    setChildren(window, children);
    EXPECT_EQ(diagnose(), payload(3000, true, {}));
}

TEST_F(SelectionDiagnostics, IsTruncatedIfThe3000thElementHasChildren) {
    auto children = addBareElements(2998);
    const auto last = addStaticText();
    children.push_back(last);
    setChildren(window, children);
    setChildren(last, {addStaticText()});

    auto expected = staticText(u"0.2998", 1);
    expected.childCount = 1;
    EXPECT_EQ(diagnose(), payload(3000, true, {expected}));
}

TEST_F(SelectionDiagnostics, IsNotTruncatedByChildrenBelowDepth30) {
    // 30 elements at depths 0 to 29, then 2,970 elements at depth 30, the last of which has a child.
    auto deepest = notes.addElement();
    test::hangAtDepth(notes, window, deepest, 29);
    auto children = addBareElements(2969);
    const auto last = addStaticText();
    children.push_back(last);
    setChildren(deepest, children);
    setChildren(last, {addStaticText()});

    const auto diagnosis = diagnose();
    ASSERT_EQ(diagnosis.relevantNodes.size(), 1U);
    EXPECT_EQ(diagnosis.relevantNodes[0].depth, 30);
    EXPECT_EQ(diagnosis.scannedNodeCount, 3000);
    EXPECT_FALSE(diagnosis.truncated);
}

TEST_F(SelectionDiagnostics, StopsAfter3000ElementsOfACyclicTree) {
    setChildren(window, std::vector<SimulatedElement>(200, window));
    EXPECT_EQ(diagnose(), payload(3000, true, {}));
}

TEST_F(SelectionDiagnostics, StopsAfter3000Windows) {
    notes.element().answers(attribute::focusedWindow, AXError::noValue);
    notes.element().answers(attribute::windows, std::vector<Element>(3001, window.element()));
    EXPECT_EQ(diagnose(), payload(3000, true, {}));
}

TEST_F(SelectionDiagnostics, DoesNotReadElementsBeyondThe3000th) {
    // Of another application, so that its name in the journal is not a prefix of other names.
    const auto beyond = desktop.addApplication(4711, std::nullopt, std::nullopt).addElement();
    auto children = addBareElements(2999);
    children.push_back(beyond);
    setChildren(window, children);
    EXPECT_EQ(diagnose(), payload(3000, true, {}));
    // Named once, among the children of the window.
    EXPECT_EQ(test::callsWith(desktop, "4711/1"), 1U);
    // One call for the window, then the other 2,999 in batches of 256.
    EXPECT_EQ(test::callsWith(desktop, " copyAttributes("), 13U);
}

TEST_F(SelectionDiagnostics, ExaminesDepth30ButNotItsChildren) {
    auto deepest = addStaticText();
    test::hangAtDepth(notes, window, deepest, 30);
    setChildren(deepest, {addStaticText()});

    Text path = u"0";
    for (int level = 0; level < 30; ++level) {
        path += u".0";
    }
    auto expected = staticText(path, 30);
    expected.childCount = 1;
    EXPECT_EQ(diagnose(), payload(31, false, {expected}));
}

TEST_F(SelectionDiagnostics, ScansTheChildrenOfIrrelevantElements) {
    const auto group = addWithRole(u"AXGroup");
    setChildren(window, {group});
    setChildren(group, {addStaticText()});
    EXPECT_EQ(relevantPaths(), Texts{u"0.0.0"});
}

/// Diagnoses a window that contains one text area. Its application quits just before the call with this number.
AccessibilityDiagnosticPayload diagnoseWhileQuitting(std::size_t call, SimulatedDesktop& desktop) {
    const auto notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    desktop.bringToFront(812);
    const auto window = notes.addElement();
    notes.element().answers(attribute::focusedWindow, window.element());
    setChildren(window, {notes.addTextElement(u"The quick brown fox", {4, 5})});
    desktop.beforeCall(call, [&desktop] { desktop.quit(812); });
    return diagnoseSelection(desktop);
}

TEST(SelectionDiagnosticsOfAnApplicationThatQuits, AreCompleteUpToTheQuit) {
    struct Example {
        std::size_t call;
        std::int64_t scanned;
        std::size_t relevant;
        bool settable;
    };
    // The calls: the trust check, the frontmost application, its element, its focused window, the attributes of the
    // window, those of the text area, and whether its selected text can be set.
    const std::vector<Example> examples = {
        {3, 1, 0, false}, {4, 1, 0, false}, {5, 1, 0, false}, {6, 2, 0, false}, {7, 2, 1, false}, {8, 2, 1, true},
    };
    for (const Example& example : examples) {
        SimulatedDesktop desktop;
        const auto diagnosis = diagnoseWhileQuitting(example.call, desktop);
        EXPECT_EQ(diagnosis.applicationName, u"Notes") << "before call " << example.call;
        EXPECT_EQ(diagnosis.scannedNodeCount, example.scanned) << "before call " << example.call;
        ASSERT_EQ(diagnosis.relevantNodes.size(), example.relevant) << "before call " << example.call;
        for (const auto& node : diagnosis.relevantNodes) {
            EXPECT_EQ(node.selectedTextSettable, example.settable) << "before call " << example.call;
        }
    }
}

}  // namespace
}  // namespace lomaris
