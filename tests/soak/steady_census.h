#pragma once

#include "tests/real/desktop_census.h"

#include <optional>
#include <string>

namespace lomaris::test {

/// The least that the desktop takes up between rounds, and whether later rounds return to it.
class SteadyCensus {
public:
    /// Lowers the level to this census wherever it is lower. To be called after each of the first rounds.
    void learn(const DesktopCensus& census);

    /// Waits for processes to end and files to be closed; then what takes up more than the level, as a line for people,
    /// or nothing. Another program owns the clipboard then, so that no process of the tool is left. The browser may
    /// have some more files and processes, as it starts and ends processes on its own.
    [[nodiscard]] std::string growth() const;

    /// The level, as a line for people.
    [[nodiscard]] std::string level() const;

private:
    [[nodiscard]] std::string growthIn(const DesktopCensus& census) const;

    std::optional<DesktopCensus> level_;
};

}  // namespace lomaris::test
