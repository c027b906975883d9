#include "platform/linux/keeper_process.h"
#include "tests/support/waiting.h"
#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_successors.h"
#include "tests/x11/clipboard_world.h"
#include "tests/x11/other_client.h"
#include "tests/x11/user_clipboard.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

namespace lomaris::test {
namespace {

using namespace std::chrono_literals;

constexpr const char* holdSelection = "_LOMARIS_CLIPBOARD_OPERATION";
constexpr const char* keeperSelection = "_LOMARIS_CLIPBOARD_KEEPER";

/// The clipboard as a process uses it that may die at any moment.
class Operation {
public:
    explicit Operation(KeeperStart start = forkKeeper) : pasteboard_(scheduling_, std::move(start)) {}

    [[nodiscard]] LinuxPasteboard& pasteboard() { return pasteboard_; }
    [[nodiscard]] LinuxScheduling& scheduling() { return scheduling_; }
    [[nodiscard]] PasteboardHold& hold() { return *hold_; }
    [[nodiscard]] bool begin() {
        hold_ = pasteboard_.tryHold();
        return hold_ != nullptr;
    }
    void end() { hold_.reset(); }

    void save() {
        saved_.clear();
        for (const auto& item : pasteboard_.items()) {
            PasteboardItemContents& contents = saved_.emplace_back();
            for (const auto& type : item->types()) {
                if (auto bytes = item->data(type)) {
                    contents.emplace_back(type, std::move(*bytes));
                }
            }
        }
        hold_->protect(saved_);
    }

    void stage(const Bytes& text) {
        std::vector<NewPasteboardItem> items(1);
        items[0].data = {{concealedType, ""}, {transientType, ""}};
        items[0].promisedTypes = {stringType};
        items[0].provider = provider = std::make_shared<TestProvider>(text);
        pasteboard_.clearContents();
        EXPECT_TRUE(pasteboard_.writeItems(std::move(items)));
    }

    void restore() {
        std::vector<NewPasteboardItem> items;
        for (const auto& contents : saved_) {
            items.push_back({.data = contents, .promisedTypes = {}, .provider = nullptr});
        }
        pasteboard_.clearContents();
        EXPECT_TRUE(pasteboard_.writeItems(std::move(items)));
    }

    /// Begins, saves and stages, as a read does.
    void beginRead() {
        ASSERT_TRUE(begin());
        save();
        stage("");
    }

    std::shared_ptr<TestProvider> provider;

private:
    LinuxScheduling scheduling_;
    LinuxPasteboard pasteboard_;
    std::unique_ptr<PasteboardHold> hold_;
    std::vector<PasteboardItemContents> saved_;
};

/// Another process that performs `act` and then dies without any clean-up, at once or when told to.
class DyingProcess {
public:
    explicit DyingProcess(const std::function<void(Operation&)>& act) {
        if (pipe(ends_.data()) != 0) {
            throw std::runtime_error("no pipe");
        }
        process_ = fork();
        if (process_ == 0) {
            Operation operation;
            act(operation);
            const char done = testing::Test::HasFailure() ? 'x' : '.';
            static_cast<void>(!write(ends_[1], &done, 1));
            for (;;) {
                operation.scheduling().runLoopSlice(10ms);
            }
        }
        char done = 0;
        EXPECT_EQ(read(ends_[0], &done, 1), 1);
        EXPECT_EQ(done, '.') << "the process failed";
    }
    DyingProcess(const DyingProcess&) = delete;
    DyingProcess& operator=(const DyingProcess&) = delete;
    ~DyingProcess() {
        die();
        close(ends_[0]);
        close(ends_[1]);
    }

    void die() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
            process_ = -1;
        }
    }

private:
    std::array<int, 2> ends_{};
    pid_t process_ = -1;
};

class ClipboardKeeper : public testing::Test {
protected:
    void SetUp() override {
        static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
        endKeepers();
        user_.emplace();
    }
    void TearDown() override {
        user_.reset();
        endKeepers();
    }

    [[nodiscard]] static bool isOwned(const char* selection) {
        ClipboardPeer peer;
        xcb_get_selection_owner_reply_t* const reply = xcb_get_selection_owner_reply(
            peer.handle(), xcb_get_selection_owner(peer.handle(), peer.atom(selection)), nullptr);
        const bool isOwned = reply != nullptr && reply->owner != XCB_WINDOW_NONE;
        std::free(reply);
        return isOwned;
    }
    [[nodiscard]] static bool isFree() { return !isOwned(holdSelection) && !isOwned(keeperSelection); }

