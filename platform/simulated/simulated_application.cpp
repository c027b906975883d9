#include "platform/simulated/simulated_application.h"

#include "platform/attributes.h"
#include "platform/simulated/world.h"

#include <string_view>
#include <utility>

namespace lomaris {
namespace {

constexpr KeyStroke copyKey{8, commandFlag};
constexpr KeyStroke pasteKey{9, commandFlag};
constexpr KeyStroke deleteKey{51, 0};

SimulatedElement addTitled(const SimulatedApplication& application, const char16_t* role, const Text& title) {
    SimulatedElement element = application.addElement();
    element.answers(attribute::role, Text(role)).answers(attribute::title, title);
    return element;
}

SimulatedElement addItem(const SimulatedApplication& application, const MenuItem& item) {
    SimulatedElement element = addTitled(application, u"AXMenuItem", item.title);
    if (item.commandCharacter) {
        element.answers(attribute::menuItemCommandCharacter, *item.commandCharacter);
    }
    if (item.modifiers) {
        element.answers(attribute::menuItemCommandModifiers, *item.modifiers);
    }
    if (item.enabled) {
        element.answers(attribute::enabled, *item.enabled);
    }
    element.onAction(action::press, ignores());
    return element;
}

std::vector<Element> elementsOf(const std::vector<SimulatedElement>& handles) {
    std::vector<Element> elements;
    elements.reserve(handles.size());
    for (const SimulatedElement& handle : handles) {
        elements.push_back(handle.element());
    }
    return elements;
}

}  // namespace

SimulatedElement SimulatedApplication::element() const {
    return SimulatedElement(world_->applications.get(processIdentifier_).root);
}

SimulatedElement SimulatedApplication::addElement() const {
    return SimulatedElement(world_->applications.addElement(processIdentifier_));
}

SimulatedTextElement SimulatedApplication::addTextElement(Text text, TextRange selection) const {
    SimulatedTextElement element(world_->applications.addElement(processIdentifier_));
    element.setText(std::move(text), selection);
    return element;
}

SimulatedMenuBar SimulatedApplication::addMenuBar(const std::vector<Menu>& menus) const {
    SimulatedMenuBar made{addElement(), {}};
    std::vector<Element> barItems;
    for (const Menu& menu : menus) {
        SimulatedElement barItem = addTitled(*this, u"AXMenuBarItem", menu.title);
        SimulatedElement opened = addElement();
        SimulatedMenuBar::MadeMenu& entry =
            made.menus.emplace_back(SimulatedMenuBar::MadeMenu{menu.title, barItem, opened, {}, {}});
        for (const MenuItem& item : menu.items) {
            entry.itemTitles.push_back(item.title);
            entry.items.push_back(addItem(*this, item));
        }
        opened.answers(attribute::role, u"AXMenu").answers(attribute::children, elementsOf(entry.items));
        barItem.answers(attribute::children, std::vector<Element>{opened.element()});
        barItems.push_back(barItem.element());
    }
    made.bar.answers(attribute::role, u"AXMenuBar").answers(attribute::children, std::move(barItems));
    element().answers(attribute::menuBar, made.bar.element());
    return made;
}

SimulatedApplication& SimulatedApplication::onCopy(Reaction reaction) {
    return onKeyStroke(copyKey, std::move(reaction));
}

SimulatedApplication& SimulatedApplication::onPaste(Reaction reaction) {
    return onKeyStroke(pasteKey, std::move(reaction));
}

SimulatedApplication& SimulatedApplication::onDelete(Reaction reaction) {
    return onKeyStroke(deleteKey, std::move(reaction));
}

SimulatedApplication& SimulatedApplication::onCopyInTurn(std::vector<Reaction> reactions) {
    return onKeyStrokeInTurn(copyKey, std::move(reactions));
}

SimulatedApplication& SimulatedApplication::onPasteInTurn(std::vector<Reaction> reactions) {
    return onKeyStrokeInTurn(pasteKey, std::move(reactions));
}

SimulatedApplication& SimulatedApplication::onDeleteInTurn(std::vector<Reaction> reactions) {
    return onKeyStrokeInTurn(deleteKey, std::move(reactions));
}

SimulatedApplication& SimulatedApplication::onKeyStroke(KeyStroke keyStroke, Reaction reaction) {
    return onKeyStrokeInTurn(keyStroke, {std::move(reaction)});
}

SimulatedApplication& SimulatedApplication::onKeyStrokeInTurn(KeyStroke keyStroke, std::vector<Reaction> reactions) {
    simulated::ProcessState& process = world_->applications.get(processIdentifier_);
    simulated::ReactionsInTurn inTurn(std::move(reactions));
    if (simulated::KeyReactions* found = process.find(keyStroke)) {
        found->reactions = std::move(inTurn);
    } else {
        process.keys.push_back({keyStroke, std::move(inTurn)});
    }
    return *this;
}

void SimulatedApplication::hang() const { world_->applications.get(processIdentifier_).isHung = true; }
void SimulatedApplication::recover() const { world_->applications.get(processIdentifier_).isHung = false; }

bool SimulatedApplication::isRunning() const { return world_->applications.find(processIdentifier_) != nullptr; }
void SimulatedApplication::holdBack() const { world_->applications.holdBack(processIdentifier_); }
void SimulatedApplication::start() const { world_->applications.start(processIdentifier_); }

}  // namespace lomaris
