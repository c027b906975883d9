#pragma once

#include "platform/simulated/simulated_desktop.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace lomaris::test {

/// The number of journal lines that contain `words`.
[[nodiscard]] inline std::size_t callsWith(const SimulatedDesktop& desktop, std::string_view words) {
    const auto& journal = desktop.journal();
    return static_cast<std::size_t>(std::count_if(journal.begin(), journal.end(), [words](const std::string& line) {
        return line.find(words) != std::string::npos;
    }));
}

}  // namespace lomaris::test
