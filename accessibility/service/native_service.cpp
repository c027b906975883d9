#include "accessibility/service/accessibility_service.h"
#include "platform/native_platform.h"

namespace lomaris {

// In its own file, so that a program with its own platform does not link the native one.
LomarisAccessibilityService::LomarisAccessibilityService()
    : adapter_(std::make_shared<MacOSAccessibilityAdapter>(std::shared_ptr<Platform>(nativePlatform()))) {}

}  // namespace lomaris
