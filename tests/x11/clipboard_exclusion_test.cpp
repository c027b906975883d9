#include "platform/linux/x11/clipboard/clipboard_exclusion.h"
#include "tests/x11/clipboard_peer.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <stdexcept>

namespace lomaris::test {
namespace {

/// To the X server a process of its own, as it has its own connection.
class Client {
public:
    Client() {
        if (!session_.open([](const xcb_generic_event_t&) {})) {
            throw std::runtime_error("no X server");
        }
    }

    [[nodiscard]] ClipboardExclusion& exclusion() { return exclusion_; }
    [[nodiscard]] xcb_window_t window() const { return session_.window(); }

private:
    ClipboardSession session_;
    ClipboardExclusion exclusion_{session_};
};

xcb_window_t ownerOfKeeperSelection() {
    ClipboardPeer peer;
    xcb_get_selection_owner_reply_t* const reply = xcb_get_selection_owner_reply(
        peer.handle(), xcb_get_selection_owner(peer.handle(), peer.atom("_LOMARIS_CLIPBOARD_KEEPER")), nullptr);
    const xcb_window_t owner = reply == nullptr ? xcb_window_t{XCB_WINDOW_NONE} : reply->owner;
    std::free(reply);
    return owner;
}

TEST(ClipboardExclusion, IsTakenAndReleasedByAKeeper) {
    Client keeper;
    keeper.exclusion().setKept(true);
    EXPECT_EQ(ownerOfKeeperSelection(), keeper.window());
    keeper.exclusion().setKept(false);
    EXPECT_EQ(ownerOfKeeperSelection(), xcb_window_t{XCB_WINDOW_NONE});
}

TEST(ClipboardExclusion, IsNotTakenFromAnotherKeeper) {
    Client late;
    Client keeper;
    Client process;
    keeper.exclusion().setKept(true);
    late.exclusion().setKept(true);
    EXPECT_EQ(ownerOfKeeperSelection(), keeper.window());
    late.exclusion().setKept(false);
    EXPECT_EQ(ownerOfKeeperSelection(), keeper.window());
    EXPECT_FALSE(process.exclusion().take(XCB_WINDOW_NONE));
}

TEST(ClipboardExclusion, IsTakenOnceAnotherKeeperHasReleasedIt) {
    Client late;
    Client keeper;
    late.exclusion().setKept(true);
    keeper.exclusion().setKept(true);
    late.exclusion().setKept(false);
    EXPECT_EQ(ownerOfKeeperSelection(), xcb_window_t{XCB_WINDOW_NONE});
    keeper.exclusion().setKept(true);
    EXPECT_EQ(ownerOfKeeperSelection(), keeper.window());
}

}  // namespace
}  // namespace lomaris::test
