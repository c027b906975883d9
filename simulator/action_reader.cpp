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

/// The part of a range that lies inside of a text.
TextRange cutTo(TextRange range, TextView text) {
    const auto length = static_cast<std::int64_t>(text.size());
    const std::int64_t location = std::clamp<std::int64_t>(range.location, 0, length);
    return {location, std::clamp<std::int64_t>(range.length, 0, length - location)};
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
    for (const auto& [name, button] : buttons) {
        if (node.value().is_string() && node.string() == name) {
            return Reaction([&stage, pressed = button] { stage.desktop.userClicks(pressed); });
        }
    }
    node.refuse("\"left\", \"right\" or \"other\"");
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
    return Reaction([element = readElement(node.get("element"), stage), script = readElementScript(node, stage)] {
        apply(script, element);
    });
}

Reaction readSwitching(const JsonNode& node, Stage& stage) {
    if (node.isNull()) {
        return Reaction([&stage] { stage.desktop.leaveNothingInFront(); });
    }
    return Reaction([&stage, application = readProcessIdentifier(node)] {
        if (stage.running.contains(application)) {
            stage.desktop.bringToFront(application);
        }
    });
}

Reaction readQuitting(const JsonNode& node, Stage& stage) {
    return Reaction([&stage, application = readProcessIdentifier(node)] {
        if (stage.running.erase(application) > 0) {
            stage.desktop.quit(application);
        }
    });
}

Reaction readHanging(const JsonNode& node, Stage& stage) {
    return Reaction([&stage, application = readProcessIdentifier(node)] {
        if (const auto found = stage.running.find(application); found != stage.running.end()) {
            found->second.hang();
        }
    });
}

Reaction readReading(const JsonNode& node, Stage& stage) {
    return Reaction([&stage, type = node.string()] {
        stage.desktop.readPasteboardAsAnotherProgram(type, [](const std::optional<Bytes>& /*bytes*/) {});
    });
}

Reaction readAll(const JsonNode& node, Stage& stage) {
    std::vector<Reaction> actions;
    for (const JsonNode& member : node.members()) {
        actions.push_back(readAction(member, stage));
    }
    return Reaction([&stage, actions = std::move(actions)] {
        for (const Reaction& action : actions) {
            stage.desktop.perform(action);
        }
    });
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

constexpr std::array<Verb, 22> verbs{{
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
    {"quits", readQuitting},
    {"hangs", readHanging},
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
         constexpr int highestSignal = 64;
         return Reaction(
             [&stage, signal = static_cast<int>(node.integer(1, highestSignal))] { stage.desktop.terminate(signal); });
     }},
}};

[[noreturn]] void refuseAction(const JsonNode& node) {
    std::string names;
    for (const Verb& verb : verbs) {
        names += names.empty() ? "" : ", ";
        names += verb.name;
    }
    node.refuse("an object with exactly one of the keys " + names);
}

/// The action of an object that has one key beside these.
Reaction readVerb(const JsonNode& node, Stage& stage, std::string_view otherKey) {
    std::optional<Reaction> read;
    for (const auto& [key, value] : node.entries()) {
        if (key == otherKey) {
            continue;
        }
        const auto* const verb =
            std::find_if(verbs.begin(), verbs.end(), [&name = key](const Verb& each) { return each.name == name; });
        if (verb == verbs.end() || read) {
            refuseAction(node);
        }
        read = verb->read(value, stage);
    }
    if (!read) {
        refuseAction(node);
    }
    return *read;
}

Reaction readReaction(const JsonNode& node, Stage& stage) {
    if (!node.value().is_object()) {
        return readAction(node, stage);
    }
    const auto after = node.find("after");
    const Reaction reaction = readVerb(node, stage, "after");
    return after ? reaction.after(after->seconds()) : reaction;
}

}  // namespace

Reaction readAction(const JsonNode& node, Stage& stage) {
    if (node.value().is_array()) {
        return readAll(node, stage);
    }
    return readVerb(node, stage, "");
}

std::vector<Reaction> readReactions(const JsonNode& node, Stage& stage) {
    const auto inTurn = node.value().is_object() ? node.find("inTurn") : std::nullopt;
    if (!inTurn) {
        return {readReaction(node, stage)};
    }
    node.allowKeys({"inTurn"});
    std::vector<Reaction> reactions;
    for (const JsonNode& member : inTurn->members()) {
        reactions.push_back(readReaction(member, stage));
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
