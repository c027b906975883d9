#include "tests/real/expected_clipboard.h"
#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>

namespace lomaris::test {

namespace {

using std::chrono::steady_clock;

enum class Call { read, paste };

const ProcessResult selectionRead{0, std::string(Browser::selection) + "\n", ""};
const ProcessResult replaced{0, "replaced\n", ""};

std::vector<std::string> commandLineOf(Call call) {
    return toolCommandLine(call == Call::read
                               ? std::vector<std::string>{"read-selection"}
                               : std::vector<std::string>{"replace-selection", "--replacement", firstReplacement});
}

/// How many milliseconds a call takes on this machine if nothing disturbs it: the median of three.
int durationOf(Findings& findings, StormDesktop& desktop, Call call, const StormCourse& course) {
    std::array<int, 3> durations{};
    for (int& duration : durations) {
        desktop.startRound(findings, course.timeForManager);
        const auto start = steady_clock::now();
        static_cast<void>(runProcess(commandLineOf(call)));
        const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start);
        duration = static_cast<int>(taken.count());
    }
    std::sort(durations.begin(), durations.end());
    return durations[1];
}

/// Sleeps until a random moment of a call that takes so long: half the time any moment up to a little after its end,
/// and half the time one near the end, as the short time after the paste key is when a kill has most to break.
int sleepUntilKill(RandomMoments& moments, int duration) {
    const int latest = duration + duration / 5;
    return moments.coin() ? moments.sleepBetween(0, latest) : moments.sleepBetween(duration * 4 / 5, latest);
}

/// A call that was killed has given no result, or its whole result just before its end.
void expectKilled(Findings& findings, StormDesktop& desktop, Call call, const ProcessResult& result) {
    const ProcessResult& whole = call == Call::read ? selectionRead : replaced;
    if (!result.error.empty() || (!result.output.empty() && result.output != whole.output)) {
        findings.addViolation("a killed call printed what it must not", testing::PrintToString(result));
    }
    if (call == Call::read) {
        findings.countOutcome("read killed");
        desktop.expectDocument(findings, {Browser::document});
        desktop.expectClipboard(findings, "after a killed read", UserClipboard::contents());
        return;
    }
    // The document first: who reads the clipboard takes the replacement, as the browser does.
    const std::string document = desktop.expectDocument(findings, {Browser::document, documentWith(firstReplacement)});
    findings.countOutcome(document == Browser::document ? "paste killed, not written" : "paste killed, written");
    std::vector<ClipboardContents> expected{UserClipboard::contents()};
    if (result.output == replaced.output) {
        // It was killed between its result and its end, when the replacement may have been left on the clipboard.
        expected.push_back(pastedContents(firstReplacement));
    }
    desktop.expectClipboard(findings, "after a killed paste", expected);
    // What was pasted late shows now.
    desktop.expectDocument(findings, {document});
}

/// A call that ended before it was killed.
void expectEnded(Findings& findings, StormDesktop& desktop, Call call, const ProcessResult& result) {
    const bool isWritten = call == Call::paste && result == replaced;
    if (isWritten || (call == Call::read && result == selectionRead)) {
        findings.countOutcome(isWritten ? "paste ended by itself" : "read ended by itself");
    } else if (isDocumentedError(result)) {
        findings.countOutcome("failed: " + result.error.substr(0, result.error.size() - 1));
    } else {
        findings.addViolation("a call ended as it must not", testing::PrintToString(result));
    }
    desktop.expectDocument(findings, {isWritten ? documentWith(firstReplacement) : Browser::document});
    if (isWritten) {
        desktop.expectClipboard(findings, "after a paste", pastedContents(firstReplacement));
    } else {
        desktop.expectClipboard(findings, "after a read", UserClipboard::contents());
    }
}

/// Nothing that the killed call held keeps the next one from its work.
void expectNextRead(Findings& findings, StormDesktop& desktop, const StormCourse& course) {
    desktop.startRound(findings, course.timeForManager);
    if (const ProcessResult next = runTool({"read-selection"}); next != selectionRead) {
        findings.addViolation("the read after a killed call failed", testing::PrintToString(next));
    }
    desktop.expectClipboard(findings, "after the next read", UserClipboard::contents());
}

}  // namespace

Findings runKilledCalls(const StormCourse& course) {
    Findings findings;
    RandomMoments moments;
    StormDesktop& desktop = stormDesktop();
    const int durationOfRead = durationOf(findings, desktop, Call::read, course);
    const int durationOfPaste = durationOf(findings, desktop, Call::paste, course);
    for (int round = 0; round < course.rounds; ++round) {
        desktop.startRound(findings, course.timeForManager);
        const Call call = moments.coin() ? Call::read : Call::paste;
        StartedProcess process(commandLineOf(call));
        const int moment = sleepUntilKill(moments, call == Call::read ? durationOfRead : durationOfPaste);
        process.kill();
        const ProcessResult result = process.wait();
        findings.startRound((call == Call::read ? "read killed after " : "paste killed after ") +
                            std::to_string(moment) + " ms");
        if (result.status == -SIGKILL) {
            expectKilled(findings, desktop, call, result);
        } else {
            expectEnded(findings, desktop, call, result);
        }
        desktop.expectNothingLeft(findings);
        expectNextRead(findings, desktop, course);
        desktop.expectNothingLeft(findings);
    }
    return findings;
}

}  // namespace lomaris::test
