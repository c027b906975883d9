#include "tests/support/waiting.h"
#include "tests/x11/clipboard_operation.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/other_client.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

namespace lomaris::test {
namespace {

using namespace std::chrono_literals;

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

TEST_F(ClipboardKeeper, DoesNotOverwriteACopyOfAnotherProgram) {
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
    // Long enough for a keeper that restores at once.
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

TEST_F(ClipboardKeeper, KeepsThePastedTextAfterANormalEnd) {
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

TEST_F(ClipboardKeeper, CallsTheProviderWhenItsTextWasRead) {
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

TEST_F(ClipboardKeeper, RestoresOnlyOverALateCopyOfTheTarget) {
    // The target is the program with a window of this process.
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

TEST_F(ClipboardKeeper, IsOptionalIfItCannotBeStarted) {
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

TEST_F(ClipboardKeeper, IsReplacedByTheProcessItselfIfItIsKilledBeforeThePaste) {
    Operation operation;
    ASSERT_TRUE(operation.begin());
    operation.save();
    operation.stage("pasted");
    operation.hold().expectPaste(300ms, 60s);
    const std::int64_t staged = operation.pasteboard().changeCount();
    kill(successors().at(0), SIGKILL);
    ASSERT_TRUE(successorsBecome(0));
    operation.scheduling().runLoopSlice(20ms);
    EXPECT_EQ(operation.pasteboard().changeCount(), staged);
    EXPECT_EQ(whileServing(operation.scheduling(), [] { return OtherReader().read("UTF8_STRING"); }),
              (PropertyValue{"UTF8_STRING", 8, "pasted"}));
    EXPECT_EQ(operation.provider->asked, std::vector<PasteboardType>{stringType});
    EXPECT_EQ(operation.pasteboard().changeCount(), staged);
    EXPECT_TRUE(operation.hold().retake());
    operation.restore();
    EXPECT_TRUE(whileServing(operation.scheduling(), &UserClipboard::isIntact));
    operation.end();
}

TEST_F(ClipboardKeeper, IsReplacedByAnotherProgramThatCopiesAfterItWasKilled) {
    Operation operation;
    operation.beginRead();
    const std::int64_t staged = operation.pasteboard().changeCount();
    kill(successors().at(0), SIGKILL);
    ASSERT_TRUE(successorsBecome(0));
    const OtherOwner other({{"UTF8_STRING", {"", 8, "newer"}}});
    operation.scheduling().runLoopSlice(20ms);
    EXPECT_GT(operation.pasteboard().changeCount(), staged);
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "newer"}));
}

TEST_F(ClipboardKeeper, ReportsProtectionUntilItIsKilled) {
    Operation operation;
    operation.beginRead();
    EXPECT_EQ(operation.protection, std::vector<bool>{true});
    kill(successors().at(0), SIGKILL);
    ASSERT_TRUE(successorsBecome(0));
    operation.scheduling().runLoopSlice(20ms);
    EXPECT_EQ(operation.protection, (std::vector<bool>{true, false}));
    operation.restore();
    operation.end();
    operation.beginRead();
    EXPECT_EQ(operation.protection, (std::vector<bool>{true, false, false}));
    operation.restore();
}

TEST_F(ClipboardKeeper, ReportsNoProtectionIfAWriteFindsItGone) {
    Operation operation;
    operation.beginRead();
    kill(successors().at(0), SIGKILL);
    ASSERT_TRUE(successorsBecome(0));
    operation.restore();
    EXPECT_EQ(operation.protection, (std::vector<bool>{true, false}));
}

TEST_F(ClipboardKeeper, IsASeparateProgramForAProcessWithThreads) {
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

/// Lets the system call close_range fail from now on in this process and its children, as on an older kernel.
bool forbidCloseRange() {
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_close_range, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{.len = static_cast<unsigned short>(program.size()), .filter = program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST_F(ClipboardKeeper, InheritsNoFileWithoutCloseRange) {
    constexpr int high = 900;
    constexpr rlim_t low = 100;
    std::array<int, 2> pipeEnds{};
    ASSERT_EQ(pipe(pipeEnds.data()), 0);
    const pid_t process = fork();
    if (process == 0) {
        // The number of this file is above the limit for new files.
        dup2(pipeEnds[1], high);
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = low;
        setrlimit(RLIMIT_NOFILE, &limit);
        if (!forbidCloseRange()) {
            _exit(1);
        }
        Operation operation;
        operation.beginRead();
        operation.restore();
        operation.end();
        operation.pasteboard().finish();
        _exit(0);
    }
    close(pipeEnds[1]);
    int status = 0;
    waitpid(process, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) != 0) {
        close(pipeEnds[0]);
        GTEST_SKIP() << "this system does not let a process filter its system calls";
    }
    EXPECT_EQ(successors().size(), 1U);
    // The descriptor is readable once no process has the other end open.
    pollfd request{.fd = pipeEnds[0], .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&request, 1, 0), 1);
    close(pipeEnds[0]);
}

/// The number of memory files that the keeper has open.
std::size_t memoryFiles() {
    std::size_t count = 0;
    std::error_code error;
    const auto keeper = std::filesystem::path("/proc") / std::to_string(successors().at(0)) / "fd";
    for (const auto& entry : std::filesystem::directory_iterator(keeper)) {
        count += std::filesystem::read_symlink(entry, error).string().find("memfd:") != std::string::npos ? 1U : 0U;
    }
    return count;
}

TEST_F(ClipboardKeeper, DropsTheSavedContentsAfterTheOperation) {
    Operation operation;
    operation.beginRead();
    EXPECT_EQ(memoryFiles(), 1U);
    operation.restore();
    operation.end();
    EXPECT_TRUE(waitFor([] { return memoryFiles() == 0; }));
}

TEST_F(ClipboardKeeper, DropsTheSavedContentsAfterADeath) {
    DyingProcess process([](Operation& operation) {
        operation.beginRead();
        operation.hold().expectCopy(getpid(), 2s);
    });
    process.die();
    ASSERT_TRUE(waitFor(&UserClipboard::isIntact));
    EXPECT_EQ(memoryFiles(), 1U) << "the target may copy late";
    EXPECT_TRUE(waitFor([] { return memoryFiles() == 0; }));
    EXPECT_TRUE(UserClipboard::isIntact());
}

TEST_F(ClipboardKeeper, IsOptionalIfItsProgramIsMissing) {
    Operation operation([] { return spawnKeeper("/nonexistent/keeper"); });
    operation.beginRead();
    operation.restore();
    operation.end();
    EXPECT_TRUE(isFree());
}

}  // namespace
}  // namespace lomaris::test
