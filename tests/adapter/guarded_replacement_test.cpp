#include "tests/adapter/guarded_replacement_world.h"
#include "tests/support/run_loop.h"

#include <chrono>
#include <new>
#include <string>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

using Lines = std::vector<std::string>;

class GuardedReplacement : public test::GuardedReplacementWorld {
protected:
    static PostedKeyStroke posted(KeyStroke keyStroke, Moment moment) {
        return {.keyStroke = keyStroke, .processIdentifier = std::nullopt, .moment = moment};
    }
};

TEST_F(GuardedReplacement, WritesIfTwoReadsFindTheSameSelection) {
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(test::callsWith(desktop, "copyAttribute(812/1, AXSelectedText)"), 2U);
    EXPECT_EQ(test::callsWith(desktop, "setAttribute(812/1, AXSelectedText, \"red fox\")"), 1U);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
    expectEmptyTrace();
}

TEST_F(GuardedReplacement, CopiesOnceAndPastesIfTheSelectionIsHidden) {
    hideSelection();
    EXPECT_EQ(replace(), std::nullopt);
    // 50 ms is the pause before the second search for a Copy command.
    EXPECT_EQ(desktop.postedKeyStrokes(),
              (std::vector<PostedKeyStroke>{posted(key_stroke::copy, 50ms), posted(key_stroke::paste, 50ms)}));
    test::turnFor(desktop, 1s);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
    expectEmptyTrace();
}

TEST_F(GuardedReplacement, PastesWithoutACopyIfTheElementIsReadOnly) {
    forbidWriting();
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{posted(key_stroke::paste, 0ms)}));
    test::turnFor(desktop, 1s);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(GuardedReplacement, DeletesTheSelectionBeforePastingAWebAddress) {
    forbidWriting();
    notes.onDelete(deletesSelectionOf(text));
    request.replacementText = u"https://example.org";
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{posted(key_stroke::collapseSelection, 0ms),
                                                                        posted(key_stroke::paste, 80ms)}));
    test::turnFor(desktop, 1s);
    EXPECT_EQ(text.text(), u"The quick https://example.org");
}

TEST_F(GuardedReplacement, UsesTheMenuCommandToReadAgain) {
    hideSelection();
    notes.addMenuBar({{u"Edit", {{u"Copy", u"c"}}}})
        .item(u"Edit", u"Copy")
        .onAction(action::press, copiesSelectionOf(text));
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(desktop.postedKeyStrokes(), (std::vector<PostedKeyStroke>{posted(key_stroke::paste, 0ms)}));
}

// The order of the first calls.

TEST_F(GuardedReplacement, SamplesInputFirstAndRaisesTheWindowBeforeReading) {
    notes.element().answers(attribute::focusedWindow, window.element());
    const auto start = static_cast<std::ptrdiff_t>(desktop.journal().size());
    EXPECT_EQ(replace(), std::nullopt);
    const Lines first(desktop.journal().begin() + start, desktop.journal().begin() + start + 14);
    EXPECT_EQ(
        first,
        (Lines{"0.000000000 inputCounter(10) -> 1", "0.000000000 inputCounter(1) -> 2",
               "0.000000000 inputCounter(3) -> 3", "0.000000000 inputCounter(25) -> 4",
               "0.000000000 frontmostApplication() -> 812 com.example.notes \"Notes\"",
               "0.000000000 applicationElement(812)", "0.000000000 copyAttribute(812, AXFocusedWindow) -> 812/2",
               "0.000000000 performAction(812/2, AXRaise) -> error -25206",
               "0.000000000 setAttribute(812/2, AXMain, true) -> error -25205",
               "0.000000000 setAttribute(812/2, AXFocused, true) -> error -25205", "0.000000000 sleep(0.100000000)",
               "0.100000000 frontmostApplication() -> 812 com.example.notes \"Notes\"",
               "0.100000000 isProcessTrusted(none) -> true",
               "0.100000000 frontmostApplication() -> 812 com.example.notes \"Notes\""}));
}

TEST_F(GuardedReplacement, ResetsTheTraceAfterSamplingInput) {
    ReplacementGuardTrace::shared().record({.reason = Reason::textChanged});
    Entries whileCounting;
    Entries afterwards;
    const std::size_t calls = desktop.journal().size();
    desktop.beforeCall(calls + 4, [&] { whileCounting = ReplacementGuardTrace::shared().snapshot(); });
    desktop.beforeCall(calls + 5, [&] { afterwards = ReplacementGuardTrace::shared().snapshot(); });
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(whileCounting, entries(Reason::textChanged));
    EXPECT_EQ(afterwards, ReplacementGuardTrace().snapshot());
    expectEmptyTrace();
}

// The frontmost application.

