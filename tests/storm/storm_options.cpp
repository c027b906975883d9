#include "tests/storm/storm_options.h"

#include <chrono>
#include <thread>

namespace lomaris::test {

StormOptions& stormOptions() {
    static StormOptions options;
    return options;
}

int RandomMoments::sleepUpTo(int milliseconds) {
    const int chosen = std::uniform_int_distribution<int>(0, milliseconds)(engine_);
    std::this_thread::sleep_for(std::chrono::milliseconds(chosen));
    return chosen;
}

}  // namespace lomaris::test
