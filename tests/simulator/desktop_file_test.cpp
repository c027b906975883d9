// Errors in desktop files, and the places that the messages name.

#include "simulator/desktop_file.h"
#include "simulator/file_error.h"
#include "simulator/json_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

using simulator::FileError;
using simulator::Json;
using simulator::JsonNode;
using simulator::parseJson;

/// Returns the error message for a file. Empty if there is none.
std::string errorFor(const std::string& contents) {
    try {
        const Json file = parseJson(contents);
        static_cast<void>(simulator::readDesktop(JsonNode(file)));
        return "";
    } catch (const FileError& error) {
        return error.what();
    }
}

/// Returns a file with one application, whose object ends with these keys.
std::string applicationWith(const std::string& keys) {
    return R"({"applications": [{"processIdentifier": 812, )" + keys + "}]}";
}

/// Returns a file with one application that has one element with these keys.
std::string elementWith(const std::string& keys) { return applicationWith(R"("elements": [{)" + keys + "}]"); }

struct Refusal {
    std::string contents;
    std::string message;
};

void expectRefusals(const std::vector<Refusal>& refusals) {
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(errorFor(refusal.contents), refusal.message) << refusal.contents;
    }
}

TEST(DesktopFile, MayBeEmptyAndMayHaveComments) {
    EXPECT_EQ(errorFor("{}"), "");
    EXPECT_EQ(errorFor("// one\n{ /* two */ \"trusted\": true // three\n}"), "");
}

TEST(DesktopFile, NamesLineAndColumnOfSyntaxErrors) {
    for (const auto& [contents, place] : std::vector<std::pair<std::string, std::string>>{
             {"", "1:1: "},
             {"{\"trusted\": tru}", "1:16: "},
             {"{\n  \"trusted\": true,\n}", "3:1: "},
             {"{\n  \"trusted\" true\n}", "2:16: "},
             {"// \xc3\xa9\n{\"name\": \"\xc3\xa9\", x}", "2:15: "},
             {"{} {}", "1:4: "},
             {"{\n", "2:1: "},
         }) {
        EXPECT_EQ(errorFor(contents).substr(0, place.size()), place) << errorFor(contents);
        EXPECT_NE(errorFor(contents).find("expected JSON: syntax error"), std::string::npos) << errorFor(contents);
    }
}

TEST(DesktopFile, RefusesDuplicateKeys) {
    expectRefusals({
        {R"({"trusted": true, "trusted": false})", "trusted: expected each key once"},
        {R"({"applications": [{}, {"name": "a", "attributes": {"x": 1, "x": 2}}]})",
         "applications[1].attributes.x: expected each key once"},
    });
}

TEST(DesktopFile, RefusesUnknownKeys) {
    expectRefusals({
        {R"({"frobnicate": 1})",
         "frobnicate: unknown key; expected one of: trusted, promptAnswer, language, eventAccess, "
         "eventRequestAnswer, failingKeyStrokes, counters, latency, pasteboard, systemWide, applications, user, run"},
        {R"({"counters": {"keys": 1}})",
         "counters.keys: unknown key; expected one of: keyDown, leftMouseDown, rightMouseDown, otherMouseDown"},
        {elementWith(R"("role": "AXTextArea")"),
         "applications[0].elements[0].role: unknown key; expected one of: name, text, children, generate, attributes, "
         "settable, set, actions, processIdentifierFails"},
        {elementWith(R"("attributes": {"AXValue": {"rnage": [0, 1]}})"),
         "applications[0].elements[0].attributes.AXValue.rnage: unknown key; expected one of: element, application, "
         "elements, range, kind, error, inTurn"},
    });
}

