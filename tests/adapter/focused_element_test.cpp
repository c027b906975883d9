#include "accessibility/adapter/focused_element.h"

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/journal.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

class FocusedElementResolution : public testing::Test {
protected:
    FocusedElementResolution() { desktop.bringToFront(812); }

    std::optional<BridgeError> error() {
        return test::thrownBy([this] { return focusedElement(desktop); });
    }

    /// The application returns `code` this many times and then the field.
    void failFirst(std::size_t times, AXError code) {
        std::vector<AttributeAnswer> answers(times, answer(code));
        answers.push_back(answer(field.element()));
        notes.element().answersInTurn(attribute::focusedUIElement, answers);
    }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedElement field = notes.addElement();
};

TEST_F(FocusedElementResolution, ReturnsTheApplicationsFocusedElement) {
    failFirst(0, AXError::success);
    const auto focused = focusedElement(desktop);
    EXPECT_EQ(focused.element, field.element());
    ASSERT_TRUE(focused.application);
    EXPECT_EQ(*focused.application, (RunningApplication{812, u"com.example.notes", u"Notes"}));
    EXPECT_EQ(desktop.now(), 0ns);
}

TEST_F(FocusedElementResolution, RetriesThreeTimesWithoutWalkingTheTree) {
    failFirst(3, AXError::cannotComplete);
    EXPECT_EQ(focusedElement(desktop).element, field.element());
    EXPECT_EQ(desktop.now(), 300ms);
    EXPECT_EQ(test::callsWith(desktop, "AXFocusedUIElement"), 4U);
    EXPECT_EQ(test::callsWith(desktop, "AXFocusedWindow"), 0U);
}

TEST_F(FocusedElementResolution, UsesTheFifthReplyAfterFourPauses) {
    failFirst(4, AXError::cannotComplete);
    EXPECT_EQ(focusedElement(desktop).element, field.element());
    EXPECT_EQ(desktop.now(), 400ms);
    EXPECT_EQ(test::callsWith(desktop, "AXFocusedUIElement"), 5U);
}

TEST_F(FocusedElementResolution, FailsAfterFiveAttempts) {
    failFirst(5, AXError::cannotComplete);
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::cannotComplete, u"Notes"));
    EXPECT_EQ(desktop.now(), 400ms);
}

TEST_F(FocusedElementResolution, FailsWithTheCodeOfAnotherErrorAfterARetry) {
    notes.element().answersInTurn(attribute::focusedUIElement,
                                  {answer(AXError::cannotComplete), answer(AXError::noValue)});
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::noValue, u"Notes"));
    EXPECT_EQ(desktop.now(), 100ms);
}

TEST_F(FocusedElementResolution, DoesNotRetryAnyOtherError) {
    notes.element().answers(attribute::focusedUIElement, AXError::apiDisabled);
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::apiDisabled, u"Notes"));
    EXPECT_EQ(desktop.now(), 0ns);
}

TEST_F(FocusedElementResolution, FailsWithCodeZeroOnANullValue) {
    notes.element().answers(attribute::focusedUIElement, NullValue{});
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::success, u"Notes"));
    EXPECT_EQ(desktop.now(), 0ns);
}

TEST_F(FocusedElementResolution, ReportsTheApplicationsCodeRatherThanTheSystems) {
    notes.element().answers(attribute::focusedUIElement, AXError::noValue);
    desktop.systemWide().answers(attribute::focusedUIElement, AXError::cannotComplete);
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::noValue, u"Notes"));
    EXPECT_EQ(desktop.now(), 400ms);
}

TEST_F(FocusedElementResolution, WaitsAtMost800MillisecondsInAll) {
    notes.element().answers(attribute::focusedUIElement, AXError::cannotComplete);
    desktop.systemWide().answers(attribute::focusedUIElement, AXError::cannotComplete);
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::cannotComplete, u"Notes"));
    EXPECT_EQ(desktop.now(), 800ms);
    EXPECT_EQ(test::callsWith(desktop, "AXFocusedUIElement"), 10U);
}

TEST_F(FocusedElementResolution, LeavesOutAMissingApplicationName) {
    desktop.addApplication(900, u"com.example.nameless", std::nullopt);
    desktop.bringToFront(900);
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::attributeUnsupported, std::nullopt));
}

TEST_F(FocusedElementResolution, WalksTheTreeBeforeReadingTheSystemWideElement) {
    notes.element().answers(attribute::focusedUIElement, AXError::noValue);
    notes.element().answers(attribute::focusedWindow, field.element());
    field.answers(attribute::selectedText, Text(u"brown"));
    const auto focused = focusedElement(desktop);
    EXPECT_EQ(focused.element, field.element());
    EXPECT_EQ(focused.application->processIdentifier, 812);
    EXPECT_EQ(test::callsWith(desktop, "AXFocusedUIElement"), 1U);
}

TEST_F(FocusedElementResolution, ReadsTheSystemWideElementIfTheWalkFindsNothing) {
    notes.element().answers(attribute::focusedUIElement, AXError::noValue);
    desktop.systemWide().answersInTurn(attribute::focusedUIElement,
                                       {answer(AXError::cannotComplete), answer(field.element())});
    const auto focused = focusedElement(desktop);
    EXPECT_EQ(focused.element, field.element());
    ASSERT_TRUE(focused.application);
    EXPECT_EQ(focused.application->processIdentifier, 812);
    EXPECT_EQ(desktop.now(), 100ms);
}

TEST_F(FocusedElementResolution, ReadsTheSystemWideElementIfNothingIsFrontmost) {
    desktop.leaveNothingInFront();
    desktop.systemWide().answers(attribute::focusedUIElement, field.element());
    const auto focused = focusedElement(desktop);
    EXPECT_EQ(focused.element, field.element());
    EXPECT_EQ(focused.application, std::nullopt);
}

TEST_F(FocusedElementResolution, FailsWithTheSystemsCodeIfNothingIsFrontmost) {
    desktop.leaveNothingInFront();
    desktop.systemWide().answersInTurn(attribute::focusedUIElement,
                                       {answer(AXError::cannotComplete), answer(AXError::noValue)});
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::noValue, std::nullopt));
    EXPECT_EQ(desktop.now(), 100ms);
    desktop.systemWide().answers(attribute::focusedUIElement, NullValue{});
    EXPECT_EQ(error(), BridgeError::focusedElementUnavailable(AXError::success, std::nullopt));
}

TEST_F(FocusedElementResolution, ReturnsAValueOfAnotherTypeAsAnElement) {
    notes.element().answers(attribute::focusedUIElement, Text(u"no element"));
    const Element element = focusedElement(desktop).element;
    EXPECT_EQ(desktop.accessibility().copyAttribute(element, attribute::selectedText).error, AXError::illegalArgument);
}

TEST_F(FocusedElementResolution, MakesTheSameCallsEachTime) {
    const auto journalOfOneRun = [] {
        SimulatedDesktop fresh;
        const auto application = fresh.addApplication(812, u"com.example.notes", u"Notes");
        application.element().answers(attribute::focusedUIElement, AXError::cannotComplete);
        fresh.bringToFront(812);
        EXPECT_TRUE(test::thrownBy([&] { return focusedElement(fresh); }));
        return fresh.journal();
    };
    EXPECT_EQ(journalOfOneRun(), journalOfOneRun());
}

}  // namespace
}  // namespace lomaris
