#pragma once

#include "accessibility/adapter/macos_accessibility_adapter.h"
#include "accessibility/fallback/key_strokes.h"
#include "accessibility/model/guard_trace.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/journal.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace lomaris::test {

/// A frontmost application with "brown fox" selected, a clipboard with the user's text, and a request that expects this
/// selection.
class GuardedReplacementWorld : public testing::Test {
protected:
    using Entries = std::vector<ReplacementGuardTrace::Entry>;
    using Reason = ReplacementGuardTrace::Reason;

    GuardedReplacementWorld() {
        desktop.bringToFront(812);
        desktop.setInputCounters({1, 2, 3, 4});
        desktop.userCopies(u"mine");
        clipboard = desktop.pasteboardContents();
        notes.element().answers(attribute::focusedUIElement, text.element());
        notes.onCopy(copiesSelectionOf(text));
        notes.onPaste(pastesInto(text));
        ReplacementGuardTrace::shared().reset();
    }

    std::optional<BridgeError> replace() {
        return thrownBy([this] {
            adapter.replaceSelectionIfCurrent(request, options);
            return 0;
        });
    }

    /// The focused element does not expose the selection; Command+C copies it.
    void hideSelection() { notes.element().answers(attribute::focusedUIElement, notes.addElement().element()); }

    /// The selection can be read but not written, so it can only be replaced by pasting.
    void forbidWriting() { text.answersSettable(attribute::selectedText, {AXError::success, false}); }

    static Entries entries(Reason reason, std::int64_t error = 0, std::int64_t expected = 0, std::int64_t current = 0) {
        return {{"reason", static_cast<std::int64_t>(reason)},
                {"error", error},
                {"expected_chars", expected},
                {"current_chars", current}};
    }

    [[nodiscard]] std::size_t pastes() const {
        const auto& posted = desktop.postedKeyStrokes();
        return static_cast<std::size_t>(std::count_if(
            posted.begin(), posted.end(), [](const auto& stroke) { return stroke.keyStroke == key_stroke::paste; }));
    }

    /// Nothing was written or pasted, and the user's clipboard is unchanged.
    void expectNothingWritten() {
        EXPECT_EQ(callsWith(desktop, "setAttribute(812/1, AXSelectedText"), 0U);
        EXPECT_EQ(pastes(), 0U);
        EXPECT_EQ(desktop.pasteboardContents(), clipboard);
    }

    /// The replacement is refused for this reason and changes nothing.
    void expectRefusal(const Entries& reason) {
        EXPECT_EQ(replace(), BridgeError::selectionChanged());
        EXPECT_EQ(ReplacementGuardTrace::shared().snapshot(), reason);
        expectNothingWritten();
    }

    static void expectEmptyTrace() {
        EXPECT_EQ(ReplacementGuardTrace::shared().snapshot(), ReplacementGuardTrace().snapshot());
    }

    SimulatedDesktop desktop;
    MacOSAccessibilityAdapter adapter{desktop};
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    SimulatedElement window = notes.addElement();
    std::vector<StandingItem> clipboard;
    GuardedReplacementRequest request{.expectedText = u"brown fox",
                                      .expectedProcessIdentifier = 812,
                                      .expectedBundleIdentifier = u"com.example.notes",
                                      .expectedSelectedRange = TextRange{10, 9},
                                      .expectedInputActivity = {1, 2, 3, 4},
                                      .replacementText = u"red fox"};
    SelectionReadOptions options{.limits = {.before = 500, .after = 500}, .allowClipboardFallback = true};
};

}  // namespace lomaris::test
