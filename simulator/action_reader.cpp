#include "simulator/action_reader.h"

#include "simulator/element_script.h"
#include "simulator/value_reader.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace lomaris::simulator {
namespace {

constexpr std::int64_t mostPresses = 1'000'000;

/// Clips the range to the text.
TextRange cutTo(TextRange range, TextView text) {
    const auto length = static_cast<std::int64_t>(text.size());
    const std::int64_t location = std::clamp<std::int64_t>(range.location, 0, length);
    return {location, std::clamp<std::int64_t>(range.length, 0, length - location)};
}

/// Does nothing if the application is not running.
template <typename Act>
Reaction whileItRuns(const StagedApplication& application, Act act) {
    return Reaction([handle = application.handle, act] {
        if (handle.isRunning()) {
            act(handle);
        }
    });
}

Reaction readTyping(const JsonNode& node, Stage& stage) {
    const std::int64_t presses = node.integer(1, mostPresses);
    return Reaction([&stage, presses] {
        for (std::int64_t press = 0; press < presses; ++press) {
            stage.desktop.userTypes();
        }
    });
}

Reaction readClick(const JsonNode& node, Stage& stage) {
    constexpr std::array<std::pair<std::string_view, InputEventType>, 3> buttons{{
        {"left", InputEventType::leftMouseDown},
        {"right", InputEventType::rightMouseDown},
        {"other", InputEventType::otherMouseDown},
    }};
    const std::string name = node.choice({"left", "right", "other"});
    const auto* const button =
        std::find_if(buttons.begin(), buttons.end(), [&name](const auto& each) { return each.first == name; });
    return Reaction([&stage, pressed = button->second] { stage.desktop.userClicks(pressed); });
}

Reaction readSelecting(const JsonNode& node, Stage& stage) {
    node.allowKeys({"element", "range"});
    const TextRange range = readRange(node.get("range"));
    return Reaction([element = readTextElement(node.get("element"), stage), range]() mutable {
        element.select(cutTo(range, element.text()));
    });
}

Reaction readRewriting(const JsonNode& node, Stage& stage) {
    node.allowKeys({"element", "value", "selection"});
    const Text text = node.get("value").text();
    const auto selection = node.find("selection");
    const TextRange range = selection ? cutTo(readRange(*selection), text) : TextRange{};
    return Reaction([element = readTextElement(node.get("element"), stage), text, range]() mutable {
        element.setText(text, range);
    });
}

Reaction readScripting(const JsonNode& node, Stage& stage) {
    node.allowKeys(scriptKeysAnd({"element"}));
    return Reaction([element = readElementOrRoot(node.get("element"), stage), script = readElementScript(node, stage)] {
        apply(script, element);
    });
}

Reaction readSwitching(const JsonNode& node, Stage& stage) {
    if (node.isNull()) {
        return Reaction([&stage] { stage.desktop.leaveNothingInFront(); });
    }
    return whileItRuns(readApplication(node, stage, "null or "), [&stage](const SimulatedApplication& application) {
        stage.desktop.bringToFront(application.processIdentifier());
    });
}

Reaction readStarting(const JsonNode& node, Stage& stage) {
    const StagedApplication& application = readApplication(node, stage);
    if (application.start == StagedApplication::Start::atOnce) {
        node.refuse("the process identifier of an application with \"runs\": false");
    }
    return Reaction([handle = application.handle] { handle.start(); });
}

Reaction readQuitting(const JsonNode& node, Stage& stage) {
    return whileItRuns(readApplication(node, stage), [&stage](const SimulatedApplication& application) {
        stage.desktop.quit(application.processIdentifier());
    });
}

Reaction readHanging(const JsonNode& node, Stage& stage) {
    return whileItRuns(readApplication(node, stage),
                       [](const SimulatedApplication& application) { application.hang(); });
}

Reaction readRecovering(const JsonNode& node, Stage& stage) {
    return whileItRuns(readApplication(node, stage),
                       [](const SimulatedApplication& application) { application.recover(); });
}

/// Reads a signal that can be caught and that ends a process by default, on both macOS and Linux.
int readSignal(const JsonNode& node) {
    constexpr std::array<std::pair<std::int64_t, std::int64_t>, 4> accepted{{{1, 8}, {10, 15}, {24, 27}, {30, 31}}};
    for (const auto& [first, last] : accepted) {
        if (node.value().is_number_integer() && node.value() >= first && node.value() <= last) {
            return static_cast<int>(node.integer(first, last));
        }
    }
    node.refuse("a signal that ends a process and can be caught: 1 to 8, 10 to 15, 24 to 27, 30 or 31");
}

Reaction readReading(const JsonNode& node, Stage& stage) {
    return Reaction([&stage, type = readType(node)] {
        stage.desktop.readPasteboardAsAnotherProgram(type, [](const std::optional<Bytes>& /*bytes*/) {});
    });
}

Reaction readHolding(const JsonNode& node, Stage& stage) {
    const std::optional<Duration> duration = readDurationOrForever(node);
    return Reaction([&stage, duration] {
        const Moment end = duration ? stage.desktop.now() + *duration : Moment::max();
        static_cast<void>(stage.desktop.holdPasteboardUntil(end));
    });
}

Reaction readKilling(const JsonNode& node, Stage& stage) {
    if (!node.boolean()) {
        node.refuse("true");
    }
    return Reaction([&stage] { stage.desktop.kill(); });
}

Reaction readAll(const JsonNode& node, Stage& stage) {
    std::vector<Reaction> actions;
    for (const JsonNode& member : node.members()) {
        actions.push_back(readAction(member, stage));
    }
    return together(actions);
}

Reaction readIgnoring(const JsonNode& node, Stage& /*stage*/) {
    if (!node.boolean()) {
        node.refuse("true");
    }
    return ignores();
}

struct Verb {
    std::string_view name;
    Reaction (*read)(const JsonNode& node, Stage& stage);
};

constexpr std::array<Verb, 26> verbs{{
    {"ignores", readIgnoring},
    {"all", readAll},
    {"copies", [](const JsonNode& node, Stage&) { return copies(node.text()); }},
    {"copiesItems", [](const JsonNode& node, Stage&) { return copiesItems(readPasteboardItems(node)); }},
    {"copiesSelectionOf",
     [](const JsonNode& node, Stage& stage) { return copiesSelectionOf(readTextElement(node, stage)); }},
    {"pastesInto", [](const JsonNode& node, Stage& stage) { return pastesInto(readTextElement(node, stage)); }},
    {"deletesSelectionOf",
     [](const JsonNode& node, Stage& stage) { return deletesSelectionOf(readTextElement(node, stage)); }},
    {"reads", readReading},
    {"holdsPasteboard", readHolding},
    {"types", readTyping},
    {"clicks", readClick},
    {"setsCounters",
     [](const JsonNode& node, Stage& stage) {
         static_cast<void>(readCounters(node, {}));
         return Reaction([&stage, value = node.value()] {
             stage.desktop.setInputCounters(readCounters(JsonNode(value), stage.desktop.inputCounters()));
         });
     }},
    {"selects", readSelecting},
    {"rewrites", readRewriting},
    {"scripts", readScripting},
    {"bringsToFront", readSwitching},
    {"starts", readStarting},
    {"quits", readQuitting},
    {"hangs", readHanging},
    {"recovers", readRecovering},
    {"refusesWrites",
     [](const JsonNode& node, Stage& stage) {
         return Reaction([&stage, count = static_cast<int>(node.integer(1, mostPresses))] {
             stage.desktop.refusePasteboardWrites(count);
         });
     }},
    {"failsKeyStrokes",
     [](const JsonNode& node, Stage& stage) {
         return Reaction(
             [&stage, count = static_cast<int>(node.integer(1, mostPresses))] { stage.desktop.failKeyStrokes(count); });
     }},
    {"setsTrusted",
     [](const JsonNode& node, Stage& stage) {
         return Reaction([&stage, trusted = node.boolean()] { stage.desktop.setTrusted(trusted); });
     }},
    {"setsEventAccess",
     [](const JsonNode& node, Stage& stage) {
         return Reaction([&stage, granted = node.boolean()] { stage.desktop.setPostEventAccess(granted); });
     }},
    {"endsTheTool",
     [](const JsonNode& node, Stage& stage) {
         return Reaction([&stage, signal = readSignal(node)] { stage.desktop.terminate(signal); });
     }},
    {"killsTheTool", readKilling},
}};

/// Whether only an action is accepted, or also a reaction, which may use "inTurn".
enum class Whole { action, reaction };

[[noreturn]] void refuseAction(const JsonNode& node, Whole whole) {
    std::vector<std::string_view> names;
    for (const Verb& verb : verbs) {
        names.push_back(verb.name);
    }
    node.refuse(std::string(whole == Whole::reaction ? "{\"inTurn\": [reactions]}, " : "") +
                "an array of actions, or an object with exactly one of the keys " + listOf(names) +
                ", beside which \"after\" may stand");
}

/// Reads the action of an object, which has one key besides "after".
Reaction readVerb(const JsonNode& node, Stage& stage, Whole whole) {
    std::optional<Reaction> read;
    for (const auto& [key, value] : node.entries()) {
        if (key == "after") {
            continue;
        }
        if (key == "inTurn" && whole == Whole::action) {
            node.refuse("no \"inTurn\" here, which stands alone and is a whole reaction");
        }
        const auto* const verb =
            std::find_if(verbs.begin(), verbs.end(), [&name = key](const Verb& each) { return each.name == name; });
        if (verb == verbs.end() || read) {
            refuseAction(node, whole);
        }
        read = verb->read(value, stage);
    }
    if (!read) {
        refuseAction(node, whole);
    }
    return *read;
}

Reaction readOne(const JsonNode& node, Stage& stage, Whole whole) {
    if (node.value().is_array()) {
        return readAll(node, stage);
    }
    if (!node.value().is_object()) {
        refuseAction(node, whole);
    }
    const Reaction action = readVerb(node, stage, whole);
    const auto after = node.find("after");
    return after ? action.after(after->seconds()) : action;
}

}  // namespace

