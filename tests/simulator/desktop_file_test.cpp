// What a desktop file may not say, and where it is told so.

#include "simulator/desktop_file.h"
#include "simulator/file_error.h"
#include "simulator/host_steps.h"
#include "simulator/json_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lomaris::test {
namespace {

using simulator::FileError;
using simulator::Json;
using simulator::JsonNode;
using simulator::parseJson;
using simulator::Stage;

/// The complaint about a file, empty where there is none.
std::string complaintAbout(const std::string& contents) {
    try {
        const Json file = parseJson(contents);
        static_cast<void>(simulator::readDesktop(JsonNode(file)));
        return "";
    } catch (const FileError& error) {
        return error.what();
    }
}

std::string complaintAboutSteps(const std::string& contents) {
    try {
        Stage stage;
        const Json file = parseJson(contents);
        static_cast<void>(simulator::readHostSteps(JsonNode(file), stage));
        return "";
    } catch (const FileError& error) {
        return error.what();
    }
}

/// A file with one application, whose object ends with these keys.
std::string applicationWith(const std::string& keys) {
    return R"({"applications": [{"processIdentifier": 812, )" + keys + "}]}";
}

/// The same with one element.
std::string elementWith(const std::string& keys) { return applicationWith(R"("elements": [{)" + keys + "}]"); }

struct Refusal {
    std::string contents;
    std::string complaint;
};

void expectRefusals(const std::vector<Refusal>& refusals) {
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(complaintAbout(refusal.contents), refusal.complaint) << refusal.contents;
    }
}

TEST(DesktopFile, MayBeEmptyAndMayHaveComments) {
    EXPECT_EQ(complaintAbout("{}"), "");
    EXPECT_EQ(complaintAbout("// one\n{ /* two */ \"trusted\": true // three\n}"), "");
}

TEST(DesktopFile, NamesLineAndColumnOfWhatIsNoJson) {
    for (const auto& [contents, place] : std::vector<std::pair<std::string, std::string>>{
             {"", "1:1: "},
             {"{\"trusted\": tru}", "1:16: "},
             {"{\n  \"trusted\": true,\n}", "3:1: "},
             {"{\n  \"trusted\" true\n}", "2:16: "},
             {"// \xc3\xa9\n{\"name\": \"\xc3\xa9\", x}", "2:15: "},
             {"{} {}", "1:4: "},
             {"{\n", "2:1: "},
         }) {
        EXPECT_EQ(complaintAbout(contents).substr(0, place.size()), place) << complaintAbout(contents);
        EXPECT_NE(complaintAbout(contents).find("expected JSON: syntax error"), std::string::npos)
            << complaintAbout(contents);
    }
}

TEST(DesktopFile, RefusesKeysThatStandTwice) {
    expectRefusals({
        {R"({"trusted": true, "trusted": false})", "trusted: expected each key once"},
        {R"({"applications": [{}, {"name": "a", "attributes": {"x": 1, "x": 2}}]})",
         "applications[1].attributes.x: expected each key once"},
    });
}

