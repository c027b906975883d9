#include "simulator/report.h"

#include "accessibility/model/capture_trace.h"
#include "accessibility/model/guard_trace.h"
#include "simulator/json_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace lomaris::simulator {
namespace {

template <typename Trace>
Json entriesOf(const Trace& trace) {
    Json entries = Json::object();
    for (const auto& [name, value] : trace.snapshot()) {
        entries[std::string(name)] = value;
    }
    return entries;
}

/// Returns the name of the element in the file, or its name in the journal if it has none.
std::string nameOf(const Stage& stage, const std::string& journalName) {
    const auto found = stage.namesByJournal.find(journalName);
    return found == stage.namesByJournal.end() ? journalName : found->second;
}

Json pasteboardOf(const SimulatedDesktop& desktop) {
    Json items = Json::array();
    for (const StandingItem& item : desktop.pasteboardContents()) {
        Json types = Json::object();
        for (const auto& [type, bytes] : item.data) {
            types[type] = jsonOfBytes(bytes);
        }
        for (const PasteboardType& type : item.promised) {
            types[type] = {{"promised", true}};
        }
        items.push_back(types);
    }
    return items;
}

/// Returns the call of a journal line, without its time and thread.
std::string_view callOf(std::string_view line) {
    line.remove_prefix(line.find(' ') + 1);
    if (line.starts_with('[')) {
        line.remove_prefix(line.find("] ") + 2);
    }
    return line;
}

/// True if a call changes something outside this process, prompts the user, or sleeps.
bool hasEffect(std::string_view call) {
    constexpr std::array<std::string_view, 10> starts{
        "setAttribute(", "performAction(", "postToSession(", "postToProcess(",         "clearContents(",
        "writeItems(",   "sleep(",         "runOnMainQueue", "requestPostEventAccess", "isProcessTrusted(ask"};
    return std::any_of(starts.begin(), starts.end(),
                       [call](std::string_view start) { return call.starts_with(start); });
}

Json effectsOf(const SimulatedDesktop& desktop) {
    Json effects = Json::array();
    for (const std::string& line : desktop.journal()) {
        if (hasEffect(callOf(line))) {
            effects.push_back(line);
        }
    }
    return effects;
}

Json raisedOf(const Stage& stage) {
    constexpr std::string_view start = "performAction(";
    constexpr std::string_view end = ", AXRaise) -> success";
    Json raised = Json::array();
    for (const std::string& line : stage.desktop.journal()) {
        const std::string_view call = callOf(line);
        if (call.starts_with(start) && call.ends_with(end)) {
            raised.push_back(
                nameOf(stage, std::string(call.substr(start.size(), call.size() - start.size() - end.size()))));
        }
    }
    return raised;
}

Json keyStrokesOf(const SimulatedDesktop& desktop) {
    Json strokes = Json::array();
    for (const PostedKeyStroke& posted : desktop.postedKeyStrokes()) {
        Json stroke{{"at", jsonOf(posted.moment)},
                    {"keyCode", posted.keyStroke.keyCode},
                    {"flags", posted.keyStroke.flags},
                    {"to", "session"}};
        if (posted.processIdentifier) {
            stroke["to"] = *posted.processIdentifier;
        }
        strokes.push_back(stroke);
    }
    return strokes;
}

}  // namespace

Json tracesAsJson() {
    return {{"capture", entriesOf(SelectionCaptureTrace::shared())},
            {"guard", entriesOf(ReplacementGuardTrace::shared())}};
}

Json stateOf(const Stage& stage) {
    Json state = Json::object();
    const auto front = stage.desktop.front();
    state["front"] = front ? Json(*front) : Json(nullptr);
    const InputCounters counters = stage.desktop.inputCounters();
    state["counters"] = {{"keyDown", counters.keyDown},
                         {"leftMouseDown", counters.leftMouseDown},
                         {"rightMouseDown", counters.rightMouseDown},
                         {"otherMouseDown", counters.otherMouseDown}};
    state["pasteboard"] = pasteboardOf(stage.desktop);
    Json texts = Json::object();
    for (const SimulatedTextElement& element : stage.texts) {
        const TextRange selection = element.selection();
        texts[nameOf(stage, journalNameOf(element))] = {{"value", jsonOf(element.text())},
                                                        {"selection", {selection.location, selection.length}}};
    }
    state["texts"] = std::move(texts);
    return state;
}

Json reportOf(const RunOutcome& outcome, const Stage& stage) {
    Json report = Json::object();
    report["status"] = outcome.status;
    report["virtualSeconds"] = jsonOf(outcome.virtualTime);
    report["traces"] = tracesAsJson();
    report["raised"] = raisedOf(stage);
    report["keyStrokes"] = keyStrokesOf(stage.desktop);
    report["effects"] = effectsOf(stage.desktop);
    report["whenDone"] = outcome.whenDone;
    report["afterEnd"] = stateOf(stage);
    report["journal"] = stage.desktop.journal();
    report["real"] = {{"seconds", jsonOf(Duration(outcome.realTime))}};
    return report;
}

}  // namespace lomaris::simulator
