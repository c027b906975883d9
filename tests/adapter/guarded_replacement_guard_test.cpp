#include "tests/adapter/guarded_replacement_world.h"

#include <chrono>
#include <ostream>
#include <string>

namespace lomaris {
namespace {

using namespace std::chrono_literals;

/// How the selection is read again and written.
enum class Route {
    /// Read from the element and written into it.
    written,
    /// Read from the element and pasted.
    pasted,
    /// Copied and pasted.
    copied,
};

enum class Input { none, some };

enum class Decision { replaces, refuses };

struct Case {
    std::optional<TextRange> expected;
    std::optional<TextRange> current;
    Route route;
    Input input;
    Decision decision;
};

constexpr auto none = std::nullopt;
constexpr TextRange here{10, 9};
constexpr TextRange oneLater{11, 9};
constexpr TextRange oneShorter{10, 8};

const std::vector<Case> cases = {
    // Two ranges alone decide.
    {here, here, Route::written, Input::none, Decision::replaces},
    {here, here, Route::written, Input::some, Decision::replaces},
    {here, here, Route::pasted, Input::none, Decision::replaces},
    {here, here, Route::pasted, Input::some, Decision::replaces},
    {here, oneLater, Route::written, Input::none, Decision::refuses},
    {here, oneLater, Route::written, Input::some, Decision::refuses},
    {here, oneLater, Route::pasted, Input::none, Decision::refuses},
    {here, oneLater, Route::pasted, Input::some, Decision::refuses},
    {here, oneShorter, Route::written, Input::none, Decision::refuses},
    {here, oneShorter, Route::written, Input::some, Decision::refuses},
    {here, oneShorter, Route::pasted, Input::none, Decision::refuses},
    {here, oneShorter, Route::pasted, Input::some, Decision::refuses},
    // If the range disappeared, the input decides.
    {here, none, Route::written, Input::none, Decision::replaces},
    {here, none, Route::written, Input::some, Decision::refuses},
    {here, none, Route::pasted, Input::none, Decision::replaces},
    {here, none, Route::pasted, Input::some, Decision::refuses},
    {here, none, Route::copied, Input::none, Decision::replaces},
    {here, none, Route::copied, Input::some, Decision::refuses},
    // Likewise if it appeared.
    {none, here, Route::written, Input::none, Decision::replaces},
    {none, here, Route::written, Input::some, Decision::refuses},
    {none, here, Route::pasted, Input::none, Decision::replaces},
    {none, here, Route::pasted, Input::some, Decision::refuses},
    // Without any range, the input matters only to a selection that is written directly.
    {none, none, Route::written, Input::none, Decision::replaces},
    {none, none, Route::written, Input::some, Decision::refuses},
    {none, none, Route::pasted, Input::none, Decision::replaces},
    {none, none, Route::pasted, Input::some, Decision::replaces},
    {none, none, Route::copied, Input::none, Decision::replaces},
    {none, none, Route::copied, Input::some, Decision::replaces},
};

std::string shown(const std::optional<TextRange>& range) {
    return range ? "{" + std::to_string(range->location) + ", " + std::to_string(range->length) + "}" : "none";
}

void PrintTo(const Case& shownCase, std::ostream* stream) {
    static constexpr const char* routes[] = {"written", "pasted", "copied"};
    *stream << "expected " << shown(shownCase.expected) << ", current " << shown(shownCase.current) << ", "
            << routes[static_cast<int>(shownCase.route)] << (shownCase.input == Input::some ? ", input" : ", no input");
}

class GuardDecision : public test::GuardedReplacementWorld, public testing::WithParamInterface<Case> {};

TEST_P(GuardDecision, ComparesTheRangesAndThenTheInput) {
    const Case& tried = GetParam();
    request.expectedSelectedRange = tried.expected;
    if (tried.current) {
        text.answers(attribute::selectedTextRange, *tried.current);
    } else {
        text.answers(attribute::selectedTextRange, AXError::noValue);
    }
    if (tried.route == Route::pasted) {
        forbidWriting();
    } else if (tried.route == Route::copied) {
        hideSelection();
    }
    if (tried.input == Input::some) {
        desktop.userClicks();
    }

    if (tried.decision == Decision::refuses) {
        expectRefusal(entries(Reason::activityOrRange));
        return;
    }
    EXPECT_EQ(replace(), std::nullopt);
    expectEmptyTrace();
    EXPECT_EQ(test::callsWith(desktop, "setAttribute(812/1, AXSelectedText"), tried.route == Route::written ? 1U : 0U);
    EXPECT_EQ(pastes(), tried.route == Route::written ? 0U : 1U);
}

INSTANTIATE_TEST_SUITE_P(Table, GuardDecision, testing::ValuesIn(cases));

class GuardedReplacementGuard : public test::GuardedReplacementWorld {};

TEST_F(GuardedReplacementGuard, RefusesIfAnyOfTheFourCountersDiffers) {
    request.expectedSelectedRange.reset();
    const std::vector<InputActivitySnapshot> others = {{0, 2, 3, 4}, {1, 1, 3, 4}, {1, 2, 4, 4}, {1, 2, 3, 5}};
    for (const auto& other : others) {
        request.expectedInputActivity = other;
        expectRefusal(entries(Reason::activityOrRange));
    }
    request.expectedInputActivity = {1, 2, 3, 4};
    EXPECT_EQ(replace(), std::nullopt);
}

TEST_F(GuardedReplacementGuard, DoesNotCountItsOwnCommandCAsInput) {
    hideSelection();
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(test::callsWith(desktop, "postToSession(key 8, flags 0x100000)"), 1U);
    // The two keys that the tool posted: copy and paste.
    EXPECT_EQ(desktop.inputCounters(), (InputCounters{3, 2, 3, 4}));
    EXPECT_EQ(pastes(), 1U);
}

TEST_F(GuardedReplacementGuard, IgnoresInputDuringTheReplacement) {
    request.expectedSelectedRange.reset();
    notes.element().answers(attribute::focusedWindow, window.element());
    desktop.at(50ms, [this] { desktop.userTypes(); });
    EXPECT_EQ(replace(), std::nullopt);
    EXPECT_EQ(text.text(), u"The quick red fox");
    EXPECT_EQ(desktop.now(), 100ms);
}

TEST_F(GuardedReplacementGuard, RefusesTheSameTextOnePositionLater) {
    text.setText(u"aaaa", {1, 2});
    request.expectedText = u"aa";
    request.expectedSelectedRange = TextRange{0, 2};
    expectRefusal(entries(Reason::activityOrRange));
    EXPECT_EQ(text.text(), u"aaaa");
}

}  // namespace
}  // namespace lomaris
