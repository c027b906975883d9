#include "accessibility/fallback/key_strokes.h"
#include "accessibility/fallback/keyboard_clipboard_fallback.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/thrown_error.h"

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

class ClipboardReplace : public testing::Test {
protected:
    ClipboardReplace() {
        desktop.bringToFront(812);
        desktop.userCopies(u"mine");
        before = desktop.pasteboardContents();
    }

    void replace(TextView replacement) { fallback.replaceSelectedText(replacement, 812); }
    std::optional<BridgeError> error(TextView replacement) {
        return test::thrownBy([&] {
            replace(replacement);
            return 0;
        });
    }

    /// Runs the main queue for a time, as a host does.
    void turnFor(Duration duration) {
        const Moment end = desktop.now() + duration;
        while (desktop.now() < end) {
            desktop.scheduling().runLoopSlice(10ms);
        }
    }

    /// Runs the main queue and returns the virtual time, as in the journal, at which the user's clipboard was restored.
    std::string restoredAt() {
        turnFor(5s);
        EXPECT_EQ(desktop.pasteboardContents(), before);
        std::string moment;
        for (const auto& line : desktop.journal()) {
            if (line.find("clearContents") != std::string::npos) {
                moment = line.substr(0, line.find(' '));
            }
        }
        return moment;
    }

    static PostedKeyStroke posted(KeyStroke keyStroke, Moment moment) {
        return {.keyStroke = keyStroke, .processIdentifier = std::nullopt, .moment = moment};
    }

    SimulatedDesktop desktop;
    KeyboardClipboardFallback fallback{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    std::vector<StandingItem> before;
};

TEST_F(ClipboardReplace, PastesAPlainWordWithoutDeleteAndWithoutWaiting) {
    notes.onPaste(pastesInto(text));
    replace(u"red fox");
    EXPECT_EQ(desktop.now(), 0ms);
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{posted(key_stroke::paste, 0ms)}));
    turnFor(20ms);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ClipboardReplace, DeletesAndPauses80MillisecondsBeforeAWebAddress) {
    notes.onDelete(deletesSelectionOf(text));
    notes.onPaste(pastesInto(text));
    replace(u"https://example.org");
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{posted(key_stroke::collapseSelection, 0ms),
                                                                        posted(key_stroke::paste, 80ms)}));
    turnFor(20ms);
    EXPECT_EQ(text.text(), u"The quick https://example.org");
}

TEST_F(ClipboardReplace, Restores300MillisecondsAfterAPasteReadImmediately) {
    notes.onPaste(pastesInto(text));
    replace(u"red fox");
    EXPECT_EQ(restoredAt(), "0.300000000");
}

TEST_F(ClipboardReplace, RestoresTheClipboardWhenALatePasteIsRead) {
    notes.onPaste(pastesInto(text).after(1s));
    replace(u"red fox");
    EXPECT_EQ(restoredAt(), "1.000000000");
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ClipboardReplace, RestoresAfter2500MillisecondsIfTheTargetNeverPastes) {
    replace(u"red fox");
    EXPECT_EQ(restoredAt(), "2.500000000");
}

TEST_F(ClipboardReplace, RestoresTheSavedClipboardAfterAFollowingRead) {
    notes.onPaste(pastesInto(text));
    notes.onCopy(copies(u"something"));
    replace(u"red fox");
    turnFor(100ms);
    EXPECT_EQ(fallback.readSelectedText(812, ClipboardSelectionReadPolicy::standard, nullptr), u"something");
    EXPECT_EQ(desktop.now(), 300ms);
    EXPECT_EQ(desktop.pasteboardContents(), before);
    const std::size_t calls = desktop.journal().size();
    turnFor(4s);
    EXPECT_EQ(desktop.pasteboardContents(), before);
    for (std::size_t call = calls; call < desktop.journal().size(); ++call) {
        EXPECT_EQ(desktop.journal()[call].find("writeItems"), std::string::npos) << desktop.journal()[call];
    }
}

TEST_F(ClipboardReplace, KeepsWhatTheUserCopiesAfterThePaste) {
    notes.onPaste(pastesInto(text));
    desktop.at(100ms, [this] { desktop.userCopies(u"newer"); });
    replace(u"red fox");
    turnFor(3s);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"newer");
}

