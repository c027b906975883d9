#include "tests/adapter/selection_diagnostics_fixture.h"
#include "tests/support/journal.h"
#include "text/utf8.h"

#include <optional>
#include <utility>
#include <vector>

namespace lomaris {
namespace {

using test::setChildren;

using DiagnosedElements = SelectionDiagnosticsTest;

TEST_F(DiagnosedElements, AreRelevantIfTheSelectedTextIsReadable) {
    struct Example {
        const char* what;
        AttributeValue value;
        std::optional<std::int64_t> length;
    };
    const std::vector<Example> examples = {
        {"a text", Text(u"brown"), 5},
        {"an empty text", Text(), 0},
        {"a flag, four units", Text(u"\U0001F1EB\U0001F1F7"), 4},
        {"half a surrogate pair", Text(1, u'\xD83C'), 1},
        {"null", NullValue{}, std::nullopt},
        {"a number", std::int64_t{5}, std::nullopt},
        {"a boolean", true, std::nullopt},
        {"a range", TextRange{0, 5}, std::nullopt},
    };
    for (const Example& example : examples) {
        window.answers(attribute::selectedText, example.value);
        AccessibilityNodeDiagnostic expected;
        expected.path = u"0";
        expected.selectedTextStatus = 0;
        expected.selectedTextLength = example.length;
        EXPECT_EQ(diagnose(), payload(1, false, {expected})) << example.what;
    }
}

TEST_F(DiagnosedElements, RecordTheStatusOfAnUnreadableSelectedText) {
    window.answers(attribute::role, Text(u"AXTextArea"));
    for (const std::int32_t code : {-25200, -25204, -25205, -25212, 7}) {
        window.answers(attribute::selectedText, static_cast<AXError>(code));
        AccessibilityNodeDiagnostic expected;
        expected.path = u"0";
        expected.role = u"AXTextArea";
        expected.selectedTextStatus = code;
        EXPECT_EQ(diagnose(), payload(1, false, {expected})) << code;
    }
}

TEST_F(DiagnosedElements, AreRelevantIfTheyHaveARange) {
    for (const TextRange range : {TextRange{3, 2}, TextRange{0, 0}, TextRange{notFoundLocation, -1}}) {
        window.answers(attribute::selectedTextRange, range);
        AccessibilityNodeDiagnostic expected;
        expected.path = u"0";
        expected.selectedTextStatus = -25205;
        expected.selectedRange = range;
        EXPECT_EQ(diagnose(), payload(1, false, {expected})) << range.location << ' ' << range.length;
    }
}

TEST_F(DiagnosedElements, ReadOnlyABoxedRangeAsARange) {
    const std::vector<AttributeValue> values = {OtherBoxedValue{}, NullValue{}, Text(u"{3, 2}"), std::int64_t{3}};
    for (const AttributeValue& value : values) {
        window.answers(attribute::selectedTextRange, value);
        EXPECT_EQ(diagnose(), payload(1, false, {})) << value.index();
    }
}

TEST_F(DiagnosedElements, AreRelevantIfFocused) {
    window.answers(attribute::focused, true);
    AccessibilityNodeDiagnostic expected;
    expected.path = u"0";
    expected.focused = true;
    expected.selectedTextStatus = -25205;
    EXPECT_EQ(diagnose(), payload(1, false, {expected}));

    const std::vector<AttributeValue> values = {false, std::int64_t{1}, Text(u"true"), NullValue{}};
    for (const AttributeValue& value : values) {
        window.answers(attribute::focused, value);
        EXPECT_EQ(diagnose(), payload(1, false, {})) << value.index();
    }
}

TEST_F(DiagnosedElements, AreRelevantByFourRolesOnly) {
    for (const TextView role : {u"AXTextArea", u"AXTextField", u"AXWebArea", u"AXStaticText"}) {
        window.answers(attribute::role, Text(role));
        EXPECT_EQ(relevantPaths(), Texts{u"0"}) << utf8FromText(role);
    }
    for (const TextView role : {u"AXGroup", u"AXTextAreas", u"AXText", u"axtextarea", u"AXButton", u""}) {
        window.answers(attribute::role, Text(role));
        EXPECT_EQ(relevantPaths(), Texts{}) << utf8FromText(role);
    }
    window.answers(attribute::role, std::int64_t{1}).answers(attribute::subrole, Text(u"AXTextArea"));
    EXPECT_EQ(relevantPaths(), Texts{});
}

TEST_F(DiagnosedElements, AreRelevantIfTheIdentifierContainsEditor) {
    for (const TextView identifier : {u"editor", u"MainEditorView", u"TEXT-EDITOR", u"TextEditorHost"}) {
        window.answers(attribute::role, Text(u"AXGroup")).answers(attribute::identifier, Text(identifier));
        AccessibilityNodeDiagnostic expected;
        expected.path = u"0";
        expected.role = u"AXGroup";
        expected.identifier = identifier;
        expected.selectedTextStatus = -25205;
        EXPECT_EQ(diagnose(), payload(1, false, {expected}));
    }
    for (const TextView identifier : {u"", u"edit", u"e-ditor", u"ed itor"}) {
        window.answers(attribute::identifier, Text(identifier));
        EXPECT_EQ(diagnose(), payload(1, false, {}));
    }
}

TEST_F(DiagnosedElements, AreTestedByIdentifierLast) {
    auto focused = notes.addElement();
    focused.answers(attribute::focused, true).answers(attribute::identifier, Text(u"by focus"));
    auto readable = notes.addElement();
    readable.answers(attribute::selectedText, Text()).answers(attribute::identifier, Text(u"by text"));
    auto ranged = notes.addElement();
    ranged.answers(attribute::selectedTextRange, TextRange{}).answers(attribute::identifier, Text(u"by range"));
    auto area = addWithRole(u"AXTextArea");
    area.answers(attribute::identifier, Text(u"by role"));
    auto group = addWithRole(u"AXGroup");
    group.answers(attribute::identifier, Text(u"by name"));
    setChildren(window, {focused, readable, ranged, area, group});

    EXPECT_EQ(relevantPaths(), (Texts{u"0.0", u"0.1", u"0.2", u"0.3"}));
    EXPECT_EQ(test::callsWith(desktop, " containsIgnoringCase("), 1U);
    EXPECT_EQ(test::callsWith(desktop, " containsIgnoringCase(\"by name\", \"editor\") -> false"), 1U);
}

// Settability, and values that cannot be read.

TEST_F(DiagnosedElements, AreTestedForSettabilityOnlyIfRelevant) {
    auto group = addWithRole(u"AXGroup");
    group.answersSettable(attribute::selectedText, {AXError::success, true});
    const auto text = addStaticText();
    auto area = notes.addTextElement(u"The quick brown fox", {4, 5});
    setChildren(window, {group, text, area});

    const auto nodes = diagnose().relevantNodes;
    ASSERT_EQ(nodes.size(), 2U);
    EXPECT_FALSE(nodes[0].selectedTextSettable);
    EXPECT_TRUE(nodes[1].selectedTextSettable);
    EXPECT_EQ(test::callsWith(desktop, " areAttributesSettable([812/3, 812/4], AXSelectedText)"), 1U);
    EXPECT_EQ(test::callsWith(desktop, " areAttributesSettable("), 1U);
}

TEST_F(DiagnosedElements, AreTestedForSettabilityAcrossBatches) {
    auto settable = addStaticText();
    settable.answersSettable(attribute::selectedText, {AXError::success, true});
    std::vector<SimulatedElement> children = addBareElements(600);
    children.front() = addStaticText();
    children.back() = settable;
    setChildren(window, children);

    auto last = staticText(u"0.599", 1);
    last.selectedTextSettable = true;
    EXPECT_EQ(diagnose(), payload(601, false, {staticText(u"0.0", 1), last}));
}

TEST_F(DiagnosedElements, AreSettableOnlyIfTheQuerySucceeds) {
    const std::vector<std::pair<SettableAnswer, bool>> examples = {
        {{AXError::success, true}, true},
        {{AXError::success, false}, false},
        {{AXError::attributeUnsupported, true}, false},
        {{AXError::cannotComplete, true}, false},
        {{AXError::cannotComplete, false}, false},
    };
    window.answers(attribute::role, Text(u"AXStaticText"));
    for (const auto& [answer, settable] : examples) {
        window.answersSettable(attribute::selectedText, answer);
        auto expected = staticText(u"0", 0);
        expected.selectedTextSettable = settable;
        EXPECT_EQ(diagnose(), payload(1, false, {expected})) << codeOf(answer.error) << ' ' << answer.settable;
    }
}

TEST_F(DiagnosedElements, HaveAValueLengthOnlyIfTheValueIsAText) {
    window.answers(attribute::role, Text(u"AXStaticText"));
    const std::vector<std::pair<AttributeValue, std::optional<std::int64_t>>> examples = {
        {Text(u"\U0001F1EB\U0001F1F7!"), 5}, {Text(), 0}, {std::int64_t{12}, std::nullopt}, {true, std::nullopt},
        {NullValue{}, std::nullopt},
    };
    for (const auto& [value, length] : examples) {
        window.answers(attribute::value, value);
        auto expected = staticText(u"0", 0);
        expected.valueLength = length;
        EXPECT_EQ(diagnose(), payload(1, false, {expected})) << value.index();
    }
}

TEST_F(DiagnosedElements, LeaveOutUnreadableTextsAndChildren) {
    window.answers(attribute::role, Text(u"AXStaticText"));
    for (const AXError error : {AXError::failure, AXError::cannotComplete, AXError::noValue}) {
        window.answers(attribute::subrole, error)
            .answers(attribute::identifier, error)
            .answers(attribute::value, error)
            .answers(attribute::focused, error)
            .answers(attribute::children, error);
        EXPECT_EQ(diagnose(), payload(1, false, {staticText(u"0", 0)})) << codeOf(error);
    }
    window.answers(attribute::subrole, std::int64_t{1})
        .answers(attribute::identifier, true)
        .answers(attribute::children, MixedArray{});
    EXPECT_EQ(diagnose(), payload(1, false, {staticText(u"0", 0)}));
}

TEST_F(DiagnosedElements, AreScannedEvenIfTheApplicationHangs) {
    notes.hang();
    EXPECT_EQ(diagnose(), payload(1, false, {}));
}

}  // namespace
}  // namespace lomaris
