#pragma once

#include "platform/platform.h"

#include <memory>

namespace lomaris {

/// The platform that this build runs on; the build chooses the implementation. Cheap: it connects to nothing and loads
/// nothing until a service is used. The caller owns the result. Main thread.
[[nodiscard]] std::unique_ptr<Platform> nativePlatform();

}  // namespace lomaris
