#pragma once

#include "platform/simulated/simulated_desktop.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace lomaris::simulator {

/// An application of a file.
struct StagedApplication {
    enum class Start { atOnce, later };

    SimulatedApplication handle;
    SimulatedElement root;
    Start start = Start::atOnce;
};

/// A simulated desktop together with the names that its file gives to what stands on it. What the file has the user and
/// the applications do refers to it, so it stays where it was made.
struct Stage {
    Stage() { named.emplace(systemWideName, desktop.systemWide()); }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage() = default;

    /// The name under which a file speaks of the system-wide element.
    static constexpr const char* systemWideName = "systemWide";

    std::map<std::string, SimulatedElement, std::less<>> named;
    /// By the name of the journal, "812/3"; the value is the name in the file.
    std::map<std::string, std::string, std::less<>> namesByJournal;
    /// Those that behave as text areas, in the order of the file.
    std::vector<SimulatedTextElement> texts;
    /// All of the file, whether or not they run.
    std::map<ProcessIdentifier, StagedApplication> applications;
    /// Ends first, as its applications may still act then.
    SimulatedDesktop desktop;
};

/// The element's name in the journal, "812/3".
[[nodiscard]] std::string journalNameOf(const SimulatedElement& element);

}  // namespace lomaris::simulator
