#include "platform/simulated/simulated_desktop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Lines = std::vector<std::string>;

TEST(SimulatedTime, BeginsAtZeroAndAdvancesOnlyWithWaits) {
    SimulatedDesktop desktop;
    EXPECT_EQ(desktop.now(), Moment(0));
    static_cast<void>(desktop.workspace().frontmostApplication());
    EXPECT_EQ(desktop.now(), Moment(0));
    desktop.scheduling().sleep(Duration(1));
    EXPECT_EQ(desktop.now(), Moment(1));
    desktop.scheduling().runLoopSlice(milliseconds(20));
    EXPECT_EQ(desktop.now(), Moment(20'000'001));
    EXPECT_EQ(desktop.scheduling().now(), desktop.now());
}

TEST(SimulatedTime, WaitsOfZeroOrLessTakeNoTime) {
    SimulatedDesktop desktop;
    desktop.scheduling().sleep(Duration(0));
    desktop.scheduling().sleep(-seconds(1));
    desktop.scheduling().runLoopSlice(Duration(0));
    desktop.scheduling().runLoopSlice(-seconds(1));
    EXPECT_EQ(desktop.now(), Moment(0));
}

TEST(SimulatedTime, AnEndlessSleepEndsAtTheLastMoment) {
    SimulatedDesktop desktop;
    desktop.scheduling().sleep(seconds(1));
    desktop.scheduling().sleep(Duration::max());
    EXPECT_EQ(desktop.now(), Moment::max());
}

TEST(SimulatedTime, TheUserActsAtTheScriptedMomentsInOrder) {
    SimulatedDesktop desktop;
    std::vector<std::pair<int, Moment>> acts;
    const auto act = [&](int number) {
        return [&acts, &desktop, number] { acts.emplace_back(number, desktop.now()); };
    };
    desktop.at(milliseconds(300), act(4));
    desktop.at(milliseconds(100), act(1));
    desktop.at(milliseconds(100), act(2));
    desktop.at(milliseconds(200), act(3));
    desktop.scheduling().sleep(milliseconds(250));
    EXPECT_EQ(acts, (std::vector<std::pair<int, Moment>>{
                        {1, milliseconds(100)}, {2, milliseconds(100)}, {3, milliseconds(200)}}));
    EXPECT_EQ(desktop.now(), milliseconds(250));
    desktop.scheduling().runLoopSlice(milliseconds(100));
    EXPECT_EQ(acts.back(), (std::pair<int, Moment>{4, milliseconds(300)}));
    EXPECT_EQ(desktop.now(), milliseconds(350));
}

TEST(SimulatedTime, AtTheEndOfAWaitTheUserActsFirst) {
    SimulatedDesktop desktop;
    bool hasActed = false;
    desktop.at(milliseconds(100), [&] { hasActed = true; });
    desktop.scheduling().sleep(milliseconds(100));
    EXPECT_TRUE(hasActed);
}

TEST(SimulatedTime, AnActionMayScheduleAnother) {
    SimulatedDesktop desktop;
    std::vector<Moment> acts;
    desktop.at(milliseconds(10), [&] {
        acts.push_back(desktop.now());
        desktop.at(milliseconds(10), [&] { acts.push_back(desktop.now()); });
        desktop.at(milliseconds(30), [&] { acts.push_back(desktop.now()); });
    });
    desktop.scheduling().sleep(milliseconds(50));
    EXPECT_EQ(acts, (std::vector<Moment>{milliseconds(10), milliseconds(10), milliseconds(30)}));
}

TEST(SimulatedTime, AnActionOfThePastRunsBeforeTheNextCall) {
    SimulatedDesktop desktop;
    desktop.scheduling().sleep(seconds(1));
    desktop.addApplication(812, std::nullopt, std::nullopt);
    desktop.at(Moment(0), [&] { desktop.bringToFront(812); });
    EXPECT_EQ(desktop.workspace().frontmostApplication(), (RunningApplication{812, std::nullopt, std::nullopt}));
    EXPECT_EQ(desktop.now(), seconds(1));
}

