#include "platform/macos/scheduling.h"
#include "tests/macos_scheduling/fake_run_loop.h"
#include "tests/support/termination_suite.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace lomaris::macos {
namespace {

namespace fake = test::fake_run_loop;
using std::chrono::milliseconds;
using std::chrono::seconds;

class MacOSSchedulingTest : public testing::Test {
protected:
    void TearDown() override { fake::reset(); }

    MacOSScheduling& scheduling() { return *scheduling_; }
    /// Ends the service like the platform.
    void endScheduling() {
        scheduling_->finish();
        scheduling_.reset();
    }

private:
    std::unique_ptr<MacOSScheduling> scheduling_ = std::make_unique<MacOSScheduling>();
};

TEST_F(MacOSSchedulingTest, ServesRequestsOfOthersDuringASlice) {
    int served = 0;
    fake::post([&served] { ++served; });
    fake::post([&served] { ++served; });
    scheduling().runLoopSlice(milliseconds(5));
    EXPECT_EQ(served, 2);
}

TEST_F(MacOSSchedulingTest, ASliceOfNoLengthServesWhatWaits) {
    std::string order;
    fake::post([&order] { order += 's'; });
    scheduling().runOnMainQueue([&order] { order += 'm'; });
    scheduling().runLoopSlice(Duration::zero());
    scheduling().runLoopSlice(Duration::zero());
    EXPECT_EQ(order, "sm");
}

TEST_F(MacOSSchedulingTest, ASliceRestsWhereTheRunLoopHasNothingToWatch) {
    fake::setWatchesNothing(true);
    const std::size_t before = fake::turns();
    const Moment start = scheduling().now();
    scheduling().runLoopSlice(milliseconds(20));
    EXPECT_GE(scheduling().now() - start, milliseconds(20));
    EXPECT_LE(fake::turns() - before, 22U);
}

TEST_F(MacOSSchedulingTest, ASliceWithNothingToWatchServesWhatComes) {
    fake::setWatchesNothing(true);
    bool hasRun = false;
    scheduling().runInBackground([&] { scheduling().runOnMainQueue([&hasRun] { hasRun = true; }); });
    for (int slice = 0; slice < 1000 && !hasRun; ++slice) {
        scheduling().runLoopSlice(milliseconds(10));
    }
    EXPECT_TRUE(hasRun);
}

TEST_F(MacOSSchedulingTest, ServingWhatWaitsTakesNoTimeAndLeavesTheMainQueueAlone) {
    std::string order;
    scheduling().runOnMainQueue([&order] { order += '1'; });
    scheduling().runOnMainQueue([&order] { order += '2'; });
    fake::post([&order] { order += 'a'; });
    fake::post([&order] { order += 'b'; });
    scheduling().serveWaiting(Duration::zero());
    EXPECT_EQ(order, "ab");
    scheduling().runOnMainQueue([&order] { order += '3'; });
    scheduling().runLoopSlice(milliseconds(5));
    EXPECT_EQ(order, "ab123");
}

TEST_F(MacOSSchedulingTest, ServingWhatWaitsEndsWhereItNeverStops) {
    std::function<void()> again;
    again = [&again] { fake::post(again); };
    again();
    scheduling().serveWaiting(Duration::zero());
    SUCCEED();
}

TEST_F(MacOSSchedulingTest, ServingWhatWaitsGoesOnWhereSomebodyStopsTheRunLoop) {
    int served = 0;
    fake::post([&served] { ++served; });
    fake::stopTurns(3);
    scheduling().serveWaiting(Duration::zero());
    EXPECT_EQ(served, 1);
}

TEST_F(MacOSSchedulingTest, ServingWhatWaitsEndsWhereTheRunLoopIsAlwaysStopped) {
    const std::size_t before = fake::turns();
    fake::stopTurns(1000000);
    scheduling().serveWaiting(seconds(60));
    EXPECT_EQ(fake::turns() - before, 100U);
}

TEST_F(MacOSSchedulingTest, ServingWhatWaitsGoesOnAfterAnException) {
    int served = 0;
    fake::post([] { throw std::runtime_error("a source that throws"); });
    fake::post([&served] { ++served; });
    scheduling().serveWaiting(Duration::zero());
    EXPECT_EQ(served, 1);
}

TEST_F(MacOSSchedulingTest, ServingWhatWaitsIsPatientForAsLongAsItIsTold) {
    std::string order;
    scheduling().runOnMainQueue([&order] { order += 'm'; });
    // A notification in two steps; the second one begins when the first one is handled.
    fake::post([&order] {
        order += '1';
        fake::post([&order] { order += '2'; });
    });
    const Moment start = scheduling().now();
    scheduling().serveWaiting(milliseconds(20));
    EXPECT_EQ(order, "12");
    EXPECT_GE(scheduling().now() - start, milliseconds(20));
    scheduling().runLoopSlice(milliseconds(5));
    EXPECT_EQ(order, "12m");
    scheduling().runLoopSlice(milliseconds(5));
    EXPECT_EQ(order, "12m");
}

TEST_F(MacOSSchedulingTest, AnExceptionOfABlockStopsAtTheQueue) {
    std::string order;
    scheduling().runOnMainQueue([] { throw std::runtime_error("a block that throws"); });
    scheduling().runOnMainQueue([&order] { order += 'm'; });
    scheduling().runInBackground([] { throw std::runtime_error("a block that throws"); });
    scheduling().runLoopSlice(milliseconds(5));
    EXPECT_EQ(order, "m");
    endScheduling();
}

TEST_F(MacOSSchedulingTest, ABlockThatHasNotBegunIsDroppedAtTheEnd) {
    fake::holdGlobalQueue();
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = held;
    bool hasRun = false;
    scheduling().runInBackground([&hasRun, moved = std::move(held)] { hasRun = true; });
    endScheduling();
    EXPECT_TRUE(watched.expired());
    fake::releaseGlobalQueue();
    EXPECT_FALSE(hasRun);
}

TEST_F(MacOSSchedulingTest, ABlockOfTheMainQueueIsFreedAtTheEnd) {
    auto held = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = held;
    bool hasRun = false;
    scheduling().runOnMainQueue([&hasRun, moved = std::move(held)] { hasRun = true; });
    endScheduling();
    EXPECT_TRUE(watched.expired());
    // The platform's queue still runs the entry of the block.
    MacOSScheduling other;
    other.runLoopSlice(milliseconds(5));
    EXPECT_FALSE(hasRun);
}

TEST_F(MacOSSchedulingTest, ABlockInALongWaitEndsWithTheService) {
    const auto condition = scheduling().makeCondition();
    const Moment start = scheduling().now();
    bool sawItsDeadline = false;
    scheduling().runInBackground([&, condition] {
        {
            const std::lock_guard guard(*condition);
            condition->waitUntil(start + seconds(100));
        }
        scheduling().sleep(seconds(100));
        sawItsDeadline = scheduling().now() >= start + seconds(200);
    });
    scheduling().runLoopSlice(milliseconds(20));
    const auto realStart = std::chrono::steady_clock::now();
    endScheduling();
    EXPECT_TRUE(sawItsDeadline);
    EXPECT_LT(std::chrono::steady_clock::now() - realStart, seconds(50));
}

}  // namespace
}  // namespace lomaris::macos

namespace lomaris::test {

INSTANTIATE_TYPED_TEST_SUITE_P(MacOS, TerminationDeathTest, macos::MacOSScheduling);

}  // namespace lomaris::test
