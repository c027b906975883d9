// The state of a desktop that a file describes, and the actions on it.

#include "platform/attributes.h"
#include "simulator/base64.h"
#include "simulator/element_tree.h"
#include "simulator/report.h"
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

using simulator::Json;
using simulator::Stage;
using std::chrono::milliseconds;

/// Returns a desktop with one text area, after a user action at its start.
std::unique_ptr<Stage> stageAfter(const std::string& action) {
    auto stage = stageOf(R"({
        "counters": {"keyDown": 5},
        "applications": [
            {"processIdentifier": 812, "front": true,
             "elements": [{"name": "editor", "text": {"value": "one two", "selection": [4, 3]}}]},
            {"processIdentifier": 913}],
        "user": [{"at": 0, "do": )" +
                         action + "}]}");
    stage->desktop.scheduling().sleep(Duration::zero());
    return stage;
}

TEST(DesktopBuilding, ReadsEveryKindOfValue) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "elements": [
        {"name": "child"},
        {"name": "all", "attributes": {
            "text": "caf\u00e9", "units": [55357, 65], "empty": "", "boolean": true, "integer": -3, "number": 2.5,
            "element": {"element": "child"}, "root": {"application": 812},
            "elements": {"elements": ["child", {"application": 812}]}, "range": {"range": [3, 4]},
            "nowhere": {"range": ["notFound", 0]}, "mixed": {"kind": "mixedArray"}, "boxed": {"kind": "otherBoxed"},
            "other": {"kind": "other"}, "null": null,
            "error": {"error": -25204}, "named": {"error": "noValue"}}}]}]})");
    const Element child = stage->named.at("child").element();
    const Element root = stage->desktop.accessibility().applicationElement(812);
    const std::vector<std::pair<std::string, AttributeAnswer>> expected{
        {"text", answer(Text(u"caf\u00e9"))},
        {"units", answer(Text{0xd83d, u'A'})},
        {"empty", answer(Text())},
        {"boolean", answer(true)},
        {"integer", answer(std::int64_t{-3})},
        {"number", answer(OtherNumber{2.5})},
        {"element", answer(child)},
        {"root", answer(root)},
        {"elements", answer(std::vector<Element>{child, root})},
        {"range", answer(TextRange{3, 4})},
        {"nowhere", answer(TextRange{notFoundLocation, 0})},
        {"mixed", answer(MixedArray{})},
        {"boxed", answer(OtherBoxedValue{})},
        {"other", answer(OtherValue{})},
        {"null", answer(NullValue{})},
        {"error", answer(AXError::cannotComplete)},
        {"named", answer(AXError::noValue)},
        {"missing", answer(AXError::attributeUnsupported)},
    };
    for (const auto& [attribute, answered] : expected) {
        EXPECT_EQ(read(*stage, "all", attribute), answered) << attribute;
    }
}

TEST(DesktopBuilding, ReadsInTurnAndSetsAsScripted) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "elements": [
        {"name": "field", "attributes": {"AXValue": {"inTurn": ["one", {"error": -1}, "two"]}},
         "settable": {"yes": true, "no": false, "unknown": {"error": -25204}},
         "set": {"silent": "success", "refused": -25200},
         "actions": {"AXPress": {"answers": "cannotComplete"}, "AXRaise": {}},
         "processIdentifierFails": true}]}]})");
    EXPECT_EQ(read(*stage, "field", "AXValue"), answer(Text(u"one")));
    EXPECT_EQ(read(*stage, "field", "AXValue"), answer(AXError{-1}));
    EXPECT_EQ(read(*stage, "field", "AXValue"), answer(Text(u"two")));
    EXPECT_EQ(read(*stage, "field", "AXValue"), answer(Text(u"two")));

    Accessibility& service = stage->desktop.accessibility();
    const Element field = stage->named.at("field").element();
    EXPECT_EQ(service.isAttributeSettable(field, "yes"), (SettableAnswer{AXError::success, true}));
    EXPECT_EQ(service.isAttributeSettable(field, "no"), (SettableAnswer{AXError::success, false}));
    EXPECT_EQ(service.isAttributeSettable(field, "unknown"), (SettableAnswer{AXError::cannotComplete, false}));
    EXPECT_EQ(service.setAttribute(field, "silent", true), AXError::success);
    EXPECT_EQ(read(*stage, "field", "silent"), answer(AXError::attributeUnsupported));
    EXPECT_EQ(service.setAttribute(field, "refused", true), AXError::failure);
    EXPECT_EQ(service.performAction(field, action::press), AXError::cannotComplete);
    EXPECT_EQ(service.performAction(field, action::raise), AXError::success);
    EXPECT_EQ(service.processIdentifier(field), std::nullopt);
}

