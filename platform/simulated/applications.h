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

/// One run of an application. Kept after the application quit, so that operations on its elements can return errors.
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

    /// Null if nothing is scripted for the key stroke.
    [[nodiscard]] KeyReactions* find(KeyStroke keyStroke);
    [[nodiscard]] bool isRunning() const { return life == Life::runs; }
};

/// True if the application runs and does not hang. Also true for null: elements without an application are always
/// available.
[[nodiscard]] bool isAlive(const ProcessState* process);

/// The applications of the desktop and their elements.
class Applications {
public:
    Applications() : systemWide_(ReferenceKind::systemWide, nullptr, 0, 0) {}

    ProcessState& add(RunningApplication application);
    void quit(ProcessIdentifier processIdentifier);
    /// Makes a running application one that has not started yet.
    void holdBack(ProcessIdentifier processIdentifier);
    /// Starts an application that is held back; does nothing for any other.
    void start(ProcessIdentifier processIdentifier);
    void bringToFront(ProcessIdentifier processIdentifier);
    void leaveNothingInFront() { front_.reset(); }

    [[nodiscard]] std::optional<ProcessIdentifier> front() const { return front_; }
    /// Null if no such application runs.
    [[nodiscard]] ProcessState* find(ProcessIdentifier processIdentifier);
    /// The running application with this process identifier. Aborts the scenario if there is none.
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
