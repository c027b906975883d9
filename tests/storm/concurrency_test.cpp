#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"
#include "tests/support/running_program.h"

#include <gtest/gtest.h>

#include <iostream>

namespace lomaris::test {
namespace {

class Concurrency : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingPrograms({"firefox-esr", "xdotool"}); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
};

void expectNoViolation(const Findings& findings) {
    std::cout << findings.summary();
    EXPECT_FALSE(findings.hasViolations()) << "the violations are listed above";
}

TEST_F(Concurrency, PairsOfReadsReturnTheSelectionOrFail) {
    const Findings findings = runPairsOfReads({.rounds = stormOptions().rounds});
    expectNoViolation(findings);
    // Only one call at a time uses the clipboard, so both calls of a pair succeed except on a very slow machine.
    EXPECT_GE(findings.countOf("the selection"), findings.rounds());
}

TEST_F(Concurrency, PastesWriteOnceBesideOtherCalls) {
    const Findings findings = runPastesWithOthers({.rounds = stormOptions().rounds});
    expectNoViolation(findings);
    EXPECT_GE(2 * findings.countOf("replaced"), findings.rounds());
}

TEST_F(Concurrency, KilledCallsRestoreTheUsersClipboard) {
    expectNoViolation(runKilledCalls({.rounds = stormOptions().rounds}));
}

TEST_F(Concurrency, ProcessesEndIfTheUserCopiesRightAfterACall) {
    // A round takes a fifth of the time of other rounds, and few rounds hit the critical moment.
    constexpr int roundsInTheTimeOfOne = 5;
    expectNoViolation(runCopiesAfterCalls({.rounds = roundsInTheTimeOfOne * stormOptions().rounds}));
}

TEST_F(Concurrency, ReadsOfNothingFail) { expectNoViolation(runReadsOfNothing({.rounds = 1})); }

}  // namespace
}  // namespace lomaris::test
