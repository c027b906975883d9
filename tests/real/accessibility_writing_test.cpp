#include "platform/attributes.h"
#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/waiting.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace lomaris::test {
namespace {

AttributeAnswer successOf(AttributeValue value) { return {AXError::success, std::move(value)}; }

/// A selection in a document, its replacement, and the expected document.
struct Replacement {
    const char* name;
    const char* document;
    int start;
    int marked;
    const char* selection;
    const char16_t* replacement;
    const char16_t* result;
    std::int64_t caret;
};

constexpr std::array<Replacement, 6> replacements{{
    {"emoji before", "\U0001F44B one two\n", 2, 3, "one", u"1", u"\U0001F44B 1 two\n", 4},
    {"emoji selected", "x \U0001F44B\U0001F389 y\n", 2, 2, "\U0001F44B\U0001F389", u"plain", u"x plain y\n", 7},
    {"emoji and accents inserted", "\U0001F44B one two\n", 2, 3, "one", u"\u00FCber \U0001F1E9\U0001F1EA\u6F22",
     u"\U0001F44B \u00FCber \U0001F1E9\U0001F1EA\u6F22 two\n", 13},
    {"line breaks", "one two\n", 4, 3, "two", u"2\n\n3", u"one 2\n\n3\n", 8},
    {"nothing inserted", "one two\n", 3, 4, " two", u"", u"one\n", 3},
    {"line break selected", "one\ntwo\n", 2, 3, "e\nt", u"E T", u"onE Two\n", 5},
}};

class WritingIntoEditors : public testing::Test {
protected:
    Accessibility& accessibility() { return platform_->accessibility(); }

    /// The focused element of the editor. There may be none for a moment while the focus moves.
    std::optional<Element> findFocused(const Editor& editor) {
        const Element application = accessibility().applicationElement(editor.processIdentifier());
        return accessibility().copyElementAttribute(application, attribute::focusedUIElement).element;
    }

    Element focused(const Editor& editor) {
        const auto element = findFocused(editor);
        if (!element) {
            throw std::runtime_error("nothing has the focus");
        }
        return *element;
    }

    void expectText(const Element& element, const Text& text, std::int64_t caret) {
        EXPECT_EQ(accessibility().copyAttribute(element, attribute::value), successOf(text));
        EXPECT_EQ(accessibility().copyAttribute(element, attribute::selectedTextRange), successOf(TextRange{caret, 0}));
    }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

class AccessibilityWriting : public WritingIntoEditors, public testing::WithParamInterface<EditorProgram> {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(GetParam()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
};

TEST_P(AccessibilityWriting, ReplacesTheSelectedText) {
    for (const Replacement& replacement : replacements) {
        SCOPED_TRACE(replacement.name);
        Editor editor(GetParam(), replacement.document);
        editor.mark(replacement.start, replacement.marked, replacement.selection);
        const Element text = focused(editor);
        EXPECT_EQ(accessibility().setAttribute(text, attribute::selectedText, Text(replacement.replacement)),
                  AXError::success);
        expectText(text, replacement.result, replacement.caret);
    }
}

TEST_P(AccessibilityWriting, InsertsAtTheCaretIfNothingIsSelected) {
    Editor editor(GetParam(), "\U0001F44B end\n");
    editor.mark(1, 4, " end");
    pressKeys({"Left"});
    const Element text = focused(editor);
    ASSERT_TRUE(waitFor([&] {
        return accessibility().copyAttribute(text, attribute::selectedTextRange) == successOf(TextRange{2, 0});
    }));
    EXPECT_EQ(accessibility().setAttribute(text, attribute::selectedText, Text(u" \U0001F389")), AXError::success);
    expectText(text, u"\U0001F44B \U0001F389 end\n", 5);
}

TEST_P(AccessibilityWriting, DoesNotChangeTheTextIfTheValueIsNoText) {
    Editor editor(GetParam(), "one two\n");
    editor.mark(0, 3, "one");
    const Element text = focused(editor);
    EXPECT_EQ(accessibility().setAttribute(text, attribute::selectedText, Text(u"a\0b", 3)), AXError::illegalArgument);
    EXPECT_EQ(accessibility().setAttribute(text, attribute::selectedText, true), AXError::illegalArgument);
    EXPECT_EQ(accessibility().copyAttribute(text, attribute::value), successOf(Text(u"one two\n")));
}

INSTANTIATE_TEST_SUITE_P(Editors, AccessibilityWriting, testing::Values(mousepad(), featherPad()),
                         [](const auto& param) { return param.param.name; });

/// In GTK, single-line fields use the length argument of `InsertText` in another way than text areas.
class AccessibilityFieldWriting : public WritingIntoEditors {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(mousepad()); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }
};

TEST_F(AccessibilityFieldWriting, WritesToASingleLineField) {
    const Editor editor(mousepad(), "document\n");
    // Opens the search field, which then has the focus.
    ASSERT_TRUE(waitFor([&] {
        pressKeys({"ctrl+f"});
        for (int look = 0; look < 20; ++look) {
            const auto element = findFocused(editor);
            if (element &&
                accessibility().copyAttribute(*element, attribute::role) == successOf(Text(u"AXTextField"))) {
                return true;
            }
        }
        return false;
    }));
    const Element field = focused(editor);
    ASSERT_EQ(accessibility().copyAttribute(field, attribute::value), successOf(Text()));
    EXPECT_EQ(accessibility().setAttribute(field, attribute::selectedText, Text(u"\u00FC\U0001F44B b")),
              AXError::success);
    expectText(field, u"\u00FC\U0001F44B b", 5);
    pressKeys({"ctrl+a"});
    ASSERT_TRUE(waitFor([&] {
        return accessibility().copyAttribute(field, attribute::selectedTextRange) == successOf(TextRange{0, 5});
    }));
    EXPECT_EQ(accessibility().setAttribute(field, attribute::selectedText, Text(u"\U0001F389c")), AXError::success);
    expectText(field, u"\U0001F389c", 3);
}

}  // namespace
}  // namespace lomaris::test
