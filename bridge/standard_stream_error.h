#pragma once

#include "text/text.h"

#include <exception>

namespace lomaris {

/// Standard output could not be written. A plain value.
class StandardStreamError final : public std::exception {
public:
    /// The sentence for the user, one line.
    [[nodiscard]] Text errorDescription() const;

    [[nodiscard]] const char* what() const noexcept override { return "standardOutputFailed"; }
};

}  // namespace lomaris
