#include "tests/support/waiting.h"
#include "tests/x11/clipboard_operation.h"

// What becomes of the clipboard if the X server or the keeper does not reply for longer than the tool waits.

namespace lomaris::test {
namespace {

/// Another program that grabs the X server, which then replies to nobody else.
class ServerGrab {
public:
    ServerGrab() {
        xcb_grab_server(peer_.handle());
        peer_.settle();
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;
    ~ServerGrab() {
        xcb_ungrab_server(peer_.handle());
        peer_.settle();
    }

private:
    ClipboardPeer peer_;
};

TEST_F(ClipboardKeeper, RestoresIfTheToolLosesTheServerDuringARead) {
    Operation operation;
    operation.beginRead();
    {
        const ServerGrab grab;
        static_cast<void>(operation.pasteboard().changeCount());
    }
    operation.end();
    operation.pasteboard().finish();
    EXPECT_TRUE(waitFor(&UserClipboard::isIntact));
    EXPECT_TRUE(waitFor(&isFree));
}

TEST_F(ClipboardKeeper, RestoresIfTheToolLosesTheServerAsItEnds) {
    Operation operation;
    operation.beginRead();
    {
        const ServerGrab grab;
        operation.end();
    }
    operation.pasteboard().finish();
    EXPECT_TRUE(waitFor(&UserClipboard::isIntact));
    EXPECT_TRUE(waitFor(&isFree));
}

}  // namespace
}  // namespace lomaris::test
