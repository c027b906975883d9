#include "accessibility/service/accessibility_service.h"
#include "platform/native_platform.h"

namespace lomaris {

// In a file of its own, so that a program that brings its platform links no native one.
LomarisAccessibilityService::LomarisAccessibilityService()
    : adapter_(std::make_shared<MacOSAccessibilityAdapter>(std::shared_ptr<Platform>(nativePlatform()))) {}

}  // namespace lomaris
