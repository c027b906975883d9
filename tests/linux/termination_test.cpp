#include "platform/linux/process/linux_scheduling.h"
#include "tests/support/termination_suite.h"

#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>

namespace lomaris::test {

namespace {

void endAfter(const std::function<void(LinuxScheduling&)>& body) {
    LinuxScheduling scheduling{[] { std::cerr << "services "; }};
    scheduling.termination().catchSignals();
    body(scheduling);
    std::cerr << "survived";
}

void endWithoutAGuard(LinuxScheduling& scheduling) {
    scheduling.onTermination([] { std::cerr << "cleanUp "; }).reset();
    std::raise(SIGTERM);
    scheduling.sleep(std::chrono::milliseconds(1));
}

void endWithTwoGuards(LinuxScheduling& scheduling) {
    const auto older = scheduling.onTermination([] { std::cerr << "older "; });
    const auto newer = scheduling.onTermination([] { std::cerr << "newer "; });
    scheduling.onTermination([] { std::cerr << "newest "; }).reset();
    std::raise(SIGTERM);
    scheduling.sleep(std::chrono::milliseconds(1));
}

TEST(TerminationGuardsDeathTest, CleanUpOnlyWhileTheyExist) {
    EXPECT_EXIT(endAfter(endWithoutAGuard), testing::KilledBySignal(SIGTERM), "^services $");
}

void endAsAHost() {
    LinuxScheduling scheduling{[] { std::cerr << "services "; }};
    const auto guard = scheduling.onTermination([] { std::cerr << "cleanUp "; });
    std::raise(SIGTERM);
    std::cerr << "survived";
}

TEST(TerminationGuardsDeathTest, DoNotCatchTheSignalsOfAHost) {
    EXPECT_EXIT(endAsAHost(), testing::KilledBySignal(SIGTERM), "^$");
}

TEST(TerminationGuardsDeathTest, RunOnlyTheNewestCleanUp) {
    EXPECT_EXIT(endAfter(endWithTwoGuards), testing::KilledBySignal(SIGTERM), "^newer services $");
}

void endBySecondSignal(LinuxScheduling& scheduling) {
    scheduling.termination().setSecondSignalEnds(true);
    const auto guard = scheduling.onTermination([] { std::cerr << "cleanUp "; });
    std::raise(SIGTERM);
    std::cerr << "noted ";
    std::raise(SIGINT);
}

TEST(TerminationGuardsDeathTest, SkipCleanUpIfASecondSignalMayEndTheProcess) {
    EXPECT_EXIT(endAfter(endBySecondSignal), testing::KilledBySignal(SIGINT), "^noted $");
}

void endHeldOffBySecondSignal(LinuxScheduling& scheduling) {
    auto guard = scheduling.onTermination([] { std::cerr << "cleanUp "; });
    scheduling.termination().setSecondSignalEnds(true);
    guard->holdOff();
    std::raise(SIGTERM);
    std::raise(SIGINT);
    std::cerr << "held off ";
    guard.reset();
}

TEST(TerminationGuardsDeathTest, HoldOffASecondSignal) {
    EXPECT_EXIT(endAfter(endHeldOffBySecondSignal), testing::KilledBySignal(SIGTERM), "^held off cleanUp services $");
}

void endByTwoSignalsWithoutLeave(LinuxScheduling& scheduling) {
    const auto guard = scheduling.onTermination([] { std::cerr << "cleanUp "; });
    std::raise(SIGTERM);
    std::raise(SIGINT);
    scheduling.sleep(std::chrono::milliseconds(1));
}

void endByTwoSignalsAfterRevokedLeave(LinuxScheduling& scheduling) {
    const auto guard = scheduling.onTermination([] { std::cerr << "cleanUp "; });
    scheduling.termination().setSecondSignalEnds(true);
    scheduling.termination().setSecondSignalEnds(false);
    std::raise(SIGTERM);
    std::raise(SIGINT);
    scheduling.sleep(std::chrono::milliseconds(1));
}

TEST(TerminationGuardsDeathTest, CleanUpIfASecondSignalMayNoLongerEndTheProcess) {
    EXPECT_EXIT(endAfter(endByTwoSignalsAfterRevokedLeave), testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

TEST(TerminationGuardsDeathTest, CleanUpDespiteASecondSignal) {
    EXPECT_EXIT(endAfter(endByTwoSignalsWithoutLeave), testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

}  // namespace

INSTANTIATE_TYPED_TEST_SUITE_P(Linux, TerminationDeathTest, LinuxScheduling);

}  // namespace lomaris::test
