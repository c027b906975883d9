#pragma once

#include "platform/standard_streams.h"

namespace lomaris {

/// The streams that the process was started with. Create one at the very start of `main`, before anything opens a file:
/// a stream that came closed is replaced by one that fails, so that no file or connection opened later takes its number
/// and receives what was meant for the caller. A reader that goes away is a failed write, not the end of the process.
class ProcessStreams final : public StandardStreams {
public:
    ProcessStreams();

    [[nodiscard]] std::optional<std::string> readInput() override;
    [[nodiscard]] bool writeOutput(std::string_view bytes) override;
    void writeError(std::string_view bytes) override;
};

}  // namespace lomaris