TEST_F(ClipboardReplace, RestoresAndFailsIfTheTextCannotBeStaged) {
    desktop.refusePasteboardWrites();
    EXPECT_EQ(error(u"red fox"), BridgeError::clipboardFallbackFailed(u"could not stage replacement text"));
    EXPECT_EQ(desktop.pasteboardContents(), before);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(ClipboardReplace, RestoresAndRethrowsIfKeysMayNotBePosted) {
    desktop.setPostEventAccess(false);
    EXPECT_EQ(error(u"red fox"), BridgeError::keyboardEventPermissionRequired());
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardReplace, RestoresAndRethrowsIfDeleteCannotBeCreated) {
    desktop.failKeyStrokes();
    EXPECT_EQ(error(u"www.example.org"), BridgeError::clipboardFallbackFailed(u"could not create keyboard events"));
    EXPECT_EQ(desktop.pasteboardContents(), before);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(ClipboardReplace, RestoresAndRethrowsIfPasteCannotBeCreatedAfterDelete) {
    notes.onDelete([this] { desktop.failKeyStrokes(); });
    EXPECT_EQ(error(u"www.example.org"), BridgeError::clipboardFallbackFailed(u"could not create keyboard events"));
    EXPECT_EQ(desktop.pasteboardContents(), before);
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{posted(key_stroke::collapseSelection, 0ms)}));
}

TEST_F(ClipboardReplace, KeepsTheStagedTextForALatePasteIfTheProcessEnds) {
    notes.onPaste(pastesInto(text).after(500ms));
    replace(u"red fox");
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ClipboardReplace, PastesNothingIfTerminatedWhileStaging) {
    // Call 1 reads the items of the pasteboard; nothing is pasted for several calls after that.
    const std::size_t calls = desktop.journal().size();
    desktop.beforeCall(calls + 3, [this] { desktop.terminate(SIGTERM); });
    EXPECT_THROW(replace(u"red fox"), SimulatedTermination);
    EXPECT_EQ(desktop.pasteboardContents(), before);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(ClipboardReplace, PastesAfterDeletingIfTerminatedInBetween) {
    notes.onDelete(deletesSelectionOf(text));
    notes.onPaste(pastesInto(text));
    desktop.at(40ms, [this] { desktop.terminate(SIGTERM); });
    EXPECT_THROW(replace(u"www.example.org"), SimulatedTermination);
    EXPECT_EQ(desktop.endedBySignal(), SIGTERM);
    EXPECT_EQ(desktop.now(), 80ms);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 2U);
    EXPECT_EQ(text.text(), u"The quick www.example.org");
}

TEST_F(ClipboardReplace, IsDoneCompletelyOrNotAtAllIfTerminatedAtAnyCall) {
    std::optional<int> endedBy = SIGTERM;
    std::size_t call = 0;
    std::size_t done = 0;
    while (endedBy) {
        SimulatedDesktop fresh;
        KeyboardClipboardFallback freshFallback(fresh);
        auto freshNotes = fresh.addApplication(812, std::nullopt, std::nullopt);
        auto freshText = freshNotes.addTextElement(u"The quick brown fox", {10, 9});
        freshNotes.onDelete(deletesSelectionOf(freshText)).onPaste(pastesInto(freshText));
        fresh.bringToFront(812);
        fresh.userCopies(u"mine");
        fresh.beforeCall(++call, [&fresh] { fresh.terminate(SIGTERM); });
        try {
            freshFallback.replaceSelectedText(u"www.example.org", 812);
        } catch (const SimulatedTermination&) {
        }
        fresh.endProcess();
        endedBy = fresh.endedBySignal();
        if (fresh.postedKeyStrokes().empty()) {
            EXPECT_EQ(freshText.text(), u"The quick brown fox") << "told to end before call " << call;
            EXPECT_EQ(fresh.pasteboardContents(), before) << "told to end before call " << call;
        } else {
            EXPECT_EQ(freshText.text(), u"The quick www.example.org") << "told to end before call " << call;
            ++done;
        }
    }
    EXPECT_GT(done, 5U);
    EXPECT_GT(call - done, 5U);
}

TEST_F(ClipboardReplace, RestoresIfTerminatedBeforeAPasteThatCannotBePosted) {
    desktop.at(40ms, [this] {
        desktop.terminate(SIGTERM);
        desktop.failKeyStrokes();
    });
    EXPECT_THROW(replace(u"www.example.org"), BridgeError);
    EXPECT_EQ(desktop.endedBySignal(), SIGTERM);
    EXPECT_EQ(desktop.pasteboardContents(), before);
}

TEST_F(ClipboardReplace, KeepsTheStagedTextIfTerminatedWhilePasting) {
    notes.onPaste([this] { desktop.terminate(SIGINT); });
    EXPECT_THROW(replace(u"red fox"), SimulatedTermination);
    EXPECT_EQ(desktop.endedBySignal(), SIGINT);
    ASSERT_EQ(desktop.pasteboardContents().size(), 1U);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"red fox");
}

TEST_F(ClipboardReplace, KeepsTheStagedTextIfTerminatedAfterThePaste) {
    notes.onPaste(pastesInto(text).after(1s));
    replace(u"red fox");
    desktop.at(100ms, [this] { desktop.terminate(SIGHUP); });
    EXPECT_THROW(turnFor(3s), SimulatedTermination);
    desktop.endProcess();
    EXPECT_EQ(text.text(), u"The quick red fox");
}

}  // namespace
}  // namespace lomaris
