#include "simulator/service_steps.h"

#include "simulator/json_text.h"
#include "simulator/value_reader.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace lomaris::simulator {

ContextLimits readLimits(const JsonNode& node) {
    const auto limit = [&node](std::string_view key) {
        constexpr std::int64_t usual = 500;
        constexpr std::int64_t most = 1'000'000'000;
        const auto found = node.find(key);
        return found ? found->integer(-1, most) : usual;
    };
    return {limit("beforeLimit"), limit("afterLimit")};
}

HostAct readReadStep(const JsonNode& node) {
    node.allowKeys({"read", "beforeLimit", "afterLimit"});
    const ContextLimits limits = readLimits(node);
    if (node.get("read").choice({"text", "json"}) == "text") {
        return [limits](Host& host) { return jsonOf(host.service.readSelectionText(limits)); };
    }
    return [limits](Host& host) { return Json::parse(host.service.readSelectionJSON(limits)); };
}

HostAct readReplaceStep(const JsonNode& node) {
    node.allowKeys({"replace", "beforeLimit", "afterLimit"});
    return [limits = readLimits(node), text = node.get("replace").text()](Host& host) {
        host.service.replaceCurrentSelection(text, limits);
        return Json("replaced");
    };
}

HostAct readReplaceByRequestStep(const JsonNode& node) {
    node.allowKeys({"replaceByRequest", "beforeLimit", "afterLimit"});
    return [limits = readLimits(node), request = readBytes(node.get("replaceByRequest"))](Host& host) {
        host.service.replaceSelectionIfCurrent(request, limits);
        return Json("replaced");
    };
}

HostAct readDiagnoseStep(const JsonNode& node) {
    node.allowKeys({"diagnose"});
    if (node.get("diagnose").choice({"selection", "compatibility"}) == "selection") {
        return [](Host& host) { return Json::parse(host.service.selectionDiagnosticJSON()); };
    }
    return [](Host& host) { return Json::parse(host.service.compatibilityDiagnosticJSON()); };
}

HostAct readPermissionStep(const JsonNode& node) {
    node.allowKeys({"permission"});
    const bool asks = node.get("permission").choice({"check", "ask"}) == "ask";
    return [prompt = asks ? TrustPrompt::ask : TrustPrompt::none](Host& host) {
        return Json(host.service.hasPermission(prompt));
    };
}

}  // namespace lomaris::simulator
