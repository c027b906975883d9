#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/model/capture_trace.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <vector>

namespace lomaris {
namespace {

using Entries = std::vector<SelectionCaptureTrace::Entry>;

using namespace std::chrono_literals;

/// Reads with each kind of failure, on each route.
class SelectionReadRouting : public testing::Test {
protected:
    SelectionReadRouting() {
        desktop.bringToFront(812);
        notes.element().answers(attribute::focusedUIElement, field.element());
        desktop.userCopies(u"mine");
        before = desktop.pasteboardContents();
        SelectionCaptureTrace::shared().reset();
    }
    ~SelectionReadRouting() override { EXPECT_EQ(desktop.pasteboardContents(), before); }

    SelectionSnapshot read() { return adapter.readSelection(options, purpose); }
    std::optional<BridgeError> error() {
        return test::thrownBy([this] { return read(); });
    }

    struct Trace {
        std::int64_t route = 0;
        std::int64_t error = 0;
        std::int64_t copyItem = 0;
        std::int64_t keyPresses = 0;
        std::int64_t menuPresses = 0;
        std::int64_t web = 0;
    };
    static void expectTrace(const Trace& expected) {
        const Entries entries = {{"route", expected.route},
                                 {"error", expected.error},
                                 {"copy_item", expected.copyItem},
                                 {"key_presses", expected.keyPresses},
                                 {"menu_presses", expected.menuPresses},
                                 {"web", expected.web}};
        EXPECT_EQ(SelectionCaptureTrace::shared().snapshot(), entries);
    }

    /// The focused element does not expose its selection; Command+C copies it.
    void hideSelection() {
        notes.element().answers(attribute::focusedUIElement, notes.addElement().element());
        notes.onCopy(copies(u"brown fox"));
    }

    void addCopyMenu(std::optional<bool> enabled) {
        notes.addMenuBar({{u"Edit", {{.title = u"Copy", .commandCharacter = u"c", .enabled = enabled}}}})
            .item(u"Edit", u"Copy")
            .onAction(action::press, copies(u"by menu"));
    }