TEST(DesktopFile, RefusesUnknownKeysInEveryObject) {
    const std::vector<std::pair<std::string, std::string>> files{
        {applicationWith(R"("unknown": 1)"), "applications[0]"},
        {elementWith(R"("text": {"value": "a", "unknown": 1})"), "applications[0].elements[0].text"},
        {elementWith(R"("generate": {"elements": 1, "unknown": 1})"), "applications[0].elements[0].generate"},
        {elementWith(R"("generate": {"elements": 1, "every": {"unknown": 1}})"),
         "applications[0].elements[0].generate.every"},
        {elementWith(R"("generate": {"elements": 1, "members": [{"at": 0, "unknown": 1}]})"),
         "applications[0].elements[0].generate.members[0]"},
        {elementWith(R"("settable": {"AXValue": {"error": "failure", "unknown": 1}})"),
         "applications[0].elements[0].settable.AXValue"},
        {elementWith(R"("set": {"AXValue": {"unknown": 1}})"), "applications[0].elements[0].set.AXValue"},
        {elementWith(R"("actions": {"AXPress": {"unknown": 1}})"), "applications[0].elements[0].actions.AXPress"},
        {applicationWith(R"("menuBar": [{"title": "Edit", "items": [], "unknown": 1}])"), "applications[0].menuBar[0]"},
        {applicationWith(R"("menuBar": [{"title": "Edit", "items": [{"title": "Copy", "unknown": 1}]}])"),
         "applications[0].menuBar[0].items[0]"},
        {R"({"pasteboard": {"unknown": 1}})", "pasteboard"},
        {R"({"systemWide": {"unknown": 1}})", "systemWide"},
        {R"({"user": [{"at": 0, "do": "type", "unknown": 1}]})", "user[0]"},
    };
    for (const auto& [file, place] : files) {
        const std::string expected = place + ".unknown: unknown key; expected one of: ";
        EXPECT_EQ(errorFor(file).substr(0, expected.size()), expected) << errorFor(file);
    }
}

TEST(DesktopFile, RefusesValuesOfTheWrongType) {
    expectRefusals({
        {"[]", "expected an object"},
        {R"({"trusted": 1})", "trusted: expected true or false"},
        {R"({"applications": {}})", "applications: expected an array"},
        {R"({"applications": [{"name": "Notes"}]})",
         "applications[0]: expected an object with the key \"processIdentifier\""},
        {applicationWith(R"("name": 5)"), "applications[0].name: expected a string, an array of UTF-16 units or null"},
        {applicationWith(R"("name": [65, "B"])"), "applications[0].name[1]: expected an integer from 0 to 65535"},
        {elementWith(R"("attributes": {"AXValue": [0, 65536]})"),
         "applications[0].elements[0].attributes.AXValue[1]: expected an integer from 0 to 65535"},
        {elementWith(R"("attributes": {"AXValue": {"kind": "none"}})"),
         "applications[0].elements[0].attributes.AXValue.kind: expected \"mixedArray\", \"otherBoxed\" or \"other\""},
        {elementWith(R"("attributes": {"AXValue": {"inTurn": []}})"),
         "applications[0].elements[0].attributes.AXValue.inTurn: expected at least one answer"},
        {elementWith(R"("attributes": {"AXValue": {"error": "fine"}})"),
         "applications[0].elements[0].attributes.AXValue.error: expected an integer of 32 bits or one of: success, "
         "failure, illegalArgument, invalidUIElement, cannotComplete, attributeUnsupported, actionUnsupported, "
         "notImplemented, apiDisabled, noValue"},
        {R"({"pasteboard": {"items": [{"public.png": {"base64": "iVBORw"}}]}})",
         "pasteboard.items[0].public.png.base64: expected Base64 with its padding"},
    });
}

TEST(DesktopFile, RefusesValuesOutOfRange) {
    expectRefusals({
        {R"({"counters": {"keyDown": 4294967296}})", "counters.keyDown: expected an integer from 0 to 4294967295"},
        {R"({"counters": {"keyDown": 18446744073709551615}})",
         "counters.keyDown: expected an integer from 0 to 4294967295"},
        {R"({"latency": -0.1})", "latency: expected a number of seconds from 0 to 1000000"},
        {R"({"latency": {"sleep": 1}})",
         "latency.sleep: unknown key; expected one of: isProcessTrusted, applicationElement, systemWideElement, "
         "copyAttribute, copyElementAttribute, copyAttributes, setAttribute, isAttributeSettable, "
         "areAttributesSettable, performAction, processIdentifier, containsIgnoringCase, frontmostApplication, "
         "runningApplication, items, types, data, string, changeCount, clearContents, writeItems, inputCounter, "
         "createKeyStroke, postToSession, postToProcess, preflightPostEventAccess, requestPostEventAccess"},
        {R"({"applications": [{"processIdentifier": 0}]})",
         "applications[0].processIdentifier: expected an integer from 1 to 2147483647"},
        {R"({"pasteboard": {"refusedWrites": [0]}})",
         "pasteboard.refusedWrites[0]: expected an integer from 1 to 1000000000"},
        {elementWith(R"("text": {"value": "four", "selection": [2, 3]})"),
         "applications[0].elements[0].text.selection: expected a range inside of the text, which has 4 units"},
        {elementWith(R"("generate": {"elements": 12, "branching": 10, "depth": 1})"),
         "applications[0].elements[0].generate: expected at most 11 elements at depth 1 with branching 10; change "
         "elements, depth or branching"},
        {elementWith(R"("generate": {"elements": 5, "depth": 5})"),
         "applications[0].elements[0].generate: expected at least 6 elements at depth 5; change elements or depth"},
        {elementWith(R"("generate": {"elements": 1, "members": [{"at": 1}]})"),
         "applications[0].elements[0].generate.members[0].at: expected a tree with more elements than its top"},
        {elementWith(R"("generate": {"elements": 3, "members": [{"at": 3}]})"),
         "applications[0].elements[0].generate.members[0].at: expected an integer from 1 to 2"},
        {R"({"user": [{"beforeCall": 0, "do": {"types": 1}}]})",
         "user[0].beforeCall: expected an integer from 1 to 1000000000"},
    });
}