    void forgetUser() { user_.reset(); }

    /// Whatever earlier tests left behind ends when another program owns the clipboard.
    static void endKeepers() {
        { const OtherOwner owner({}); }
        ASSERT_TRUE(successorsBecome(0));
    }

private:
    std::optional<UserClipboard> user_;
};

TEST_F(ClipboardKeeper, RestoresEverythingAfterADeathDuringARead) {
    DyingProcess process([](Operation& operation) { operation.beginRead(); });
    EXPECT_FALSE(UserClipboard::isIntact());
    EXPECT_FALSE(isFree());
    process.die();
    EXPECT_TRUE(waitFor(&UserClipboard::isIntact));
    EXPECT_TRUE(waitFor(&isFree));
    EXPECT_EQ(successors().size(), 1U);
}

TEST_F(ClipboardKeeper, ChangesNothingAfterADeathBeforeTheFirstWrite) {
    DyingProcess process([](Operation& operation) {
        ASSERT_TRUE(operation.begin());
        operation.save();
    });
    const xcb_window_t owner = ClipboardPeer().owner();
    process.die();
    EXPECT_TRUE(waitFor(&isFree));
    EXPECT_EQ(ClipboardPeer().owner(), owner);
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_TRUE(successorsBecome(0));
}

TEST_F(ClipboardKeeper, RestoresAnEmptyClipboard) {
    forgetUser();
    ASSERT_EQ(ClipboardPeer().owner(), xcb_window_t{XCB_WINDOW_NONE});
    DyingProcess process([](Operation& operation) { operation.beginRead(); });
    EXPECT_NE(ClipboardPeer().owner(), xcb_window_t{XCB_WINDOW_NONE});
    process.die();
    EXPECT_TRUE(successorsBecome(0));
    EXPECT_EQ(ClipboardPeer().owner(), xcb_window_t{XCB_WINDOW_NONE});
}

TEST_F(ClipboardKeeper, LeavesWhatAnotherProgramCopiedAlone) {
    DyingProcess process([](Operation& operation) {
        operation.beginRead();
        operation.hold().expectCopy(getpid(), 1s);
    });
    const OtherOwner other({{"UTF8_STRING", {"", 8, "newer"}}});
    process.die();
    EXPECT_TRUE(successorsBecome(0));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "newer"}));
}

TEST_F(ClipboardKeeper, KeepsThePastedTextAfterADeathUntilItIsRead) {
    DyingProcess process([](Operation& operation) {
        ASSERT_TRUE(operation.begin());
        operation.save();
        operation.stage("pasted");
        operation.hold().expectPaste(300ms, 60s);
    });
    process.die();
    // Longer than a keeper takes that restores at once.
    std::this_thread::sleep_for(50ms);
    EXPECT_TRUE(isOwned(keeperSelection));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "pasted"}));
    EXPECT_TRUE(waitFor(&UserClipboard::isIntact));
    EXPECT_TRUE(waitFor(&isFree));
}

TEST_F(ClipboardKeeper, RestoresAfterADeathIfThePastedTextIsNeverRead) {
    DyingProcess process([](Operation& operation) {
        ASSERT_TRUE(operation.begin());
        operation.save();
        operation.stage("pasted");
        operation.hold().expectPaste(50ms, 200ms);
    });
    process.die();
    EXPECT_TRUE(waitFor(&isFree));
    EXPECT_TRUE(UserClipboard::isIntact());
}

TEST_F(ClipboardKeeper, LeavesThePastedTextAfterANormalEndAndReleasesItWhenRead) {
    {
        Operation operation;
        ASSERT_TRUE(operation.begin());
        operation.save();
        operation.stage("pasted");
        operation.hold().expectPaste(300ms, 60s);
        EXPECT_FALSE(isOwned(holdSelection));
        operation.end();
    }
    EXPECT_TRUE(isOwned(keeperSelection));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "pasted"}));
    EXPECT_TRUE(waitFor(&isFree));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "pasted"}));
}

TEST_F(ClipboardKeeper, TellsTheProviderThatItsTextWasRead) {
    Operation operation;
    ASSERT_TRUE(operation.begin());
    operation.save();
    operation.stage("pasted");
    EXPECT_EQ(operation.provider->asked, std::vector<PasteboardType>{});
    EXPECT_EQ(OtherReader().targets().size(), 11U);
    operation.scheduling().runLoopSlice(20ms);
    EXPECT_EQ(operation.provider->asked, std::vector<PasteboardType>{});
    EXPECT_EQ(OtherReader().read("STRING"), (PropertyValue{"STRING", 8, "pasted"}));
    EXPECT_TRUE(waitFor([&] {
        operation.scheduling().runLoopSlice(1ms);
        return operation.provider->asked == std::vector<PasteboardType>{stringType};
    }));
}

