#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using atspi::State;

constexpr const char* path = "/org/a11y/atspi/accessible/7";
constexpr const char* deletion = "EditableText.DeleteText";
constexpr const char* insertion = "EditableText.InsertText";
constexpr const char* caret = "Text.SetCaretOffset";
constexpr const char* refusal = "org.freedesktop.DBus.Error.Failed";

/// The text of the application, which a test changes when a call arrives. Used only on the thread of the peer.
struct EditedText {
    std::string bytes;
    int characterCount = 0;
    std::pair<int, int> selection;

    void become(std::string newBytes) {
        bytes = std::move(newBytes);
        characterCount = static_cast<int>(bytes.size());
        selection = {0, 0};
    }
};

using Arguments = std::vector<std::string>;

class AccessibilityWriting : public FakeDesktop {
protected:
    /// Adds the text with its selection, in an application with this `ToolkitName`.
    void show(const EditedText& shown, const std::string& toolkit = "gtk") {
        *text_ = shown;
        addObject(path, {State::editable});
        peer().answer(path, "Accessible.GetInterfaces", strings({atspi::accessible, atspi::text, atspi::editableText}));
        peer().answer(atspi::rootPath, "Get Application.ToolkitName", stringProperty(toolkit));
        peer().answer(path, "Text.GetNSelections", integer(1));
        peer().answer(path, "Text.SetCaretOffset", boolean(true));
        answer("Text.GetText", [](EditedText& text) { return string(text.bytes); });
        answer("Get Text.CharacterCount", [](EditedText& text) { return integerProperty(text.characterCount); });
        answer("Text.GetSelection",
               [](EditedText& text) { return integers(text.selection.first, text.selection.second); });
    }

    void answer(const std::string& call, std::function<Values(EditedText&)> values) {
        peer().answerWith(path, call, [text = text_, values = std::move(values)] { return values(*text); });
    }

    /// Lets the call return true. The n-th call changes the text to the n-th of `results`; later calls change nothing.
    void onCall(const std::string& call, std::vector<std::string> results) {
        const auto next = std::make_shared<std::size_t>(0);
        answer(call, [next, results = std::move(results)](EditedText& text) {
            if (*next < results.size()) {
                text.become(results[(*next)++]);
            }
            return boolean(true);
        });
    }

    AXError write(const Text& text) {
        return accessibility().setAttribute(object(path), attribute::selectedText, text);
    }

    void expectText(const Text& text) { EXPECT_EQ(copy(path, attribute::value), successOf(text)); }

    [[nodiscard]] int callCount(const std::string& call) { return peer().callCount(path, call); }
    [[nodiscard]] std::vector<std::string> arguments(const std::string& call) { return peer().arguments(path, call); }

private:
    std::shared_ptr<EditedText> text_ = std::make_shared<EditedText>();
};

const EditedText threeWords{"one two three", 13, {4, 7}};

TEST_F(AccessibilityWriting, DeletesTheSelectionAndInserts) {
    show(threeWords);
    onCall(deletion, {"one  three"});
    onCall(insertion, {"one 2 three"});
    start();
    EXPECT_EQ(write(u"2"), AXError::success);
    EXPECT_EQ(arguments(deletion), Arguments{"4, 7"});
    EXPECT_EQ(arguments(insertion), Arguments{"4, \"2\", 1"});
    EXPECT_EQ(arguments(caret), Arguments{"5"});
    expectText(u"one 2 three");
}

TEST_F(AccessibilityWriting, UsesThePositionsOfTheApplication) {
    // "a", U+1F600, "bcd", counted in code points; "bc" is selected.
    EditedText text{
        "a\xF0\x9F\x98\x80"
        "bcd",
        5,
        {2, 4}};
    show(text);
    answer(deletion, [](EditedText& shown) {
        shown = {
            "a\xF0\x9F\x98\x80"
            "d",
            3,
            {2, 2}};
        return boolean(true);
    });
    answer(insertion, [](EditedText& shown) {
        shown = {
            "a\xF0\x9F\x98\x80\xC3\xA9\xF0\x9F\x98\x80"
            "d",
            5,
            {0, 0}};
        return boolean(true);
    });
    start();
    EXPECT_EQ(write(u"\u00e9\U0001F600"), AXError::success);
    EXPECT_EQ(arguments(deletion), Arguments{"2, 4"});
    EXPECT_EQ(arguments(insertion), Arguments{"2, \"\xC3\xA9\xF0\x9F\x98\x80\", 6"});
    EXPECT_EQ(arguments(caret), Arguments{"4"});
}

TEST_F(AccessibilityWriting, SendsTheLengthInTheUnitsOfTheToolkit) {
    show({"one  three", 10, {4, 4}}, "Qt");
    answer(insertion, [](EditedText& text) {
        text = {"one \xC3\xA9\xF0\x9F\x98\x80 three", 13, {7, 7}};
        return boolean(true);
    });
    start();
    EXPECT_EQ(write(u"\u00e9\U0001F600"), AXError::success);
    EXPECT_EQ(callCount(deletion), 0) << "nothing is selected";
    EXPECT_EQ(arguments(insertion), Arguments{"4, \"\xC3\xA9\xF0\x9F\x98\x80\", 3"});
    EXPECT_EQ(callCount(caret), 0) << "the caret is after the text already";
}

TEST_F(AccessibilityWriting, OnlyDeletesIfTheNewTextIsEmpty) {
    show(threeWords);
    onCall(deletion, {"one  three"});
    start();
    EXPECT_EQ(write(u""), AXError::success);
    EXPECT_EQ(callCount(insertion), 0);
}

