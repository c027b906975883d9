#include "tests/platform/scheduling_contract.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace lomaris::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SchedulingContract);

bool SchedulingContract::turnUntil(const std::function<bool()>& done) {
    constexpr int manySlices = 1000;
    for (int slice = 0; slice < manySlices && !done(); ++slice) {
        scheduling().runLoopSlice(std::chrono::milliseconds(10));
    }
    return done();
}

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// A flag with the condition that guards it.
struct Signal {
    explicit Signal(Scheduling& scheduling) : condition(scheduling.makeCondition()) {}

    void raise() {
        const std::lock_guard guard(*condition);
        isRaised = true;
        condition->broadcast();
    }

    /// Waits until the flag is set or until the deadline; true if it is set.
    bool waitUntil(Scheduling& scheduling, Moment deadline) {
        const std::lock_guard guard(*condition);
        while (!isRaised && scheduling.now() < deadline) {
            condition->waitUntil(deadline);
        }
        return isRaised;
    }

    std::shared_ptr<Condition> condition;
    bool isRaised = false;
};

TEST_P(SchedulingContract, SleepsAtLeastAsLongAsRequested) {
    for (const Duration duration : {Duration(1), Duration(milliseconds(2)), Duration(milliseconds(20))}) {
        const Moment start = scheduling().now();
        scheduling().sleep(duration);
        EXPECT_GE(scheduling().now() - start, duration);
    }
}

TEST_P(SchedulingContract, ReturnsFromASleepOfZeroOrLess) {
    scheduling().sleep(Duration(0));
    scheduling().sleep(-seconds(1));
    scheduling().sleep(Duration::min());
    SUCCEED();
}

