#include "platform/simulated/simulated_desktop.h"

#include "platform/simulated/world.h"
#include "text/utf8.h"

#include <utility>

namespace lomaris {

SimulatedDesktop::SimulatedDesktop() : world_(std::make_unique<simulated::World>()) {}
SimulatedDesktop::~SimulatedDesktop() = default;

Accessibility& SimulatedDesktop::accessibility() { return world_->accessibility; }
Pasteboard& SimulatedDesktop::pasteboard() { return world_->pasteboard; }
EventServices& SimulatedDesktop::events() { return world_->events; }
Workspace& SimulatedDesktop::workspace() { return world_->workspace; }
Scheduling& SimulatedDesktop::scheduling() { return world_->scheduling; }

void SimulatedDesktop::setTrusted(bool trusted) { world_->accessibility.setTrusted(trusted); }
void SimulatedDesktop::setPromptAnswer(bool trusted) { world_->accessibility.setPromptAnswer(trusted); }
void SimulatedDesktop::setLanguage(std::string_view language) { world_->accessibility.setLanguage(language); }
void SimulatedDesktop::setPostEventAccess(bool granted) { world_->events.setAccess(granted); }
void SimulatedDesktop::setPostEventRequestAnswer(bool granted) { world_->events.setRequestAnswer(granted); }

SimulatedApplication SimulatedDesktop::addApplication(ProcessIdentifier processIdentifier,
                                                      std::optional<Text> bundleIdentifier,
                                                      std::optional<Text> localizedName) {
    world_->applications.add({processIdentifier, std::move(bundleIdentifier), std::move(localizedName)});
    return {*world_, processIdentifier};
}

void SimulatedDesktop::bringToFront(ProcessIdentifier processIdentifier) {
    world_->applications.bringToFront(processIdentifier);
}

void SimulatedDesktop::leaveNothingInFront() { world_->applications.leaveNothingInFront(); }
std::optional<ProcessIdentifier> SimulatedDesktop::front() const { return world_->applications.front(); }
void SimulatedDesktop::quit(ProcessIdentifier processIdentifier) { world_->applications.quit(processIdentifier); }
SimulatedElement SimulatedDesktop::systemWide() { return SimulatedElement(world_->applications.systemWide()); }

void SimulatedDesktop::setInputCounters(InputCounters counters) { world_->events.setCounters(counters); }
InputCounters SimulatedDesktop::inputCounters() const { return world_->events.counters(); }
void SimulatedDesktop::userTypes() { world_->events.count(InputEventType::keyDown); }
void SimulatedDesktop::userClicks(InputEventType button) { world_->events.count(button); }

void SimulatedDesktop::userCopies(TextView text) {
    CopiedItem item;
    item.data.emplace_back(pasteboard_type::string, utf8FromText(text));
    userCopiesItems({std::move(item)});
}

void SimulatedDesktop::userCopiesItems(const std::vector<CopiedItem>& items) {
    world_->pasteboard.copyAsOther(items, world_->reactor.acting());
}

void SimulatedDesktop::readPasteboardAsAnotherProgram(const PasteboardType& type,
                                                      std::function<void(std::optional<Bytes>)> whenRead) {
    world_->pasteboard.readAsOther(type, std::move(whenRead));
}

void SimulatedDesktop::refusePasteboardWrites(int count) { world_->pasteboard.refuseWrites(count); }
void SimulatedDesktop::refusePasteboardWriteNumber(int number) { world_->pasteboard.refuseWriteNumber(number); }
bool SimulatedDesktop::holdPasteboardUntil(Moment moment) { return world_->pasteboard.holdElsewhereUntil(moment); }

void SimulatedDesktop::addKeeper() {
    world_->process.setHasKeeper(true);
    world_->pasteboard.addKeeper();
}

std::vector<StandingItem> SimulatedDesktop::pasteboardContents() const { return world_->pasteboard.contents(); }

std::optional<Text> SimulatedDesktop::pasteboardStringForOthers() { return world_->pasteboard.stringForOthers(); }

void SimulatedDesktop::failKeyStrokes(int count) { world_->events.failKeyStrokes(count); }
const std::vector<PostedKeyStroke>& SimulatedDesktop::postedKeyStrokes() const { return world_->events.posted(); }

void SimulatedDesktop::setLatency(Duration latency) { world_->latency.setOfCrossing(latency); }

void SimulatedDesktop::setLatencyOf(std::string_view call, Duration latency) { world_->latency.setOf(call, latency); }

void SimulatedDesktop::at(Moment moment, std::function<void()> action) {
    world_->scheduler.at(moment, std::move(action));
}

void SimulatedDesktop::perform(const Reaction& reaction) {
    for (const Reaction::Part& part : reaction.parts()) {
        world_->scheduler.actAfter(part.delay, [&world = *world_, acts = part.acts] {
            for (const Reaction::Act& act : acts) {
                act(world);
            }
        });
    }
}

void SimulatedDesktop::beforeCall(std::size_t number, std::function<void()> action) {
    world_->journal.beforeCall(number, std::move(action));
}

void SimulatedDesktop::terminate(int signalNumber) { world_->process.tell(signalNumber); }
void SimulatedDesktop::kill(int signalNumber) { world_->process.kill(signalNumber); }
bool SimulatedDesktop::admitsOutput() { return world_->process.passOutput(); }
std::optional<int> SimulatedDesktop::endedBySignal() const { return world_->process.endedBy(); }

void SimulatedDesktop::endProcess() {
    if (world_->scheduler.isActing() || !world_->scheduler.isMainCurrent()) {
        simulated::abortScenario("only the main thread ends its process");
    }
    world_->process.finish();
    world_->scheduler.finishBlocks();
    world_->scheduling.dropQueues();
    world_->scheduler.runAllActions();
}

Moment SimulatedDesktop::now() const { return world_->scheduler.now(); }
const std::vector<std::string>& SimulatedDesktop::journal() const { return world_->journal.lines(); }

}  // namespace lomaris
