#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "accessibility/model/capture_trace.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/journal.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;
using Policy = ClipboardSelectionReadPolicy;

class ClipboardRead : public testing::Test {
protected:
    ClipboardRead() {
        desktop.bringToFront(812);
        desktop.userCopiesItems(
            {{.data = {{"public.utf8-plain-text", "mine"}, {"public.png", "pixels"}}, .promises = {}}});
        before = desktop.pasteboardContents();
        SelectionCaptureTrace::shared().reset();
    }

    Text read(Policy policy = Policy::standard, const std::function<void()>& copyCommand = nullptr) {
        return fallback.readSelectedText(812, policy, copyCommand);
    }
    std::optional<BridgeError> error(Policy policy = Policy::standard,
                                     const std::function<void()>& copyCommand = nullptr) {
        return test::thrownBy([&] { return read(policy, copyCommand); });
    }

    /// Returns a function that presses a menu item to which the target has this reaction.
    std::function<void()> menu(const Reaction& reaction) {
        auto item = notes.addElement();
        item.onAction("AXPress", reaction);
        return [this, item] { static_cast<void>(desktop.accessibility().performAction(item.element(), "AXPress")); };
    }
    static void failingMenu() { throw BridgeError::clipboardFallbackFailed(u"no menu"); }

    void expectTimeAndPresses(Moment moment, std::int64_t keyPresses, std::int64_t menuPresses) {
        EXPECT_EQ(desktop.now(), moment);
        const auto trace = SelectionCaptureTrace::shared().snapshot();
        EXPECT_EQ(trace.at(3).second, keyPresses);
        EXPECT_EQ(trace.at(4).second, menuPresses);
        EXPECT_EQ(desktop.pasteboardContents(), before);
    }

    /// Returns the number of platform calls of a read that succeeds in its first attempt.
    std::size_t callsOfARead() {
        notes.onCopy(copies(u"brown fox"));
        static_cast<void>(read());
        return desktop.journal().size();
    }

    static BridgeError noResponse(TextView attempts) {
        return BridgeError::clipboardFallbackFailed(u"the target application did not respond to Cmd+C after " +
                                                    Text(attempts) + u" attempt(s)");
    }

