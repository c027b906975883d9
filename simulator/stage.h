#pragma once

#include "platform/simulated/simulated_desktop.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace lomaris::simulator {

/// An application of the desktop file.
struct StagedApplication {
    enum class Start { atOnce, later };

    SimulatedApplication handle;
    SimulatedElement root;
    Start start = Start::atOnce;
};

/// A simulated desktop, and the names that its file defines. Not movable, because the actions of the file refer to it.
struct Stage {
    Stage() { named.emplace(systemWideName, desktop.systemWide()); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage() = default;

    /// The name of the system-wide element in a file.
    static constexpr const char* systemWideName = "systemWide";

    std::map<std::string, SimulatedElement, std::less<>> named;
    /// Names in the file, by names in the journal ("812/3").
    std::map<std::string, std::string, std::less<>> namesByJournal;
    /// The text areas, in the order of the file.
    std::vector<SimulatedTextElement> texts;
    /// All applications of the file, running or not.
    std::map<ProcessIdentifier, StagedApplication> applications;
    /// Last, so that it is destroyed first: its applications may still act then.
    SimulatedDesktop desktop;
};

/// Returns the element's name in the journal, "812/3".
[[nodiscard]] std::string journalNameOf(const SimulatedElement& element);

}  // namespace lomaris::simulator
