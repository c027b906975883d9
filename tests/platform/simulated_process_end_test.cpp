// The time after the end of this process.

#include "tests/platform/simulated_process_end.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

TEST_F(SimulatedProcessEnd, PromisedDataThatWasNotProvidedIsLost) {
    const auto provider = promiseText(desktop);
    provider->provides = false;
    desktop.terminate(15);
    EXPECT_EQ(signalOf([this] { countChanges(); }), 15);
    provider->provides = true;
    bool isAnswered = false;
    desktop.readPasteboardAsAnotherProgram(stringType, [&](const std::optional<Bytes>& bytes) {
        isAnswered = true;
        EXPECT_EQ(bytes, std::nullopt);
    });
    EXPECT_TRUE(isAnswered);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), std::nullopt);
    EXPECT_EQ(provider->asked, 1);
}

TEST_F(SimulatedProcessEnd, CallsAfterTheEndDoNothingAndAreNotRecorded) {
    SimulatedTextElement text =
        desktop.addApplication(812, u"com.example.notes", u"Notes").addTextElement(u"a", {0, 1});
    desktop.bringToFront(812);
    desktop.userCopies(u"theirs");
    const auto items = desktop.pasteboard().items();
    const auto stroke = desktop.events().createKeyStroke({9, commandFlag});
    const auto condition = scheduling.makeCondition();
    const Lines before = desktop.journal();
    const std::vector<StandingItem> contents = desktop.pasteboardContents();
    desktop.terminate(15);
    ASSERT_EQ(signalOf([this] { countChanges(); }), 15);

    Accessibility& accessibility = desktop.accessibility();
    const AttributeAnswer failed = answer(AXError::failure);
    const std::vector<Element> elements{text.element(), text.element()};
    const std::vector<std::string_view> names{attribute::value, attribute::role};
    EXPECT_FALSE(accessibility.isProcessTrusted(TrustPrompt::none));
    EXPECT_EQ(accessibility.copyAttribute(text.element(), attribute::value), failed);
    EXPECT_EQ(accessibility.copyElementAttribute(text.element(), attribute::value).error, AXError::failure);
    EXPECT_EQ(accessibility.copyAttributes(elements, names),
              (std::vector<std::vector<AttributeAnswer>>{{failed, failed}, {failed, failed}}));
    EXPECT_EQ(accessibility.setAttribute(text.element(), attribute::value, Text(u"b")), AXError::failure);
    EXPECT_EQ(accessibility.isAttributeSettable(text.element(), attribute::value),
              (SettableAnswer{AXError::failure, false}));
    EXPECT_EQ(accessibility.areAttributesSettable(elements, attribute::value).size(), 2U);
    EXPECT_EQ(accessibility.performAction(text.element(), action::press), AXError::failure);
    EXPECT_EQ(accessibility.processIdentifier(text.element()), std::nullopt);
    EXPECT_FALSE(accessibility.containsIgnoringCase(u"a", u"a"));

    EXPECT_TRUE(desktop.pasteboard().items().empty());
    EXPECT_EQ(items[0]->types(), std::vector<PasteboardType>{});
    EXPECT_EQ(items[0]->data(stringType), std::nullopt);
    EXPECT_EQ(desktop.pasteboard().string(), std::nullopt);
    EXPECT_EQ(desktop.pasteboard().changeCount(), 0);
    desktop.pasteboard().clearContents();
    EXPECT_FALSE(desktop.pasteboard().writeItems({}));

    EXPECT_FALSE(desktop.events().preflightPostEventAccess());
    EXPECT_FALSE(desktop.events().requestPostEventAccess());
    EXPECT_EQ(desktop.events().createKeyStroke({9, commandFlag}), nullptr);
    desktop.events().postToSession(*stroke);
    desktop.events().postToProcess(*stroke, 812);
    EXPECT_EQ(desktop.events().inputCounter(InputEventType::keyDown), 0U);
    EXPECT_EQ(desktop.workspace().frontmostApplication(), std::nullopt);
    EXPECT_EQ(desktop.workspace().runningApplication(812), std::nullopt);

    bool ran = false;
    scheduling.runInBackground([&ran] { ran = true; });
    scheduling.runOnMainQueue([&ran] { ran = true; });
    scheduling.onTermination([&ran] { ran = true; }).reset();
    scheduling.runLoopSlice(milliseconds(10));
    scheduling.sleep(milliseconds(10));
    {
        const std::lock_guard guard(*condition);
        condition->broadcast();
        condition->waitUntil(milliseconds(30));
    }
    EXPECT_FALSE(ran);
    EXPECT_EQ(desktop.now(), milliseconds(30)) << "waits take their time";
    EXPECT_EQ(text.text(), u"a");
    EXPECT_EQ(desktop.postedKeyStrokes(), std::vector<PostedKeyStroke>{});
    EXPECT_EQ(desktop.pasteboardContents(), contents);
    EXPECT_EQ(desktop.journal(), before);
}

