#pragma once

#include "text/text.h"

#include <exception>

namespace lomaris {

/// Thrown if `replace-selection-request` receives no request on standard input. A copyable value.
class BridgeInputError final : public std::exception {
public:
    [[nodiscard]] static BridgeInputError missingGuardedReplacementRequest() { return {}; }

    /// Returns the sentence for the user, one line.
    [[nodiscard]] Text errorDescription() const;

    [[nodiscard]] const char* what() const noexcept override { return "missingGuardedReplacementRequest"; }

    friend bool operator==(const BridgeInputError&, const BridgeInputError&) { return true; }

private:
    BridgeInputError() = default;
};

}  // namespace lomaris
