#include "platform/native_platform.h"
#include "tests/support/running_program.h"
#include "tests/support/waiting.h"
#include "tests/x11/key_hand.h"
#include "tests/x11/second_server.h"

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

/// Posts keys to a second X server, which a test may freeze or kill.
class KeyServer : public SecondServer {
protected:
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
};

TEST_F(KeyServer, CreatesNoStrokeOnceItHangs) {
    const auto platform = nativePlatform();
    ASSERT_TRUE(platform->events().preflightPostEventAccess());
    server().freeze();
    EXPECT_EQ(platform->events().createKeyStroke(copyKey), nullptr);
    EXPECT_FALSE(platform->events().preflightPostEventAccess());
}

TEST_F(KeyServer, HasNoKeyDownAfterItHangsAndResumes) {
    const auto platform = nativePlatform();
    const auto copy = platform->events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    server().freeze();
    platform->events().postToSession(*copy);
    platform->events().postToProcess(*copy, getpid());
    server().resume();
    EXPECT_FALSE(isAnyKeyDown());
}

TEST_F(KeyServer, MayExitBeforeAPress) {
    const auto platform = nativePlatform();
    const auto copy = platform->events().createKeyStroke(copyKey);
    ASSERT_NE(copy, nullptr);
    server().end();
    platform->events().postToSession(*copy);
    platform->events().postToProcess(*copy, getpid());
    EXPECT_EQ(platform->events().createKeyStroke(copyKey), nullptr);
    EXPECT_FALSE(platform->events().requestPostEventAccess());
}

TEST_F(KeyServer, IsGivenUpWhileAnotherProgramGrabsIt) {
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
