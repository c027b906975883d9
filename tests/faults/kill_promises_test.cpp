// Checks that broken promises about a kill are detected.

#include "tests/faults/kill_promises.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lomaris::test {
namespace {

using Messages = std::vector<std::string>;

const WorldPlan& planNamed(std::string_view name) {
    const auto& plans = worldPlans();
    return *std::find_if(plans.begin(), plans.end(), [name](const WorldPlan& plan) { return plan.name == name; });
}

/// The messages of all broken promises if the tool is killed before any line, with or without a keeper.
std::set<std::string> brokenAtAnyLine(const std::string& world, Command command, Kill::Keeper keeper) {
    std::set<std::string> broken;
    Scenario scenario{.world = planNamed(world), .command = command, .kill = Kill{1, keeper}};
    for (Run run = perform(scenario); run.disturbanceWasReached; run = perform(scenario)) {
        for (const std::string& message : brokenPromisesOfAKill(scenario, run)) {
            broken.insert(message);
        }
        ++scenario.kill->number;
    }
    return broken;
}

TEST(PromisesOfAKill, AreBrokenWithoutAKeeper) {
    EXPECT_EQ(
        brokenAtAnyLine("KeyOnly", Command::replace, Kill::Keeper::isMissing),
        (std::set<std::string>{
            "the clipboard is not the user's",
            "the document is \"The quick brown fox met a brown fox\" and not \"The quick red fox met a brown fox\"",
        }));
    EXPECT_EQ(brokenAtAnyLine("KeyOnly", Command::replace, Kill::Keeper::exists), std::set<std::string>());
}

TEST(PromisesOfAKill, AreEachDetectedIfBroken) {
    const Scenario scenario{
        .world = planNamed("WebAddress"), .command = Command::replace, .kill = Kill{40, Kill::Keeper::exists}};
    const test::Run run = perform(scenario);
    ASSERT_TRUE(run.disturbanceWasReached);
    ASSERT_EQ(brokenPromisesOfAKill(scenario, run), Messages());

    test::Run spoilt = run;
    spoilt.clipboardAtEnd.pop_back();
    EXPECT_EQ(brokenPromisesOfAKill(scenario, spoilt), Messages{"the clipboard is not the user's"});
    spoilt = run;
    spoilt.isClipboardFree = false;
    EXPECT_EQ(brokenPromisesOfAKill(scenario, spoilt), Messages{"the clipboard is still in use"});
    spoilt = run;
    spoilt.targetAfter.text = u"x";
    EXPECT_EQ(brokenPromisesOfAKill(scenario, spoilt).size(), 1U);
    spoilt = run;
    spoilt.otherAfter.text = u"x";
    EXPECT_EQ(brokenPromisesOfAKill(scenario, spoilt), Messages{"the other application's document changed"});
}

}  // namespace
}  // namespace lomaris::test
