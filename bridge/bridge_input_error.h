#pragma once

#include "text/text.h"

#include <exception>

namespace lomaris {

/// The command line's own error beside those of the library: no guarded request came on standard input. A plain value.
class BridgeInputError final : public std::exception {
public:
    [[nodiscard]] static BridgeInputError missingGuardedReplacementRequest() { return {}; }

    /// The sentence for the user, one line.
    [[nodiscard]] Text errorDescription() const;

    [[nodiscard]] const char* what() const noexcept override { return "missingGuardedReplacementRequest"; }

    friend bool operator==(const BridgeInputError&, const BridgeInputError&) { return true; }

private:
    BridgeInputError() = default;
};

}  // namespace lomaris
