#include "platform/linux/x11/keyboard/x11_keyboard_requests.h"
#include "platform/linux/x11/keyboard/x11_keyboard_wire.h"
#include "platform/native_platform.h"
#include "tests/x11/key_window.h"
#include "tests/x11/window_manager.h"

#include <gtest/gtest.h>

#include <sys/uio.h>

#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using Keys = std::vector<std::string>;

constexpr KeyStroke copyKey{8, commandFlag};
constexpr ModifierMask shiftModifier = 0x01;

/// Latches modifiers or a group for the next key, as a user of sticky keys does.
class StickyKeys {
public:
    StickyKeys() {
        if (!connection_.isUsable() || !prepareInputExtension(connection_, InputExtension::xkb)) {
            throw std::runtime_error("the X server has no keyboard extension");
        }
    }

    void latch(ModifierMask modifiers, std::int16_t group) {
        static xcb_extension_t extension{"XKEYBOARD", 0};
        wire::XkbLatchLockState request;
        request.affectModLatches = modifiers;
        request.modLatches = modifiers;
        request.latchGroup = group != 0 ? 1 : 0;
        request.groupLatch = group;
        std::array<iovec, 4> parts{};
        parts[2] = {.iov_base = &request, .iov_len = sizeof request};
        const xcb_protocol_request_t protocol{
            .count = 2, .ext = &extension, .opcode = wire::opcode::xkbLatchLockState, .isvoid = 1};
        connection_.xcb().send_request(connection_.handle(), 0, &parts[2], &protocol);
    }

    [[nodiscard]] KeyboardState state() {
        return receiveKeyboardState(connection_, requestKeyboardState(connection_)).value();
    }

private:
    X11Connection connection_;
};

class KeyLatch : public testing::Test {
protected:
    KeyWindow& window() { return window_; }
    StickyKeys& keys() { return keys_; }
    EventServices& events() { return platform_->events(); }

private:
    WindowManager windowManager_;
    KeyWindow window_;
    StickyKeys keys_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_F(KeyLatch, IsClearedByAPostedKeyWithoutEffectOnIt) {
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    keys().latch(shiftModifier, 0);
    ASSERT_EQ(keys().state().latchedModifiers, shiftModifier);
    events().postToSession(*copy);
    EXPECT_EQ(window().takeKeys(), (Keys{"+left control", "+c control", "-c control", "-left control control"}));
    EXPECT_EQ(keys().state().latchedModifiers, 0);
}

TEST_F(KeyLatch, OfAGroupIsClearedAsWell) {
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    keys().latch(0, 1);
    ASSERT_EQ(keys().state().latchedGroup, 1);
    events().postToSession(*copy);
    EXPECT_EQ(window().takeKeys(), (Keys{"+left control", "+c control", "-c control", "-left control control"}));
    EXPECT_EQ(keys().state().latchedGroup, 0);
}

}  // namespace
}  // namespace lomaris::test
