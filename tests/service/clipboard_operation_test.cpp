// How long a command, or a call of a host, excludes other operations from the clipboard.

#include "accessibility/model/guard_trace.h"
#include "tests/service/service_world.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

class ClipboardOperations : public test::ServiceWorld {
protected:
    std::optional<BridgeError> replaceWith(TextView replacement) {
        return test::thrownBy([&] {
            service->replaceCurrentSelection(replacement, 500, 500);
            return 0;
        });
    }
    /// True if another process could hold the clipboard.
    bool isFree() { return desktop.holdPasteboardUntil(desktop.now()); }
    /// Another process holds the clipboard and never releases it.
    void holdForever() { EXPECT_TRUE(desktop.holdPasteboardUntil(Moment::max())); }

    SelectionReadOptions options{.limits = {.before = 500, .after = 500}, .allowClipboardFallback = true};
};

TEST_F(ClipboardOperations, ExcludeOtherProcessesFromTheSnapshotToTheEnd) {
    hideSelection();
    std::vector<bool> isFreeBefore;
    for (std::size_t call = 1; call <= 200; ++call) {
        desktop.beforeCall(call, [&] { isFreeBefore.push_back(desktop.pasteboard().tryHold() != nullptr); });
    }
    ASSERT_EQ(replaceWith(u"red fox"), std::nullopt);
    ASSERT_EQ(isFreeBefore.size(), desktop.journal().size());
    bool isSaved = false;
    for (std::size_t call = 0; call < isFreeBefore.size(); ++call) {
        isSaved = isSaved || desktop.journal()[call].find(" items()") != std::string::npos;
        EXPECT_EQ(isFreeBefore[call], !isSaved) << desktop.journal()[call];
    }
    EXPECT_TRUE(isSaved);
    EXPECT_FALSE(isFree());
    // The remaining callbacks refer to the list, so the process must end before the list is destroyed.
    desktop.endProcess();
}

TEST_F(ClipboardOperations, ExcludeOtherProcessesBetweenTwoCopiesOfARead) {
    // The browser's Copy menu item copies nothing, so Command+C follows.
    SimulatedApplication browser = desktop.addApplication(900, u"org.mozilla.firefox", u"Browser");
    SimulatedTextElement page = browser.addTextElement(u"some words", TextRange{5, 5});
    browser.element().answers(attribute::focusedUIElement, page.element());
    browser.addMenuBar({{u"Edit", {{.title = u"Copy", .commandCharacter = u"c"}}}});
    browser.onCopy(copiesSelectionOf(page));
    desktop.bringToFront(900);
    std::vector<bool> isFreeBefore;
    for (std::size_t call = 1; call <= 200; ++call) {
        desktop.beforeCall(call, [&] { isFreeBefore.push_back(isFree()); });
    }
    EXPECT_EQ(service->readSelectionText(500, 500), u"words");
    const auto firstHeld = std::find(isFreeBefore.begin(), isFreeBefore.end(), false);
    EXPECT_NE(firstHeld, isFreeBefore.end());
    // The clipboard is released after the last call of the read.
    EXPECT_EQ(std::find(firstHeld, isFreeBefore.end(), true), isFreeBefore.end());
    EXPECT_TRUE(isFree());
    desktop.endProcess();
}

TEST_F(ClipboardOperations, ExcludeOtherProcessesUntilTheTargetReadsTheText) {
    desktop.addKeeper();
    forbidWriting();
    std::vector<bool> looks;
    const Reaction look([&] { looks.push_back(isFree()); });
    notes.onPaste(together({look.after(1s), pastesInto(text).after(1s), look.after(1s)}));
    ASSERT_EQ(replaceWith(u"red fox"), std::nullopt);
    desktop.endProcess();
    EXPECT_EQ(looks, (std::vector<bool>{false, true}));
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ClipboardOperations, ExcludeOtherProcesses2500MillisecondsIfNeverRead) {
    desktop.addKeeper();
    forbidWriting();
    notes.onPaste(ignores());
    // For a web address, the tool pauses between the first key and the last one.
    ASSERT_EQ(replaceWith(u"https://example.org"), std::nullopt);
    const Moment pasted = desktop.postedKeyStrokes().back().moment;
    std::vector<bool> looks;
    for (const Moment moment : {pasted + 2500ms - 1ns, pasted + 2500ms}) {
        desktop.at(moment, [&] { looks.push_back(isFree()); });
    }
    desktop.endProcess();
    EXPECT_EQ(looks, (std::vector<bool>{false, true}));
}