TEST(DesktopFile, RefusesUnknownKeys) {
    expectRefusals({
        {R"({"frobnicate": 1})",
         "frobnicate: unknown key; expected one of: trusted, promptAnswer, eventAccess, eventRequestAnswer, "
         "failingKeyStrokes, counters, latency, pasteboard, systemWide, applications, user, run"},
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

TEST(DesktopFile, RefusesValuesOfTheWrongType) {
    expectRefusals({
        {"[]", "expected an object"},
        {R"({"trusted": 1})", "trusted: expected true or false"},
        {R"({"applications": {}})", "applications: expected an array"},
        {R"({"applications": [{"name": "Notes"}]})",
         "applications[0]: expected an object with the key \"processIdentifier\""},
        {applicationWith(R"("name": 5)"), "applications[0].name: expected a string or an array of UTF-16 units"},
        {applicationWith(R"("name": [65, "B"])"), "applications[0].name[1]: expected an integer from 0 to 65535"},
        {elementWith(R"("attributes": {"AXValue": [0, 65536]})"),
         "applications[0].elements[0].attributes.AXValue[1]: expected an integer from 0 to 65535"},
        {elementWith(R"("attributes": {"AXValue": {"kind": "none"}})"),
         "applications[0].elements[0].attributes.AXValue.kind: expected \"mixedArray\", \"otherBoxed\" or \"other\""},
        {elementWith(R"("attributes": {"AXValue": {"inTurn": []}})"),
         "applications[0].elements[0].attributes.AXValue.inTurn: expected at least one answer"},
        {elementWith(R"("attributes": {"AXValue": {"error": "fine"}})"),
         "applications[0].elements[0].attributes.AXValue.error: expected a number or one of: success, failure, "
         "illegalArgument, invalidUIElement, cannotComplete, attributeUnsupported, actionUnsupported, notImplemented, "
         "apiDisabled, noValue"},
        {R"({"pasteboard": {"items": [{"public.png": {"base64": "iVBORw"}}]}})",
         "pasteboard.items[0].public.png.base64: expected Base64 with its padding"},
        {R"({"pasteboard": {"items": [{"public.png": 5}]}})", "pasteboard.items[0].public.png: expected an object"},
    });
}

TEST(DesktopFile, RefusesWhatIsOutOfRange) {
    expectRefusals({
        {R"({"counters": {"keyDown": 4294967296}})", "counters.keyDown: expected an integer from 0 to 4294967295"},
        {R"({"counters": {"keyDown": 18446744073709551615}})",
         "counters.keyDown: expected an integer from 0 to 4294967295"},
        {R"({"latency": -0.1})", "latency: expected a number of seconds from 0 to 1000000"},
        {R"({"latency": {"sleep": 1}})",
         "latency.sleep: unknown key; expected one of: copyAttribute, copyElementAttribute, copyAttributes, "
         "setAttribute, isAttributeSettable, areAttributesSettable, performAction"},
        {R"({"applications": [{"processIdentifier": 0}]})",
         "applications[0].processIdentifier: expected an integer from 1 to 2147483647"},
        {R"({"pasteboard": {"refusedWrites": [0]}})",
         "pasteboard.refusedWrites[0]: expected an integer from 1 to 1000000000"},
        {elementWith(R"("text": {"value": "four", "selection": [2, 3]})"),
         "applications[0].elements[0].text.selection: expected a range inside of the text, which has 4 units"},
        {elementWith(R"("generate": {"elements": 12, "branching": 10, "depth": 1})"),
         "applications[0].elements[0].generate: expected a depth and a branching that make room for exactly so many "
         "elements"},
        {elementWith(R"("generate": {"elements": 3, "members": [{"at": 3}]})"),
         "applications[0].elements[0].generate.members[0].at: expected an integer from 1 to 2"},
        {R"({"user": [{"beforeCall": 0, "do": {"types": 1}}]})",
         "user[0].beforeCall: expected an integer from 1 to 1000000000"},
    });
}

TEST(DesktopFile, RefusesWhatContradictsItself) {
    expectRefusals({
        {R"({"applications": [{"processIdentifier": 812}, {"processIdentifier": 812}]})",
         "applications[1].processIdentifier: expected a process identifier that no other application has"},
        {R"({"applications": [{"processIdentifier": 1, "front": true}, {"processIdentifier": 2, "front": true}]})",
         "applications[1].front: expected at most one application in front"},
        {applicationWith(R"("elements": [{"name": "a"}, {"name": "a"}])"),
         "applications[0].elements[1].name: expected a name that no other element has"},
        {elementWith(R"("name": "systemWide")"),
         "applications[0].elements[0].name: expected a name that no other element has"},
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

TEST(DesktopFile, RefusesActionsThatAreNone) {
    const std::string verbs =
        "expected an object with exactly one of the keys ignores, all, copies, copiesItems, copiesSelectionOf, "
        "pastesInto, deletesSelectionOf, reads, types, clicks, setsCounters, selects, rewrites, scripts, "
        "bringsToFront, quits, hangs, refusesWrites, failsKeyStrokes, setsTrusted, setsEventAccess, endsTheTool";
    expectRefusals({
        {applicationWith(R"("onCopy": {})"), "applications[0].onCopy: " + verbs},
        {applicationWith(R"("onCopy": {"copies": "a", "types": 1})"), "applications[0].onCopy: " + verbs},
        {applicationWith(R"("onCopy": {"cuts": "a"})"), "applications[0].onCopy: " + verbs},
        {applicationWith(R"("onCopy": {"inTurn": []})"),
         "applications[0].onCopy.inTurn: expected at least one reaction"},
        {R"({"user": [{"at": 1, "do": {"types": 1, "after": 1}}]})", "user[0].do: " + verbs},
        {R"({"user": [{"at": 1, "do": {"clicks": "middle"}}]})",
         "user[0].do.clicks: expected \"left\", \"right\" or \"other\""},
        {R"({"user": [{"at": 1, "do": [{"types": 1}, {"setsCounters": {"keyDown": -1}}]}]})",
         "user[0].do[1].setsCounters.keyDown: expected an integer from 0 to 4294967295"},
    });
}

TEST(HostSteps, AreRefusedBeforeAnyIsTaken) {
    const std::vector<Refusal> refusals{
        {"{}", "expected an array"},
        {R"([{"capture": "selection"}, {"wait": 1}])",
         "[1]: expected an object with one of the keys look, capture, markSubmitted, replaceIfCurrent, drop, "
         "permission, traces, runMainQueue, user"},
        {R"([{"capture": "all"}])", "[0].capture: expected \"selection\" or \"selectionOrChat\""},
        {R"([{"capture": "selection", "limit": 1}])",
         "[0].limit: unknown key; expected one of: capture, as, beforeLimit, afterLimit, fallback"},
        {R"([{"markSubmitted": "session"}])",
         "[0].markSubmitted: expected the name of a session that an earlier step captures"},
        {R"([{"capture": "selection", "as": "a"}, {"replaceIfCurrent": "a"}])",
         "[1]: expected an object with the key \"with\""},
        {R"([{"traces": "erase"}])", "[0].traces: expected \"snapshot\" or \"reset\""},
        {R"([{"permission": "grant"}])", "[0].permission: expected \"check\" or \"ask\""},
        {R"([{"runMainQueue": "long"}])", "[0].runMainQueue: expected a number of seconds from 0 to 1000000"},
    };
    for (const Refusal& refusal : refusals) {
        EXPECT_EQ(complaintAboutSteps(refusal.contents), refusal.complaint) << refusal.contents;
    }
}

}  // namespace
}  // namespace lomaris::test
