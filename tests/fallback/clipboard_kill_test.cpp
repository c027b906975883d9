// The process is killed during an operation, and a keeper restores the clipboard or serves the pasted text.

#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/run_loop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

/// An application with "brown fox" selected, a clipboard with the user's text, and a keeper.
struct WorldWithKeeper {
    WorldWithKeeper() {
        desktop.addKeeper();
        desktop.bringToFront(812);
        desktop.userCopies(u"mine");
        before = desktop.pasteboardContents();
        notes.onCopy(copiesSelectionOf(text)).onPaste(pastesInto(text)).onDelete(deletesSelectionOf(text));
    }

    Text read() { return fallback.readSelectedText(812, ClipboardSelectionReadPolicy::standard, nullptr); }
    void paste(TextView replacement) { fallback.replaceSelectedText(replacement, 812); }
    void killAt(Moment moment) {
        desktop.at(moment, [this] { desktop.kill(); });
    }
    bool isFree() { return desktop.holdPasteboardUntil(desktop.now()); }

    SimulatedDesktop desktop;
    KeyboardClipboardFallback fallback{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    std::vector<StandingItem> before;
};

class ClipboardKill : public WorldWithKeeper, public testing::Test {};

TEST_F(ClipboardKill, DuringAReadKeepsTheClipboardDespiteALateCopy) {
    notes.onCopy(copies(u"brown fox").after(500ms));
    killAt(100ms);
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    EXPECT_EQ(desktop.pasteboardContents(), before);
    desktop.endProcess();
    EXPECT_EQ(desktop.pasteboardContents(), before);
    EXPECT_TRUE(isFree());
}

TEST_F(ClipboardKill, WhileTheCopyKeyIsDeliveredKeepsTheClipboard) {
    notes.onCopy(together({Reaction([this] { desktop.kill(); }), copies(u"brown fox").after(900ms)}));
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, AfterASlowMenuPressKeepsTheClipboard) {
    auto item = notes.addElement();
    item.onAction("AXPress", copies(u"brown fox").after(150ms));
    desktop.setLatencyOf("performAction", 900ms);
    killAt(1s);
    EXPECT_THROW(static_cast<void>(fallback.readSelectedText(
                     812, ClipboardSelectionReadPolicy::standard,
                     [&] { static_cast<void>(desktop.accessibility().performAction(item.element(), "AXPress")); })),
                 SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, WhileThePasteKeyIsDeliveredPastesAndRestores) {
    notes.onPaste(together({Reaction([this] { desktop.kill(); }), pastesInto(text).after(1s)}));
    EXPECT_THROW(paste(u"red fox"), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, AfterThePasteKeyPastesAndRestores) {
    notes.onPaste(pastesInto(text).after(1s));
    paste(u"red fox");
    desktop.kill();
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, DuringAReadAfterAPasteLosesNothing) {
    // A host pastes, reads before the restore, and is killed before each call of the read.
    std::size_t kills = 0;
    for (bool isReached = true; isReached; ++kills) {
        WorldWithKeeper fresh;
        fresh.paste(u"red fox");
        test::turnFor(fresh.desktop, 100ms);
        fresh.notes.onCopy(copies(u"something").after(70ms));
        fresh.desktop.beforeCall(fresh.desktop.journal().size() + kills + 1, [&] { fresh.desktop.kill(); });
        try {
            static_cast<void>(fresh.read());
        } catch (const SimulatedTermination&) {
        }
        isReached = fresh.desktop.endedBySignal().has_value();
        fresh.desktop.endProcess();
        EXPECT_EQ(fresh.text.text(), u"The quick red fox") << kills;
        EXPECT_EQ(fresh.desktop.pasteboardContents(), before) << kills;
        EXPECT_TRUE(fresh.isFree());
    }
    EXPECT_GT(kills, 15U);
}

TEST_F(ClipboardKill, BetweenDeletionAndPasteOnlyRestoresTheClipboard) {
    killAt(40ms);
    EXPECT_THROW(paste(u"www.example.org"), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick ");
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, KeepsWhatAnotherProgramCopiesAfterwards) {
    notes.onCopy(ignores());
    killAt(100ms);
    desktop.at(200ms, [this] { desktop.userCopies(u"newer"); });
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"newer");
}

TEST_F(ClipboardKill, HappensAtASecondSignalDuringALongCall) {
    desktop.setLatencyOf("changeCount", 200ms);
    desktop.at(100ms, [this] { desktop.terminate(SIGTERM); });
    desktop.at(150ms, [this] { desktop.terminate(SIGTERM); });
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    EXPECT_EQ(desktop.now(), 150ms);
    EXPECT_EQ(desktop.endedBySignal(), SIGTERM);
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, DoesNotHappenAtASecondSignalBetweenDeleteAndPaste) {
    desktop.at(40ms, [this] { desktop.terminate(SIGTERM); });
    desktop.at(50ms, [this] { desktop.terminate(SIGTERM); });
    EXPECT_THROW(paste(u"www.example.org"), SimulatedTermination);
    EXPECT_EQ(desktop.now(), 80ms);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick www.example.org");
}

TEST_F(ClipboardKill, ReleasesTheClipboardWhenTheTargetHasItsText) {
    std::vector<std::string> looks;
    const auto look = [&] { looks.emplace_back(isFree() ? "free" : "in use"); };
    notes.onPaste(together({Reaction(look).after(1s), pastesInto(text).after(1s), Reaction(look).after(1s)}));
    paste(u"red fox");
    desktop.kill();
    desktop.endProcess();
    EXPECT_EQ(looks, (std::vector<std::string>{"in use", "free"}));
}

}  // namespace
}  // namespace lomaris