TEST(DesktopFile, RefusesTreesWithoutElementsOrBranches) {
    for (const std::string key : {"elements", "branching"}) {
        const std::string file = elementWith(R"("generate": {"depth": 0, ")" + key + R"(": 0})");
        const std::string expected = "applications[0].elements[0].generate." + key + ": expected an integer from 1 to ";
        EXPECT_EQ(errorFor(file).substr(0, expected.size()), expected);
    }
}

TEST(DesktopFile, RefusesContradictions) {
    expectRefusals({
        {R"({"applications": [{"processIdentifier": 812}, {"processIdentifier": 812}]})",
         "applications[1].processIdentifier: expected a process identifier that no other application has"},
        {R"({"applications": [{"processIdentifier": 1, "front": true}, {"processIdentifier": 2, "front": true}]})",
         "applications[1].front: expected at most one application in front"},
        {applicationWith(R"("elements": [{"name": "a"}, {"name": "a"}])"),
         "applications[0].elements[1].name: expected a name that no other element has"},
        {elementWith(R"("name": "systemWide")"),
         "applications[0].elements[0].name: expected a name other than \"systemWide\", which is that of the "
         "system-wide element"},
        {elementWith(R"("generate": {"elements": 3, "members": [{"at": 2}, {"at": 1}, {"at": 2}]})"),
         "applications[0].elements[0].generate.members[2].at: expected a position that no other member has"},
        {applicationWith(R"("runs": false, "front": true)"),
         "applications[0].front: expected an application in front that runs from the beginning"},
        {elementWith(R"("children": [], "generate": {})"),
         "applications[0].elements[0].generate: expected \"children\" or \"generate\", not both"},
        {applicationWith(R"("attributes": {"AXFocusedUIElement": {"element": "editor"}})"),
         "applications[0].attributes.AXFocusedUIElement.element: expected the name of an element of this file"},
        {applicationWith(R"("elements": [{"name": "button"}], "onPaste": {"pastesInto": "button"})"),
         "applications[0].onPaste.pastesInto: expected the name of an element with the key \"text\""},
        {R"({"user": [{"at": 1, "beforeCall": 1, "do": {"types": 1}}]})",
         "user[0]: expected either \"at\" or \"beforeCall\""},
    });
}

