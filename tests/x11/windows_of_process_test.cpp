#include "platform/linux/x11/linux_workspace.h"
#include "tests/support/running_program.h"
#include "tests/x11/other_client.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using namespace std::string_literals;

/// Several windows of a process, whose properties are combined. The test itself is the window manager.
class WindowsOfProcess : public testing::Test {
protected:
    /// Opens a window of a process and appends it to _NET_CLIENT_LIST.
    xcb_window_t open(pid_t process) {
        const xcb_window_t window = client_.openWindow(client_.root());
        client_.setNumbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(process)});
        listed_.push_back(window);
        client_.setNumbers(client_.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, listed_);
        return window;
    }
    void announceActive(xcb_window_t window) {
        client_.setNumbers(client_.root(), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {window});
    }
    void setIdentifier(xcb_window_t window, const std::string& identifier) {
        client_.setText(window, "_GTK_APPLICATION_ID", identifier);
    }
    void setClass(xcb_window_t window, const std::string& name) {
        client_.setText(window, "WM_CLASS", name + "\0"s + name + "\0"s);
    }

    OtherClient& client() { return client_; }
    LinuxWorkspace& workspace() { return workspace_; }
    [[nodiscard]] std::optional<RunningApplication> thisProcess() { return workspace_.runningApplication(getpid()); }

private:
    OtherClient client_;
    std::vector<std::uint32_t> listed_;
    X11Connection connection_;
    LinuxWorkspace workspace_{connection_};
};

TEST_F(WindowsOfProcess, HaveTheFirstIdentifierAndTheFirstClass) {
    open(getpid());
    setClass(open(getpid()), "X-class");
    setIdentifier(open(getpid()), "org.example.One");
    const xcb_window_t last = open(getpid());
    setClass(last, "X-other-class");
    setIdentifier(last, "org.example.Two");
    const RunningApplication expected{getpid(), Text(u"org.example.One"), Text(u"X-class")};
    EXPECT_EQ(thisProcess(), expected);
    announceActive(last);
    EXPECT_EQ(workspace().frontmostApplication(), expected);
}

TEST_F(WindowsOfProcess, AreNotMixedWithThoseOfAnotherProcess) {
    const RunningProgram other({"sleep", "1000"});
    const xcb_window_t window = open(other.processIdentifier());
    setClass(window, "X-theirs");
    setIdentifier(window, "org.example.Theirs");
    open(getpid());
    EXPECT_EQ(thisProcess(), (RunningApplication{getpid(), std::nullopt, std::nullopt}));
    EXPECT_EQ(workspace().runningApplication(other.processIdentifier()),
              (RunningApplication{other.processIdentifier(), Text(u"org.example.Theirs"), Text(u"X-theirs")}));
}

TEST_F(WindowsOfProcess, IncludeAnUnlistedActiveWindow) {
    const xcb_window_t listed = open(getpid());
    setClass(listed, "X-listed");
    const xcb_window_t active = client().openWindow(client().root());
    client().setNumbers(active, "_NET_WM_PID", XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(getpid())});
    setIdentifier(active, "org.example.Active");
    announceActive(active);
    EXPECT_EQ(workspace().frontmostApplication(),
              (RunningApplication{getpid(), Text(u"org.example.Active"), Text(u"X-listed")}));
    EXPECT_EQ(thisProcess(), (RunningApplication{getpid(), std::nullopt, Text(u"X-listed")}));
}

TEST_F(WindowsOfProcess, AreReadUpToALimit) {
    const xcb_window_t window = open(getpid());
    setClass(window, "X-class");
    std::vector<std::uint32_t> listed(511, client().root());
    listed.push_back(window);
    client().setNumbers(client().root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, listed);
    EXPECT_EQ(thisProcess(), (RunningApplication{getpid(), std::nullopt, Text(u"X-class")}));
    listed.insert(listed.begin(), client().root());
    client().setNumbers(client().root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, listed);
    EXPECT_EQ(thisProcess(), (RunningApplication{getpid(), std::nullopt, Text(u"lomaris_x11_tes")}));
}

TEST_F(WindowsOfProcess, AreNoneWithoutAListOfWindows) {
    const xcb_window_t window = open(getpid());
    setClass(window, "X-class");
    client().setNumbers(client().root(), "_NET_CLIENT_LIST", XCB_ATOM_CARDINAL, {window});
    EXPECT_EQ(thisProcess(), (RunningApplication{getpid(), std::nullopt, Text(u"lomaris_x11_tes")}));
}

}  // namespace
}  // namespace lomaris::test