TEST_F(ClipboardOperations, ReleaseTheClipboardOnExitWithoutAKeeper) {
    forbidWriting();
    notes.onPaste(ignores());
    ASSERT_EQ(replaceWith(u"red fox"), std::nullopt);
    EXPECT_FALSE(isFree());
    desktop.endProcess();
    EXPECT_TRUE(isFree());
}

TEST_F(ClipboardOperations, AreNotNeededToReadAndWriteDirectly) {
    holdForever();
    const auto session = service->captureSelection(options);
    session->replaceIfCurrent(u"red fox");
    EXPECT_EQ(text.text(), u"The quick red fox");
    text.select({4, 5});
    EXPECT_EQ(replaceWith(u"slow"), std::nullopt);
    EXPECT_EQ(text.text(), u"The slow red fox");
    EXPECT_EQ(desktop.now(), 0s);
}

TEST_F(ClipboardOperations, AreNotStartedByDirectReadsAndWrites) {
    std::vector<bool> isFreeBefore;
    for (std::size_t call = 1; call <= 200; ++call) {
        desktop.beforeCall(call, [&] { isFreeBefore.push_back(isFree()); });
    }
    EXPECT_EQ(replaceWith(u"red fox"), std::nullopt);
    EXPECT_EQ(isFreeBefore, std::vector<bool>(desktop.journal().size(), true));
    desktop.endProcess();
}

TEST_F(ClipboardOperations, FailAsAReadIfTheClipboardIsInUse) {
    hideSelection();
    holdForever();
    EXPECT_EQ(test::thrownBy([this] { return service->captureSelection(options); }),
              BridgeError::clipboardFallbackFailed(u"another operation kept the clipboard in use for 10 seconds"));
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(ClipboardOperations, RefuseAGuardedReplacementThatCannotReadAgain) {
    hideSelection();
    const auto session = service->captureSelection(options);
    const std::size_t presses = desktop.postedKeyStrokes().size();
    const Moment start = desktop.now();
    holdForever();
    EXPECT_EQ(test::thrownBy([&] {
                  session->replaceIfCurrent(u"red fox");
                  return 0;
              }),
              BridgeError::selectionChanged());
    EXPECT_EQ(ReplacementGuardTrace::shared().snapshot().at(0).second, 2);
    EXPECT_EQ(ReplacementGuardTrace::shared().snapshot().at(1).second, 4);
    // 10 s of waiting, and 50 ms before the second search for the Copy command.
    EXPECT_EQ(desktop.now() - start, 10050ms);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), presses);
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
    EXPECT_EQ(text.text(), u"The quick brown fox");
}

TEST_F(ClipboardOperations, OfTwoSessionsRestoreTheClipboardOnce) {
    hideSelection();
    const auto first = service->captureSelection(options);
    const Moment start = desktop.now();
    first->replaceIfCurrent(u"red fox");
    const Moment pasted = desktop.now();
    EXPECT_EQ(pasted - start, 50ms);
    test::turnFor(desktop, 100ms);
    text.select({4, 5});
    const auto second = service->captureSelection(options);
    EXPECT_EQ(desktop.now() - pasted, 300ms);
    EXPECT_EQ(second->details().selectedText, u"quick");
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
    second->replaceIfCurrent(u"slow");
    test::turnFor(desktop, 5s);
    EXPECT_EQ(text.text(), u"The slow red fox");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(ClipboardOperations, OfTwoServicesRunOneAfterAnother) {
    hideSelection();
    const auto session = service->captureSelection(options);
    session->replaceIfCurrent(u"red fox");
    const Moment pasted = desktop.now();
    test::turnFor(desktop, 20ms);
    text.select({4, 5});
    LomarisAccessibilityService another(desktop);
    const auto other = another.captureSelection(options);
    // The other service starts when the first one has restored the clipboard.
    EXPECT_EQ(desktop.now() - pasted, 300ms);
    EXPECT_EQ(other->details().selectedText, u"quick");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

}  // namespace
}  // namespace lomaris
