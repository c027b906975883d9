#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/model/capture_trace.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace lomaris {
namespace {

using Entries = std::vector<SelectionCaptureTrace::Entry>;

class SelectionReadRouting : public testing::Test {
protected:
    SelectionReadRouting() {
        desktop.bringToFront(812);
        notes.element().answers(attribute::focusedUIElement, field.element());
        SelectionCaptureTrace::shared().reset();
    }

    SelectionSnapshot read() { return adapter.readSelection(options); }
    std::optional<BridgeError> error() {
        return test::thrownBy([this] { return read(); });
    }

    static Entries traceWith(std::int64_t route, std::int64_t error) {
        return {{"route", route},   {"error", error},    {"copy_item", 0},
                {"key_presses", 0}, {"menu_presses", 0}, {"web", 0}};
    }
    static Entries trace() { return SelectionCaptureTrace::shared().snapshot(); }

    SimulatedDesktop desktop;
    MacOSAccessibilityAdapter adapter{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement field = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    SelectionReadOptions options{
        .beforeLimit = 500, .afterLimit = 500, .allowClipboardFallback = true, .purpose = SelectionPurpose::standard};
};

TEST_F(SelectionReadRouting, RecordsRouteOneAndNoErrorForADirectRead) {
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
    EXPECT_EQ(trace(), traceWith(1, 0));
}

TEST_F(SelectionReadRouting, RecordsErrorOneWhereNothingIsSelected) {
    field.select({3, 0});
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    EXPECT_EQ(trace(), traceWith(0, 1));
}

TEST_F(SelectionReadRouting, RecordsErrorTwoWhereTheSelectedTextIsUnavailable) {
    auto unreadable = notes.addElement();
    notes.element().answers(attribute::focusedUIElement, unreadable.element());
    EXPECT_EQ(error(), BridgeError::selectedTextUnavailable(AXError::attributeUnsupported));
    EXPECT_EQ(trace(), traceWith(0, 2));
}

TEST_F(SelectionReadRouting, RecordsErrorThreeWhereTheFocusedElementIsUnavailable) {
    notes.element().answers(attribute::focusedUIElement, AXError::noValue);
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::noValue, u"Notes"));
    EXPECT_EQ(trace(), traceWith(0, 3));
}

TEST_F(SelectionReadRouting, RecordsErrorFourWithoutPermission) {
    desktop.setTrusted(false);
    EXPECT_EQ(error(), BridgeError::accessibilityPermissionRequired());
    EXPECT_EQ(trace(), traceWith(0, 4));
}

TEST_F(SelectionReadRouting, RecordsErrorFourBesideRouteOneWhereTheClipboardIsForbidden) {
    field.answersSettable(attribute::selectedText, {AXError::success, false});
    options.allowClipboardFallback = false;
    EXPECT_EQ(error(), BridgeError::clipboardFallbackDisabled());
    EXPECT_EQ(trace(), traceWith(1, 4));
}

TEST_F(SelectionReadRouting, RefusesAFileManagerUnderTheShortcutWithoutReadingAnything) {
    const auto finder = desktop.addApplication(1, u"com.apple.finder", u"Finder");
    finder.element().answers(attribute::focusedUIElement,
                             finder.addTextElement(u"a file name", TextRange{0, 11}).element());
    desktop.bringToFront(1);
    EXPECT_EQ(read().payload.selectedText, u"a file name");
    options.purpose = SelectionPurpose::guardedReplacement;
    EXPECT_EQ(read().payload.selectedText, u"a file name");

    SelectionCaptureTrace::shared().reset();
    const auto callsBefore = desktop.journal().size();
    options.purpose = SelectionPurpose::shortcut;
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    EXPECT_EQ(desktop.journal().size(), callsBefore + 1);
    EXPECT_EQ(trace(), traceWith(0, 0));
}

TEST_F(SelectionReadRouting, ReadsUnderTheShortcutWhereTheApplicationHasNoIdentifierOrNoneIsInFront) {
    options.purpose = SelectionPurpose::shortcut;
    const auto nameless = desktop.addApplication(2, std::nullopt, std::nullopt);
    nameless.element().answers(attribute::focusedUIElement, field.element());
    desktop.bringToFront(2);
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
    desktop.leaveNothingInFront();
    desktop.systemWide().answers(attribute::focusedUIElement, field.element());
    EXPECT_EQ(read().payload.selectedText, u"brown fox");
}

}  // namespace
}  // namespace lomaris
