// Exclusive use of the simulated pasteboard.

#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

class SimulatedPasteboardHold : public testing::Test {
protected:
    std::unique_ptr<PasteboardHold> tryHold() { return desktop.pasteboard().tryHold(); }
    /// True if another process could use the pasteboard now.
    bool isFree() { return desktop.holdPasteboardUntil(desktop.now()); }

    SimulatedDesktop desktop;
};

TEST_F(SimulatedPasteboardHold, IsNullWhileAnotherHoldOfTheProcessExists) {
    auto first = tryHold();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(tryHold(), nullptr);
    first.reset();
    EXPECT_NE(tryHold(), nullptr);
}

TEST_F(SimulatedPasteboardHold, IsNullUntilAnotherProcessReleasesIt) {
    EXPECT_TRUE(desktop.holdPasteboardUntil(3s));
    EXPECT_FALSE(desktop.holdPasteboardUntil(4s));
    EXPECT_EQ(tryHold(), nullptr);
    desktop.scheduling().sleep(3s - 1ns);
    EXPECT_EQ(tryHold(), nullptr);
    desktop.scheduling().sleep(1ns);
    EXPECT_NE(tryHold(), nullptr);
}

TEST_F(SimulatedPasteboardHold, IsAlwaysNullIfAnotherProcessNeverReleasesIt) {
    EXPECT_TRUE(desktop.holdPasteboardUntil(Moment::max()));
    desktop.scheduling().sleep(1000000s);
    EXPECT_EQ(tryHold(), nullptr);
}

TEST_F(SimulatedPasteboardHold, ExcludesOtherProcessesUntilItIsDestroyed) {
    auto hold = tryHold();
    EXPECT_FALSE(isFree());
    hold->expectPaste(300ms, 2500ms);
    desktop.scheduling().sleep(5s);
    EXPECT_FALSE(isFree());
    EXPECT_TRUE(hold->retake());
    hold.reset();
    EXPECT_TRUE(isFree());
}

TEST_F(SimulatedPasteboardHold, BelongsToAnotherProcessIfAnActionTakesIt) {
    std::unique_ptr<PasteboardHold> others;
    desktop.at(1s, [&] { others = tryHold(); });
    desktop.scheduling().sleep(1s);
    EXPECT_NE(others, nullptr);
    EXPECT_EQ(tryHold(), nullptr);
    others.reset();
    const auto hold = tryHold();
    EXPECT_NE(hold, nullptr);
    desktop.at(2s, [&] { others = tryHold(); });
    desktop.scheduling().sleep(1s);
    EXPECT_EQ(others, nullptr);
}

TEST_F(SimulatedPasteboardHold, TakesNoTimeAndIsNotInTheJournal) {
    const auto hold = tryHold();
    hold->protect({{{"public.utf8-plain-text", "mine"}}});
    hold->expectCopy(812, 1s);
    hold->expectPaste(300ms, 2500ms);
    EXPECT_TRUE(hold->retake());
    EXPECT_EQ(tryHold(), nullptr);
    EXPECT_EQ(desktop.now(), 0s);
    EXPECT_EQ(desktop.journal(), std::vector<std::string>());
}

TEST_F(SimulatedPasteboardHold, IsReleasedWhenTheProcessEnds) {
    const auto hold = tryHold();
    desktop.kill();
    EXPECT_TRUE(isFree());
}

TEST_F(SimulatedPasteboardHold, DoesNothingInAProcessThatHasEnded) {
    desktop.endProcess();
    EXPECT_TRUE(desktop.holdPasteboardUntil(10s));
    EXPECT_NE(tryHold(), nullptr);
}

TEST_F(SimulatedPasteboardHold, DoesNothingOnceThePasteboardIsGone) {
    for (const bool hasKeeper : {false, true}) {
        auto another = std::make_unique<SimulatedDesktop>();
        if (hasKeeper) {
            another->addKeeper();
        }
        std::shared_ptr<PasteboardHold> hold = another->pasteboard().tryHold();
        another->scheduling().runOnMainQueue([hold] { hold->expectPaste(300ms, 2500ms); });
        another.reset();
        hold->protect({});
        hold->expectCopy(812, 1s);
        hold->expectPaste(300ms, 2500ms);
        EXPECT_TRUE(hold->retake());
    }
}

}  // namespace
}  // namespace lomaris