TEST(SimulatedHooks, TheUserActsJustBeforeTheNthCall) {
    SimulatedDesktop desktop;
    std::vector<std::size_t> callsBefore;
    for (const std::size_t number : {1U, 3U, 3U}) {
        desktop.beforeCall(number, [&] { callsBefore.push_back(desktop.journal().size()); });
    }
    for (int call = 0; call < 4; ++call) {
        static_cast<void>(desktop.pasteboard().changeCount());
    }
    EXPECT_EQ(callsBefore, (std::vector<std::size_t>{0, 2, 2}));
}

TEST(SimulatedHooks, CallsOfTheUserCountAndAreMarked) {
    SimulatedDesktop desktop;
    desktop.beforeCall(2, [&] { desktop.pasteboard().clearContents(); });
    desktop.beforeCall(3, [&] { desktop.userTypes(); });
    static_cast<void>(desktop.events().inputCounter(InputEventType::keyDown));
    static_cast<void>(desktop.events().inputCounter(InputEventType::keyDown));
    EXPECT_EQ(desktop.journal(), (Lines{"0.000000000 inputCounter(10) -> 0", "0.000000000 [user] clearContents()",
                                        "0.000000000 inputCounter(10) -> 1"}));
}

TEST(SimulatedBackground, StartsWhenTheMainThreadWaits) {
    SimulatedDesktop desktop;
    bool hasRun = false;
    desktop.scheduling().runInBackground([&] { hasRun = true; });
    static_cast<void>(desktop.pasteboard().changeCount());
    desktop.scheduling().sleep(Duration(0));
    EXPECT_FALSE(hasRun);
    desktop.scheduling().sleep(Duration(1));
    EXPECT_TRUE(hasRun);
}

TEST(SimulatedBackground, BlocksRunInTheOrderInWhichTheyBecameReady) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    std::vector<std::string> turns;
    for (const char* name : {"a", "b", "c"}) {
        scheduling.runInBackground([&turns, &scheduling, name] {
            for (int turn = 1; turn <= 3; ++turn) {
                turns.push_back(name + std::to_string(turn));
                scheduling.sleep(milliseconds(10));
            }
        });
    }
    scheduling.sleep(milliseconds(15));
    EXPECT_EQ(turns, (Lines{"a1", "b1", "c1", "a2", "b2", "c2"}));
    scheduling.sleep(milliseconds(15));
    EXPECT_EQ(turns, (Lines{"a1", "b1", "c1", "a2", "b2", "c2", "a3", "b3", "c3"}));
}

TEST(SimulatedBackground, ExactlyOneThreadRunsAtATime) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    std::atomic<int> running = 0;
    int crowds = 0;
    int turns = 0;
    const auto work = [&] {
        crowds += running.fetch_add(1) == 0 ? 0 : 1;
        std::this_thread::yield();
        ++turns;
        running.fetch_sub(1);
    };
    for (int block = 0; block < 8; ++block) {
        scheduling.runInBackground([&scheduling, &work, block] {
            for (int turn = 0; turn < 50; ++turn) {
                work();
                scheduling.sleep(Duration(1 + block % 3));
            }
        });
    }
    for (int turn = 0; turn < 100; ++turn) {
        work();
        scheduling.sleep(Duration(2));
    }
    EXPECT_EQ(turns, 8 * 50 + 100);
    EXPECT_EQ(crowds, 0);
}

TEST(SimulatedBackground, TimeDoesNotAdvanceWhileABlockIsReady) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    std::vector<Moment> moments;
    scheduling.runInBackground([&] {
        moments.push_back(scheduling.now());
        scheduling.runInBackground([&] { moments.push_back(scheduling.now()); });
    });
    scheduling.sleep(milliseconds(1));
    EXPECT_EQ(moments, (std::vector<Moment>{Moment(0), Moment(0)}));
}

TEST(SimulatedBackground, ManySuccessiveBlocksLeaveNoThreads) {
    SimulatedDesktop desktop;
    int runs = 0;
    for (int block = 0; block < 500; ++block) {
        desktop.scheduling().runInBackground([&] { ++runs; });
        desktop.scheduling().sleep(Duration(1));
    }
    EXPECT_EQ(runs, 500);
}

