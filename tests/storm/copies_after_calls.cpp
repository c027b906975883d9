#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"

namespace lomaris::test {

Findings runCopiesAfterCalls(const StormSettings& settings) {
    constexpr int longestDistance = 10;
    Findings findings;
    RandomMoments moments;
    StormDesktop& desktop = stormDesktop();
    desktop.startRound(findings, settings.timeForManager);
    for (int round = 0; round < settings.rounds; ++round) {
        const ProcessResult result = runTool({"read-selection"});
        const int distance = moments.sleepBetween(0, longestDistance);
        findings.startRound("copy " + std::to_string(distance) + " ms after a read");
        findings.countOutcome(result.status == 0 ? "the selection" : "failed");
        // Makes another program own the clipboard.
        desktop.startRound(findings, settings.timeForManager);
    }
    return findings;
}

}  // namespace lomaris::test
