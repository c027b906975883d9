#pragma once

#include "accessibility/model/bridge_error.h"

#include <utility>
#include <variant>

namespace lomaris {

/// The result of an operation, or the error that its throwing form throws. Returned by the operations whose error is
/// not always the caller's result, because the caller may continue in another way. Such an operation throws no
/// `BridgeError`.
template <typename Value>
using Outcome = std::variant<Value, BridgeError>;

/// Returns the error, or nullptr if there is a result. The pointer is valid as long as `outcome`.
template <typename Value>
[[nodiscard]] const BridgeError* errorOf(const Outcome<Value>& outcome) {
    return std::get_if<BridgeError>(&outcome);
}

template <typename Value>
[[nodiscard]] Value valueOrThrow(Outcome<Value> outcome) {
    if (const BridgeError* const error = std::get_if<BridgeError>(&outcome)) {
        throw BridgeError(*error);
    }
    return std::get<Value>(std::move(outcome));
}

}  // namespace lomaris
