#include "platform/native_platform.h"
#include "tests/x11/key_hand.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>

namespace lomaris::test {
namespace {

constexpr std::array everyType{InputEventType::keyDown, InputEventType::leftMouseDown, InputEventType::rightMouseDown,
                               InputEventType::otherMouseDown};

class InputCounter : public testing::Test {
protected:
    // A server that has had no input reports no time.
    InputCounter() { hand_.pressKeyOfUser(); }

    [[nodiscard]] std::uint32_t counter(InputEventType type) { return platform_->events().inputCounter(type); }
    [[nodiscard]] EventServices& events() { return platform_->events(); }
    KeyHand& hand() { return hand_; }

private:
    KeyHand hand_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_F(InputCounter, DoesNotChangeWithoutInput) {
    const std::uint32_t first = counter(InputEventType::keyDown);
    EXPECT_NE(first, 0U);
    for (int reading = 0; reading < 500; ++reading) {
        for (const InputEventType type : everyType) {
            ASSERT_EQ(counter(type), first) << reading;
        }
    }
}

TEST_F(InputCounter, ChangesWithEveryKey) {
    std::uint32_t last = counter(InputEventType::keyDown);
    for (int press = 0; press < 5; ++press) {
        hand().pressKeyOfUser();
        const std::uint32_t next = counter(InputEventType::keyDown);
        EXPECT_NE(next, last) << press;
        last = next;
    }
}

TEST_F(InputCounter, IsTheSameForEveryProcess) {
    EXPECT_EQ(nativePlatform()->events().inputCounter(InputEventType::keyDown), counter(InputEventType::keyDown));
}

TEST_F(InputCounter, AllowsPostingKeys) {
    EXPECT_TRUE(events().preflightPostEventAccess());
    EXPECT_TRUE(events().requestPostEventAccess());
}

}  // namespace
}  // namespace lomaris::test
