#include "accessibility/model/guard_trace.h"
#include "tests/service/service_world.h"

#include <chrono>
#include <string_view>

namespace lomaris {
namespace {

using test::Lines;

using namespace std::chrono_literals;

class ServiceReplacement : public test::ServiceWorld {
protected:
    std::optional<BridgeError> replaceWith(TextView replacement) {
        return test::thrownBy([&] {
            service->replaceCurrentSelection(replacement, 500, 500);
            return 0;
        });
    }
    std::optional<BridgeError> request(std::string_view bytes) {
        return test::thrownBy([&] {
            service->replaceSelectionIfCurrent(bytes, 500, 500);
            return 0;
        });
    }

    static std::string requestFor(const std::string& expected, const std::string& replacement) {
        return R"({"expectedText": ")" + expected + R"(", "replacementText": ")" + replacement +
               R"(", "expectedProcessIdentifier": 812, "expectedBundleIdentifier": "com.example.notes",
                  "expectedInputActivity": {"keyDownCount": 1, "leftMouseDownCount": 2,
                                            "rightMouseDownCount": 3, "otherMouseDownCount": 4}})";
    }
};

TEST_F(ServiceReplacement, RefusesAnEmptyReplacementBeforeAnyCall) {
    EXPECT_EQ(replaceWith(u""), BridgeError::invalidInput(u"Replacement text must not be empty."));
    EXPECT_EQ(journal(), Lines());
}

