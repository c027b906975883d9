#pragma once

#include "platform/native_platform.h"
#include "tests/support/running_program.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {

/// A second X server, which a test may freeze or kill, as the display of this process. It has two screens.
class SecondServer : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingPrograms({"Xvfb"}); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        display_ = std::getenv("DISPLAY");
        authority_ = std::getenv("XAUTHORITY");
        unsetenv("XAUTHORITY");
        // Larger than the numbers that servers choose, and different for each process.
        const std::string number = std::to_string(1000 + getpid() % 50000);
        server_ = std::make_unique<RunningProgram>(
            std::vector<std::string>{"Xvfb", ":" + number, "-noreset", "-screen", "1", "640x480x24"});
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

private:
    std::string display_;
    std::string authority_;
    std::unique_ptr<RunningProgram> server_;
};

}  // namespace lomaris::test
