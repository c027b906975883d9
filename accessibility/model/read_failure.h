#pragma once

#include "accessibility/model/bridge_error.h"

#include <cstdint>

namespace lomaris {

/// The failure of a read, with the number that the traces show.
enum class ReadFailure : std::int64_t {
    none = 0,
    noTextSelected = 1,
    selectedTextUnavailable = 2,
    focusedElementUnavailable = 3,
    other = 4,
};

/// Never returns `ReadFailure::none`.
[[nodiscard]] ReadFailure readFailureOf(const BridgeError& error);

/// True if the application may have a selection that it does not expose.
[[nodiscard]] bool maySelectWithoutShowing(ReadFailure failure);

}  // namespace lomaris
