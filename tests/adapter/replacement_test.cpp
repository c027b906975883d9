#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/journal.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <vector>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

class Replacement : public testing::Test {
protected:
    Replacement() {
        desktop.bringToFront(812);
        notes.element().answers(attribute::focusedUIElement, text.element());
        notes.onCopy(copiesSelectionOf(text));
        notes.onPaste(pastesInto(text));
        desktop.userCopies(u"mine");
    }

    SelectionSnapshot captureDirectly() {
        return adapter.readSelection({.limits = {.before = 500, .after = 500}, .allowClipboardFallback = true},
                                     SelectionPurpose::standard);
    }
    SelectionSnapshot captureByKeyboard() {
        auto snapshot = captureDirectly();
        snapshot.payload.supportsDirectReplacement = false;
        snapshot.replacementStrategy = ReplacementStrategy::keyboardClipboard;
        return snapshot;
    }

    std::optional<BridgeError> replace(const SelectionSnapshot& snapshot, const ReplacementOptions& options = {}) {
        return test::thrownBy([&] {
            adapter.replaceSelection(snapshot, u"red fox", options);
            return 0;
        });
    }

    void turnFor(Duration duration) {
        const Moment end = desktop.now() + duration;
        while (desktop.now() < end) {
            desktop.scheduling().runLoopSlice(10ms);
        }
    }

    SimulatedDesktop desktop;
    MacOSAccessibilityAdapter adapter{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
};

TEST_F(Replacement, WritesAnUnchangedSelectionWithOneSet) {
    EXPECT_EQ(replace(captureDirectly()), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(test::callsWith(desktop, "setAttribute"), 1U);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(Replacement, RefusesAnUnwritableSnapshotWithoutReading) {
    auto snapshot = captureDirectly();
    snapshot.payload.supportsDirectReplacement = false;
    const auto calls = desktop.journal().size();
    EXPECT_EQ(replace(snapshot), BridgeError::directReplacementUnsupported());
    EXPECT_EQ(desktop.journal().size(), calls);
}

TEST_F(Replacement, RethrowsIfTheElementCannotBeReadAgain) {
    const auto snapshot = captureDirectly();
    desktop.quit(812);
    EXPECT_EQ(replace(snapshot), BridgeError::selectedTextUnavailable(AXError::invalidUIElement));
}

TEST_F(Replacement, RefusesAnotherText) {
    const auto snapshot = captureDirectly();
    text.setText(u"The quick brown dog", {10, 9});
    EXPECT_EQ(replace(snapshot), BridgeError::selectionChanged());
    EXPECT_EQ(text.text(), u"The quick brown dog");
}

TEST_F(Replacement, AcceptsACanonicallyEquivalentText) {
    text.setText(u"caf\u00e9", {0, 4});
    const auto snapshot = captureDirectly();
    text.answers(attribute::selectedText, Text(u"cafe\u0301"));
    text.answersSet(attribute::selectedText, AXError::success);
    EXPECT_EQ(replace(snapshot), std::nullopt);
}

TEST_F(Replacement, RefusesWhenRangeMovedByOne) {
    text.setText(u"aaaa", {1, 2});
    const auto snapshot = captureDirectly();
    text.select({2, 2});
    EXPECT_EQ(replace(snapshot), BridgeError::selectionChanged());
    EXPECT_EQ(test::callsWith(desktop, "setAttribute"), 0U);
}

TEST_F(Replacement, RefusesARangeThatAppearedOrDisappeared) {
    const auto withRange = captureDirectly();
    text.answers(attribute::selectedTextRange, AXError::noValue);
    const auto withoutRange = captureDirectly();
    EXPECT_EQ(replace(withRange), BridgeError::selectionChanged());
    text.answers(attribute::selectedTextRange, TextRange{10, 9});
    EXPECT_EQ(replace(withoutRange), BridgeError::selectionChanged());
    EXPECT_EQ(text.text(), u"The quick brown fox");
}

TEST_F(Replacement, WritesIfNeitherReadHasARange) {
    text.answers(attribute::selectedTextRange, AXError::noValue);
    EXPECT_EQ(replace(captureDirectly()), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(Replacement, ReportsTheCodeOfARefusedWriteAndDoesNotPasteInstead) {
    const auto snapshot = captureDirectly();
    text.answersSet(attribute::selectedText, AXError::failure);
    EXPECT_EQ(replace(snapshot, {.allowClipboardFallback = true}), BridgeError::replacementFailed(AXError::failure));
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(Replacement, CopiesAndComparesBeforePasting) {
    EXPECT_EQ(replace(captureByKeyboard(), {.allowClipboardFallback = true}), std::nullopt);
    turnFor(1s);
    EXPECT_EQ(text.text(), u"The quick red fox");
    ASSERT_EQ(desktop.postedKeyStrokes().size(), 2U);
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"mine");
}

TEST_F(Replacement, PostsNoCopyIfTheSelectionWasJustVerified) {
    EXPECT_EQ(replace(captureByKeyboard(), {.allowClipboardFallback = true, .justVerified = true}), std::nullopt);
    turnFor(1s);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 1U);
}

TEST_F(Replacement, MakesNoCallIfTheClipboardIsForbidden) {
    const auto snapshot = captureByKeyboard();
    const auto calls = desktop.journal().size();
    EXPECT_EQ(replace(snapshot, {.allowClipboardFallback = false, .justVerified = true}),
              BridgeError::clipboardFallbackDisabled());
    EXPECT_EQ(desktop.journal().size(), calls);
}

TEST_F(Replacement, RefusesToPasteOverAnotherText) {
    const auto snapshot = captureByKeyboard();
    text.setText(u"The quick brown dog", {10, 9});
    EXPECT_EQ(replace(snapshot, {.allowClipboardFallback = true}), BridgeError::selectionChanged());
    turnFor(1s);
    EXPECT_EQ(text.text(), u"The quick brown dog");
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"mine");
}

TEST_F(Replacement, PastesOverACanonicallyEquivalentText) {
    text.setText(u"caf\u00e9", {0, 4});
    const auto snapshot = captureByKeyboard();
    text.setText(u"cafe\u0301", {0, 5});
    EXPECT_EQ(replace(snapshot, {.allowClipboardFallback = true}), std::nullopt);
    turnFor(1s);
    EXPECT_EQ(text.text(), u"red fox");
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"mine");
}

TEST_F(Replacement, RethrowsIfTheTargetDoesNotCopy) {
    const auto snapshot = captureByKeyboard();
    notes.onCopy(ignores());
    EXPECT_EQ(
        replace(snapshot, {.allowClipboardFallback = true}),
        BridgeError::clipboardFallbackFailed(u"the target application did not respond to Cmd+C after 3 attempt(s)"));
    EXPECT_EQ(desktop.pasteboardStringForOthers(), u"mine");
}

}  // namespace
}  // namespace lomaris
