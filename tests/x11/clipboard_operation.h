#pragma once

#include "platform/linux/x11/clipboard/keeper_process.h"
#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_successors.h"
#include "tests/x11/clipboard_world.h"
#include "tests/x11/user_clipboard.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lomaris::test {

inline constexpr const char* holdSelection = "_LOMARIS_CLIPBOARD_OPERATION";
inline constexpr const char* keeperSelection = "_LOMARIS_CLIPBOARD_KEEPER";

/// The clipboard, as an operation of the tool uses it. The process may be killed at any time.
class Operation {
public:
    explicit Operation(KeeperStart start = forkKeeper)
        : pasteboard_(scheduling_, std::move(start), [this](bool isProtected) { protection.push_back(isProtected); }) {}

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

    /// Begins an operation, saves and stages, as a read does.
    void beginRead() {
        ASSERT_TRUE(begin());
        save();
        stage("");
    }

    std::shared_ptr<TestProvider> provider;
    /// The arguments of all calls of the protection listener.
    std::vector<bool> protection;

private:
    LinuxScheduling scheduling_;
    LinuxPasteboard pasteboard_;
    std::unique_ptr<PasteboardHold> hold_;
    std::vector<PasteboardItemContents> saved_;
};

/// Another process that performs `act` and then waits. It is killed, without clean-up, by `die` or on destruction.
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
                operation.scheduling().runLoopSlice(std::chrono::milliseconds(10));
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

    /// Keepers of earlier tests end when another program owns the clipboard.
    static void endKeepers() {
        { const OtherOwner owner({}); }
        ASSERT_TRUE(successorsBecome(0));
    }

private:
    std::optional<UserClipboard> user_;
};

}  // namespace lomaris::test
