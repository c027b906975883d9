#include "simulator/session_steps.h"

#include "simulator/json_text.h"
#include "simulator/service_steps.h"

#include <utility>

namespace lomaris::simulator {
namespace {

Json detailsAsJson(const AppSelectionDetails& details) {
    return {
        {"applicationName", jsonOf(details.applicationName)}, {"selectedText", jsonOf(details.selectedText)},
        {"contextBefore", jsonOf(details.contextBefore)},     {"contextAfter", jsonOf(details.contextAfter)},
        {"selectionMethod", jsonOf(details.selectionMethod)}, {"usesClipboardFallback", details.usesClipboardFallback}};
}

}  // namespace

HostAct SessionSteps::readCapture(const JsonNode& node) {
    node.allowKeys({"capture", "as", "beforeLimit", "afterLimit", "fallback"});
    const bool isPlain = node.get("capture").choice({"selection", "selectionOrChat"}) == "selection";
    const ContextLimits limits = readLimits(node);
    const auto fallback = node.find("fallback");
    const SelectionReadOptions options{limits, !fallback || fallback->boolean()};
    const auto as = node.find("as");
    const std::string name = as ? as->string() : "session";
    names_.insert(name);
    return [isPlain, options, name](Host& host) {
        host.sessions.erase(name);
        auto session = isPlain ? host.service.captureSelection(options) : host.service.captureSelectionOrChat(options);
        Json details = detailsAsJson(session->details());
        host.sessions[name] = std::move(session);
        return details;
    };
}

HostAct SessionSteps::readMarkSubmitted(const JsonNode& node) const {
    node.allowKeys({"markSubmitted"});
    return withSession(node.get("markSubmitted"), [](AppSelectionSession& session) {
        session.markSubmitted();
        return Json("marked");
    });
}

HostAct SessionSteps::readReplaceIfCurrent(const JsonNode& node) const {
    node.allowKeys({"replaceIfCurrent", "with"});
    return withSession(node.get("replaceIfCurrent"), [text = node.get("with").text()](AppSelectionSession& session) {
        session.replaceIfCurrent(text);
        return Json("replaced");
    });
}

HostAct SessionSteps::readDrop(const JsonNode& node) const {
    node.allowKeys({"drop"});
    return [name = knownName(node.get("drop"))](Host& host) {
        host.sessions.erase(name);
        return Json("dropped");
    };
}

HostAct SessionSteps::withSession(const JsonNode& name, std::function<Json(AppSelectionSession&)> use) const {
    return [known = knownName(name), use = std::move(use)](Host& host) {
        const auto found = host.sessions.find(known);
        return found == host.sessions.end() ? Json("no session") : use(*found->second);
    };
}

std::string SessionSteps::knownName(const JsonNode& node) const {
    std::string name = node.string();
    if (!names_.contains(name)) {
        node.refuse("the name of a session that an earlier step captures");
    }
    return name;
}

}  // namespace lomaris::simulator
