#include "tests/soak/steady_census.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <thread>

namespace lomaris::test {

namespace {

/// The growth that the browser may have. A leak of one file per round exceeds this within 40 rounds.
constexpr ProgramCount browserVariation{.processes = 3, .openFiles = 40};
/// Each of these processes may connect to the X server and to the buses. A leak in each round exceeds this in four.
constexpr ProgramCount serverVariation{.processes = 0, .openFiles = 3};
constexpr auto timeToSettle = std::chrono::seconds(5);
constexpr auto pauseBetweenLooks = std::chrono::milliseconds(20);

ProgramCount variationOf(const std::string& program) {
    return program == "firefox-esr" ? browserVariation : serverVariation;
}

void addIfGrown(std::string& growth, const std::string& what, std::size_t count, std::size_t level,
                std::size_t variation) {
    if (count > level + variation) {
        growth +=
            (growth.empty() ? "" : ", ") + std::to_string(count) + " " + what + " instead of " + std::to_string(level);
    }
}

}  // namespace

void SteadyCensus::learn(const DesktopCensus& census) {
    if (!level_) {
        level_ = census;
        return;
    }
    level_->windows = std::min(level_->windows, census.windows);
    for (const auto& [name, count] : census.programs) {
        ProgramCount& lowest = level_->programs.try_emplace(name, count).first->second;
        lowest.processes = std::min(lowest.processes, count.processes);
        lowest.openFiles = std::min(lowest.openFiles, count.openFiles);
    }
}

std::string SteadyCensus::growth() const {
    const auto end = std::chrono::steady_clock::now() + timeToSettle;
    std::string found = growthIn(takeCensus());
    while (!found.empty() && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(pauseBetweenLooks);
        found = growthIn(takeCensus());
    }
    return found;
}

std::string SteadyCensus::growthIn(const DesktopCensus& census) const {
    std::string growth;
    addIfGrown(growth, "processes of the tool", census.toolProcesses, 0, 0);
    addIfGrown(growth, "windows", census.windows, level_->windows, 0);
    for (const auto& [name, count] : census.programs) {
        const auto found = level_->programs.find(name);
        const ProgramCount lowest = found == level_->programs.end() ? ProgramCount{} : found->second;
        const ProgramCount variation = variationOf(name);
        addIfGrown(growth, "processes of " + name, count.processes, lowest.processes, variation.processes);
        addIfGrown(growth, "open files of " + name, count.openFiles, lowest.openFiles, variation.openFiles);
    }
    return growth;
}

std::string SteadyCensus::level() const {
    std::string level = "no process of the tool; " + std::to_string(level_->windows) + " windows";
    for (const auto& [name, count] : level_->programs) {
        level += "; " + name + ": " + std::to_string(count.processes) + " processes, " +
                 std::to_string(count.openFiles) + " files";
    }
    return level;
}

}  // namespace lomaris::test
