#include "tests/platform/workspace_contract.h"

#include <optional>

namespace lomaris::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WorkspaceContract);

namespace {

TEST_P(WorkspaceContract, ReturnsTheFrontmostApplication) {
    EXPECT_EQ(workspace().frontmostApplication(), std::optional(world().first()));
    EXPECT_EQ(workspace().frontmostApplication(), std::optional(world().first()));
}

TEST_P(WorkspaceContract, FindsRunningApplications) {
    EXPECT_EQ(workspace().runningApplication(world().first().processIdentifier), std::optional(world().first()));
    EXPECT_EQ(workspace().runningApplication(world().second().processIdentifier), std::optional(world().second()));
}

TEST_P(WorkspaceContract, FindsNothingForAMissingProcess) {
    EXPECT_EQ(workspace().runningApplication(world().missingProcess()), std::nullopt);
    EXPECT_EQ(workspace().runningApplication(0), std::nullopt);
    EXPECT_EQ(workspace().runningApplication(-1), std::nullopt);
}

TEST_P(WorkspaceContract, ReportsASwitchToAnotherApplication) {
    ASSERT_EQ(workspace().frontmostApplication(), std::optional(world().first()));
    world().bringSecondToFront();
    EXPECT_EQ(workspace().frontmostApplication(), std::optional(world().second()));
}

TEST_P(WorkspaceContract, ForgetsAnApplicationThatQuit) {
    const RunningApplication first = world().first();
    world().quitFirst();
    EXPECT_EQ(workspace().runningApplication(first.processIdentifier), std::nullopt);
    EXPECT_NE(workspace().frontmostApplication(), std::optional(first));
}

}  // namespace
}  // namespace lomaris::test
