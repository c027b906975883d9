#pragma once

#include "platform/ax_error.h"

#include <string_view>

namespace lomaris {

/// What an error that a call was answered with says about the element. `unknownObject` is ambiguous: some toolkits
/// answer it for an object that is gone, others for any method that an object lacks; only another question to the
/// object can tell.
enum class BusFailure { peerGone, unknownObject, unsupported, refused };

/// `name` is the D-Bus name of the error ("org.freedesktop.DBus.Error.UnknownMethod"). Unknown names are refusals.
[[nodiscard]] BusFailure busFailureFromName(std::string_view name);

/// The result code of a failure, where nothing more is known.
[[nodiscard]] AXError axErrorOf(BusFailure failure);

}  // namespace lomaris
