#pragma once

#include <random>

namespace lomaris::test {

/// The number of rounds, and the seed of the random moments.
struct StormOptions {
    /// Rounds of each storm. With a clipboard manager, a fifth of them but at least one.
    int rounds = 3;
    /// The same seed gives the same moments.
    unsigned seed = std::random_device{}();
};

/// Set by `main` before the first test.
[[nodiscard]] StormOptions& stormOptions();

/// The random moments of one storm.
class RandomMoments {
public:
    RandomMoments() : engine_(stormOptions().seed) {}

    /// Sleeps for a random number of milliseconds between these, and returns the number.
    int sleepBetween(int shortest, int longest);

    [[nodiscard]] int numberBetween(int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(engine_);
    }

    [[nodiscard]] bool coin() { return numberBetween(0, 1) == 1; }

private:
    std::mt19937 engine_;
};

}  // namespace lomaris::test
