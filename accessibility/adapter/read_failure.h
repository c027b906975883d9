#pragma once

#include "accessibility/model/bridge_error.h"

#include <cstdint>

namespace lomaris {

/// The trace value of any failure other than the three below.
inline constexpr std::int64_t otherReadFailure = 4;

/// Returns the trace value of a failed read: 1 no text selected, 2 selected text unavailable, 3 focused element
/// unavailable, otherwise `otherReadFailure`.
[[nodiscard]] std::int64_t readFailureTraceValue(const BridgeError& error);

/// True if the application may have a selection that it does not expose.
[[nodiscard]] bool maySelectWithoutShowing(const BridgeError& error);

}  // namespace lomaris
