#include "tests/faults/sweep.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lomaris::test {
namespace {

class EveryCommand : public testing::TestWithParam<WorldPlan> {
protected:
    Sweep sweep;
};

TEST_P(EveryCommand, SucceedsWithoutFaults) {
    for (const Command command : commands()) {
        const Scenario scenario{.world = GetParam(), .command = command};
        sweep.run(scenario);
        const bool needsACopy = isRead(command) || isReplacement(command);
        const bool fails = needsACopy && GetParam().copyKey == CopyKey::doesNothing;
        EXPECT_EQ(perform(scenario).status, fails ? 1 : 0) << describe(scenario);
    }
}

TEST_P(EveryCommand, KeepsItsPromisesIfAnyCallFails) {
    for (const Command command : commands()) {
        sweep.runFaults({.world = GetParam(), .command = command});
    }
}

TEST_P(EveryCommand, KeepsItsPromisesIfTheUserActs) {
    for (const Command command : commands()) {
        sweep.runDisturbances({.world = GetParam(), .command = command});
    }
}

TEST_P(EveryCommand, KeepsItsPromisesIfTheClipboardIsInUse) {
    for (const Command command : commands()) {
        sweep.runContentions({.world = GetParam(), .command = command});
    }
}

TEST_P(EveryCommand, KeepsItsPromisesIfKilledAnywhere) {
    for (const Command command : commands()) {
        sweep.runKills({.world = GetParam(), .command = command});
    }
}

std::string nameOfPlan(const testing::TestParamInfo<WorldPlan>& plan) { return plan.param.name; }

INSTANTIATE_TEST_SUITE_P(On, EveryCommand, testing::ValuesIn(worldPlans()), nameOfPlan);

/// The commands that write. If nothing can be copied, none of them writes.
class EveryReplacement : public EveryCommand {};

TEST_P(EveryReplacement, KeepsItsPromisesIfACallFailsAndTheUserActs) {
    for (const Command command : {Command::replace, Command::replaceIfCurrent}) {
        sweep.runPairs({.world = GetParam(), .command = command});
    }
}

std::vector<WorldPlan> plansWithSomethingToCopy() {
    std::vector<WorldPlan> plans;
    for (const WorldPlan& plan : worldPlans()) {
        if (plan.copyKey != CopyKey::doesNothing) {
            plans.push_back(plan);
        }
    }
    return plans;
}

INSTANTIATE_TEST_SUITE_P(On, EveryReplacement, testing::ValuesIn(plansWithSomethingToCopy()), nameOfPlan);

}  // namespace
}  // namespace lomaris::test
