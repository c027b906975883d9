#pragma once

#include "platform/ax_error.h"

#include <string_view>

namespace lomaris {

/// What an error reply means for the object called. `unknownObject` is ambiguous: some toolkits return it for an object
/// that no longer exists, others for any method that an object lacks. Another call to the object is needed to find out.
enum class BusFailure { peerGone, unknownObject, unsupported, refused };

/// `name` is a D-Bus error name ("org.freedesktop.DBus.Error.UnknownMethod"). Returns `refused` for any other name.
[[nodiscard]] BusFailure busFailureFromName(std::string_view name);

/// The result code for a failure if nothing more is known.
[[nodiscard]] AXError axErrorOf(BusFailure failure);

}  // namespace lomaris
