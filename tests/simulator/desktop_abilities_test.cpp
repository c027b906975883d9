// Behavior of applications over time: several reactions to one key stroke, sets with side effects, start and exit,
// hanging and recovery.

#include "platform/attributes.h"
#include "tests/simulator/described_desktop.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using simulator::Stage;
using std::chrono::milliseconds;

constexpr KeyStroke copyKey{8, commandFlag};

void press(Stage& stage, KeyStroke keyStroke) {
    stage.desktop.events().postToSession(*stage.desktop.events().createKeyStroke(keyStroke));
}

AttributeAnswer readRoot(Stage& stage, ProcessIdentifier process, std::string_view attribute) {
    Accessibility& service = stage.desktop.accessibility();
    return service.copyAttribute(service.applicationElement(process), attribute);
}

/// Returns the text on the pasteboard at each of these moments.
std::vector<std::optional<Text>> pasteboardAt(Stage& stage, const std::vector<Moment>& moments) {
    std::vector<std::optional<Text>> texts;
    for (const Moment moment : moments) {
        stage.desktop.scheduling().sleep(moment - stage.desktop.now());
        texts.push_back(stage.desktop.pasteboard().string());
    }
    return texts;
}

TEST(ReactionsTogether, HappenEachAfterItsOwnDelay) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "front": true,
        "onCopy": [{"copies": ""}, {"after": 0.3, "copies": "late"}, {"after": 0.1, "copies": "soon"}]}]})");
    press(*stage, copyKey);
    EXPECT_EQ(pasteboardAt(*stage, {Moment(0), milliseconds(99), milliseconds(100), milliseconds(300)}),
              (std::vector<std::optional<Text>>{u"", u"", u"soon", u"late"}));
}

TEST(ReactionsTogether, AddTheirDelaysToThatOfTheGroup) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "front": true,
        "onCopy": {"inTurn": [{"after": 0.2, "all": [{"copies": "a"}, [{"after": 0.1, "copies": "b"}]]}]}}]})");
    press(*stage, copyKey);
    EXPECT_EQ(pasteboardAt(*stage, {milliseconds(199), milliseconds(200), milliseconds(299), milliseconds(300)}),
              (std::vector<std::optional<Text>>{std::nullopt, u"a", u"a", u"b"}));
}

TEST(ReactionsTogether, OfOneMomentAllHappenEvenIfOneQuitsTheApplication) {
    const auto stage = stageOf(R"({"applications": [
        {"processIdentifier": 812, "front": true,
         "onCopy": [{"quits": 812}, {"bringsToFront": 913}, {"after": 0.1, "copies": "a"}]},
        {"processIdentifier": 913}]})");
    press(*stage, copyKey);
    EXPECT_EQ(stage->desktop.front(), 913);
    EXPECT_EQ(pasteboardAt(*stage, {milliseconds(100)}), (std::vector<std::optional<Text>>{std::nullopt}));
}

TEST(ActionsOfTheUser, MayBeDelayed) {
    const auto stage = stageOf(R"({"user": [
        {"at": 0.1, "do": [{"copies": "a"}, {"after": 0.2, "copies": "b"}]}]})");
    EXPECT_EQ(pasteboardAt(*stage, {milliseconds(100), milliseconds(299), milliseconds(300)}),
              (std::vector<std::optional<Text>>{u"a", u"a", u"b"}));
}

/// The result of setting an attribute, and its value afterwards.
struct SetOutcome {
    AXError answer = AXError::success;
    AttributeAnswer readAfter;
};

SetOutcome setNew(Stage& stage, std::string_view attribute) {
    const AXError answer =
        stage.desktop.accessibility().setAttribute(stage.named.at("field").element(), attribute, Text(u"new"));
    return {answer, read(stage, "field", attribute)};
}

TEST(ScriptedSet, MayWriteAndStillReturnAnError) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "elements": [
        {"name": "field", "text": {"value": "old", "selection": [0, 3]}, "attributes": {"plain": "old"},
         "set": {"AXValue": {"answers": "cannotComplete", "writes": true}, "plain": {"answers": -1, "writes": true},
                 "AXSelectedText": {"answers": "failure"}, "unknown": {"writes": false}}}]}]})");
    SetOutcome set = setNew(*stage, attribute::selectedText);
    EXPECT_EQ(set.answer, AXError::failure);
    EXPECT_EQ(set.readAfter, answer(Text(u"old")));
    set = setNew(*stage, attribute::value);
    EXPECT_EQ(set.answer, AXError::cannotComplete);
    EXPECT_EQ(set.readAfter, answer(Text(u"new")));
    set = setNew(*stage, "plain");
    EXPECT_EQ(set.answer, AXError{-1});
    EXPECT_EQ(set.readAfter, answer(Text(u"new")));
    set = setNew(*stage, "unknown");
    EXPECT_EQ(set.answer, AXError::success);
    EXPECT_EQ(set.readAfter, answer(AXError::attributeUnsupported));
}

TEST(ScriptedSet, TriggersReactionsInTurnAndDelayed) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812,
        "attributes": {"AXFocusedUIElement": {"element": "other"}},
        "elements": [{"name": "other"}, {"name": "field", "set": {"AXFocused": {"does": {"inTurn": [
            {"ignores": true},
            {"after": 0.1, "scripts": {"element": {"application": 812},
                                       "attributes": {"AXFocusedUIElement": {"element": "field"}}}}]}}}}]}]})");
    const AttributeAnswer other = answer(stage->named.at("other").element());
    const AttributeAnswer field = answer(stage->named.at("field").element());
    const auto focusAfterSet = [&stage] {
        EXPECT_EQ(setNew(*stage, attribute::focused).answer, AXError::success);
        stage->desktop.scheduling().sleep(milliseconds(99));
        const AttributeAnswer before = readRoot(*stage, 812, attribute::focusedUIElement);
        stage->desktop.scheduling().sleep(milliseconds(1));
        return std::pair(before, readRoot(*stage, 812, attribute::focusedUIElement));
    };
    EXPECT_EQ(focusAfterSet(), std::pair(other, other));
    EXPECT_EQ(focusAfterSet(), std::pair(other, field));
}

