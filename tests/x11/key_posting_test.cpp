#include "platform/linux/x11/keyboard/key_poster.h"
#include "platform/native_platform.h"
#include "platform/posix/termination_signals.h"
#include "tests/support/process.h"
#include "tests/support/running_program.h"
#include "tests/x11/key_hand.h"
#include "tests/x11/key_window.h"
#include "tests/x11/test_window.h"
#include "tests/x11/window_manager.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using namespace std::string_literals;

using Keys = std::vector<std::string>;

constexpr KeyStroke copyKey{8, commandFlag};
constexpr KeyStroke pasteKey{9, commandFlag};
constexpr KeyStroke deleteKey{51, 0};

constexpr std::uint32_t leftShift = 0xffe1;
constexpr std::uint32_t leftControl = 0xffe3;
constexpr std::uint32_t rightControl = 0xffe4;
constexpr std::uint32_t capsLock = 0xffe5;
constexpr std::uint32_t numLock = 0xff7f;

const Keys copyArrived{"+left control", "+c control", "-c control", "-left control control"};
const Keys deleteArrived{"+delete", "-delete"};

class KeyPosting : public testing::Test {
protected:
    [[nodiscard]] EventServices& events() { return platform_->events(); }
    KeyWindow& window() { return window_; }
    KeyHand& hand() { return hand_; }
    [[nodiscard]] std::uint8_t key(std::uint32_t keysym) const { return window_.keycodeOf(keysym); }

    /// The key events that the window receives when this key is posted to the session.
    [[nodiscard]] Keys post(KeyStroke keyStroke) {
        static_cast<void>(window_.takeKeys());
        const auto created = events().createKeyStroke(keyStroke);
        if (!created) {
            return {"cannot be created"};
        }
        events().postToSession(*created);
        return window_.takeKeys();
    }

