#include "simulator/host_steps.h"

#include "accessibility/model/bridge_error.h"
#include "accessibility/model/capture_trace.h"
#include "accessibility/model/guard_trace.h"
#include "simulator/action_reader.h"
#include "simulator/host.h"
#include "simulator/json_text.h"
#include "simulator/report.h"
#include "simulator/service_steps.h"
#include "simulator/session_steps.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>

namespace lomaris::simulator {
namespace {

/// Returns the result of the step, or the error of the library as its result.
Json outcomeOf(const HostAct& act, Host& host) {
    try {
        return act(host);
    } catch (const BridgeError& error) {
        return {{"error", error.what()}, {"message", jsonOf(error.errorDescription())}};
    }
}

HostAct readUser(const JsonNode& node, Stage& stage) {
    node.allowKeys({"user"});
    return [action = readAction(node.get("user"), stage)](Host& host) {
        host.stage.desktop.perform(action);
        return Json("done");
    };
}

HostAct readRunMainQueue(const JsonNode& node) {
    node.allowKeys({"runMainQueue"});
    return [duration = node.get("runMainQueue").seconds()](Host& host) {
        host.stage.desktop.scheduling().runLoopSlice(duration);
        return Json("ran");
    };
}

HostAct readWaits(const JsonNode& node) {
    node.allowKeys({"waits"});
    return [duration = node.get("waits").seconds()](Host& host) {
        host.stage.desktop.scheduling().sleep(duration);
        return Json("waited");
    };
}

HostAct readTraces(const JsonNode& node) {
    node.allowKeys({"traces"});
    if (node.get("traces").choice({"snapshot", "reset"}) == "snapshot") {
        return [](Host&) { return tracesAsJson(); };
    }
    return [](Host&) {
        SelectionCaptureTrace::shared().reset();
        ReplacementGuardTrace::shared().reset();
        return Json("reset");
    };
}

HostAct readLook(const JsonNode& node) {
    node.allowKeys({"look"});
    if (!node.get("look").boolean()) {
        node.get("look").refuse("true");
    }
    return [](Host& host) { return stateOf(host.stage); };
}

struct Context {
    Stage& stage;
    SessionSteps sessions;
};

struct Verb {
    std::string_view name;
    HostAct (*read)(const JsonNode& node, Context& context);
};

constexpr std::array<Verb, 14> verbs{{
    {"capture", [](const JsonNode& node, Context& context) { return context.sessions.readCapture(node); }},
    {"markSubmitted", [](const JsonNode& node, Context& context) { return context.sessions.readMarkSubmitted(node); }},
    {"replaceIfCurrent",
     [](const JsonNode& node, Context& context) { return context.sessions.readReplaceIfCurrent(node); }},
    {"drop", [](const JsonNode& node, Context& context) { return context.sessions.readDrop(node); }},
    {"read", [](const JsonNode& node, Context&) { return readReadStep(node); }},
    {"replace", [](const JsonNode& node, Context&) { return readReplaceStep(node); }},
    {"replaceByRequest", [](const JsonNode& node, Context&) { return readReplaceByRequestStep(node); }},
    {"diagnose", [](const JsonNode& node, Context&) { return readDiagnoseStep(node); }},
    {"permission", [](const JsonNode& node, Context&) { return readPermissionStep(node); }},
    {"runMainQueue", [](const JsonNode& node, Context&) { return readRunMainQueue(node); }},
    {"waits", [](const JsonNode& node, Context&) { return readWaits(node); }},
    {"user", [](const JsonNode& node, Context& context) { return readUser(node, context.stage); }},
    {"traces", [](const JsonNode& node, Context&) { return readTraces(node); }},
    {"look", [](const JsonNode& node, Context&) { return readLook(node); }},
}};

/// Returns the verb of a step. Exactly one of its keys must be a verb.
const Verb& verbOf(const JsonNode& node) {
    const auto stands = [&node](const Verb& verb) {
        return node.value().is_object() && node.find(verb.name).has_value();
    };
    if (std::count_if(verbs.begin(), verbs.end(), stands) != 1) {
        std::vector<std::string_view> names;
        for (const Verb& verb : verbs) {
            names.push_back(verb.name);
        }
        node.refuse("an object with exactly one of the keys " + listOf(names));
    }
    return *std::find_if(verbs.begin(), verbs.end(), stands);
}

}  // namespace

std::vector<HostStep> readHostSteps(const JsonNode& file, Stage& stage) {
    const auto host = std::make_shared<Host>(stage);
    Context context{stage, {}};
    std::vector<HostStep> steps;
    for (const JsonNode& node : file.members()) {
        const Verb& verb = verbOf(node);
        const HostAct act = verb.read(node, context);
        steps.emplace_back([host, act, name = verb.name, number = steps.size() + 1] {
            Json line{{"step", number}, {std::string(name), outcomeOf(act, *host)}};
            if (host->stage.desktop.endedBySignal()) {
                // Throws `SimulatedTermination` if the process ended during the step, so that the step writes no line.
                static_cast<void>(host->stage.desktop.admitsOutput());
            }
            line["virtualSeconds"] = jsonOf(host->stage.desktop.now());
            return line;
        });
    }
    return steps;
}

bool takeSteps(const std::vector<HostStep>& steps, StandardStreams& streams) {
    for (const HostStep& step : steps) {
        if (!streams.writeOutput(written(step()) + "\n")) {
            return false;
        }
    }
    return true;
}

}  // namespace lomaris::simulator
