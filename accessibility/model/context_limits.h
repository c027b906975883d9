#pragma once

#include <cstdint>

namespace lomaris {

/// The context wanted before and after a selection, in UTF-16 units. If either is negative, there is no context.
struct ContextLimits {
    std::int64_t before = 0;
    std::int64_t after = 0;

    friend bool operator==(const ContextLimits&, const ContextLimits&) = default;
};

}  // namespace lomaris
