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

/// Script of one application of the simulated desktop. A copyable handle, valid as long as the desktop. Functions that
/// script the application require that it runs.
class SimulatedApplication {
public:
    SimulatedApplication(simulated::World& world, ProcessIdentifier processIdentifier)
        : world_(&world), processIdentifier_(processIdentifier) {}

    [[nodiscard]] ProcessIdentifier processIdentifier() const { return processIdentifier_; }

    // Elements.

    /// The root element of the application, without attributes at first.
    [[nodiscard]] SimulatedElement element() const;

    /// Adds an element without attributes.
    SimulatedElement addElement() const;

    /// Adds a text area with this text and selection, which must be inside the text.
    SimulatedTextElement addTextElement(Text text, TextRange selection) const;

    /// Adds a menu bar with these menus and makes it the "AXMenuBar" of the root element. Its elements are numbered in
    /// this order: the bar, then for each menu the bar item, the menu and the menu's items.
    SimulatedMenuBar addMenuBar(const std::vector<Menu>& menus) const;

    // Reactions to key strokes. A key stroke that is posted to the session reaches the frontmost application, one that
    // is posted to a process the application with that process identifier. A key stroke without a script has no effect.
    // A later script of the same key stroke replaces the earlier one.

    /// Command+C, Command+V and Delete.
    SimulatedApplication& onCopy(Reaction reaction);
    SimulatedApplication& onPaste(Reaction reaction);
    SimulatedApplication& onDelete(Reaction reaction);

    /// Each key stroke from now on causes the next reaction of the list; all later ones cause the last.
    SimulatedApplication& onCopyInTurn(std::vector<Reaction> reactions);
    SimulatedApplication& onPasteInTurn(std::vector<Reaction> reactions);
    SimulatedApplication& onDeleteInTurn(std::vector<Reaction> reactions);

    /// Any other key stroke; the modifier flags must be the same.
    SimulatedApplication& onKeyStroke(KeyStroke keyStroke, Reaction reaction);
    SimulatedApplication& onKeyStrokeInTurn(KeyStroke keyStroke, std::vector<Reaction> reactions);

    /// From now on the application hangs: it does not react, not even to earlier key strokes and actions, and every
    /// operation on its elements returns `cannotComplete`. Its process identifier can still be read.
    void hang() const;
    /// Ends the hang. Reactions that were due while the application hung are lost.
    void recover() const;

    // Start and end.

    [[nodiscard]] bool isRunning() const;
    /// Makes the application one that has not started yet, as if it did not exist. `start` starts it with everything
    /// that was scripted before.
    void holdBack() const;
    /// Does nothing if the application is not held back.
    void start() const;

private:
    simulated::World* world_;
    ProcessIdentifier processIdentifier_;
};

}  // namespace lomaris
