#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <mutex>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

TEST(SimulatedCondition, WakesAtTheDeadlineExactly) {
    SimulatedDesktop desktop;
    const auto condition = desktop.scheduling().makeCondition();
    const std::lock_guard guard(*condition);
    condition->waitUntil(milliseconds(2500));
    EXPECT_EQ(desktop.now(), milliseconds(2500));
    condition->waitUntil(milliseconds(2000));
    EXPECT_EQ(desktop.now(), milliseconds(2500));
}

TEST(SimulatedCondition, WakesAtTheMomentOfTheBroadcast) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    const auto condition = scheduling.makeCondition();
    Moment woken{-1};
    scheduling.runInBackground([&, condition] {
        const std::lock_guard guard(*condition);
        condition->waitUntil(milliseconds(2500));
        woken = scheduling.now();
    });
    scheduling.sleep(milliseconds(700));
    {
        const std::lock_guard guard(*condition);
        condition->broadcast();
    }
    EXPECT_EQ(woken, Moment(-1)) << "nobody runs before the main thread waits";
    scheduling.sleep(seconds(5));
    EXPECT_EQ(woken, milliseconds(700));
    EXPECT_EQ(scheduling.now(), milliseconds(5700)) << "the deadline that was left moves nothing";
}

TEST(SimulatedCondition, GrantsTheLockInTheOrderOfRequests) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    const auto condition = scheduling.makeCondition();
    std::vector<std::pair<int, Moment>> entries;
    for (int block = 1; block <= 3; ++block) {
        scheduling.runInBackground([&, condition, block] {
            const std::lock_guard guard(*condition);
            entries.emplace_back(block, scheduling.now());
            scheduling.sleep(milliseconds(10));
        });
    }
    scheduling.sleep(milliseconds(5));
    const std::lock_guard guard(*condition);
    EXPECT_EQ(entries,
              (std::vector<std::pair<int, Moment>>{{1, Moment(0)}, {2, milliseconds(10)}, {3, milliseconds(20)}}));
    EXPECT_EQ(scheduling.now(), milliseconds(30));
}

TEST(SimulatedCondition, ABroadcastAtTheDeadlineWakesOnce) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    const auto condition = scheduling.makeCondition();
    int wakes = 0;
    scheduling.runInBackground([&, condition] {
        const std::lock_guard guard(*condition);
        condition->waitUntil(milliseconds(100));
        ++wakes;
        condition->waitUntil(milliseconds(200));
        ++wakes;
    });
    desktop.at(milliseconds(100), [condition] {
        const std::lock_guard guard(*condition);
        condition->broadcast();
    });
    scheduling.sleep(milliseconds(150));
    EXPECT_EQ(wakes, 1);
    scheduling.sleep(milliseconds(150));
    EXPECT_EQ(wakes, 2);
}

TEST(SimulatedCondition, ABroadcastAfterTheDeadlineEndsNoLaterSleep) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    const auto condition = scheduling.makeCondition();
    Moment end{-1};
    scheduling.runInBackground([&, condition] {
        {
            const std::lock_guard guard(*condition);
            condition->waitUntil(milliseconds(100));
        }
        scheduling.sleep(milliseconds(100));
        end = scheduling.now();
    });
    scheduling.sleep(milliseconds(150));
    {
        const std::lock_guard guard(*condition);
        condition->broadcast();
    }
    scheduling.sleep(milliseconds(100));
    EXPECT_EQ(end, milliseconds(200));
}

}  // namespace
}  // namespace lomaris::test
