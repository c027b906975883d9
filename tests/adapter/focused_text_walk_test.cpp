#include "accessibility/adapter/focused_element.h"
#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/support/element_tree.h"
#include "tests/support/journal.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace lomaris {
namespace {

using test::setChildren;

class FocusedTextWalk : public testing::Test {
protected:
    FocusedTextWalk() { notes.element().answers(attribute::focusedWindow, window.element()); }

    std::optional<Element> find() {
        return findFocusedTextDescendant(desktop.accessibility(), notes.element().element());
    }

    SimulatedElement addText(TextView selectedText) {
        auto element = notes.addElement();
        element.answers(attribute::selectedText, Text(selectedText));
        return element;
    }

    /// Adds `leaf` below the window at this depth. The window has depth 0.
    void hangAtDepth(const SimulatedElement& leaf, int depth) { test::hangAtDepth(notes, window, leaf, depth); }

    SimulatedDesktop desktop;
    SimulatedApplication notes = desktop.addApplication(812, u"com.example.notes", u"Notes");
    SimulatedElement window = notes.addElement();
};

TEST_F(FocusedTextWalk, FindsNothingInATreeWithoutText) {
    setChildren(window, {notes.addElement(), notes.addElement()});
    EXPECT_EQ(find(), std::nullopt);
}

TEST_F(FocusedTextWalk, PrefersASelectionToAnEarlierFocusedField) {
    auto first = addText(u"");
    first.answers(attribute::focused, true);
    const auto second = addText(u"brown");
    setChildren(window, {first, second});
    EXPECT_EQ(find(), second.element());
}

TEST_F(FocusedTextWalk, PrefersADeepFocusedFieldToAnEarlierUnfocusedOne) {
    const auto early = addText(u"");
    const auto group = notes.addElement();
    auto deep = addText(u"");
    deep.answers(attribute::focused, true);
    setChildren(window, {early, group});
    setChildren(group, {deep});
    EXPECT_EQ(find(), deep.element());
}

TEST_F(FocusedTextWalk, ReturnsTheFirstOfEquallyGoodFields) {
    auto first = addText(u"");
    auto second = addText(u"");
    setChildren(window, {first, second});
    EXPECT_EQ(find(), first.element());
    first.answers(attribute::focused, true);
    second.answers(attribute::focused, true);
    EXPECT_EQ(find(), first.element());
    first.answers(attribute::focused, false);
    EXPECT_EQ(find(), second.element());
    second.answers(attribute::focused, std::int64_t{1});
    EXPECT_EQ(find(), first.element());
}

TEST_F(FocusedTextWalk, ReturnsTheFirstSelectionInBreadthFirstOrder) {
    const auto group = notes.addElement();
    const auto deep = addText(u"deep");
    const auto shallow = addText(u"shallow");
    setChildren(window, {group, shallow});
    setChildren(group, {deep});
    EXPECT_EQ(find(), shallow.element());
}

TEST_F(FocusedTextWalk, StartsFromTheApplicationIfItHasNoWindow) {
    notes.element().answers(attribute::focusedWindow, AXError::noValue);
    const auto text = addText(u"brown");
    setChildren(notes.element(), {text});
    EXPECT_EQ(find(), text.element());
    notes.element().answers(attribute::selectedText, Text(u"root"));
    EXPECT_EQ(find(), notes.element().element());
}

TEST_F(FocusedTextWalk, StartsFromAllWindowsIfNoneIsFocused) {
    notes.element().answers(attribute::focusedWindow, AXError::noValue);
    const auto first = notes.addElement();
    const auto second = notes.addElement();
    const auto inFirst = addText(u"first");
    const auto inSecond = addText(u"second");
    setChildren(first, {inFirst});
    setChildren(second, {inSecond});
    notes.element().answers(attribute::windows, std::vector<Element>{second.element(), first.element()});
    EXPECT_EQ(find(), inSecond.element());
}

TEST_F(FocusedTextWalk, SearchesOnlyTheFocusedWindow) {
    const auto otherWindow = notes.addElement();
    setChildren(otherWindow, {addText(u"elsewhere")});
    notes.element().answers(attribute::windows, std::vector<Element>{otherWindow.element(), window.element()});
    EXPECT_EQ(find(), std::nullopt);
}

TEST_F(FocusedTextWalk, PrefersASelectionToAnEmptyRange) {
    auto candidate = addText(u"");
    candidate.answers(attribute::selectedTextRange, TextRange{3, 0});
    const auto selected = addText(u"brown");
    setChildren(window, {candidate, selected});
    EXPECT_EQ(find(), selected.element());
    setChildren(window, {candidate});
    EXPECT_EQ(find(), candidate.element());
}

TEST_F(FocusedTextWalk, AcceptsARangeOfOneUnitAsASelection) {
    auto byRange = addText(u"");
    byRange.answers(attribute::selectedTextRange, TextRange{3, 1});
    setChildren(window, {byRange, addText(u"brown")});
    EXPECT_EQ(find(), byRange.element());
}

TEST_F(FocusedTextWalk, AcceptsAnElementWithARangeButNoSelectedText) {
    auto byRange = notes.addElement();
    byRange.answers(attribute::selectedTextRange, TextRange{3, 0});
    setChildren(window, {byRange});
    EXPECT_EQ(find(), byRange.element());
    byRange.answers(attribute::selectedTextRange, TextRange{3, 2});
    setChildren(window, {byRange, addText(u"brown")});
    EXPECT_EQ(find(), byRange.element());
}

TEST_F(FocusedTextWalk, PrefersASelectionToARangeOfNegativeLength) {
    auto odd = notes.addElement();
    odd.answers(attribute::selectedTextRange, TextRange{3, -2});
    const auto selected = addText(u"brown");
    setChildren(window, {odd, selected});
    EXPECT_EQ(find(), selected.element());
}

TEST_F(FocusedTextWalk, StopsAfter3000ElementsOfACyclicTree) {
    setChildren(window, std::vector<SimulatedElement>(200, window));
    EXPECT_EQ(find(), std::nullopt);
    // One call for the window, then the other 2,999 in batches of 32.
    EXPECT_EQ(test::callsWith(desktop, "copyAttributes"), 95U);
}

TEST_F(FocusedTextWalk, StopsAfter3000Windows) {
    notes.element().answers(attribute::focusedWindow, AXError::noValue);
    std::vector<Element> windows(3000, window.element());
    windows.push_back(addText(u"brown").element());
    notes.element().answers(attribute::windows, windows);
    EXPECT_EQ(find(), std::nullopt);
}

TEST_F(FocusedTextWalk, RejectsOtherBoxedValuesAsARange) {
    auto point = notes.addElement();
    point.answers(attribute::selectedTextRange, OtherBoxedValue{});
    auto number = notes.addElement();
    number.answers(attribute::selectedText, std::int64_t{5});
    setChildren(window, {point, number});
    EXPECT_EQ(find(), std::nullopt);
}

TEST_F(FocusedTextWalk, UsesTheSecondReadOfTheSelectedText) {
    auto vanishing = notes.addElement();
    vanishing.answersInTurn(attribute::selectedText, {answer(Text(u"gone")), answer(Text())});
    auto appearing = notes.addElement();
    appearing.answersInTurn(attribute::selectedText, {answer(Text()), answer(Text(u"here"))});
    setChildren(window, {vanishing, appearing});
    EXPECT_EQ(find(), appearing.element());
}

TEST_F(FocusedTextWalk, RereadsTheRangeAfterTheSecondReadOfTheText) {
    auto moving = notes.addElement();
    moving.answersInTurn(attribute::selectedTextRange, {answer(TextRange{3, 0}), answer(TextRange{3, 2})});
    setChildren(window, {moving, addText(u"brown")});
    EXPECT_EQ(find(), moving.element());
}

TEST_F(FocusedTextWalk, ExaminesDepth30ButNotDepth31) {
    const auto text = addText(u"brown");
    hangAtDepth(text, 30);
    EXPECT_EQ(find(), text.element());
    hangAtDepth(text, 31);
    EXPECT_EQ(find(), std::nullopt);
}

TEST_F(FocusedTextWalk, DoesNotExpandAnElementAtDepth30) {
    auto parent = notes.addElement();
    hangAtDepth(parent, 30);
    setChildren(parent, {addText(u"too deep")});
    EXPECT_EQ(find(), std::nullopt);
}

class CrowdedTextWalk : public FocusedTextWalk {
protected:
    /// Fills the window, which is at queue position 0, with `others` elements and then `last`.
    void fillWindow(std::size_t others, const SimulatedElement& last) {
        std::vector<SimulatedElement> children;
        for (std::size_t index = 0; index < others; ++index) {
            children.push_back(notes.addElement());
        }
        children.push_back(last);
        setChildren(window, children);
    }
};

TEST_F(CrowdedTextWalk, FindsASelectionAtQueuePosition2999) {
    const auto text = addText(u"brown");
    fillWindow(2998, text);
    EXPECT_EQ(find(), text.element());
}

TEST_F(CrowdedTextWalk, DoesNotFindASelectionAtQueuePosition3000) {
    const auto text = addText(u"brown");
    fillWindow(2999, text);
    EXPECT_EQ(find(), std::nullopt);
}

TEST_F(CrowdedTextWalk, ReturnsACandidateIfTheSelectionIsOutOfReach) {
    const auto candidate = addText(u"");
    const auto text = addText(u"brown");
    std::vector<SimulatedElement> children = {candidate};
    for (int index = 0; index < 2998; ++index) {
        children.push_back(notes.addElement());
    }
    children.push_back(text);
    setChildren(window, children);
    EXPECT_EQ(find(), candidate.element());
}

TEST_F(FocusedTextWalk, StopsReadingAtTheFirstSelection) {
    const auto selected = addText(u"brown");
    std::vector<SimulatedElement> children = {selected};
    for (int index = 0; index < 1000; ++index) {
        children.push_back(notes.addElement());
    }
    setChildren(window, children);
    EXPECT_EQ(find(), selected.element());
    EXPECT_EQ(test::callsWith(desktop, "copyAttributes"), 2U);
}

TEST_F(FocusedTextWalk, RejectsChildrenThatAreNotAllElements) {
    window.answers(attribute::children, MixedArray{});
    EXPECT_EQ(find(), std::nullopt);
}

}  // namespace
}  // namespace lomaris
