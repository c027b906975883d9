#include "simulator/stage.h"

#include "platform/simulated/describe.h"

namespace lomaris::simulator {

std::string journalNameOf(const SimulatedElement& element) {
    std::string name;
    simulated::appendElement(name, element.element());
    return name;
}

}  // namespace lomaris::simulator