TEST_P(SchedulingContract, TheClockNeverDecreases) {
    Moment last = scheduling().now();
    for (int reading = 0; reading < 1000; ++reading) {
        const Moment now = scheduling().now();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST_P(SchedulingContract, ASliceLastsItsFullTimeWithoutBlocks) {
    const Moment start = scheduling().now();
    scheduling().runLoopSlice(milliseconds(20));
    EXPECT_GE(scheduling().now() - start, milliseconds(20));
}

TEST_P(SchedulingContract, ASliceLastsItsFullTimeWithBlocks) {
    bool hasRun = false;
    scheduling().runOnMainQueue([&hasRun] { hasRun = true; });
    const Moment start = scheduling().now();
    scheduling().runLoopSlice(milliseconds(20));
    EXPECT_GE(scheduling().now() - start, milliseconds(20));
    EXPECT_TRUE(hasRun);
}

TEST_P(SchedulingContract, ASliceOfZeroOrLessReturns) {
    scheduling().runLoopSlice(Duration(0));
    scheduling().runLoopSlice(-seconds(1));
    SUCCEED();
}

TEST_P(SchedulingContract, TheMainQueueRunsInOrderOnTheMainThreadInSlices) {
    const std::thread::id mainThread = std::this_thread::get_id();
    std::vector<int> order;
    for (int number = 1; number <= 3; ++number) {
        scheduling().runOnMainQueue([&order, number, mainThread] {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            order.push_back(number);
        });
    }
    EXPECT_EQ(order, (std::vector<int>{}));
    scheduling().sleep(milliseconds(5));
    EXPECT_EQ(order, (std::vector<int>{})) << "a sleep served the main queue";
    scheduling().runLoopSlice(milliseconds(20));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST_P(SchedulingContract, ABlockOfTheMainQueueMayQueueAnother) {
    std::vector<int> order;
    scheduling().runOnMainQueue([this, &order] {
        scheduling().runOnMainQueue([&order] { order.push_back(2); });
        order.push_back(1);
    });
    EXPECT_TRUE(turnUntil([&order] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST_P(SchedulingContract, BackgroundBlocksRunOnAnotherThreadAndReachTheMainQueue) {
    const std::thread::id mainThread = std::this_thread::get_id();
    bool hasReturned = false;
    scheduling().runInBackground([this, &hasReturned, mainThread] {
        EXPECT_NE(std::this_thread::get_id(), mainThread);
        scheduling().runOnMainQueue([&hasReturned, mainThread] {
            EXPECT_EQ(std::this_thread::get_id(), mainThread);
            hasReturned = true;
        });
    });
    EXPECT_TRUE(turnUntil([&hasReturned] { return hasReturned; }));
}

TEST_P(SchedulingContract, ASliceRunsBlocksQueuedDuringIt) {
    bool hasReturned = false;
    scheduling().runInBackground([this, &hasReturned] {
        scheduling().sleep(milliseconds(30));
        scheduling().runOnMainQueue([&hasReturned] { hasReturned = true; });
    });
    EXPECT_TRUE(turnUntil([&hasReturned] { return hasReturned; }));
}

TEST_P(SchedulingContract, AWaitEndsAtItsDeadline) {
    Signal signal(scheduling());
    const Moment deadline = scheduling().now() + milliseconds(20);
    EXPECT_FALSE(signal.waitUntil(scheduling(), deadline));
    EXPECT_GE(scheduling().now(), deadline);
}

TEST_P(SchedulingContract, AWaitForAPastMomentEnds) {
    Signal signal(scheduling());
    const std::lock_guard guard(*signal.condition);
    signal.condition->waitUntil(scheduling().now());
    signal.condition->waitUntil(scheduling().now() - seconds(1));
    SUCCEED();
}

TEST_P(SchedulingContract, ABroadcastWakesTheMainThread) {
    Signal signal(scheduling());
    scheduling().runInBackground([&signal] { signal.raise(); });
    EXPECT_TRUE(signal.waitUntil(scheduling(), scheduling().now() + seconds(60)));
}

TEST_P(SchedulingContract, ABroadcastWakesEveryBackgroundBlock) {
    Signal signal(scheduling());
    std::atomic<int> woken = 0;
    std::atomic<int> returned = 0;
    const Moment deadline = scheduling().now() + seconds(60);
    for (int block = 0; block < 3; ++block) {
        scheduling().runInBackground([this, &signal, &woken, &returned, deadline] {
            woken += signal.waitUntil(scheduling(), deadline) ? 1 : 0;
            scheduling().runOnMainQueue([&returned] { ++returned; });
        });
    }
    scheduling().runLoopSlice(milliseconds(20));
    signal.raise();
    EXPECT_TRUE(turnUntil([&returned] { return returned == 3; }));
    EXPECT_EQ(woken, 3);
}

TEST_P(SchedulingContract, TheLockExcludesOtherThreads) {
    const std::shared_ptr<Condition> condition = scheduling().makeCondition();
    int inside = 0;
    int entries = 0;
    int crowds = 0;
    std::atomic<int> returned = 0;
    for (int block = 0; block < 4; ++block) {
        scheduling().runInBackground([&, condition] {
            for (int entry = 0; entry < 5; ++entry) {
                const std::lock_guard guard(*condition);
                ++inside;
                scheduling().sleep(Duration(milliseconds(1)));
                crowds += inside == 1 ? 0 : 1;
                ++entries;
                --inside;
            }
            scheduling().runOnMainQueue([&returned] { ++returned; });
        });
    }
    EXPECT_TRUE(turnUntil([&returned] { return returned == 4; }));
    EXPECT_EQ(entries, 20);
    EXPECT_EQ(crowds, 0);
}

TEST_P(SchedulingContract, ReleasesTheCapturesOfABlockThatRan) {
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = held;
    scheduling().runInBackground([this, moved = std::move(held)] { scheduling().runOnMainQueue([moved] {}); });
    EXPECT_TRUE(turnUntil([&watched] { return watched.expired(); }));
}

TEST_P(SchedulingContract, IsDestroyedWhileABackgroundBlockWaits) {
    const auto condition = scheduling().makeCondition();
    const Moment deadline = scheduling().now() + seconds(10);
    scheduling().runInBackground([condition, deadline] {
        const std::lock_guard guard(*condition);
        condition->waitUntil(deadline);
    });
    scheduling().runLoopSlice(milliseconds(20));
    endWorld();
    SUCCEED();
}

TEST_P(SchedulingContract, DropsTheMainQueueOnDestruction) {
    bool hasRun = false;
    scheduling().runOnMainQueue([&hasRun] { hasRun = true; });
    endWorld();
    EXPECT_FALSE(hasRun);
}

TEST_P(SchedulingContract, ATerminationGuardRunsNothingWithoutASignal) {
    int cleanUps = 0;
    {
        const auto outer = scheduling().onTermination([&cleanUps] { ++cleanUps; });
        const auto inner = scheduling().onTermination([&cleanUps] { ++cleanUps; });
        scheduling().sleep(milliseconds(1));
        scheduling().runLoopSlice(milliseconds(1));
    }
    scheduling().sleep(milliseconds(1));
    EXPECT_EQ(cleanUps, 0);
}

}  // namespace
}  // namespace lomaris::test
