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
    // One call at a time has the clipboard, so that both calls of a pair succeed on any but a very slow machine.
    EXPECT_GE(findings.countOf("the selection"), findings.rounds());
}

TEST_F(Concurrency, PastesWithOthersWriteOnceAndReturnNoOtherText) {
    const Findings findings = runPastesWithOthers({.rounds = stormOptions().rounds});
    expectNoViolation(findings);
    EXPECT_GE(2 * findings.countOf("replaced"), findings.rounds());
}

TEST_F(Concurrency, KilledCallsLeaveTheUsersClipboard) {
    expectNoViolation(runKilledCalls({.rounds = stormOptions().rounds}));
}

TEST_F(Concurrency, ProcessesEndWhenTheUserCopiesRightAfterACall) {
    // A round takes a fifth of the time that others take, and few of them meet the moment that matters.
    constexpr int roundsInTheTimeOfOne = 5;
    expectNoViolation(runCopiesAfterCalls({.rounds = roundsInTheTimeOfOne * stormOptions().rounds}));
}

TEST_F(Concurrency, ReadsOfNothingFail) { expectNoViolation(runReadsOfNothing({.rounds = 1})); }

}  // namespace
}  // namespace lomaris::test
