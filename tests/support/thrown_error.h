#pragma once

#include "accessibility/model/bridge_error.h"

#include <optional>
#include <ostream>

namespace lomaris {

/// Prints an error if an assertion fails.
inline void PrintTo(const BridgeError& error, std::ostream* stream) {
    *stream << error.what() << ": ";
    for (const char16_t unit : error.errorDescription()) {
        *stream << (unit < 0x80 ? static_cast<char>(unit) : '?');
    }
}

namespace test {

/// The `BridgeError` that `operation` throws; nullopt if it returns.
template <typename Operation>
[[nodiscard]] std::optional<BridgeError> thrownBy(const Operation& operation) {
    try {
        static_cast<void>(operation());
        return std::nullopt;
    } catch (const BridgeError& error) {
        return error;
    }
}

}  // namespace test
}  // namespace lomaris
