#pragma once

#include "platform/accessibility.h"
#include "platform/macos/core_foundation.h"

#include <ApplicationServices/ApplicationServices.h>

#include <span>
#include <vector>

namespace lomaris::macos {

/// The result of copying an attribute, before its value's kind is checked. The value is null with an error code, and
/// may be null with a success code.
struct CopiedAttribute {
    AXError error = AXError::success;
    CFOwned<CFTypeRef> value;
};

/// Copies one attribute of `element`, with one request to its process. Main thread only.
[[nodiscard]] CopiedAttribute copyAttributeOf(AXUIElementRef element, CFStringRef attribute);

/// Copies several attributes of several elements with one request for each element. The results are those that
/// `copyAttributeOf` returns for each attribute. Main thread only.
class AttributeBatch {
public:
    /// `attributes` are the names of the attributes; they are retained.
    explicit AttributeBatch(std::vector<CFOwned<CFStringRef>> attributes);

    /// The results for one element, in the order of the attributes.
    [[nodiscard]] std::vector<CopiedAttribute> copyFrom(AXUIElementRef element) const;

private:
    [[nodiscard]] CFOwned<CFArrayRef> copyTogether(AXUIElementRef element) const;

    std::vector<CFOwned<CFStringRef>> attributes_;
    /// The same names as an array for the platform's batch call; null if a batch is not possible or saves nothing.
    CFOwned<CFArrayRef> names_;
};

}  // namespace lomaris::macos
