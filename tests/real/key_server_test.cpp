#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/key_hand.h"
#include "tests/real/running_program.h"
#include "tests/real/waiting.h"

#include <gtest/gtest.h>

#include <xcb/xcb.h>

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>

namespace lomaris::test {
namespace {

constexpr KeyStroke copyKey{8, commandFlag};

/// Posts to an X server that a test may freeze or kill, as the display of this process.
class KeyServer : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingPrograms({"Xvfb"}); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        display_ = std::getenv("DISPLAY");
        authority_ = std::getenv("XAUTHORITY");
        unsetenv("XAUTHORITY");
        // Far from the numbers that servers choose for themselves, and this process's own.
        const std::string number = std::to_string(1000 + getpid() % 50000);
        server_ = std::make_unique<RunningProgram>(std::vector<std::string>{"Xvfb", ":" + number, "-noreset"});
        setenv("DISPLAY", (":" + number).c_str(), 1);
        ASSERT_TRUE(waitFor([] { return nativePlatform()->events().preflightPostEventAccess(); }));
    }

    void TearDown() override {
        if (!display_.empty()) {
            setenv("DISPLAY", display_.c_str(), 1);
            setenv("XAUTHORITY", authority_.c_str(), 1);
        }
    }

    [[nodiscard]] RunningProgram& server() { return *server_; }

    [[nodiscard]] static bool isAnyKeyDown() {
        xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
        xcb_query_keymap_reply_t* const reply =
            xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr);
        const bool isDown = reply == nullptr || std::any_of(std::begin(reply->keys), std::end(reply->keys),
                                                            [](std::uint8_t bits) { return bits != 0; });
        std::free(reply);
        xcb_disconnect(connection);
        return isDown;
    }

private:
    std::string display_;
    std::string authority_;
    std::unique_ptr<RunningProgram> server_;
};

TEST_F(KeyServer, CreatesNothingOnceItHangs) {
    const auto platform = nativePlatform();
    ASSERT_TRUE(platform->events().preflightPostEventAccess());
    server().freeze();
    EXPECT_EQ(platform->events().createKeyStroke(copyKey), nullptr);
    EXPECT_FALSE(platform->events().preflightPostEventAccess());
}

TEST_F(KeyServer, IsLeftWithoutAKeyDownWhereItHangsAndComesBack) {
    const auto platform = nativePlatform();
    const auto copy = platform->events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    server().freeze();
    platform->events().postToSession(*copy);
    platform->events().postToProcess(*copy, getpid());
    server().resume();
    EXPECT_FALSE(isAnyKeyDown());
}

TEST_F(KeyServer, MayEndBeforeAPress) {
    const auto platform = nativePlatform();
    const auto copy = platform->events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    server().end();
    platform->events().postToSession(*copy);
    platform->events().postToProcess(*copy, getpid());
    EXPECT_EQ(platform->events().createKeyStroke(copyKey), nullptr);
    EXPECT_FALSE(platform->events().requestPostEventAccess());
}

TEST_F(KeyServer, IsNotWaitedForLongerWhileAnotherProgramKeepsItToItself) {
    const auto platform = nativePlatform();
    const auto copy = platform->events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    xcb_connection_t* const other = xcb_connect(nullptr, nullptr);
    xcb_grab_server(other);
    std::free(xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
    platform->events().postToSession(*copy);
    xcb_disconnect(other);
    EXPECT_FALSE(isAnyKeyDown());
}

}  // namespace
}  // namespace lomaris::test
