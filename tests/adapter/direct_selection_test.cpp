#include "accessibility/adapter/direct_selection.h"

#include "accessibility/model/capture_trace.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/journal.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {
namespace {

class DirectSelection : public testing::Test {
protected:
    DirectSelection() {
        desktop.bringToFront(812);
        desktop.setInputCounters({1532, 210, 4, 7});
        focus(field);
        SelectionCaptureTrace::shared().reset();
    }

    void focus(const SimulatedElement& element) {
        notes.element().answers(attribute::focusedUIElement, element.element());
    }

    /// Puts the elements into the focused window.
    void showInWindow(const std::vector<SimulatedElement>& elements) {
        auto window = notes.addElement();
        std::vector<Element> children;
        for (const auto& element : elements) {
            children.push_back(element.element());
        }
        window.answers(attribute::children, children);
        notes.element().answers(attribute::focusedWindow, window.element());
    }

    SelectionSnapshot read() { return readDirectSelection(desktop, fallback, options, purpose); }
    std::optional<BridgeError> error() {
        return test::thrownBy([this] { return read(); });
    }

    static std::int64_t traced(SelectionCaptureTrace::Key key) {
        return SelectionCaptureTrace::shared().snapshot().at(static_cast<std::size_t>(key)).second;
    }

    SimulatedDesktop desktop;
    KeyboardClipboardFallback fallback{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement field = notes.addTextElement(u"The quick brown fox jumps", TextRange{10, 9});
    SelectionReadOptions options{.limits = {.before = 500, .after = 500}, .allowClipboardFallback = true};
    SelectionPurpose purpose = SelectionPurpose::standard;
};

TEST_F(DirectSelection, ReadsTextRangeContextCountersAndApplication) {
    const auto snapshot = read();
    EXPECT_EQ(snapshot.element, field.element());
    EXPECT_EQ(snapshot.replacementStrategy, ReplacementStrategy::directAccessibility);
    SelectionPayload expected;
    expected.applicationName = u"Notes";
    expected.bundleIdentifier = u"com.example.notes";
    expected.processIdentifier = 812;
    expected.selectedText = u"brown fox";
    expected.contextBefore = u"The quick ";
    expected.contextAfter = u" jumps";
    expected.selectedRange = TextRange{10, 9};
    expected.inputActivity = {1532, 210, 4, 7};
    expected.supportsDirectReplacement = true;
    expected.selectionMethod = u"accessibility";
    EXPECT_EQ(snapshot.payload, expected);
    EXPECT_EQ(traced(SelectionCaptureTrace::Key::route), 1);
}

TEST_F(DirectSelection, ReadsNothingWithoutPermission) {
    desktop.setTrusted(false);
    EXPECT_EQ(error(), BridgeError::accessibilityPermissionRequired());
    EXPECT_EQ(desktop.journal().size(), 1U);
    EXPECT_EQ(traced(SelectionCaptureTrace::Key::route), 0);
}

TEST_F(DirectSelection, FailsWithoutAFocusedElement) {
    notes.element().answers(attribute::focusedUIElement, AXError::noValue);
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::noValue, u"Notes"));
}

TEST_F(DirectSelection, CutsTheContextToTheLimits) {
    options.limits.before = 5;
    options.limits.after = 3;
    const auto payload = read().payload;
    EXPECT_EQ(payload.contextBefore, u"uick ");
    EXPECT_EQ(payload.contextAfter, u" ju");
}

TEST_F(DirectSelection, HasNoContextForANegativeLimitOrWithoutRange) {
    options.limits.after = -1;
    EXPECT_EQ(read().payload.contextBefore, u"");
    EXPECT_EQ(read().payload.contextAfter, u"");
    options.limits.after = 500;
    field.answers(attribute::selectedTextRange, AXError::noValue);
    const auto payload = read().payload;
    EXPECT_EQ(payload.selectedText, u"brown fox");
    EXPECT_EQ(payload.contextBefore, u"");
    EXPECT_EQ(payload.contextAfter, u"");
    EXPECT_EQ(payload.selectedRange, std::nullopt);
}

TEST_F(DirectSelection, KeepsAContradictingRangeButCutsNoContext) {
    field.answers(attribute::selectedTextRange, TextRange{20, 900});
    const auto payload = read().payload;
    EXPECT_EQ(payload.selectedText, u"brown fox");
    EXPECT_EQ(payload.selectedRange, (TextRange{20, 900}));
    EXPECT_EQ(payload.contextBefore, u"");
    EXPECT_EQ(payload.contextAfter, u"");
}

TEST_F(DirectSelection, MayCutASurrogatePairInTheContext) {
    field.setText(u"\U0001f600fox", TextRange{2, 3});
    options.limits.before = 1;
    EXPECT_EQ(read().payload.contextBefore, Text(1, u'\xde00'));
}

