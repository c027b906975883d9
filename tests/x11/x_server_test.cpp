#include "platform/native_platform.h"
#include "tests/support/running_program.h"
#include "tests/support/waiting.h"
#include "tests/x11/second_server.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace lomaris::test {
namespace {

/// A second X server, which a test may freeze or kill, as the display of this process.
class XServer : public SecondServer {
protected:
    /// Expects the results without an X server: no front application, counters 0, and a process known by its name.
    static void expectNothingOf(Platform& platform) {
        EXPECT_EQ(platform.workspace().frontmostApplication(), std::nullopt);
        EXPECT_EQ(platform.events().inputCounter(InputEventType::keyDown), 0U);
        EXPECT_FALSE(platform.events().preflightPostEventAccess());
        EXPECT_EQ(platform.workspace().runningApplication(getpid()),
                  (RunningApplication{getpid(), std::nullopt, Text(u"lomaris_x11_tes")}));
    }
};

TEST_F(XServer, IsGivenUpIfItHangsFromTheStart) {
    server().freeze();
    expectNothingOf(*nativePlatform());
}

TEST_F(XServer, IsGivenUpIfItHangsLater) {
    const auto platform = nativePlatform();
    ASSERT_TRUE(platform->events().preflightPostEventAccess());
    server().freeze();
    expectNothingOf(*platform);
}

TEST_F(XServer, IsGivenUpIfItExits) {
    const auto platform = nativePlatform();
    ASSERT_TRUE(platform->events().preflightPostEventAccess());
    server().end();
    expectNothingOf(*platform);
}

TEST_F(XServer, HasNoFrontApplicationWithoutAWindow) {
    EXPECT_EQ(nativePlatform()->workspace().frontmostApplication(), std::nullopt);
}

TEST_F(XServer, IsOptional) {
    for (const char* const display : {"", ":64999", "nonsense", ":0:0", "unix:nowhere"}) {
        setenv("DISPLAY", display, 1);
        expectNothingOf(*nativePlatform());
    }
    unsetenv("DISPLAY");
    expectNothingOf(*nativePlatform());
}

}  // namespace
}  // namespace lomaris::test