TEST(ScriptedSet, TriggersNoReactionInAnApplicationThatHangs) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "hangs": true, "elements": [
        {"name": "field", "set": {"AXFocused": {"does": {"copies": "a"}}}}]}]})");
    EXPECT_EQ(setNew(*stage, attribute::focused).answer, AXError::cannotComplete);
    EXPECT_EQ(stage->desktop.pasteboard().string(), std::nullopt);
}

TEST(ScriptsOfTheFile, ApplyToApplicationAndSystemWideElements) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812}],
        "user": [{"at": 0.1, "do": [
            {"scripts": {"element": {"application": 812}, "attributes": {"AXTitle": "Notes"}}},
            {"scripts": {"element": "systemWide", "attributes": {"AXTitle": "System"}}}]}]})");
    EXPECT_EQ(readRoot(*stage, 812, attribute::title), answer(AXError::attributeUnsupported));
    stage->desktop.scheduling().sleep(milliseconds(100));
    EXPECT_EQ(readRoot(*stage, 812, attribute::title), answer(Text(u"Notes")));
    EXPECT_EQ(read(*stage, "systemWide", attribute::title), answer(Text(u"System")));
}

TEST(AnApplicationThatHangs, RecoversWithoutTheReactionsDueWhileItHung) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "front": true,
        "attributes": {"AXTitle": "Notes"}, "onCopy": [{"after": 0.1, "copies": "a"}, {"after": 0.3, "types": 1}]}],
        "user": [{"at": 0.05, "do": {"hangs": 812}}, {"at": 0.2, "do": {"recovers": 812}}]})");
    SimulatedDesktop& desktop = stage->desktop;
    press(*stage, copyKey);
    desktop.scheduling().sleep(milliseconds(100));
    EXPECT_EQ(readRoot(*stage, 812, attribute::title), answer(AXError::cannotComplete));
    desktop.scheduling().sleep(milliseconds(100));
    EXPECT_EQ(readRoot(*stage, 812, attribute::title), answer(Text(u"Notes")));
    desktop.scheduling().sleep(milliseconds(100));
    EXPECT_EQ(desktop.pasteboard().string(), std::nullopt);
    // One is the key stroke, the other the reaction that was due after the recovery.
    EXPECT_EQ(desktop.inputCounters().keyDown, 2U);
}

TEST(AnApplicationThatHangs, DoesNotCountTheKeyStrokesThatItMisses) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "front": true, "hangs": true,
        "onCopy": {"inTurn": [{"copies": "a"}, {"copies": "b"}]}}],
        "user": [{"at": 0.1, "do": {"recovers": 812}}]})");
    press(*stage, copyKey);
    stage->desktop.scheduling().sleep(milliseconds(100));
    press(*stage, copyKey);
    EXPECT_EQ(stage->desktop.pasteboard().string(), Text(u"a"));
}

TEST(AScript, CanMakeTheProcessIdentifierReadableAgain) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812,
        "elements": [{"name": "field", "processIdentifierFails": true}]}],
        "user": [{"at": 1, "do": {"scripts": {"element": "field", "processIdentifierFails": false}}}]})");
    const Element field = stage->named.at("field").element();
    EXPECT_EQ(stage->desktop.accessibility().processIdentifier(field), std::nullopt);
    stage->desktop.scheduling().sleep(std::chrono::seconds(1));
    EXPECT_EQ(stage->desktop.accessibility().processIdentifier(field), 812);
}

TEST(AnApplicationThatStartsLater, DoesNotExistUntilThen) {
    const auto stage = stageOf(R"({"applications": [
        {"processIdentifier": 812, "front": true, "onCopy": {"starts": 913}},
        {"processIdentifier": 913, "name": "Mail", "runs": false, "attributes": {"AXTitle": "Mail"},
         "elements": [{"name": "field", "attributes": {"AXRole": "AXTextField"}}]}],
        "user": [{"at": 0, "do": [{"bringsToFront": 913}, {"quits": 913}, {"hangs": 913}, {"recovers": 913}]},
                 {"at": 1, "do": [{"bringsToFront": 913}]}, {"at": 2, "do": [{"quits": 913}, {"starts": 913}]}]})");
    SimulatedDesktop& desktop = stage->desktop;
    const auto isThere = [&] {
        const bool runs = desktop.workspace().runningApplication(913).has_value();
        const AttributeAnswer expected = runs ? answer(Text(u"Mail")) : answer(AXError::invalidUIElement);
        EXPECT_EQ(readRoot(*stage, 913, attribute::title), expected);
        EXPECT_EQ(read(*stage, "field", attribute::role),
                  runs ? answer(Text(u"AXTextField")) : answer(AXError::invalidUIElement));
        return runs;
    };
    desktop.scheduling().sleep(Duration(0));
    EXPECT_FALSE(isThere());
    EXPECT_EQ(desktop.front(), 812);
    press(*stage, copyKey);
    EXPECT_TRUE(isThere());
    desktop.scheduling().sleep(std::chrono::seconds(1));
    EXPECT_EQ(desktop.front(), 913);
    desktop.scheduling().sleep(std::chrono::seconds(1));
    EXPECT_FALSE(isThere());
}

}  // namespace
}  // namespace lomaris::test
