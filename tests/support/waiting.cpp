#include "tests/support/waiting.h"

#include <chrono>
#include <thread>

namespace lomaris::test {

bool waitFor(const std::function<bool()>& isReached) {
    constexpr auto patience = std::chrono::seconds(60);
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!isReached()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

}  // namespace lomaris::test
