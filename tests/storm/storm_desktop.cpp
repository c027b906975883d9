#include "tests/storm/storm_desktop.h"

#include "tests/real/desktop.h"
#include "tests/real/desktop_census.h"
#include "tests/real/expected_clipboard.h"
#include "tests/support/waiting.h"

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <thread>
#include <utility>

namespace lomaris::test {

namespace {

/// The time in which everything is restored after the end of a call, even if it was killed just after the paste key.
/// The replacement is served for 2.5 s in that case.
constexpr auto timeToRestore = std::chrono::seconds(4);
constexpr auto pauseBetweenLooks = std::chrono::milliseconds(20);

bool becomesTrue(const std::function<bool()>& isTrue) {
    const auto end = std::chrono::steady_clock::now() + timeToRestore;
    while (!isTrue()) {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(pauseBetweenLooks);
    }
    return true;
}

/// Returns the text of the page, which is in the title of the frontmost window.
std::string documentInFront() {
    const std::string title = titleInFront();
    const std::size_t start = title.find('"');
    const std::size_t end = title.rfind("\" ");
    return start == std::string::npos || end == std::string::npos || end <= start
               ? "no page in front: " + title
               : title.substr(start + 1, end - start - 1);
}

bool isAnyKeyHeld() {
    const ClipboardPeer peer;
    const std::unique_ptr<xcb_query_keymap_reply_t, FreeEvent> reply(
        xcb_query_keymap_reply(peer.handle(), xcb_query_keymap(peer.handle()), nullptr));
    return !reply || std::any_of(std::begin(reply->keys), std::end(reply->keys),
                                 [](std::uint8_t eightKeys) { return eightKeys != 0; });
}

std::unique_ptr<StormDesktop>& sharedDesktop() {
    static std::unique_ptr<StormDesktop> desktop;
    return desktop;
}

}  // namespace

const std::string firstReplacement = "red fox";
const std::string secondReplacement = "blue cat";

std::string documentWith(const std::string& replacement) { return "The quick " + replacement + " jumps"; }

void StormDesktop::startRound(Findings& findings, std::chrono::milliseconds timeForManager) {
    bringToFront(browser_.processIdentifier());
    auto next = std::make_unique<UserClipboard>();
    clipboard_ = std::move(next);
    browser_.restore();
    if (!becomesTrue([] { return toolProcesses().empty(); })) {
        findings.addViolation("a process of the tool is left though another program owns the clipboard",
                              std::to_string(toolProcesses().size()));
        for (const pid_t process : toolProcesses()) {
            kill(process, SIGKILL);
        }
    }
    std::this_thread::sleep_for(timeForManager);
    if (!UserClipboard::isIntact()) {
        throw std::runtime_error("the clipboard is not the user's before the round: " + describe(clipboardContents()));
    }
}

void StormDesktop::expectClipboard(Findings& findings, const std::string& when, const ClipboardContents& expected) {
    expectClipboard(findings, when, std::vector<ClipboardContents>{expected});
}

void StormDesktop::expectClipboard(Findings& findings, const std::string& when,
                                   const std::vector<ClipboardContents>& expected) {
    ClipboardContents actual;
    const bool isExpected = becomesTrue([&] {
        actual = clipboardContents();
        return std::find(expected.begin(), expected.end(), actual) != expected.end();
    });
    if (!isExpected) {
        findings.addViolation("the clipboard is not as it must be " + when, describe(actual));
    }
}

std::string StormDesktop::expectDocument(Findings& findings, const std::vector<std::string>& expected) {
    Browser::handleAllKeys();
    std::string actual;
    const bool isExpected = becomesTrue([&] {
        actual = documentInFront();
        return std::find(expected.begin(), expected.end(), actual) != expected.end();
    });
    if (!isExpected) {
        findings.addViolation("the document is not as it must be", actual);
    }
    return actual;
}

void StormDesktop::expectNothingLeft(Findings& findings) {
    if (!becomesTrue([] { return toolProcesses().size() <= 1; })) {
        findings.addViolation("more than one process of the tool is left", std::to_string(toolProcesses().size()));
    }
    if (!becomesTrue([] { return !isAnyKeyHeld(); })) {
        findings.addViolation("a key is still held down", "");
    }
}

StormDesktop& stormDesktop() {
    if (!sharedDesktop()) {
        sharedDesktop() = std::make_unique<StormDesktop>();
    }
    return *sharedDesktop();
}

void endStormDesktop() { sharedDesktop().reset(); }

bool isDocumentedError(const ProcessResult& result) {
    constexpr const char* prefix = "Lomaris macOS bridge: ";
    return result.status == 1 && result.output.empty() && result.error.starts_with(prefix) &&
           result.error.find('\n') == result.error.size() - 1;
}

}  // namespace lomaris::test
