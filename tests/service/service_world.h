#pragma once

#include "accessibility/fallback/key_strokes.h"
#include "accessibility/service/accessibility_service.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/journal.h"
#include "tests/support/run_loop.h"
#include "tests/support/thrown_error.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lomaris::test {

using Lines = std::vector<std::string>;

/// A frontmost application with "brown fox" selected, a clipboard with the user's text, and a service.
class ServiceWorld : public testing::Test {
protected:
    ServiceWorld() {
        desktop.bringToFront(812);
        desktop.setInputCounters({1, 2, 3, 4});
        desktop.userCopies(u"mine");
        clipboard = desktop.pasteboardContents();
        calls = desktop.journal().size();
        notes.element().answers(attribute::focusedUIElement, text.element());
        notes.onCopy(copiesSelectionOf(text));
        notes.onPaste(pastesInto(text));
    }

    /// The focused element does not expose the selection; Command+C copies it.
    void hideSelection() { notes.element().answers(attribute::focusedUIElement, notes.addElement().element()); }

    /// The selection can be read but not written, so it can only be replaced by pasting.
    void forbidWriting() { text.answersSettable(attribute::selectedText, {AXError::success, false}); }

    /// Returns the calls in the journal since the constructor.
    [[nodiscard]] Lines journal() const {
        return {desktop.journal().begin() + static_cast<std::ptrdiff_t>(calls), desktop.journal().end()};
    }

    static PostedKeyStroke posted(KeyStroke keyStroke, Moment moment) {
        return {.keyStroke = keyStroke, .processIdentifier = std::nullopt, .moment = moment};
    }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", TextRange{10, 9});
    std::vector<StandingItem> clipboard;
    std::size_t calls = 0;
    std::unique_ptr<LomarisAccessibilityService> service = std::make_unique<LomarisAccessibilityService>(desktop);
};

}  // namespace lomaris::test
