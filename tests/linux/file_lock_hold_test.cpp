#include "platform/posix/file_lock_hold.h"
#include "tests/support/temporary_directory.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>

namespace lomaris::test {
namespace {

class FileLock : public testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<PasteboardHold> tryHold() const { return FileLockHold::tryHold(path); }

    TemporaryDirectory directory;
    std::string path = directory.path() / "lock";
};

TEST_F(FileLock, IsHeldOnceAtATime) {
    auto hold = tryHold();
    ASSERT_NE(hold, nullptr);
    EXPECT_EQ(tryHold(), nullptr);
    EXPECT_TRUE(hold->retake());
    EXPECT_EQ(tryHold(), nullptr);
    hold.reset();
    EXPECT_NE(tryHold(), nullptr);
}

TEST_F(FileLock, IsReleasedWhenItsOwnerDies) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t process = fork();
    if (process == 0) {
        const auto hold = tryHold();
        const char done = hold ? '.' : 'x';
        static_cast<void>(!write(ends[1], &done, 1));
        for (;;) {
            pause();
        }
    }
    char done = 0;
    ASSERT_EQ(read(ends[0], &done, 1), 1);
    EXPECT_EQ(done, '.');
    EXPECT_EQ(tryHold(), nullptr);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
    EXPECT_NE(tryHold(), nullptr);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(FileLock, DoesNotExcludeIfTheFileCannotBeOpened) {
    path = directory.path() / "missing" / "lock";
    const auto hold = tryHold();
    EXPECT_NE(hold, nullptr);
    EXPECT_NE(tryHold(), nullptr);
}

TEST_F(FileLock, DoesNotFollowSymbolicLinks) {
    std::filesystem::create_symlink(directory.path() / "other", path);
    const auto hold = tryHold();
    EXPECT_NE(hold, nullptr);
    EXPECT_FALSE(std::filesystem::exists(directory.path() / "other"));
}

}  // namespace
}  // namespace lomaris::test