    /// Presses a lock key, as a user does.
    void turn(std::uint32_t lock) {
        hand_.holdAsUser(key(lock));
        hand_.releaseAsUser(key(lock));
    }

private:
    WindowManager windowManager_;
    KeyWindow window_;
    KeyHand hand_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_F(KeyPosting, PressesExactlyTheKeyAndItsModifier) {
    EXPECT_EQ(post(copyKey), copyArrived);
    EXPECT_EQ(post(pasteKey), (Keys{"+left control", "+v control", "-v control", "-left control control"}));
    EXPECT_EQ(post(deleteKey), deleteArrived);
    EXPECT_FALSE(window().isAnyKeyDown());
}

TEST_F(KeyPosting, RejectsOtherKeysAndFlags) {
    for (const KeyStroke keyStroke : {KeyStroke{0, 0}, KeyStroke{7, commandFlag}, KeyStroke{0xffff, 0},
                                      KeyStroke{8, commandFlag | 0x20000}, KeyStroke{51, 1}}) {
        EXPECT_EQ(events().createKeyStroke(keyStroke), nullptr) << keyStroke.keyCode << ", " << keyStroke.flags;
    }
}

TEST_F(KeyPosting, RestoresAModifierThatAnotherProgramHolds) {
    hand().holdAsProgram(key(leftShift));
    EXPECT_EQ(post(copyKey), (Keys{"-left shift shift", "+left control", "+c control", "-c control",
                                   "-left control control", "+left shift"}));
    hand().releaseAsProgram(key(leftShift));
    EXPECT_EQ(window().takeKeys(), Keys{"-left shift shift"});
    EXPECT_FALSE(window().isAnyKeyDown());
}

TEST_F(KeyPosting, RestoresAModifierOnTheDeviceOfTheUser) {
    hand().holdAsUser(key(leftShift));
    EXPECT_EQ(post(copyKey), (Keys{"-left shift shift", "+left control", "+c control", "-c control",
                                   "-left control control", "+left shift"}));
    // Shift is in effect again.
    hand().holdAsUser(key('v'));
    hand().releaseAsUser(key('v'));
    EXPECT_EQ(window().takeKeys(), (Keys{"+v shift", "-v shift"}));
    // No other device holds it after the user releases it.
    hand().releaseAsUser(key(leftShift));
    EXPECT_EQ(window().takeKeys(), Keys{"-left shift shift"});
    EXPECT_FALSE(window().isAnyKeyDown());
    EXPECT_EQ(post(deleteKey), deleteArrived);
}

TEST_F(KeyPosting, PressesControlWhileTheUserHoldsControl) {
    for (const auto& [control, name] :
         {std::pair(leftControl, "left control"), std::pair(rightControl, "right control")}) {
        const std::string lifted = "-"s + name + " control";
        const std::string putBack = "+"s + name;
        hand().holdAsUser(key(control));
        EXPECT_EQ(post(copyKey),
                  (Keys{lifted, "+left control", "+c control", "-c control", "-left control control", putBack}));
        EXPECT_EQ(post(deleteKey), (Keys{lifted, "+delete", "-delete", putBack}));
        hand().releaseAsUser(key(control));
        EXPECT_EQ(window().takeKeys(), Keys{lifted});
        EXPECT_FALSE(window().isAnyKeyDown());
        EXPECT_EQ(post(deleteKey), deleteArrived);
    }
}

TEST_F(KeyPosting, LeavesNothingDownIfTheUserReleasesTheKey) {
    for (int attempt = 0; attempt < 50; ++attempt) {
        hand().holdAsUser(key(leftShift));
        const std::uint8_t shift = key(leftShift);
        std::thread user([&] { hand().releaseAsUser(shift); });
        const Keys keys = post(copyKey);
        user.join();
        EXPECT_FALSE(window().isAnyKeyDown()) << attempt;
        EXPECT_EQ(post(deleteKey), deleteArrived) << attempt;
    }
}

TEST_F(KeyPosting, PressesAKeyThatIsHeldAlready) {
    const Keys expected{"-c", "+left control", "+c control", "-c control", "-left control control"};
    hand().holdAsUser(key('c'));
    EXPECT_EQ(post(copyKey), expected);
    hand().releaseAsUser(key('c'));
    hand().holdAsProgram(key('c'));
    EXPECT_EQ(post(copyKey), expected);
    hand().releaseAsProgram(key('c'));
    EXPECT_EQ(window().takeKeys(), Keys());
    EXPECT_FALSE(window().isAnyKeyDown());
}

TEST_F(KeyPosting, UnlocksCapsLockForThePress) {
    turn(capsLock);
    EXPECT_EQ(post(copyKey), copyArrived);
    EXPECT_EQ(post(deleteKey), deleteArrived);
    hand().holdAsUser(key('v'));
    hand().releaseAsUser(key('v'));
    EXPECT_EQ(window().takeKeys(), (Keys{"+v lock", "-v lock"}));
    turn(capsLock);
    EXPECT_EQ(post(deleteKey), deleteArrived);
}

TEST_F(KeyPosting, IsCompletedBeforeASecondSignalEndsTheProcess) {
    turn(capsLock);
    static_cast<void>(window().takeKeys());
    const pid_t process = fork();
    if (process == 0) {
        TerminationSignals signals;
        signals.setSecondSignalEnds(true);
        X11Connection connection;
        KeyPoster(connection).press({.keysym = 'c', .withControl = true}, [] {
            std::raise(SIGTERM);
            std::raise(SIGINT);
            return true;
        });
        _exit(0);
    }
    int status = 0;
    waitpid(process, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(window().takeKeys(), copyArrived);
    hand().holdAsUser(key('v'));
    hand().releaseAsUser(key('v'));
    EXPECT_EQ(window().takeKeys(), (Keys{"+v lock", "-v lock"}));
    turn(capsLock);
}

TEST_F(KeyPosting, LeavesNumLockAlone) {
    turn(numLock);
    EXPECT_EQ(post(deleteKey), (Keys{"+delete modifier 2", "-delete modifier 2"}));
    turn(numLock);
    EXPECT_EQ(post(deleteKey), deleteArrived);
}

TEST_F(KeyPosting, ReachesABackgroundProcessWithoutFocusChange) {
    TestWindow front;
    ASSERT_FALSE(window().hasFocus());
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    events().postToProcess(*copy, getpid());
    EXPECT_EQ(window().takeKeys(), (Keys{"+c control", "-c control"}));
    EXPECT_FALSE(window().hasFocus());
    // Another process, and one that does not exist.
    events().postToProcess(*copy, getppid());
    events().postToProcess(*copy, 0x7fffffff);
    EXPECT_EQ(window().takeKeys(), Keys());
}

TEST_F(KeyPosting, ReachesTheFocusOfAProcessInFront) {
    const auto remove = events().createKeyStroke(deleteKey);
    ASSERT_NE(remove, nullptr);
    events().postToProcess(*remove, getpid());
    EXPECT_EQ(window().takeKeys(), deleteArrived);
}

TEST_F(KeyPosting, ChangesTheCountersOnlyForTheSession) {
    const auto copy = events().createKeyStroke(copyKey);
    const std::uint32_t before = events().inputCounter(InputEventType::keyDown);
    events().postToProcess(*copy, getpid());
    EXPECT_EQ(events().inputCounter(InputEventType::keyDown), before);
    EXPECT_EQ(post(copyKey), copyArrived);
    EXPECT_NE(events().inputCounter(InputEventType::keyDown), before);
}

/// With another keymap for the duration of a test.
class KeyPostingOnAnotherMap : public KeyPosting {
protected:
    void SetUp() override {
        if (const std::string missing = missingMapPrograms(); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }

    void TearDown() override {
        if (missingMapPrograms().empty()) {
            run({"setxkbmap", "-layout", "us", "-option", ""});
        }
    }

    static void run(const std::vector<std::string>& commandLine) {
        const ProcessResult result = runProcess(commandLine);
        ASSERT_EQ(result.status, 0) << commandLine.front() << ": " << result.error;
    }

    /// Switches to the next group, as a user does.
    void switchLayout() {
        hand().holdAsUser(key(scrollLock));
        hand().releaseAsUser(key(scrollLock));
    }

private:
    static constexpr std::uint32_t scrollLock = 0xfe08;  // Switches groups in the keymaps of these tests.

    static std::string missingMapPrograms() {
        std::string missing;
        if (!missingPrograms({"setxkbmap", "xkbcomp"}).empty()) {
            missing += "setxkbmap is missing; install the Debian package x11-xkb-utils. ";
        }
        if (!missingPrograms({"xmodmap"}).empty()) {
            missing += "xmodmap is missing; install the Debian package x11-xserver-utils. ";
        }
        return missing;
    }
};

TEST_F(KeyPostingOnAnotherMap, FindsALatinLetterInTheSecondGroup) {
    run({"setxkbmap", "-layout", "ru,us", "-option", "grp:sclk_toggle"});
    EXPECT_EQ(post(copyKey), (Keys{"+left control group 2", "+c control group 2", "-c control group 2",
                                   "-left control control group 2"}));
    // The first group is in effect again, and is used for the keys that it has.
    EXPECT_EQ(post(deleteKey), deleteArrived);
}

TEST_F(KeyPostingOnAnotherMap, UsesTheEffectiveGroupIfItHasTheKey) {
    run({"setxkbmap", "-layout", "us,ru,de", "-option", "grp:sclk_toggle"});
    EXPECT_EQ(post(copyKey), copyArrived);
    switchLayout();
    EXPECT_EQ(post(copyKey), copyArrived);
    EXPECT_EQ(post(deleteKey), (Keys{"+delete group 2", "-delete group 2"}));
    switchLayout();
    EXPECT_EQ(post(copyKey), (Keys{"+left control group 3", "+c control group 3", "-c control group 3",
                                   "-left control control group 3"}));
    switchLayout();
    EXPECT_EQ(post(deleteKey), deleteArrived);
}

TEST_F(KeyPostingOnAnotherMap, FindsALetterThatMoved) {
    run({"setxkbmap", "-layout", "us", "-variant", "dvorak"});
    EXPECT_EQ(post(copyKey), copyArrived);
    run({"setxkbmap", "-layout", "us", "-variant", ""});
    EXPECT_EQ(post(copyKey), copyArrived);
}

TEST_F(KeyPostingOnAnotherMap, CannotCreateAKeyThatTheMapLacks) {
    run({"xmodmap", "-e", "keysym c = x"});
    EXPECT_EQ(events().createKeyStroke(copyKey), nullptr);
    EXPECT_EQ(post(deleteKey), deleteArrived);
    run({"setxkbmap", "-layout", "ru"});
    EXPECT_EQ(events().createKeyStroke(copyKey), nullptr);
    EXPECT_EQ(events().createKeyStroke(pasteKey), nullptr);
    EXPECT_EQ(post(deleteKey), deleteArrived);
}

TEST_F(KeyPostingOnAnotherMap, PostsNothingIfTheMapLosesTheKey) {
    const auto copy = events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    run({"xmodmap", "-e", "keysym c = x"});
    static_cast<void>(window().takeKeys());
    events().postToSession(*copy);
    events().postToProcess(*copy, getpid());
    EXPECT_EQ(window().takeKeys(), Keys());
}

}  // namespace
}  // namespace lomaris::test
