#pragma once

#include "tests/faults/sweep_run.h"

#include <cstddef>

namespace lomaris::test {

/// Runs scenarios, each twice for its course to be the same, and fails the test for every broken promise. At the end it
/// prints how many runs it made, and fails the test if there were none.
class Sweep {
public:
    Sweep() = default;
    Sweep(const Sweep&) = delete;
    Sweep& operator=(const Sweep&) = delete;
    ~Sweep();

    enum class Course { goesOn, ranOut };

    /// Runs one scenario; `ranOut` where the command ended before the disturbance had its turn, or, without one, before
    /// the fault had. A run in which only the fault had no turn is not judged and not counted.
    Course run(const Scenario& scenario);

    /// Every fault there is.
    void runFaults(Scenario scenario);
    /// Everything that the user can do, before every call; beside the fault of the scenario, if it has one.
    void runDisturbances(Scenario scenario);
    /// Another process uses the clipboard from before the command or any call of it, for a while or for good.
    void runContentions(Scenario scenario);
    /// The tool is killed before every line of its journal, on a desktop with a keeper.
    void runKills(Scenario scenario);
    /// Every call that fails alone because nobody answers or the answer is lost, together with everything that the user
    /// can do. Scenarios are run once here, as there are so many.
    void runPairs(Scenario scenario);

private:
    enum class Repeats { yes, no };

    Course run(const Scenario& scenario, Repeats repeats);
    void runDisturbances(Scenario scenario, Repeats repeats);

    std::size_t runs_ = 0;
    /// Enough to see what is wrong.
    int messagesLeft_ = 3;
};

}  // namespace lomaris::test