TEST_F(GuardedReplacement, ReadsNothingIfAnotherApplicationIsFrontmost) {
    desktop.addApplication(900, u"com.example.notes", u"Other");
    desktop.addApplication(901, std::nullopt, u"Nameless");
    struct Front {
        std::optional<ProcessIdentifier> front;
        ProcessIdentifier expectedProcess;
        std::optional<Text> expectedBundle;
        std::string seen;
    };
    const std::vector<Front> fronts = {
        {std::nullopt, 812, u"com.example.notes", "nothing"},
        {std::nullopt, 0, std::nullopt, "nothing"},
        {900, 812, u"com.example.notes", "900 com.example.notes \"Other\""},
        {900, 812, std::nullopt, "900 com.example.notes \"Other\""},
        {812, 812, u"com.example.note", "812 com.example.notes \"Notes\""},
        {812, 812, u"com.example.Notes", "812 com.example.notes \"Notes\""},
        {812, 812, u"", "812 com.example.notes \"Notes\""},
        {901, 901, u"com.example.notes", "901 (no identifier) \"Nameless\""},
        {901, 901, u"", "901 (no identifier) \"Nameless\""},
    };
    for (const auto& tried : fronts) {
        if (tried.front) {
            desktop.bringToFront(*tried.front);
        } else {
            desktop.leaveNothingInFront();
        }
        request.expectedProcessIdentifier = tried.expectedProcess;
        request.expectedBundleIdentifier = tried.expectedBundle;
        const auto start = static_cast<std::ptrdiff_t>(desktop.journal().size());
        expectRefusal(entries(Reason::notFrontmost));
        EXPECT_EQ(Lines(desktop.journal().begin() + start, desktop.journal().end()),
                  (Lines{"0.000000000 inputCounter(10) -> 1", "0.000000000 inputCounter(1) -> 2",
                         "0.000000000 inputCounter(3) -> 3", "0.000000000 inputCounter(25) -> 4",
                         "0.000000000 frontmostApplication() -> " + tried.seen}));
    }
}

TEST_F(GuardedReplacement, ReadsBeforeRefusingAMissingBundleIdentifier) {
    request.expectedBundleIdentifier.reset();
    expectRefusal(entries(Reason::applicationChanged));
    EXPECT_EQ(test::callsWith(desktop, "copyAttribute(812/1, AXSelectedText)"), 1U);
    hideSelection();
    expectRefusal(entries(Reason::applicationChanged));
    EXPECT_EQ(test::callsWith(desktop, "postToSession(key 8, flags 0x100000)"), 1U);
}

TEST_F(GuardedReplacement, ReplacesIfNoIdentifierIsExpectedOrPresent) {
    desktop.addApplication(901, std::nullopt, std::nullopt)
        .element()
        .answers(attribute::focusedUIElement, text.element());
    desktop.addApplication(902, std::nullopt, std::nullopt).onCopy(copies(u"brown fox"));
    request.expectedBundleIdentifier.reset();
    // The focused element of application 901 belongs to process 812.
    request.expectedProcessIdentifier = 901;
    desktop.bringToFront(901);
    expectRefusal(entries(Reason::applicationChanged));
    request.expectedProcessIdentifier = 902;
    desktop.bringToFront(902);
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(pastes(), 1U);
}

TEST_F(GuardedReplacement, RefusesAnElementWithoutAProcess) {
    text.processIdentifierFails();
    expectRefusal(entries(Reason::applicationChanged));
}

TEST_F(GuardedReplacement, RefusesIfAnotherApplicationIsFrontmostAfterRaising) {
    notes.element().answers(attribute::focusedWindow, window.element());
    const auto other = desktop.addApplication(900, u"com.example.notes", u"Notes");
    const auto otherText = other.addTextElement(u"The quick brown fox", TextRange{10, 9});
    other.element().answers(attribute::focusedUIElement, otherText.element());
    desktop.at(50ms, [this] { desktop.bringToFront(900); });
    expectRefusal(entries(Reason::applicationChanged));
    EXPECT_EQ(otherText.text(), u"The quick brown fox");
}

TEST_F(GuardedReplacement, RefusesAnotherApplicationUnderTheSameProcessIdentifier) {
    notes.element().answers(attribute::focusedWindow, window.element());
    desktop.at(50ms, [this] {
        desktop.quit(812);
        const auto other = desktop.addApplication(812, u"com.example.editor", u"Editor");
        other.element().answers(attribute::focusedUIElement,
                                other.addTextElement(u"The quick brown fox", TextRange{10, 9}).element());
        desktop.bringToFront(812);
    });
    expectRefusal(entries(Reason::applicationChanged));
}

// The second read.

TEST_F(GuardedReplacement, RefusesAnUntrustedProcessAsAFailedRead) {
    desktop.setTrusted(false);
    expectRefusal(entries(Reason::rereadFailed, 4));
}

TEST_F(GuardedReplacement, RecordsNoSelectionIfTheTargetCopiesNoText) {
    text.select({10, 0});
    notes.onCopy(copies(u""));
    expectRefusal(entries(Reason::rereadFailed, 1));
    EXPECT_EQ(desktop.postedKeyStrokes(),
              (std::vector<PostedKeyStroke>{posted(key_stroke::copy, 50ms), posted(key_stroke::copy, 130ms),
                                            posted(key_stroke::copy, 210ms)}));
}

TEST_F(GuardedReplacement, RecordsNoSelectionWithoutFocusedElementOrCopy) {
    notes.element().answers(attribute::focusedUIElement, AXError::noValue);
    notes.onCopy(copies(u""));
    expectRefusal(entries(Reason::rereadFailed, 1));
}

