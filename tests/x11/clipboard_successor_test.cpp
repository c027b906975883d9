#include "tests/x11/clipboard_other_owner.h"
#include "tests/x11/clipboard_other_reader.h"
#include "tests/x11/clipboard_successors.h"
#include "tests/x11/clipboard_world.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>

namespace lomaris::test {
namespace {

class ClipboardSuccessor : public Clipboard {
protected:
    void SetUp() override {
        // Keepers of earlier tests end here.
        { const OtherOwner owner({}); }
        ASSERT_TRUE(successorsBecome(0));
    }
    void TearDown() override { SetUp(); }
};

TEST_F(ClipboardSuccessor, ServesPromisesUntilAnotherProgramCopies) {
    const auto provider = std::make_shared<TestProvider>("promised words");
    ASSERT_TRUE(putPromise(provider, {{concealedType, ""}}));
    end();
    EXPECT_EQ(provider->asked, std::vector<PasteboardType>{stringType});
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "promised words"}));
    EXPECT_EQ(OtherReader().read("STRING"), (PropertyValue{"STRING", 8, "promised words"}));
    EXPECT_EQ(OtherReader().read("x-kde-passwordManagerHint"),
              (PropertyValue{"x-kde-passwordManagerHint", 8, "secret"}));
    EXPECT_EQ(successors().size(), 1U);
    const OtherOwner owner({{"UTF8_STRING", {"", 8, "theirs"}}});
    EXPECT_TRUE(successorsBecome(0));
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "theirs"}));
}

TEST_F(ClipboardSuccessor, ServesLongContents) {
    const Bytes bytes = longBytes(5000000);
    ASSERT_TRUE(put({{"image/png", bytes}}));
    end();
    EXPECT_TRUE(OtherReader().read("image/png") == (PropertyValue{"image/png", 8, bytes}));
}

TEST_F(ClipboardSuccessor, ContinuesATransfer) {
    const Bytes bytes = longBytes(5000000);
    ASSERT_TRUE(put({{"image/png", bytes}}));
    OtherReader reader;
    auto read = std::async(std::launch::async, [&reader] { return reader.read("image/png"); });
    scheduling().runLoopSlice(std::chrono::milliseconds(3));
    end();
    EXPECT_TRUE(read.get() == (PropertyValue{"image/png", 8, bytes}));
}

TEST_F(ClipboardSuccessor, IsAbsentIfNothingIsOwned) {
    static_cast<void>(pasteboard().changeCount());
    end();
    EXPECT_EQ(successors(), std::vector<pid_t>{});
}

TEST_F(ClipboardSuccessor, IsAbsentIfNothingIsOffered) {
    pasteboard().clearContents();
    end();
    EXPECT_TRUE(successorsBecome(0));
    EXPECT_EQ(ClipboardPeer().owner(), xcb_window_t{XCB_WINDOW_NONE});
}

TEST_F(ClipboardSuccessor, LeavesNoPasteboardAndNoChildProcess) {
    ASSERT_TRUE(put({{stringType, "words"}}));
    const std::int64_t count = pasteboard().changeCount();
    pasteboard().finish();
    EXPECT_EQ(contents(), std::vector<Contents>{});
    EXPECT_EQ(pasteboard().string(), std::nullopt);
    EXPECT_EQ(pasteboard().changeCount(), count);
    pasteboard().clearContents();
    EXPECT_FALSE(pasteboard().writeItems({}));
    pasteboard().finish();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "words"}));
}

TEST_F(ClipboardSuccessor, ClosesTheOutputsOfTheProcess) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t process = fork();
    if (process == 0) {
        dup2(ends[1], STDOUT_FILENO);
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        const bool isTaken = put({{stringType, "words"}});
        end();
        _exit(isTaken ? 0 : 1);
    }
    close(ends[1]);
    char byte = 0;
    // Blocks forever if a process keeps the output open.
    EXPECT_EQ(read(ends[0], &byte, 1), 0);
    close(ends[0]);
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(OtherReader().read("UTF8_STRING"), (PropertyValue{"UTF8_STRING", 8, "words"}));
    const std::vector<pid_t> left = successors();
    ASSERT_EQ(left.size(), 1U);
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/" + std::to_string(left[0]) + "/fd")) {
        const std::string target = std::filesystem::read_symlink(entry.path());
        files.push_back(target.substr(0, target.find('[')));
    }
    std::sort(files.begin(), files.end());
    EXPECT_EQ(files, (std::vector<std::string>{"/dev/null", "/dev/null", "/dev/null", "socket:"}));
    EXPECT_EQ(getsid(left[0]) == getsid(0), false);
}

}  // namespace
}  // namespace lomaris::test
