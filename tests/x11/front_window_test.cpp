#include "platform/linux/x11/front_window.h"
#include "tests/x11/other_client.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace lomaris::test {
namespace {

/// The front window. The test itself is the window manager.
class FrontWindow : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(connection_.isUsable()); }

    [[nodiscard]] std::optional<xcb_window_t> front() { return frontWindow(connection_); }
    OtherClient& client() { return client_; }

    void announceActive(xcb_atom_t type, const std::vector<std::uint32_t>& windows) {
        client_.setNumbers(client_.root(), "_NET_ACTIVE_WINDOW", type, windows);
    }

    /// Opens nested windows, the outermost one first.
    [[nodiscard]] std::vector<xcb_window_t> openNested(int count) {
        std::vector<xcb_window_t> windows{client_.root()};
        for (int depth = 0; depth < count; ++depth) {
            windows.push_back(client_.openWindow(windows.back()));
        }
        windows.erase(windows.begin());
        return windows;
    }

private:
    OtherClient client_;
    X11Connection connection_;
};

TEST_F(FrontWindow, IsTheActiveWindowOfTheWindowManager) {
    const xcb_window_t active = client().openWindow(client().root());
    const xcb_window_t other = client().openWindow(client().root());
    client().focus(other);
    announceActive(XCB_ATOM_WINDOW, {active});
    EXPECT_EQ(front(), active);
}

TEST_F(FrontWindow, IsTheFocusedWindowWithoutAnActiveWindow) {
    const xcb_window_t focused = client().openWindow(client().root());
    client().focus(focused);
    EXPECT_EQ(front(), focused) << "no property";
    announceActive(XCB_ATOM_WINDOW, {XCB_WINDOW_NONE});
    EXPECT_EQ(front(), focused) << "no window";
    announceActive(XCB_ATOM_WINDOW, {});
    EXPECT_EQ(front(), focused) << "an empty list";
    announceActive(XCB_ATOM_CARDINAL, {7});
    EXPECT_EQ(front(), focused) << "not a window";
}

TEST_F(FrontWindow, ContainsTheFocusedWindow) {
    const std::vector<xcb_window_t> windows = openNested(4);
    client().focus(windows[3]);
    EXPECT_EQ(front(), windows[0]) << "the outermost one if none is managed";
    client().setNumbers(windows[1], "WM_STATE", client().atom("WM_STATE"), {1, 0});
    EXPECT_EQ(front(), windows[1]) << "the managed one";
    client().focus(windows[1]);
    EXPECT_EQ(front(), windows[1]) << "the focused one if it is managed itself";
}

TEST_F(FrontWindow, IsNoneWithoutAFocusedWindow) {
    for (const xcb_window_t focus : {XCB_INPUT_FOCUS_NONE, XCB_INPUT_FOCUS_POINTER_ROOT}) {
        client().focus(focus);
        EXPECT_EQ(front(), std::nullopt) << focus;
    }
    client().focus(client().root());
    EXPECT_EQ(front(), std::nullopt) << "the root window is not an application window";
}

TEST_F(FrontWindow, IsSearchedUpToALimitedDepth) {
    const std::vector<xcb_window_t> windows = openNested(65);
    client().focus(windows[63]);
    EXPECT_EQ(front(), windows[0]);
    client().focus(windows[64]);
    EXPECT_EQ(front(), std::nullopt);
}

}  // namespace
}  // namespace lomaris::test
