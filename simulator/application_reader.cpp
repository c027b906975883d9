#include "simulator/application_reader.h"

#include "platform/attributes.h"
#include "platform/simulated/text_behaviour.h"
#include "simulator/action_reader.h"
#include "simulator/element_script.h"
#include "simulator/element_tree.h"
#include "simulator/menu_reader.h"
#include "simulator/value_reader.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace lomaris::simulator {
namespace {

constexpr std::int64_t mostElements = 100'000;

std::size_t readCount(const JsonNode& node, std::int64_t lowest) {
    return static_cast<std::size_t>(node.integer(lowest, mostElements));
}

TreeShape readShape(const JsonNode& node) {
    node.allowKeys({"elements", "branching", "depth", "every", "members"});
    if (!node.find("elements") && !node.find("depth")) {
        node.refuse("an object with the key \"elements\" or \"depth\", or both");
    }
    TreeShape shape;
    if (const auto depth = node.find("depth")) {
        shape.depth = readCount(*depth, 0);
        shape.elements = *shape.depth + 1;
    }
    if (const auto elements = node.find("elements")) {
        shape.elements = readCount(*elements, 1);
    }
    if (const auto branching = node.find("branching")) {
        shape.branching = readCount(*branching, 1);
    }
    return shape;
}

std::vector<std::vector<std::size_t>> readLayout(const JsonNode& node) {
    const TreeShape shape = readShape(node);
    auto layout = layOut(shape);
    if (!layout) {
        const TreeRoom room = roomOf(shape);
        const std::string depth = std::to_string(shape.depth.value_or(0));
        if (shape.elements < room.least) {
            node.refuse("at least " + std::to_string(room.least) + " elements at depth " + depth +
                        "; change elements or depth");
        }
        node.refuse("at most " + std::to_string(room.most.value_or(shape.elements)) + " elements at depth " + depth +
                    " with branching " + std::to_string(shape.branching) + "; change elements, depth or branching");
    }
    return *std::move(layout);
}

}  // namespace

void ApplicationReader::add(const JsonNode& node) {
    node.allowKeys(scriptKeysAnd({"processIdentifier", "bundleIdentifier", "name", "front", "hangs", "runs", "elements",
                                  "menuBar", "onCopy", "onPaste", "onDelete", "onKeys"}));
    const JsonNode identifier = node.get("processIdentifier");
    const auto process =
        static_cast<ProcessIdentifier>(identifier.integer(1, std::numeric_limits<ProcessIdentifier>::max()));
    if (stage_.applications.contains(process)) {
        identifier.refuse("a process identifier that no other application has");
    }
    const auto bundleIdentifier = node.find("bundleIdentifier");
    const auto name = node.find("name");
    SimulatedApplication application =
        stage_.desktop.addApplication(process, bundleIdentifier ? bundleIdentifier->textOrNull() : std::nullopt,
                                      name ? name->textOrNull() : std::nullopt);
    const auto runs = node.find("runs");
    const auto start = runs && !runs->boolean() ? StagedApplication::Start::later : StagedApplication::Start::atOnce;
    stage_.applications.emplace(process, StagedApplication{application, application.element(), start});
    applications_.emplace_back(node, application);
}

void ApplicationReader::make() {
    for (const auto& [node, application] : applications_) {
        if (const auto elements = node.find("elements")) {
            std::vector<Element> made;
            for (const JsonNode& element : elements->members()) {
                makeElement(element, application, made);
            }
        }
    }
    // After all elements, because a menu item may have any element of the file as its modifiers.
    for (const auto& [node, application] : applications_) {
        if (const auto menuBar = node.find("menuBar")) {
            makeMenuBar(*menuBar, application);
        }
    }
}

void ApplicationReader::makeElement(const JsonNode& node, SimulatedApplication application,
                                    std::vector<Element>& siblings) {
    node.allowKeys(scriptKeysAnd({"name", "text", "children", "generate"}));
    SimulatedElement element = application.addElement();
    siblings.push_back(element.element());
    take(node, element);
    const auto children = node.find("children");
    const auto generate = node.find("generate");
    if (children && generate) {
        generate->refuse("\"children\" or \"generate\", not both");
    }
    if (children) {
        std::vector<Element> made;
        for (const JsonNode& child : children->members()) {
            makeElement(child, application, made);
        }
        element.answers(attribute::children, made);
    }
    if (generate) {
        makeTree(*generate, application, element);
    }
}

