#include "platform/linux/x11/x11_connection.h"
#include "tests/x11/other_client.h"
#include "tests/x11/second_server.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

/// The root windows of all screens.
std::vector<xcb_window_t> roots(const OtherClient& client) {
    std::vector<xcb_window_t> windows;
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(client.handle())); screens.rem > 0;
         xcb_screen_next(&screens)) {
        windows.push_back(screens.data->root);
    }
    return windows;
}

class Connection : public SecondServer {};

TEST_F(Connection, UsesTheScreenOfTheDisplay) {
    const std::string display = std::getenv("DISPLAY");
    const std::vector<xcb_window_t> screens = roots(OtherClient());
    ASSERT_EQ(screens.size(), 2U);
    for (const auto& [suffix, root] :
         {std::pair("", screens[0]), std::pair(".0", screens[0]), std::pair(".1", screens[1])}) {
        setenv("DISPLAY", (display + suffix).c_str(), 1);
        X11Connection connection;
        ASSERT_TRUE(connection.isUsable()) << suffix;
        EXPECT_EQ(connection.root(), root) << suffix;
    }
    setenv("DISPLAY", (display + ".2").c_str(), 1);
    EXPECT_FALSE(X11Connection().isUsable()) << "there is no third screen";
}

TEST_F(Connection, HasTheAtoms) {
    const OtherClient client;
    X11Connection connection;
    ASSERT_TRUE(connection.isUsable());
    EXPECT_EQ(connection.atoms().activeWindow, client.atom("_NET_ACTIVE_WINDOW"));
    EXPECT_EQ(connection.atoms().clientList, client.atom("_NET_CLIENT_LIST"));
    EXPECT_EQ(connection.atoms().gtkApplicationId, client.atom("_GTK_APPLICATION_ID"));
    EXPECT_EQ(connection.atoms().windowState, client.atom("WM_STATE"));
    EXPECT_EQ(connection.atoms().windowProcess, client.atom("_NET_WM_PID"));
}

TEST_F(Connection, DetectsExtensions) {
    X11Connection connection;
    ASSERT_TRUE(connection.isUsable());
    EXPECT_TRUE(connection.hasExtension("XTEST"));
    EXPECT_FALSE(connection.hasExtension("NO-SUCH-EXTENSION"));
}

TEST_F(Connection, HasNoReplyForARequestThatFails) {
    X11Connection connection;
    ASSERT_TRUE(connection.isUsable());
    const auto noWindow = connection.xcb().query_tree(connection.handle(), 0x1fffffff);
    EXPECT_EQ(connection.wait<xcb_query_tree_reply_t>(noWindow), nullptr);
    const auto root = connection.xcb().query_tree(connection.handle(), connection.root());
    EXPECT_NE(connection.wait<xcb_query_tree_reply_t>(root), nullptr) << "the connection is still usable";
}

TEST_F(Connection, IsNotOpenedAgainOnceTheServerIsGone) {
    X11Connection connection;
    ASSERT_TRUE(connection.isUsable());
    server().end();
    const auto focus = connection.xcb().get_input_focus(connection.handle());
    EXPECT_EQ(connection.wait<xcb_get_input_focus_reply_t>(focus), nullptr);
    EXPECT_FALSE(connection.isUsable());
}

}  // namespace
}  // namespace lomaris::test
