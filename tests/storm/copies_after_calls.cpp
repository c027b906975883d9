#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"

namespace lomaris::test {

Findings runCopiesAfterCalls(const StormCourse& course) {
    constexpr int longestDistance = 10;
    Findings findings;
    RandomMoments moments;
    StormDesktop& desktop = stormDesktop();
    desktop.startRound(findings, course.timeForManager);
    for (int round = 0; round < course.rounds; ++round) {
        const ProcessResult result = runTool({"read-selection"});
        const int distance = moments.sleepBetween(0, longestDistance);
        findings.startRound("copy " + std::to_string(distance) + " ms after a read");
        findings.countOutcome(result.status == 0 ? "the selection" : "failed");
        // Another program owns the clipboard from the start of this on.
        desktop.startRound(findings, course.timeForManager);
    }
    return findings;
}

}  // namespace lomaris::test
