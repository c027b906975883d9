#include "tests/faults/fault_platform.h"

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

/// Notes is frontmost with "brown fox" selected, the clipboard is empty, and the happenings are recorded.
class FaultyPlatform : public testing::Test {
protected:
    FaultyPlatform() {
        desktop.bringToFront(812);
        text.answersAction(action::raise, AXError::success);
    }

    CallGate gateWith(std::optional<Fault> fault, std::optional<Interruption> interruption = std::nullopt) {
        return {happenings, [](Happening&) {}, fault, std::move(interruption)};
    }

    /// The codes of three consecutive copies of the selected text.
    std::vector<AXError> copyThreeTimes(const Fault& fault) {
        CallGate gate = gateWith(fault);
        FaultPlatform platform(desktop, gate);
        std::vector<AXError> codes;
        for (int copy = 0; copy < 3; ++copy) {
            codes.push_back(platform.accessibility().copyAttribute(text.element(), attribute::selectedText).error);
        }
        return codes;
    }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    Happenings happenings;
};

using Codes = std::vector<AXError>;

TEST_F(FaultyPlatform, FailsTheNumberedCallOnceOrFromThenOn) {
    EXPECT_EQ(copyThreeTimes({Failure::noAnswer, Persistence::once, 2}),
              (Codes{AXError::success, AXError::cannotComplete, AXError::success}));
    EXPECT_EQ(copyThreeTimes({Failure::elementGone, Persistence::fromThenOn, 2}),
              (Codes{AXError::success, AXError::invalidUIElement, AXError::invalidUIElement}));
    EXPECT_EQ(copyThreeTimes({Failure::answerLost, Persistence::fromThenOn, 1}),
              (Codes{AXError::success, AXError::success, AXError::success}));
}

TEST_F(FaultyPlatform, ReturnsNoValueFromASuccessfulCopy) {
    CallGate gate = gateWith(Fault{Failure::noValue, Persistence::once, 1});
    FaultPlatform platform(desktop, gate);
    EXPECT_EQ(platform.accessibility().copyAttribute(text.element(), attribute::value),
              (AttributeAnswer{AXError::success, NullValue{}}));
    EXPECT_EQ(desktop.journal(), std::vector<std::string>());
}

TEST_F(FaultyPlatform, WritesEvenIfTheReplyIsLost) {
    CallGate gate = gateWith(Fault{Failure::answerLost, Persistence::once, 1});
    FaultPlatform platform(desktop, gate);
    EXPECT_EQ(platform.accessibility().setAttribute(text.element(), attribute::selectedText, u"red fox"),
              AXError::cannotComplete);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(FaultyPlatform, RefusesWithoutEffect) {
    CallGate gate = gateWith(Fault{Failure::noAnswer, Persistence::fromThenOn, 1});
    FaultPlatform platform(desktop, gate);
    EXPECT_EQ(platform.accessibility().setAttribute(text.element(), attribute::selectedText, u"red fox"),
              AXError::cannotComplete);
    EXPECT_EQ(platform.accessibility().performAction(text.element(), action::raise), AXError::cannotComplete);
    EXPECT_FALSE(platform.accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_FALSE(platform.workspace().frontmostApplication());
    EXPECT_FALSE(platform.events().createKeyStroke({.keyCode = 8, .flags = commandFlag}));
    EXPECT_FALSE(platform.pasteboard().writeItems({}));
    EXPECT_EQ(text.text(), u"The quick brown fox");
    EXPECT_EQ(desktop.journal(), std::vector<std::string>());
}

TEST_F(FaultyPlatform, FailsAWholeBatch) {
    CallGate gate = gateWith(Fault{Failure::elementGone, Persistence::once, 1});
    FaultPlatform platform(desktop, gate);
    const std::vector<Element> elements(2, text.element());
    const std::vector<std::string_view> attributes = {attribute::value, attribute::role, attribute::focused};
    const AttributeAnswer gone{AXError::invalidUIElement, NullValue{}};
    EXPECT_EQ(platform.accessibility().copyAttributes(elements, attributes), std::vector(2, std::vector(3, gone)));
}

TEST_F(FaultyPlatform, CountsOnlyCallsThatCanFailInThisWay) {
    CallGate gate = gateWith(Fault{Failure::noAnswer, Persistence::once, 2});
    FaultPlatform platform(desktop, gate);
    EXPECT_TRUE(platform.workspace().frontmostApplication());
    static_cast<void>(platform.accessibility().applicationElement(812));
    platform.pasteboard().clearContents();
    EXPECT_FALSE(gate.wasFaultReached());
    EXPECT_FALSE(platform.workspace().frontmostApplication());
    EXPECT_TRUE(gate.wasFaultReached());
}

TEST_F(FaultyPlatform, InterruptsBeforeTheNumberedCall) {
    std::size_t callsBefore = 0;
    CallGate gate = gateWith(std::nullopt, Interruption{2, [&] { callsBefore = desktop.journal().size(); }});
    FaultPlatform platform(desktop, gate);
    static_cast<void>(platform.accessibility().applicationElement(812));
    EXPECT_FALSE(gate.wasInterrupted());
    static_cast<void>(platform.accessibility().applicationElement(812));
    EXPECT_TRUE(gate.wasInterrupted());
    EXPECT_EQ(callsBefore, 1U);
    EXPECT_EQ(desktop.journal().size(), 2U);
}

TEST_F(FaultyPlatform, RecordsWhatThePasteboardReturned) {
    desktop.userCopies(u"mine");
    CallGate gate = gateWith(std::nullopt);
    FaultPlatform platform(desktop, gate);
    for (const auto& item : platform.pasteboard().items()) {
        for (const auto& type : item->types()) {
            static_cast<void>(item->data(type));
        }
    }
    EXPECT_EQ(platform.told(), std::vector<ToldItems>{desktop.pasteboardContents()});
}

}  // namespace
}  // namespace lomaris::test
