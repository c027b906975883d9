#include "platform/linux/process/monotonic_clock.h"
#include "platform/linux/x11/clipboard/keeper_channel.h"
#include "platform/linux/x11/clipboard/kept_contents.h"
#include "tests/x11/clipboard_operation.h"
#include "tests/x11/clipboard_other_reader.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace lomaris::test {
namespace {

using namespace std::chrono_literals;
using Kind = KeeperMessage::Kind;

/// Another program that takes ownership of the clipboard repeatedly.
class Taker {
public:
    Taker()
        : thread_([this] {
              ClipboardPeer peer;
              const xcb_atom_t clipboard = peer.atom("CLIPBOARD");
              while (!isEnding_) {
                  for (int count = 0; count < 500; ++count) {
                      xcb_set_selection_owner(peer.handle(), peer.window(), clipboard, XCB_CURRENT_TIME);
                  }
                  peer.settle();
                  hasBegun_ = true;
              }
          }) {
        while (!hasBegun_) {
            std::this_thread::yield();
        }
    }
    Taker(const Taker&) = delete;
    Taker& operator=(const Taker&) = delete;
    ~Taker() {
        isEnding_ = true;
        thread_.join();
    }

private:
    std::atomic<bool> isEnding_ = false;
    std::atomic<bool> hasBegun_ = false;
    std::thread thread_;
};

/// The channel of a new keeper.
KeeperChannel startKeeper() {
    StartedKeeper keeper = forkKeeper();
    reapKeeper(keeper);
    return KeeperChannel(std::move(keeper.socket));
}

/// The next message of the keeper; one without a meaning if none arrives.
KeeperMessage receiveFrom(KeeperChannel& channel) {
    const auto received = channel.receive(later(monotonicNow(), 60s));
    return received ? received->message : KeeperMessage();
}

/// Has the keeper publish a promised text.
void publish(KeeperChannel& channel, std::uint32_t serial) {
    const FileDescriptor file = writeKeptTargets({{{.target = "UTF8_STRING",
                                                    .form = {"UTF8_STRING", 8},
                                                    .bytes = std::make_shared<const Bytes>("published"),
                                                    .isPromisedText = true}}});
    const Moment deadline = later(monotonicNow(), 60s);
    EXPECT_TRUE(channel.send({.kind = Kind::publish, .serial = serial, .deadline = deadline.count()}, file.number()));
}

TEST_F(ClipboardKeeper, ConfirmsContentsThatAreOverwrittenAtOnce) {
    KeeperChannel channel = startKeeper();
    const Taker taker;
    for (std::uint32_t serial = 1; serial <= 5; ++serial) {
        publish(channel, serial);
        const KeeperMessage reply = receiveFrom(channel);
        EXPECT_EQ(reply.kind, Kind::confirmed);
        EXPECT_NE(reply.window, XCB_WINDOW_NONE);
    }
}

TEST_F(ClipboardKeeper, ReportsTheFirstReadingOfATextOnly) {
    KeeperChannel channel = startKeeper();
    for (std::uint32_t serial = 1; serial <= 2; ++serial) {
        publish(channel, serial);
        EXPECT_EQ(receiveFrom(channel).kind, Kind::confirmed);
        for (int reading = 0; reading < 3; ++reading) {
            EXPECT_TRUE(OtherReader().read("UTF8_STRING"));
        }
        const KeeperMessage report = receiveFrom(channel);
        EXPECT_EQ(report.kind, Kind::textRead);
        EXPECT_EQ(report.serial, serial);
    }
}

/// A keeper that lets another program copy before it confirms a publication.
class OvertakenKeeper {
public:
    [[nodiscard]] KeeperStart start() {
        return [this] {
            KeeperChannelEnds ends = makeKeeperChannel();
            thread_ = std::thread([this, channel = KeeperChannel(std::move(ends.keeper))]() mutable {
                while (const auto received = channel.receive(later(monotonicNow(), 60s))) {
                    if (received->message.kind == Kind::publish) {
                        other_.emplace(std::vector<OfferedTarget>{{"UTF8_STRING", {"", 8, "newer"}}});
                        static_cast<void>(channel.send({.kind = Kind::confirmed,
                                                        .serial = received->message.serial,
                                                        .window = keeperWindow_.window()}));
                    }
                }
            });
            return StartedKeeper{std::move(ends.partner), -1};
        };
    }
    OvertakenKeeper() = default;
    OvertakenKeeper(const OvertakenKeeper&) = delete;
    OvertakenKeeper& operator=(const OvertakenKeeper&) = delete;
    ~OvertakenKeeper() { thread_.join(); }

private:
    ClipboardPeer keeperWindow_;
    std::optional<OtherOwner> other_;
    std::thread thread_;
};

TEST_F(ClipboardKeeper, DoesNotOverwriteACopyDuringAWrite) {
    OvertakenKeeper keeper;
    Operation operation(keeper.start());
    operation.pasteboard().clearContents();
    std::vector<NewPasteboardItem> items(1);
    items[0].data = {{stringType, "words"}};
    EXPECT_FALSE(operation.pasteboard().writeItems(std::move(items)));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "newer"}));
}

}  // namespace
}  // namespace lomaris::test