TEST_F(GuardedReplacement, HidesTheErrorOfATargetThatDoesNotCopy) {
    hideSelection();
    notes.onCopy(ignores());
    expectRefusal(entries(Reason::rereadFailed, 4));
    EXPECT_EQ(desktop.now(), 3210ms);
}

TEST_F(GuardedReplacement, HidesTheErrorOfAForbiddenClipboard) {
    options.allowClipboardFallback = false;
    forbidWriting();
    expectRefusal(entries(Reason::rereadFailed, 4));
    hideSelection();
    expectRefusal(entries(Reason::rereadFailed, 4));
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(GuardedReplacement, HidesTheErrorOfKeysThatMayNotBePosted) {
    hideSelection();
    desktop.setPostEventAccess(false);
    expectRefusal(entries(Reason::rereadFailed, 4));
}

TEST_F(GuardedReplacement, HidesTheErrorOfAnApplicationThatQuitWhileRaising) {
    notes.element().answers(attribute::focusedWindow, window.element());
    desktop.at(50ms, [this] { desktop.quit(812); });
    expectRefusal(entries(Reason::rereadFailed, 4));
}

TEST_F(GuardedReplacement, HidesExceptionsOfOtherTypesFromTheSecondRead) {
    // The tenth call belongs to the second read: it checks whether the process is trusted.
    desktop.beforeCall(10, [] { throw std::bad_alloc(); });
    expectRefusal(entries(Reason::rereadFailed, 4));
}

// The text.

TEST_F(GuardedReplacement, RecordsTheLengthsOfTwoDifferentTexts) {
    struct Texts {
        Text expected;
        Text current;
        std::int64_t expectedCharacters;
        std::int64_t currentCharacters;
    };
    const std::vector<Texts> differing = {
        {u"abc", u"abcd", 3, 4},
        {u"abc", u"abC", 3, 3},
        // Three joined emoji, one character; a flag and a letter.
        {u"\U0001f468\u200d\U0001f469\u200d\U0001f467", u"\U0001f1e9\U0001f1ea!", 1, 2},
        {u"e\u0301e\u0301", u"e\u0301", 2, 1},
        {u"a\r\nb", u"a\nb", 3, 3},
        {u"brown fox", u"brown fox ", 9, 10},
    };
    for (const auto& tried : differing) {
        request.expectedText = tried.expected;
        text.setText(tried.current, {0, static_cast<std::int64_t>(tried.current.size())});
        const auto expected = entries(Reason::textChanged, 0, tried.expectedCharacters, tried.currentCharacters);
        notes.element().answers(attribute::focusedUIElement, text.element());
        expectRefusal(expected);
        hideSelection();
        expectRefusal(expected);
        EXPECT_EQ(text.text(), tried.current);
    }
}

TEST_F(GuardedReplacement, AcceptsACanonicallyEquivalentText) {
    text.setText(u"caf\u00e9", {0, 4});
    request.expectedText = u"cafe\u0301";
    request.expectedSelectedRange = TextRange{0, 4};
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(text.text(), u"red fox");
}

TEST_F(GuardedReplacement, AcceptsAReplacementCharacterForHalfASurrogatePair) {
    text.setText(u"a\U0001f600b", {1, 1});
    request.expectedText = u"\ufffd";
    request.expectedSelectedRange = TextRange{1, 1};
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(test::callsWith(desktop, "setAttribute(812/1, AXSelectedText, \"red fox\")"), 1U);
}

// The write.

TEST_F(GuardedReplacement, RethrowsTheCodeOfARefusedWriteAndRecordsNothing) {
    ReplacementGuardTrace::shared().record({.reason = Reason::textChanged});
    text.answersSet(attribute::selectedText, AXError::failure);
    EXPECT_EQ(replace(), BridgeError::replacementFailed(AXError::failure));
    expectEmptyTrace();
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(GuardedReplacement, RecordsNothingIfTheSelectionChangesAfterTheGuard) {
    text.answersInTurn(attribute::selectedText, {answer(Text(u"brown fox")), answer(Text(u"brown dog"))});
    EXPECT_EQ(replace(), BridgeError::selectionChanged());
    expectEmptyTrace();
    expectNothingWritten();
}

TEST_F(GuardedReplacement, RethrowsAndRestoresIfThePasteCannotBePosted) {
    hideSelection();
    notes.onCopy([this] {
        desktop.userCopies(u"brown fox");
        desktop.failKeyStrokes();
    });
    EXPECT_EQ(replace(), BridgeError::clipboardFallbackFailed(u"could not create keyboard events"));
    expectEmptyTrace();
    expectNothingWritten();
}

TEST_F(GuardedReplacement, RethrowsIfTheTextCannotBeStaged) {
    forbidWriting();
    desktop.refusePasteboardWrites();
    EXPECT_EQ(replace(), BridgeError::clipboardFallbackFailed(u"could not stage replacement text"));
    expectEmptyTrace();
    expectNothingWritten();
}

}  // namespace
}  // namespace lomaris
