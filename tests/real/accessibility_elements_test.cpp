#include "platform/attributes.h"
#include "platform/linux/atspi/accessibility_bus.h"
#include "platform/linux/atspi/atspi_element.h"
#include "platform/linux/atspi/text_writing.h"
#include "platform/native_platform.h"
#include "tests/real/desktop.h"
#include "tests/real/editor.h"
#include "tests/support/running_program.h"
#include "tests/support/temporary_directory.h"
#include "tests/support/waiting.h"
#include "text/utf8.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>
#include <vector>

namespace lomaris::test {
namespace {

constexpr std::array<std::string_view, 11> attributesOfAnElement{
    attribute::children, attribute::enabled, attribute::focused,      attribute::identifier,
    attribute::main,     attribute::role,    attribute::selectedText, attribute::selectedTextRange,
    attribute::subrole,  attribute::title,   attribute::value,
};

AttributeAnswer successOf(AttributeValue value) { return {AXError::success, std::move(value)}; }

/// The elements of a window, including the window.
std::vector<Element> elementsBelow(Accessibility& accessibility, const Element& window) {
    std::vector<Element> elements{window};
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const AttributeAnswer answer = accessibility.copyAttribute(elements[i], attribute::children);
        if (const auto* const children = std::get_if<std::vector<Element>>(&answer.value)) {
            elements.insert(elements.end(), children->begin(), children->end());
        }
    }
    return elements;
}

struct EditorCase {
    EditorProgram program;

