#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/real/guarded_request.h"
#include "tests/support/waiting.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using nlohmann::json;

/// Contains the words twice. The emoji is 1 character for the editor, and 2 units for the tool.
const std::string document = "Hello \U0001F44B quick brown fox jumps\nover the quick brown dog";
const std::string words = "quick brown";
constexpr int stepsToTheWords = 8;
constexpr int stepsToTheSameWords = 39;

/// Selects the words. Selects another text first, as the same words may still be selected at the other place.
void markTheWords(Editor& editor, int start = stepsToTheWords) {
    editor.mark(0, 5, "Hello");
    editor.mark(start, static_cast<int>(words.size()), words);
}

/// A text editor with the document, in which the words are selected.
class GuardedReplacement : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(mousepad()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
        open(document);
        markTheWords(*editor_);
    }

    void open(const std::string& text) {
        editor_.reset();
        editor_ = std::make_unique<Editor>(mousepad(), text);
    }

    Editor& editor() { return *editor_; }

    static void expectReplacement(const json& request, const std::string& result) {
        const UserClipboard clipboard;
        EXPECT_EQ(replaceIfCurrent(request), requestCarriedOut);
        EXPECT_TRUE(UserClipboard::isIntact());
        EXPECT_TRUE(documentBecomes(result)) << markedText().value_or("nothing");
    }

    static void expectRefusal(const json& request) {
        const UserClipboard clipboard;
        EXPECT_EQ(replaceIfCurrent(request), requestRefused);
        EXPECT_TRUE(UserClipboard::isIntact());
    }

    static void expectRefusal(const json& request, const std::string& untouched) {
        expectRefusal(request);
        EXPECT_TRUE(documentBecomes(untouched)) << markedText().value_or("nothing");
    }

private:
    std::unique_ptr<Editor> editor_;
};

const std::string documentWithRedFox = "Hello \U0001F44B red fox jumps\nover the quick brown dog";

TEST_F(GuardedReplacement, ReplacesAnUnchangedSelection) {
    expectReplacement(requestFor(readSelection(), "red"), documentWithRedFox);
}

TEST_F(GuardedReplacement, ReplacesAnyText) {
    struct Case {
        const char* name;
        const char* document;
        int start;
        int marked;
        const char* selection;
        const char* replacement;
        const char* result;
    };
    constexpr std::array<Case, 3> cases{{
        {"lines", "one\ntwo\nthree\n", 2, 8, "e\ntwo\nth", "\n1\n\n2\n", "on\n1\n\n2\nree\n"},
        {"emoji", "\U0001F44B x \U0001F44B\U0001F389 y\n", 4, 2, "\U0001F44B\U0001F389",
         "\U0001F469\u200D\U0001F680\U0001F1E9\U0001F1EA",
         "\U0001F44B x \U0001F469\u200D\U0001F680\U0001F1E9\U0001F1EA y\n"},
        {"combining characters", "a cafe\u0301 z\n", 2, 4, "cafe\u0301", "n\u0303o\u0308", "a n\u0303o\u0308 z\n"},
    }};
    for (const Case& tested : cases) {
        SCOPED_TRACE(tested.name);
        open(tested.document);
        editor().mark(tested.start, tested.marked, tested.selection);
        expectReplacement(requestFor(readSelection(), tested.replacement), tested.result);
    }
}

TEST_F(GuardedReplacement, TreatsCanonicallyEquivalentTextAsEqual) {
    open("a cafe\u0301 z\n");
    editor().mark(2, 4, "cafe\u0301");
    json request = requestFor(readSelection(), "tea");
    request["expectedText"] = "caf\u00e9";
    expectReplacement(request, "a tea z\n");
}

TEST_F(GuardedReplacement, RefusesIfMoreIsSelected) {
    const json request = requestFor(readSelection(), "never");
    pressKeys({"shift+Right"});
    ASSERT_TRUE(waitFor([] { return markedText() == words + " "; }));
    expectRefusal(request, document);
}

