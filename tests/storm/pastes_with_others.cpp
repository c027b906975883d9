#include "tests/real/expected_clipboard.h"
#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"

#include <gtest/gtest.h>

namespace lomaris::test {

namespace {

constexpr int longestDistance = 300;

const ProcessResult replaced{0, "replaced\n", ""};

StartedProcess startPaste(const std::string& replacement) {
    return StartedProcess(toolCommandLine({"replace-selection", "--replacement", replacement}));
}

/// Whether the paste was carried out.
bool judgePaste(Findings& findings, const ProcessResult& result) {
    if (result == replaced) {
        findings.countOutcome("replaced");
        return true;
    }
    if (isDocumentedError(result)) {
        findings.countOutcome("paste failed: " + result.error.substr(0, result.error.size() - 1));
    } else {
        findings.addViolation("a paste ended as it must not", testing::PrintToString(result));
    }
    return false;
}

/// The read returns the selection, if it copied before the paste. Nothing is selected after the paste, so that it fails
/// then: neither the replacement nor the user's clipboard was ever selected.
void judgeRead(Findings& findings, const ProcessResult& result) {
    if (result == ProcessResult{0, std::string(Browser::selection) + "\n", ""}) {
        findings.countOutcome("the selection");
    } else if (isDocumentedError(result)) {
        findings.countOutcome("read failed: " + result.error.substr(0, result.error.size() - 1));
    } else {
        findings.addViolation("a read returned what was not selected", testing::PrintToString(result));
    }
}

/// A carried out paste has written its text and leaves it on the clipboard; a read afterwards saves and restores it as
/// it is. A failed one has changed nothing and has put the user's clipboard back, and a read in between restores what
/// it found there as well.
void expectState(Findings& findings, StormDesktop& desktop, bool isReplaced) {
    desktop.expectDocument(findings, {isReplaced ? documentWith(firstReplacement) : Browser::document});
    if (isReplaced) {
        desktop.expectClipboard(findings, "after a paste", pastedContents(firstReplacement));
    } else {
        desktop.expectClipboard(findings, "after a failed paste", UserClipboard::contents());
    }
}

/// With two pastes, the text of each that was carried out is in the document, and the later one is on the clipboard.
/// The second one to read finds nothing selected and fails, unless both had their last look at the selection before
/// either wrote: then the later one writes at the cursor, behind the other's text, as no look can prevent.
void expectStateAfterTwo(Findings& findings, StormDesktop& desktop, bool isFirstReplaced, bool isSecondReplaced) {
    if (isFirstReplaced && isSecondReplaced) {
        findings.countOutcome("both pastes were carried out");
        const std::string firstIsLater = documentWith(secondReplacement + firstReplacement);
        const std::string secondIsLater = documentWith(firstReplacement + secondReplacement);
        const std::string document = desktop.expectDocument(findings, {firstIsLater, secondIsLater});
        desktop.expectClipboard(findings, "after two pastes",
                                pastedContents(document == firstIsLater ? firstReplacement : secondReplacement));
        return;
    }
    if (isSecondReplaced) {
        desktop.expectDocument(findings, {documentWith(secondReplacement)});
        desktop.expectClipboard(findings, "after a paste", pastedContents(secondReplacement));
        return;
    }
    expectState(findings, desktop, isFirstReplaced);
}

}  // namespace

Findings runPastesWithOthers(const StormCourse& course) {
    Findings findings;
    RandomMoments moments;
    StormDesktop& desktop = stormDesktop();
    for (int round = 0; round < course.rounds; ++round) {
        desktop.startRound(findings, course.timeForManager);
        const bool withRead = moments.coin();
        StartedProcess first = startPaste(firstReplacement);
        const int distance = moments.sleepBetween(0, longestDistance);
        StartedProcess second =
            withRead ? StartedProcess(toolCommandLine({"read-selection"})) : startPaste(secondReplacement);
        findings.startRound((withRead ? "read after " : "second paste after ") + std::to_string(distance) + " ms");
        const ProcessResult firstResult = first.wait();
        const ProcessResult secondResult = second.wait();
        const bool isFirstReplaced = judgePaste(findings, firstResult);
        if (withRead) {
            judgeRead(findings, secondResult);
            expectState(findings, desktop, isFirstReplaced);
        } else {
            expectStateAfterTwo(findings, desktop, isFirstReplaced, judgePaste(findings, secondResult));
        }
        desktop.expectNothingLeft(findings);
    }
    return findings;
}

}  // namespace lomaris::test