TEST(SimulatedRunLoop, RunsABlockAtTheMomentAtWhichItIsQueued) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    std::vector<Moment> served;
    scheduling.runInBackground([&] {
        for (int block = 0; block < 3; ++block) {
            scheduling.sleep(milliseconds(30));
            scheduling.runOnMainQueue([&] { served.push_back(scheduling.now()); });
        }
    });
    scheduling.runLoopSlice(milliseconds(60));
    EXPECT_EQ(served, (std::vector<Moment>{milliseconds(30), milliseconds(60)}));
    EXPECT_EQ(scheduling.now(), milliseconds(60));
    scheduling.sleep(milliseconds(100));
    EXPECT_EQ(served.size(), 2U);
    scheduling.runLoopSlice(milliseconds(20));
    EXPECT_EQ(served, (std::vector<Moment>{milliseconds(30), milliseconds(60), milliseconds(160)}));
    EXPECT_EQ(scheduling.now(), milliseconds(180));
}

TEST(SimulatedRunLoop, ABlockThatRunsTheRunLoopIsNotInterrupted) {
    SimulatedDesktop desktop;
    Scheduling& scheduling = desktop.scheduling();
    std::vector<int> order;
    scheduling.runOnMainQueue([&] {
        order.push_back(1);
        scheduling.runLoopSlice(milliseconds(10));
        order.push_back(2);
    });
    scheduling.runOnMainQueue([&] { order.push_back(3); });
    scheduling.runLoopSlice(milliseconds(20));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(scheduling.now(), milliseconds(20));
}

TEST(SimulatedEnd, FinishesStartedBlocksAtTheirDeadlines) {
    std::vector<Moment> moments;
    bool mainQueueRan = false;
    bool userActed = false;
    {
        SimulatedDesktop desktop;
        Scheduling& scheduling = desktop.scheduling();
        const auto condition = scheduling.makeCondition();
        scheduling.runInBackground([&scheduling, &moments, &mainQueueRan, condition] {
            {
                const std::lock_guard guard(*condition);
                condition->waitUntil(milliseconds(2500));
            }
            moments.push_back(scheduling.now());
            scheduling.sleep(milliseconds(300));
            moments.push_back(scheduling.now());
            scheduling.runOnMainQueue([&mainQueueRan] { mainQueueRan = true; });
        });
        scheduling.runInBackground([&scheduling, &moments] {
            scheduling.sleep(milliseconds(2600));
            moments.push_back(scheduling.now());
        });
        desktop.at(milliseconds(500), [&userActed] { userActed = true; });
        scheduling.sleep(milliseconds(100));
    }
    EXPECT_EQ(moments, (std::vector<Moment>{milliseconds(2500), milliseconds(2600), milliseconds(2800)}));
    EXPECT_FALSE(mainQueueRan);
    EXPECT_FALSE(userActed);
}

TEST(SimulatedEnd, DropsBlocksThatHaveNotStarted) {
    bool hasRun = false;
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    {
        SimulatedDesktop desktop;
        desktop.scheduling().runInBackground([&hasRun, moved = std::move(held)] { hasRun = true; });
    }
    EXPECT_FALSE(hasRun);
    EXPECT_TRUE(watched.expired());
}

TEST(SimulatedEnd, ABlockQueuedDuringTheEndNeverStarts) {
    bool hasRun = false;
    {
        SimulatedDesktop desktop;
        Scheduling& scheduling = desktop.scheduling();
        scheduling.runInBackground([&scheduling, &hasRun] {
            scheduling.sleep(seconds(1));
            scheduling.runInBackground([&hasRun] { hasRun = true; });
        });
        scheduling.sleep(Duration(1));
    }
    EXPECT_FALSE(hasRun);
}

TEST(SimulatedScenarioDeathTest, ADeadlockEndsTheProcessWithAMessage) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            SimulatedDesktop desktop;
            const auto condition = desktop.scheduling().makeCondition();
            desktop.scheduling().runInBackground([condition] { condition->lock(); });
            desktop.scheduling().sleep(Duration(1));
            condition->lock();
        },
        "simulated desktop: everybody waits for something that cannot come");
}

TEST(SimulatedScenarioDeathTest, AWaitingUserActionEndsTheProcessWithAMessage) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(
        {
            SimulatedDesktop desktop;
            desktop.at(Moment(5), [&] { desktop.scheduling().sleep(Duration(1)); });
            desktop.scheduling().sleep(Duration(10));
        },
        "simulated desktop: an action of the user must not wait");
}

}  // namespace
}  // namespace lomaris::test
