#include "tests/faults/sweep.h"

#include "tests/faults/kill_promises.h"
#include "tests/faults/promises.h"

#include <gtest/gtest.h>

#include <chrono>
#include <iostream>
#include <utility>

namespace lomaris::test {
namespace {

/// Calls `runWith` for the fault with each number, until the command makes too few calls to reach it.
template <typename RunWith>
void forEveryNumber(Failure failure, Persistence persistence, const RunWith& runWith) {
    Fault fault{.failure = failure, .persistence = persistence, .number = 1};
    while (runWith(fault) == Sweep::Course::goesOn) {
        ++fault.number;
    }
}

bool isSameOutcome(const Run& first, const Run& second) {
    return first.status == second.status && first.output == second.output && first.error == second.error &&
           first.clipboardAfter == second.clipboardAfter && first.clipboardAtEnd == second.clipboardAtEnd &&
           first.targetAfter == second.targetAfter && first.otherAfter == second.otherAfter;
}

bool isSameCourse(const Run& first, const Run& second) {
    return isSameOutcome(first, second) && first.journal == second.journal && first.elapsed == second.elapsed;
}

}  // namespace

Sweep::~Sweep() {
    EXPECT_GT(runs_, 0U);
    std::cout << runs_ << " runs\n";
}

Sweep::Course Sweep::run(const Scenario& scenario) { return run(scenario, Repeats::yes); }

Sweep::Course Sweep::run(const Scenario& scenario, Repeats repeats) {
    const Run first = perform(scenario);
    if (!first.disturbanceWasReached) {
        return Course::ranOut;
    }
    if (!first.faultWasReached) {
        // An early action of the user may end the command before the fault; a later one may not.
        return scenario.disturbance ? Course::goesOn : Course::ranOut;
    }
    ++runs_;
    auto broken = scenario.kill ? brokenPromisesOfAKill(scenario, first) : brokenPromises(scenario, first);
    if (repeats == Repeats::yes) {
        ++runs_;
        if (!isSameCourse(first, perform(scenario))) {
            broken.emplace_back("the same scenario takes another course the second time");
        }
    }
    for (const std::string& message : broken) {
        if (messagesLeft_-- > 0) {
            ADD_FAILURE() << describe(scenario) << "\n" << message << "\n" << annotatedJournal(first);
        }
    }
    return Course::goesOn;
}

void Sweep::runFaults(Scenario scenario) {
    for (const Failure failure : {Failure::noAnswer, Failure::elementGone, Failure::noValue, Failure::answerLost}) {
        for (const Persistence persistence : {Persistence::once, Persistence::fromThenOn}) {
            forEveryNumber(failure, persistence, [&](const Fault& fault) {
                scenario.fault = fault;
                return run(scenario);
            });
        }
    }
}

void Sweep::runDisturbances(Scenario scenario) { runDisturbances(std::move(scenario), Repeats::yes); }

void Sweep::runDisturbances(Scenario scenario, Repeats repeats) {
    for (const UserAct act : userActs()) {
        scenario.disturbance = {act, 1};
        while (run(scenario, repeats) == Course::goesOn) {
            ++scenario.disturbance->number;
        }
    }
}

void Sweep::runContentions(Scenario scenario) {
    const Run undisturbed = perform(scenario);
    scenario.contention = {0, std::chrono::seconds(3)};
    const Run late = perform(scenario);
    EXPECT_TRUE(isSameOutcome(undisturbed, late)) << describe(scenario) << "\n" << annotatedJournal(late);
    EXPECT_LE(late.elapsed, undisturbed.elapsed + std::chrono::seconds(3)) << describe(scenario);
    for (const Duration duration : {Duration(std::chrono::seconds(3)), Duration::max()}) {
        scenario.contention = {0, duration};
        while (run(scenario) == Course::goesOn) {
            ++scenario.contention->number;
        }
    }
}

void Sweep::runKills(Scenario scenario) {
    for (const Kill::Aftermath aftermath : {Kill::Aftermath::none, Kill::Aftermath::userCopies}) {
        scenario.kill = {1, Kill::Keeper::exists, aftermath};
        while (run(scenario) == Course::goesOn) {
            ++scenario.kill->number;
        }
    }
}

void Sweep::runPairs(Scenario scenario) {
    for (const Failure failure : {Failure::noAnswer, Failure::answerLost}) {
        forEveryNumber(failure, Persistence::once, [&](const Fault& fault) {
            scenario.fault = fault;
            if (!perform(scenario).faultWasReached) {
                return Course::ranOut;
            }
            runDisturbances(scenario, Repeats::no);
            return Course::goesOn;
        });
    }
}

}  // namespace lomaris::test