    SimulatedDesktop desktop;
    MacOSAccessibilityAdapter adapter{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement field = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    std::vector<StandingItem> before;
    SelectionReadOptions options{.limits = {.before = 500, .after = 500}, .allowClipboardFallback = true};
    SelectionPurpose purpose = SelectionPurpose::standard;
};

TEST_F(SelectionReadRouting, RecordsRouteOneForADirectRead) {
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
    expectTrace({.route = 1});
}

TEST_F(SelectionReadRouting, CopiesByKeyIfTheSelectedTextIsUnavailable) {
    hideSelection();
    addCopyMenu(true);
    const auto snapshot = read();
    EXPECT_EQ(snapshot.payload.selectedText, u"brown fox");
    EXPECT_EQ(snapshot.element, notes.element().element());
    expectTrace({.route = 3, .error = 2, .keyPresses = 1});
}

TEST_F(SelectionReadRouting, BuildsTheSnapshotOfTheClipboardRoute) {
    hideSelection();
    desktop.setInputCounters({1, 2, 3, 4});
    const auto snapshot = read();
    SelectionPayload expected;
    expected.applicationName = u"Notes";
    expected.bundleIdentifier = u"com.example.notes";
    expected.processIdentifier = 812;
    expected.selectedText = u"brown fox";
    // Command+C counts as one key press.
    expected.inputActivity = {2, 2, 3, 4};
    expected.selectionMethod = u"keyboardClipboardFallback";
    EXPECT_EQ(snapshot.payload, expected);
    EXPECT_EQ(snapshot.replacementStrategy, ReplacementStrategy::keyboardClipboard);
}

TEST_F(SelectionReadRouting, CopiesIfNothingIsSelected) {
    field.select({3, 0});
    notes.onCopy(copies(u"a line"));
    EXPECT_EQ(read().payload.selectedText, u"a line");
    expectTrace({.route = 3, .error = 1, .keyPresses = 1});
}

TEST_F(SelectionReadRouting, CopiesIfTheFocusedElementIsUnavailable) {
    notes.element().answers(attribute::focusedUIElement, AXError::noValue);
    notes.onCopy(copies(u"brown fox"));
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
    expectTrace({.route = 3, .error = 3, .keyPresses = 1});
}

TEST_F(SelectionReadRouting, RethrowsTheErrorOfTheClipboardRoute) {
    field.select({3, 0});
    EXPECT_EQ(error(), BridgeError::clipboardFallbackFailed(
                           u"the target application did not respond to Cmd+C after 3 attempt(s)"));
    expectTrace({.route = 3, .error = 1, .keyPresses = 3});
    EXPECT_EQ(desktop.now(), 3160ms);
}

TEST_F(SelectionReadRouting, DoesNotCopyWithoutPermission) {
    desktop.setTrusted(false);
    EXPECT_EQ(error(), BridgeError::accessibilityPermissionRequired());
    expectTrace({.error = 4});
}

TEST_F(SelectionReadRouting, RecordsRouteOneAndErrorFourIfPastingIsForbidden) {
    field.answersSettable(attribute::selectedText, {AXError::success, false});
    options.allowClipboardFallback = false;
    EXPECT_EQ(error(), BridgeError::clipboardFallbackDisabled());
    expectTrace({.route = 1, .error = 4});
}

TEST_F(SelectionReadRouting, RecordsRouteThreeIfTheClipboardIsForbidden) {
    hideSelection();
    options.allowClipboardFallback = false;
    EXPECT_EQ(error(), BridgeError::clipboardFallbackDisabled());
    expectTrace({.route = 3, .error = 2});
}

TEST_F(SelectionReadRouting, FailsIfNoApplicationIsFrontmost) {
    desktop.leaveNothingInFront();
    EXPECT_EQ(error(), BridgeError::focusedApplicationUnavailable(AXError::noValue));
    expectTrace({.route = 3, .error = 3});
}

TEST_F(SelectionReadRouting, UsesTheMenuUnderTheShortcutAndBeforeAReplacement) {
    hideSelection();
    for (const std::optional<bool> enabled : {std::optional<bool>(true), std::optional<bool>()}) {
        addCopyMenu(enabled);
        for (const auto tried : {SelectionPurpose::shortcut, SelectionPurpose::guardedReplacement}) {
            SelectionCaptureTrace::shared().reset();
            purpose = tried;
            EXPECT_EQ(read().payload.selectedText, u"by menu");
            expectTrace({.route = 3, .error = 2, .copyItem = 2, .menuPresses = 1});
        }
    }
}

TEST_F(SelectionReadRouting, SearchesTheCopyCommandTwice50MillisecondsApart) {
    hideSelection();
    purpose = SelectionPurpose::shortcut;
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
    expectTrace({.route = 3, .error = 2, .copyItem = 1, .keyPresses = 1});
    EXPECT_EQ(desktop.now(), 50ms);
}

TEST_F(SelectionReadRouting, FindsACopyCommandInTheSecondSearch) {
    hideSelection();
    purpose = SelectionPurpose::guardedReplacement;
    desktop.at(20ms, [this] { addCopyMenu(true); });
    EXPECT_EQ(read().payload.selectedText, u"by menu");
    expectTrace({.route = 3, .error = 2, .copyItem = 2, .menuPresses = 1});
    EXPECT_EQ(desktop.now(), 50ms);
}

TEST_F(SelectionReadRouting, ReportsNoSelectionUnderTheShortcutIfCopyIsDisabled) {
    field.select({3, 0});
    addCopyMenu(false);
    purpose = SelectionPurpose::shortcut;
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    expectTrace({.error = 1, .copyItem = 3});
    EXPECT_EQ(desktop.now(), 0ms);
}

TEST_F(SelectionReadRouting, CopiesByKeyBeforeAReplacementIfCopyIsDisabled) {
    field.select({3, 0});
    addCopyMenu(false);
    notes.onCopy(copies(u"a line"));
    purpose = SelectionPurpose::guardedReplacement;
    EXPECT_EQ(read().payload.selectedText, u"a line");
    expectTrace({.route = 3, .error = 1, .copyItem = 3, .keyPresses = 1});
}

TEST_F(SelectionReadRouting, CopiesAHiddenSelectionByKeyIfCopyIsDisabled) {
    hideSelection();
    addCopyMenu(false);
    purpose = SelectionPurpose::shortcut;
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
    expectTrace({.route = 3, .error = 2, .copyItem = 3, .keyPresses = 1});
}

TEST_F(SelectionReadRouting, UsesTheApplicationInFrontBeforeTheRead) {
    hideSelection();
    desktop.addApplication(900, std::nullopt, u"Other");
    desktop.beforeCall(4, [this] { desktop.bringToFront(900); });
    EXPECT_EQ(read().payload.applicationName, u"Notes");
    EXPECT_EQ(desktop.postedKeyStrokes().at(0).processIdentifier, 812);
}

TEST_F(SelectionReadRouting, UsesAnApplicationThatBecomesFrontmostInTheRead) {
    hideSelection();
    desktop.leaveNothingInFront();
    desktop.systemWide().answers(attribute::focusedUIElement, AXError::cannotComplete);
    desktop.at(200ms, [this] { desktop.bringToFront(812); });
    const auto snapshot = read();
    EXPECT_EQ(snapshot.payload.applicationName, u"Notes");
    EXPECT_EQ(snapshot.payload.processIdentifier, 812);
    EXPECT_EQ(snapshot.payload.selectedText, u"brown fox");
    expectTrace({.route = 3, .error = 3, .keyPresses = 1});
}

TEST_F(SelectionReadRouting, RefusesAFileManagerUnderTheShortcutUnread) {
    const auto finder = desktop.addApplication(1, u"com.apple.finder", u"Finder");
    finder.element().answers(attribute::focusedUIElement,
                             finder.addTextElement(u"a file name", TextRange{0, 11}).element());
    desktop.bringToFront(1);
    EXPECT_EQ(read().payload.selectedText, u"a file name");
    purpose = SelectionPurpose::guardedReplacement;
    EXPECT_EQ(read().payload.selectedText, u"a file name");

    SelectionCaptureTrace::shared().reset();
    const auto callsBefore = desktop.journal().size();
    purpose = SelectionPurpose::shortcut;
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    EXPECT_EQ(desktop.journal().size(), callsBefore + 1);
    expectTrace({});
}

TEST_F(SelectionReadRouting, ReadsUnderTheShortcutWithoutABundleIdentifier) {
    purpose = SelectionPurpose::shortcut;
    const auto nameless = desktop.addApplication(2, std::nullopt, std::nullopt);
    nameless.element().answers(attribute::focusedUIElement, field.element());
    desktop.bringToFront(2);
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
    desktop.leaveNothingInFront();
    desktop.systemWide().answers(attribute::focusedUIElement, field.element());
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
}

/// A frontmost browser whose focused element reports a selection.
class WebContentRouting : public SelectionReadRouting {
protected:
    WebContentRouting() {
        browser.element().answers(attribute::focusedUIElement,
                                  browser.addTextElement(u"as shown", TextRange{0, 8}).element());
        browser.onCopy(copies(u"as copied"));
        desktop.bringToFront(950);
    }

