#include "accessibility/service/accessibility_service.h"
#include "platform/native_platform.h"

namespace lomaris {

// In a file of its own, so that a program that brings its platform links no native one.
LomarisAccessibilityService::LomarisAccessibilityService()
    : ownedPlatform_(nativePlatform()), adapter_(*ownedPlatform_) {}

}  // namespace lomaris
