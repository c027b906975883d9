#include "tests/linux/fake_desktop.h"

#include "platform/attributes.h"

#include <climits>

namespace lomaris::test {
namespace {

using atspi::State;

constexpr const char* path = "/org/a11y/atspi/accessible/7";
// "a", U+1F600, "bc".
constexpr const char* astral =
    "a\xF0\x9F\x98\x80"
    "bc";

class AccessibilityText : public FakeDesktop {
protected:
    void expectSelection(const AttributeAnswer& text, const AttributeAnswer& range) {
        EXPECT_EQ(copy(path, attribute::selectedText), text);
        EXPECT_EQ(copy(path, attribute::selectedTextRange), range);
    }
};

TEST_F(AccessibilityText, ConvertsTheFirstSelectionFromCodePoints) {
    addObject(path, {State::editable});
    addText(path, astral, 4, {{2, 4}, {0, 1}});
    start();
    expectSelection(successOf(Text(u"bc")), successOf(TextRange{3, 2}));
    EXPECT_EQ(copy(path, attribute::value), successOf(Text(u"a\U0001F600bc")));
}

TEST_F(AccessibilityText, ReadsTheFirstSelectionInUtf16Units) {
    addObject(path, {State::editable});
    addText(path, astral, 5, {{3, 5}});
    start();
    expectSelection(successOf(Text(u"bc")), successOf(TextRange{3, 2}));
}

TEST_F(AccessibilityText, RemovesPaddingOnlyForTheToolkitThatPads) {
    addObject(path, {State::editable});
    addText(path,
            "a\xF0\x9F\x98\x80\xEF\xBB\xBF"
            "bc",
            5, {{3, 5}});
    const auto toolkit = std::make_shared<std::atomic<bool>>(true);
    peer().answerWith(atspi::rootPath, "Get Application.ToolkitName",
                      [toolkit] { return stringProperty(*toolkit ? "Gecko" : "gtk"); });
    start();
    expectSelection(successOf(Text(u"bc")), successOf(TextRange{3, 2}));
    EXPECT_EQ(copy(path, attribute::value), successOf(Text(u"a\U0001F600bc")));
    *toolkit = false;
    expectSelection(successOf(Text(u"bc")), successOf(TextRange{4, 2}));
    EXPECT_EQ(copy(path, attribute::value), successOf(Text(u"a\U0001F600\uFEFFbc")));
}

TEST_F(AccessibilityText, SwapsABackwardSelection) {
    addObject(path, {State::editable});
    addText(path, "hello", 5, {{4, 1}});
    start();
    expectSelection(successOf(Text(u"ell")), successOf(TextRange{1, 3}));
}

TEST_F(AccessibilityText, ReturnsTheCaretIfNothingIsSelected) {
    addObject(path, {State::editable});
    addText(path, astral, 4, {}, 2);
    start();
    expectSelection(successOf(Text()), successOf(TextRange{3, 0}));
    EXPECT_EQ(peer().callCount(path, "Text.GetSelection"), 0);
}

TEST_F(AccessibilityText, HasNoRangeWithoutACaret) {
    addObject(path, {});
    addText(path, "label", 5, {}, -1);
    start();
    expectSelection(successOf(Text()), failureOf(AXError::noValue));
}

TEST_F(AccessibilityText, FailsIfTheRangeCannotBeConverted) {
    struct Case {
        const char* bytes;
        int characterCount;
        std::pair<int, int> selection;
    };
    const std::vector<Case> cases{
        {"hello", 4, {0, 1}},
        {"hello", -1, {0, 1}},
        {"hello", 5, {-1, 3}},
        {"hello", 5, {0, 6}},
        {"hello", 5, {INT_MIN, INT_MAX}},
        {astral, 6, {0, 1}},
        {astral, 4, {0, 5}},
        {"hello", INT_MAX, {0, 1}},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        addObject(path + std::to_string(i), {State::editable});
        addText(path + std::to_string(i), cases[i].bytes, cases[i].characterCount, {cases[i].selection});
    }
    start();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const std::string object = path + std::to_string(i);
        EXPECT_EQ(copy(object, attribute::selectedText), failureOf(AXError::failure)) << "case " << i;
        EXPECT_EQ(copy(object, attribute::selectedTextRange), failureOf(AXError::failure)) << "case " << i;
    }
}

TEST_F(AccessibilityText, FailsOnRepliesOfAnotherType) {
    struct Case {
        const char* call;
        Values values;
    };
    const std::vector<Case> cases{
        {"Text.GetNSelections", string("1")},
        {"Text.GetNSelections", integer(-1)},
        {"Text.GetNSelections", nothing()},
        {"Text.GetSelection", integer(1)},
        {"Text.GetText", integer(1)},
        {"Get Text.CharacterCount", integer(5)},
        {"Get Text.CharacterCount", stringProperty("5")},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const std::string object = path + std::to_string(i);
        addObject(object, {State::editable});
        addText(object, "hello", 5, {{0, 1}});
        peer().answer(object, cases[i].call, cases[i].values);
    }
    start();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(copy(path + std::to_string(i), attribute::selectedText), failureOf(AXError::failure))
            << cases[i].call << " " << i;
    }
}

