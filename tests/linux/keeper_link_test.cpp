#include "platform/linux/x11/clipboard/keeper_link.h"

#include "platform/linux/process/monotonic_clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>
#include <utility>

namespace lomaris::test {
namespace {

using namespace std::chrono_literals;
using Kind = KeeperMessage::Kind;

constexpr std::uint32_t window = 17;

/// A keeper on a thread, at the other end of a link. Must be declared before the link, as it ends after the link does.
class FakeKeeper {
public:
    explicit FakeKeeper(std::function<void(KeeperChannel&)> act) : act_(std::move(act)) {}
    FakeKeeper(const FakeKeeper&) = delete;
    FakeKeeper& operator=(const FakeKeeper&) = delete;
    ~FakeKeeper() { thread_.join(); }

    [[nodiscard]] KeeperStart start() {
        return [this] {
            KeeperChannelEnds ends = makeKeeperChannel();
            thread_ = std::thread([this, channel = KeeperChannel(std::move(ends.keeper))]() mutable { act_(channel); });
            return StartedKeeper{std::move(ends.partner), -1};
        };
    }

private:
    std::function<void(KeeperChannel&)> act_;
    std::thread thread_;
};

void confirmNext(KeeperChannel& channel, Duration delay = {}) {
    const auto request = channel.receive(later(monotonicNow(), 60s));
    std::this_thread::sleep_for(delay);
    if (request) {
        channel.send({.kind = Kind::confirmed, .serial = request->message.serial, .window = window});
    }
}

TEST(KeeperLink, WaitsForAKeeperThatStartsSlowly) {
    FakeKeeper keeper([](KeeperChannel& channel) { confirmNext(channel, 2s); });
    KeeperLink link(keeper.start());
    EXPECT_TRUE(link.protect({}));
}

TEST(KeeperLink, GivesUpAKeeperThatDoesNotConfirm) {
    FakeKeeper keeper([](KeeperChannel& channel) {
        confirmNext(channel);
        confirmNext(channel, 2s);
    });
    KeeperLink link(keeper.start());
    EXPECT_TRUE(link.protect({}));
    EXPECT_FALSE(link.protect({}));
    EXPECT_LT(link.descriptor(), 0);
}

}  // namespace
}  // namespace lomaris::test