TEST_F(ClipboardKeeper, PublishesAfterAChangeBetweenClearingAndWriting) {
    Operation operation;
    operation.pasteboard().clearContents();
    forgetUser();
    std::vector<NewPasteboardItem> items(1);
    items[0].data = {{stringType, "words"}};
    EXPECT_TRUE(operation.pasteboard().writeItems(std::move(items)));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "words"}));
}

TEST_F(ClipboardKeeper, AllowsOneOperationAtATime) {
    Operation other;
    auto process = std::make_unique<DyingProcess>([](Operation& operation) { ASSERT_TRUE(operation.begin()); });
    EXPECT_FALSE(other.begin());
    EXPECT_FALSE(other.begin());
    process->die();
    EXPECT_TRUE(waitFor([&] { return other.begin(); }));
    EXPECT_EQ(other.pasteboard().tryHold(), nullptr);
    other.end();
    EXPECT_NE(other.pasteboard().tryHold(), nullptr);
}

TEST_F(ClipboardKeeper, HoldsTheClipboardForATargetUntilItHasRead) {
    Operation operation;
    Operation other;
    ASSERT_TRUE(operation.begin());
    operation.save();
    operation.stage("pasted");
    operation.hold().expectPaste(300ms, 60s);
    EXPECT_FALSE(other.begin());
    EXPECT_TRUE(operation.hold().retake());
    operation.restore();
    operation.end();
    EXPECT_TRUE(waitFor([&] { return other.begin(); }));
}

TEST_F(ClipboardKeeper, RestoresOverTheLateCopyOfTheTargetOnly) {
    // The target is the program that has a window of this process.
    OtherClient target;
    const xcb_window_t window = target.openWindow(target.root());
    target.setNumbers(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(getpid())});
    target.setNumbers(target.root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, {window});
    DyingProcess process([target = getpid()](Operation& operation) {
        operation.beginRead();
        operation.hold().expectCopy(target, 60s);
    });
    process.die();
    ASSERT_TRUE(waitFor(&UserClipboard::isIntact));
    xcb_set_selection_owner(target.handle(), window, target.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    xcb_flush(target.handle());
    EXPECT_TRUE(waitFor(&UserClipboard::isIntact));
    EXPECT_FALSE(isFree());
    const OtherOwner other({{"UTF8_STRING", {"", 8, "newer"}}});
    EXPECT_TRUE(waitFor(&isFree));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "newer"}));
}

TEST_F(ClipboardKeeper, IsDoneWithoutIfItCannotBeStarted) {
    Operation operation([] { return StartedKeeper(); });
    operation.beginRead();
    EXPECT_EQ(successors(), std::vector<pid_t>{});
    operation.restore();
    EXPECT_TRUE(whileServing(operation.scheduling(), &UserClipboard::isIntact));
    operation.end();
    EXPECT_TRUE(isFree());
}

TEST_F(ClipboardKeeper, IsReplacedByTheProcessItselfIfItIsKilled) {
    Operation operation;
    operation.beginRead();
    const auto keepers = successors();
    ASSERT_EQ(keepers.size(), 1U);
    kill(keepers[0], SIGKILL);
    ASSERT_TRUE(successorsBecome(0));
    operation.restore();
    EXPECT_TRUE(whileServing(operation.scheduling(), &UserClipboard::isIntact));
}

TEST_F(ClipboardKeeper, IsAProgramOfItsOwnForAProcessWithThreads) {
    std::atomic<bool> isOver = false;
    std::thread thread([&] {
        while (!isOver) {
            std::this_thread::sleep_for(1ms);
        }
    });
    {
        Operation operation([] { return spawnKeeper(LOMARIS_KEEPER); });
        operation.beginRead();
        EXPECT_FALSE(UserClipboard::isIntact());
        operation.restore();
    }
    EXPECT_TRUE(UserClipboard::isIntact());
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    isOver = true;
    thread.join();
}

TEST_F(ClipboardKeeper, OfAProgramThatIsMissingIsDoneWithout) {
    Operation operation([] { return spawnKeeper("/nonexistent/keeper"); });
    operation.beginRead();
    operation.restore();
    operation.end();
    EXPECT_TRUE(isFree());
}

}  // namespace
}  // namespace lomaris::test
