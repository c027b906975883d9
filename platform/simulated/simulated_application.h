#pragma once

#include "platform/accessibility.h"
#include "platform/event_services.h"
#include "platform/simulated/reaction.h"
#include "platform/simulated/simulated_element.h"
#include "platform/simulated/simulated_menu_bar.h"

#include <vector>

namespace lomaris {

namespace simulated {
struct World;
}  // namespace simulated

/// One application of the simulated desktop. A handle that may be copied; valid as long as its desktop. Where a
/// function scripts the application, it must be running.
class SimulatedApplication {
public:
    SimulatedApplication(simulated::World& world, ProcessIdentifier processIdentifier)
        : world_(&world), processIdentifier_(processIdentifier) {}

    [[nodiscard]] ProcessIdentifier processIdentifier() const { return processIdentifier_; }

    // Elements.

    /// The root element of the application, without attributes at first.
    [[nodiscard]] SimulatedElement element() const;

    /// A new element of the application, without attributes.
    SimulatedElement addElement() const;

    /// A new text area with this text and selection, which must lie inside of the text.
    SimulatedTextElement addTextElement(Text text, TextRange selection) const;

    /// A new menu bar with these menus, which the root element answers as its "AXMenuBar" from now on. Its elements are
    /// numbered in this order: the bar; for each menu the bar item, the menu, the items.
    SimulatedMenuBar addMenuBar(const std::vector<Menu>& menus) const;

    // Reactions. A key stroke reaches the application that is in front when it goes to the session, and the application
    // that runs under that process identifier when it goes to a process. Nothing happens where none is scripted. What
    // was scripted last for a stroke holds.

    /// Command+C, Command+V, Delete.
    SimulatedApplication& onCopy(Reaction reaction);
    SimulatedApplication& onPaste(Reaction reaction);
    SimulatedApplication& onDelete(Reaction reaction);

    /// The first stroke from now on meets the first of these, the second stroke the second, ...; the last one stays.
    SimulatedApplication& onCopyInTurn(std::vector<Reaction> reactions);
    SimulatedApplication& onPasteInTurn(std::vector<Reaction> reactions);
    SimulatedApplication& onDeleteInTurn(std::vector<Reaction> reactions);

    /// Any other stroke; the flags must be the same.
    SimulatedApplication& onKeyStroke(KeyStroke keyStroke, Reaction reaction);
    SimulatedApplication& onKeyStrokeInTurn(KeyStroke keyStroke, std::vector<Reaction> reactions);

    /// Until `recover` the application reacts to nothing, not even to what reached it before, and every operation on
    /// its elements answers `cannotComplete`. Its process identifier is still known.
    void hang() const;
    /// It answers and reacts again. What it would have done meanwhile is lost.
    void recover() const;

    // Its beginning and end.

    [[nodiscard]] bool isRunning() const;
    /// The application does not run yet and is as one that does not exist; `start` starts it, with all that it was
    /// given here before.
    void holdBack() const;
    /// Nothing happens where the application is not held back.
    void start() const;

private:
    simulated::World* world_;
    ProcessIdentifier processIdentifier_;
};

}  // namespace lomaris
