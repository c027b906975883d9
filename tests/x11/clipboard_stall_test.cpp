#include "tests/support/waiting.h"
#include "tests/x11/clipboard_operation.h"
#include "tests/x11/clipboard_other_reader.h"

#include <chrono>
#include <thread>

// The clipboard, if the X server or the keeper does not reply for longer than the timeouts of the tool.

namespace lomaris::test {
namespace {

/// Another program that grabs the X server, which then replies to no other client.
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

TEST_F(ClipboardKeeper, RestoresAfterALongStallOfTheServer) {
    DyingProcess process([](Operation& operation) { operation.beginRead(); });
    {
        const ServerGrab grab;
        process.die();
        // Longer than the timeout of the tool.
        std::this_thread::sleep_for(std::chrono::seconds(2));
    }
    EXPECT_TRUE(waitFor(&UserClipboard::isIntact));
    EXPECT_TRUE(waitFor(&isFree));
}

/// Stops the keeper (SIGSTOP) until this is destroyed.
class StoppedKeeper {
public:
    StoppedKeeper() : process_(successors().at(0)) { kill(process_, SIGSTOP); }
    StoppedKeeper(const StoppedKeeper&) = delete;
    StoppedKeeper& operator=(const StoppedKeeper&) = delete;
    ~StoppedKeeper() { kill(process_, SIGCONT); }

private:
    pid_t process_;
};

TEST_F(ClipboardKeeper, DoesNotPublishAfterTheDeadline) {
    Operation operation;
    operation.beginRead();
    std::optional<OtherOwner> user;
    {
        const StoppedKeeper stopped;
        operation.restore();
        EXPECT_TRUE(whileServing(operation.scheduling(), &UserClipboard::isIntact));
        user.emplace(std::vector<OfferedTarget>{{"UTF8_STRING", {"", 8, "newer"}}});
    }
    EXPECT_TRUE(successorsBecome(0));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "newer"}));
    operation.end();
    EXPECT_TRUE(isFree());
}

TEST_F(ClipboardKeeper, DoesNotOverwriteARestoredClipboard) {
    Operation operation;
    ASSERT_TRUE(operation.begin());
    operation.save();
    {
        const StoppedKeeper stopped;
        operation.stage("");
        operation.restore();
    }
    EXPECT_TRUE(whileServing(operation.scheduling(), [] { return successorsBecome(0); }));
    EXPECT_TRUE(whileServing(operation.scheduling(), &UserClipboard::isIntact));
    operation.end();
    EXPECT_TRUE(isFree());
}

}  // namespace
}  // namespace lomaris::test
