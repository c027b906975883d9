#include "platform/simulated/simulated_menu_bar.h"

#include "platform/simulated/scheduler.h"

#include <cstddef>

namespace lomaris {

SimulatedElement SimulatedMenuBar::item(TextView menuTitle, TextView itemTitle) const {
    for (const MadeMenu& made : menus) {
        for (std::size_t index = 0; made.title == menuTitle && index < made.items.size(); ++index) {
            if (made.itemTitles[index] == itemTitle) {
                return made.items[index];
            }
        }
    }
    simulated::abortScenario("the menu bar has no such item");
}

}  // namespace lomaris
