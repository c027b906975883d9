// The process is killed in the middle of an operation, and a keeper puts the clipboard in order.

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

/// Notes with "brown fox" selected, the user's clipboard, and a keeper.
struct KeptWorld {
    KeptWorld() {
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

class ClipboardKill : public KeptWorld, public testing::Test {};

TEST_F(ClipboardKill, DuringAReadLeavesTheUsersClipboardInSpiteOfALateCopy) {
    notes.onCopy(copies(u"brown fox").after(500ms));
    killAt(100ms);
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    EXPECT_EQ(desktop.pasteboardContents(), before);
    desktop.endProcess();
    EXPECT_EQ(desktop.pasteboardContents(), before);
    EXPECT_TRUE(isFree());
}

TEST_F(ClipboardKill, WhileTheKeyReachesTheTargetLeavesTheUsersClipboard) {
    notes.onCopy(together({Reaction([this] { desktop.kill(); }), copies(u"brown fox").after(900ms)}));
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, AfterASlowPressOfTheMenuLeavesTheUsersClipboard) {
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

TEST_F(ClipboardKill, WhileThePasteKeyReachesTheTargetStillPastesAndRestores) {
    notes.onPaste(together({Reaction([this] { desktop.kill(); }), pastesInto(text).after(1s)}));
    EXPECT_THROW(paste(u"red fox"), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, AfterThePasteKeyStillPastesAndRestores) {
    notes.onPaste(pastesInto(text).after(1s));
    paste(u"red fox");
    desktop.kill();
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, AfterAReadThatFollowedAPasteLosesNothing) {
    // A host pastes, reads again before the restore, and is killed at every call of that.
    std::size_t kills = 0;
    for (bool isReached = true; isReached; ++kills) {
        KeptWorld fresh;
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

TEST_F(ClipboardKill, BetweenDeletionAndPasteRestoresTheClipboardOnly) {
    killAt(40ms);
    EXPECT_THROW(paste(u"www.example.org"), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick ");
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, LeavesWhatAnotherProgramCopiesAfterwards) {
    notes.onCopy(ignores());
    killAt(100ms);
    desktop.at(200ms, [this] { desktop.userCopies(u"newer"); });
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"newer");
}

TEST_F(ClipboardKill, HappensAtTheSecondRequestToEndInACallThatLasts) {
    desktop.setLatencyOf("changeCount", 200ms);
    desktop.at(100ms, [this] { desktop.terminate(SIGTERM); });
    desktop.at(150ms, [this] { desktop.terminate(SIGTERM); });
    EXPECT_THROW(static_cast<void>(read()), SimulatedTermination);
    EXPECT_EQ(desktop.now(), 150ms);
    EXPECT_EQ(desktop.endedBySignal(), SIGTERM);
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardKill, DoesNotHappenAtASecondRequestBetweenDeletionAndPaste) {
    desktop.at(40ms, [this] { desktop.terminate(SIGTERM); });
    desktop.at(50ms, [this] { desktop.terminate(SIGTERM); });
    EXPECT_THROW(paste(u"www.example.org"), SimulatedTermination);
    EXPECT_EQ(desktop.now(), 80ms);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick www.example.org");
}

TEST_F(ClipboardKill, LetsTheNextProcessBeginOnlyWhenTheTargetHasItsText) {
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
