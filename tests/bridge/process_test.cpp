#include "tests/support/process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using test::ProcessOptions;
using test::ProcessResult;
using test::runTool;

/// A machine without a desktop, so that what is asked for is always answered the same.
ProcessOptions withoutDesktop() {
    ProcessOptions options;
    options.environment = {{"DISPLAY", std::nullopt},
                           {"WAYLAND_DISPLAY", std::nullopt},
                           {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus"},
                           {"XDG_RUNTIME_DIR", std::nullopt}};
    return options;
}

const std::string outputFailure = "Lomaris macOS bridge: Could not write to standard output.\n";

TEST(Process, PrintsTheUsageTextForHelpAndForNothing) {
    const ProcessResult help = runTool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.output.size(), 1049U);
    EXPECT_EQ(std::count(help.output.begin(), help.output.end(), '\n'), 21);
    EXPECT_EQ(help.error, "");
    EXPECT_EQ(runTool({"-h"}), help);
    EXPECT_EQ(runTool({}), help);
}

TEST(Process, EndsWithOneLineAndStatusOneForBadArguments) {
    EXPECT_EQ(runTool({"read-selection", "--delay", "61"}),
              (ProcessResult{1, "", "Lomaris macOS bridge: --delay must be between 0 and 60 seconds.\n"}));
    EXPECT_EQ(runTool({"bo\xffgus"}),
              (ProcessResult{1, "", "Lomaris macOS bridge: Unknown command \"bo\ufffdgus\".\n"}));
}

TEST(Process, SaysNotGrantedWithStatusTwoWithoutADesktop) {
    EXPECT_EQ(runTool({"permission-status"}, withoutDesktop()), (ProcessResult{2, "not-granted\n", ""}));
    EXPECT_EQ(runTool({"permission-status", "--prompt"}, withoutDesktop()), (ProcessResult{2, "not-granted\n", ""}));
}

TEST(Process, AsksForPermissionWithoutADesktop) {
    EXPECT_EQ(runTool({"read-selection", "--json"}, withoutDesktop()),
              (ProcessResult{1, "",
                             "Lomaris macOS bridge: Accessibility permission is required. Open System Settings > "
                             "Privacy & Security > Accessibility and enable Lomaris (or the terminal running it).\n"}));
}

TEST(Process, ReportsAnOutputThatIsFull) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    ProcessOptions options = withoutDesktop();
    options.outputFile = "/dev/full";
    EXPECT_EQ(runTool({"--help"}, options), (ProcessResult{1, "", outputFailure}));
    EXPECT_EQ(runTool({"permission-status"}, options), (ProcessResult{1, "", outputFailure}));
}

TEST(Process, ReportsAnOutputThatIsClosed) {
    ProcessOptions options = withoutDesktop();
    options.closedDescriptors = {1};
    EXPECT_EQ(runTool({"--help"}, options), (ProcessResult{1, "", outputFailure}));
    EXPECT_EQ(runTool({"permission-status"}, options), (ProcessResult{1, "", outputFailure}));
    options.closedDescriptors = {0, 1};
    EXPECT_EQ(runTool({"--help"}, options), (ProcessResult{1, "", outputFailure}));
}

TEST(Process, ReportsAReaderThatWentAway) {
    ProcessOptions options = withoutDesktop();
    options.readerGoesAway = true;
    EXPECT_EQ(runTool({"--help"}, options), (ProcessResult{1, "", outputFailure}));
    EXPECT_EQ(runTool({"permission-status"}, options), (ProcessResult{1, "", outputFailure}));
}

TEST(Process, StillEndsWithItsStatusWhereStandardErrorIsClosed) {
    ProcessOptions options = withoutDesktop();
    options.closedDescriptors = {2};
    EXPECT_EQ(runTool({"bogus"}, options), (ProcessResult{1, "", ""}));
}

}  // namespace
}  // namespace lomaris
