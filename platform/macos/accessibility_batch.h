#pragma once

#include "platform/accessibility.h"
#include "platform/macos/core_foundation.h"

#include <ApplicationServices/ApplicationServices.h>

#include <span>
#include <vector>

namespace lomaris::macos {

/// A copied attribute before anybody looked at its kind: the code, and the value, which is none beside an error and may
/// be none beside a success.
struct CopiedAttribute {
    AXError error = AXError::success;
    CFOwned<CFTypeRef> value;
};

/// Copies one attribute of `element`: one crossing. Main thread.
[[nodiscard]] CopiedAttribute copyAttributeOf(AXUIElementRef element, CFStringRef attribute);

/// Copies several attributes of several elements with one crossing for each element, and answers for each attribute
/// what `copyAttributeOf` would. Main thread.
class AttributeBatch {
public:
    /// The names of the attributes; they are retained.
    explicit AttributeBatch(std::vector<CFOwned<CFStringRef>> attributes);

    /// The answers of one element, in the order of the attributes.
    [[nodiscard]] std::vector<CopiedAttribute> copyFrom(AXUIElementRef element) const;

private:
    [[nodiscard]] CFOwned<CFArrayRef> copyTogether(AXUIElementRef element) const;

    std::vector<CFOwned<CFStringRef>> attributes_;
    /// The same names for the platform's batch, or none where there is no batch to be made of them.
    CFOwned<CFArrayRef> names_;
};

}  // namespace lomaris::macos
