#include "tests/storm/storm_options.h"

#include <chrono>
#include <thread>

namespace lomaris::test {

StormOptions& stormOptions() {
    static StormOptions options;
    return options;
}

int RandomMoments::sleepBetween(int shortest, int longest) {
    const int chosen = numberBetween(shortest, longest);
    std::this_thread::sleep_for(std::chrono::milliseconds(chosen));
    return chosen;
}

}  // namespace lomaris::test
