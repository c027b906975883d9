// Runs many rounds on real applications and checks after each that nothing is left behind.
//
//     lomaris_soak ROUNDS
//
// Ends with status 1 at the first round that differs from the expected state, and prints the difference.

#include "tests/soak/soak_desktop.h"
#include "tests/soak/steady_census.h"
#include "tests/support/running_program.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

namespace lomaris::test {
namespace {

/// The rounds in which the applications open files and windows that they keep.
constexpr int firstRounds = 10;
constexpr int roundsPerLine = 100;
/// The peak memory, in KiB, that a later call may have above that of the first rounds. It varies because the heap
/// starts at a random address.
constexpr long memoryVariation = 512;
/// One in this many rounds may fail because the browser is slow.
constexpr int roundsPerSlowRound = 50;

/// Runs the rounds and keeps their common state.
class Soak {
public:
    void run(int rounds) {
        for (round_ = 1; round_ <= rounds; ++round_) {
            runRound();
            if (round_ % roundsPerLine == 0 || round_ == rounds) {
                printLine();
            }
        }
        std::printf("level after each round: %s\n", level_.level().c_str());
    }

    [[nodiscard]] int round() const { return round_; }
    [[nodiscard]] const Figures& figures() const { return figures_; }

private:
    void runRound() {
        if (desktop_.runRound(figures_) == RoundResult::applicationWasSlow &&
            ++slowRounds_ > 1 + round_ / roundsPerSlowRound) {
            throw std::runtime_error("the browser took longer to copy than the tool waits, in too many rounds");
        }
        if (round_ <= firstRounds) {
            level_.learn(takeCensus());
            firstPeakMemory_ = figures_.peakMemory();
            return;
        }
        if (const std::string growth = level_.growth(); !growth.empty()) {
            throw std::runtime_error("left behind: " + growth);
        }
        if (figures_.peakMemory() > firstPeakMemory_ + memoryVariation) {
            throw std::runtime_error("the tool had " + std::to_string(figures_.peakMemory()) + " KiB instead of " +
                                     std::to_string(firstPeakMemory_));
        }
    }

    void printLine() const {
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start_;
        std::printf("%d rounds, %.0f s, %.2f s per round\n", round_, seconds.count(), seconds.count() / round_);
        std::fflush(stdout);
    }

    SoakDesktop desktop_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    SteadyCensus level_;
    Figures figures_;
    long firstPeakMemory_ = 0;
    int slowRounds_ = 0;
    int round_ = 0;
};

int soak(int rounds) {
    if (const std::string missing = missingPrograms({"mousepad", "firefox-esr", "xdotool", "xclip"});
        !missing.empty()) {
        std::fprintf(stderr, "lomaris_soak: %s\n", missing.c_str());
        return 1;
    }
    Soak soak;
    try {
        soak.run(rounds);
        soak.figures().print();
        return 0;
    } catch (const std::exception& difference) {
        soak.figures().print();
        std::printf("round %d failed: %s\n", soak.round(), difference.what());
        return 1;
    }
}

}  // namespace
}  // namespace lomaris::test

int main(int argumentCount, char** argumentVector) {
    const int rounds = argumentCount == 2 ? std::atoi(argumentVector[1]) : 0;
    if (rounds <= 0 || std::getenv("LOMARIS_VIRTUAL_DESKTOP") == nullptr) {
        std::fprintf(stderr, "usage: tools/virtual-desktop -- lomaris_soak ROUNDS\n");
        return 1;
    }
    try {
        return lomaris::test::soak(rounds);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lomaris_soak: %s\n", error.what());
        return 1;
    }
}
