#pragma once

#include "tests/faults/happening.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace lomaris::test {

/// One time at which the tool determined the selection, and the selection at that time.
struct Look {
    enum class Method : std::uint8_t { read, copy };

    Method method{};
    Text selectedText;
    /// For a look by reading: the selected range when it was read; nullopt if reading it failed.
    std::optional<TextRange> range;
};

/// The last look before `position`; nullopt if there is none. A look by copying is the time at which the target copies.
/// A look by reading is the time at which "AXSelectedText" is read; if that fails or is empty, the tool cuts the
/// selected text out of the range and the whole text that it read just before.
[[nodiscard]] std::optional<Look> lastLookBefore(const Happenings& happenings, std::size_t position);

/// The last look of the read that decided that a selection will be replaced; that read ends by sampling the input
/// counters.
[[nodiscard]] std::optional<Look> decidingLookBefore(const Happenings& happenings, std::size_t position);

}  // namespace lomaris::test