    SimulatedDesktop desktop;
    KeyboardClipboardFallback fallback{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    std::vector<StandingItem> before;
};

TEST_F(ClipboardRead, ReturnsImmediatelyIfTheTargetCopiesImmediately) {
    notes.onCopy(copies(u"brown fox"));
    EXPECT_EQ(read(), u"brown fox");
    expectTimeAndPresses(0ms, 1, 0);
}

TEST_F(ClipboardRead, NoticesACopyAtTheEndOfTheCurrentSlice) {
    notes.onCopy(copies(u"brown fox").after(137ms));
    EXPECT_EQ(read(), u"brown fox");
    expectTimeAndPresses(140ms, 1, 0);
}

TEST_F(ClipboardRead, TriesThreeTimesForASecondIfTheTargetCopiesNothing) {
    EXPECT_EQ(error(), noResponse(u"3"));
    expectTimeAndPresses(3160ms, 3, 0);
    ASSERT_EQ(desktop.postedKeyStrokes().size(), 3U);
    EXPECT_EQ(desktop.postedKeyStrokes()[1].moment, 1080ms);
    EXPECT_EQ(desktop.postedKeyStrokes()[2].moment, 2160ms);
}

TEST_F(ClipboardRead, TriesTwiceUnderTheShortcut) {
    EXPECT_EQ(error(Policy::shortcut), noResponse(u"2"));
    expectTimeAndPresses(2080ms, 2, 0);
}

TEST_F(ClipboardRead, ReportsNoSelectionIfTheTargetCopiesAnEmptyString) {
    notes.onCopy(copies(u""));
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    expectTimeAndPresses(160ms, 3, 0);
}

TEST_F(ClipboardRead, ReportsNoSelectionIfTheTargetCopiesOnlyAnImage) {
    notes.onCopy(copiesOnly("public.png", "other pixels"));
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    expectTimeAndPresses(160ms, 3, 0);
}

TEST_F(ClipboardRead, ReportsNoSelectionIfOneAttemptChangedTheClipboard) {
    notes.onCopyInTurn({copies(u""), ignores()});
    EXPECT_EQ(error(), BridgeError::noTextSelected());
    expectTimeAndPresses(2160ms, 3, 0);
}

TEST_F(ClipboardRead, TriesAgainAfterAChangeWithoutText) {
    notes.onCopyInTurn({copies(u""), copies(u"brown fox")});
    EXPECT_EQ(read(), u"brown fox");
    expectTimeAndPresses(80ms, 2, 0);
}

TEST_F(ClipboardRead, IgnoresACopyMadeBetweenTwoAttempts) {
    // Copied at 1.04 s, between two attempts: the second attempt overwrites it, and the target copies nothing more.
    notes.onCopyInTurn({copies(u"late").after(1040ms), ignores()});
    EXPECT_EQ(error(), noResponse(u"3"));
    expectTimeAndPresses(3160ms, 3, 0);
}

TEST_F(ClipboardRead, DoesNotCheckAgainAtTheDeadline) {
    // The change happens within the last slice, which ends at the deadline.
    notes.onCopyInTurn({copies(u"late").after(990ms), ignores()});
    EXPECT_EQ(error(), noResponse(u"3"));
    expectTimeAndPresses(3160ms, 3, 0);
}

TEST_F(ClipboardRead, RestoresACopyMadeWhileTheClipboardIsSaved) {
    std::vector<StandingItem> newer;
    desktop.userCopiesItems(
        {{.data = {},
          .promises = {{"public.html",
                        [this, &newer] {
                            desktop.userCopiesItems({{.data = {{"public.utf8-plain-text", "newer"}}, .promises = {}}});
                            newer = desktop.pasteboardContents();
                            return std::optional<Bytes>();
                        }},
                       {"public.utf8-plain-text", [] { return std::optional<Bytes>("older"); }}}}});
    notes.onCopy(copies(u"brown fox"));
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(desktop.pasteboardContents(), newer);
}

TEST_F(ClipboardRead, ReadsWhatTheMenuCommandCopies) {
    EXPECT_EQ(read(Policy::standard, menu(copies(u"brown fox"))), u"brown fox");
    expectTimeAndPresses(0ms, 0, 1);
}

TEST_F(ClipboardRead, EndsIfAMenuCopyChangesNothingIn200Milliseconds) {
    EXPECT_EQ(error(Policy::standard, menu(ignores())), BridgeError::noTextSelected());
    expectTimeAndPresses(200ms, 0, 1);
}

TEST_F(ClipboardRead, EndsImmediatelyIfAMenuCopyYieldsAnEmptyString) {
    EXPECT_EQ(error(Policy::shortcut, menu(copies(u""))), BridgeError::noTextSelected());
    expectTimeAndPresses(0ms, 0, 1);
}

TEST_F(ClipboardRead, WaitsASecondForAMenuCopyBeforeAReplacement) {
    EXPECT_EQ(error(Policy::guardedReplacement, menu(ignores())), noResponse(u"3"));
    expectTimeAndPresses(3160ms, 1, 2);
}

TEST_F(ClipboardRead, TriesAgainBeforeAReplacementIfAMenuCopyIsEmpty) {
    notes.onCopy(copies(u"brown fox"));
    EXPECT_EQ(read(Policy::guardedReplacement, menu(copies(u""))), u"brown fox");
    expectTimeAndPresses(160ms, 1, 2);
}

TEST_F(ClipboardRead, PostsTheKeyIfTheMenuPressFails) {
    notes.onCopy(copies(u"brown fox").after(500ms));
    EXPECT_EQ(read(Policy::standard, failingMenu), u"brown fox");
    expectTimeAndPresses(500ms, 1, 0);
}

TEST_F(ClipboardRead, PostsTheKeyThreeTimesIfEveryMenuPressFails) {
    EXPECT_EQ(error(Policy::standard, failingMenu), noResponse(u"3"));
    expectTimeAndPresses(3160ms, 3, 0);
}

TEST_F(ClipboardRead, RestoresAndRethrowsIfKeysMayNotBePosted) {
    desktop.setPostEventAccess(false);
    EXPECT_EQ(error(), BridgeError::keyboardEventPermissionRequired());
    expectTimeAndPresses(0ms, 0, 0);
}

TEST_F(ClipboardRead, RestoresAndRethrowsIfKeysCannotBeCreated) {
    desktop.failKeyStrokes();
    EXPECT_EQ(error(), BridgeError::clipboardFallbackFailed(u"could not create keyboard events"));
    expectTimeAndPresses(0ms, 0, 0);
}

TEST_F(ClipboardRead, ReadsEvenIfTheEmptyValueCannotBeStaged) {
    desktop.refusePasteboardWrites();
    notes.onCopy(copies(u"brown fox"));
    EXPECT_EQ(read(), u"brown fox");
    expectTimeAndPresses(0ms, 1, 0);
}

TEST_F(ClipboardRead, StagesAPrivateEmptyValueBeforeTheTargetCopies) {
    std::vector<std::vector<StandingItem>> staged;
    notes.onCopy([&] { staged.push_back(desktop.pasteboardContents()); });
    EXPECT_TRUE(error());
    const std::vector<StandingItem> expected = {
        {.data = {{"org.nspasteboard.ConcealedType", ""}, {"org.nspasteboard.TransientType", ""}},
         .promised = {"public.utf8-plain-text"}}};
    EXPECT_EQ(staged, (std::vector<std::vector<StandingItem>>{expected, expected, expected}));
}

TEST_F(ClipboardRead, PostsToTheProcessIfTheTargetIsNotFrontmost) {
    desktop.addApplication(900, std::nullopt, std::nullopt);
    desktop.bringToFront(900);
    notes.onCopy(copies(u"brown fox"));
    EXPECT_EQ(read(), u"brown fox");
    EXPECT_EQ(desktop.postedKeyStrokes().at(0).processIdentifier, 812);
}

TEST_F(ClipboardRead, ReturnsAConcurrentCopyOfTheUserAndRestoresOverIt) {
    desktop.at(50ms, [this] { desktop.userCopies(u"the user's"); });
    EXPECT_EQ(read(), u"the user's");
    expectTimeAndPresses(60ms, 1, 0);
}

TEST_F(ClipboardRead, RestoresAPasteboardThatWasEmpty) {
    desktop.userCopiesItems({});
    before = desktop.pasteboardContents();
    notes.onCopy(copies(u"brown fox"));
    EXPECT_EQ(read(), u"brown fox");
    expectTimeAndPresses(0ms, 1, 0);
}

TEST_F(ClipboardRead, EndsInTimeIfTheTargetHangs) {
    notes.onCopy(copies(u"never"));
    notes.hang();
    EXPECT_EQ(error(), noResponse(u"3"));
    expectTimeAndPresses(3160ms, 3, 0);
}

TEST_F(ClipboardRead, RestoresTheClipboardOnTermination) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SimulatedDesktop fresh;
        KeyboardClipboardFallback freshFallback(fresh);
        fresh.addApplication(812, std::nullopt, std::nullopt);
        fresh.bringToFront(812);
        fresh.userCopies(u"mine");
        const auto mine = fresh.pasteboardContents();
        fresh.at(500ms, [&] { fresh.terminate(signal); });
        EXPECT_THROW(static_cast<void>(freshFallback.readSelectedText(812, Policy::standard, nullptr)),
                     SimulatedTermination);
        EXPECT_EQ(fresh.endedBySignal(), signal);
        EXPECT_EQ(fresh.pasteboardContents(), mine);
        EXPECT_EQ(fresh.now(), 500ms);
    }
}

TEST_F(ClipboardRead, RestoresTheClipboardIfTerminatedAtAnyCall) {
    std::optional<int> endedBy = SIGTERM;
    std::size_t call = 0;
    while (endedBy) {
        SimulatedDesktop fresh;
        KeyboardClipboardFallback freshFallback(fresh);
        fresh.addApplication(812, std::nullopt, std::nullopt).onCopy(copies(u"brown fox"));
        fresh.bringToFront(812);
        fresh.userCopiesItems(
            {{.data = {{"public.utf8-plain-text", "mine"}, {"public.png", "pixels"}}, .promises = {}}});
        fresh.beforeCall(++call, [&fresh] { fresh.terminate(SIGTERM); });
        try {
            static_cast<void>(freshFallback.readSelectedText(812, Policy::standard, nullptr));
        } catch (const SimulatedTermination&) {
        }
        fresh.endProcess();
        EXPECT_EQ(fresh.pasteboardContents(), before) << "told to end before call " << call;
        endedBy = fresh.endedBySignal();
    }
    EXPECT_EQ(call, callsOfARead() + 1);
}

}  // namespace
}  // namespace lomaris
