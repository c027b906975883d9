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

/// Counts the outcome of a paste, and returns true if it was performed.
bool classifyPaste(Findings& findings, const ProcessResult& result) {
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

/// Counts the outcome of a read. It returns the selection if it copied before the paste, and otherwise fails because
/// nothing is selected after the paste. It must not return the replacement or the user's clipboard.
void classifyRead(Findings& findings, const ProcessResult& result) {
    if (result == ProcessResult{0, std::string(Browser::selection) + "\n", ""}) {
        findings.countOutcome("the selection");
    } else if (isDocumentedError(result)) {
        findings.countOutcome("read failed: " + result.error.substr(0, result.error.size() - 1));
    } else {
        findings.addViolation("a read returned what was not selected", testing::PrintToString(result));
    }
}

/// A performed paste has written its text and leaves it on the clipboard; a later read restores it. A failed paste has
/// changed nothing and has restored the user's clipboard, and so has a read in between.
void expectState(Findings& findings, StormDesktop& desktop, bool isReplaced) {
    desktop.expectDocument(findings, {isReplaced ? documentWith(firstReplacement) : Browser::document});
    if (isReplaced) {
        desktop.expectClipboard(findings, "after a paste", pastedContents(firstReplacement));
    } else {
        desktop.expectClipboard(findings, "after a failed paste", UserClipboard::contents());
    }
}

/// After two pastes, the text of every performed one is in the document, and the later text is on the clipboard. The
/// one that reads second finds nothing selected and fails, unless both made their last read of the selection before
/// either wrote. In that case the later one writes at the cursor, after the other's text, which no read can prevent.
void expectStateAfterTwo(Findings& findings, StormDesktop& desktop, bool isFirstReplaced, bool isSecondReplaced) {
    if (isFirstReplaced && isSecondReplaced) {
        findings.countOutcome("both pastes were performed");
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

Findings runPastesWithOthers(const StormSettings& settings) {
    Findings findings;
    RandomMoments moments;
    StormDesktop& desktop = stormDesktop();
    for (int round = 0; round < settings.rounds; ++round) {
        desktop.startRound(findings, settings.timeForManager);
        const bool withRead = moments.coin();
        StartedProcess first = startPaste(firstReplacement);
        const int distance = moments.sleepBetween(0, longestDistance);
        StartedProcess second =
            withRead ? StartedProcess(toolCommandLine({"read-selection"})) : startPaste(secondReplacement);
        findings.startRound((withRead ? "read after " : "second paste after ") + std::to_string(distance) + " ms");
        const ProcessResult firstResult = first.wait();
        const ProcessResult secondResult = second.wait();
        const bool isFirstReplaced = classifyPaste(findings, firstResult);
        if (withRead) {
            classifyRead(findings, secondResult);
            expectState(findings, desktop, isFirstReplaced);
        } else {
            expectStateAfterTwo(findings, desktop, isFirstReplaced, classifyPaste(findings, secondResult));
        }
        desktop.expectNothingLeft(findings);
    }
    return findings;
}

}  // namespace lomaris::test
