#include "platform/linux/x11/x11_input_clock.h"
#include "tests/real/expected_clipboard.h"
#include "tests/storm/storm_desktop.h"
#include "tests/storm/storm_options.h"
#include "tests/storm/storms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>

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

/// Returns the duration of an undisturbed call on this machine, in milliseconds: the median of three.
int durationOf(Findings& findings, StormDesktop& desktop, Call call, const StormSettings& settings) {
    std::array<int, 3> durations{};
    for (int& duration : durations) {
        desktop.startRound(findings, settings.timeForManager);
        const auto start = steady_clock::now();
        static_cast<void>(runProcess(commandLineOf(call)));
        const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(steady_clock::now() - start);
        duration = static_cast<int>(taken.count());
    }
    std::sort(durations.begin(), durations.end());
    return durations[1];
}

/// Waits for the last key that the call posts: the first one in a read, the third one in a paste, which reads the
/// selection twice first. Returns after `longest` milliseconds if the call posts fewer keys.
void waitForLastKey(X11InputClock& clock, Call call, std::optional<std::uint32_t> before, int longest) {
    const auto end = steady_clock::now() + std::chrono::milliseconds(longest);
    int keysToCome = call == Call::read ? 1 : 3;
    while (keysToCome > 0 && steady_clock::now() < end) {
        if (const auto now = clock.timeOfLastInput(); now != before) {
            before = now;
            --keysToCome;
        } else {
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
    }
}

/// Runs one call and kills it at a random moment: in a third of the calls at any moment up to a little after the end,
/// in a third near the end, and in a third just after the last key. A kill after the last key can do most damage, and
/// random moments rarely hit the short time between that key and the end of a paste.
class CallToKill {
public:
    CallToKill(X11InputClock& clock, Call call, int duration)
        : clock_(clock),
          before_(clock.timeOfLastInput()),
          latest_(duration + duration / 5),
          duration_(duration),
          call_(call),
          process_(commandLineOf(call)) {}

    [[nodiscard]] ProcessResult killAtRandomMoment(RandomMoments& moments) {
        switch (moments.numberBetween(0, 2)) {
            case 0:
                moment_ = std::to_string(moments.sleepBetween(0, latest_)) + " ms";
                break;
            case 1:
                moment_ = std::to_string(moments.sleepBetween(duration_ * 4 / 5, latest_)) + " ms";
                break;
            default:
                waitForLastKey(clock_, call_, before_, latest_);
                moment_ = "the key and " + std::to_string(moments.sleepBetween(0, 2)) + " ms";
        }
        process_.kill();
        return process_.wait();
    }

    [[nodiscard]] std::string description() const {
        return std::string(call_ == Call::read ? "read" : "paste") + " killed after " + moment_;
    }

private:
    X11InputClock& clock_;
    std::optional<std::uint32_t> before_;
    int latest_;
    int duration_;
    Call call_;
    std::string moment_;
    StartedProcess process_;
};

/// Checks a killed call. It printed nothing, or its complete result just before its end.
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
    // The document first, because reading the clipboard counts as the read of the replacement by the browser.
    const std::string document = desktop.expectDocument(findings, {Browser::document, documentWith(firstReplacement)});
    findings.countOutcome(document == Browser::document ? "paste killed, not written" : "paste killed, written");
    std::vector<ClipboardContents> expected{UserClipboard::contents()};
    if (result.output == replaced.output) {
        // It was killed between its output and its end, when the replacement may have been left on the clipboard.
        expected.push_back(pastedContents(firstReplacement));
    }
    desktop.expectClipboard(findings, "after a killed paste", expected);
    // A late paste is visible now.
    desktop.expectDocument(findings, {document});
}

/// Checks a call that ended before it was killed.
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

/// Checks that a killed call does not prevent the next one from working.
void expectNextRead(Findings& findings, StormDesktop& desktop, const StormSettings& settings) {
    desktop.startRound(findings, settings.timeForManager);
    if (const ProcessResult next = runTool({"read-selection"}); next != selectionRead) {
        findings.addViolation("the read after a killed call failed", testing::PrintToString(next));
    }
    desktop.expectClipboard(findings, "after the next read", UserClipboard::contents());
}

}  // namespace

Findings runKilledCalls(const StormSettings& settings) {
    Findings findings;
    RandomMoments moments;
    X11Connection connection;
    X11InputClock clock(connection);
    StormDesktop& desktop = stormDesktop();
    const int durationOfRead = durationOf(findings, desktop, Call::read, settings);
    const int durationOfPaste = durationOf(findings, desktop, Call::paste, settings);
    for (int round = 0; round < settings.rounds; ++round) {
        desktop.startRound(findings, settings.timeForManager);
        const Call call = moments.coin() ? Call::read : Call::paste;
        CallToKill toKill(clock, call, call == Call::read ? durationOfRead : durationOfPaste);
        const ProcessResult result = toKill.killAtRandomMoment(moments);
        findings.startRound(toKill.description());
        if (result.status == -SIGKILL) {
            expectKilled(findings, desktop, call, result);
        } else {
            expectEnded(findings, desktop, call, result);
        }
        desktop.expectNothingLeft(findings);
        expectNextRead(findings, desktop, settings);
        desktop.expectNothingLeft(findings);
    }
    return findings;
}

}  // namespace lomaris::test
