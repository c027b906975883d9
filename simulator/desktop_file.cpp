#include "simulator/desktop_file.h"

#include "simulator/action_reader.h"
#include "simulator/application_reader.h"
#include "simulator/element_script.h"
#include "simulator/value_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace lomaris::simulator {
namespace {

constexpr std::int64_t mostCalls = 1'000'000'000;

void readPermissions(const JsonNode& file, SimulatedDesktop& desktop) {
    if (const auto trusted = file.find("trusted")) {
        desktop.setTrusted(trusted->boolean());
    }
    if (const auto answer = file.find("promptAnswer")) {
        desktop.setPromptAnswer(answer->boolean());
    }
    if (const auto access = file.find("eventAccess")) {
        desktop.setPostEventAccess(access->boolean());
    }
    if (const auto answer = file.find("eventRequestAnswer")) {
        desktop.setPostEventRequestAnswer(answer->boolean());
    }
    if (const auto failing = file.find("failingKeyStrokes")) {
        desktop.failKeyStrokes(static_cast<int>(failing->integer(0, mostCalls)));
    }
    if (const auto counters = file.find("counters")) {
        desktop.setInputCounters(readCounters(*counters, {}));
    }
}

void readLatency(const JsonNode& node, SimulatedDesktop& desktop) {
    // All calls except those of time and threads.
    constexpr std::array<std::string_view, 27> calls{"isProcessTrusted",
                                                     "applicationElement",
                                                     "systemWideElement",
                                                     "copyAttribute",
                                                     "copyElementAttribute",
                                                     "copyAttributes",
                                                     "setAttribute",
                                                     "isAttributeSettable",
                                                     "areAttributesSettable",
                                                     "performAction",
                                                     "processIdentifier",
                                                     "containsIgnoringCase",
                                                     "frontmostApplication",
                                                     "runningApplication",
                                                     "items",
                                                     "types",
                                                     "data",
                                                     "string",
                                                     "changeCount",
                                                     "clearContents",
                                                     "writeItems",
                                                     "inputCounter",
                                                     "createKeyStroke",
                                                     "postToSession",
                                                     "postToProcess",
                                                     "preflightPostEventAccess",
                                                     "requestPostEventAccess"};
    if (node.value().is_number()) {
        desktop.setLatency(node.seconds());
        return;
    }
    if (!node.value().is_object()) {
        node.refuse("a number of seconds, or an object of calls and seconds");
    }
    node.allowKeys(calls);
    for (const auto& [call, latency] : node.entries()) {
        desktop.setLatencyOf(call, latency.seconds());
    }
}

void readPasteboard(const JsonNode& node, SimulatedDesktop& desktop) {
    node.allowKeys({"items", "refusedWrites", "heldUntil", "keeper"});
    if (const auto keeper = node.find("keeper"); keeper && keeper->boolean()) {
        desktop.addKeeper();
    }
    if (const auto heldUntil = node.find("heldUntil")) {
        static_cast<void>(desktop.holdPasteboardUntil(readDurationOrForever(*heldUntil).value_or(Moment::max())));
    }
    if (const auto items = node.find("items")) {
        desktop.userCopiesItems(readPasteboardItems(*items));
    }
    if (const auto refused = node.find("refusedWrites")) {
        for (const JsonNode& number : refused->members()) {
            desktop.refusePasteboardWriteNumber(static_cast<int>(number.integer(1, mostCalls)));
        }
    }
}

void readApplications(const JsonNode& node, Stage& stage) {
    ApplicationReader reader(stage);
    bool hasFront = false;
    for (const JsonNode& application : node.members()) {
        reader.add(application);
        const auto front = application.find("front");
        if (front && front->boolean() && std::exchange(hasFront, true)) {
            front->refuse("at most one application in front");
        }
    }
    reader.make();
    reader.script();
}

void readUser(const JsonNode& node, Stage& stage) {
    for (const JsonNode& event : node.members()) {
        event.allowKeys({"at", "beforeCall", "do"});
        const auto moment = event.find("at");
        const auto call = event.find("beforeCall");
        if (moment.has_value() == call.has_value()) {
            event.refuse("either \"at\" or \"beforeCall\"");
        }
        const auto act = [&stage, action = readAction(event.get("do"), stage)] { stage.desktop.perform(action); };
        if (moment) {
            stage.desktop.at(moment->seconds(), act);
        } else {
            stage.desktop.beforeCall(static_cast<std::size_t>(call->integer(1, mostCalls)), act);
        }
    }
}

}  // namespace

std::unique_ptr<Stage> readDesktop(const JsonNode& file) {
    file.allowKeys({"trusted", "promptAnswer", "language", "eventAccess", "eventRequestAnswer", "failingKeyStrokes",
                    "counters", "latency", "pasteboard", "systemWide", "applications", "user",
                    // For the scenario runner; ignored here.
                    "run"});
    auto stage = std::make_unique<Stage>();
    readPermissions(file, stage->desktop);
    if (const auto language = file.find("language")) {
        stage->desktop.setLanguage(language->string());
    }
    if (const auto latency = file.find("latency")) {
        readLatency(*latency, stage->desktop);
    }
    if (const auto pasteboard = file.find("pasteboard")) {
        readPasteboard(*pasteboard, stage->desktop);
    }
    if (const auto node = file.find("applications")) {
        readApplications(*node, *stage);
    }
    if (const auto systemWide = file.find("systemWide")) {
        systemWide->allowKeys(scriptKeysAnd({}));
        apply(readElementScript(*systemWide, *stage), stage->desktop.systemWide());
    }
    if (const auto user = file.find("user")) {
        readUser(*user, *stage);
    }
    return stage;
}

}  // namespace lomaris::simulator