    void addBrowserMenu(bool enabled) {
        browser.addMenuBar({{u"Edit", {{.title = u"Copy", .commandCharacter = u"C", .enabled = enabled}}}})
            .item(u"Edit", u"Copy")
            .onAction(action::press, copies(u"by menu"));
    }

    SimulatedApplication browser = desktop.addApplication(950, u"org.mozilla.firefox", u"Browser");
};

TEST_F(WebContentRouting, ReturnsTheCopiedTextAndRecordsRouteTwo) {
    EXPECT_EQ(read().payload.selectedText, u"as copied");
    expectTrace({.route = 2, .keyPresses = 1, .web = 1});
    // The pause before the second search for a Copy command.
    EXPECT_EQ(desktop.now(), 50ms);
}

TEST_F(WebContentRouting, PressesTheCopyCommandForAnyPurpose) {
    addBrowserMenu(true);
    EXPECT_EQ(read().payload.selectedText, u"by menu");
    expectTrace({.route = 2, .menuPresses = 1, .web = 1});
    EXPECT_EQ(desktop.now(), 0ms);
}

TEST_F(WebContentRouting, PressesEvenADisabledCopyCommand) {
    addBrowserMenu(false);
    EXPECT_EQ(read().payload.selectedText, u"by menu");
    expectTrace({.route = 2, .menuPresses = 1, .web = 1});
}

TEST_F(WebContentRouting, FailsIfTheClipboardIsForbidden) {
    options.allowClipboardFallback = false;
    EXPECT_EQ(error(), BridgeError::clipboardFallbackDisabled());
    expectTrace({.route = 2, .error = 4, .web = 1});
}

TEST_F(WebContentRouting, CopiesAgainIfTheFirstCopySelectedNothing) {
    // The menu copies nothing within 0.2 s, which ends the first read; the second one posts the key.
    browser.addMenuBar({{u"Edit", {{.title = u"Copy", .commandCharacter = u"c"}}}});
    EXPECT_EQ(read().payload.selectedText, u"as copied");
    expectTrace({.route = 3, .error = 1, .keyPresses = 1, .menuPresses = 1, .web = 1});
    EXPECT_EQ(desktop.now(), 200ms);
}

TEST_F(WebContentRouting, CopiesFromTheApplicationOfTheFocusedElement) {
    // Frontmost when the focused element is read, not when the read begins.
    desktop.bringToFront(812);
    desktop.beforeCall(3, [this] { desktop.bringToFront(950); });
    EXPECT_EQ(read().payload.applicationName, u"Browser");
    EXPECT_EQ(read().payload.selectedText, u"as copied");
}

}  // namespace
}  // namespace lomaris