TEST(DesktopBuilding, PerformsEveryUserAction) {
    const auto countersAfter = [](const std::string& action) { return stageAfter(action)->desktop.inputCounters(); };
    EXPECT_EQ(countersAfter(R"({"types": 3})"), (InputCounters{8, 0, 0, 0}));
    EXPECT_EQ(countersAfter(R"([{"clicks": "left"}, {"clicks": "right"}, {"clicks": "other"}, {"clicks": "other"}])"),
              (InputCounters{5, 1, 1, 2}));
    EXPECT_EQ(countersAfter(R"({"setsCounters": {"leftMouseDown": 9}})"), (InputCounters{5, 9, 0, 0}));
    EXPECT_EQ(countersAfter(R"({"setsCounters": {"keyDown": 1, "leftMouseDown": 2, "rightMouseDown": 3,
                                "otherMouseDown": 4}})"),
              (InputCounters{1, 2, 3, 4}));

    const auto textAfter = [](const std::string& action) {
        const auto stage = stageAfter(action);
        return std::pair(stage->texts.at(0).text(), stage->texts.at(0).selection());
    };
    EXPECT_EQ(textAfter(R"({"selects": {"element": "editor", "range": [5, 100]}})"),
              (std::pair(Text(u"one two"), TextRange{5, 2})));
    EXPECT_EQ(textAfter(R"({"rewrites": {"element": "editor", "value": "three", "selection": [1, 2]}})"),
              (std::pair(Text(u"three"), TextRange{1, 2})));
    EXPECT_EQ(textAfter(R"({"deletesSelectionOf": "editor"})"), (std::pair(Text(u"one "), TextRange{4, 0})));
    EXPECT_EQ(textAfter(R"([{"copies": "2"}, {"pastesInto": "editor"}])"),
              (std::pair(Text(u"one 2"), TextRange{5, 0})));

    const auto frontAfter = [](const std::string& action) { return stageAfter(action)->desktop.front(); };
    EXPECT_EQ(frontAfter(R"({"bringsToFront": 913})"), 913);
    EXPECT_EQ(frontAfter(R"({"bringsToFront": null})"), std::nullopt);
    EXPECT_EQ(frontAfter(R"([{"quits": 913}, {"bringsToFront": 913}])"), 812);
    EXPECT_EQ(frontAfter(R"([{"quits": 812}, {"quits": 812}, {"bringsToFront": 812}])"), std::nullopt);

    EXPECT_EQ(read(*stageAfter(R"({"hangs": 812})"), "editor", attribute::value), answer(AXError::cannotComplete));
    EXPECT_EQ(read(*stageAfter(R"({"scripts": {"element": "editor", "attributes": {"AXValue": 5}}})"), "editor",
                   attribute::value),
              answer(std::int64_t{5}));
    EXPECT_FALSE(stageAfter(R"({"setsTrusted": false})")->desktop.accessibility().isProcessTrusted(TrustPrompt::none));
    EXPECT_FALSE(stageAfter(R"({"setsEventAccess": false})")->desktop.events().preflightPostEventAccess());
    EXPECT_EQ(stageAfter(R"({"failsKeyStrokes": 1})")->desktop.events().createKeyStroke({8, 0}), nullptr);
    EXPECT_EQ(stageAfter(R"({"copiesSelectionOf": "editor"})")->desktop.pasteboard().string(), Text(u"two"));

    const auto refusing = stageAfter(R"({"refusesWrites": 1})");
    refusing->desktop.pasteboard().clearContents();
    EXPECT_FALSE(refusing->desktop.pasteboard().writeItems({}));
    EXPECT_TRUE(refusing->desktop.pasteboard().writeItems({}));
}

TEST(DesktopBuilding, PerformsAUserActionBeforeACall) {
    const auto stage = stageOf(R"({"user": [{"beforeCall": 2, "do": {"types": 1}}]})");
    EXPECT_EQ(stage->desktop.events().inputCounter(InputEventType::keyDown), 0U);
    EXPECT_EQ(stage->desktop.events().inputCounter(InputEventType::keyDown), 1U);
}