TEST_F(DirectSelection, RequiresPastingIfTheSelectedTextIsNotSettable) {
    for (const SettableAnswer answer :
         {SettableAnswer{AXError::success, false}, SettableAnswer{AXError::cannotComplete, true},
          SettableAnswer{AXError::attributeUnsupported, false}}) {
        field.answersSettable(attribute::selectedText, answer);
        options.allowClipboardFallback = true;
        const auto snapshot = read();
        EXPECT_FALSE(snapshot.payload.supportsDirectReplacement);
        EXPECT_EQ(snapshot.payload.selectionMethod, u"accessibility");
        EXPECT_EQ(snapshot.replacementStrategy, ReplacementStrategy::keyboardClipboard);

        options.allowClipboardFallback = false;
        EXPECT_EQ(error(), BridgeError::clipboardFallbackDisabled());
    }
}

TEST_F(DirectSelection, KeepsRouteOneRecordedIfALaterStepThrows) {
    field.answersSettable(attribute::selectedText, {AXError::success, false});
    options.allowClipboardFallback = false;
    EXPECT_EQ(error(), BridgeError::clipboardFallbackDisabled());
    EXPECT_EQ(traced(SelectionCaptureTrace::Key::route), 1);
}

TEST_F(DirectSelection, NeedsNoClipboardIfTheElementIsWritable) {
    options.allowClipboardFallback = false;
    EXPECT_EQ(read().replacementStrategy, ReplacementStrategy::directAccessibility);
}

TEST_F(DirectSelection, UsesTheElementsProcessAndTheApplicationsIdentifier) {
    const auto helper = desktop.addApplication(813, u"com.example.helper", u"Helper");
    focus(helper.addTextElement(u"helped", TextRange{0, 6}));
    const auto payload = read().payload;
    EXPECT_EQ(payload.processIdentifier, 813);
    EXPECT_EQ(payload.bundleIdentifier, u"com.example.notes");
    EXPECT_EQ(payload.applicationName, u"Notes");
}

TEST_F(DirectSelection, HasProcessIdentifierZeroIfItCannotBeRead) {
    field.processIdentifierFails();
    EXPECT_EQ(read().payload.processIdentifier, 0);
}

TEST_F(DirectSelection, FindsTheApplicationByTheElementIfNoneIsFrontmost) {
    desktop.leaveNothingInFront();
    desktop.systemWide().answers(attribute::focusedUIElement, field.element());
    auto payload = read().payload;
    EXPECT_EQ(payload.applicationName, u"Notes");
    EXPECT_EQ(payload.bundleIdentifier, u"com.example.notes");
    EXPECT_EQ(payload.processIdentifier, 812);

    field.processIdentifierFails();
    payload = read().payload;
    EXPECT_EQ(payload.applicationName, std::nullopt);
    EXPECT_EQ(payload.bundleIdentifier, std::nullopt);
    EXPECT_EQ(payload.processIdentifier, 0);
}

TEST_F(DirectSelection, WalksTheTreeIfTheFirstElementIsUnreadable) {
    auto unreadable = notes.addElement();
    unreadable.answers(attribute::selectedText, AXError::attributeUnsupported);
    focus(unreadable);
    showInWindow({field});
    const auto snapshot = read();
    EXPECT_EQ(snapshot.element, field.element());
    EXPECT_EQ(snapshot.payload.selectedText, u"brown fox");
    EXPECT_EQ(snapshot.payload.selectedRange, (TextRange{10, 9}));
}

TEST_F(DirectSelection, FailsWithTheFirstErrorIfTheWalkFindsNothing) {
    auto unreadable = notes.addElement();
    unreadable.answers(attribute::selectedText, AXError::apiDisabled);
    focus(unreadable);
    showInWindow({});
    EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::apiDisabled));
}

TEST_F(DirectSelection, FailsWithTheSecondErrorIfBothElementsAreUnreadable) {
    auto unreadable = notes.addElement();
    unreadable.answers(attribute::selectedText, AXError::apiDisabled);
    focus(unreadable);
    auto rangeOnly = notes.addElement();
    rangeOnly.answers(attribute::selectedTextRange, TextRange{3, 4});
    rangeOnly.answers(attribute::selectedText, AXError::attributeUnsupported);
    showInWindow({rangeOnly});
    EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::attributeUnsupported));
}

TEST_F(DirectSelection, FailsWithoutAWalkIfNoApplicationIsFrontmost) {
    auto unreadable = notes.addElement();
    unreadable.answers(attribute::selectedText, AXError::apiDisabled);
    showInWindow({field});
    desktop.leaveNothingInFront();
    desktop.systemWide().answers(attribute::focusedUIElement, unreadable.element());
    EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::apiDisabled));
    EXPECT_EQ(test::callsWith(desktop, "AXFocusedWindow"), 0U);
}

TEST_F(DirectSelection, WalksTheTreeIfTheFirstElementHasNoSelection) {
    const auto empty = notes.addTextElement(u"nothing selected", TextRange{3, 0});
    focus(empty);
    showInWindow({empty, field});
    EXPECT_EQ(read().element, field.element());
}

TEST_F(DirectSelection, ReportsNoSelectionIfTheWalkFindsNoBetterElement) {
    const auto empty = notes.addTextElement(u"nothing selected", TextRange{3, 0});
    focus(empty);
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    showInWindow({empty});
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    EXPECT_EQ(traced(SelectionCaptureTrace::Key::route), 0);
}

