#pragma once

#include "tests/faults/sweep_run.h"

#include <cstddef>

namespace lomaris::test {

/// Runs scenarios, each twice to check that both runs are the same, and fails the test for each broken promise. The
/// destructor prints the number of runs, and fails the test if there were none.
class Sweep {
public:
    Sweep() = default;
    Sweep(const Sweep&) = delete;
    Sweep& operator=(const Sweep&) = delete;
    ~Sweep();

    enum class Course { goesOn, ranOut };

    /// Runs one scenario. Returns `ranOut` if the command made too few calls for the disturbance or, without a
    /// disturbance, for the fault. A run that did not reach the fault is neither checked nor counted.
    Course run(const Scenario& scenario);

    /// Every possible fault.
    void runFaults(Scenario scenario);
    /// Every action of the user, before every call, in addition to the fault of the scenario, if any.
    void runDisturbances(Scenario scenario);
    /// Another process uses the clipboard, from before the command or from any of its calls on, for a while or for
    /// good.
    void runContentions(Scenario scenario);
    /// The tool is killed before every line of its journal, on a desktop with a keeper.
    void runKills(Scenario scenario);
    /// Every single call without a reply or with a lost reply, combined with every action of the user. Each scenario
    /// runs only once, because there are so many.
    void runPairs(Scenario scenario);

private:
    enum class Repeats { yes, no };

    Course run(const Scenario& scenario, Repeats repeats);
    void runDisturbances(Scenario scenario, Repeats repeats);

    std::size_t runs_ = 0;
    /// Limits the output to what is needed to see the cause.
    int messagesLeft_ = 3;
};

}  // namespace lomaris::test
