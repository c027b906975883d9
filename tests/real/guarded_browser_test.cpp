#include "tests/real/browser_suite.h"
#include "tests/real/editor.h"
#include "tests/real/guarded_request.h"
#include "tests/x11/key_hand.h"
#include "tests/x11/user_clipboard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <iostream>
#include <string>

namespace lomaris::test {
namespace {

using nlohmann::json;

class GuardedBrowserReplacement : public BrowserSuite {
protected:
    /// Sends the request, and expects this document with the caret after the replacement.
    static void expectReplacement(const json& request, const std::string& result, const std::string& range) {
        const UserClipboard clipboard;
        EXPECT_EQ(replaceIfCurrent(request), requestCarriedOut);
        EXPECT_TRUE(Browser::comesToShow(result, range)) << titleInFront();
        // The tool has ended. Another program that pastes still gets the replacement.
        EXPECT_EQ(OtherReader().read("UTF8_STRING"),
                  (PropertyValue{"UTF8_STRING", 8, request["replacementText"].get<std::string>()}));
    }

    static void expectRefusal(const json& request) {
        const UserClipboard clipboard;
        EXPECT_EQ(replaceIfCurrent(request), requestRefused);
        EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
    }

    /// Moves the caret to the end and waits until the document is this text. A pending paste is completed before that.
    static bool documentIs(const std::string& text) {
        pressKeys({"ctrl+End"});
        const std::string end = std::to_string(text.size());
        return Browser::comesToShow(text, end + "-" + end);
    }

    static void expectRefusal(const json& request, const std::string& untouched) {
        expectRefusal(request);
        EXPECT_TRUE(documentIs(untouched)) << titleInFront();
    }

    /// The same if text is selected, which the tool copies before it refuses. If a browser on a busy machine copies
    /// after the timeout of the tool, this looks like a copy by the user. The request is then sent again, as a refusal
    /// changes nothing.
    static void expectRefusalAfterCopy(const json& request, const std::string& untouched) {
        constexpr auto waitOfTheTool = std::chrono::seconds(1);
        for (int attempt = 0; attempt < 5; ++attempt) {
            const UserClipboard clipboard;
            const auto start = std::chrono::steady_clock::now();
            const ProcessResult result = replaceIfCurrent(request);
            const bool isInTime = std::chrono::steady_clock::now() - start < waitOfTheTool;
            Browser::handleAllKeys();
            if (isInTime) {
                EXPECT_EQ(result, requestRefused);
                EXPECT_TRUE(UserClipboard::isIntact()) << testing::PrintToString(clipboardContents());
                EXPECT_TRUE(documentIs(untouched)) << titleInFront();
                return;
            }
            std::cout << "The browser took its time; trying again.\n";
        }
        FAIL() << "the browser is too slow";
    }

    /// The request with a range, which a caller may know from elsewhere: a selection read by copying has none.
    static json withRange(json request) {
        request["expectedSelectedRange"] = {{"location", 10}, {"length", 9}};
        return request;
    }
};

TEST_F(GuardedBrowserReplacement, PastesOverAnUnchangedSelection) {
    expectReplacement(requestFor(readSelection(), "red fox"), "The quick red fox jumps", "17-17");
}

TEST_F(GuardedBrowserReplacement, PastesEmojiAndCombiningCharacters) {
    expectReplacement(requestFor(readSelection(), "\U0001F98A cafe\u0301"), "The quick \U0001F98A cafe\u0301 jumps",
                      "18-18");
}

TEST_F(GuardedBrowserReplacement, PastesLines) {
    const UserClipboard clipboard;
    EXPECT_EQ(replaceIfCurrent(requestFor(readSelection(), "red\n\nfox\n")), requestCarriedOut);
    ASSERT_TRUE(Browser::comesToShow("The quick red fox jumps", "19-19")) << titleInFront();
    pressKeys({"ctrl+a"});
    ASSERT_TRUE(Browser::comesToShow("The quick red fox jumps", "0-25")) << titleInFront();
    EXPECT_EQ(readSelection()["selectedText"], "The quick red\n\nfox\n jumps");
}

TEST_F(GuardedBrowserReplacement, IgnoresTheInputOfItsOwnCopies) {
    const json selection = readSelection();
    ASSERT_NE(readSelection()["inputActivity"], selection["inputActivity"]);
    expectReplacement(requestFor(selection, "red fox"), "The quick red fox jumps", "17-17");
}

TEST_F(GuardedBrowserReplacement, ReplacesWithARangeWithoutInput) {
    expectReplacement(withRange(requestFor(readSelection(), "red fox")), "The quick red fox jumps", "17-17");
}

TEST_F(GuardedBrowserReplacement, RefusesARangeAfterAKey) {
    const json request = withRange(requestFor(readSelection(), "never"));
    constexpr std::uint8_t leftShift = 50;
    KeyHand hand;
    hand.holdAsUser(leftShift);
    hand.releaseAsUser(leftShift);
    expectRefusalAfterCopy(request, Browser::document);
}

TEST_F(GuardedBrowserReplacement, RefusesIfMoreIsSelected) {
    const json request = requestFor(readSelection(), "never");
    pressKeys({"shift+Right"});
    ASSERT_TRUE(Browser::comesToShow(Browser::document, "10-20")) << titleInFront();
    expectRefusalAfterCopy(request, Browser::document);
}

TEST_F(GuardedBrowserReplacement, RefusesIfTheWordsHaveChanged) {
    const json request = requestFor(readSelection(), "never");
    pressKeys({"r", "e", "d", "shift+Left", "shift+Left", "shift+Left"});
    ASSERT_TRUE(Browser::comesToShow("The quick red jumps", "10-13")) << titleInFront();
    expectRefusalAfterCopy(request, "The quick red jumps");
}

TEST_F(GuardedBrowserReplacement, RefusesIfNothingIsSelected) {
    const json request = requestFor(readSelection(), "never");
    pressKeys({"Right"});
    ASSERT_TRUE(Browser::comesToShow(Browser::document, "19-19")) << titleInFront();
    expectRefusal(request, Browser::document);
}

TEST_F(GuardedBrowserReplacement, RefusesIfAnotherApplicationIsInFront) {
    if (const std::string missing = missingFor(mousepad()); !missing.empty()) {
        GTEST_SKIP() << missing;
    }
    const json request = requestFor(readSelection(), "never");
    {
        Editor other(mousepad(), Browser::document);
        other.mark(10, 9, Browser::selection);
        expectRefusal(request);
        EXPECT_TRUE(documentBecomes(Browser::document)) << markedText().value_or("nothing");
    }
    bringToFront(browser().processIdentifier());
    EXPECT_TRUE(documentIs(Browser::document)) << titleInFront();
}

}  // namespace
}  // namespace lomaris::test
