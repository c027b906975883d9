#include "platform/simulated/applications.h"

#include "platform/simulated/scheduler.h"

#include <algorithm>
#include <utility>

namespace lomaris::simulated {

KeyReactions* ProcessState::find(KeyStroke keyStroke) {
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [keyStroke](const KeyReactions& each) { return each.keyStroke == keyStroke; });
    return found == keys.end() ? nullptr : &*found;
}

bool isAlive(const ProcessState* process) { return process == nullptr || (process->isRunning() && !process->isHung); }

ProcessState& Applications::add(RunningApplication application) {
    const ProcessIdentifier processIdentifier = application.processIdentifier;
    if (find(processIdentifier) != nullptr) {
        abortScenario("an application with this process identifier runs already");
    }
    ProcessState*& latest = latest_[processIdentifier];
    // Numbers continue after those of an earlier process with this identifier, so that each name denotes one element.
    const std::uint32_t firstNumber = latest == nullptr ? 1 : latest->nextNumber;
    latest = &processes_.emplace_back(std::move(application), firstNumber);
    return *latest;
}

void Applications::quit(ProcessIdentifier processIdentifier) {
    get(processIdentifier).life = ProcessState::Life::over;
    if (front_ == processIdentifier) {
        front_.reset();
    }
}

void Applications::holdBack(ProcessIdentifier processIdentifier) {
    quit(processIdentifier);
    latest_.at(processIdentifier)->life = ProcessState::Life::notYet;
}

void Applications::start(ProcessIdentifier processIdentifier) {
    const auto found = latest_.find(processIdentifier);
    if (found != latest_.end() && found->second->life == ProcessState::Life::notYet) {
        found->second->life = ProcessState::Life::runs;
    }
}

void Applications::bringToFront(ProcessIdentifier processIdentifier) {
    front_ = get(processIdentifier).application.processIdentifier;
}

ProcessState* Applications::find(ProcessIdentifier processIdentifier) {
    const auto found = latest_.find(processIdentifier);
    return found != latest_.end() && found->second->isRunning() ? found->second : nullptr;
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