void ApplicationReader::makeTree(const JsonNode& node, SimulatedApplication application, SimulatedElement top) {
    const auto layout = readLayout(node);
    std::vector<SimulatedElement> made{top};
    while (made.size() < layout.size()) {
        made.push_back(application.addElement());
    }
    for (std::size_t position = 0; position < layout.size(); ++position) {
        std::vector<Element> children;
        for (const std::size_t child : layout[position]) {
            children.push_back(made[child].element());
        }
        if (!children.empty()) {
            made[position].answers(attribute::children, children);
        }
    }
    if (const auto every = node.find("every")) {
        every->allowKeys(scriptKeysAnd({}));
        alike_.emplace_back(*every, std::vector(made.begin() + 1, made.end()));
    }
    if (const auto members = node.find("members")) {
        const auto last = static_cast<std::int64_t>(made.size()) - 1;
        std::set<std::int64_t> taken;
        for (const JsonNode& member : members->members()) {
            member.allowKeys(scriptKeysAnd({"at", "name", "text"}));
            const JsonNode at = member.get("at");
            if (last == 0) {
                at.refuse("a tree with more elements than its top");
            }
            const std::int64_t position = at.integer(1, last);
            if (!taken.insert(position).second) {
                at.refuse("a position that no other member has");
            }
            take(member, made[static_cast<std::size_t>(position)]);
        }
    }
}

void ApplicationReader::makeMenuBar(const JsonNode& node, SimulatedApplication application) {
    const SimulatedMenuBar bar = application.addMenuBar(readMenus(node, stage_));
    const std::vector<JsonNode> menus = node.members();
    for (std::size_t menu = 0; menu < menus.size(); ++menu) {
        take(menus[menu], bar.menus[menu].barItem);
        const std::vector<JsonNode> items = menus[menu].get("items").members();
        for (std::size_t item = 0; item < items.size(); ++item) {
            take(items[item], bar.menus[menu].items[item]);
        }
    }
}

void ApplicationReader::take(const JsonNode& node, const SimulatedElement& element) {
    if (const auto text = node.find("text")) {
        text->allowKeys({"value", "selection"});
        const Text value = text->get("value").text();
        const auto selection = text->find("selection");
        const TextRange range = selection ? readRange(*selection) : TextRange{};
        if (!simulated::isInside(range, value)) {
            selection->refuse("a range inside of the text, which has " + std::to_string(value.size()) + " units");
        }
        SimulatedTextElement made(element.state());
        stage_.texts.push_back(made.setText(value, range));
    }
    if (const auto name = node.find("name")) {
        if (name->string() == Stage::systemWideName) {
            name->refuse("a name other than \"systemWide\", which is that of the system-wide element");
        }
        if (!stage_.named.emplace(name->string(), element).second) {
            name->refuse("a name that no other element has");
        }
        stage_.namesByJournal.emplace(journalNameOf(element), name->string());
    }
    elements_.emplace_back(node, element);
}

void ApplicationReader::script() {
    for (const auto& [node, elements] : alike_) {
        const ElementScript script = readElementScript(node, stage_);
        for (const SimulatedElement& element : elements) {
            apply(script, element);
        }
    }
    for (const auto& [node, element] : elements_) {
        apply(readElementScript(node, stage_), element);
    }
    for (const auto& [node, application] : applications_) {
        scriptApplication(node, application);
    }
}

void ApplicationReader::scriptApplication(const JsonNode& node, SimulatedApplication application) {
    apply(readElementScript(node, stage_), application.element());
    if (const auto copy = node.find("onCopy")) {
        application.onCopyInTurn(readReactions(*copy, stage_));
    }
    if (const auto paste = node.find("onPaste")) {
        application.onPasteInTurn(readReactions(*paste, stage_));
    }
    if (const auto erase = node.find("onDelete")) {
        application.onDeleteInTurn(readReactions(*erase, stage_));
    }
    if (const auto keys = node.find("onKeys")) {
        for (const JsonNode& key : keys->members()) {
            key.allowKeys({"keyCode", "flags", "does"});
            KeyStroke stroke;
            stroke.keyCode =
                static_cast<std::uint16_t>(key.get("keyCode").integer(0, std::numeric_limits<std::uint16_t>::max()));
            if (const auto flags = key.find("flags")) {
                stroke.flags = static_cast<std::uint64_t>(flags->integer(0, std::numeric_limits<std::int64_t>::max()));
            }
            application.onKeyStrokeInTurn(stroke, readReactions(key.get("does"), stage_));
        }
    }
    const bool startsLater =
        stage_.applications.at(application.processIdentifier()).start == StagedApplication::Start::later;
    if (const auto front = node.find("front"); front && front->boolean()) {
        if (startsLater) {
            front->refuse("an application in front that runs from the beginning");
        }
        stage_.desktop.bringToFront(application.processIdentifier());
    }
    if (const auto hangs = node.find("hangs"); hangs && hangs->boolean()) {
        application.hang();
    }
    if (startsLater) {
        application.holdBack();
    }
}

}  // namespace lomaris::simulator
