#pragma once

#include <cstdint>

namespace lomaris {

/// Result code of an accessibility operation, a signed 32-bit integer. The named codes are the ones that the logic and
/// the platforms use; a platform may hand on any other value, and messages show whatever it was.
enum class AXError : std::int32_t {
    success = 0,
    failure = -25200,
    illegalArgument = -25201,
    invalidUIElement = -25202,
    cannotComplete = -25204,
    attributeUnsupported = -25205,
    actionUnsupported = -25206,
    notImplemented = -25208,
    apiDisabled = -25211,
    noValue = -25212,
};

/// The code as the number that messages, traces and records show.
[[nodiscard]] constexpr std::int32_t codeOf(AXError error) { return static_cast<std::int32_t>(error); }

}  // namespace lomaris
