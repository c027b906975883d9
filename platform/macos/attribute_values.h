#pragma once

#include "platform/attribute_value.h"
#include "platform/ax_error.h"
#include "platform/macos/core_foundation.h"

#include <optional>

/// The values of attributes between the platform's objects and the closed set that the logic knows. Kinds are told by
/// type identifiers alone, never by what an attribute ought to hold. Any thread.
namespace lomaris::macos {

/// What `value` is. A null reference and the null object are both no value; a number of any storage is an integer
/// where 64 bits hold it exactly. `value` stays the caller's; elements in the result share it.
[[nodiscard]] AttributeValue attributeValueFrom(CFTypeRef value);

/// An object to set an attribute to, or why there is none: `illegalArgument` where a value of this kind cannot be set,
/// `failure` where the platform could not make the object.
struct SettableObject {
    AXError error = AXError::success;
    CFOwned<CFTypeRef> object;
};

/// The object for `value`. Texts, booleans, numbers, ranges and elements can be set, other kinds cannot; nor can an
/// `Element` that holds none of the platform's.
[[nodiscard]] SettableObject settableObjectFrom(const AttributeValue& value);

/// The error code that `value` boxes, or nothing where it is anything else. `value` may be null.
[[nodiscard]] std::optional<AXError> boxedErrorIn(CFTypeRef value);

}  // namespace lomaris::macos
