#pragma once

#include "platform/simulated/element_state.h"
#include "platform/simulated/reactor.h"
#include "platform/workspace.h"

#include <cstdint>
#include <deque>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace lomaris::simulated {

/// One run of an application, kept after it quit so that its elements can still be asked.
struct ProcessState {
    ProcessState(RunningApplication identity, std::uint32_t firstNumber)
        : application(std::move(identity)),
          root(ReferenceKind::root, this, application.processIdentifier, 0),
          nextNumber(firstNumber) {}
    ProcessState(const ProcessState&) = delete;
    ProcessState& operator=(const ProcessState&) = delete;

    RunningApplication application;
    ElementState root;
    std::deque<ElementState> members;
    std::uint32_t nextNumber;
    std::vector<KeyReactions> keys;
    enum class Life { notYet, runs, over };

    Life life = Life::runs;
    bool isHung = false;

    /// Null where nothing is scripted for the stroke.
    [[nodiscard]] KeyReactions* find(KeyStroke keyStroke);
    [[nodiscard]] bool isRunning() const { return life == Life::runs; }
};

/// Whether the application can do anything. Null stands for what belongs to no application and is always there.
[[nodiscard]] bool isAlive(const ProcessState* process);

/// The applications of the desktop and their elements.
class Applications {
public:
    Applications() : systemWide_(ReferenceKind::systemWide, nullptr, 0, 0) {}

    ProcessState& add(RunningApplication application);
    void quit(ProcessIdentifier processIdentifier);
    /// A running application has not begun to run yet.
    void holdBack(ProcessIdentifier processIdentifier);
    /// Starts an application that is held back; nothing happens to another one.
    void start(ProcessIdentifier processIdentifier);
    void bringToFront(ProcessIdentifier processIdentifier);
    void leaveNothingInFront() { front_.reset(); }

    [[nodiscard]] std::optional<ProcessIdentifier> front() const { return front_; }
    /// Null where no such application runs.
    [[nodiscard]] ProcessState* find(ProcessIdentifier processIdentifier);
    /// The running application with this process identifier; the scenario is wrong where there is none.
    [[nodiscard]] ProcessState& get(ProcessIdentifier processIdentifier);

    ElementState& addElement(ProcessIdentifier processIdentifier);
    [[nodiscard]] ElementState& systemWide() { return systemWide_; }

private:
    ElementState systemWide_;
    std::deque<ProcessState> processes_;
    std::unordered_map<ProcessIdentifier, ProcessState*> latest_;
    std::optional<ProcessIdentifier> front_;
};

}  // namespace lomaris::simulated
