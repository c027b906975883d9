#pragma once

#include "platform/scheduling.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <chrono>
#include <csignal>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <thread>

namespace lomaris::test {

/// Checks how a signal ends the process while its scheduling service is a `Service`. Each step prints a word to
/// standard error.
template <typename Service>
class TerminationDeathTest : public testing::Test {
protected:
    /// A service that catches signals, as in the tool, and prints when the services end.
    class Ending {
    public:
        Ending() {
            // The test program may have been started with the signal ignored.
            static_cast<void>(std::signal(SIGTERM, SIG_DFL));
            service_.termination().catchSignals();
        }

        [[nodiscard]] std::unique_ptr<TerminationGuard> guard() {
            return service_.onTermination([] { std::cerr << "cleanUp "; });
        }
        [[nodiscard]] int descriptor() { return service_.termination().descriptor(); }
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
        // If the descriptor were watched, the waits would return at once, again and again.
        std::cerr << (ending.descriptor() < 0 ? "unwatched " : "watched ");
        (*ending).sleep(std::chrono::milliseconds(5));
        std::cerr << "slept ";
        (*ending).runLoopSlice(std::chrono::milliseconds(5));
        std::cerr << "turned ";
        guard.reset();
        std::cerr << "survived";
    }

    static void holdOffWithAnotherGuardInside() {
        Ending ending;
        auto outer = ending.guard();
        outer->holdOff();
        {
            const auto inner = ending.guard();
            tellToEnd();
        }
        std::cerr << "inner gone ";
        outer.reset();
        std::cerr << "survived";
    }

    static void failHeldOff() {
        Ending ending;
        try {
            const auto guard = ending.guard();
            guard->holdOff();
            tellToEnd();
            throw std::runtime_error("failed");
        } catch (const std::runtime_error&) {
            std::cerr << "survived";
        }
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
    EXPECT_EXIT(this->waitHeldOff(), testing::KilledBySignal(SIGTERM), "^unwatched slept turned cleanUp services $");
}

TYPED_TEST_P(TerminationDeathTest, HoldingOffComesTooLateForWhatHasCome) {
    EXPECT_EXIT(this->holdOffTooLate(), testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

TYPED_TEST_P(TerminationDeathTest, AnOuterGuardHoldsTheEndOffForAnInnerOne) {
    EXPECT_EXIT(this->holdOffWithAnotherGuardInside(), testing::KilledBySignal(SIGTERM),
                "^inner gone cleanUp services $");
}

TYPED_TEST_P(TerminationDeathTest, AFailureEndsWhatWasHeldOff) {
    EXPECT_EXIT(this->failHeldOff(), testing::KilledBySignal(SIGTERM), "^cleanUp services $");
}

REGISTER_TYPED_TEST_SUITE_P(TerminationDeathTest, ASleepEndsWhenTheProcessIsToldToEnd,
                            ASliceEndsWhenTheProcessIsToldToEnd, WaitsLastToTheirEndWhereAGuardHoldsTheEndOff,
                            AnOuterGuardHoldsTheEndOffForAnInnerOne, AFailureEndsWhatWasHeldOff,
                            HoldingOffComesTooLateForWhatHasCome);

}  // namespace lomaris::test
