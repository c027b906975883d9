#include "platform/linux/process/linux_process.h"

#include <gtest/gtest.h>

#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <string>
#include <thread>

namespace lomaris::test {
namespace {

TEST(NameOfProcess, IsTheShortNameOfItsProgram) { EXPECT_EQ(nameOfProcess(getpid()), "lomaris_linux_t"); }

TEST(NameOfProcess, MayContainLineFeeds) {
    const pid_t process = fork();
    if (process == 0) {
        prctl(PR_SET_NAME, "two\nlines\n");
        raise(SIGSTOP);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, WUNTRACED), process);
    EXPECT_EQ(nameOfProcess(process), "two\nlines\n");
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

TEST(NameOfProcess, IsNoneForAProcessThatHasEnded) {
    const pid_t process = fork();
    if (process == 0) {
        _exit(0);
    }
    siginfo_t ended{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(process), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(nameOfProcess(process), std::nullopt) << "its parent has not reaped it";
    waitpid(process, nullptr, 0);
    EXPECT_EQ(nameOfProcess(process), std::nullopt);
}

TEST(NameOfProcess, IsNoneForAThread) {
    std::optional<std::string> name = "none";
    std::thread([&name] { name = nameOfProcess(static_cast<ProcessIdentifier>(syscall(SYS_gettid))); }).join();
    EXPECT_EQ(name, std::nullopt);
}

TEST(NameOfProcess, IsNoneForInvalidIdentifiers) {
    for (const ProcessIdentifier process : {0, -1, 0x7fffffff}) {
        EXPECT_EQ(nameOfProcess(process), std::nullopt) << process;
    }
}

}  // namespace
}  // namespace lomaris::test