TEST(DesktopFile, NamesEveryAcceptedFormOfAValue) {
    const std::string attribute = "applications[0].elements[0].attributes.AXValue";
    const std::string codes =
        "expected an integer of 32 bits or one of: success, failure, illegalArgument, invalidUIElement, "
        "cannotComplete, attributeUnsupported, actionUnsupported, notImplemented, apiDisabled, noValue";
    expectRefusals({
        {R"({"pasteboard": {"items": [{"a": 5}]}})",
         "pasteboard.items[0].a: expected a string or an object with exactly one of the keys text, base64, promised"},
        {R"({"pasteboard": {"items": [{"a": {"promised": 5}}]}})",
         "pasteboard.items[0].a.promised: expected null, a string or an object with exactly one of the keys text, "
         "base64"},
        {elementWith(R"("attributes": {"AXValue": {}})"),
         attribute + ": expected an object with exactly one of the keys element, application, elements, range, kind, "
                     "error, inTurn"},
        {elementWith(R"("attributes": {"AXValue": {"error": 1, "inTurn": [1]}})"),
         attribute + ": expected an object with exactly one of the keys element, application, elements, range, kind, "
                     "error, inTurn"},
        {elementWith(R"("attributes": {"AXValue": {"inTurn": [{}]}})"),
         attribute + ".inTurn[0]: expected an object with exactly one of the keys element, application, elements, "
                     "range, kind, error"},
        {elementWith(R"("attributes": {"AXValue": {"inTurn": [1, {"inTurn": [1]}]}})"),
         attribute + ".inTurn[1]: expected an answer that is not \"inTurn\" again"},
        {elementWith(R"("attributes": {"AXValue": {"range": ["nowhere", 0]}})"),
         attribute + ".range[0]: expected an integer of 64 bits or \"notFound\""},
        {elementWith(R"("settable": {"AXValue": "yes"})"),
         "applications[0].elements[0].settable.AXValue: expected true, false or {\"error\": code}"},
        {elementWith(R"("set": {"AXValue": 2147483648})"),
         "applications[0].elements[0].set.AXValue: expected an integer from -2147483648 to 2147483647"},
        {elementWith(R"("set": {"AXValue": "fine"})"), "applications[0].elements[0].set.AXValue: " + codes},
        {elementWith(R"("set": {"AXValue": true})"), "applications[0].elements[0].set.AXValue: " + codes +
                                                         "; or an object with some of the keys answers, writes, does"},
        {elementWith(R"("generate": {})"),
         "applications[0].elements[0].generate: expected an object with the key \"elements\" or \"depth\", or both"},
        {applicationWith(R"("menuBar": [{"title": "Edit", "items": [{"title": "Copy", "enabled": 1}]}])"),
         "applications[0].menuBar[0].items[0].enabled: expected true, false or null"},
        {R"({"latency": "long"})", "latency: expected a number of seconds, or an object of calls and seconds"},
    });
}

TEST(DesktopFile, RefusesTypesWithoutAName) {
    expectRefusals({
        {R"({"pasteboard": {"items": [{"": "a"}]}})",
         "pasteboard.items[0]: expected types with names that are not empty"},
        {R"({"user": [{"at": 0, "do": {"reads": ""}}]})",
         "user[0].do.reads: expected the name of a type, which is not empty"},
    });
}

TEST(DesktopFile, RefusesUnknownApplications) {
    const std::string expected = "expected the process identifier of an application of this file";
    expectRefusals({
        {applicationWith(R"("attributes": {"AXParent": {"application": 9}})"),
         "applications[0].attributes.AXParent.application: " + expected},
        {applicationWith(R"("onCopy": {"quits": 9})"), "applications[0].onCopy.quits: " + expected},
        {applicationWith(R"("onCopy": {"hangs": 9})"), "applications[0].onCopy.hangs: " + expected},
        {applicationWith(R"("onCopy": {"recovers": "Notes"})"), "applications[0].onCopy.recovers: " + expected},
        {applicationWith(R"("onCopy": {"starts": 812})"),
         "applications[0].onCopy.starts: expected the process identifier of an application with \"runs\": false"},
        {applicationWith(R"("onCopy": {"bringsToFront": 9})"),
         "applications[0].onCopy.bringsToFront: expected null or the process identifier of an application of this "
         "file"},
        {applicationWith(R"("onCopy": {"scripts": {"element": {"application": 9}}})"),
         "applications[0].onCopy.scripts.element.application: " + expected},
        {applicationWith(R"("onCopy": {"scripts": {"element": "editor"}})"),
         "applications[0].onCopy.scripts.element: expected the name of an element of this file or {\"application\": "
         "process identifier}"},
    });
}

TEST(DesktopFile, AcceptsNamesOfLaterElements) {
    EXPECT_EQ(errorFor(R"({"applications": [
        {"processIdentifier": 1, "menuBar": [{"title": "Edit", "items": [
            {"title": "Copy", "modifiers": {"application": 2}}, {"title": "Cut", "modifiers": {"element": "last"}}]}]},
        {"processIdentifier": 2, "elements": [{"name": "last"}]}]})"),
              "");
}

TEST(DesktopFile, NamesThePlaceOfANumberThatIsTooLarge) {
    expectRefusals({
        {R"({"latency": 1e400})", "latency: expected a number from -1.79e308 to 1.79e308"},
        {R"({"applications": [{"processIdentifier": 1}, {"processIdentifier": -1e999}]})",
         "applications[1].processIdentifier: expected a number from -1.79e308 to 1.79e308"},
        {R"({"pasteboard": {"refusedWrites": [1, 1e400]}})",
         "pasteboard.refusedWrites[1]: expected a number from -1.79e308 to 1.79e308"},
        {"1e400", "expected a number from -1.79e308 to 1.79e308"},
    });
}

