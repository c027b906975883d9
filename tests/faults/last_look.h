#pragma once

#include "tests/faults/happening.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace lomaris::test {

/// One look of the tool at the selection, and what there was to see.
struct Look {
    enum class Method : std::uint8_t { read, copy };

    Method method{};
    Text selectedText;
    /// Of a look by reading: the selected range when it was asked for, or nothing where asking failed.
    std::optional<TextRange> range;
};

/// The last look among the happenings before `position`. A look by copying is when the target copies. A look by reading
/// is when "AXSelectedText" is read; where that fails or is empty, the tool sees what it read just before, the range
/// and the whole text, and cuts the one out of the other.
[[nodiscard]] std::optional<Look> lastLookBefore(const Happenings& happenings, std::size_t position);

/// The last look of the read that decided that there is a selection to be replaced: a read ends with the sampling of
/// the input counters.
[[nodiscard]] std::optional<Look> decidingLookBefore(const Happenings& happenings, std::size_t position);

}  // namespace lomaris::test