TEST_F(SimulatedProcessEnd, CallsOfUnwindingCodeDoNothing) {
    struct Restore {
        Pasteboard& pasteboard;
        ~Restore() { pasteboard.clearContents(); }
    };
    desktop.userCopies(u"theirs");
    desktop.at(milliseconds(10), tellToEnd());
    EXPECT_EQ(signalOf([this] {
                  const Restore restore{desktop.pasteboard()};
                  scheduling.sleep(milliseconds(50));
              }),
              15);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"theirs"));
    EXPECT_EQ(desktop.journal(), (Lines{"0.000000000 sleep(0.050000000)"}));
}

TEST_F(SimulatedProcessEnd, BackgroundBlocksContinueWithoutEffect) {
    bool isFinished = false;
    scheduling.runInBackground([&] {
        scheduling.sleep(milliseconds(300));
        desktop.pasteboard().clearContents();
        isFinished = true;
    });
    desktop.userCopies(u"theirs");
    desktop.at(milliseconds(100), tellToEnd());
    EXPECT_EQ(signalOf([this] { scheduling.runLoopSlice(milliseconds(200)); }), 15);
    EXPECT_FALSE(isFinished);
    desktop.endProcess();
    EXPECT_TRUE(isFinished);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), Text(u"theirs"));
    EXPECT_EQ(desktop.journal().back(), "0.000000000 [background 1] sleep(0.300000000)");
}

TEST_F(SimulatedProcessEnd, ANormalEndDoesNotStopTheUser) {
    std::vector<std::pair<int, Moment>> steps;
    const auto note = [&](int number) { return [&, number] { steps.emplace_back(number, desktop.now()); }; };
    desktop.at(milliseconds(50), note(1));
    desktop.at(milliseconds(400), note(2));
    scheduling.runOnMainQueue(note(3));
    scheduling.runInBackground(note(4));
    desktop.endProcess();
    EXPECT_EQ(steps, (std::vector<std::pair<int, Moment>>{{1, milliseconds(50)}, {2, milliseconds(400)}}));
    EXPECT_EQ(desktop.endedBySignal(), std::nullopt);
    countChanges();
    EXPECT_EQ(desktop.journal(),
              (Lines{"0.000000000 runOnMainQueue()", "0.000000000 runInBackground() -> background 1"}));
    desktop.endProcess();
    desktop.terminate(15);
    EXPECT_EQ(desktop.endedBySignal(), std::nullopt) << "who has ended cannot be told to";
}

TEST_F(SimulatedProcessEnd, ANormalEndHonorsADeferredSignal) {
    int cleanUps = 0;
    const auto guard = scheduling.onTermination([&cleanUps] { ++cleanUps; });
    desktop.terminate(15);
    desktop.endProcess();
    EXPECT_EQ(cleanUps, 1);
    EXPECT_EQ(desktop.endedBySignal(), 15);
    EXPECT_EQ(signalOf([this] { countChanges(); }), std::nullopt);
}

}  // namespace
}  // namespace lomaris::test
