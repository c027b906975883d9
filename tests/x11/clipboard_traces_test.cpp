#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_world.h"

#include <cstdlib>

namespace lomaris::test {
namespace {

/// The event mask that all clients together have selected on this window.
std::uint32_t eventsWatchedOn(ClipboardPeer& peer, xcb_window_t window) {
    xcb_get_window_attributes_reply_t* const reply =
        xcb_get_window_attributes_reply(peer.handle(), xcb_get_window_attributes(peer.handle(), window), nullptr);
    const std::uint32_t events = reply == nullptr ? 0 : reply->all_event_masks;
    std::free(reply);
    return events;
}

TEST_F(Clipboard, StopsWatchingTheWindowAfterATransfer) {
    ASSERT_TRUE(put({{"image/png", longBytes(1000000)}}));
    OtherReader reader;
    ASSERT_TRUE(whileServing(scheduling(), [&reader] { return reader.read("image/png"); }));
    // The events that the reader itself selects do not count.
    const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(reader.peer().handle(), reader.peer().window(), XCB_CW_EVENT_MASK, &none);
    // When a second request is served, the first transfer has ended.
    ASSERT_TRUE(whileServing(scheduling(), [] { return OtherReader().read("image/png"); }));
    EXPECT_EQ(eventsWatchedOn(reader.peer(), reader.peer().window()), none);
}

}  // namespace
}  // namespace lomaris::test
