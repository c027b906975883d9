#include "tests/bridge/process_world.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using test::failure;
using test::ProcessOptions;
using test::ProcessResult;
using test::runTool;
using test::withoutDesktop;

const ProcessResult outputFailure = failure("Could not write to standard output.");

using ProcessWithoutDesktop = test::WithoutDesktopTest;

TEST(Process, PrintsTheUsageTextForHelpAndWithoutArguments) {
    const ProcessResult help = runTool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.output.size(), 1049U);
    EXPECT_EQ(std::count(help.output.begin(), help.output.end(), '\n'), 21);
    EXPECT_EQ(help.error, "");
    EXPECT_EQ(runTool({"-h"}), help);
    EXPECT_EQ(runTool({}), help);
}

TEST(Process, EndsWithOneLineAndStatusOneForBadArguments) {
    EXPECT_EQ(runTool({"read-selection", "--delay", "61"}), failure("--delay must be between 0 and 60 seconds."));
    EXPECT_EQ(runTool({"bo\xffgus"}), failure("Unknown command \"bo\ufffdgus\"."));
}

TEST_F(ProcessWithoutDesktop, PrintsNotGrantedWithStatusTwo) {
    EXPECT_EQ(runTool({"permission-status"}, withoutDesktop()), (ProcessResult{2, "not-granted\n", ""}));
    EXPECT_EQ(runTool({"permission-status", "--prompt"}, withoutDesktop()), (ProcessResult{2, "not-granted\n", ""}));
}

TEST_F(ProcessWithoutDesktop, ReportsMissingPermission) {
    for (const auto& arguments : std::vector<std::vector<std::string>>{{"read-selection", "--json"},
                                                                       {"replace-selection", "--replacement", "x"},
                                                                       {"diagnose-selection"},
                                                                       {"compatibility-check"}}) {
        EXPECT_EQ(runTool(arguments, withoutDesktop()), test::permissionRequired()) << arguments.at(0);
    }
}

TEST(Process, ReportsAnOutputThatIsFull) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    ProcessOptions options = withoutDesktop();
    options.outputFile = "/dev/full";
    EXPECT_EQ(runTool({"--help"}, options), outputFailure);
}

TEST(Process, ReportsAnOutputThatIsClosed) {
    ProcessOptions options = withoutDesktop();
    options.closedDescriptors = {1};
    EXPECT_EQ(runTool({"--help"}, options), outputFailure);
    options.closedDescriptors = {0, 1};
    EXPECT_EQ(runTool({"--help"}, options), outputFailure);
}

TEST(Process, ReportsAClosedReader) {
    ProcessOptions options = withoutDesktop();
    options.readerGoesAway = true;
    EXPECT_EQ(runTool({"--help"}, options), outputFailure);
}

TEST_F(ProcessWithoutDesktop, ReportsAnOutputThatIsFull) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "this system has no /dev/full";
    }
    ProcessOptions options = withoutDesktop();
    options.outputFile = "/dev/full";
    EXPECT_EQ(runTool({"permission-status"}, options), outputFailure);
}

TEST_F(ProcessWithoutDesktop, ReportsAnOutputWithoutAReader) {
    ProcessOptions closed = withoutDesktop();
    closed.closedDescriptors = {1};
    EXPECT_EQ(runTool({"permission-status"}, closed), outputFailure);
    ProcessOptions unread = withoutDesktop();
    unread.readerGoesAway = true;
    EXPECT_EQ(runTool({"permission-status"}, unread), outputFailure);
}

TEST(Process, KeepsItsStatusIfStandardErrorIsClosed) {
    ProcessOptions options = withoutDesktop();
    options.closedDescriptors = {2};
    EXPECT_EQ(runTool({"bogus"}, options), (ProcessResult{1, "", ""}));
}

}  // namespace
}  // namespace lomaris
