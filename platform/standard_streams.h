#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lomaris {

/// Standard input, output and error of the process. Main thread; never throws, apart from running out of memory.
class StandardStreams {
public:
    StandardStreams() = default;
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;
    virtual ~StandardStreams() = default;

    /// Everything on standard input up to its end, or nothing where it cannot be read. Blocks until the writer closes
    /// its side. The result is the caller's.
    [[nodiscard]] virtual std::optional<std::string> readInput() = 0;

    /// Writes all of `bytes` to standard output; answers whether all of them went out.
    [[nodiscard]] virtual bool writeOutput(std::string_view bytes) = 0;

    /// Writes `bytes` to standard error in one write; where that fails there is nobody left to tell.
    virtual void writeError(std::string_view bytes) = 0;
};

}  // namespace lomaris