TEST(DesktopFile, RefusesNestingBeyondItsLimit) {
    const auto nested = [](std::size_t levels) { return std::string(levels, '[') + std::string(levels, ']'); };
    EXPECT_EQ(errorFor(R"({"user": [{"at": 0, "do": )" + nested(497) + "}]}"), "");
    const std::string message = errorFor(R"({"user": [{"at": 0, "do": )" + nested(100'000) + "}]}");
    EXPECT_EQ(message.substr(0, 15), "user[0].do[0][0");
    EXPECT_EQ(message.substr(message.find(": ")), ": expected at most 500 levels of arrays and objects");
}

TEST(DesktopFile, RefusesMalformedActions) {
    const std::string verbs =
        "an array of actions, or an object with exactly one of the keys ignores, all, copies, copiesItems, "
        "copiesSelectionOf, pastesInto, deletesSelectionOf, reads, holdsPasteboard, types, clicks, setsCounters, "
        "selects, rewrites, scripts, bringsToFront, starts, quits, hangs, recovers, refusesWrites, failsKeyStrokes, "
        "setsTrusted, setsEventAccess, endsTheTool, killsTheTool, beside which \"after\" may stand";
    const std::string action = "expected " + verbs;
    const std::string reaction = "applications[0].onCopy: expected {\"inTurn\": [reactions]}, " + verbs;
    expectRefusals({
        {applicationWith(R"("onCopy": {})"), reaction},
        {applicationWith(R"("onCopy": "a")"), reaction},
        {applicationWith(R"("onCopy": {"after": 1})"), reaction},
        {applicationWith(R"("onCopy": {"copies": "a", "types": 1})"), reaction},
        {applicationWith(R"("onCopy": {"cuts": "a"})"), reaction},
        {applicationWith(R"("onCopy": {"inTurn": []})"),
         "applications[0].onCopy.inTurn: expected at least one reaction"},
        {applicationWith(R"("onCopy": {"inTurn": [{"types": 1}], "after": 1})"),
         "applications[0].onCopy: expected \"inTurn\" alone; \"after\" may stand in each of its reactions"},
        {applicationWith(R"("onCopy": [{"inTurn": [{"types": 1}]}])"),
         "applications[0].onCopy[0]: expected no \"inTurn\" here, which stands alone and is a whole reaction"},
        {R"({"user": [{"at": 1, "do": {"after": 1}}]})", "user[0].do: " + action},
        {R"({"user": [{"at": 1, "do": {"clicks": "middle"}}]})",
         "user[0].do.clicks: expected \"left\", \"right\" or \"other\""},
        {R"({"user": [{"at": 1, "do": {"holdsPasteboard": "long"}}]})",
         "user[0].do.holdsPasteboard: expected \"forever\" or a number of seconds"},
        {R"({"user": [{"at": 1, "do": {"killsTheTool": 9}}]})", "user[0].do.killsTheTool: expected true or false"},
        {R"({"user": [{"at": 1, "do": {"killsTheTool": false}}]})", "user[0].do.killsTheTool: expected true"},
        {R"({"pasteboard": {"heldUntil": true}})", "pasteboard.heldUntil: expected \"forever\" or a number of seconds"},
        {R"({"user": [{"at": 1, "do": [{"types": 1}, {"setsCounters": {"keyDown": -1}}]}]})",
         "user[0].do[1].setsCounters.keyDown: expected an integer from 0 to 4294967295"},
    });
}

TEST(DesktopFile, AcceptsOnlySignalsThatTerminateAndCanBeCaught) {
    const auto errorForSignal = [](const std::string& number) {
        return errorFor(R"({"user": [{"at": 1, "do": {"endsTheTool": )" + number + "}}]}");
    };
    for (const int number : {1, 2, 8, 10, 13, 15, 24, 27, 30, 31}) {
        EXPECT_EQ(errorForSignal(std::to_string(number)), "") << number;
    }
    for (const char* wrong : {"-1", "0", "9", "16", "17", "19", "23", "28", "29", "32", "64", "15.0", "\"TERM\""}) {
        EXPECT_EQ(errorForSignal(wrong),
                  "user[0].do.endsTheTool: expected a signal that ends a process and can be caught: 1 to 8, 10 to 15, "
                  "24 to 27, 30 or 31")
            << wrong;
    }
}

}  // namespace
}  // namespace lomaris::test