TEST_F(AccessibilityText, IsUnsupportedIfThereIsNone) {
    addObject(path, {});
    start();
    expectSelection(failureOf(AXError::attributeUnsupported), failureOf(AXError::attributeUnsupported));
    EXPECT_EQ(copy(path, attribute::value), failureOf(AXError::attributeUnsupported));
}

TEST_F(AccessibilityText, ReadsANumberIfThereIsNoText) {
    const std::vector<std::pair<double, AttributeValue>> cases{
        {3, std::int64_t{3}},          {-0.5, OtherNumber{-0.5}},          {1e300, OtherNumber{1e300}},
        {0x1p63, OtherNumber{0x1p63}}, {-0x1p63, std::int64_t{INT64_MIN}},
    };
    for (std::size_t i = 0; i < cases.size(); ++i) {
        addObject(path + std::to_string(i), {});
        peer().answer(path + std::to_string(i), "Get Value.CurrentValue", numberProperty(cases[i].first));
    }
    start();
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(copy(path + std::to_string(i), attribute::value), successOf(cases[i].second)) << cases[i].first;
    }
}

TEST_F(AccessibilityText, IsTheOnlySettableAttribute) {
    addObject(path, {State::editable});
    peer().answerError("/gone", "Accessible.GetState", "org.freedesktop.DBus.Error.UnknownObject");
    start();
    for (const auto& attribute : {attribute::role, attribute::value, attribute::focused}) {
        EXPECT_EQ(accessibility().isAttributeSettable(object(path), attribute),
                  (SettableAnswer{AXError::success, false}))
            << attribute;
        EXPECT_EQ(accessibility().isAttributeSettable(object("/gone"), attribute),
                  (SettableAnswer{AXError::invalidUIElement, false}))
            << attribute;
    }
    EXPECT_EQ(accessibility().isAttributeSettable(object(path), "AXNonsense"),
              (SettableAnswer{AXError::attributeUnsupported, false}));
}

TEST_F(AccessibilityText, IsSettableOnlyIfTheObjectAllowsIt) {
    struct Case {
        std::vector<std::string> interfaces;
        std::vector<State> states;
        SettableAnswer expected;
    };
    const std::vector<Case> cases{
        {{atspi::text, atspi::editableText}, {State::editable}, {AXError::success, true}},
        {{atspi::text, atspi::editableText}, {}, {AXError::success, false}},
        {{atspi::text, atspi::editableText}, {State::editable, State::readOnly}, {AXError::success, false}},
        {{atspi::text}, {State::editable}, {AXError::success, false}},
        {{atspi::accessible}, {State::editable}, {AXError::attributeUnsupported, false}},
        {{}, {}, {AXError::attributeUnsupported, false}},
    };
    std::vector<Element> elements;
    for (std::size_t i = 0; i < cases.size(); ++i) {
        addObject(path + std::to_string(i), cases[i].states);
        peer().answer(path + std::to_string(i), "Accessible.GetInterfaces", strings(cases[i].interfaces));
        elements.push_back(object(path + std::to_string(i)));
    }
    start();
    const auto answers = accessibility().areAttributesSettable(elements, attribute::selectedText);
    ASSERT_EQ(answers.size(), cases.size());
    for (std::size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(answers[i], cases[i].expected) << "case " << i;
        EXPECT_EQ(accessibility().isAttributeSettable(elements[i], attribute::selectedText), cases[i].expected)
            << "case " << i;
    }
}

}  // namespace
}  // namespace lomaris::test