Reaction readAction(const JsonNode& node, Stage& stage) { return readOne(node, stage, Whole::action); }

std::vector<Reaction> readReactions(const JsonNode& node, Stage& stage) {
    const auto inTurn = node.value().is_object() ? node.find("inTurn") : std::nullopt;
    if (!inTurn) {
        return {readOne(node, stage, Whole::reaction)};
    }
    if (node.value().size() != 1) {
        node.refuse("\"inTurn\" alone; \"after\" may stand in each of its reactions");
    }
    std::vector<Reaction> reactions;
    for (const JsonNode& member : inTurn->members()) {
        reactions.push_back(readAction(member, stage));
    }
    if (reactions.empty()) {
        inTurn->refuse("at least one reaction");
    }
    return reactions;
}

InputCounters readCounters(const JsonNode& node, InputCounters counters) {
    node.allowKeys({"keyDown", "leftMouseDown", "rightMouseDown", "otherMouseDown"});
    const auto read = [&node](std::string_view key, std::uint32_t& counter) {
        if (const auto found = node.find(key)) {
            counter = static_cast<std::uint32_t>(found->integer(0, std::numeric_limits<std::uint32_t>::max()));
        }
    };
    read("keyDown", counters.keyDown);
    read("leftMouseDown", counters.leftMouseDown);
    read("rightMouseDown", counters.rightMouseDown);
    read("otherMouseDown", counters.otherMouseDown);
    return counters;
}

}  // namespace lomaris::simulator
