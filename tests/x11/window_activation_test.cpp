#include "platform/linux/x11/window_activation.h"
#include "tests/x11/other_client.h"
#include "tests/x11/test_window.h"
#include "tests/x11/window_manager.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <memory>
#include <optional>
#include <string>

namespace lomaris::test {
namespace {

class WindowActivation : public testing::Test {
protected:
    /// Opens a window of this process in front, with this title.
    [[nodiscard]] static std::unique_ptr<TestWindow> open(const std::string& title) {
        auto window = std::make_unique<TestWindow>();
        window->setNumber("_NET_WM_PID", static_cast<std::uint32_t>(getpid()));
        window->setText("_NET_WM_NAME", title);
        return window;
    }

    [[nodiscard]] bool raise(TextView title) { return activateWindow(connection_, getpid(), title); }
    [[nodiscard]] bool isInFront(const TestWindow& window) { return windowManager_.active() == window.identifier(); }
    WindowManager& windowManager() { return windowManager_; }

private:
    WindowManager windowManager_;
    X11Connection connection_;
};

TEST_F(WindowActivation, RaisesTheOnlyWindowRegardlessOfItsTitle) {
    const auto window = open("title");
    const TestWindow front;
    ASSERT_TRUE(isInFront(front));
    EXPECT_TRUE(raise(u"another title"));
    EXPECT_TRUE(isInFront(*window));
}

TEST_F(WindowActivation, DistinguishesWindowsByTitle) {
    const auto first = open("first");
    const auto second = open("second");
    const auto third = open("third");
    for (const auto& [title, window] :
         {std::pair(u"second", second.get()), std::pair(u"first", first.get()), std::pair(u"third", third.get())}) {
        EXPECT_TRUE(raise(title));
        EXPECT_TRUE(isInFront(*window));
    }
    EXPECT_FALSE(raise(u"fourth"));
    EXPECT_TRUE(isInFront(*third));
}

TEST_F(WindowActivation, RaisesTheFirstOfSeveralWithTheSameTitle) {
    const auto first = open("title");
    const auto second = open("title");
    EXPECT_TRUE(raise(u"title"));
    EXPECT_TRUE(isInFront(*first));
}

TEST_F(WindowActivation, PrefersTheUtf8Title) {
    const auto first = open("caf\xc3\xa9");
    first->setText("WM_NAME", "old");
    const auto second = open("");
    second->setText("WM_NAME", "old");
    EXPECT_TRUE(raise(u"caf\u00e9"));
    EXPECT_TRUE(isInFront(*first));
    EXPECT_TRUE(raise(u"old"));
    EXPECT_TRUE(isInFront(*second));
}

TEST_F(WindowActivation, RaisesNoWindowOfAnotherProcess) {
    const auto window = open("title");
    window->setNumber("_NET_WM_PID", static_cast<std::uint32_t>(getppid()));
    EXPECT_FALSE(raise(u"title"));
    EXPECT_EQ(windowManager().requests(), 0);
}

TEST_F(WindowActivation, RequestsNothingForAWindowThatIsInFront) {
    const auto window = open("title");
    EXPECT_TRUE(raise(u"title"));
    EXPECT_EQ(windowManager().requests(), 0);
}

TEST_F(WindowActivation, SendsTheSourceIndicationOfAPager) {
    const auto window = open("title");
    const TestWindow front;
    EXPECT_TRUE(raise(u"title"));
    EXPECT_EQ(windowManager().requests(), 1);
    constexpr std::uint32_t pager = 2;
    EXPECT_EQ(windowManager().lastSource(), pager);
}

TEST_F(WindowActivation, FailsIfTheWindowManagerRefuses) {
    const auto window = open("title");
    const TestWindow front;
    windowManager().refuse();
    EXPECT_FALSE(raise(u"title"));
    EXPECT_TRUE(isInFront(front));
    EXPECT_EQ(windowManager().requests(), 1);
}

}  // namespace
}  // namespace lomaris::test