TEST_F(AccessibilityWriting, FailsIfTheApplicationDoesNotDelete) {
    show(threeWords);
    onCall(deletion, {});
    onCall(insertion, {});
    start();
    EXPECT_EQ(write(u"2"), AXError::failure);
    EXPECT_EQ(callCount(insertion), 0);
    EXPECT_EQ(callCount("Text.GetText"), 1 + 8) << "once before the deletion, eight times after it";
    expectText(u"one two three");
}

TEST_F(AccessibilityWriting, FailsIfAnotherTextIsDeleted) {
    show(threeWords);
    onCall(deletion, {"one"});
    onCall(insertion, {});
    start();
    EXPECT_EQ(write(u"2"), AXError::failure);
    EXPECT_EQ(callCount(insertion), 0);
}

TEST_F(AccessibilityWriting, RestoresTheDeletedTextIfNothingIsInserted) {
    show(threeWords);
    onCall(deletion, {"one  three"});
    onCall(insertion, {"one  three", "one two three"});
    start();
    EXPECT_EQ(write(u"2"), AXError::failure);
    EXPECT_EQ(arguments(insertion), (Arguments{"4, \"2\", 1", "4, \"two\", 3"}));
    expectText(u"one two three");
}

TEST_F(AccessibilityWriting, RemovesAPartialInsertion) {
    show(threeWords);
    onCall(deletion, {"one  three", "one  three"});
    onCall(insertion, {"one lo three", "one two three"});
    start();
    EXPECT_EQ(write(u"long"), AXError::failure);
    EXPECT_EQ(arguments(deletion), (Arguments{"4, 7", "4, 6"}));
    EXPECT_EQ(arguments(insertion), (Arguments{"4, \"long\", 4", "4, \"two\", 3"}));
    expectText(u"one two three");
}

TEST_F(AccessibilityWriting, DoesNotRestoreOverOtherText) {
    show(threeWords);
    onCall(deletion, {"one  three"});
    onCall(insertion, {"one typed three"});
    start();
    EXPECT_EQ(write(u"2"), AXError::failure);
    EXPECT_EQ(callCount(deletion), 1);
    EXPECT_EQ(callCount(insertion), 1);
    expectText(u"one typed three");
}

TEST_F(AccessibilityWriting, IgnoresTheReplyToAChange) {
    show(threeWords);
    answer(deletion, [](EditedText& text) {
        text.become("one  three");
        return boolean(false);
    });
    answer(insertion, [](EditedText& text) {
        text.become("one 2 three");
        return boolean(false);
    });
    start();
    EXPECT_EQ(write(u"2"), AXError::success);
}

TEST_F(AccessibilityWriting, WaitsForADelayedChange) {
    show(threeWords);
    const auto reads = std::make_shared<int>(-1);
    answer(deletion, [reads](EditedText&) {
        *reads = 0;
        return boolean(true);
    });
    // Every read of the text begins with the number of selections.
    answer("Text.GetNSelections", [reads](EditedText& text) {
        if (*reads >= 0 && ++*reads == 3) {
            text.become("one  three");
        }
        return integer(1);
    });
    onCall(insertion, {"one 2 three"});
    start();
    EXPECT_EQ(write(u"2"), AXError::success);
}

TEST_F(AccessibilityWriting, AcceptsTheLineBreaksOfTheToolkit) {
    show(threeWords);
    onCall(deletion, {"one  three"});
    onCall(insertion, {"one a\nb\nc three"});
    start();
    EXPECT_EQ(write(u"a\r\nb\rc"), AXError::success);
}

TEST_F(AccessibilityWriting, RestoresTheDeletedTextIfTheInsertionIsRefused) {
    show(threeWords);
    onCall(deletion, {"one  three"});
    peer().answerError(path, insertion, refusal);
    start();
    EXPECT_EQ(write(u"2"), AXError::failure);
    EXPECT_EQ(callCount(insertion), 2);
}

TEST_F(AccessibilityWriting, CannotCompleteIfTheApplicationHangs) {
    show(threeWords);
    peer().hang(path, deletion);
    start();
    EXPECT_EQ(write(u"2"), AXError::cannotComplete);
    EXPECT_EQ(callCount(insertion), 0);
}

TEST_F(AccessibilityWriting, DoesNotDeleteWhatItCouldNotRestore) {
    show({"a \xEF\xBF\xBC b", 5, {1, 4}});
    start();
    EXPECT_EQ(write(u"2"), AXError::failure);
    EXPECT_EQ(callCount(deletion), 0);
}

TEST_F(AccessibilityWriting, DoesNotSplitACharacter) {
    show({"a\xF0\x9F\x98\x80", 3, {0, 2}});
    start();
    EXPECT_EQ(write(u"2"), AXError::failure);
    EXPECT_EQ(callCount(deletion), 0);
}

TEST_F(AccessibilityWriting, IsUnsupportedIfTheToolkitIgnoresIt) {
    show(threeWords, "Gecko");
    start();
    EXPECT_EQ(accessibility().isAttributeSettable(object(path), attribute::selectedText),
              (SettableAnswer{AXError::success, false}));
    EXPECT_EQ(write(u"2"), AXError::attributeUnsupported);
    EXPECT_EQ(callCount(deletion), 0);
}

TEST_F(AccessibilityWriting, AcceptsOnlyText) {
    show(threeWords);
    start();
    const Element element = object(path);
    EXPECT_EQ(accessibility().setAttribute(element, attribute::selectedText, NullValue{}), AXError::illegalArgument);
    EXPECT_EQ(write(Text(u"a\0b", 3)), AXError::illegalArgument);
    EXPECT_EQ(accessibility().setAttribute(element, attribute::value, Text(u"2")), AXError::attributeUnsupported);
    EXPECT_EQ(callCount(deletion), 0);
}

}  // namespace
}  // namespace lomaris::test
