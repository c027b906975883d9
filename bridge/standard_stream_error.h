#pragma once

#include "text/text.h"

#include <cstdint>
#include <exception>

namespace lomaris {

/// Reading standard input or writing standard output failed. A copyable value.
class StandardStreamError final : public std::exception {
public:
    [[nodiscard]] static StandardStreamError inputFailed() { return StandardStreamError(Stream::input); }
    [[nodiscard]] static StandardStreamError outputFailed() { return StandardStreamError(Stream::output); }

    /// Returns the sentence for the user, one line.
    [[nodiscard]] Text errorDescription() const;

    [[nodiscard]] const char* what() const noexcept override;

private:
    enum class Stream : std::uint8_t { input, output };

    explicit StandardStreamError(Stream stream) : stream_(stream) {}

    Stream stream_;
};

}  // namespace lomaris
