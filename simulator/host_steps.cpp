#include "simulator/host_steps.h"

#include "accessibility/model/bridge_error.h"
#include "accessibility/model/capture_trace.h"
#include "accessibility/model/guard_trace.h"
#include "accessibility/service/accessibility_service.h"
#include "simulator/action_reader.h"
#include "simulator/json_text.h"
#include "simulator/report.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace lomaris::simulator {
namespace {

/// The host: a service and the sessions that it captured, by name.
struct Host {
    explicit Host(Stage& where) : stage(where), service(where.desktop) {}

    Stage& stage;
    LomarisAccessibilityService service;
    std::map<std::string, std::unique_ptr<AppSelectionSession>> sessions;
};

using Act = std::function<Json(Host& host)>;

/// What the act answers, or the error of the library.
Json outcomeOf(const Act& act, Host& host) {
    try {
        return act(host);
    } catch (const BridgeError& error) {
        return {{"error", error.what()}, {"message", jsonOf(error.errorDescription())}};
    }
}

Json detailsAsJson(const AppSelectionDetails& details) {
    return {
        {"applicationName", jsonOf(details.applicationName)}, {"selectedText", jsonOf(details.selectedText)},
        {"contextBefore", jsonOf(details.contextBefore)},     {"contextAfter", jsonOf(details.contextAfter)},
        {"selectionMethod", jsonOf(details.selectionMethod)}, {"usesClipboardFallback", details.usesClipboardFallback}};
}

/// Reads steps in the order of the file; a session must be captured before it is used.
class StepReader {
public:
    explicit StepReader(Stage& stage) : stage_(stage) {}

    Act read(const JsonNode& node, std::string_view verb) {
        if (verb == "capture") {
            return readCapture(node);
        }
        if (verb == "markSubmitted") {
            node.allowKeys({"markSubmitted"});
            return withSession(node.get("markSubmitted"), [](AppSelectionSession& session) {
                session.markSubmitted();
                return Json("marked");
            });
        }
        if (verb == "replaceIfCurrent") {
            node.allowKeys({"replaceIfCurrent", "with"});
            return withSession(node.get("replaceIfCurrent"),
                               [text = node.get("with").text()](AppSelectionSession& session) {
                                   session.replaceIfCurrent(text);
                                   return Json("replaced");
                               });
        }
        if (verb == "drop") {
            node.allowKeys({"drop"});
            return [name = knownName(node.get("drop"))](Host& host) {
                host.sessions.erase(name);
                return Json("dropped");
            };
        }
        if (verb == "permission") {
            return readPermission(node);
        }
        if (verb == "traces") {
            return readTraces(node);
        }
        if (verb == "look") {
            node.allowKeys({"look"});
            if (!node.get("look").boolean()) {
                node.get("look").refuse("true");
            }
            return [](Host& host) { return stateOf(host.stage); };
        }
        if (verb == "runMainQueue") {
            node.allowKeys({"runMainQueue"});
            return [duration = node.get("runMainQueue").seconds()](Host& host) {
                host.stage.desktop.scheduling().runLoopSlice(duration);
                return Json("ran");
            };
        }
        node.allowKeys({"user"});
        return [action = readAction(node.get("user"), stage_)](Host& host) {
            host.stage.desktop.perform(action);
            return Json("done");
        };
    }

private:
    Act readCapture(const JsonNode& node) {
        node.allowKeys({"capture", "as", "beforeLimit", "afterLimit", "fallback"});
        const std::string what = node.get("capture").string();
        if (what != "selection" && what != "selectionOrChat") {
            node.get("capture").refuse("\"selection\" or \"selectionOrChat\"");
        }
        constexpr std::int64_t mostUnits = 1'000'000'000;
        const auto limit = [&node](std::string_view key) {
            constexpr std::int64_t usual = 500;
            const auto found = node.find(key);
            return found ? found->integer(-1, mostUnits) : usual;
        };
        const auto fallback = node.find("fallback");
        const SelectionReadOptions options{limit("beforeLimit"), limit("afterLimit"), !fallback || fallback->boolean()};
        const auto as = node.find("as");
        const std::string name = as ? as->string() : "session";
        names_.insert(name);
        return [what, options, name](Host& host) {
            host.sessions.erase(name);
            auto session = what == "selection" ? host.service.captureSelection(options)
                                               : host.service.captureSelectionOrChat(options);
            Json details = detailsAsJson(session->details());
            host.sessions[name] = std::move(session);
            return details;
        };
    }

    template <typename Use>
    Act withSession(const JsonNode& node, Use use) {
        return [name = knownName(node), use](Host& host) {
            const auto found = host.sessions.find(name);
            return found == host.sessions.end() ? Json("no session") : use(*found->second);
        };
    }

    std::string knownName(const JsonNode& node) const {
        const std::string name = node.string();
        if (!names_.contains(name)) {
            node.refuse("the name of a session that an earlier step captures");
        }
        return name;
    }

    static Act readPermission(const JsonNode& node) {
        node.allowKeys({"permission"});
        const std::string how = node.get("permission").string();
        if (how != "check" && how != "ask") {
            node.get("permission").refuse("\"check\" or \"ask\"");
        }
        const TrustPrompt prompt = how == "ask" ? TrustPrompt::ask : TrustPrompt::none;
        return [prompt](Host& host) { return Json(host.service.hasPermission(prompt)); };
    }

    static Act readTraces(const JsonNode& node) {
        node.allowKeys({"traces"});
        const std::string what = node.get("traces").string();
        if (what == "snapshot") {
            return [](Host&) { return tracesAsJson(); };
        }
        if (what != "reset") {
            node.get("traces").refuse("\"snapshot\" or \"reset\"");
        }
        return [](Host&) {
            SelectionCaptureTrace::shared().reset();
            ReplacementGuardTrace::shared().reset();
            return Json("reset");
        };
    }

    Stage& stage_;
    std::set<std::string> names_;
};

/// The verb of a step, the first of its keys that is one.
std::string_view verbOf(const JsonNode& node) {
    constexpr std::array<std::string_view, 9> verbs{
        "look", "capture", "markSubmitted", "replaceIfCurrent", "drop", "permission", "traces", "runMainQueue", "user"};
    for (const std::string_view verb : verbs) {
        if (node.find(verb)) {
            return verb;
        }
    }
    std::string names;
    for (const std::string_view verb : verbs) {
        names += names.empty() ? "" : ", ";
        names += verb;
    }
    node.refuse("an object with one of the keys " + names);
}

}  // namespace

std::vector<HostStep> readHostSteps(const JsonNode& file, Stage& stage) {
    const auto host = std::make_shared<Host>(stage);
    StepReader reader(stage);
    std::vector<HostStep> steps;
    for (const JsonNode& node : file.members()) {
        const std::string_view verb = verbOf(node);
        const Act act = reader.read(node, verb);
        steps.emplace_back([host, act, verb, number = steps.size() + 1] {
            Json line{{"step", number}, {std::string(verb), outcomeOf(act, *host)}};
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
