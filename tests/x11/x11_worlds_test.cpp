#include "platform/native_platform.h"
#include "tests/platform/events_contract.h"
#include "tests/platform/scheduling_contract.h"
#include "tests/platform/workspace_contract.h"
#include "tests/support/running_program.h"
#include "tests/support/waiting.h"
#include "tests/x11/clipboard_peer.h"
#include "tests/x11/key_hand.h"
#include "tests/x11/test_window.h"
#include "tests/x11/window_manager.h"

#include <memory>
#include <stdexcept>

namespace lomaris::test {
namespace {

class X11SchedulingWorld final : public SchedulingWorld {
public:
    Platform& platform() override { return *platform_; }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

class X11EventsWorld final : public EventsWorld {
public:
    // A server that has had no input reports no time.
    X11EventsWorld() { hand_.pressKeyOfUser(); }

    Platform& platform() override { return *platform_; }
    void userTypes() override { hand_.pressKeyOfUser(); }
    void prepareForKeys() override {
        // The counter is the time of the last input in milliseconds, so the key must be pressed in a later millisecond.
        ClipboardPeer peer;
        const xcb_timestamp_t now = peer.time();
        while (peer.time() - now < 2) {
        }
    }

private:
    KeyHand hand_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

/// A process that only waits, and a window with its process identifier.
struct FakeApplication {
    explicit FakeApplication(const std::string& windowClass) {
        window.setNumber("_NET_WM_PID", static_cast<std::uint32_t>(process.processIdentifier()));
        window.setText("WM_CLASS", windowClass);
    }

    RunningProgram process{{"sleep", "1000"}};
    TestWindow window;
};

class X11WorkspaceWorld final : public WorkspaceWorld {
public:
    X11WorkspaceWorld() { first_->window.setText("_GTK_APPLICATION_ID", "org.example.First"); }

    Platform& platform() override { return *platform_; }
    RunningApplication first() override {
        return {first_->process.processIdentifier(), Text(u"org.example.First"), Text(u"First")};
    }
    RunningApplication second() override {
        return {second_->process.processIdentifier(), std::nullopt, Text(u"Second")};
    }
    // The largest number, which no kernel assigns.
    ProcessIdentifier missingProcess() override { return 0x7fffffff; }
    void bringSecondToFront() override { second_->window.bringToFront(); }
    void quitFirst() override { first_.reset(); }

private:
    WindowManager windowManager_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
    // The last opened window is in front.
    std::unique_ptr<FakeApplication> second_ = std::make_unique<FakeApplication>(std::string("second\0Second\0", 14));
    std::unique_ptr<FakeApplication> first_ = std::make_unique<FakeApplication>(std::string("first\0First\0", 12));
};

template <typename World, typename X11World>
auto onTheServer() {
    return testing::Values(WorldMaker<World>{"Linux", [] { return std::make_unique<X11World>(); }});
}

INSTANTIATE_TEST_SUITE_P(X11, SchedulingContract, (onTheServer<SchedulingWorld, X11SchedulingWorld>()),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(X11, EventsContract, (onTheServer<EventsWorld, X11EventsWorld>()), contractParamName);
INSTANTIATE_TEST_SUITE_P(X11, WorkspaceContract, (onTheServer<WorkspaceWorld, X11WorkspaceWorld>()), contractParamName);

}  // namespace
}  // namespace lomaris::test
