#include "platform/simulated/applications.h"

#include "platform/simulated/scheduler.h"

#include <utility>

namespace lomaris::simulated {

ProcessState& Applications::add(RunningApplication application) {
    const ProcessIdentifier processIdentifier = application.processIdentifier;
    if (find(processIdentifier) != nullptr) {
        abortScenario("an application with this process identifier runs already");
    }
    ProcessState*& latest = latest_[processIdentifier];
    // Numbers go on where an earlier process of this identifier stopped, so that an element is named once.
    const std::uint32_t firstNumber = latest == nullptr ? 1 : latest->nextNumber;
    latest = &processes_.emplace_back(std::move(application), firstNumber);
    return *latest;
}

void Applications::quit(ProcessIdentifier processIdentifier) {
    get(processIdentifier).isRunning = false;
    if (front_ == processIdentifier) {
        front_.reset();
    }
}

void Applications::bringToFront(ProcessIdentifier processIdentifier) {
    front_ = get(processIdentifier).application.processIdentifier;
}

ProcessState* Applications::find(ProcessIdentifier processIdentifier) {
    const auto found = latest_.find(processIdentifier);
    return found != latest_.end() && found->second->isRunning ? found->second : nullptr;
}

ProcessState& Applications::get(ProcessIdentifier processIdentifier) {
    ProcessState* found = find(processIdentifier);
    if (found == nullptr) {
        abortScenario("no application with this process identifier runs");
    }
    return *found;
}

ElementState& Applications::addElement(ProcessIdentifier processIdentifier) {
    ProcessState& process = get(processIdentifier);
    return process.members.emplace_back(ReferenceKind::member, &process, processIdentifier, process.nextNumber++);
}

}  // namespace lomaris::simulated
