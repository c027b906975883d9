#include "platform/linux/x11/keyboard/linux_events.h"
#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/support/running_program.h"
#include "tests/support/waiting.h"
#include "tests/x11/key_hand.h"
#include "tests/x11/key_window.h"
#include "tests/x11/second_server.h"
#include "tests/x11/test_window.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using namespace std::string_literals;

using Keys = std::vector<std::string>;

constexpr KeyStroke copyKey{8, commandFlag};
constexpr KeyStroke pasteKey{9, commandFlag};
constexpr KeyStroke deleteKey{51, 0};

const Keys copyArrived{"+left control", "+c control", "-c control", "-left control control"};
const Keys terminalCopyArrived{"+left shift",      "+left control shift",         "+c shift control",
                               "-c shift control", "-left control shift control", "-left shift shift"};

/// A window of this process, whose class may be that of any application, and the key events that it receives.
class KeyReceiverTest : public testing::Test {
protected:
    [[nodiscard]] EventServices& events() { return events_; }
    [[nodiscard]] KeyWindow& window() { return window_; }

    [[nodiscard]] Keys post(KeyStroke keyStroke) {
        static_cast<void>(window_.takeKeys());
        const auto created = events_.createKeyStroke(keyStroke);
        if (!created) {
            return {"cannot be created"};
        }
        events_.postToSession(*created);
        return window_.takeKeys();
    }

    std::function<bool(ProcessIdentifier)> isTerminalFocused = [](ProcessIdentifier) { return false; };

private:
    KeyWindow window_;
    X11Connection connection_;
    LinuxEvents events_{connection_, [this](ProcessIdentifier process) { return isTerminalFocused(process); }};
};

const Keys notCreated{"cannot be created"};

TEST_F(KeyReceiverTest, GetsTheKeysOfItsApplication) {
    EXPECT_EQ(post(copyKey), copyArrived);
    window().setClass("Firefox");
    EXPECT_EQ(post(copyKey), copyArrived);
    EXPECT_EQ(post(deleteKey), (Keys{"+delete", "-delete"}));
    window().setClass("Xfce4-terminal");
    EXPECT_EQ(post(copyKey), terminalCopyArrived);
    EXPECT_EQ(post(pasteKey), notCreated);
    EXPECT_EQ(post(deleteKey), notCreated);
    window().setClass("XTerm");
    for (const KeyStroke keyStroke : {copyKey, pasteKey, deleteKey}) {
        EXPECT_EQ(post(keyStroke), notCreated) << keyStroke.keyCode;
    }
    EXPECT_FALSE(window().isAnyKeyDown());
}

TEST_F(KeyReceiverTest, GetsNoKeysIfItsFocusedElementIsATerminal) {
    ProcessIdentifier queried = 0;
    isTerminalFocused = [&](ProcessIdentifier process) {
        queried = process;
        return true;
    };
    EXPECT_EQ(post(copyKey), notCreated);
    EXPECT_EQ(queried, getpid());
    window().setClass("Firefox");
    EXPECT_EQ(post(copyKey), copyArrived);
}

TEST_F(KeyReceiverTest, GetsShiftWhileTheUserHoldsModifiers) {
    window().setClass("Xfce4-terminal");
    KeyHand hand;
    const std::uint8_t shift = window().keycodeOf(0xffe1);
    hand.holdAsUser(shift);
    Keys expected{"-left shift shift"};
    expected.insert(expected.end(), terminalCopyArrived.begin(), terminalCopyArrived.end());
    expected.emplace_back("+left shift");
    EXPECT_EQ(post(copyKey), expected);
    hand.releaseAsUser(shift);
    EXPECT_EQ(window().takeKeys(), Keys{"-left shift shift"});
    EXPECT_FALSE(window().isAnyKeyDown());
}

TEST_F(KeyReceiverTest, GetsTheKeysOfItsApplicationInTheBackground) {
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    const TestWindow front;
    static_cast<void>(window().takeKeys());
    window().setClass("Xfce4-terminal");
    events().postToProcess(*copy, getpid());
    EXPECT_EQ(window().takeKeys(), (Keys{"+c shift control", "-c shift control"}));
    window().setClass("XTerm");
    events().postToProcess(*copy, getpid());
    EXPECT_EQ(window().takeKeys(), Keys());
}

TEST_F(KeyReceiverTest, GetsNothingIfOtherKeysAreRight) {
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    window().setClass("XTerm");
    events().postToSession(*copy);
    EXPECT_EQ(window().takeKeys(), Keys());
    window().setClass("Xfce4-terminal");
    events().postToSession(*copy);
    EXPECT_EQ(window().takeKeys(), Keys());
    window().setClass("Firefox");
    events().postToSession(*copy);
    EXPECT_EQ(window().takeKeys(), copyArrived);
}

TEST_F(KeyReceiverTest, GetsNothingIfTheFocusMovesWhileItIsDetermined) {
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    TestWindow second;
    second.setNumber("_NET_WM_PID", static_cast<std::uint32_t>(getpid()));
    static_cast<void>(window().takeKeys());
    std::optional<KeyWindow> third;
    isTerminalFocused = [&](ProcessIdentifier) {
        third.emplace();
        return false;
    };
    events().postToSession(*copy);
    ASSERT_TRUE(third);
    EXPECT_EQ(third->takeKeys(), Keys());
    EXPECT_EQ(window().takeKeys(), Keys());
}

/// A server without a window manager, so that the focus follows the pointer.
class KeyReceiverUnderThePointer : public SecondServer {};

TEST_F(KeyReceiverUnderThePointer, HasNoKeysIfItIsATerminal) {
    if (const std::string missing = missingPrograms({"xterm"}); !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    const auto platform = nativePlatform();
    EXPECT_NE(platform->events().createKeyStroke(copyKey), nullptr);
    // It covers the center of the screen, the initial position of the pointer.
    const RunningProgram xterm({"xterm", "-geometry", "250x100+0+0"});
    EXPECT_TRUE(waitFor([&] { return platform->events().createKeyStroke(copyKey) == nullptr; }));
}

}  // namespace
}  // namespace lomaris::test