    friend std::ostream& operator<<(std::ostream& stream, const EditorCase& tested) {
        return stream << tested.program.name;
    }
};

class AccessibilityElements : public testing::TestWithParam<EditorCase> {
protected:
    void SetUp() override {
        if (const std::string missing = missingFor(GetParam().program); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }

    Accessibility& accessibility() { return platform_->accessibility(); }

private:
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_P(AccessibilityElements, DescribeTheFocusedTextOfAnEditor) {
    Editor editor(GetParam().program, "a \U0001F44B b\n");
    editor.mark(4, 1, "b");
    const Element application = accessibility().applicationElement(editor.processIdentifier());
    const auto focused = accessibility().copyElementAttribute(application, attribute::focusedUIElement);
    ASSERT_EQ(focused.error, AXError::success);
    const Element& text = *focused.element;
    EXPECT_EQ(accessibility().copyAttribute(text, attribute::role), successOf(Text(u"AXTextArea")));
    EXPECT_EQ(accessibility().copyAttribute(text, attribute::focused), successOf(true));
    EXPECT_EQ(accessibility().copyAttribute(text, attribute::enabled), successOf(true));
    EXPECT_EQ(accessibility().copyAttribute(text, attribute::value), successOf(Text(u"a \U0001F44B b\n")));
    EXPECT_EQ(accessibility().copyAttribute(text, attribute::selectedText), successOf(Text(u"b")));
    EXPECT_EQ(accessibility().copyAttribute(text, attribute::selectedTextRange), successOf(TextRange{5, 1}));
    EXPECT_EQ(accessibility().isAttributeSettable(text, attribute::selectedText),
              (SettableAnswer{AXError::success, true}));
    EXPECT_EQ(accessibility().processIdentifier(text), editor.processIdentifier());
    EXPECT_EQ(accessibility().copyAttribute(accessibility().systemWideElement(), attribute::focusedUIElement),
              successOf(text));
}

TEST_P(AccessibilityElements, AreTheSameInBatchesAndSingleCopies) {
    const Editor editor(GetParam().program, "The quick brown fox");
    const Element application = accessibility().applicationElement(editor.processIdentifier());
    const auto window = accessibility().copyElementAttribute(application, attribute::focusedWindow);
    ASSERT_EQ(window.error, AXError::success);
    const std::vector<Element> elements = elementsBelow(accessibility(), *window.element);
    ASSERT_GT(elements.size(), 50U);
    const auto answers = accessibility().copyAttributes(elements, attributesOfAnElement);
    ASSERT_EQ(answers.size(), elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        for (std::size_t j = 0; j < attributesOfAnElement.size(); ++j) {
            const std::string_view attribute = attributesOfAnElement.at(j);
            EXPECT_EQ(answers[i].at(j), accessibility().copyAttribute(elements[i], attribute))
                << attribute << " of element " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Editors, AccessibilityElements,
                         testing::Values(EditorCase{mousepad()}, EditorCase{featherPad()}),
                         [](const auto& param) { return param.param.program.name; });

/// A browser that shows one page. It pads the text that it returns with U+FEFF.
class BrowserText : public testing::Test {
protected:
    void SetUp() override {
        if (const std::string missing = missingPrograms({"firefox-esr", "xdotool"}); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }

    /// Opens the page. Returns false if its title does not appear in front.
    bool show(const std::string& page) {
        std::filesystem::create_directory(directory_.path() / "profile");
        std::ofstream(directory_.path() / "page.html", std::ios::binary) << page;
        browser_ = std::make_unique<RunningProgram>(std::vector<std::string>{
            "firefox-esr", "--new-instance", "--profile", (directory_.path() / "profile").string(),
            "file://" + (directory_.path() / "page.html").string()});
        return waitFor([this] { return processInFront() == browser_->processIdentifier() && isShown(); });
    }

    [[nodiscard]] Accessibility& accessibility() { return platform_->accessibility(); }

    [[nodiscard]] Element application() { return accessibility().applicationElement(browser_->processIdentifier()); }

    [[nodiscard]] ElementAnswer focused() {
        return accessibility().copyElementAttribute(application(), attribute::focusedUIElement);
    }

    [[nodiscard]] AttributeAnswer copyFromFocused(std::string_view attribute) {
        const ElementAnswer element = focused();
        return element.element ? accessibility().copyAttribute(*element.element, attribute)
                               : AttributeAnswer{element.error, NullValue{}};
    }

private:
    static bool isShown() { return titleInFront().find("Padded") != std::string::npos; }

    /// The first member, so that it is removed after the browser has ended.
    TemporaryDirectory directory_;
    std::unique_ptr<RunningProgram> browser_;
    std::unique_ptr<Platform> platform_ = nativePlatform();
};

TEST_F(BrowserText, HasNoPaddingAndIsInUtf16Units) {
    ASSERT_TRUE(
        show("<!doctype html><meta charset=utf-8><title>Padded</title><textarea id=t autofocus>"
             "a \U0001F1E9\U0001F1EA flag \U0001F44B</textarea>"
             "<script>t.focus();t.setSelectionRange(7,11)</script>"));
    // The browser exposes a page on the bus some time after it shows it.
    EXPECT_TRUE(waitFor([this] {
        return copyFromFocused(attribute::selectedTextRange) == successOf(TextRange{7, 4});
    }));
    EXPECT_EQ(copyFromFocused(attribute::selectedText), successOf(Text(u"flag")));
    EXPECT_EQ(copyFromFocused(attribute::value), successOf(Text(u"a \U0001F1E9\U0001F1EA flag \U0001F44B")));
    EXPECT_EQ(copyFromFocused(attribute::role), successOf(Text(u"AXTextArea")));
}

/// The browser's objects have `EditableText` but ignore it. Text is written to them by pasting instead.
TEST_F(BrowserText, IsNotSettableAndHasNoMenuBar) {
    ASSERT_TRUE(
        show("<!doctype html><meta charset=utf-8><title>Padded</title><textarea id=t autofocus>"
             "one two</textarea><script>t.focus();t.setSelectionRange(4,7)</script>"));
    EXPECT_TRUE(waitFor([this] { return copyFromFocused(attribute::selectedText) == successOf(Text(u"two")); }));
    const ElementAnswer text = focused();
    ASSERT_EQ(text.error, AXError::success);
    EXPECT_EQ(accessibility().isAttributeSettable(*text.element, attribute::selectedText),
              (SettableAnswer{AXError::success, false}));
    EXPECT_EQ(accessibility().setAttribute(*text.element, attribute::selectedText, Text(u"2")),
              AXError::attributeUnsupported);
    AccessibilityBus bus;
    ASSERT_NE(bus.connection(), nullptr);
    EXPECT_EQ(writeSelectedText(*bus.connection(), std::get<ObjectReference>(targetOf(*text.element)), u"2"),
              AXError::failure);
    EXPECT_EQ(copyFromFocused(attribute::value), successOf(Text(u"one two")));
    EXPECT_EQ(accessibility().copyAttribute(application(), attribute::menuBar),
              (AttributeAnswer{AXError::noValue, NullValue{}}));
}

}  // namespace
}  // namespace lomaris::test
