#include "tests/real/desktop.h"
#include "tests/storm/storm_desktop.h"
#include "tests/storm/storms.h"

#include <gtest/gtest.h>

namespace lomaris::test {

Findings runReadsOfNothing(const StormSettings& settings) {
    Findings findings;
    StormDesktop& desktop = stormDesktop();
    for (int round = 0; round < settings.rounds; ++round) {
        desktop.startRound(findings, settings.timeForManager);
        findings.startRound("nothing selected");
        pressKeys({"Right"});
        if (!Browser::comesToShow(Browser::document, "19-19")) {
            findings.addViolation("the browser did not collapse its selection", titleInFront());
        }
        const ProcessResult result = runTool({"read-selection"});
        if (isDocumentedError(result)) {
            findings.countOutcome("failed: " + result.error.substr(0, result.error.size() - 1));
        } else {
            findings.addViolation("a read returned what was not selected", testing::PrintToString(result));
        }
        desktop.expectDocument(findings, {Browser::document});
        desktop.expectClipboard(findings, "after a read of nothing", UserClipboard::contents());
        desktop.expectNothingLeft(findings);
    }
    return findings;
}

}  // namespace lomaris::test
