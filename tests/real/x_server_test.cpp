#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/running_program.h"
#include "tests/real/waiting.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace lomaris::test {
namespace {

/// A second X server, which a test may freeze or kill, as the display of this process.
class XServer : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingPrograms({"Xvfb"}); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        display_ = std::getenv("DISPLAY");
        authority_ = std::getenv("XAUTHORITY");
        unsetenv("XAUTHORITY");
        // Far from the numbers that servers choose for themselves, and this process's own.
        const std::string number = std::to_string(1000 + getpid() % 50000);
        server_ = std::make_unique<RunningProgram>(std::vector<std::string>{"Xvfb", ":" + number, "-noreset"});
        setenv("DISPLAY", (":" + number).c_str(), 1);
        ASSERT_TRUE(waitFor([] { return nativePlatform()->events().preflightPostEventAccess(); }));
    }

    void TearDown() override {
        if (!display_.empty()) {
            setenv("DISPLAY", display_.c_str(), 1);
            setenv("XAUTHORITY", authority_.c_str(), 1);
        }
    }

    [[nodiscard]] RunningProgram& server() { return *server_; }

    /// What is left without an X server: no front application, no input, and a process by its name.
    static void expectNothingOf(Platform& platform) {
        EXPECT_EQ(platform.workspace().frontmostApplication(), std::nullopt);
        EXPECT_EQ(platform.events().inputCounter(InputEventType::keyDown), 0U);
        EXPECT_FALSE(platform.events().preflightPostEventAccess());
        EXPECT_EQ(platform.workspace().runningApplication(getpid()),
                  (RunningApplication{getpid(), std::nullopt, Text(u"lomaris_real_te")}));
    }

private:
    std::string display_;
    std::string authority_;
    std::unique_ptr<RunningProgram> server_;
};

TEST_F(XServer, IsGivenUpWhereItHangsFromTheStart) {
    server().freeze();
    expectNothingOf(*nativePlatform());
}

TEST_F(XServer, IsGivenUpWhereItHangsLater) {
    const auto platform = nativePlatform();
    ASSERT_TRUE(platform->events().preflightPostEventAccess());
    server().freeze();
    expectNothingOf(*platform);
}

TEST_F(XServer, IsGivenUpWhereItEnds) {
    const auto platform = nativePlatform();
    ASSERT_TRUE(platform->events().preflightPostEventAccess());
    server().end();
    expectNothingOf(*platform);
}

TEST_F(XServer, HasNoFrontApplicationWithoutAWindow) {
    EXPECT_EQ(nativePlatform()->workspace().frontmostApplication(), std::nullopt);
}

TEST_F(XServer, NeedNotBeThere) {
    for (const char* const display : {"", ":64999", "nonsense", ":0:0", "unix:nowhere"}) {
        setenv("DISPLAY", display, 1);
        expectNothingOf(*nativePlatform());
    }
    unsetenv("DISPLAY");
    expectNothingOf(*nativePlatform());
}

}  // namespace
}  // namespace lomaris::test
