#include "accessibility/model/diagnostics.h"

#include "tests/support/diagnostics_printer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

SelectionPayload readSelection() {
    SelectionPayload payload;
    payload.applicationName = u"Notes";
    payload.bundleIdentifier = u"com.example.notes";
    payload.processIdentifier = 812;
    payload.selectedText = u"brown fox";
    payload.contextBefore = u"The quick ";
    payload.contextAfter = u" jumps over";
    payload.selectedRange = SelectionRangePayload{10, 9};
    payload.supportsDirectReplacement = true;
    payload.selectionMethod = selection_method::accessibility;
    return payload;
}

TEST(CompatibilityDiagnostic, SummarizesASelectionReadDirectly) {
    CompatibilityDiagnosticPayload expected;
    expected.schemaVersion = 1;
    expected.applicationName = u"Notes";
    expected.bundleIdentifier = u"com.example.notes";
    expected.selectionReadable = true;
    expected.selectionLength = 9;
    expected.selectionMethod = u"accessibility";
    expected.usesClipboardFallback = false;
    expected.supportsDirectReplacement = true;
    expected.contextBeforeLength = 10;
    expected.contextAfterLength = 11;
    EXPECT_EQ(CompatibilityDiagnosticPayload(readSelection()), expected);
}

TEST(CompatibilityDiagnostic, SummarizesACopiedSelection) {
    SelectionPayload selection;
    selection.selectedText = u"fox";
    selection.selectionMethod = selection_method::keyboardClipboardFallback;

    CompatibilityDiagnosticPayload expected;
    expected.selectionReadable = true;
    expected.selectionLength = 3;
    expected.selectionMethod = u"keyboardClipboardFallback";
    expected.usesClipboardFallback = true;
    EXPECT_EQ(CompatibilityDiagnosticPayload(selection), expected);
}

TEST(CompatibilityDiagnostic, UsesTheClipboardIfTheTextCannotBeWritten) {
    for (const TextView method : {selection_method::accessibility, selection_method::keyboardClipboardFallback}) {
        for (const bool supports : {false, true}) {
            SelectionPayload selection = readSelection();
            selection.selectionMethod = method;
            selection.supportsDirectReplacement = supports;
            const CompatibilityDiagnosticPayload compatibility(selection);
            EXPECT_EQ(compatibility.selectionMethod, method);
            EXPECT_EQ(compatibility.supportsDirectReplacement, supports);
            EXPECT_EQ(compatibility.usesClipboardFallback, !supports);
        }
    }
}

TEST(CompatibilityDiagnostic, ReportsAnEmptySelectionAsUnreadable) {
    SelectionPayload selection = readSelection();
    selection.selectedText.clear();
    const CompatibilityDiagnosticPayload compatibility(selection);
    EXPECT_FALSE(compatibility.selectionReadable);
    EXPECT_EQ(compatibility.selectionLength, 0);
    EXPECT_EQ(compatibility.contextBeforeLength, 10);
}

TEST(CompatibilityDiagnostic, CountsUserPerceivedCharacters) {
    const std::vector<std::pair<Text, std::int64_t>> examples = {
        {u"\U0001F1EB\U0001F1F7", 1},        // a flag, four units
        {u"e\u0301", 1},                     // a letter and its accent
        {u"\r\n", 1},                        // a line break
        {u"\U0001F469\u200D\U0001F4BB", 1},  // two emoji joined into one
        {u"\u0915\u094D\u0937", 1},          // an Indic conjunct
        {Text(1, u'\xD83C'), 1},             // half a surrogate pair
        {u"a b", 3},
    };
    for (const auto& [text, length] : examples) {
        SelectionPayload selection = readSelection();
        selection.selectedText = text;
        selection.contextBefore = text + u"a";
        selection.contextAfter = u"ab" + text;
        const CompatibilityDiagnosticPayload compatibility(selection);
        EXPECT_TRUE(compatibility.selectionReadable);
        EXPECT_EQ(compatibility.selectionLength, length);
        EXPECT_EQ(compatibility.contextBeforeLength, length + 1);
        EXPECT_EQ(compatibility.contextAfterLength, length + 2);
    }
}

TEST(CompatibilityDiagnostic, LeavesOutNamesMissingFromTheSelection) {
    SelectionPayload selection = readSelection();
    selection.applicationName.reset();
    selection.bundleIdentifier.reset();
    const CompatibilityDiagnosticPayload compatibility(selection);
    EXPECT_EQ(compatibility.applicationName, std::nullopt);
    EXPECT_EQ(compatibility.bundleIdentifier, std::nullopt);
}

}  // namespace
}  // namespace lomaris