TEST_F(DirectSelection, ReportsNoSelectionIfTheFoundElementIsUnreadable) {
    const auto empty = notes.addTextElement(u"nothing selected", TextRange{3, 0});
    focus(empty);
    auto rangeOnly = notes.addElement();
    rangeOnly.answers(attribute::selectedTextRange, TextRange{3, 4});
    showInWindow({rangeOnly});
    EXPECT_EQ(error(), BridgeError::noTextSelected());
}

TEST_F(DirectSelection, ReportsNoSelectionWithoutAWalkIfNothingIsFrontmost) {
    const auto empty = notes.addTextElement(u"nothing selected", TextRange{3, 0});
    showInWindow({field});
    desktop.leaveNothingInFront();
    desktop.systemWide().answers(attribute::focusedUIElement, empty.element());
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    EXPECT_EQ(test::callsWith(desktop, "AXFocusedWindow"), 0U);
}

TEST_F(DirectSelection, RefusesATerminalWithoutARangeUnderTheShortcut) {
    const auto terminal = desktop.addApplication(900, u"com.apple.Terminal", u"Terminal");
    auto screen = terminal.addElement();
    screen.answers(attribute::selectedText, Text(u"ls -l"));
    terminal.element().answers(attribute::focusedUIElement, screen.element());
    desktop.bringToFront(900);
    EXPECT_EQ(read().payload.selectedText, u"ls -l");

    purpose = SelectionPurpose::guardedReplacement;
    EXPECT_EQ(read().payload.selectedText, u"ls -l");

    purpose = SelectionPurpose::shortcut;
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    screen.answers(attribute::selectedTextRange, TextRange{5, 0});
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    screen.answers(attribute::selectedTextRange, TextRange{5, 5});
    EXPECT_EQ(read().payload.selectedText, u"ls -l");
}

TEST_F(DirectSelection, MakesItsCallsInThisOrder) {
    static_cast<void>(read());
    const std::vector<std::string> expected = {
        "0.000000000 isProcessTrusted(none) -> true",
        "0.000000000 frontmostApplication() -> 812 com.example.notes \"Notes\"",
        "0.000000000 applicationElement(812)",
        "0.000000000 copyElementAttribute(812, AXFocusedUIElement) -> 812/1",
        "0.000000000 copyAttribute(812/1, AXSelectedTextRange) -> {10, 9}",
        "0.000000000 copyAttribute(812/1, AXValue) -> \"The quick brown fox jumps\"",
        "0.000000000 copyAttribute(812/1, AXSelectedText) -> \"brown fox\"",
        "0.000000000 processIdentifier(812/1) -> 812",
        "0.000000000 isAttributeSettable(812/1, AXSelectedText) -> true",
        "0.000000000 inputCounter(10) -> 1532",
        "0.000000000 inputCounter(1) -> 210",
        "0.000000000 inputCounter(3) -> 4",
        "0.000000000 inputCounter(25) -> 7",
    };
    EXPECT_EQ(desktop.journal(), expected);
}

TEST_F(DirectSelection, FailsWithTheErrorOfTheNextCallIfTheTargetQuits) {
    struct Example {
        std::size_t call;
        BridgeError error;
    };
    const std::vector<Example> examples = {
        // No application is frontmost when the frontmost application is read.
        {2, BridgeError::focusedElementUnavailable(AXError::attributeUnsupported, std::nullopt)},
        {3, BridgeError::focusedElementUnavailable(AXError::invalidUIElement, u"Notes")},
        {4, BridgeError::focusedElementUnavailable(AXError::invalidUIElement, u"Notes")},
        {5, BridgeError::selectedTextUnavailable(AXError::invalidUIElement)},
        {6, BridgeError::selectedTextUnavailable(AXError::invalidUIElement)},
    };
    for (const auto& example : examples) {
        SimulatedDesktop fresh;
        KeyboardClipboardFallback freshFallback(fresh);
        const auto application = fresh.addApplication(812, u"com.example.notes", u"Notes");
        application.element().answers(attribute::focusedUIElement,
                                      application.addTextElement(u"brown", TextRange{0, 5}).element());
        fresh.bringToFront(812);
        fresh.beforeCall(example.call, [&fresh] { fresh.quit(812); });
        EXPECT_EQ(test::thrownBy([&] { return readDirectSelection(fresh, freshFallback, options, purpose); }),
                  example.error)
            << example.call;
    }
}

TEST_F(DirectSelection, KeepsItsResultIfTheApplicationQuitsAfterwards) {
    // Range and value are read, so the selected text is cut out of the value.
    desktop.beforeCall(7, [this] { desktop.quit(812); });
    const auto snapshot = read();
    EXPECT_EQ(snapshot.payload.selectedText, u"brown fox");
    EXPECT_EQ(snapshot.payload.processIdentifier, 0);
    EXPECT_EQ(snapshot.replacementStrategy, ReplacementStrategy::keyboardClipboard);
}

}  // namespace
}  // namespace lomaris