TEST_F(ServiceReplacement, WritesOnceIfTheElementIsWritable) {
    EXPECT_EQ(replaceWith(u"red fox"), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(test::callsWith(desktop, "setAttribute"), 1U);
    EXPECT_EQ(test::callsWith(desktop, "setAttribute(812/1, AXSelectedText, \"red fox\") -> success"), 1U);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(ServiceReplacement, AcceptsAReplacementOfOneSpace) {
    EXPECT_EQ(replaceWith(u" "), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick  ");
}

TEST_F(ServiceReplacement, RefusesASelectionThatDiffersOnTheSecondRead) {
    text.answersInTurn(attribute::selectedText, {answer(Text(u"brown fox")), answer(Text(u"brown dog"))});
    EXPECT_EQ(replaceWith(u"red fox"), BridgeError::selectionChanged());
    EXPECT_EQ(test::callsWith(desktop, "setAttribute"), 0U);
}

TEST_F(ServiceReplacement, RefusesARangeThatDiffersOnTheSecondRead) {
    const std::vector<std::vector<AttributeAnswer>> turns = {
        {answer(TextRange{10, 9}), answer(TextRange{11, 9})},
        {answer(TextRange{10, 9}), answer(TextRange{10, 8})},
        {answer(TextRange{10, 9}), answer(AXError::noValue)},
        {answer(AXError::noValue), answer(TextRange{10, 9})},
    };
    for (const auto& turn : turns) {
        text.answersInTurn(attribute::selectedTextRange, turn);
        EXPECT_EQ(replaceWith(u"red fox"), BridgeError::selectionChanged());
    }
    EXPECT_EQ(test::callsWith(desktop, "setAttribute"), 0U);
}

TEST_F(ServiceReplacement, ReportsTheCodeOfARefusedWrite) {
    text.answersSet(attribute::selectedText, AXError::cannotComplete);
    EXPECT_EQ(replaceWith(u"red fox"), BridgeError::replacementFailed(AXError::cannotComplete));
    EXPECT_EQ(test::callsWith(desktop, "setAttribute"), 1U);
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 0U);
}

TEST_F(ServiceReplacement, CopiesAndPastesIfTheElementCannotBeWritten) {
    forbidWriting();
    EXPECT_EQ(replaceWith(u"red fox"), std::nullopt);
    EXPECT_EQ(desktop.postedKeyStrokes(),
              (std::vector<PostedKeyStroke>{posted(key_stroke::copy, 0ms), posted(key_stroke::paste, 0ms)}));
    test::turnFor(desktop, 1s);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(ServiceReplacement, CopiesTwiceAndPastesIfTheSelectionIsHidden) {
    hideSelection();
    notes.onDelete(deletesSelectionOf(text));
    EXPECT_EQ(replaceWith(u"www.example.org"), std::nullopt);
    EXPECT_EQ(
        desktop.postedKeyStrokes(),
        (std::vector<PostedKeyStroke>{posted(key_stroke::copy, 0ms), posted(key_stroke::copy, 0ms),
                                      posted(key_stroke::collapseSelection, 0ms), posted(key_stroke::paste, 80ms)}));
    test::turnFor(desktop, 1s);
    EXPECT_EQ(text.text(), u"The quick www.example.org");
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(ServiceReplacement, RefusesToPasteIfTheSecondCopyDiffers) {
    hideSelection();
    notes.onCopyInTurn({copies(u"brown fox"), copies(u"brown dog")});
    EXPECT_EQ(replaceWith(u"red fox"), BridgeError::selectionChanged());
    EXPECT_EQ(desktop.postedKeyStrokes().size(), 2U);
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(ServiceReplacement, RestoresTheClipboardIfKeysMayNotBePosted) {
    forbidWriting();
    desktop.setPostEventAccess(false);
    EXPECT_EQ(replaceWith(u"red fox"), BridgeError::keyboardEventPermissionRequired());
    EXPECT_EQ(desktop.pasteboardContents(), clipboard);
}

TEST_F(ServiceReplacement, LeavesTheClipboardEmptyIfTheTextCannotBeStaged) {
    forbidWriting();
    // With an empty clipboard, staging the replacement is the first write after the copy.
    desktop.pasteboard().clearContents();
    notes.onCopy([this] {
        desktop.userCopies(u"brown fox");
        desktop.refusePasteboardWrites();
    });
    EXPECT_EQ(replaceWith(u"red fox"), BridgeError::clipboardFallbackFailed(u"could not stage replacement text"));
    EXPECT_EQ(desktop.pasteboardContents(), std::vector<StandingItem>());
}

TEST_F(ServiceReplacement, ReplacesTheSelectionOfARequestThatIsStillCurrent) {
    EXPECT_EQ(request(requestFor("brown fox", "red fox")), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ServiceReplacement, MayPasteForARequest) {
    hideSelection();
    EXPECT_EQ(request(requestFor("brown fox", "red fox")), std::nullopt);
    test::turnFor(desktop, 1s);
    EXPECT_EQ(text.text(), u"The quick red fox");
}

TEST_F(ServiceReplacement, RefusesARequestThatIsNotJsonOrIncomplete) {
    const auto complete = requestFor("brown fox", "red fox");
    for (const std::string& bytes : {std::string(), std::string("{}"), std::string("[]"), std::string("null"),
                                     complete.substr(0, complete.size() - 1), complete + "x"}) {
        EXPECT_EQ(request(bytes), BridgeError::invalidInput(u"Guarded replacement request is invalid JSON.")) << bytes;
    }
    EXPECT_EQ(journal(), Lines());
}

TEST_F(ServiceReplacement, RefusesARequestWithAnEmptyTextBeforeAnyCall) {
    for (const auto& bytes : {requestFor("", "red fox"), requestFor("brown fox", ""), requestFor("", "")}) {
        EXPECT_EQ(request(bytes), BridgeError::invalidInput(u"Expected and replacement text must not be empty."));
    }
    EXPECT_EQ(journal(), Lines());
}

TEST_F(ServiceReplacement, AcceptsARequestThatExpectsOneSpace) {
    text.setText(u"a b", {1, 1});
    EXPECT_EQ(request(requestFor(" ", "-")), std::nullopt);
    EXPECT_EQ(text.text(), u"a-b");
}

TEST_F(ServiceReplacement, RethrowsIfTheSelectionOfARequestChanged) {
    EXPECT_EQ(request(requestFor("abc", "red fox")), BridgeError::selectionChanged());
    const std::vector<ReplacementGuardTrace::Entry> expected = {
        {"reason", 4}, {"error", 0}, {"expected_chars", 3}, {"current_chars", 9}};
    EXPECT_EQ(ReplacementGuardTrace::shared().snapshot(), expected);
    EXPECT_EQ(text.text(), u"The quick brown fox");
}

TEST_F(ServiceReplacement, ReportsTheCodeOfARefusedWriteOfARequest) {
    text.answersSet(attribute::selectedText, AXError::illegalArgument);
    EXPECT_EQ(request(requestFor("brown fox", "red fox")), BridgeError::replacementFailed(AXError::illegalArgument));
}

}  // namespace
}  // namespace lomaris
