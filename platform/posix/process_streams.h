#pragma once

#include "platform/standard_streams.h"

namespace lomaris {

/// The streams that the process was started with. Create one at the very start of `main`, before any file is opened: a
/// stream that was closed is replaced by one that always fails. Otherwise a file or connection opened later would get
/// its number and receive what was meant for the caller. Ignores SIGPIPE: if the reader has closed its end, writing
/// fails and the process continues.
class ProcessStreams final : public StandardStreams {
public:
    ProcessStreams();

    [[nodiscard]] std::optional<std::string> readInput() override;
    [[nodiscard]] bool writeOutput(std::string_view bytes) override;
    void writeError(std::string_view bytes) override;
};

}  // namespace lomaris
