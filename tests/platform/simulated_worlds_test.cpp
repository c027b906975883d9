// The contract suites on the simulated desktop.

#include "platform/attributes.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/platform/accessibility_contract.h"
#include "tests/platform/events_contract.h"
#include "tests/platform/pasteboard_contract.h"
#include "tests/platform/scheduling_contract.h"
#include "tests/platform/workspace_contract.h"

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

namespace lomaris::test {
namespace {

class SimulatedAccessibilityWorld final : public AccessibilityWorld {
public:
    SimulatedAccessibilityWorld() {
        SimulatedApplication notes = desktop_.addApplication(812, u"com.example.notes", u"Notes");
        SimulatedElement window = notes.addElement();
        SimulatedElement group = notes.addElement();
        SimulatedTextElement text = notes.addTextElement(u"The quick brown fox", {10, 9});
        window.answers(attribute::role, u"AXWindow");
        window.answers(attribute::children, std::vector<Element>{group.element()});
        group.answers(attribute::children, std::vector<Element>{text.element()});
        notes.element().answers(attribute::role, u"AXApplication");
        notes.element().answers(attribute::focusedWindow, window.element());
        notes.element().answers(attribute::focusedUIElement, text.element());
        desktop_.systemWide().answers(attribute::focusedUIElement, text.element());
        desktop_.bringToFront(812);
    }

    Platform& platform() override { return desktop_; }
    ProcessIdentifier application() override { return 812; }
    void quitApplication() override { desktop_.quit(812); }

private:
    SimulatedDesktop desktop_;
};

class SimulatedWorkspaceWorld final : public WorkspaceWorld {
public:
    SimulatedWorkspaceWorld() {
        desktop_.addApplication(812, u"com.example.notes", u"Notes");
        desktop_.addApplication(913, std::nullopt, std::nullopt);
        desktop_.bringToFront(812);
    }

    Platform& platform() override { return desktop_; }
    RunningApplication first() override { return {812, u"com.example.notes", u"Notes"}; }
    RunningApplication second() override { return {913, std::nullopt, std::nullopt}; }
    ProcessIdentifier missingProcess() override { return 4711; }
    void bringSecondToFront() override { desktop_.bringToFront(913); }
    void quitFirst() override { desktop_.quit(812); }

private:
    SimulatedDesktop desktop_;
};

class SimulatedSchedulingWorld final : public SchedulingWorld {
public:
    Platform& platform() override { return desktop_; }

private:
    SimulatedDesktop desktop_;
};

class SimulatedPasteboardWorld final : public PasteboardWorld {
public:
    Platform& platform() override { return *desktop_; }

    void otherProgramCopies(std::vector<std::pair<PasteboardType, Bytes>> item) override {
        desktop_->userCopiesItems({CopiedItem{std::move(item), {}}});
    }

    std::optional<Bytes> otherProgramReads(const PasteboardType& type) override {
        std::optional<Bytes> bytes;
        desktop_->readPasteboardAsAnotherProgram(type,
                                                 [&bytes](std::optional<Bytes> read) { bytes = std::move(read); });
        desktop_->scheduling().runLoopSlice(std::chrono::milliseconds(20));
        return bytes;
    }

    bool otherProcessHolds() override { return desktop_->holdPasteboardUntil(desktop_->now() + othersOperation); }
    void otherProcessReleases() override { desktop_->scheduling().sleep(othersOperation); }
    void endPlatform() override { desktop_.reset(); }

private:
    static constexpr Duration othersOperation = std::chrono::seconds(1);

    std::unique_ptr<SimulatedDesktop> desktop_ = std::make_unique<SimulatedDesktop>();
};

class SimulatedEventsWorld final : public EventsWorld {
public:
    Platform& platform() override { return desktop_; }
    void userTypes() override { desktop_.userTypes(); }

private:
    SimulatedDesktop desktop_;
};

template <typename World, typename SimulatedWorld>
auto inMemory() {
    return testing::Values(WorldMaker<World>{"InMemory", [] { return std::make_unique<SimulatedWorld>(); }});
}

INSTANTIATE_TEST_SUITE_P(Simulated, AccessibilityContract,
                         (inMemory<AccessibilityWorld, SimulatedAccessibilityWorld>()), contractParamName);
INSTANTIATE_TEST_SUITE_P(Simulated, WorkspaceContract, (inMemory<WorkspaceWorld, SimulatedWorkspaceWorld>()),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(Simulated, SchedulingContract, (inMemory<SchedulingWorld, SimulatedSchedulingWorld>()),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(Simulated, PasteboardContract, (inMemory<PasteboardWorld, SimulatedPasteboardWorld>()),
                         contractParamName);
INSTANTIATE_TEST_SUITE_P(Simulated, EventsContract, (inMemory<EventsWorld, SimulatedEventsWorld>()), contractParamName);

}  // namespace
}  // namespace lomaris::test