TEST(DesktopBuilding, TriggersReactionsInTurnAndDelayed) {
    const auto stage = stageOf(R"({"applications": [{"processIdentifier": 812, "front": true,
        "onKeys": [{"keyCode": 0, "flags": 1048576, "does": {"types": 1}}],
        "onCopy": {"inTurn": [{"ignores": true}, {"after": 0.5, "all": [{"copies": "a"}, {"types": 1}]}]}}]})");
    SimulatedDesktop& desktop = stage->desktop;
    const auto press = [&desktop](KeyStroke keyStroke) {
        desktop.events().postToProcess(*desktop.events().createKeyStroke(keyStroke), 812);
    };
    press({0, commandFlag});
    EXPECT_EQ(desktop.inputCounters().keyDown, 1U);
    press({8, commandFlag});
    press({8, commandFlag});
    desktop.scheduling().sleep(milliseconds(499));
    EXPECT_EQ(desktop.pasteboard().string(), std::nullopt);
    desktop.scheduling().sleep(milliseconds(1));
    EXPECT_EQ(desktop.pasteboard().string(), Text(u"a"));
    EXPECT_EQ(desktop.inputCounters().keyDown, 2U);
}

TEST(DesktopBuilding, SpendsTheLatencyOfCalls) {
    const auto stage = stageOf(R"({"latency": {"copyAttribute": 0.002, "string": 0.05}, "applications": [
        {"processIdentifier": 812, "elements": [{"name": "field"}]}]})");
    static_cast<void>(read(*stage, "field", attribute::value));
    EXPECT_EQ(stage->desktop.now(), milliseconds(2));
    EXPECT_EQ(stage->desktop.accessibility().performAction(stage->named.at("field").element(), action::press),
              AXError::actionUnsupported);
    EXPECT_EQ(stage->desktop.now(), milliseconds(2));
    static_cast<void>(stage->desktop.pasteboard().string());
    EXPECT_EQ(stage->desktop.now(), milliseconds(52));
}

TEST(DesktopBuilding, ReportsTheStateInTheFormatOfTheFile) {
    const auto stage = stageOf(R"({"pasteboard": {"items": [{"public.png": {"base64": "/wA="},
            "public.html": {"promised": "b"}}]},
        "applications": [{"processIdentifier": 812, "front": true, "elements": [
            {"name": "editor", "text": {"value": [55357, 65], "selection": [1, 1]}}, {"text": {"value": "b"}}]}]})");
    EXPECT_EQ(simulator::stateOf(*stage), Json::parse(R"({"front": 812,
        "counters": {"keyDown": 0, "leftMouseDown": 0, "rightMouseDown": 0, "otherMouseDown": 0},
        "pasteboard": [{"public.png": {"base64": "/wA="}, "public.html": {"promised": true}}],
        "texts": {"editor": {"value": [55357, 65], "selection": [1, 1]},
                  "812/2": {"value": "b", "selection": [0, 0]}}})"));
}

TEST(ElementTree, IsFilledLevelByLevel) {
    using Children = std::vector<std::vector<std::size_t>>;
    EXPECT_EQ(simulator::layOut({1, 10, std::nullopt}), (Children{{}}));
    EXPECT_EQ(simulator::layOut({4, 2, std::nullopt}), (Children{{1, 2}, {3}, {}, {}}));
    EXPECT_EQ(simulator::layOut({3, 1, std::nullopt}), (Children{{1}, {2}, {}}));
}

TEST(ElementTree, ReachesItsDepthInTheFirstBranch) {
    using Children = std::vector<std::vector<std::size_t>>;
    EXPECT_EQ(simulator::layOut({3, 10, 2}), (Children{{1}, {2}, {}}));
    EXPECT_EQ(simulator::layOut({5, 2, 2}), (Children{{1, 2}, {3, 4}, {}, {}, {}}));
    EXPECT_EQ(simulator::layOut({2, 10, 2}), std::nullopt);
    EXPECT_EQ(simulator::layOut({4, 2, 1}), std::nullopt);
}

TEST(Base64, RoundTripsAndRefusesMalformedText) {
    const std::vector<std::pair<std::string, std::string>> pairs{
        {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {std::string("\xff\x00\xfe\x3f", 4), "/wD+Pw=="}};
    for (const auto& [bytes, encoded] : pairs) {
        EXPECT_EQ(simulator::base64Of(bytes), encoded);
        EXPECT_EQ(simulator::bytesOfBase64(encoded), bytes);
    }
    for (const std::string wrong : {"Z", "Zg=", "Z===", "Zg==Zg==", "Zm 9v", "Zg=a"}) {
        EXPECT_EQ(simulator::bytesOfBase64(wrong), std::nullopt) << wrong;
    }
    // Characters past the end of the text are not read.
    for (const std::size_t length : {1U, 2U, 3U, 5U, 6U, 7U}) {
        EXPECT_EQ(simulator::bytesOfBase64(std::string_view("AAAAAAAA").substr(0, length)), std::nullopt) << length;
    }
}

}  // namespace
}  // namespace lomaris::test