TEST_F(GuardedReplacement, RefusesIfTheWordsHaveChanged) {
    const json request = requestFor(readSelection(), "never");
    pressKeys({"s", "l", "o", "w", "space", "y", "e", "l", "l", "o", "w"});
    editor().mark(stepsToTheWords, 11, "slow yellow");
    expectRefusal(request, "Hello \U0001F44B slow yellow fox jumps\nover the quick brown dog");
}

TEST_F(GuardedReplacement, RefusesIfTheSameWordsAreSelectedElsewhere) {
    const json request = requestFor(readSelection(), "never");
    markTheWords(editor(), stepsToTheSameWords);
    expectRefusal(request, document);
}

TEST_F(GuardedReplacement, RefusesIfTheWordsHaveMovedByOne) {
    const json request = requestFor(readSelection(), "never");
    pressKeys({"ctrl+Home", "x"});
    editor().mark(0, 6, "xHello");
    editor().mark(stepsToTheWords + 1, 11, words);
    expectRefusal(request, "x" + document);
}

TEST_F(GuardedReplacement, RefusesTheSameRequestTheSecondTime) {
    const json request = requestFor(readSelection(), "red");
    ASSERT_EQ(replaceIfCurrent(request), requestCarriedOut);
    // The caret is after the new text, and nothing is selected.
    expectRefusal(request, documentWithRedFox);
}

TEST_F(GuardedReplacement, RefusesARequestForAnotherApplication) {
    const json request = requestFor(readSelection(), "never");
    json unknown = request;
    unknown.erase("expectedBundleIdentifier");
    expectRefusal(unknown);
    json other = request;
    other["expectedBundleIdentifier"] = "org.xfce.mousepad2";
    expectRefusal(other);
    json otherProcess = request;
    otherProcess["expectedProcessIdentifier"] = editor().processIdentifier() + 1;
    expectRefusal(otherProcess, document);
}

TEST_F(GuardedReplacement, RefusesIfAnotherApplicationIsInFront) {
    const json request = requestFor(readSelection(), "never");
    const std::string otherDocument = document + " and a cat";
    Editor other(mousepad(), otherDocument);
    markTheWords(other);
    expectRefusal(request, otherDocument);
    bringToFront(editor().processIdentifier());
    EXPECT_TRUE(documentBecomes(document)) << markedText().value_or("nothing");
}

TEST_F(GuardedReplacement, ReplacesOnceItsWindowIsInFrontAgain) {
    const json request = requestFor(readSelection(), "red");
    pressKeys({"ctrl+shift+n"});
    ASSERT_TRUE(waitFor([] { return titleInFront().find("Untitled") != std::string::npos; }));
    const std::string title = titleInFront();
    expectRefusal(request);
    EXPECT_EQ(titleInFront(), title);

    bringToFront("document.txt");
    expectReplacement(request, documentWithRedFox);
}

TEST_F(GuardedReplacement, RefusesIfTheApplicationHasQuit) {
    const json request = requestFor(readSelection(), "never");
    editor().process().end();
    expectRefusal(request);
}

TEST_F(GuardedReplacement, ReplacesAfterInputIfTheRangeIsTheSame) {
    const json selection = readSelection();
    markTheWords(editor());
    ASSERT_NE(readSelection()["inputActivity"], selection["inputActivity"]);
    expectReplacement(requestFor(selection, "red"), documentWithRedFox);
}

/// The same request without a range. The position of the selection is not known then, only that there was no input.
class GuardedReplacementWithoutRange : public GuardedReplacement {
protected:
    [[nodiscard]] static json request(const std::string& replacement) {
        json request = requestFor(readSelection(), replacement);
        request.erase("expectedSelectedRange");
        return request;
    }
};

TEST_F(GuardedReplacementWithoutRange, ReplacesWithoutInput) { expectReplacement(request("red"), documentWithRedFox); }

TEST_F(GuardedReplacementWithoutRange, RefusesAfterAKey) {
    const json sent = request("never");
    pressKeys({"shift"});
    expectRefusal(sent, document);
}

TEST_F(GuardedReplacementWithoutRange, RefusesAfterAClick) {
    movePointerAside();
    const json sent = request("never");
    clickAside();
    expectRefusal(sent, document);
}

}  // namespace
}  // namespace lomaris::test
