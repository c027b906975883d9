#pragma once

#include <cstdint>

namespace lomaris {

/// Result code of an accessibility operation, a signed 32-bit integer. The named codes are the ones that this project
/// uses or returns itself; a platform may return any other value, which messages show unchanged.
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

/// The numeric code, as messages, traces and records show it.
[[nodiscard]] constexpr std::int32_t codeOf(AXError error) { return static_cast<std::int32_t>(error); }

}  // namespace lomaris
