// The process is told to end while the tool waits.

#include "platform/linux/linux_scheduling.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>
#include <thread>

namespace lomaris::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

/// Says on standard error in which order things end.
class EndingScheduling {
public:
    EndingScheduling() { scheduling_.termination().catchSignals(); }
    LinuxScheduling& operator*() { return scheduling_; }

private:
    LinuxScheduling scheduling_{[] { std::cerr << "services "; }};
};

void endDuring(const std::function<void(Scheduling&)>& wait) {
    EndingScheduling ending;
    const auto guard = (*ending).onTermination([] { std::cerr << "cleanUp "; });
    (*ending).runInBackground([] {
        std::this_thread::sleep_for(milliseconds(20));
        kill(getpid(), SIGTERM);
    });
    wait(*ending);
    std::cerr << "survived";
}

TEST(LinuxSchedulingDeathTest, ASleepEndsWhenTheProcessIsToldToEnd) {
    EXPECT_EXIT(endDuring([](Scheduling& scheduling) { scheduling.sleep(seconds(60)); }),
                testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

TEST(LinuxSchedulingDeathTest, ASliceEndsWhenTheProcessIsToldToEnd) {
    EXPECT_EXIT(endDuring([](Scheduling& scheduling) { scheduling.runLoopSlice(seconds(60)); }),
                testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

TEST(LinuxSchedulingDeathTest, WaitsLastToTheirEndWhereAGuardHoldsTheEndOff) {
    const auto waitHeldOff = [] {
        EndingScheduling ending;
        auto guard = (*ending).onTermination([] { std::cerr << "cleanUp "; });
        guard->holdOff();
        kill(getpid(), SIGTERM);
        (*ending).sleep(milliseconds(5));
        std::cerr << "slept ";
        (*ending).runLoopSlice(milliseconds(5));
        std::cerr << "turned ";
        guard.reset();
        std::cerr << "survived";
    };
    EXPECT_EXIT(waitHeldOff(), testing::KilledBySignal(SIGTERM), "^slept turned cleanUp services $");
}

TEST(LinuxSchedulingDeathTest, HoldingOffComesTooLateForWhatHasCome) {
    const auto holdOffTooLate = [] {
        EndingScheduling ending;
        const auto guard = (*ending).onTermination([] { std::cerr << "cleanUp "; });
        kill(getpid(), SIGTERM);
        guard->holdOff();
        std::cerr << "survived";
    };
    EXPECT_EXIT(holdOffTooLate(), testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

}  // namespace
}  // namespace lomaris::test
