#pragma once

#include "tests/real/desktop_census.h"

#include <optional>
#include <string>

namespace lomaris::test {

/// The lowest counts of windows, processes and open files after the first rounds, and a check that later rounds do not
/// exceed them.
class SteadyCensus {
public:
    /// Lowers every count of the level that is higher than in this census. Call it after each of the first rounds.
    void learn(const DesktopCensus& census);

    /// Waits up to 5 s for processes to end and files to be closed, and returns a line about the counts above the
    /// level. Empty if there are none. Another program must own the clipboard, so that no process of the tool is left.
    /// The browser may have some more files and processes, because it starts and ends processes on its own.
    [[nodiscard]] std::string growth() const;

    /// Returns a line that describes the level.
    [[nodiscard]] std::string level() const;

private:
    [[nodiscard]] std::string growthIn(const DesktopCensus& census) const;

    std::optional<DesktopCensus> level_;
};

}  // namespace lomaris::test
