#pragma once

#include "accessibility/model/bridge_error.h"

#include <cstdint>

namespace lomaris {

/// What the traces say of a failure that is none of the three below.
inline constexpr std::int64_t otherReadFailure = 4;

/// What the traces say of a read that failed: 1 no text selected, 2 selected text unavailable, 3 focused element
/// unavailable, or `otherReadFailure`. Pure.
[[nodiscard]] std::int64_t readFailureTraceValue(const BridgeError& error);

/// Whether an application that failed this way may simply not show its selection. Pure.
[[nodiscard]] bool maySelectWithoutShowing(const BridgeError& error);

}  // namespace lomaris
