// Operations of one process after a paste: the target must receive the pasted text, and the user's clipboard must be
// restored.

#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/run_loop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

class ClipboardSequence : public testing::Test {
protected:
    ClipboardSequence() {
        desktop.bringToFront(812);
        desktop.userCopies(u"mine");
        before = desktop.pasteboardContents();
        notes.onPaste(pastesInto(text));
        notes.onCopy(copies(u"something"));
    }

    void paste() { fallback.replaceSelectedText(u"red fox", 812); }
    void turnFor(Duration duration) { test::turnFor(desktop, duration); }
    /// Reads, and returns the moment of the copy key, which must be the moment at which the read returns.
    Moment readNow() {
        EXPECT_EQ(fallback.readSelectedText(812, ClipboardSelectionReadPolicy::standard, nullptr), u"something");
        EXPECT_EQ(desktop.postedKeyStrokes().back().moment, desktop.now());
        return desktop.now();
    }

    /// The user's clipboard is restored, is not written again, and is not held.
    void expectRestoredForGood() {
        EXPECT_EQ(desktop.pasteboardContents(), before);
        const std::size_t calls = desktop.journal().size();
        turnFor(5s);
        EXPECT_EQ(desktop.pasteboardContents(), before);
        for (std::size_t call = calls; call < desktop.journal().size(); ++call) {
            EXPECT_EQ(desktop.journal()[call].find("clearContents"), std::string::npos) << desktop.journal()[call];
        }
        EXPECT_TRUE(desktop.holdPasteboardUntil(desktop.now()));
    }

    SimulatedDesktop desktop;
    KeyboardClipboardFallback fallback{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    std::vector<StandingItem> before;
};

TEST_F(ClipboardSequence, WaitsTheMinimumAfterAPasteThatWasRead) {
    paste();
    turnFor(100ms);
    EXPECT_EQ(readNow(), 300ms);
    EXPECT_EQ(text.text(), u"The quick red fox");
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, WaitsForATargetThatReadsAfterAClipboardManager) {
    notes.onPaste(pastesInto(text).after(200ms));
    paste();
    desktop.readPasteboardAsAnotherProgram(PasteboardType(pasteboard_type::string),
                                           [](const std::optional<Bytes>& /*bytes*/) {});
    turnFor(100ms);
    EXPECT_EQ(readNow(), 300ms);
    EXPECT_EQ(text.text(), u"The quick red fox");
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, ServesThePastedTextBeforeAnImmediateRead) {
    paste();
    EXPECT_EQ(readNow(), 300ms);
    EXPECT_EQ(text.text(), u"The quick red fox");
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, ServesThePastedTextIfTheHostRunsNoRunLoop) {
    paste();
    desktop.scheduling().sleep(5s);
    EXPECT_EQ(readNow(), 5s);
    EXPECT_EQ(text.text(), u"The quick red fox");
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, WaitsUntilTheTargetReadsThePastedText) {
    notes.onPaste(pastesInto(text).after(1s));
    paste();
    turnFor(100ms);
    EXPECT_EQ(readNow(), 1s);
    EXPECT_EQ(text.text(), u"The quick red fox");
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, WaitsTheWholeGraceForATargetThatNeverReads) {
    notes.onPaste(ignores());
    paste();
    turnFor(100ms);
    EXPECT_EQ(readNow(), 2500ms);
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, ReadsImmediatelyAfterTheRestore) {
    paste();
    turnFor(310ms);
    EXPECT_EQ(desktop.pasteboardContents(), before);
    EXPECT_EQ(readNow(), 310ms);
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, RestoresALaterCopyOfAnotherProgram) {
    paste();
    turnFor(100ms);
    desktop.userCopies(u"newer");
    before = desktop.pasteboardContents();
    EXPECT_EQ(readNow(), 300ms);
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, RestoresACopyMadeWhileItWaitsForTheTarget) {
    notes.onPaste(ignores());
    paste();
    turnFor(100ms);
    desktop.at(1s, [this] {
        desktop.userCopies(u"newer");
        before = desktop.pasteboardContents();
    });
    EXPECT_EQ(readNow(), 2500ms);
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, RestoresOnceAfterTwoPastes) {
    paste();
    turnFor(100ms);
    fallback.replaceSelectedText(u"!", 812);
    turnFor(290ms);
    EXPECT_NE(desktop.pasteboardContents(), before);
    turnFor(10ms);
    EXPECT_EQ(text.text(), u"The quick red fox!");
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, WaitsForAnotherProcessThatHoldsTheClipboard) {
    // The user copies, so the restore writes nothing; another process then holds the clipboard before the read starts.
    paste();
    desktop.at(50ms, [this] { desktop.userCopies(u"newer"); });
    turnFor(400ms);
    before = desktop.pasteboardContents();
    ASSERT_TRUE(desktop.holdPasteboardUntil(3s));
    EXPECT_EQ(readNow(), 3s);
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, ExcludesOtherProcessesUntilTheRestore) {
    paste();
    turnFor(290ms);
    EXPECT_FALSE(desktop.holdPasteboardUntil(desktop.now()));
    turnFor(10ms);
    EXPECT_TRUE(desktop.holdPasteboardUntil(desktop.now()));
}

TEST_F(ClipboardSequence, StartsAnotherObjectsReadAfterTheRestore) {
    paste();
    turnFor(100ms);
    KeyboardClipboardFallback other(desktop);
    EXPECT_EQ(other.readSelectedText(812, ClipboardSelectionReadPolicy::standard, nullptr), u"something");
    EXPECT_EQ(desktop.now(), 300ms);
    expectRestoredForGood();
}

TEST_F(ClipboardSequence, RestoresFirstIfTheHostWasBusy) {
    paste();
    desktop.scheduling().sleep(5s);
    KeyboardClipboardFallback other(desktop);
    EXPECT_EQ(other.readSelectedText(812, ClipboardSelectionReadPolicy::standard, nullptr), u"something");
    EXPECT_EQ(desktop.now(), 5020ms);
    EXPECT_EQ(text.text(), u"The quick red fox");
    expectRestoredForGood();
}

}  // namespace
}  // namespace lomaris
