#pragma once

#include "platform/scheduling.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>
#include <memory>
#include <thread>

namespace lomaris::test {

/// How a process ends that a signal tells to, where its scheduling service is a `Service`. What happens is said on
/// standard error.
template <typename Service>
class TerminationDeathTest : public testing::Test {
protected:
    /// As the tool has it, with services that say that they end.
    class Ending {
    public:
        Ending() { service_.termination().catchSignals(); }

        [[nodiscard]] std::unique_ptr<TerminationGuard> guard() {
            return service_.onTermination([] { std::cerr << "cleanUp "; });
        }
        Scheduling& operator*() { return service_; }

    private:
        Service service_{[] { std::cerr << "services "; }};
    };

    static void tellToEnd() { kill(getpid(), SIGTERM); }

    static void endDuring(const std::function<void(Scheduling&)>& wait) {
        Ending ending;
        const auto guard = ending.guard();
        (*ending).runInBackground([] {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            tellToEnd();
        });
        wait(*ending);
        std::cerr << "survived";
    }

    static void waitHeldOff() {
        Ending ending;
        auto guard = ending.guard();
        guard->holdOff();
        tellToEnd();
        (*ending).sleep(std::chrono::milliseconds(5));
        std::cerr << "slept ";
        (*ending).runLoopSlice(std::chrono::milliseconds(5));
        std::cerr << "turned ";
        guard.reset();
        std::cerr << "survived";
    }

    static void holdOffTooLate() {
        Ending ending;
        const auto guard = ending.guard();
        tellToEnd();
        guard->holdOff();
        std::cerr << "survived";
    }
};

TYPED_TEST_SUITE_P(TerminationDeathTest);

TYPED_TEST_P(TerminationDeathTest, ASleepEndsWhenTheProcessIsToldToEnd) {
    EXPECT_EXIT(this->endDuring([](Scheduling& scheduling) { scheduling.sleep(std::chrono::seconds(60)); }),
                testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

TYPED_TEST_P(TerminationDeathTest, ASliceEndsWhenTheProcessIsToldToEnd) {
    EXPECT_EXIT(this->endDuring([](Scheduling& scheduling) { scheduling.runLoopSlice(std::chrono::seconds(60)); }),
                testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

TYPED_TEST_P(TerminationDeathTest, WaitsLastToTheirEndWhereAGuardHoldsTheEndOff) {
    EXPECT_EXIT(this->waitHeldOff(), testing::KilledBySignal(SIGTERM), "^slept turned cleanUp services $");
}

TYPED_TEST_P(TerminationDeathTest, HoldingOffComesTooLateForWhatHasCome) {
    EXPECT_EXIT(this->holdOffTooLate(), testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

REGISTER_TYPED_TEST_SUITE_P(TerminationDeathTest, ASleepEndsWhenTheProcessIsToldToEnd,
                            ASliceEndsWhenTheProcessIsToldToEnd, WaitsLastToTheirEndWhereAGuardHoldsTheEndOff,
                            HoldingOffComesTooLateForWhatHasCome);

}  // namespace lomaris::test
