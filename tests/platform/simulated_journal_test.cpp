// The same scenario produces the same journal, with everything in it that could change the order.

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

const PasteboardType stringType{pasteboard_type::string};

/// A provider that supplies a text and records under its condition that it was read.
class ReadSignal final : public PasteboardDataProvider {
public:
    explicit ReadSignal(Scheduling& scheduling) : condition(scheduling.makeCondition()) {}

    void provideData(PromisedItem& item, const PasteboardType& type) override {
        item.setData("staged", type);
        const std::lock_guard guard(*condition);
        isRead = true;
        condition->broadcast();
    }

    std::shared_ptr<Condition> condition;
    bool isRead = false;
};

/// Stages a text and posts a key. The target reads the text after 120 ms; a background block waits for that and clears
/// the pasteboard from the main queue, while the main thread runs its run loop.
Lines stageAndRelease() {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    Pasteboard& pasteboard = desktop.pasteboard();
    const auto signal = std::make_shared<ReadSignal>(scheduling);
    pasteboard.clearContents();
    std::vector<NewPasteboardItem> items(1);
    items[0].promisedTypes.push_back(stringType);
    items[0].provider = signal;
    static_cast<void>(pasteboard.writeItems(std::move(items)));
    desktop.events().postToSession(*desktop.events().createKeyStroke({9, commandFlag}));
    desktop.at(milliseconds(120),
               [&desktop] { desktop.readPasteboardAsAnotherProgram(stringType, [](const std::optional<Bytes>&) {}); });
    scheduling.runInBackground([&scheduling, &pasteboard, signal] {
        const Moment start = scheduling.now();
        {
            const std::lock_guard guard(*signal->condition);
            while (!signal->isRead && scheduling.now() < start + milliseconds(2500)) {
                signal->condition->waitUntil(start + milliseconds(2500));
            }
        }
        scheduling.sleep(start + milliseconds(300) - scheduling.now());
        scheduling.runOnMainQueue([&pasteboard] { pasteboard.clearContents(); });
    });
    for (int slice = 0; slice < 4; ++slice) {
        scheduling.runLoopSlice(milliseconds(100));
    }
    return desktop.journal();
}

TEST(SimulatedJournal, RecordsTheReleaseOfAStagedTextCallByCall) {
    EXPECT_EQ(stageAndRelease(), (Lines{
                                     "0.000000000 makeCondition() -> condition 1",
                                     "0.000000000 clearContents()",
                                     "0.000000000 writeItems([{public.utf8-plain-text: promised}]) -> true",
                                     "0.000000000 createKeyStroke(key 9, flags 0x100000) -> events",
                                     "0.000000000 postToSession(key 9, flags 0x100000)",
                                     "0.000000000 runInBackground() -> background 1",
                                     "0.000000000 runLoopSlice(0.100000000)",
                                     "0.000000000 [background 1] waitUntil(condition 1, 2.500000000)",
                                     "0.100000000 runLoopSlice(0.100000000)",
                                     "0.120000000 broadcast(condition 1)",
                                     "0.120000000 [background 1] sleep(0.180000000)",
                                     "0.200000000 runLoopSlice(0.100000000)",
                                     "0.300000000 [background 1] runOnMainQueue()",
                                     "0.300000000 clearContents()",
                                     "0.300000000 runLoopSlice(0.100000000)",
                                 }));
}

/// Many blocks with different delays, with latency, contention for a lock, broadcasts and actions of the user.
Lines crowd() {
    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", {10, 9});
    desktop.setLatency(std::chrono::microseconds(700));
    desktop.at(milliseconds(11), [&desktop] { desktop.userTypes(); });
    desktop.at(milliseconds(12), [&desktop] { desktop.userCopies(u"copied"); });
    desktop.beforeCall(40, [&text] { text.select({0, 3}); });
    Scheduling& scheduling = desktop.scheduling();
    const auto condition = scheduling.makeCondition();
    for (int block = 0; block < 6; ++block) {
        scheduling.runInBackground([&scheduling, condition, block] {
            for (int turn = 1; turn <= 10; ++turn) {
                const std::lock_guard guard(*condition);
                if ((turn + block) % 3 == 0) {
                    condition->broadcast();
                }
                condition->waitUntil(scheduling.now() + milliseconds(1 + (block * turn) % 5));
                scheduling.runOnMainQueue([] {});
                scheduling.sleep(Duration(100 * block));
            }
        });
    }
    for (int turn = 0; turn < 20; ++turn) {
        static_cast<void>(desktop.accessibility().copyAttribute(text.element(), attribute::selectedText));
        static_cast<void>(desktop.events().inputCounter(InputEventType::keyDown));
        static_cast<void>(desktop.pasteboard().string());
        scheduling.runLoopSlice(milliseconds(2));
    }
    return desktop.journal();
}

TEST(SimulatedJournal, IsTheSameForTheSameScenario) {
    const Lines first = crowd();
    EXPECT_GT(first.size(), 200U);
    for (int run = 0; run < 20; ++run) {
        ASSERT_EQ(crowd(), first) << "run " << run;
    }
}

TEST(SimulatedJournal, HasTheLineOfACallDuringTheCall) {
    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, std::nullopt, std::nullopt);
    desktop.setLatency(milliseconds(5));
    Lines during;
    desktop.at(milliseconds(3), [&] { during = desktop.journal(); });
    static_cast<void>(desktop.accessibility().copyAttribute(notes.element().element(), attribute::role));
    EXPECT_EQ(during, (Lines{"0.000000000 copyAttribute(812, AXRole)"}));
    EXPECT_EQ(desktop.journal(), (Lines{"0.000000000 copyAttribute(812, AXRole) -> error -25205"}));
}

TEST(SimulatedJournal, DoesNotMarkCallsAsTheUsersAfterAFailedAction) {
    SimulatedDesktop desktop;
    desktop.beforeCall(1, [] { throw std::runtime_error("failed"); });
    EXPECT_THROW(static_cast<void>(desktop.pasteboard().changeCount()), std::runtime_error);
    desktop.scheduling().sleep(std::chrono::milliseconds(1));
    EXPECT_EQ(desktop.journal(), (Lines{"0.000000000 sleep(0.001000000)"}));
}

}  // namespace
}  // namespace lomaris::test
