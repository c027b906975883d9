#pragma once

#include "text/text.h"

#include <cstdint>
#include <exception>

namespace lomaris {

/// One of the process's own streams failed. A plain value.
class StandardStreamError final : public std::exception {
public:
    [[nodiscard]] static StandardStreamError inputFailed() { return StandardStreamError(Stream::input); }
    [[nodiscard]] static StandardStreamError outputFailed() { return StandardStreamError(Stream::output); }

    /// The sentence for the user, one line.
    [[nodiscard]] Text errorDescription() const;

    [[nodiscard]] const char* what() const noexcept override;

private:
    enum class Stream : std::uint8_t { input, output };

    explicit StandardStreamError(Stream stream) : stream_(stream) {}

    Stream stream_;
};

}  // namespace lomaris
