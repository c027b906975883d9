#include "tests/platform/accessibility_contract.h"

#include "platform/attributes.h"

#include <array>
#include <deque>
#include <stdexcept>
#include <string_view>
#include <variant>
#include <vector>

namespace lomaris::test {

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AccessibilityContract);

Element AccessibilityContract::text() {
    const ElementAnswer answer = accessibility().copyElementAttribute(application(), attribute::focusedUIElement);
    if (!answer.element) {
        throw std::runtime_error("the application has no focused element");
    }
    return *answer.element;
}

Element AccessibilityContract::window() {
    const ElementAnswer answer = accessibility().copyElementAttribute(application(), attribute::focusedWindow);
    if (!answer.element) {
        throw std::runtime_error("the application has no focused window");
    }
    return *answer.element;
}

namespace {

constexpr std::string_view unknownAttribute = "AXNoSuchAttributeAtAll";

AttributeAnswer answerOf(AttributeValue value) { return {AXError::success, std::move(value)}; }

TEST_P(AccessibilityContract, IsTrustedWithAndWithoutPrompt) {
    EXPECT_TRUE(accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_TRUE(accessibility().isProcessTrusted(TrustPrompt::ask));
}

TEST_P(AccessibilityContract, ReadsTheSelectionTheRangeAndTheValue) {
    EXPECT_EQ(accessibility().copyAttribute(text(), attribute::selectedText), answerOf(Text(u"brown fox")));
    EXPECT_EQ(accessibility().copyAttribute(text(), attribute::selectedTextRange), answerOf(TextRange{10, 9}));
    EXPECT_EQ(accessibility().copyAttribute(text(), attribute::value), answerOf(Text(u"The quick brown fox")));
    EXPECT_EQ(accessibility().copyAttribute(text(), attribute::role), answerOf(Text(u"AXTextArea")));
}

TEST_P(AccessibilityContract, SystemWideElementReturnsTheSameFocusedElement) {
    Accessibility& service = accessibility();
    const ElementAnswer focused =
        service.copyElementAttribute(service.systemWideElement(), attribute::focusedUIElement);
    ASSERT_EQ(focused.error, AXError::success);
    ASSERT_TRUE(focused.element.has_value());
    EXPECT_EQ(*focused.element, text());
}

TEST_P(AccessibilityContract, ElementsAreEqualIfTheyDenoteTheSame) {
    EXPECT_EQ(application(), application());
    EXPECT_EQ(text(), text());
    EXPECT_EQ(window(), window());
    EXPECT_FALSE(text() == window());
    EXPECT_FALSE(application() == window());
    EXPECT_FALSE(accessibility().systemWideElement() == application());
    EXPECT_EQ(accessibility().systemWideElement(), accessibility().systemWideElement());
}

TEST_P(AccessibilityContract, FindsTheTextAmongTheChildrenOfTheWindow) {
    const Element sought = text();
    std::deque<Element> queue{window()};
    for (int visits = 0; !queue.empty() && visits < 3000; ++visits) {
        const Element element = queue.front();
        queue.pop_front();
        if (element == sought) {
            return;
        }
        const AttributeAnswer answer = accessibility().copyAttribute(element, attribute::children);
        if (const auto* children = std::get_if<std::vector<Element>>(&answer.value)) {
            queue.insert(queue.end(), children->begin(), children->end());
        }
    }
    FAIL() << "the text area is not below the window";
}

TEST_P(AccessibilityContract, AnErrorHasNoValue) {
    for (const Element& element : {application(), window(), text(), accessibility().systemWideElement()}) {
        const AttributeAnswer answer = accessibility().copyAttribute(element, unknownAttribute);
        EXPECT_NE(answer.error, AXError::success);
        EXPECT_EQ(answer.value, AttributeValue(NullValue{}));
        const ElementAnswer asElement = accessibility().copyElementAttribute(element, unknownAttribute);
        EXPECT_EQ(asElement.error, answer.error);
        EXPECT_FALSE(asElement.element.has_value());
    }
}

TEST_P(AccessibilityContract, AValueReadAsAnElementFailsEveryCall) {
    const ElementAnswer answer = accessibility().copyElementAttribute(text(), attribute::value);
    ASSERT_EQ(answer.error, AXError::success);
    ASSERT_TRUE(answer.element.has_value());
    const AttributeAnswer read = accessibility().copyAttribute(*answer.element, attribute::role);
    EXPECT_NE(read.error, AXError::success);
    EXPECT_EQ(read.value, AttributeValue(NullValue{}));
    EXPECT_NE(accessibility().isAttributeSettable(*answer.element, attribute::selectedText).error, AXError::success);
    EXPECT_NE(accessibility().performAction(*answer.element, action::raise), AXError::success);
    EXPECT_FALSE(accessibility().processIdentifier(*answer.element).has_value());
    EXPECT_FALSE(*answer.element == text());
}

TEST_P(AccessibilityContract, ABatchReturnsWhatSingleCopiesReturn) {
    const std::vector<Element> elements{text(), application(), window(), text()};
    constexpr std::array<std::string_view, 7> attributes{
        attribute::role,  attribute::selectedText, attribute::selectedTextRange, attribute::value, attribute::children,
        unknownAttribute, attribute::role};
    std::vector<std::vector<AttributeAnswer>> expected;
    for (const Element& element : elements) {
        std::vector<AttributeAnswer>& row = expected.emplace_back();
        for (const std::string_view name : attributes) {
            row.push_back(accessibility().copyAttribute(element, name));
        }
    }
    EXPECT_EQ(accessibility().copyAttributes(elements, attributes), expected);
}

TEST_P(AccessibilityContract, AnEmptyBatchReturnsNothing) {
    const std::vector<Element> elements{text(), window()};
    constexpr std::array<std::string_view, 1> attributes{attribute::role};
    EXPECT_EQ(accessibility().copyAttributes({}, attributes), std::vector<std::vector<AttributeAnswer>>{});
    EXPECT_EQ(accessibility().copyAttributes(elements, {}), std::vector<std::vector<AttributeAnswer>>(2));
    EXPECT_EQ(accessibility().areAttributesSettable({}, attribute::role), std::vector<SettableAnswer>{});
}

TEST_P(AccessibilityContract, ReportsWhichAttributesAreSettable) {
    EXPECT_EQ(accessibility().isAttributeSettable(text(), attribute::selectedText),
              (SettableAnswer{AXError::success, true}));
    const SettableAnswer role = accessibility().isAttributeSettable(text(), attribute::role);
    EXPECT_FALSE(role.error == AXError::success && role.settable);
    const SettableAnswer unknown = accessibility().isAttributeSettable(text(), unknownAttribute);
    EXPECT_FALSE(unknown.error == AXError::success && unknown.settable);
}

TEST_P(AccessibilityContract, ABatchReportsSettabilityAsSingleQueries) {
    const std::vector<Element> elements{window(), text(), application(), text()};
    for (const std::string_view name : {attribute::selectedText, attribute::role, unknownAttribute}) {
        std::vector<SettableAnswer> expected;
        for (const Element& element : elements) {
            expected.push_back(accessibility().isAttributeSettable(element, name));
        }
        EXPECT_EQ(accessibility().areAttributesSettable(elements, name), expected) << name;
    }
}

TEST_P(AccessibilityContract, SettingTheSelectedTextReplacesTheSelection) {
    ASSERT_EQ(accessibility().setAttribute(text(), attribute::selectedText, Text(u"lazy dog\U0001F436")),
              AXError::success);
    EXPECT_EQ(accessibility().copyAttribute(text(), attribute::value), answerOf(Text(u"The quick lazy dog\U0001F436")));
    EXPECT_EQ(accessibility().copyAttribute(text(), attribute::selectedText), answerOf(Text()));
}

TEST_P(AccessibilityContract, RefusesToSetAnAttributeThatIsNotSettable) {
    EXPECT_NE(accessibility().setAttribute(text(), unknownAttribute, true), AXError::success);
    EXPECT_NE(accessibility().setAttribute(text(), attribute::selectedText, NullValue{}), AXError::success);
    EXPECT_EQ(accessibility().copyAttribute(text(), attribute::value), answerOf(Text(u"The quick brown fox")));
}

TEST_P(AccessibilityContract, RefusesAnUnknownAction) {
    EXPECT_NE(accessibility().performAction(text(), "AXNoSuchActionAtAll"), AXError::success);
}

TEST_P(AccessibilityContract, ReturnsTheProcessOfAnElement) {
    EXPECT_EQ(accessibility().processIdentifier(application()), world().application());
    EXPECT_EQ(accessibility().processIdentifier(window()), world().application());
    EXPECT_EQ(accessibility().processIdentifier(text()), world().application());
}

TEST_P(AccessibilityContract, ElementsOfAnApplicationThatQuitReturnErrors) {
    const std::vector<Element> elements{application(), window(), text()};
    world().quitApplication();
    for (const Element& element : elements) {
        EXPECT_NE(accessibility().copyAttribute(element, attribute::role).error, AXError::success);
        EXPECT_NE(accessibility().setAttribute(element, attribute::selectedText, Text(u"x")), AXError::success);
        EXPECT_NE(accessibility().isAttributeSettable(element, attribute::selectedText).error, AXError::success);
        EXPECT_NE(accessibility().performAction(element, action::raise), AXError::success);
    }
}

TEST_P(AccessibilityContract, ComparesWordsRegardlessOfCase) {
    struct Case {
        TextView text;
        TextView word;
        bool expected;
    };
    const std::array<Case, 8> cases{{{u"MainEditorView", u"editor", true},
                                     {u"EDITOR", u"editor", true},
                                     {u"editor", u"EDITOR", true},
                                     {u"code editor", u"editor", true},
                                     {u"edit", u"editor", false},
                                     {u"edi tor", u"editor", false},
                                     {u"\u00e9ditor", u"editor", false},
                                     {u"", u"editor", false}}};
    for (const Case& each : cases) {
        EXPECT_EQ(accessibility().containsIgnoringCase(each.text, each.word), each.expected)
            << testing::PrintToString(each.text);
    }
}

}  // namespace
}  // namespace lomaris::test
