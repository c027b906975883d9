#pragma once

#include <random>

namespace lomaris::test {

/// How long the storms last and which moments they choose.
struct StormOptions {
    /// Rounds of each storm; with a clipboard manager a fifth of them, at least one.
    int rounds = 3;
    /// The same seed gives the same moments.
    unsigned seed = std::random_device{}();
};

/// Set by `main` before the first test.
[[nodiscard]] StormOptions& stormOptions();

/// The moments of one storm.
class RandomMoments {
public:
    RandomMoments() : engine_(stormOptions().seed) {}

    /// Sleeps for that many milliseconds, and returns how many were chosen.
    int sleepBetween(int shortest, int longest);

    [[nodiscard]] int numberBetween(int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(engine_);
    }

    [[nodiscard]] bool coin() { return numberBetween(0, 1) == 1; }

private:
    std::mt19937 engine_;
};

}  // namespace lomaris::test
