#pragma once

#include "platform/attribute_value.h"
#include "platform/ax_error.h"
#include "platform/macos/core_foundation.h"

#include <optional>

/// Conversion of attribute values between Core Foundation objects and `AttributeValue`. A value's kind is determined by
/// its type identifier alone, not by the attribute that holds it. Any thread.
namespace lomaris::macos {

/// Converts `value`, which the caller still owns; elements in the result share it. A null reference and CFNull are both
/// `NullValue`. A number of any storage type is an integer if 64 bits represent it exactly.
[[nodiscard]] AttributeValue attributeValueFrom(CFTypeRef value);

/// The object to set an attribute to, or the error that explains why there is none: `illegalArgument` if a value of
/// this kind cannot be set, `failure` if the platform could not create the object.
struct SettableObject {
    AXError error = AXError::success;
    CFOwned<CFTypeRef> object;
};

/// Converts `value`. Texts, booleans, numbers, ranges and elements can be set; other kinds cannot, nor can an `Element`
/// that does not hold an AXUIElement.
[[nodiscard]] SettableObject settableObjectFrom(const AttributeValue& value);

/// The error code that `value` boxes; nullopt if it is null or anything else.
[[nodiscard]] std::optional<AXError> boxedErrorIn(CFTypeRef value);

}  // namespace lomaris::macos
