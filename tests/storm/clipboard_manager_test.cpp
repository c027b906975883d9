#include "tests/storm/clipboard_manager.h"

#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"
#include "tests/support/running_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>

namespace lomaris::test {
namespace {

/// The storms beside a program that reads the clipboard after each change and may write to it.
class BesideClipboardManager : public testing::TestWithParam<ClipboardManagerProgram> {
protected:
    void SetUp() override {
        if (const std::string missing = missingPrograms({"firefox-esr", "xdotool", GetParam().program});
            !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        static_cast<void>(stormDesktop());
        manager_ = std::make_unique<ClipboardManager>(GetParam());
    }

    void expectNoViolation(const std::string& name, const std::function<Findings(const StormSettings&)>& storm) {
        constexpr int shareOfRounds = 5;
        const StormSettings settings{.rounds = std::max(1, stormOptions().rounds / shareOfRounds),
                                     .timeForManager = GetParam().timeToNotice};
        const Findings findings = storm(settings);
        std::cout << name << ": " << findings.summary() << std::flush;
        EXPECT_FALSE(findings.hasViolations()) << "the violations of " << name << " are listed above";
        EXPECT_TRUE(manager_->runs()) << "the manager ended during " << name;
    }

private:
    std::unique_ptr<ClipboardManager> manager_;
};

TEST_P(BesideClipboardManager, ReturnsNoOtherTextAndRestoresTheClipboard) {
    expectNoViolation("reads of nothing", runReadsOfNothing);
    expectNoViolation("pairs of reads", runPairsOfReads);
    expectNoViolation("pastes with others", runPastesWithOthers);
    expectNoViolation("killed calls", runKilledCalls);
}

constexpr auto nameOfManager = [](const auto& tested) { return tested.param.name; };

INSTANTIATE_TEST_SUITE_P(Real, BesideClipboardManager, testing::Values(parcellite(), clipman(), copyQ()),
                         nameOfManager);

}  // namespace
}  // namespace lomaris::test
