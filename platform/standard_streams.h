#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Standard input, output and error of the process. Main thread only; throws only if memory runs out.
class StandardStreams {
public:
    StandardStreams() = default;
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;
    virtual ~StandardStreams() = default;

    /// All of standard input up to its end; nullopt if it cannot be read. Blocks until the writer closes its end.
    [[nodiscard]] virtual std::optional<std::string> readInput() = 0;

    /// Writes all of `bytes` to standard output; true if all of them were written.
    [[nodiscard]] virtual bool writeOutput(std::string_view bytes) = 0;

    /// Writes `bytes` to standard error in one write. Failures are ignored, because there is no other stream to report
    /// them on.
    virtual void writeError(std::string_view bytes) = 0;
};

}  // namespace lomaris
