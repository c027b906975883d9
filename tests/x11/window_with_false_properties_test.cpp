#include "platform/native_platform.h"
#include "tests/x11/test_window.h"
#include "tests/x11/window_manager.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdint>
#include <memory>
#include <string>

namespace lomaris::test {
namespace {

using namespace std::string_literals;

/// A window of this process in front whose properties are missing, false or malformed, and the workspace that reads
/// them.
class WindowWithFalseProperties : public testing::Test {
protected:
    WindowWithFalseProperties() { window_.setNumber("_NET_WM_PID", static_cast<std::uint32_t>(getpid())); }

    TestWindow& window() { return window_; }
    [[nodiscard]] std::optional<RunningApplication> inFront() { return platform_->workspace().frontmostApplication(); }
    [[nodiscard]] static RunningApplication thisProcess() { return {getpid(), std::nullopt, std::nullopt}; }

private:
    WindowManager windowManager_;
    TestWindow window_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_F(WindowWithFalseProperties, HasNoIdentifierAndNoNameWithoutProperties) { EXPECT_EQ(inFront(), thisProcess()); }

TEST_F(WindowWithFalseProperties, IsNoApplicationWithoutAProcessOfThisMachine) {
    for (const std::uint32_t process : {0U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
        window().setNumber("_NET_WM_PID", process);
        EXPECT_EQ(inFront(), std::nullopt) << process;
    }
    window().setText("_NET_WM_PID", "12");
    EXPECT_EQ(inFront(), std::nullopt);
    window().setWindow("_NET_WM_PID", static_cast<std::uint32_t>(getpid()));
    EXPECT_EQ(inFront(), std::nullopt);
    window().setText("_NET_WM_PID", "");
    EXPECT_EQ(inFront(), std::nullopt);
    window().remove("_NET_WM_PID");
    EXPECT_EQ(inFront(), std::nullopt);
}

TEST_F(WindowWithFalseProperties, IsNoApplicationIfItsMachineIsAnother) {
    window().setText("WM_CLIENT_MACHINE", "another-machine.example");
    EXPECT_EQ(inFront(), std::nullopt);
    window().setText("WM_CLIENT_MACHINE", "localhost");
    EXPECT_EQ(inFront(), thisProcess());
    std::string name(256, '\0');
    ASSERT_EQ(gethostname(name.data(), name.size()), 0);
    name.resize(name.find('\0'));
    window().setText("WM_CLIENT_MACHINE", name);
    EXPECT_EQ(inFront(), thisProcess());
    window().setText("WM_CLIENT_MACHINE", name + ".example");
    EXPECT_EQ(inFront(), thisProcess());
}

TEST_F(WindowWithFalseProperties, IsNamedAfterItsClassWithoutADesktopEntry) {
    window().setText("WM_CLASS", "instance\0A Class\0"s);
    RunningApplication expected = thisProcess();
    expected.localizedName = u"A Class";
    EXPECT_EQ(inFront(), expected);
}

TEST_F(WindowWithFalseProperties, HasTheIdentifierOfABrowserClass) {
    window().setText("WM_CLASS", "crx\0Google-chrome\0"s);
    RunningApplication expected = thisProcess();
    expected.bundleIdentifier = u"com.google.Chrome";
    expected.localizedName = u"Google-chrome";
    EXPECT_EQ(inFront(), expected);
    window().setText("_GTK_APPLICATION_ID", "org.example.Own");
    expected.bundleIdentifier = u"org.example.Own";
    EXPECT_EQ(inFront(), expected);
}

TEST_F(WindowWithFalseProperties, MayHaveAnyBytesInItsNames) {
    window().setText("WM_CLASS", "\xff\xfe\0../../etc/passwd\xc3\0junk"s);
    RunningApplication expected = thisProcess();
    expected.localizedName = u"../../etc/passwd\ufffd";
    EXPECT_EQ(inFront(), expected);

    window().setText("_GTK_APPLICATION_ID", std::string(100000, 'a'));
    expected.bundleIdentifier = Text(16384, u'a');
    EXPECT_EQ(inFront(), expected);

    window().setNumber("_GTK_APPLICATION_ID", 7);
    window().setNumber("WM_CLASS", 7);
    EXPECT_EQ(inFront(), thisProcess());
}

TEST_F(WindowWithFalseProperties, IsNotInFrontOnceItIsDestroyed) {
    ASSERT_EQ(inFront(), thisProcess());
    window().destroy();
    EXPECT_NE(inFront(), thisProcess());
}

}  // namespace
}  // namespace lomaris::test
