#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"

#include <gtest/gtest.h>

namespace lomaris::test {

namespace {

constexpr int longestDistance = 120;

void classify(Findings& findings, const ProcessResult& result) {
    if (result == ProcessResult{0, std::string(Browser::selection) + "\n", ""}) {
        findings.countOutcome("the selection");
    } else if (isDocumentedError(result)) {
        findings.countOutcome("failed: " + result.error.substr(0, result.error.size() - 1));
    } else {
        findings.addViolation("a read returned what was not selected", testing::PrintToString(result));
    }
}

}  // namespace

Findings runPairsOfReads(const StormSettings& settings) {
    Findings findings;
    RandomMoments moments;
    StormDesktop& desktop = stormDesktop();
    for (int round = 0; round < settings.rounds; ++round) {
        desktop.startRound(findings, settings.timeForManager);
        StartedProcess first(toolCommandLine({"read-selection"}));
        const int distance = moments.sleepBetween(0, longestDistance);
        StartedProcess second(toolCommandLine({"read-selection"}));
        findings.startRound("second read after " + std::to_string(distance) + " ms");
        classify(findings, first.wait());
        classify(findings, second.wait());
        desktop.expectDocument(findings, {Browser::document});
        desktop.expectClipboard(findings, "after two reads", UserClipboard::contents());
        desktop.expectNothingLeft(findings);
    }
    return findings;
}

}  // namespace lomaris::test
